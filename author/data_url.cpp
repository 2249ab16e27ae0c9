// data: addresses, in base64 or with percent escapes.
#include <algorithm>

#include "author/svg_builder.h"

namespace vexel::author {
namespace {

int Base64Digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+' || c == '-') return 62;
  if (c == '/' || c == '_') return 63;
  return -1;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  char low = static_cast<char>(c | 32);
  return low >= 'a' && low <= 'f' ? low - 'a' + 10 : -1;
}

}  // namespace

bool DecodeDataUrl(std::string_view url, std::string* type, std::vector<uint8_t>* bytes) {
  url = Trim(url);
  if (url.substr(0, 5) != "data:") return false;
  size_t comma = url.find(',');
  if (comma == std::string_view::npos) return false;
  std::string_view head = url.substr(5, comma - 5), body = url.substr(comma + 1);
  *type = head.substr(0, head.find(';'));
  bytes->clear();
  if (head.find(";base64") != std::string_view::npos) {
    uint32_t group = 0;
    int bits = 0;
    for (char c : body) {
      int digit = Base64Digit(c);
      if (digit < 0) continue;  // line breaks and the padding at the end
      group = group << 6 | static_cast<uint32_t>(digit);
      bits += 6;
      if (bits >= 8) {
        bits -= 8;
        bytes->push_back(static_cast<uint8_t>(group >> bits));
      }
    }
    return true;
  }
  for (size_t i = 0; i < body.size(); i++) {
    int high = i + 2 < body.size() && body[i] == '%' ? HexDigit(body[i + 1]) : -1;
    int low = high < 0 ? -1 : HexDigit(body[i + 2]);
    if (low >= 0) {
      bytes->push_back(static_cast<uint8_t>(high * 16 + low));
      i += 2;
    } else {
      bytes->push_back(static_cast<uint8_t>(body[i]));
    }
  }
  return true;
}

}  // namespace vexel::author
