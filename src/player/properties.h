// The numbers of the properties that scripts read and write. All but the last
// three, which are the player's, belong to the object of the timeline that is
// asked.
#pragma once

#include <cstdint>

namespace vexel {

enum PropertyIndex : int32_t {
  kPropX = 0,              // pixels
  kPropY = 1,              // pixels
  kPropXScale = 2,         // percent
  kPropYScale = 3,         // percent
  kPropCurrentFrame = 4,   // from 1; read-only
  kPropTotalFrames = 5,    // read-only
  kPropAlpha = 6,          // percent
  kPropVisible = 7,        // 0 or 1
  kPropWidth = 8,          // pixels; read-only
  kPropHeight = 9,         // pixels; read-only
  kPropRotation = 10,      // degrees, -180 to 180, clockwise
  kPropTarget = 11,        // text: the target path; read-only
  kPropFramesLoaded = 12,  // read-only
  kPropName = 13,          // text
  kPropDropTarget = 14,    // text: the path of what a drag is over; read-only
  kPropUrl = 15,           // text: where the movie came from; read-only
  kPropQuality = 16,       // 0 low, 1 high, 2 best
  kPropFocusRect = 17,     // 0 or 1: show the keyboard focus frame
  kPropBufferTime = 18,    // a number that scripts may keep here
};

}  // namespace vexel
