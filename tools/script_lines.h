// Scripts: one command a line, a name and its arguments.
#pragma once

#include <functional>
#include <istream>
#include <string>

#include "script_arguments.h"

namespace vexel::tools {

class ScriptLines {
 public:
  // Runs one command; throws BadLine for one that is wrong.
  using Run = std::function<void(const std::string& name, const ScriptArguments& args)>;

  // `name` is the script's, for messages.
  explicit ScriptLines(const std::string& name) : name_(name) {}

  // Reads the next line and runs its command. Blank lines and comments are
  // passed over. False when there is none left. Throws Failure: kMisused for a
  // line that is wrong, naming it.
  bool RunNext(std::istream* in, const Run& run);

 private:
  std::string name_;
  int lineNumber_ = 0;
};

// Throws BadLine if a command has too few or too many words. `form` is that of
// its arguments.
void CheckWords(const std::string& name, const ScriptArguments& args, const char* form,
                size_t minWords, size_t maxWords);

}  // namespace vexel::tools
