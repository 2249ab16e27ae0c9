// Blanks, names and quoted texts.
#include "author/script/cursor.h"

namespace vexel::author {

int HexDigit(int c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool SourceCursor::SkipBlanks(bool andLineEnds) {
  bool lineEnd = false;
  for (;;) {
    const int c = Peek();
    if (c == ' ' || c == '\t' || c == '\r') {
      ++at_;
    } else if (c == '/' && Peek(1) == '/') {
      while (!AtEnd() && Peek() != '\n') ++at_;
    } else if (c == '/' && Peek(1) == '*') {
      const size_t close = text_.find("*/", at_ + 2);
      if (close == std::string_view::npos) Fail("this comment is never closed");
      at_ = close + 2;
    } else if (c == '\n' && andLineEnds) {
      lineEnd = true;
      ++at_;
    } else {
      return lineEnd;
    }
  }
}

std::string_view SourceCursor::Name() {
  const size_t begin = at_;
  if (IsNameStart(Peek())) {
    while (IsNameChar(Peek())) ++at_;
  }
  return From(begin);
}

std::string SourceCursor::Quoted() {
  const size_t begin = at_++;
  std::string text;
  for (;; ++at_) {
    const int c = Peek();
    if (c == -1 || c == '\n') FailAt(begin, "this text has no closing quote on its line");
    if (c == '"') break;
    if (c != '\\') {
      text += static_cast<char>(c);
      continue;
    }
    ++at_;
    switch (Peek()) {
      case 'n':
        text += '\n';
        break;
      case 'r':
        text += '\r';
        break;
      case 't':
        text += '\t';
        break;
      case '"':
      case '\\':
        text += static_cast<char>(Peek());
        break;
      case 'x': {
        const int high = HexDigit(Peek(1));
        const int low = high < 0 ? -1 : HexDigit(Peek(2));
        if (low < 0) FailAt(at_ - 1, "two hexadecimal digits follow \\x");
        text += static_cast<char>(high << 4 | low);
        at_ += 2;
        break;
      }
      default:
        FailAt(at_ - 1, "unknown escape; there are \\n, \\r, \\t, \\\", \\\\ and \\xHH");
    }
  }
  ++at_;
  return text;
}

std::string QuoteText(std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string quoted = "\"";
  for (const char byte : text) {
    const auto c = static_cast<uint8_t>(byte);
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += byte;
    } else if (c >= 0x20 && c < 0x7F) {
      quoted += byte;
    } else if (c == '\n') {
      quoted += "\\n";
    } else if (c == '\r') {
      quoted += "\\r";
    } else if (c == '\t') {
      quoted += "\\t";
    } else {
      quoted += "\\x";
      quoted += kHex[c >> 4];
      quoted += kHex[c & 15];
    }
  }
  return quoted += '"';
}

}  // namespace vexel::author
