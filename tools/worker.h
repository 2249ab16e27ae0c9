// Programs beside this one, which do the work of some verbs.
#pragma once

#include <string>
#include <vector>

namespace vexel::tools {

// Goes on as the program of that name from this program's folder. Returns
// never; throws Failure if it cannot be run.
[[noreturn]] void RunWorker(const std::string& name, const std::vector<std::string>& arguments);

// Runs such a program to its end; `vexel` itself is one. Its output and its
// messages go where this program's go. Its status, or kFailed, with a message,
// if a signal ended it. Throws Failure if it cannot be run.
int RunChild(const std::string& name, const std::vector<std::string>& arguments);

}  // namespace vexel::tools
