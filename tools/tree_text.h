// Placed objects as text.
#pragma once

#include <string>
#include <vector>

#include "stage/display_list.h"

namespace vexel::tools {

// An object of the display list and how far below the layers' roots it stands.
struct TreeRow {
  const SObject* object;
  size_t level;
};

// All objects below the stage's root, in list order, parents first.
std::vector<TreeRow> TreeRows(const DisplayList& display);

// "DEPTH id=ID type=TYPE ...", two blanks of indent a level; numbers as they
// are stored.
std::string TreeText(const TreeRow& row);

// The depths from the layer's root object down to `object`.
std::vector<int32_t> DepthChain(const SObject* object);

}  // namespace vexel::tools
