// The variables of a timeline.
#include <gtest/gtest.h>

#include <string>

#include "movie/budget.h"
#include "movie/script_thread.h"

namespace vexel {
namespace {

std::string All(const ScriptThread& thread) {
  std::string out;
  for (ScriptVariable* v = thread.firstVariable; v; v = v->next) {
    out += std::string(v->name) + '=' + (v->Text() ? v->Text() : "(null)") + ' ';
  }
  return out;
}

TEST(Variables, StandInOrderOfCreation) {
  ScriptThread thread;
  thread.SetVariable("b", "1");
  thread.SetVariable("a", "2");
  thread.SetVariable("c", nullptr);
  thread.SetVariable("b", "3");
  EXPECT_EQ(All(thread), "b=3 a=2 c=(null) ");
  EXPECT_STREQ(thread.lastVariable->name, "c");
}

TEST(Variables, NamesIgnoreCaseAndKeepTheFirstSpelling) {
  ScriptThread thread;
  thread.SetVariable("Foo", "1");
  thread.SetVariable("FOO", "2");
  EXPECT_EQ(All(thread), "Foo=2 ");
  EXPECT_STREQ(thread.FindVariable("foo")->Text(), "2");
  EXPECT_EQ(thread.FindVariable("fo"), nullptr);
  EXPECT_EQ(thread.FindVariable(nullptr), nullptr);
}

TEST(Variables, WithoutANameAreIgnored) {
  ScriptThread thread;
  thread.SetVariable(nullptr, "1");
  thread.SetVariable("", "1");
  EXPECT_EQ(All(thread), "");
}

TEST(Variables, MayTakeAPartOfTheirOwnValue) {
  ScriptThread thread;
  thread.SetVariable("x", "abcdef");
  thread.SetVariable("x", thread.FindVariable("x")->Text() + 3);
  EXPECT_EQ(All(thread), "x=def ");
}

TEST(Variables, AreClearedTogether) {
  ScriptThread thread;
  thread.SetVariable("x", "1");
  thread.ClearVariables();
  EXPECT_EQ(All(thread), "");
  EXPECT_EQ(thread.lastVariable, nullptr);
  thread.SetVariable("y", "1");
  EXPECT_EQ(All(thread), "y=1 ");
}

TEST(Variables, AreFoundAmongManyAndKeepTheirOrder) {
  ScriptThread thread;
  for (int i = 0; i < 3000; ++i) {
    thread.SetVariable(std::to_string(i).append("Name").c_str(), std::to_string(i).c_str());
  }
  int i = 0;
  for (ScriptVariable* v = thread.firstVariable; v; v = v->next, ++i) {
    const std::string number = std::to_string(i);
    ASSERT_EQ(v->name, number + "Name");
    ASSERT_EQ(thread.FindVariable((number + "nAME").c_str()), v);
    ASSERT_STREQ(v->Text(), number.c_str());
  }
  EXPECT_EQ(i, 3000);
  EXPECT_EQ(thread.FindVariable("3000Name"), nullptr);
  EXPECT_EQ(thread.FindVariable("1"), nullptr);
  thread.ClearVariables();
  EXPECT_EQ(thread.FindVariable("0Name"), nullptr);
}

TEST(Variables, NamesAndRecordsCountAsScriptText) {
  ScriptThread thread;
  const std::string name(1 << 20, 'n');
  for (int i = 0; i < 100; ++i)
    thread.SetVariable((name.substr(8) + std::to_string(i)).c_str(), "");
  int count = 0;
  for (ScriptVariable* v = thread.firstVariable; v; v = v->next) ++count;
  EXPECT_LE(count, 64);
  EXPECT_GE(count, 60);
  thread.ClearVariables();
  thread.SetVariable(name.c_str(), "");
  EXPECT_NE(thread.firstVariable, nullptr);
  thread.SetVariable((name + "n").c_str(), "");
  EXPECT_EQ(thread.firstVariable->next, nullptr);
}

TEST(Variables, TheirEpochChangesWhenSomeAreFreed) {
  const uint64_t before = ScriptThread::VariableEpoch();
  ScriptThread thread;
  thread.ClearVariables();
  thread.SetVariable("x", "1");
  EXPECT_EQ(ScriptThread::VariableEpoch(), before);
  thread.ClearVariables();
  EXPECT_NE(ScriptThread::VariableEpoch(), before);
}

TEST(Variables, OutliveANewScript) {
  ScriptThread thread;
  thread.SetVariable("x", "1");
  thread.ClearState();
  EXPECT_EQ(All(thread), "x=1 ");
}

}  // namespace
}  // namespace vexel
