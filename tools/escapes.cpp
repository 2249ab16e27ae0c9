#include "escapes.h"

#include <charconv>
#include <cstdint>
#include <cstdio>

namespace vexel::tools {

namespace {

struct NamedEscape {
  char letter;
  char byte;
};
constexpr NamedEscape kNamed[] = {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'\\', '\\'}};

constexpr unsigned char kLastPlain = 126;

std::string EscapedByte(char c) {
  for (const NamedEscape& named : kNamed) {
    if (c == named.byte) return {'\\', named.letter};
  }
  const auto byte = static_cast<unsigned char>(c);
  if (byte >= ' ' && byte <= kLastPlain) return {c};
  char hex[5];
  std::snprintf(hex, sizeof hex, "\\x%02x", byte);
  return hex;
}

}  // namespace

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) out += EscapedByte(c);
  return out;
}

std::string Escaped(const char* text) {
  return text ? Escaped(std::string(text)) : std::string();
}

bool Unescape(const std::string& text, std::string* out, std::string* error) {
  out->clear();
  for (size_t at = 0; at < text.size(); at++) {
    if (text[at] != '\\') {
      *out += text[at];
      continue;
    }
    at++;
    if (at == text.size()) {
      *error = "a backslash ends the line";
      return false;
    }
    char byte = 0;
    for (const NamedEscape& named : kNamed) {
      if (text[at] == named.letter) byte = named.byte;
    }
    if (text[at] == 'x') {
      const char* digits = text.data() + at + 1;
      uint8_t value = 0;
      if (text.size() - at < 3 ||
          std::from_chars(digits, digits + 2, value, 16).ptr != digits + 2) {
        *error = "'\\x' takes two hexadecimal digits";
        return false;
      }
      byte = static_cast<char>(value);
      at += 2;
      if (byte == 0) {
        *error = "a text cannot hold a zero byte";
        return false;
      }
    } else if (byte == 0) {
      *error = "unknown escape '\\" + Escaped(text.substr(at, 1)) + "'";
      return false;
    }
    *out += byte;
  }
  return true;
}

}  // namespace vexel::tools
