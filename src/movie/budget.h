// What a movie may ask for. A few hundred bytes can multiply into any amount
// of work, so what exceeds a budget is dropped in silence, as if the memory
// for it were exhausted; no movie that people make comes near these numbers.
#pragma once

#include <cstdint>

namespace vexel {

inline constexpr int32_t kMaxObjects = 65536;          // placed objects of a stage
inline constexpr int32_t kMaxEdges = 1000000;          // cached edges of a stage
inline constexpr int32_t kMaxStageColors = 262144;     // cached colours of a stage
inline constexpr int32_t kMaxNesting = 256;            // levels of objects, clip brackets
inline constexpr int32_t kMaxTagsPerCall = 1 << 26;    // tags run inside one host call
inline constexpr int64_t kMaxBitmapPixels = 1 << 26;   // pixels of one decoded bitmap
inline constexpr int64_t kMaxBitmapBytes = 1LL << 30;  // all decoded bitmaps together
inline constexpr int32_t kMaxMovieBytes = 0x1FFFFFFF;  // declared length of a movie
inline constexpr int32_t kMaxLoadedText = 64 << 20;    // bytes of a loaded variable text
inline constexpr int32_t kMaxVariables = 65536;        // variables of one timeline
inline constexpr int32_t kMaxValueText = 1 << 20;      // bytes of one script value
inline constexpr int64_t kMaxScriptText = 64 << 20;    // bytes of all script values and names
inline constexpr int32_t kMaxStackValues = 65536;      // values on a player's stack

}  // namespace vexel
