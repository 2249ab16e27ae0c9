// The script language of `vexel run`: one command a line.
#pragma once

#include <string>

#include "headless_player.h"

namespace vexel::tools {

class RunScript {
 public:
  // Both stay the caller's. `name` is the script's, for messages.
  RunScript(HeadlessPlayer* player, const std::string& name) : player_(player), name_(name) {}

  // Runs the next line, which prints its results, and redraws what is dirty if
  // the command can change the picture. Blank lines and comments are passed
  // over. Throws Failure: kMisused for a line that is wrong, naming it.
  void RunLine(const std::string& line);

 private:
  HeadlessPlayer* player_;
  std::string name_;
  int lineNumber_ = 0;
};

}  // namespace vexel::tools
