// What scripts may keep: variables of a timeline, and bytes of text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "movie/budget.h"
#include "movie/script_thread.h"

namespace vexel {
namespace {

std::string NameOf(int32_t i) {
  std::string name = "v";
  return name += std::to_string(i);
}

TEST(VariableBudget, TheLastVariableIsKeptAndTheNextOneIsNot) {
  ScriptThread thread;
  for (int32_t i = 0; i <= kMaxVariables; ++i) thread.SetVariable(NameOf(i).c_str(), "1");
  EXPECT_STREQ(thread.lastVariable->name, NameOf(kMaxVariables - 1).c_str());
  EXPECT_EQ(thread.FindVariable(NameOf(kMaxVariables).c_str()), nullptr);
  int32_t count = 0;
  for (const ScriptVariable* v = thread.firstVariable; v; v = v->next) ++count;
  EXPECT_EQ(count, kMaxVariables);

  // Those that exist may still change, and other timelines have their own.
  thread.SetVariable("V7", "other");
  EXPECT_STREQ(thread.FindVariable("v7")->Text(), "other");
  ScriptThread another;
  another.SetVariable("x", "1");
  EXPECT_NE(another.FindVariable("x"), nullptr);

  thread.ClearVariables();
  thread.SetVariable("x", "1");
  EXPECT_STREQ(thread.lastVariable->name, "x");
}

TEST(VariableBudget, AFullTimelineFindsEachOfItsVariables) {
  ScriptThread thread;
  for (int32_t i = 0; i < kMaxVariables; ++i) {
    thread.SetVariable(NameOf(i).c_str(), std::to_string(i).c_str());
  }
  for (int32_t i = 0; i < kMaxVariables; i += 97) {
    ScriptVariable* found = thread.FindVariable(NameOf(i).c_str());
    ASSERT_NE(found, nullptr) << i;
    EXPECT_EQ(found->Text(), std::to_string(i));
  }
}

TEST(TextBudget, AValueHoldsAMebibyteAndNoMore) {
  const std::string most(static_cast<size_t>(kMaxValueText), 'a');
  EXPECT_FALSE(ScriptValue::Copy(most.c_str()).IsNone());
  EXPECT_TRUE(ScriptValue::Copy((most + "a").c_str()).IsNone());
  EXPECT_TRUE(ScriptValue::Concat(ScriptValue::Copy(most.c_str()), {"a", 1}).IsNone());
}

TEST(TextBudget, AllValuesTogetherHold64MebibytesAndGiveThemBack) {
  const std::string most(static_cast<size_t>(kMaxValueText), 'a');
  for (int round = 0; round < 2; ++round) {
    std::vector<ScriptValue> values;
    while (values.size() <= 64) {
      ScriptValue value = ScriptValue::Copy(most.c_str());
      if (value.IsNone()) break;
      values.push_back(value);
    }
    // Each block takes a few bytes beside its text.
    EXPECT_EQ(values.size(), 63u);
    EXPECT_FALSE(ScriptValue::Copy("small").IsNone());
  }
}

TEST(TextBudget, NamesCountAsText) {
  const std::string most(static_cast<size_t>(kMaxValueText), 'n');
  ScriptThread thread;
  for (int i = 0; i < 70; ++i) thread.SetVariable((most.substr(8) + NameOf(i)).c_str(), "");
  int32_t count = 0;
  for (const ScriptVariable* v = thread.firstVariable; v; v = v->next) ++count;
  EXPECT_LT(count, 64);
  EXPECT_GT(count, 60);
}

}  // namespace
}  // namespace vexel
