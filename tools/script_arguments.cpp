#include "script_arguments.h"

#include <algorithm>

#include "escapes.h"
#include "geometry/intmath.h"
#include "parsed_text.h"

namespace vexel::tools {

ScriptArguments::ScriptArguments(const std::string& line) : line_(line) {
  for (size_t at = 0; (at = line.find_first_not_of(kBlanks, at)) != std::string::npos;) {
    const size_t end = std::min(line.find_first_of(kBlanks, at), line.size());
    words_.push_back({at, end});
    at = end;
  }
}

std::string ScriptArguments::Word(size_t i) const {
  return line_.substr(words_[i].begin, words_[i].end - words_[i].begin);
}

std::string ScriptArguments::TextWord(size_t i) const {
  return TextOf(Word(i));
}

std::string ScriptArguments::Text(size_t from) const {
  return from < words_.size() ? TextOf(line_.substr(words_[from].begin)) : std::string();
}

int64_t ScriptArguments::Number(size_t i, int64_t min, int64_t max) const {
  const std::string word = Word(i);
  int64_t value;
  if (!ParseNumber(word, min, max, &value))
    throw BadLine{"'" + Escaped(word) + "' is not a number from " + std::to_string(min) + " to " +
                  std::to_string(max)};
  return value;
}

int32_t ScriptArguments::Int(size_t i) const {
  return static_cast<int32_t>(Number(i, kInt32Min, kInt32Max));
}

uint32_t ScriptArguments::Ms(size_t i) const {
  return static_cast<uint32_t>(Number(i, 0, 0xFFFFFFFF));
}

std::string TextOf(const std::string& written) {
  std::string text, error;
  if (!Unescape(written, &text, &error)) throw BadLine{error};
  return text;
}

}  // namespace vexel::tools
