// Characters and the codes that a font record lists for them.
//
// Text of movies is bytes of Windows-1252; its characters keep those codes, so
// that a field finds them. All others of the first plane go by their Unicode
// number, and make the font's codes wide.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace vexel::author {

// No character, and no code.
inline constexpr uint32_t kNoCode = 0xFFFFFFFF;

// The character of a byte of Windows-1252; kNoCode for the five bytes that
// have none.
uint32_t CharacterOfByte(uint8_t byte);

// The code of a character in font records: kNoCode for controls and those
// beyond the first plane.
uint32_t CodeOfCharacter(uint32_t character);

// The characters of a UTF-8 text. False if it is none.
bool DecodeUtf8(std::string_view text, std::vector<uint32_t>* characters);

}  // namespace vexel::author
