// Where the other programs and the plug-in of this installation are. A build
// keeps programs in bin and the plug-in in lib. An installation keeps in bin
// what people call, in libexec/vexel what the command calls, and the plug-in in
// lib/vexel. All is found from where this program is, so that either may move.
#pragma once

#include <string>

namespace vexel::tools {

// The path of one of our programs, by its name. If there is none, the path
// beside this program, which a message may tell.
std::string ProgramPath(const std::string& name);

// Likewise of the plug-in, where a build has it if there is none.
std::string PluginPath();

}  // namespace vexel::tools
