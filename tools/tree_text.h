// The display list as text.
#pragma once

#include <string>

#include "stage/display_list.h"

namespace vexel::tools {

// A line for each object below the stage's root, in list order, two blanks of
// indent a level; numbers as they are stored.
std::string TreeText(const DisplayList& display);

// Control characters, bytes above 126 and backslashes as \n, \r, \t, \xHH, \\.
std::string Escaped(const std::string& text);

}  // namespace vexel::tools
