#include "client/core/preferences.h"

#include <gtest/gtest.h>

#include "client/core/values.h"
#include "unit/client/temp_folder.h"

namespace vexel::client {
namespace {

std::string Read(Preferences* preferences, const char* key) {
  Ref<IZEMBuffer> value;
  return preferences->ReadPref(key, value.Out()) < 0 ? "(none)" : TextOf(value.get());
}

TEST(Preferences, AreKeptInAFileWhoseFolderIsMade) {
  const TempFolder folder;
  const std::string path = folder / "some/where/preferences.ini";
  const auto first = Make<Preferences>(path);
  EXPECT_EQ(Read(first.get(), "Quality"), "(none)");
  EXPECT_EQ(first->WritePref("Quality", NewTextBuffer("2").get()), ZEM_OK);
  EXPECT_EQ(Read(first.get(), "Quality"), "2");
  EXPECT_EQ(Read(Make<Preferences>(path).get(), "Quality"), "2");
}

TEST(Preferences, ValuesAreZeroTerminatedTexts) {
  const auto preferences = Make<Preferences>("");
  preferences->Set("KestVexelDrawingMax", "70");
  Ref<IZEMBuffer> value;
  EXPECT_EQ(preferences->ReadPref("KestVexelDrawingMax", value.Out()), ZEM_OK);
  EXPECT_EQ(value->GetSize(), 3u);
  EXPECT_EQ(BytesOf(value.get())[2], 0);
}

TEST(Preferences, AnyBytesAreAValue) {
  const TempFolder folder;
  const std::string path = folder / "p.ini";
  const std::string odd = "a=b\n[c]\t\xFF\\ ;#";
  EXPECT_TRUE(Make<Preferences>(path)->Set("Odd", odd));
  EXPECT_EQ(Read(Make<Preferences>(path).get(), "Odd"), odd);
}

TEST(Preferences, OnlyPlainKeysAreWritten) {
  const auto preferences = Make<Preferences>("");
  const auto value = NewTextBuffer("1");
  for (const char* key : {"", "a=b", "[x]", "a b", "a\nb"})
    EXPECT_EQ(preferences->WritePref(key, value.get()), ZEM_BAD_ARGUMENT) << key;
  EXPECT_EQ(preferences->WritePref(nullptr, value.get()), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(preferences->WritePref("a", nullptr), ZEM_BAD_ARGUMENT);
  Ref<IZEMBuffer> out;
  EXPECT_EQ(preferences->ReadPref(nullptr, out.Out()), ZEM_BAD_ARGUMENT);
}

TEST(Preferences, KeysOfOneKindAreListedInOrder) {
  const auto preferences = Make<Preferences>("");
  for (const char* key : {"Pages.b", "Page", "Pages.a", "Pagest", "Quality"})
    preferences->Set(key, "1");
  EXPECT_EQ(preferences->Keys("Pages."), (std::vector<std::string>{"Pages.a", "Pages.b"}));
  EXPECT_TRUE(preferences->Keys("Zoo").empty());
}

TEST(Preferences, WhatIsRemovedIsGoneFromTheFile) {
  const TempFolder folder;
  const std::string path = folder / "p.ini";
  const auto preferences = Make<Preferences>(path);
  preferences->Set("a", "1");
  preferences->Set("b", "2");
  EXPECT_TRUE(preferences->Remove("a"));
  EXPECT_TRUE(preferences->Remove("never there"));
  const auto again = Make<Preferences>(path);
  EXPECT_EQ(Read(again.get(), "a"), "(none)");
  EXPECT_EQ(Read(again.get(), "b"), "2");
}

TEST(Preferences, ADamagedFileIsAnEmptyOne) {
  const TempFolder folder;
  const std::string path = folder.Write("p.ini", "no group\x01\xFF = [");
  EXPECT_EQ(Read(Make<Preferences>(path).get(), "Quality"), "(none)");
}

TEST(Preferences, SettingForNowLeavesTheFileAlone) {
  const TempFolder folder;
  const std::string path = folder / "p.ini";
  const auto preferences = Make<Preferences>(path);
  preferences->Set("Quality", "1");
  preferences->SetForNow("Quality", "4");
  EXPECT_EQ(Read(preferences.get(), "Quality"), "4");
  EXPECT_EQ(Read(Make<Preferences>(path).get(), "Quality"), "1");
}

TEST(Preferences, AFileThatCannotBeWrittenIsAFailureAndTheValueHolds) {
  const TempFolder folder;
  folder.Write("file", "");
  const auto preferences = Make<Preferences>(folder / "file/p.ini");
  EXPECT_EQ(preferences->WritePref("a", NewTextBuffer("1").get()), ZEM_FAILED);
  EXPECT_EQ(Read(preferences.get(), "a"), "1");
}

}  // namespace
}  // namespace vexel::client
