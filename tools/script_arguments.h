// The arguments of one line of a script.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexel::tools {

// A line that cannot be understood; who reads the script adds where it stands.
struct BadLine {
  std::string what;
};

// Words behind a command, and their meanings. Whatever reads one throws BadLine
// for what it cannot be.
class ScriptArguments {
 public:
  static constexpr const char* kBlanks = " \t";

  // `line` is what follows the command and the blanks behind it.
  explicit ScriptArguments(const std::string& line);

  size_t count() const { return words_.size(); }
  // A word as it is written.
  std::string Word(size_t i) const;
  // A word, and all from a word on, as texts: their escapes are understood. No
  // words from there on are an empty text.
  std::string TextWord(size_t i) const;
  std::string Text(size_t from) const;
  // All of it as it is written.
  const std::string& line() const { return line_; }

  int64_t Number(size_t i, int64_t min, int64_t max) const;
  int32_t Int(size_t i) const;
  uint32_t Ms(size_t i) const;

 private:
  struct Span {
    size_t begin;
    size_t end;
  };
  std::string line_;
  std::vector<Span> words_;
};

// The bytes of a text with escapes; throws BadLine.
std::string TextOf(const std::string& written);

}  // namespace vexel::tools
