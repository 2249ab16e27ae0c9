// The words of the movie language.
//
// A source is cut into tokens once, however often a loop runs over them. The
// blocks behind `actions` and `script` are other languages: each becomes one
// token, found by its matching brace.
#pragma once

#include <string>
#include <vector>

#include "author/language/source.h"
#include "author/types.h"

namespace vexel::author {

// A source of more tokens takes more memory than a movie is worth.
inline constexpr size_t kMaxTokens = 8'000'000;

enum class TokenKind : uint8_t {
  kEnd,     // behind the last
  kWord,    // a letter or _, then letters, digits and _
  kNumber,  // decimal; 0x begins a hexadecimal one
  kText,    // "..."; texts that follow each other are one
  kColor,   // #rgb, #rgba, #rrggbb, #rrggbbaa
  kSign,    // one or two characters that mean something by themselves
  kCode,    // the inside of the braces of `actions` and `script`
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  bool plainHex = false;  // a number written 0x...
  size_t begin = 0;       // byte offsets in the source
  size_t end = 0;
  size_t partner = 0;  // index of the token that closes this brace
  double number = 0;
  Color color;
  std::string text;  // the word, the sign, or the bytes that a text stands for
};

// Throws SourceError. The last token is a kEnd at the end of the text.
std::vector<Token> Tokenize(const SourceText& source);

// Whether braces of this word hold another language.
bool HoldsCode(std::string_view word);

}  // namespace vexel::author
