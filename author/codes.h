// Characters and the codes that a font record lists for them.
//
// Text of movies is bytes of Windows-1252; its characters keep those codes, so
// that a field finds them. All others of the first plane go by their Unicode
// number, and make the font's codes wide.
#pragma once

#include <cstdint>
#include <string>
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

// "U+0416", for messages.
std::string CharacterName(uint32_t character);

// The characters of a UTF-8 text. False if it is none; some may be there then.
bool DecodeUtf8(std::string_view text, std::vector<uint32_t>* characters);

// The characters of a text that someone wrote: UTF-8, or Windows-1252 where it
// is none. A byte without a character stands for the control of that number.
std::vector<uint32_t> CharactersOf(std::string_view text);

}  // namespace vexel::author
