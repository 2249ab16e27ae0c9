#include "http/mime_scanner.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace vexel {
namespace {

constexpr int kEnd = MIMEInputStream::kEnd;

// The tokens of a text, each as "text>ended by", or "text$" at the end.
std::string Tokens(const std::string& text, const char* delimiters, int count = 10) {
  MIMEInputStream stream(text.data(), static_cast<UINT32>(text.size()));
  MIMEScanner scanner(stream);
  std::string tokens;
  while (count-- > 0) {
    MIMEToken token = scanner.nextToken(delimiters);
    tokens += std::string(token.text, static_cast<size_t>(token.text.GetLength()));
    if (token.end == kEnd) return tokens + '$';
    tokens += '>';
    tokens += static_cast<char>(token.end);
    tokens += ' ';
  }
  return tokens;
}

TEST(MIMEInputStream, ReadsAndPushesBack) {
  MIMEInputStream stream("abc", 3);
  EXPECT_EQ(stream.peek(), 'a');
  EXPECT_EQ(stream.read(), 'a');
  stream.pushBack('x');
  EXPECT_EQ(stream.available(), 2u);
  EXPECT_EQ(stream.peek(), 'x');
  EXPECT_EQ(stream.read(), 'x');
  char rest[5];
  EXPECT_EQ(stream.read(rest, 5), 2u);
  EXPECT_EQ(std::string(rest, 2), "bc");
  EXPECT_EQ(stream.read(), kEnd);
  stream.pushBack(kEnd);
  EXPECT_EQ(stream.read(), kEnd);
  EXPECT_EQ(stream.position(), 3u);
}

TEST(MIMEInputStream, NeverGetsPastAByteOf255) {
  MIMEInputStream stream(
      "a\xFF"
      "b",
      3);
  EXPECT_EQ(stream.read(), 'a');
  EXPECT_EQ(stream.read(), kEnd);
  EXPECT_EQ(stream.read(), kEnd);
  EXPECT_EQ(stream.available(), 2u);
}

TEST(MIMEInputStream, BytesAreSigned) {
  MIMEInputStream stream("\x80\0", 2);
  EXPECT_EQ(stream.read(), -128);
  EXPECT_EQ(stream.read(), 0);
  EXPECT_EQ(stream.read(), kEnd);
}

TEST(MIMEInputStream, MeasuresTheDistanceToASet) {
  MIMEInputStream stream("ab,c\xFF", 5);
  EXPECT_EQ(stream.max_distance_to(",;"), 2u);
  EXPECT_EQ(stream.max_distance_to(";"), 4u);
  stream.pushBack('x');
  EXPECT_EQ(stream.max_distance_to(","), 3u);
  EXPECT_EQ(stream.max_distance_to("x"), 0u);
}

TEST(MIMEScanner, SplitsAtDelimiters) {
  EXPECT_EQ(Tokens("a, b ,,c", ","), "a>, b >, >, c$");
  EXPECT_EQ(Tokens("a=b;c", "=;"), "a>= b>; c$");
  EXPECT_EQ(Tokens("", ","), "$");
  EXPECT_EQ(Tokens(std::string("a\0b,c", 5), ","), std::string("a\0b>, c$", 8));
}

TEST(MIMEScanner, ATokenHasTheRoomThatItNeeds) {
  MIMEInputStream stream("abc,defg", 8);
  MIMEScanner scanner(stream);
  EXPECT_EQ(scanner.nextToken(",").text.GetAllocLength(), 3);
  EXPECT_EQ(scanner.nextToken(",").text.GetAllocLength(), 4);
}

TEST(MIMEScanner, SplitsAtAnyCharacters) {
  EXPECT_EQ(Tokens("a|b;c", "|"), "a>| b;c$");
  EXPECT_EQ(Tokens("axbyc", "0123456789abcdefgxyz"), ">a >x >b >y >c $");
}

TEST(MIMEScanner, TakesThreeKindsOfLineEnds) {
  EXPECT_EQ(Tokens("a\nb\r\nc\n\rd\re", "\n"), "a>\n b>\n c>\n d>\n e$");
  EXPECT_EQ(Tokens("a\r\n\r\nb", "\n"), "a>\n >\n b$");
  EXPECT_EQ(Tokens("a\n\nb", "\n"), "a>\n >\n b$");
  EXPECT_EQ(Tokens("a\r", "\n"), "a>\n $");
  EXPECT_EQ(Tokens("a\r\n", "\n"), "a>\n $");
}

TEST(MIMEScanner, JoinsFoldedLines) {
  EXPECT_EQ(Tokens("a\r\n  b\n\tc\n\r d\r e", "\n"), "abcde$");
  // An empty line does not go on, unless its end is a single character.
  EXPECT_EQ(Tokens("\r\n b", "\n"), ">\n b$");
  EXPECT_EQ(Tokens("\n b", "\n"), "b$");
}

TEST(MIMEScanner, ACarriageReturnMayBeADelimiter) {
  EXPECT_EQ(Tokens("a\rb\nc", "\r"), "a>\r b>\n c$");
}

// The scanner's rules, a character at a time.
class PlainScanner {
 public:
  explicit PlainScanner(const std::string& text)
      : m_stream(text.data(), static_cast<UINT32>(text.size())) {}

