// Whether a movie steers itself.
#pragma once

#include <cstdint>
#include <span>

namespace vexel::client {

// Looks through the tags behind a movie's head for actions of frames, on the root
// timeline and in sprites, and for buttons. A movie with neither shows one frame
// after the other and nothing else. Tags that overrun the bytes end the search.
bool HasScripts(std::span<const uint8_t> tags);

}  // namespace vexel::client
