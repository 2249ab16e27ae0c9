#include "author/script/button_events.h"

#include <gtest/gtest.h>

namespace vexel::author {
namespace {

uint16_t Parse(const std::string& text) {
  const SourceText source("button", text);
  return ParseConditions(WholeSource(source));
}

std::string ErrorOf(const std::string& text) {
  try {
    Parse(text);
  } catch (const SourceError& error) {
    return error.what();
  }
  return "none";
}

TEST(ButtonEvents, EveryConditionWordComesBackTheSame) {
  for (int word = 0; word < 0x10000; ++word) {
    ASSERT_EQ(Parse(ConditionText(static_cast<uint16_t>(word))), word) << ConditionText(word);
  }
}

TEST(ButtonEvents, WordsAreThoseOfAPerson) {
  EXPECT_EQ(ConditionText(1 << kEventPress | 1 << kEventRelease), "press, release");
  EXPECT_EQ(ConditionText(1 << kKeyShift), "key left");
  EXPECT_EQ(ConditionText('a' << kKeyShift), "key \"a\"");
  EXPECT_EQ(ConditionText(20 << kKeyShift | 1), "rollOver, key 20");
  EXPECT_EQ(ConditionText(0), "never");
  EXPECT_EQ(Parse("key 65"), 65 << kKeyShift);
  EXPECT_EQ(Parse("key space , release"), 32 << kKeyShift | 1 << kEventRelease);
}

TEST(ButtonEvents, MistakesTellPlaceAndHint) {
  EXPECT_EQ(ErrorOf("press, relese"),
            "button:1:8: here stands an event of a button, such as press, or key with a key; "
            "did you mean release?\n"
            "press, relese\n"
            "       ^");
  EXPECT_NE(ErrorOf("key lft").find("did you mean left?"), std::string::npos);
  EXPECT_NE(ErrorOf("key 128").find("1 to 127"), std::string::npos);
  EXPECT_NE(ErrorOf("key 0").find("1 to 127"), std::string::npos);
  EXPECT_NE(ErrorOf("key 99999999999999999999").find("1 to 127"), std::string::npos);
  EXPECT_NE(ErrorOf("key \"ab\"").find("one character"), std::string::npos);
  EXPECT_NE(ErrorOf("key left, key right").find("one key at most"), std::string::npos);
  EXPECT_NE(ErrorOf("press release").find("a comma"), std::string::npos);
  EXPECT_NE(ErrorOf("").find("an event"), std::string::npos);
}

}  // namespace
}  // namespace vexel::author
