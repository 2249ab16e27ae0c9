// The harbour by night, as a camera would see it: the one picture of the demo
// that is no drawing.
#pragma once

#include "author/bitmap.h"

namespace harbour {

// kWidth by kHeight pixels, computed from noise, always the same.
vexel::author::Picture NightPhoto();

}  // namespace harbour
