// Where lines start. A character is 100 wide here.
#include <random>

#include "draw_fixture.h"

namespace vexel::test {
namespace {

using Indexes = std::vector<int32_t>;

class EditLayout : public DrawFixture {
 protected:
  // The lines of `characters` in a field as wide as `room` characters.
  Indexes Lines(const std::string& characters, int32_t room, int32_t indent = 0) {
    widths.assign(characters.size() + 1, kAdvance);
    text->SetBuffer(characters.c_str());
    return Break(room * kAdvance, indent) ? LineStarts() : Indexes{};
  }
  bool Break(int32_t maxWidth, int32_t indent) {
    return text->CalculateLineStarts(widths.data(), maxWidth, indent);
  }
  void Wrapping() { Place(Field(author::kEditWordWrap)); }

  std::vector<int32_t> widths;
};

TEST_F(EditLayout, AnEmptyTextIsOneEmptyLine) {
  Wrapping();
  EXPECT_EQ(Lines("", 5), (Indexes{0, 0}));
  EXPECT_EQ(text->lineCount, 1);
}

TEST_F(EditLayout, ABreakCharacterStaysOnTheOldLine) {
  Wrapping();
  EXPECT_EQ(Lines("abc def", 5), (Indexes{0, 4, 7}));
  EXPECT_EQ(Lines("abc-def", 5), (Indexes{0, 4, 7}));
}

TEST_F(EditLayout, WithoutABreakALineEndsBehindTheLastCharacterThatFits) {
  Wrapping();
  EXPECT_EQ(Lines("abcdefg", 5), (Indexes{0, 5, 7}));
  EXPECT_EQ(Lines("abcdefgabcdefg", 5), (Indexes{0, 5, 10, 14}));
}

TEST_F(EditLayout, ALineMayBeExactlyAsWideAsTheField) {
  Wrapping();
  EXPECT_EQ(Lines("abcde", 5), (Indexes{0, 5}));
  widths.assign(6, kAdvance);
  EXPECT_TRUE(Break(499, 0));
  EXPECT_EQ(LineStarts(), (Indexes{0, 4, 5}));
}

// A blank that doesn't fit is no break: the line ends at the one before.
TEST_F(EditLayout, ABreakCharacterMustFitItself) {
  Wrapping();
  EXPECT_EQ(Lines("a bcd e", 5), (Indexes{0, 2, 7}));
  EXPECT_EQ(Lines("abcde f", 5), (Indexes{0, 5, 7}));
}

TEST_F(EditLayout, TheLastOfSeveralBreaksCounts) {
  Wrapping();
  EXPECT_EQ(Lines("a b c def", 7), (Indexes{0, 6, 9}));
}

TEST_F(EditLayout, ABreakDoesNotOutliveItsLine) {
  Wrapping();
  EXPECT_EQ(Lines("a b\rcdefghij", 5), (Indexes{0, 4, 9, 12}));
}

TEST_F(EditLayout, WithoutWrappingOnlyLineEndsBreak) {
  Place(Field());
  EXPECT_EQ(Lines("abc defgh", 2), (Indexes{0, 9}));
  EXPECT_EQ(Lines("abc\rdef\nghi", 2), (Indexes{0, 4, 8, 11}));
}

TEST_F(EditLayout, ALineEndAtTheEndMakesAnEmptyLastLine) {
  Wrapping();
  EXPECT_EQ(Lines("ab\r", 5), (Indexes{0, 3, 3}));
  EXPECT_EQ(Lines("ab\n\r", 5), (Indexes{0, 3, 4, 4}));
}

TEST_F(EditLayout, TheIndentNarrowsTheFirstLineAndThoseBehindAReturn) {
  Wrapping();
  EXPECT_EQ(Lines("abcdefghij", 5, 100), (Indexes{0, 4, 9, 10}));
  EXPECT_EQ(Lines("a\rbcdefghij", 5, 100), (Indexes{0, 2, 6, 11}));
  EXPECT_EQ(Lines("a\nbcdefghij", 5, 100), (Indexes{0, 2, 7, 11}));
}

TEST_F(EditLayout, AnIndentWiderThanTheFieldGivesAnEmptyLine) {
  Wrapping();
  EXPECT_EQ(Lines("abc", 5, 600), (Indexes{0, 0, 3}));
}

TEST_F(EditLayout, AFieldNarrowerThanACharacterGivesUp) {
  Wrapping();
  widths = {100, 101, 100, 0};
  text->SetBuffer("abc");
  EXPECT_FALSE(Break(100, 0));
  EXPECT_TRUE(Break(101, 0));
  text->SetBuffer("a b");  // although there is a break before it
  widths = {50, 20, 101, 0};
  EXPECT_FALSE(Break(100, 0));
  widths = {0, 0, 0, 0};
  EXPECT_FALSE(Break(-1, 0));
  text->SetBuffer("\r\n");  // line ends always fit
  EXPECT_TRUE(Break(-1, 0));
  EXPECT_EQ(LineStarts(), (Indexes{0, 1, 2, 2}));
}

TEST_F(EditLayout, TheTableGrowsWithTheLines) {
  Place(Field());
  for (int lines : {14, 15, 16, 17, 31, 32, 33, 1000}) {
    Indexes expected = {0};
    for (int i = 1; i < lines; ++i) expected.push_back(i);
    expected.push_back(lines - 1);
    EXPECT_EQ(Lines(std::string(static_cast<size_t>(lines) - 1, '\r'), 5), expected) << lines;
  }
}

TEST_F(EditLayout, ANegativeWidthMakesRoom) {
  Wrapping();
  text->SetBuffer("abcd");
  widths = {100, -100, 100, 100, 0};
  EXPECT_TRUE(Break(150, 0));
  EXPECT_EQ(LineStarts(), (Indexes{0, 3, 4}));
}

// The rules word by word, with a table that never ends. It gives up where a
// line is empty and the next would be as well.
Indexes PlainLines(const std::vector<uint16_t>& buffer, const std::vector<int32_t>& widths,
                   bool wraps, int32_t maxWidth, int32_t indent) {
  Indexes starts = {0};
  int32_t x = indent;
  int32_t breakAt = -1;
  size_t p = 0;
  int stuck = 0;
  for (bool more = true; more;) {
    bool ends = true;
    const uint16_t c = buffer[p];
    if (c == 10) {
      ++p;
      x = 0;
    } else if (c == 13) {
      ++p;
      x = indent;
    } else if (c == 0) {
      more = false;
    } else {
      x += widths[p];
      if (wraps && x > maxWidth) {
        x = 0;
        if (breakAt >= 0) p = static_cast<size_t>(breakAt) + 1;
      } else {
        if (c == 32 || c == 45) breakAt = static_cast<int32_t>(p);
        ++p;
        ends = false;
      }
    }
    if (!ends) continue;
    stuck = static_cast<int32_t>(p) == starts.back() ? stuck + 1 : 0;
    if (stuck > 3) return {};
    starts.push_back(static_cast<int32_t>(p));
    breakAt = -1;
  }
  return starts;
}

TEST_F(EditLayout, EqualsItsPlainTwin) {
  std::mt19937 random(20);
  const auto below = [&](uint32_t n) { return static_cast<int32_t>(random() % n); };
  for (int round = 0; round < 20000; ++round) {
    const bool wraps = below(4) != 0;
    const uint16_t signs[] = {'a', 'b', ' ', '-', 10, 13};
    std::vector<uint16_t> buffer;
    widths.clear();
    for (int n = below(40); n > 0; --n) buffer.push_back(signs[below(below(8) ? 4 : 6)]);
    for (size_t i = 0; i <= buffer.size(); ++i) widths.push_back(below(30) - (below(9) ? 0 : 40));
    const int32_t length = static_cast<int32_t>(buffer.size());
    buffer.push_back(0);
    const int32_t maxWidth = below(120);
    const int32_t indent = below(3) ? 0 : below(150);
    if (round == 0) Wrapping();
    std::string bytes(buffer.begin(), buffer.end() - 1);
    text->SetBuffer(bytes.c_str());
    text->flags = wraps ? author::kEditWordWrap : 0;
    ASSERT_EQ(text->length, length);
    const Indexes expected = PlainLines(buffer, widths, wraps, maxWidth, indent);
    const bool ok = Break(maxWidth, indent);
    ASSERT_EQ(ok, !expected.empty()) << "round " << round;
    if (!ok) continue;
    ASSERT_EQ(LineStarts(), expected) << "round " << round;
  }
}

}  // namespace
}  // namespace vexel::test
