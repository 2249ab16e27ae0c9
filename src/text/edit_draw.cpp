// A field as a picture: its text laid out in rows, and on an object the edges of
// border, glyphs, selection and cursor. A field is an object like any other:
// what is made here stays until the object is modified, and pointer and keys
// read the tables that are left behind.
#include "text/edit_text.h"

#include <algorithm>
#include <new>

#include "movie/character.h"
#include "movie/font_format.h"
#include "movie/script_player.h"
#include "movie/solid_color.h"
#include "movie/tags.h"
#include "player/splayer.h"
#include "raster/rcolor.h"
#include "stage/clip_color.h"
#include "stage/display_list.h"
#include "stage/glyph_edges.h"
#include "stage/rect_edges.h"
#include "stage/stroker.h"
#include "text/edit_record.h"

namespace vexel {

namespace {

constexpr uint16_t kLineFeed = 10;
constexpr uint16_t kReturn = 13;
constexpr uint16_t kAsterisk = 42;

constexpr RGBI kBlack = {0, 0, 0, 255};
constexpr RGBI kWhite = {255, 255, 255, 255};

// The paint order of a field's colours.
enum EditOrder : uint32_t {
  kPaperOrder = 0,
  kTextOrder = 1,       // glyphs and the cursor
  kSelectionOrder = 2,  // and the border's line
  kSelectedTextOrder = 3,
};

// Font units at `height` to twentieths.
int32_t Scaled(int32_t units, int32_t height) {
  return WrapMul(units, height) / kFontSquare;
}

// An array that goes with its scope; null without memory.
template <class T>
struct Array {
  explicit Array(int32_t count) : at(new (std::nothrow) T[static_cast<size_t>(count)]()) {}
  explicit Array(T* entries) : at(entries) {}
  ~Array() { delete[] at; }
  Array(const Array&) = delete;
  Array& operator=(const Array&) = delete;
  T* at;
};

// Null for a mask, which has no colours of its own, and without memory.
RColor* CreateEditTextColor(const RGBI& rgb, uint32_t order, const STransform* t, SObject* object) {
  if (object->clipDepth != 0) return nullptr;
  DisplayList* display = object->display;
  RColor* color = display->NewColor();
  if (!color) return nullptr;
  color->SetUp(&display->raster);
  color->next = object->colors;
  object->colors = color;
  color->order = order;
  SetSolidColor(color, rgb, t->cxform);
  if (RasterForCaches(display)) color->BuildCache();
  return color;
}

// A line one device unit wide from top to bottom, local units.
void StrokeCursor(const MATRIX* matrix, SCOORD x, SCOORD top, SCOORD bottom, RColor* color,
                  SStroker* stroker) {
  SPOINT a = {x, top};
  SPOINT b = {x, bottom};
  MatrixTransformPoint(matrix, &a, &a);
  MatrixTransformPoint(matrix, &b, &b);
  CURVE line;
  CurveSetLine(&a, &b, &line);
  stroker->BeginStroke(1, color);
  stroker->AddStrokeCurve(&line);
  stroker->EndStroke();
}

// One Draw of a field.
class EditDrawing {
 public:
  EditDrawing(EditText* text, const STransform* t, bool outlines)
      : m_text(text),
        m_object(text->object),
        m_transform(t),
        m_outlines(outlines),
        m_record(text->object->character),
        m_stroker(m_object->display, &m_object->edges),
        m_glyphs(m_object) {}

  bool Run();

 private:
  // What a row shows: characters `start` to `start` + `count` - 1 of the buffer.
  struct Row {
    int32_t start;
    int32_t count;
    SCOORD top;
    SCOORD bottom;
  };

  bool CursorIsShown() const;
  void SetUpOutlines();
  bool SetUpDevice();
  bool LayOut();
  void MeasureGlyphs(const uint16_t* glyphs);
  void DrawRows(const uint16_t* glyphs, SCOORD* xs);
  void PlaceCharacters(Row* row, SCOORD x, SCOORD* xs) const;
  void Align(const Row& row, SCOORD* xs) const;
  bool DrawRow(const Row& row, const uint16_t* glyphs, const SCOORD* xs);
  bool HasCursor(const Row& row) const;

