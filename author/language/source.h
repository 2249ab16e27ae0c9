// Source texts of movies: their lines, places in them, and what is wrong there.
//
// Every part that reads a piece of a source is handed a slice, which knows the
// file it was cut from, so that a mistake is told with its line and a mark
// under the place, whichever part finds it.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vexel::author {

// A text with the name that messages call it by. Bytes from 128 up are taken
// as UTF-8 where characters are counted, and kept as they are everywhere.
// Places and slices point into it: it stays where it is until they are gone.
class SourceText {
 public:
  SourceText(std::string name, std::string text);
  SourceText(const SourceText&) = delete;
  SourceText& operator=(const SourceText&) = delete;

  const std::string& name() const { return name_; }
  std::string_view text() const { return text_; }

  struct Position {
    size_t line;    // from 1
    size_t column;  // from 1, in characters
  };
  // Of a byte offset; one behind the end counts as the end.
  Position At(size_t offset) const;
  // Without its line end. Empty for lines that there are not.
  std::string_view Line(size_t line) const;

 private:
  std::string name_;
  std::string text_;
  std::vector<size_t> lineStarts_;
};

// A byte of a source. Without a source it stands for no place at all.
struct SourcePlace {
  const SourceText* source = nullptr;
  size_t offset = 0;
};

// A piece of a source, such as what stands between two braces.
struct SourceSlice {
  const SourceText* source = nullptr;
  size_t begin = 0;  // byte offsets
  size_t end = 0;

  std::string_view text() const { return source->text().substr(begin, end - begin); }
  // Of an offset into text().
  SourcePlace At(size_t offset) const { return {source, begin + offset}; }
};

// A mistake in a source. what() is the whole message but for the program's
// name, without a line end after the last line:
//   FILE:LINE:COLUMN: what is wrong
//   the line
//        ^
class SourceError : public std::runtime_error {
 public:
  SourceError(const SourcePlace& place, const std::string& what);
};

// A slice of the whole source.
inline SourceSlice WholeSource(const SourceText& source) {
  return {&source, 0, source.text().size()};
}

}  // namespace vexel::author
