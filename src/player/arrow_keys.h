// Which button lies in a direction of another. The tests are made of plain
// comparisons of rectangles; all are in device units, y growing downward.
#pragma once

#include <cstdint>

#include "geometry/rect.h"
#include "movie/fwd.h"

namespace vexel {

enum ButtonDirection : int32_t {
  buttonUp = 0,
  buttonDown = 1,
  buttonRight = 2,
  buttonLeft = 3,
};
inline constexpr int32_t kButtonDirections = 4;

// Whether `r` lies in a direction of `c`. Required: the four are not alike.
bool IsButtonUp(const SRECT* c, const SRECT* r);
bool IsButtonDown(const SRECT* c, const SRECT* r);
bool IsButtonRight(const SRECT* c, const SRECT* r);
bool IsButtonLeft(const SRECT* c, const SRECT* r);
// Whether the two share columns, for up and down, or rows.
bool IsButtonAligned(const SRECT* c, int32_t direction, const SRECT* r);
// Whether `r` lies wholly below `c`; false for directions other than down.
bool IsButtonOverlapped(const SRECT* c, int32_t direction, const SRECT* r);

// The better of `a` and `b`, seen from `c`: `a` is a new candidate, `b` the
// best so far. Either may be null.
SObject* ButtonChoose(const SRECT* c, int32_t direction, SObject* a, const SRECT* ra, SObject* b,
                      const SRECT* rb);
// Whether `ra` is nearer to `c` than `rb`.
bool ButtonCloser(const SRECT* c, const SRECT* ra, const SRECT* rb);

}  // namespace vexel
