// The script language of `vexel run`: one command a line.
#pragma once

#include <istream>
#include <string>

#include "headless_player.h"
#include "results.h"
#include "script_lines.h"

namespace vexel::tools {

class RunScript {
 public:
  // All stay the caller's. `name` is the script's, for messages.
  RunScript(HeadlessPlayer* player, const Results* results, const std::string& name)
      : player_(player), results_(results), lines_(name) {}

  // Reads and runs the next line, which prints its results, and redraws what is
  // dirty if the command can change the picture. Blank lines and comments are
  // passed over. False when there is none left. Throws Failure: kMisused for a
  // line that is wrong, naming it.
  bool RunNext(std::istream* in);

 private:
  HeadlessPlayer* player_;
  const Results* results_;
  ScriptLines lines_;
  bool mouseIsDown_ = false;
};

}  // namespace vexel::tools
