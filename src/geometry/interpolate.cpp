// Interpolation of the structures that morphs are made of, field by field.
#include "geometry/interpolate.h"

namespace vexel {

void Interpolate(const SRECT* a, const SRECT* b, SFIXED t, SRECT* dst) {
  *dst = {Interpolate(a->xmin, b->xmin, t), Interpolate(a->xmax, b->xmax, t),
          Interpolate(a->ymin, b->ymin, t), Interpolate(a->ymax, b->ymax, t)};
}

void Interpolate(const MATRIX* a, const MATRIX* b, SFIXED t, MATRIX* dst) {
  *dst = {Interpolate(a->a, b->a, t), Interpolate(a->b, b->b, t),   Interpolate(a->c, b->c, t),
          Interpolate(a->d, b->d, t), Interpolate(a->tx, b->tx, t), Interpolate(a->ty, b->ty, t)};
}

static uint16_t Channel16(uint16_t a, uint16_t b, SFIXED t) {
  return static_cast<uint16_t>(Interpolate(int32_t{a}, int32_t{b}, t));
}

void Interpolate(const RGBI* a, const RGBI* b, SFIXED t, RGBI* dst) {
  *dst = {Channel16(a->blue, b->blue, t), Channel16(a->green, b->green, t),
          Channel16(a->red, b->red, t), Channel16(a->alpha, b->alpha, t)};
}

static uint8_t Channel8(uint8_t a, uint8_t b, SFIXED t) {
  return static_cast<uint8_t>(Interpolate(int32_t{a}, int32_t{b}, t));
}

void Interpolate(const SRGB* a, const SRGB* b, SFIXED t, SRGB* dst) {
  if (t <= 0)
    *dst = *a;
  else if (t >= kFixedOne)
    *dst = *b;
  else
    *dst = {Channel8(a->red, b->red, t), Channel8(a->green, b->green, t),
            Channel8(a->blue, b->blue, t), Channel8(a->alpha, b->alpha, t)};
}

}  // namespace vexel
