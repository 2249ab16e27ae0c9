#include "base/dll_access_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace vexel {
namespace {

class DLLAccessPathTest : public testing::Test {
 protected:
  DLLAccessPathTest() { paths->AddRef(); }
  ~DLLAccessPathTest() override { EXPECT_EQ(paths->Release(), 0u); }

  DLLAccessPath* paths = new DLLAccessPath;
};

TEST_F(DLLAccessPathTest, EveryDirectoryEndsInOneSlash) {
  EXPECT_EQ(paths->SetAccessPaths("DT_Plugins=/a/b\0DT_Codecs=/c/d/\0"), ZEM_OK);
  EXPECT_STREQ(paths->GetPath("DT_Plugins"), "/a/b/");
  EXPECT_STREQ(paths->GetPath("DT_Codecs"), "/c/d/");
  EXPECT_EQ(paths->GetNumPaths(), 2);
}

TEST_F(DLLAccessPathTest, OnlySixTypesHaveAName) {
  EXPECT_EQ(paths->GetPath(6), nullptr);
  EXPECT_EQ(paths->SetPath(6, "/x"), ZEM_FAILED);
  EXPECT_EQ(DLLAccessPath::GetLibTypeName(6), nullptr);
  EXPECT_STREQ(DLLAccessPath::GetLibTypeName(0), "DT_NotDef");
  EXPECT_STREQ(DLLAccessPath::GetLibTypeName(5), "DT_Update");
  EXPECT_EQ(paths->SetPath(3, "/sdk"), ZEM_OK);
  EXPECT_STREQ(paths->GetPath("DT_EncSDK"), "/sdk/");
  EXPECT_STREQ(paths->GetPath(3), "/sdk/");
  EXPECT_EQ(paths->GetPath(4), nullptr);
}

TEST_F(DLLAccessPathTest, SkipsEntriesWithoutADirectory) {
  EXPECT_EQ(paths->SetAccessPaths("nothing\0DT_Common=/c=d\0"), ZEM_OK);
  EXPECT_EQ(paths->GetNumPaths(), 1);
  EXPECT_STREQ(paths->GetPath(4), "/c=d/");
  EXPECT_EQ(paths->SetAccessPaths(""), ZEM_OK);
  EXPECT_EQ(paths->SetAccessPaths(nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(DLLAccessPathTest, ReplacesAndIgnoresNull) {
  paths->SetPath(1, "/a");
  EXPECT_EQ(paths->SetPath(1, nullptr), ZEM_OK);
  EXPECT_STREQ(paths->GetPath(1), "/a/");
  paths->SetPath(1, "/b");
  EXPECT_STREQ(paths->GetPath(1), "/b/");
  EXPECT_EQ(paths->GetPath(nullptr), nullptr);
  EXPECT_EQ(paths->SetPath(static_cast<const char*>(nullptr), "/b"), ZEM_BAD_ARGUMENT);
}

DLLAccessPath* g_other;
int g_calls;

INT32 PassOn(const char* entries) {
  g_calls++;
  return g_other->SetAccessPaths(entries);
}

TEST_F(DLLAccessPathTest, PassesItsPathsOn) {
  DLLAccessPath other;
  g_other = &other;
  g_calls = 0;
  EXPECT_EQ(paths->PassDLLAccessPath(PassOn), ZEM_OK);
  EXPECT_EQ(paths->PassDLLAccessPath(nullptr), ZEM_OK);
  EXPECT_EQ(g_calls, 0);
  paths->SetAccessPaths("DT_Plugins=/a/b\0DT_Codecs=/c/d/\0");
  EXPECT_EQ(paths->PassDLLAccessPath(PassOn), ZEM_OK);
  EXPECT_EQ(g_calls, 1);
  EXPECT_EQ(other.GetNumPaths(), 2);
  EXPECT_STREQ(other.GetPath(1), "/a/b/");
  EXPECT_EQ(paths->PassDLLAccessPath(nullptr), ZEM_BAD_ARGUMENT);
}

// Required: the separator is a semicolon.
TEST_F(DLLAccessPathTest, PutsADirectoryInFrontOfThePath) {
  std::string before = getenv("PATH");
  EXPECT_EQ(paths->AddPathToEnvironment(nullptr), ZEM_OK);
  EXPECT_EQ(getenv("PATH"), before);
  EXPECT_EQ(paths->RestoreEnvironment(), ZEM_OK);
  EXPECT_EQ(paths->AddPathToEnvironment("/x"), ZEM_OK);
  EXPECT_EQ(getenv("PATH"), "/x;" + before);
  EXPECT_EQ(paths->AddPathToEnvironment("/y"), ZEM_OK);
  EXPECT_EQ(getenv("PATH"), "/y;/x;" + before);
  EXPECT_EQ(paths->RestoreEnvironment(), ZEM_OK);
  EXPECT_EQ(getenv("PATH"), before);
  unsetenv("PATH");
  EXPECT_EQ(paths->AddPathToEnvironment("/x"), ZEM_OK);
  EXPECT_STREQ(getenv("PATH"), "/x");
  EXPECT_EQ(paths->RestoreEnvironment(), ZEM_OK);
  EXPECT_STREQ(getenv("PATH"), "");
  setenv("PATH", before.c_str(), 1);
}

}  // namespace
}  // namespace vexel