  std::string Next(const std::string& delimiters, int& end) {
    std::string text;
    SkipBlanks();
    for (;;) {
      end = m_stream.read();
      if (end == kEnd) return text;
      if (end != '\n' && delimiters.find(static_cast<char>(end)) != std::string::npos) return text;
      if (end != '\r' && end != '\n') {
        text += static_cast<char>(end);
        continue;
      }
      int c = m_stream.read();
      bool folds = c == ' ' || c == '\t';
      if (c == (end == '\r' ? '\n' : '\r')) {
        c = m_stream.read();
        folds = (c == ' ' || c == '\t') && !text.empty();
      }
      if (!folds) {
        m_stream.pushBack(c);
        end = '\n';
        return text;
      }
      SkipBlanks();
    }
  }
  UINT32 Position() const { return m_stream.position(); }

 private:
  void SkipBlanks() {
    int c = m_stream.read();
    while (c == ' ' || c == '\t') c = m_stream.read();
    m_stream.pushBack(c);
  }
  MIMEInputStream m_stream;
};

TEST(MIMEScanner, AgreesWithItsPlainTwin) {
  std::mt19937 random(23);
  const char* const sets[] = {"\n", ":", ",", ";", "=;", "\t \n", " ", "=,", "\r", "|", "a\r:"};
  const std::string letters("ab\r\n\r\n \t:,;=|\xFF\0", 15);
  for (int round = 0; round < 30000; round++) {
    std::string text;
    for (unsigned i = random() % 30; i > 0; i--) text += letters[random() % letters.size()];
    MIMEInputStream stream(text.data(), static_cast<UINT32>(text.size()));
    MIMEScanner scanner(stream);
    PlainScanner plain(text);
    for (int step = 0; step < 12; step++) {
      const char* set = sets[random() % std::size(sets)];
      int end = 0;
      const std::string expected = plain.Next(set, end);
      const MIMEToken token = scanner.nextToken(set);
      ASSERT_EQ(std::string(token.text, static_cast<size_t>(token.text.GetLength())), expected)
          << testing::PrintToString(text);
      ASSERT_EQ(token.end, end) << testing::PrintToString(text);
      ASSERT_EQ(stream.position(), plain.Position()) << testing::PrintToString(text);
    }
  }
}

TEST(MIMEScanner, ReadsWords) {
  EXPECT_EQ(Tokens("GET", nullptr), "GET$");
  EXPECT_EQ(Tokens("a b", nullptr, 1), "a>  ");
  EXPECT_EQ(Tokens("a-b", nullptr, 1), "a>- ");
  EXPECT_EQ(Tokens("a\x7F", nullptr, 1), "a>\x7F ");
  EXPECT_EQ(Tokens(std::string("a\0", 2), nullptr, 1), std::string("a>\0 ", 4));
  // What ends a word stays.
  EXPECT_EQ(Tokens("a:b", nullptr, 3), "a>: >: >: ");
  EXPECT_EQ(Tokens("\xE4\xF6", nullptr), "\xE4\xF6$");
}

TEST(MIMEScanner, LineEndsAreEmptyWords) {
  EXPECT_EQ(Tokens("\r\nx", nullptr), ">\n x$");
  EXPECT_EQ(Tokens("\n\rx", nullptr), ">\n x$");
  EXPECT_EQ(Tokens("\nx", nullptr), ">\n x$");
  EXPECT_EQ(Tokens("\n", nullptr), ">\n $");
}

TEST(MIMEScanner, ReadsQuotedText) {
  EXPECT_EQ(Tokens("\"a b;c\"d", nullptr), "a b;c>d d$");
  EXPECT_EQ(Tokens("\"a", nullptr), "a$");
  EXPECT_EQ(Tokens("\"a\"", nullptr), "a$");
  EXPECT_EQ(Tokens("\"a\\\"b\"", nullptr), "a\"b$");
}

// Required: any character but a quote comes twice behind a backslash.
TEST(MIMEScanner, ABackslashDoublesTheNextCharacter) {
  EXPECT_EQ(Tokens("\"a\\bc\"", nullptr), "abbc$");
  EXPECT_EQ(Tokens("a\\ b", nullptr, 1), "a >  ");
  EXPECT_EQ(Tokens("a\\", nullptr), "a$");
}

}  // namespace
}  // namespace vexel