  EditText* m_text;
  SObject* m_object;
  const STransform* m_transform;
  const bool m_outlines;
  EditRecord m_record;
  FontDesc m_font;
  SStroker m_stroker;
  GlyphEdges m_glyphs;
  bool m_cursorShown = false;
  MATRIX m_glyphMat = {};  // font units to local
  int32_t m_glyphBytes = 0;
  RColor* m_textColor = nullptr;
  RColor* m_selectionColor = nullptr;
  RColor* m_selectedTextColor = nullptr;
};

// The cursor stands in whatever field shows the same character as the one that
// has the focus.
bool EditDrawing::CursorIsShown() const {
  const SPlayer* player = m_object->character->player->splayer;
  const SObject* focus = player ? player->focus.Get() : nullptr;
  return focus && focus->character == m_object->character && player->cursorBlink &&
         !(m_record.flags & kEditTextReadOnly);
}

void EditDrawing::SetUpOutlines() {
  const int32_t height = m_text->fontHeight;
  m_stroker.antialias = m_object->display->antialias;
  m_text->ascent = Scaled(m_font.Ascent(), height);
  m_text->lineHeight =
      WrapAdd(WrapAdd(m_text->ascent, Scaled(m_font.Descent(), height)), m_record.leading);

  // In this order: the list of colours keeps it.
  m_textColor = CreateEditTextColor(m_record.color, kTextOrder, m_transform, m_object);
  RColor* paper = CreateEditTextColor(kWhite, kPaperOrder, m_transform, m_object);
  m_selectionColor = CreateEditTextColor(kBlack, kSelectionOrder, m_transform, m_object);
  m_selectedTextColor = CreateEditTextColor(kWhite, kSelectedTextOrder, m_transform, m_object);

  const SRECT& bounds = m_object->character->bounds;
  if (m_record.flags & kEditTextBorder) {
    DisplayList* display = m_object->display;
    AddRect(&bounds, &m_text->devMatrix, m_selectionColor, display, &m_object->edges, &m_stroker);
    AddRect(&bounds, &m_text->devMatrix, paper, display, &m_object->edges, nullptr);
  }
  m_text->textRect = m_text->InnerBounds();
}

// For a platform that paints texts itself: the layout in pixels. It has no
// advances, since no platform is there to tell them.
bool EditDrawing::SetUpDevice() {
  DisplayList* display = m_object->display;
  MATRIX pixelMat = m_transform->mat;
  if (display->antialias) {
    MATRIX scale;
    MatrixScale(kFixedOne / kDevPerPixel, kFixedOne / kDevPerPixel, &scale);
    MatrixConcat(&pixelMat, &scale, &pixelMat);
  }
  const int32_t deviceHeight = FixedMul(m_text->fontHeight, pixelMat.d);
  if (deviceHeight == 0 || !MatrixIsScaleOnly(&pixelMat)) return false;
  display->raster.Flush();
  m_record.leftMargin = FixedMul(m_record.leftMargin, pixelMat.a);
  m_record.rightMargin = FixedMul(m_record.rightMargin, pixelMat.a);
  m_record.indent = FixedMul(m_record.indent, pixelMat.a);
  const SRECT inner = m_text->InnerBounds();
  MatrixTransformRect(&pixelMat, &inner, &m_text->textRect);
  return true;
}

// Required: an advance is kept in 16 bits.
void EditDrawing::MeasureGlyphs(const uint16_t* glyphs) {
  int32_t* widths = m_text->charWidths.Entries();
  for (int32_t i = 0; i < m_text->length; ++i) {
    if (glyphs[i] == kNoGlyph) continue;
    widths[i] = static_cast<int16_t>(Scaled(m_font.Advance(glyphs[i]), m_text->fontHeight));
  }
}

bool EditDrawing::LayOut() {
  const int32_t length = m_text->length;
  const bool password = m_record.flags & kEditTextPassword;
  Array<uint16_t> shown(length + 1);
  Array<SCOORD> xs(length + 1);
  if (!shown.at || !xs.at) return false;
  for (int32_t i = 0; i < length; ++i) shown.at[i] = password ? kAsterisk : m_text->buffer[i];

  Array<uint16_t> glyphs(m_outlines ? m_font.FindGlyphs(shown.at, length) : nullptr);
  if (m_outlines && length > 0) {
    if (!glyphs.at) return false;
    MeasureGlyphs(glyphs.at);
  }
  SPOINT size;
  RectSizePoint(&m_text->textRect, &size);
  const int32_t width = WrapSub(WrapSub(size.x, m_record.leftMargin), m_record.rightMargin);
  const int32_t* widths = m_text->charWidths.Entries();
  if (!m_text->CalculateLineStarts(widths, width, m_record.indent)) return false;
  if (m_text->scrollToCursor) {
    m_text->FindCursor(&m_text->textRect, widths);
    m_text->scrollToCursor = false;
  }
  if (!m_text->lineX.Reset(m_text->lineCount + 1)) return false;
  DrawRows(glyphs.at, xs.at);
  return true;
}

// Fills `xs` with where each character of the row starts, from `x`, and behind
// them where the last ends. A field that doesn't wrap shows only what fits.
void EditDrawing::PlaceCharacters(Row* row, SCOORD x, SCOORD* xs) const {
  const int32_t* widths = m_text->charWidths.Entries() + row->start;
  const bool wraps = m_record.flags & kEditTextWordWrap;
  const SCOORD right = WrapSub(m_text->textRect.xmax, m_record.rightMargin);
  int32_t i = 0;
  for (; i < row->count; ++i) {
    const SCOORD end = WrapAdd(x, widths[i]);
    if (!wraps && end > right) break;
    xs[i] = x;
    x = end;
  }
  row->count = i;
  xs[i] = x;
}

// Required: the width to align in is that of the whole rectangle, although the
// positions hold the left margin already.
void EditDrawing::Align(const Row& row, SCOORD* xs) const {
  SPOINT size;
  RectSizePoint(&m_text->textRect, &size);
  SCOORD shift = 0;
  if (m_record.align == kAlignRight) {
    shift = WrapSub(size.x, WrapSub(xs[row.count], xs[0]));
  } else if (m_record.align == kAlignCenter) {
    shift = Asr(WrapSub(WrapAdd(size.x, xs[0]), xs[row.count]), 1);
  }
  if (shift == 0) return;
  for (int32_t i = 0; i <= row.count; ++i) xs[i] = WrapAdd(xs[i], shift);
}

// Whether the cursor belongs on this row, and not on the next although that
// starts at the same character.
bool EditDrawing::HasCursor(const Row& row) const {
  const int32_t cursor = m_text->selectionCursor;
  const int32_t c = cursor - row.start;
  if (c < 0 || c > row.count) return false;
  if (c < row.count) return true;
  return m_text->atLineEnd || cursor >= m_text->length - 1 || c == 0 ||
         m_text->buffer[cursor] == kReturn;
}

// Glyphs, selection and cursor of a row; false once the text has read enough of
// its font.
bool EditDrawing::DrawRow(const Row& row, const uint16_t* glyphs, const SCOORD* xs) {
  const int32_t upper = m_text->SelectionEnd();
  const int32_t a = std::clamp(m_text->SelectionStart() - row.start, 0, row.count);
  const int32_t b = std::clamp(upper - row.start, 0, row.count);

  for (int32_t i = 0; i < row.count; ++i) {
    const uint16_t glyph = glyphs[row.start + i];
    if (glyph == kNoGlyph) continue;
    RColor* color = i >= a && i < b ? m_selectedTextColor : m_textColor;
    m_glyphMat.tx = xs[i];
    MATRIX mat;
    MatrixConcat(&m_glyphMat, &m_text->devMatrix, &mat);
    m_glyphBytes += m_glyphs.Add(m_font.font, glyph, &mat, color);
    if (m_glyphBytes > kMaxGlyphBytes) return false;
  }
  if (a != b) {
    // Required: where the selection goes on, its rectangle meets the next row's.
    const bool goesOn = upper - row.start > row.count;
    const SCOORD bottom = goesOn ? WrapAdd(row.top, m_text->lineHeight) : row.bottom;
    const SRECT rect = {xs[a], xs[b], row.top, bottom};
    AddRect(&rect, &m_text->devMatrix, m_selectionColor, m_object->display, &m_object->edges,
            nullptr);
  }
  if (m_cursorShown && HasCursor(row)) {
    const int32_t c = m_text->selectionCursor - row.start;
    StrokeCursor(&m_text->devMatrix, xs[c], row.top, row.bottom, m_textColor, &m_stroker);
    m_cursorShown = false;
  }
  return true;
}

void EditDrawing::DrawRows(const uint16_t* glyphs, SCOORD* xs) {
  const int32_t visible = m_text->CalcVisibleLines();
  const int32_t lineCount = m_text->lineCount;
  const uint16_t* buffer = m_text->buffer;
  int32_t line = m_text->vscroll > lineCount ? lineCount - 1 : m_text->vscroll;
  int32_t start = m_text->lineStarts.At(line);
  SCOORD top = m_text->textRect.ymin;
  int32_t firstIndent = m_record.indent;
  const int32_t scale = m_text->fontHeight * kHeightToScale;
  m_glyphMat = {scale, 0, 0, scale, 0, WrapAdd(m_text->ascent, top)};

  for (int32_t i = 0; i < visible; ++i) {
    const int32_t next = line < lineCount ? line + 1 : lineCount;
    const SCOORD x = WrapAdd(WrapAdd(m_text->textRect.xmin, m_record.leftMargin), firstIndent);
    firstIndent = 0;
    Row row = {start, m_text->lineStarts.At(next) - start, top, WrapAdd(top, m_text->fontHeight)};
    if (row.count > 0) {
      const uint16_t last = buffer[row.start + row.count - 1];
      if (last == kReturn || last == kLineFeed) --row.count;
      if (last == kReturn) firstIndent = m_record.indent;
    }
    if (m_text->hscroll <= row.count) {
      row.start += m_text->hscroll;
      row.count -= m_text->hscroll;
    } else {
      row.count = 0;
    }
    PlaceCharacters(&row, x, xs);
    Align(row, xs);
    m_text->lineX.Entries()[line] = xs[0];
    if (m_outlines && !DrawRow(row, glyphs, xs)) return;
    if (buffer[row.start] == 0) return;
    start = m_text->lineStarts.At(next);
    line = next;
    top = WrapAdd(top, m_text->lineHeight);
    m_glyphMat.ty = WrapAdd(m_glyphMat.ty, m_text->lineHeight);
  }
}

bool EditDrawing::Run() {
  SPlayer* player = m_object->character->player->splayer;
  if (player && !player->LoadBuiltInFonts()) return false;
  if (!m_text->buffer) return false;
  m_cursorShown = m_outlines && CursorIsShown();
  m_text->devMatrix = m_transform->mat;
  m_text->GetFontDesc(m_font);
  m_text->fontHeight = m_font.fontHeight;
  // A font of the first form has neither codes nor advances.
  if (!m_font.font || m_font.font->tagCode != kTagDefineFont2) return false;
  if (!m_text->charWidths.Reset(m_text->length + 1)) return false;
  if (m_outlines) {
    SetUpOutlines();
  } else if (!SetUpDevice()) {
    return false;
  }
  if (!LayOut()) return false;
  if (!(m_record.flags & kEditTextNoSelect)) m_text->AutoScroll();
  return true;
}

}  // namespace

bool EditText::Draw(const STransform* t, bool outlines) {
  drawn = EditDrawing(this, t, outlines).Run();
  return drawn;
}

bool SObject::DrawEditText(const STransform* t) {
  if (editText) editText->Draw(t, false);
  return true;
}

}  // namespace vexel
