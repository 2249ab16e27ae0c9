#include "script_lines.h"

#include <algorithm>

#include "status.h"

namespace vexel::tools {

namespace {

// A line longer than any text that a movie keeps, every byte of it escaped,
// says that this is no script.
constexpr size_t kMaxLine = 8 << 20;

// Reads up to the next line feed, or the end. False at the end.
bool ReadLine(std::istream* in, std::string* line) {
  line->clear();
  for (int c; (c = in->get()) != std::istream::traits_type::eof();) {
    if (c == '\n') return true;
    if (line->size() == kMaxLine)
      throw BadLine{"longer than " + std::to_string(kMaxLine) + " bytes"};
    *line += static_cast<char>(c);
  }
  return !line->empty();
}

void RunLine(const std::string& line, const ScriptLines::Run& run) {
  if (line.find('\0') != std::string::npos) throw BadLine{"holds a zero byte"};
  if (line.starts_with('#')) return;
  const char* blanks = ScriptArguments::kBlanks;
  const size_t start = line.find_first_not_of(blanks);
  if (start == std::string::npos) return;
  const size_t end = std::min(line.find_first_of(blanks, start), line.size());
  const size_t rest = std::min(line.find_first_not_of(blanks, end), line.size());
  run(line.substr(start, end - start), ScriptArguments(line.substr(rest)));
}

}  // namespace

bool ScriptLines::RunNext(std::istream* in, const Run& run) {
  lineNumber_++;
  try {
    std::string line;
    if (!ReadLine(in, &line)) return false;
    if (line.ends_with('\r')) line.pop_back();
    RunLine(line, run);
  } catch (const BadLine& bad) {
    throw Failure(kMisused, name_, "line " + std::to_string(lineNumber_) + ": " + bad.what);
  }
  return true;
}

void CheckWords(const std::string& name, const ScriptArguments& args, const char* form,
                size_t minWords, size_t maxWords) {
  if (args.count() < minWords || args.count() > maxWords)
    throw BadLine{"'" + name + "' takes " + (*form ? form : "no argument")};
}

}  // namespace vexel::tools
