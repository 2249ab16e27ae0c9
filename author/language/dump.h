// From a movie to a text that makes the same bytes again.
#pragma once

#include <span>
#include <string>

#include "author/types.h"

namespace vexel::author {

// Any bytes that begin as a movie's header does: signature, version, length.
// What of them is damaged, or is no choice of the writer's, is printed in
// forms that keep it; the text of anything else is empty.
std::string DumpMovie(std::span<const uint8_t> movie);

}  // namespace vexel::author
