#include "base/string_list.h"

#include <gtest/gtest.h>

#include <string>

namespace vexel {
namespace {

std::string Joined(const CQKStringList& list) {
  std::string joined;
  for (void* at = list.GetHeadPosition(); at;) {
    joined += *list.GetNextString(at);
    joined += ' ';
  }
  return joined;
}

TEST(CQKStringList, AlphabeticOrderKnowsNoCase) {
  CQKStringList list;
  list.AddStringAlphabetic("b");
  list.AddStringAlphabetic("A");
  list.AddStringAlphabetic("c");
  EXPECT_EQ(Joined(list), "A b c ");
}

TEST(CQKStringList, EqualStringsStandInTheOrderOfTheirAddition) {
  CQKStringList list;
  for (const char* text : {"b", "B", "a", "A", "b"}) list.AddStringAlphabetic(text);
  EXPECT_EQ(Joined(list), "a A b B b ");
}

// Required: without case sensitivity the prefix is told apart by case just so.
TEST(CQKStringList, APrefixNeverMatchesInAnotherCase) {
  CQKStringList list;
  list.AddTailString("ABc");
  EXPECT_EQ(list.FindPrefixSubstring("ab", nullptr, 0), nullptr);
  EXPECT_EQ(list.FindPrefixSubstring("ab", nullptr, 1), nullptr);
  void* second = list.AddTailString("abc");
  EXPECT_EQ(list.FindPrefixSubstring("ab", nullptr, 0), second);
  EXPECT_EQ(list.FindPrefixSubstring("ab", nullptr, 1), second);
  EXPECT_EQ(list.FindPrefixSubstring("bc", nullptr, 0), nullptr);
  EXPECT_EQ(list.FindPrefixSubstring("abcd", nullptr, 0), nullptr);
}

TEST(CQKStringList, FindsFromAPosition) {
  CQKStringList list;
  void* first = list.AddTailString("One");
  void* second = list.AddTailString("one");
  EXPECT_EQ(list.FindString("one", nullptr, 1), second);
  EXPECT_EQ(list.FindString("one", nullptr, 0), first);
  EXPECT_EQ(list.FindString("ONE", second, 0), second);
  EXPECT_EQ(list.FindString("on", nullptr, 0), nullptr);
  EXPECT_EQ(list.FindString(nullptr, nullptr, 0), nullptr);
}

TEST(CQKStringList, RemovedStringsAreTheCallers) {
  CQKStringList list;
  list.AddHeadString("b");
  list.AddHeadString("a");
  list.AddTailString("c");
  CQKString* head = list.RemoveHeadString();
  CQKString* tail = list.RemoveTailString();
  EXPECT_TRUE(*head == "a");
  EXPECT_TRUE(*tail == "c");
  delete head;
  delete tail;
  list.RemoveAll();
  EXPECT_EQ(list.RemoveHeadString(), nullptr);
}

}  // namespace
}  // namespace vexel
