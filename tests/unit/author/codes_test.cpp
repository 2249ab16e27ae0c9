#include "author/codes.h"

#include <gtest/gtest.h>

namespace vexel::author {
namespace {

TEST(Codes, BytesOfWindows1252AndTheirCharactersAreOneToOne) {
  int without = 0;
  for (uint32_t byte = 0x20; byte <= 0xFF; ++byte) {
    const uint32_t character = CharacterOfByte(static_cast<uint8_t>(byte));
    if (character == kNoCode) {
      ++without;
    } else {
      EXPECT_EQ(CodeOfCharacter(character), byte);
    }
  }
  EXPECT_EQ(without, 5);
  EXPECT_EQ(CharacterOfByte(0x80), 0x20ACu);
  EXPECT_EQ(CharacterOfByte(0x9F), 0x178u);
  EXPECT_EQ(CharacterOfByte(0xE9), 0xE9u);
}

TEST(Codes, OthersOfTheFirstPlaneKeepTheirNumber) {
  EXPECT_EQ(CodeOfCharacter(0x416), 0x416u);
  EXPECT_EQ(CodeOfCharacter(0xFFFD), 0xFFFDu);
}

TEST(Codes, ControlsSurrogatesAndOtherPlanesHaveNone) {
  for (uint32_t character : {0x0u, 0x1Fu, 0x85u, 0x9Fu, 0xD800u, 0xDFFFu, 0x10000u, 0x1F600u})
    EXPECT_EQ(CodeOfCharacter(character), kNoCode) << character;
}

TEST(Codes, Utf8IsReadInAllItsLengths) {
  std::vector<uint32_t> characters;
  ASSERT_TRUE(DecodeUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", &characters));
  EXPECT_EQ(characters, (std::vector<uint32_t>{'a', 0xE9, 0x20AC, 0x1F600}));
}

TEST(Codes, WhatIsNoUtf8IsRefused) {
  for (const char* text : {"\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                           "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "a\xE2\x82"}) {
    std::vector<uint32_t> characters;
    EXPECT_FALSE(DecodeUtf8(text, &characters)) << text;
  }
}

TEST(Codes, ATextThatIsNoUtf8IsBytes) {
  EXPECT_EQ(CharactersOf("\xC3\xA9"), (std::vector<uint32_t>{0xE9}));
  EXPECT_EQ(CharactersOf("\x80\xE9\x81"), (std::vector<uint32_t>{0x20AC, 0xE9, 0x81}));
  EXPECT_EQ(CharacterName(0x416), "U+0416");
  EXPECT_EQ(CharacterName(0x1F600), "U+1F600");
}

}  // namespace
}  // namespace vexel::author
