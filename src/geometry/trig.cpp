// Sine by table, arctangent by a polynomial in Newton's divided differences.
#include "geometry/trig.h"

#include "geometry/sine_table.h"

namespace vexel {

// Angles with 20 fraction bits; ScaledAngle brings them to those of a caller.
static constexpr int kFullBits = 20;
static constexpr int32_t kFull = 0x16800000;
static constexpr int32_t kThreeQuarter = 0x10E00000;
static constexpr int32_t kHalf = 0xB400000;
static constexpr int32_t kQuarter = 0x5A00000;

static int ClampFrac(int frac) {
  return frac < 2 ? 2 : frac > 20 ? 20 : frac;
}
static int ClampOut(int out) {
  return out < 0 ? 0 : out > 30 ? 30 : out;
}

SFIXED FixedNearestMultiple(SFIXED v, SFIXED m) {
  if (m == 0) return v;
  const int64_t half = m / 2;
  const int64_t moved = v >= 0 ? v + half : v - half;
  return Low32(moved / m * m);
}

int32_t __FPSin(int32_t angle, int frac, int out) {
  frac = ClampFrac(frac);
  out = ClampOut(out);
  // A cell is a quarter of a degree wide.
  const int32_t i = Asr(angle, frac - 2) & 0x1FF;
  const int32_t r = WrapSub(angle, WrapShl(i, frac - 2));
  const uint32_t t0 = kSine[i];
  const uint32_t t1 = kSine[i < 511 ? i + 1 : 511];
  const int64_t d = t1 >= t0 ? t1 - t0 : t0 - t1;
  // Required: the shift is that of a whole degree, so the interpolation goes only
  // a quarter of the way to the next entry. Every rotation in the system is
  // made with it; mending it would move pixels.
  const int32_t step = Saturate32(Asr64(d * r + (int64_t{1} << (31 - frac)), 32 - frac));
  const uint32_t t = t1 >= t0 ? t0 + static_cast<uint32_t>(step) : t0 - static_cast<uint32_t>(step);
  return static_cast<int32_t>((t + (1u << (30 - out))) >> (31 - out));
}

// An angle brought to 0 up to 360 degrees. A negative multiple of 360 degrees
// comes out as 360, which the callers' quadrants take as it is.
static int32_t ReduceAngle(int32_t angle, int32_t full) {
  if (angle >= full) return angle % full;
  if (angle >= 0) return angle;
  const int64_t turns = -int64_t{angle} / full + 1;
  return static_cast<int32_t>(angle + turns * full);
}

int32_t _FPSin(int32_t angle, int frac, int out) {
  frac = ClampFrac(frac);
  const int s = kFullBits - frac;
  int32_t a = ReduceAngle(angle, kFull >> s);
  const bool negate = a >= kHalf >> s;
  if (negate) a -= kHalf >> s;
  if (a > kQuarter >> s) a = (kHalf >> s) - a;
  const int32_t sine = __FPSin(a, frac, out);
  return negate ? -sine : sine;
}

int32_t _FPCos(int32_t angle, int frac, int out) {
  frac = ClampFrac(frac);
  const int s = kFullBits - frac;
  const int32_t quarter = kQuarter >> s;
  const int32_t a = ReduceAngle(angle, kFull >> s);
  if (a < quarter) return __FPSin(quarter - a, frac, out);
  if (a >= kThreeQuarter >> s) return __FPSin(a - (kThreeQuarter >> s), frac, out);
  int32_t v = a - quarter;
  if (v > quarter) v = (kHalf >> s) + quarter - a;
  return -__FPSin(v, frac, out);
}

SFIXED FixedTan(SFIXED angle) {
  return FixedDiv(_FPSin(angle, 16, 16), _FPCos(angle, 16, 16));
}

// Nodes (0, 0.0001, 0.0005, 0.001, 0.01, 0.1, 0.3, 0.5, 0.7, 0.9) and divided
// differences of the arctangent in degrees, both with 25 fraction bits.
static constexpr int kPolyBits = 25;
static constexpr int32_t kNode[10] = {0,        0xD1B,    0x4189,    0x8312,    0x51EB8,
                                      0x333333, 0x999999, 0x1000000, 0x1666666, 0x1CCCCCC};
static constexpr uint32_t kCoefficient[11] = {0,          0x72977063, 0xFFFA2214, 0xD9CD8811,
                                              0x00440D74, 0x16BC31BB, 0xF9C12219, 0xF59CAB63,
                                              0x0A44F19D, 0xFCEB901A, 0xFE34E3A5};

int32_t __FPATan(int32_t x, int frac, int out) {
  frac = ClampFrac(frac);
  out = ClampOut(out);
  const int32_t u = WrapShl(x, kPolyBits - frac);
  int32_t acc = static_cast<int32_t>(kCoefficient[10]);
  for (int i = 9; i >= 0; --i) {
    const int64_t product = int64_t{WrapSub(u, kNode[i])} * acc + 0x1000000;
    acc = WrapAdd(static_cast<int32_t>(kCoefficient[i]), Saturate32(Asr64(product, kPolyBits)));
  }
  if (out >= kPolyBits) return WrapShl(acc, out - kPolyBits);
  return Asr(WrapAdd(acc, 1 << (kPolyBits - 1 - out)), kPolyBits - out);
}

// An angle of 20 fraction bits, rounded to those of a result.
static int32_t RoundedAngle(int32_t angle, int out) {
  const int s = kFullBits - out;
  return s > 0 ? (angle + (1 << (s - 1))) >> s : WrapShl(angle, -s);
}

int32_t _FPATan(int32_t x, int frac, int out) {
  frac = ClampFrac(frac);
  out = ClampOut(out);
  const bool negate = x < 0;
  if (negate) x = x == kInt32Min ? kInt32Max : -x;
  const int32_t one = 1 << frac;
  const int32_t angle = x <= one ? __FPATan(x, frac, out)
                                 : WrapSub(RoundedAngle(kQuarter, out),
                                           __FPATan(QuotientShifted(one, x, frac), frac, out));
  return negate ? WrapNeg(angle) : angle;
}

int32_t _FPATan2(int32_t y, int32_t x, int frac, int out) {
  frac = ClampFrac(frac);
  out = ClampOut(out);
  if (x == 0) {
    const int32_t quarter = RoundedAngle(kQuarter, out);
    return y < 0 ? WrapNeg(quarter) : quarter;
  }
  const int32_t angle = _FPATan(QuotientShifted(y, x, frac), frac, out);
  if (x > 0) return angle;
  const int32_t half = RoundedAngle(kHalf, out);
  return y >= 0 ? WrapAdd(angle, half) : WrapSub(angle, half);
}

}  // namespace vexel
