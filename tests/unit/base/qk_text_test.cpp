#include "base/qk_text.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

TEST(QKText, DoubleByteTextIsSwitchedOff) {
  DBCSEnabled = true;
  EXPECT_FALSE(QKIsDBCSEnabled());
  EXPECT_FALSE(DBCSEnabled);
  EXPECT_FALSE(QKIsLeadByte('\x81'));
}

TEST(QKText, StepsByOneCharacter) {
  const char* text = "abc";
  EXPECT_EQ(QKGetNextChar(text), text + 1);
  EXPECT_EQ(QKGetPrevChar(text, text + 2), text + 1);
  EXPECT_EQ(QKGetPrevChar(text, nullptr), nullptr);
  EXPECT_TRUE(QKIsEqual(text, 'a'));
  EXPECT_FALSE(QKIsEqual(text, 'b'));
}

TEST(QKText, Finds) {
  const char* text = "abcabc";
  EXPECT_EQ(QKFindChar(text, 'b'), text + 1);
  EXPECT_EQ(QKFindChar(text, 'x'), nullptr);
  EXPECT_EQ(QKReverseFindChar(text, 'b'), text + 4);
  EXPECT_EQ(QKFindString(text, "ca"), text + 2);
  EXPECT_EQ(QKFindString(text, "cc"), nullptr);
}

TEST(QKText, NullIsLessThanText) {
  EXPECT_EQ(QKCompareStrings(nullptr, nullptr, 5), 0);
  EXPECT_LT(QKCompareStrings(nullptr, "", 5), 0);
  EXPECT_GT(QKCompareStrings("", nullptr, 5), 0);
  EXPECT_EQ(QKCompareStrings("abcd", "abce", 3), 0);
  EXPECT_LT(QKCompareStrings("abcd", "abce", 4), 0);
}

TEST(QKText, HashesSignedCharacters) {
  EXPECT_EQ(HashKey(""), 0u);
  EXPECT_EQ(HashKey("a"), 97u);
  EXPECT_EQ(HashKey("ab"), 97u * 33 + 98);
  EXPECT_EQ(HashKey("\xFF"), 0xFFFFFFFFu);
  EXPECT_EQ(HashKey("b\x80"), 98u * 33 - 128);
}

TEST(QKText, KnowsBlanks) {
  for (char c : {' ', '\t', '\n', '\v', '\f', '\r'}) EXPECT_TRUE(safe_isspace(c));
  for (char c : {'a', '\0', '\xA0', '\xFF'}) EXPECT_FALSE(safe_isspace(c));
}

}  // namespace
}  // namespace vexel
