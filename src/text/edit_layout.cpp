// Where the lines of a text start.
#include <new>

#include "geometry/intmath.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

constexpr int32_t kFirstEntries = 16;
constexpr int32_t kNone = -1;

constexpr uint16_t kLineFeed = 10;
constexpr uint16_t kReturn = 13;

// The table as it grows, doubling.
class LineTable {
 public:
  explicit LineTable(IntTable* table) : m_table(table) {}

  bool Start() { return m_table->Reset(kFirstEntries); }
  // Entry `line` becomes `at`; false without memory.
  bool Store(int32_t line, int32_t at) {
    if (line >= m_table->Count() && !Grow()) return false;
    m_table->Entries()[line] = at;
    return true;
  }

 private:
  bool Grow() {
    const int32_t count = m_table->Count();
    auto* grown = new (std::nothrow) int32_t[2 * static_cast<size_t>(count)]();
    if (!grown) return false;
    for (int32_t i = 0; i < count; ++i) grown[i] = m_table->At(i);
    m_table->Take(grown, 2 * count);
    return true;
  }

  IntTable* m_table;
};

}  // namespace

// Required: a line behind a character 13 starts at the indent, one behind a
// character 10 and one that was wrapped do not.
bool EditText::CalculateLineStarts(const int32_t* widths, int32_t maxWidth, int32_t indent) {
  LineTable lines(&lineStarts);
  lineCount = 0;
  if (!lines.Start()) return false;
  const bool wraps = flags & kEditTextWordWrap;
  int32_t x = indent;
  int32_t at = 0;
  int32_t breakAt = kNone;
  for (;;) {
    const uint16_t c = buffer[at];
    if (c == kLineFeed || c == kReturn) {
      x = c == kReturn ? indent : 0;
      ++at;
    } else if (c != 0) {
      x = WrapAdd(x, widths[at]);
      if (!wraps || x <= maxWidth) {
        if (LineBreakOK(c, buffer[at + 1])) breakAt = at;
        ++at;
        continue;
      }
      // The character that broke the line stays on it. Without one the line
      // ends here, which helps only if an empty line has room for this one.
      if (breakAt == kNone && widths[at] > maxWidth) return false;
      if (breakAt != kNone) at = breakAt + 1;
      x = 0;
    }
    if (!lines.Store(++lineCount, at)) return false;
    breakAt = kNone;
    if (c == 0) return true;
  }
}

}  // namespace vexel
