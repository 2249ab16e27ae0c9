// Lengths and pieces of texts.
#include "player/multi_byte.h"

#include <gtest/gtest.h>

#include <string>

#include "player/text.h"

namespace vexel::test {
namespace {

std::string Piece(const char* text, int64_t start, int32_t count, bool multiByte = false) {
  char* piece = PlayerStringExtract(text, start, count, multiByte);
  const std::string result = piece ? piece : "(null)";
  FreeStr(piece);
  return result;
}

TEST(PlayerStringTest, CountsBytesInBothForms) {
  EXPECT_EQ(PlayerStringLength("a\xE3\x81", false), 3);
  EXPECT_EQ(PlayerStringLength("a\xE3\x81", true), 3);
  EXPECT_EQ(PlayerStringLength(nullptr, true), 0);
}

TEST(PlayerStringTest, StopsAtTheEnd) {
  const char* text = "abc";
  EXPECT_EQ(PlayerStringIndex(text, 2), text + 2);
  EXPECT_EQ(PlayerStringIndex(text, 9), text + 3);
  EXPECT_EQ(PlayerStringIndex(text, -1), text);
}

TEST(PlayerStringTest, CutsPiecesToTheText) {
  EXPECT_EQ(Piece("hello", 1, 3), "ell");
  EXPECT_EQ(Piece("hello", 1, 3, true), "ell");
  EXPECT_EQ(Piece("hello", -4, 2), "he");
  EXPECT_EQ(Piece("hello", 9, 2), "");
  EXPECT_EQ(Piece("hello", 3, 9), "lo");
  EXPECT_EQ(Piece("hello", 2, -1), "llo");
  EXPECT_EQ(Piece("hello", int64_t{-2147483648} - 1, 2147483647), "hello");
  EXPECT_EQ(Piece(nullptr, 0, 1), "(null)");
}

}  // namespace
}  // namespace vexel::test
