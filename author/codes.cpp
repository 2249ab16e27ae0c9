#include "author/codes.h"

#include <cstdio>
#include <iterator>

namespace vexel::author {

namespace {

// Where Windows-1252 differs from the first 256 characters of Unicode.
constexpr uint8_t kFirstOwn = 0x80;
constexpr uint16_t kOwn[] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,       // 88
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,  // 98
};
constexpr uint32_t kBehindOwn = kFirstOwn + std::size(kOwn);

constexpr uint32_t kFirstPrintable = 0x20;
constexpr uint32_t kFirstSurrogate = 0xD800;
constexpr uint32_t kBehindSurrogates = 0xE000;
constexpr uint32_t kLastOfPlane = 0xFFFF;
constexpr uint32_t kLastCharacter = 0x10FFFF;

bool IsSurrogate(uint32_t character) {
  return character >= kFirstSurrogate && character < kBehindSurrogates;
}

}  // namespace

uint32_t CharacterOfByte(uint8_t byte) {
  if (byte < kFirstOwn || byte >= kBehindOwn) return byte;
  const uint16_t own = kOwn[byte - kFirstOwn];
  return own ? own : kNoCode;
}

uint32_t CodeOfCharacter(uint32_t character) {
  if (character < kFirstPrintable || character > kLastOfPlane || IsSurrogate(character))
    return kNoCode;
  for (size_t i = 0; i < std::size(kOwn); ++i) {
    if (kOwn[i] == character) return kFirstOwn + static_cast<uint32_t>(i);
  }
  if (character >= kFirstOwn && character < kBehindOwn) return kNoCode;
  return character;
}

std::string CharacterName(uint32_t character) {
  char name[16];
  std::snprintf(name, sizeof name, "U+%04X", character);
  return name;
}

bool DecodeUtf8(std::string_view text, std::vector<uint32_t>* characters) {
  // The least character that a sequence with this many further bytes is for.
  constexpr uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<uint8_t>(text[i++]);
    size_t more = 0;
    uint32_t character = lead;
    if (lead >= 0x80) {
      if (lead < 0xC0 || lead >= 0xF8) return false;
      more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
      character = lead & (0x3Fu >> more);
    }
    if (text.size() - i < more) return false;
    for (size_t k = 0; k < more; ++k, ++i) {
      const auto byte = static_cast<uint8_t>(text[i]);
      if ((byte & 0xC0) != 0x80) return false;
      character = character << 6 | (byte & 0x3F);
    }
    if (character < kLeast[more] || character > kLastCharacter || IsSurrogate(character))
      return false;
    characters->push_back(character);
  }
  return true;
}

std::vector<uint32_t> CharactersOf(std::string_view text) {
  std::vector<uint32_t> characters;
  if (DecodeUtf8(text, &characters)) return characters;
  characters.clear();
  for (char byte : text) {
    const uint32_t character = CharacterOfByte(static_cast<uint8_t>(byte));
    characters.push_back(character != kNoCode ? character : static_cast<uint8_t>(byte));
  }
  return characters;
}

}  // namespace vexel::author
