// Putting characters into a field: what its font can show, as much as it may
// hold.
#include <cstring>
#include <new>

#include "geometry/intmath.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

constexpr int kCaseStep = 'a' - 'A';

// `c` as `font` can show it: a font of one case takes the letters of the other.
// 0 for what it can't show.
uint16_t Shown(const FontDesc& font, uint16_t c) {
  if (c == '\r' || c == '\n' || font.FindGlyph(c) != kNoGlyph) return c;
  uint16_t other = c;
  if (c >= 'A' && c <= 'Z') {
    other = static_cast<uint16_t>(c + kCaseStep);
  } else if (c >= 'a' && c <= 'z') {
    other = static_cast<uint16_t>(c - kCaseStep);
  }
  return other != c && font.FindGlyph(other) != kNoGlyph ? other : 0;
}

}  // namespace

void EditText::Insert(const char* bytes, int32_t count) {
  if (count <= 0) return;
  uint16_t* wide = MBCSToWide(bytes, 0, count);
  if (!wide) return;
  InsertWideChars(wide, WideStrLen(wide));
  delete[] wide;
}

// Required: a selection goes even if nothing of the text can be shown.
void EditText::InsertWideChars(const uint16_t* text, int32_t count) {
  if (count <= 0 || !buffer) return;
  auto* copy = new (std::nothrow) uint16_t[static_cast<size_t>(count)];
  if (!copy) return;
  FontDesc font;
  GetFontDesc(font);
  int32_t kept = 0;
  for (int32_t i = 0; i < count; ++i) {
    if (const uint16_t c = Shown(font, text[i])) copy[kept++] = c;
  }
  atLineEnd = false;
  DeleteSelection();
  if (m_insertMode) {
    InsertSpan(copy, kept);
  } else {
    OverwriteSpan(copy, kept);
  }
  delete[] copy;
}

void EditText::InsertSpan(const uint16_t* text, int32_t count) {
  if (maxLength != 0 && count > maxLength - length) count = maxLength - length;
  if (count < 1 || count > kInt32Max - 1 - length || !Expand(length + count)) return;
  const int32_t at = selectionCursor;
  // With the 0 behind the text.
  const auto tail = static_cast<size_t>(length - at) + 1;
  memmove(buffer + at + count, buffer + at, tail * sizeof *buffer);
  memcpy(buffer + at, text, static_cast<size_t>(count) * sizeof *buffer);
  length += count;
  MoveCursor(at + count, false);
}

// Required: a text that is longer than the field may hold ends at the limit as
// soon as something is written over its end.
void EditText::OverwriteSpan(const uint16_t* text, int32_t count) {
  const int32_t at = selectionCursor;
  if (count > kInt32Max - 1 - at) return;
  int32_t end = at + count;
  if (end > length) {
    if (maxLength != 0 && end > maxLength) {
      end = maxLength;
      count = end - at;
      if (count < 1) return;
    }
    if (!Expand(end)) return;
    length = end;
    buffer[end] = 0;
  }
  memcpy(buffer + at, text, static_cast<size_t>(count) * sizeof *buffer);
  MoveCursor(at + count, false);
}

}  // namespace vexel
