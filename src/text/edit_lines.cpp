// The lines of a field as the last Draw broke them. A text can be edited before
// it is drawn again, so what the tables say is cut to the text as it is now.
#include <algorithm>

#include "geometry/intmath.h"
#include "movie/character.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

// Between a field's bounds and its lines, on all sides, twentieths.
constexpr SCOORD kBorder = 40;

}  // namespace

SRECT EditText::InnerBounds() const {
  SRECT inner = character->bounds;
  RectInset(kBorder, &inner);
  return inner;
}

int32_t EditText::CalcVisibleLines() const {
  if (lineHeight == 0) return 0;
  const int64_t room = WrapSub(WrapSub(textRect.ymax, textRect.ymin), ascent);
  return Saturate32(std::max<int64_t>(room / lineHeight, 0) + 1);
}

int32_t EditText::CalcMaxVScroll() const {
  return std::max(lineCount - CalcVisibleLines(), 0);
}

int32_t EditText::LineStart(int32_t line) const {
  return std::clamp(lineStarts.At(line), 0, length);
}

int32_t EditText::FindLineNumber(int32_t i) const {
  int32_t line = 0;
  while (line + 1 < lineCount && lineStarts.At(line + 1) <= i) ++line;
  return line;
}

int32_t EditText::FindLineEnd(int32_t i) const {
  const int32_t line = FindLineNumber(i);
  if (line >= lineCount - 1) return length;
  return std::clamp(lineStarts.At(line + 1) - 1, 0, length);
}

// Required: the widths are those from the start of the text, whichever line the
// cursor is on; and while lines have no height, so that none is visible, the
// first line shown is the one below the cursor's.
void EditText::FindCursor(const SRECT* rect, const int32_t* widths) {
  const int32_t line = FindLineNumber(selectionCursor);
  const int32_t visible = CalcVisibleLines();
  if (line < vscroll) vscroll = line;
  if (line - vscroll >= visible) vscroll = line - visible + 1;

  if (flags & kEditTextWordWrap) return;
  const int32_t column = selectionCursor - LineStart(line);
  if (hscroll < column) {
    int32_t x = rect->xmin;
    for (int32_t i = hscroll; i < column; ++i) x = WrapAdd(x, widths[i]);
    while (x > rect->xmax && hscroll < column) x = WrapSub(x, widths[hscroll++]);
  } else {
    // A quarter of the field stays in view on the cursor's left.
    const int32_t quarter = WrapSub(rect->xmax, rect->xmin) / 4;
    hscroll = column;
    for (int32_t x = 0; x < quarter && hscroll > 0;) x = WrapAdd(x, widths[--hscroll]);
  }
}

bool EditText::BreakEnglish(uint16_t c, uint16_t) {
  return c == ' ' || c == '-';
}

bool EditText::LineBreakOK(uint16_t c, uint16_t next) {
  return BreakEnglish(c, next);
}

bool EditText::LineBreakOK_Index(int32_t index) const {
  if (index < 0 || index >= length) return false;
  return LineBreakOK(buffer[index], index + 1 < length ? buffer[index + 1] : 0);
}

}  // namespace vexel
