// The pointer on a field: it sets the cursor, draws a selection while it is
// held, takes a word with a double click, and scrolls a field that it has left.
#include <algorithm>

#include "geometry/intmath.h"
#include "movie/character.h"
#include "player/text.h"
#include "stage/display_list.h"
#include "text/clipboard.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

// A press that comes sooner than that after the last event, and at the same
// pixel, takes the word. Milliseconds.
constexpr uint32_t kDoubleClickTime = 500;

bool IsLineEnd(uint16_t c) {
  return c == '\r' || c == '\n';
}

}  // namespace

SPOINT EditText::LocalPoint(const SPOINT* pixel) const {
  const SPOINT dev = object->display->DevPoint(pixel);
  MATRIX inverse;
  MatrixInvert(&devMatrix, &inverse);
  SPOINT local;
  MatrixTransformPoint(&inverse, &dev, &local);
  return local;
}

bool EditText::EndsWord(int32_t index) const {
  return index < 0 || index >= length || LineBreakOK_Index(index) || IsLineEnd(buffer[index]);
}

// The index of the character that `x` is nearest to in line `line`.
int32_t EditText::IndexAt(int32_t line, SCOORD x, SCOORD xmax) {
  const int32_t start = LineStart(line);
  const int32_t end = FindLineEnd(start);
  int32_t i = static_cast<int32_t>(std::min(int64_t{start} + hscroll, int64_t{end}));
  int32_t left = lineX.At(line);
  while (i < length && buffer[i]) {
    if (i >= end) {
      if (LineBreakOK_Index(i)) {
        atLineEnd = true;
        ++i;
      }
      break;
    }
    const int32_t width = charWidths.At(i);
    const int32_t right = WrapAdd(left, width);
    if (x < WrapAdd(left, width / 2) || right > xmax) break;
    left = right;
    ++i;
  }
  return i;
}

// Required: every event counts as the last press, releases and drags too, so a
// drag that rests on a pixel takes the word there.
void EditText::DoMouse(const SPOINT* pixel, bool mouseIsDown) {
  if (!drawn || (flags & kEditTextNoSelect)) return;
  atLineEnd = false;
  const SRECT inner = InnerBounds();
  const uint32_t now = GetTime();
  if (mouseIsDown && pixel->x == clickPoint.x && pixel->y == clickPoint.y &&
      now - clickTime < kDoubleClickTime) {
    selectionAnchor = selectionCursor;
    while (!EndsWord(selectionCursor)) ++selectionCursor;
    while (!EndsWord(selectionAnchor - 1)) --selectionAnchor;
    return;
  }
  mouseDown = mouseIsDown;
  clickPoint = *pixel;
  clickTime = now;

  const SPOINT p = LocalPoint(pixel);
  const int32_t visible = CalcVisibleLines();
  if (visible == 0) return;
  const int64_t below = int64_t{WrapSub(p.y, inner.ymin)} / lineHeight;
  const int64_t row = std::clamp<int64_t>(below, 0, visible - 1);
  const int64_t line = std::min<int64_t>(row + vscroll, lineCount);
  selectionCursor = IndexAt(static_cast<int32_t>(line), p.x, inner.xmax);

  if (!selecting) {
    selecting = true;
    selectionAnchor = selectionCursor;
  } else if (!mouseIsDown) {
    selecting = false;
    PlayerOwnSelection(Player(), true);
  }
}

void EditText::AutoScroll() {
  if (!mouseDown) return;
  const SPOINT p = LocalPoint(&clickPoint);
  const SRECT inner = InnerBounds();
  if (p.y < inner.ymin && selectionCursor > 0 && vscroll > 0) --vscroll;
  if (p.y > inner.ymax && selectionCursor < length && vscroll < lineCount - 1) ++vscroll;
  vscroll = std::min(vscroll, CalcMaxVScroll());

  if ((flags & kEditTextWordWrap) || align != kAlignLeft) return;
  const int32_t start = LineStart(FindLineNumber(selectionCursor));
  const int32_t column = selectionCursor - start;
  const int32_t end = FindLineEnd(selectionCursor) - start;
  if (p.x > inner.xmax && column < end && hscroll < end) ++hscroll;
  if (p.x < inner.xmin && column >= 1 && hscroll >= 1) --hscroll;
}

}  // namespace vexel
