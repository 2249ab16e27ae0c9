// Naming timelines by target paths.
#pragma once

#include <string>

#include "player/splayer.h"

namespace vexel::tools {

// The timeline at a path of names separated by slashes, from the root of layer
// 0: `/` is the root itself, `..` the parent, `_level2` at the start another
// layer. Null if there is none.
ScriptThread* FindTimeline(SPlayer* player, const std::string& path);

}  // namespace vexel::tools
