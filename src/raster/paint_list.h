// Which colours a span shows, read from the paint list.
#pragma once

#include "raster/rcolor.h"

namespace vexel {

// Whether a colour that is on covers all below it.
inline bool HidesBelow(const RColor* c) {
  return !c->transparent && c->clipColor == nullptr;
}

// Whether a colour that is on shows: a clip colour never does, any other only
// where all masks of its nesting are on.
inline bool IsShown(const RColor* c) {
  if (c->colorType == colorClip) return false;
  for (const RColor* k = c->clipColor; IsClipColor(k); k = k->clipColor) {
    if (k->visible == 0) return false;
  }
  return true;
}

// The first entry from c downward that shows, or null.
inline RColor* FirstShown(RColor* c) {
  while (c != nullptr && !IsShown(c)) c = c->nextActive;
  return c;
}

}  // namespace vexel
