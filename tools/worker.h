// Programs beside this one, which do the work of some verbs.
#pragma once

#include <string>
#include <vector>

namespace vexel::tools {

// Goes on as the program of that name from this program's folder. Returns
// never; throws Failure if it cannot be run.
[[noreturn]] void RunWorker(const std::string& name, const std::vector<std::string>& arguments);

}  // namespace vexel::tools
