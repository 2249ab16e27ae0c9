// Arrow keys: the nearest button in a direction, by the rectangles on screen.
// Aligned buttons come first, then what is nearest.
#include "player/arrow_keys.h"

#include "player/splayer.h"

namespace vexel {

bool IsButtonUp(const SRECT* c, const SRECT* r) {
  return r->ymax < c->ymin || r->ymax < c->ymax;
}

bool IsButtonDown(const SRECT* c, const SRECT* r) {
  return r->ymin > c->ymax || r->ymax > c->ymax;
}

bool IsButtonRight(const SRECT* c, const SRECT* r) {
  return r->xmin > c->xmax || r->xmax > c->xmax;
}

bool IsButtonLeft(const SRECT* c, const SRECT* r) {
  return r->xmax < c->xmin || r->xmin < c->xmin;
}

bool IsButtonAligned(const SRECT* c, int32_t direction, const SRECT* r) {
  switch (direction) {
    case buttonUp:
    case buttonDown:
      return c->xmax >= r->xmin && c->xmin <= r->xmax;
    case buttonRight:
    case buttonLeft:
      return c->ymax >= r->ymin && c->ymin <= r->ymax;
    default:
      return false;
  }
}

bool IsButtonOverlapped(const SRECT* c, int32_t direction, const SRECT* r) {
  return direction == buttonDown && r->ymin > c->ymax;
}

bool ButtonCloser(const SRECT* c, const SRECT* ra, const SRECT* rb) {
  return RectDistance(c, ra) < RectDistance(c, rb);
}

// Required: among buttons that are not aligned, one that lies wholly below
// loses to one that does not.
SObject* ButtonChoose(const SRECT* c, int32_t direction, SObject* a, const SRECT* ra, SObject* b,
                      const SRECT* rb) {
  if (!a) return b;
  if (!b) return a;
  const bool aAligned = IsButtonAligned(c, direction, ra);
  const bool bAligned = IsButtonAligned(c, direction, rb);
  if (aAligned != bAligned) return aAligned ? a : b;
  if (!aAligned) {
    const bool aBelow = IsButtonOverlapped(c, direction, ra);
    const bool bBelow = IsButtonOverlapped(c, direction, rb);
    if (aBelow != bBelow) return aBelow ? b : a;
  }
  return ButtonCloser(c, ra, rb) ? a : b;
}

// Without a current button the search starts from nowhere: an empty rectangle.
void SPlayer::ButtonOrdering(const SButton* current, ButtonOrder* order) {
  RemoveAllButtons();
  NumButtons(&display.root);
  constexpr bool (*kTests[kButtonDirections])(const SRECT*, const SRECT*) = {
      IsButtonUp, IsButtonDown, IsButtonRight, IsButtonLeft};
  SRECT c = current->bounds;
  if (!current->button) RectSetEmpty(&c);
  for (int32_t i = 0; i < buttonCount; ++i) {
    SObject* b = buttons[i];
    if (b == current->button.Get()) continue;
    SRECT r;
    b->CalcButtonBounds(&r);
    for (int32_t d = 0; d < kButtonDirections; ++d) {
      if (!kTests[d](&c, &r)) continue;
      if (ButtonChoose(&c, d, b, &r, order->button[d], &order->bounds[d]) != b) continue;
      order->button[d] = b;
      order->bounds[d] = r;
    }
  }
}

void SPlayer::ButtonGoDirection(int32_t direction) {
  SButton current;
  current.Set(focusButton.button.Get(), focusButton.bounds);
  const bool hadFocus = static_cast<bool>(current.button);
  ButtonFocusRemove();
  if (hadFocus && !current.button) return;
  ButtonOrder order;
  ButtonOrdering(&current, &order);
  if (order.button[direction]) {
    focusButton.Set(order.button[direction], order.bounds[direction]);
  } else {
    focusButton.Set(current.button.Get(), current.bounds);
  }
  ButtonFocusSet(focusButton.button.Get());
}

}  // namespace vexel
