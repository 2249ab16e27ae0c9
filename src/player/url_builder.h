// A growing text with form encoding: a space is "+", letters and digits stand
// for themselves, every other byte is "%" and two hexadecimal digits. This
// header includes nothing of ours, so every folder of the ring uses it.
#pragma once

#include <cstdint>

namespace vexel {

struct ScriptVariable;

// Start it as `URLBuilder text = {};`. Characters for which there is no memory
// are lost; a text ends at 64 MiB in the same way.
struct URLBuilder {
  char* buffer;      // for FreeStr by whoever takes it; null while empty, else closed by a NUL
  int32_t length;    // without the NUL
  int32_t capacity;  // bytes of `buffer`

  void AppendChar(char c);
  // Decimal digits. Required: a negative number gives nothing.
  void AppendInt(int32_t n);
  void AppendString(const char* text);
  // The form encoding of `text`.
  void EncodeString(const char* text);
  // "name=value&name=value" of a list, both encoded. Required: the "&" stands
  // before every entry but the list's first, even if that one has no value and
  // so is missing.
  void EncodeVariables(ScriptVariable* list);
};

// The upper-case digit of 0 to 15.
char HexChar(int32_t value);
// The value of a hexadecimal digit of either case, or -1.
int32_t ParseHexChar(char c);

// Decodes one character at `text`, appends it to `out`, and returns what
// follows: "+" is a space, "%" and two digits a byte. A "%" with something else
// behind it adds nothing; consumed with it are what follows at once and, if
// that is a digit, the character after it. A closing NUL is never consumed.
const char* ExtractCharacter(const char* text, URLBuilder* out);

}  // namespace vexel
