// Copies, comparison and prefixes.
#include "player/text.h"

#include <gtest/gtest.h>

namespace vexel::test {
namespace {

TEST(CreateStrTest, CopiesAndPassesNullOn) {
  EXPECT_EQ(CreateStr(nullptr), nullptr);
  char* text = CreateStr("abcdef", 3);
  EXPECT_STREQ(text, "abc");
  FreeStr(text);
  FreeStr(nullptr);
}

TEST(StrEqualTest, IgnoresTheCaseOfLettersOnly) {
  EXPECT_TRUE(StrEqual("ABC", "abc"));
  EXPECT_FALSE(StrEqual("abc", "ab"));
  EXPECT_FALSE(StrEqual("[", "{"));
  EXPECT_FALSE(StrEqual("\xC9", "\xE9"));
  EXPECT_FALSE(StrEqual(nullptr, ""));
  EXPECT_FALSE(StrEqual("", nullptr));
  EXPECT_TRUE(StrEqual("", ""));
}

TEST(StripPrefixTest, GivesWhatFollowsThePrefixInAnyCase) {
  const char* text = "_LEVEL3";
  EXPECT_EQ(StripPrefix(text, "_level"), text + 6);
  EXPECT_EQ(StripPrefix(text, ""), text);
  EXPECT_EQ(StripPrefix(text, "_vexel"), nullptr);
  EXPECT_EQ(StripPrefix("_le", "_level"), nullptr);
  EXPECT_EQ(StripPrefix(nullptr, "a"), nullptr);
}

}  // namespace
}  // namespace vexel::test
