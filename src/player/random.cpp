// The generator is seeded by the first number that anyone asks for.
#include "player/random.h"

#include "geometry/intmath.h"
#include "player/text.h"

namespace vexel {

namespace {

int32_t Mix(int32_t x) {
  return WrapSub(WrapShl(x, 13) ^ x, Asr(x, 21));
}

}  // namespace

TRandomFast gRandomFast = {};

void RandomFastInit(TRandomFast* random) {
  random->seed = GetTime();
  random->taps = kRandomTaps;
  random->reserved = 0;
}

int32_t Random(int32_t n) {
  if (gRandomFast.seed == 0) RandomFastInit(&gRandomFast);
  const uint32_t out = gRandomFast.seed & 1;
  gRandomFast.seed >>= 1;
  if (out) gRandomFast.seed ^= gRandomFast.taps;
  const int32_t hash = RandomPureHasher(static_cast<int32_t>(gRandomFast.seed * 71));
  return n <= 0 ? 0 : (hash & kInt32Max) % n;
}

int32_t RandomPureHasher(int32_t x) {
  const int32_t a = Mix(x);
  const int32_t square = WrapAdd(WrapMul(WrapMul(a, a), 15731), 789221);
  const int32_t b = WrapAdd(WrapMul(square, a), 1376312589) & kInt32Max;
  return Mix(WrapAdd(b, a));
}

}  // namespace vexel
