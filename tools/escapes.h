// Texts of any bytes on one line: what a script writes and results print.
#pragma once

#include <string>

namespace vexel::tools {

// Control characters, bytes above 126 and backslashes as \n, \r, \t, \xHH, \\.
std::string Escaped(const std::string& text);
// The same for a text of the player, null being empty.
std::string Escaped(const char* text);

// The bytes of a text with such escapes. False, with what is wrong in `error`,
// for any other escape, an unfinished one, and a zero byte, which no text of
// the player can hold.
bool Unescape(const std::string& text, std::string* out, std::string* error);

}  // namespace vexel::tools
