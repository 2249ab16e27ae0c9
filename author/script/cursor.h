// Steps through a slice of a source: the characters that assembler and script
// have in common.
#pragma once

#include <cstdint>
#include <string>

#include "author/language/source.h"

namespace vexel::author {

inline bool IsDigit(int c) {
  return c >= '0' && c <= '9';
}
inline bool IsNameStart(int c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
inline bool IsNameChar(int c) {
  return IsNameStart(c) || IsDigit(c);
}

class SourceCursor {
 public:
  explicit SourceCursor(const SourceSlice& slice) : slice_(slice), text_(slice.text()) {}

  size_t offset() const { return at_; }
  void MoveTo(size_t offset) { at_ = offset; }
  void Step() { ++at_; }
  // -1 behind the end.
  int Peek(size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? static_cast<uint8_t>(text_[at_ + ahead]) : -1;
  }
  bool AtEnd() const { return at_ >= text_.size(); }
  std::string_view From(size_t begin) const { return text_.substr(begin, at_ - begin); }

  // Passes blanks and comments, which run from // to the end of the line or
  // stand between /* and */. Line ends are passed only if asked for. True if
  // one was.
  bool SkipBlanks(bool andLineEnds);
  // The characters of a name; empty if there is none here.
  std::string_view Name();
  // A text in double quotes, which stand here. Understood in it are \n, \r, \t,
  // \", \\ and \xHH. It ends on its line.
  std::string Quoted();

  SourcePlace Place() const { return slice_.At(at_); }
  SourcePlace PlaceAt(size_t offset) const { return slice_.At(offset); }
  [[noreturn]] void Fail(const std::string& what) const { throw SourceError(Place(), what); }
  [[noreturn]] void FailAt(size_t offset, const std::string& what) const {
    throw SourceError(slice_.At(offset), what);
  }

 private:
  SourceSlice slice_;
  std::string_view text_;
  size_t at_ = 0;
};

// -1 for what is no hexadecimal digit.
int HexDigit(int c);

// The text in double quotes, as Quoted reads it: printable ASCII as it is, all
// other bytes as escapes.
std::string QuoteText(std::string_view text);

}  // namespace vexel::author
