// The growing text and its form encoding.
#include "player/url_builder.h"

#include <cstdlib>
#include <cstring>

#include "movie/budget.h"
#include "movie/script_thread.h"

namespace vexel {

namespace {

// Texts grow in these steps while they are short. Later the step grows with
// the text: copies at every 256 bytes would take forever over a megabyte.
constexpr int32_t kStep = 256;

bool IsLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool Grow(URLBuilder* text) {
  if (text->capacity > kMaxLoadedText) return false;
  const int32_t capacity = text->capacity + (text->capacity / 4 / kStep + 1) * kStep;
  auto* buffer = static_cast<char*>(realloc(text->buffer, static_cast<size_t>(capacity)));
  if (!buffer) return false;
  text->buffer = buffer;
  text->capacity = capacity;
  return true;
}

}  // namespace

void URLBuilder::AppendChar(char c) {
  if (length >= capacity - 1 && !Grow(this)) return;
  buffer[length++] = c;
  buffer[length] = '\0';
}

void URLBuilder::AppendInt(int32_t n) {
  if (n < 0) return;
  char digits[10];
  int32_t count = 0;
  do {
    digits[count++] = static_cast<char>('0' + n % 10);
    n /= 10;
  } while (n != 0);
  while (count > 0) AppendChar(digits[--count]);
}

void URLBuilder::AppendString(const char* text) {
  if (!text) return;
  for (; *text; ++text) AppendChar(*text);
}

void URLBuilder::EncodeString(const char* text) {
  if (!text) return;
  for (; *text; ++text) {
    if (IsLetterOrDigit(*text)) {
      AppendChar(*text);
    } else if (*text == ' ') {
      AppendChar('+');
    } else {
      const uint8_t byte = static_cast<uint8_t>(*text);
      AppendChar('%');
      AppendChar(HexChar(byte >> 4));
      AppendChar(HexChar(byte & 15));
    }
  }
}

void URLBuilder::EncodeVariables(ScriptVariable* list) {
  for (ScriptVariable* variable = list; variable; variable = variable->next) {
    const char* value = variable->Text();
    if (!variable->name || !value) continue;
    if (variable != list) AppendChar('&');
    EncodeString(variable->name);
    AppendChar('=');
    EncodeString(value);
  }
}

char HexChar(int32_t value) {
  return "0123456789ABCDEF"[value & 15];
}

int32_t ParseHexChar(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

const char* ExtractCharacter(const char* text, URLBuilder* out) {
  if (!*text) return text;
  const char c = *text++;
  if (c == '+') {
    out->AppendChar(' ');
    return text;
  }
  if (c != '%') {
    out->AppendChar(c);
    return text;
  }
  if (!*text) return text;
  const int32_t high = ParseHexChar(*text++);
  if (high < 0 || !*text) return text;
  const int32_t low = ParseHexChar(*text++);
  if (low >= 0) out->AppendChar(static_cast<char>(high * 16 + low));
  return text;
}

}  // namespace vexel
