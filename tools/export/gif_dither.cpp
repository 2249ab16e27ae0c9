#include "gif_dither.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vexel::tools {

namespace {

using Vector = std::array<double, 3>;

constexpr int kSide = 8;  // of the pattern, pixels
constexpr int kLevels = kSide * kSide;

// How bad the grain of a pattern is against a wrong colour; both are squared
// distances.
constexpr double kGrainWeight = 0.2;

// Colours remembered before all are forgotten, which bounds the memory.
constexpr size_t kMaxKnown = size_t{1} << 18;

// An ordered pattern: each number from 0 to 63 once, those that follow each
// other far apart. Bits of x ^ y and y alternate, the lowest first.
constexpr std::array<uint8_t, kLevels> kPattern = [] {
  std::array<uint8_t, kLevels> pattern = {};
  for (int y = 0; y < kSide; y++) {
    for (int x = 0; x < kSide; x++) {
      int value = 0;
      for (int bit = 0; bit < 3; bit++)
        value = value << 2 | ((x ^ y) >> bit & 1) << 1 | (y >> bit & 1);
      pattern[static_cast<size_t>(y * kSide + x)] = static_cast<uint8_t>(value);
    }
  }
  return pattern;
}();

Vector VectorOf(Rgb color) {
  return {static_cast<double>(color.red), static_cast<double>(color.green),
          static_cast<double>(color.blue)};
}

Vector Minus(const Vector& a, const Vector& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double Dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

}  // namespace

Dither::Dither(std::vector<Rgb> palette) : palette_(std::move(palette)) {}

// The nearest colour, and that other one on the way to which the wanted colour
// is best met.
Dither::Mix Dither::Find(const uint8_t* rgb) const {
  const Vector wanted = VectorOf({rgb[0], rgb[1], rgb[2]});
  Mix mix;
  double best = 1e9;
  for (size_t i = 0; i < palette_.size(); i++) {
    const Vector off = Minus(wanted, VectorOf(palette_[i]));
    const double error = Dot(off, off);
    if (error < best) {
      best = error;
      mix.first = static_cast<uint8_t>(i);
    }
  }
  const Vector first = VectorOf(palette_[mix.first]);
  const Vector off = Minus(wanted, first);
  const double whole = best;
  for (size_t i = 0; i < palette_.size() && whole > 0; i++) {
    const Vector way = Minus(VectorOf(palette_[i]), first);
    const double length = Dot(way, way);
    const double along = Dot(off, way);
    if (along <= 0 || length <= 0) continue;
    const double share = std::min(along / length, 0.5);
    const double wrong = whole - 2 * share * along + share * share * length;
    const double error = wrong + kGrainWeight * share * (1 - share) * length;
    if (error < best) {
      best = error;
      mix.second = static_cast<uint8_t>(i);
      mix.level = static_cast<uint8_t>(share * kLevels + 0.5);
    }
  }
  return mix;
}

void Dither::Row(const uint8_t* rgb, int32_t width, int32_t y, uint8_t* indices) {
  const uint8_t* pattern = &kPattern[static_cast<size_t>(y % kSide * kSide)];
  uint32_t last = 0;
  Mix mix;
  for (int32_t x = 0; x < width; x++, rgb += 3) {
    const uint32_t color = static_cast<uint32_t>(rgb[0]) << 16 | rgb[1] << 8 | rgb[2];
    if (x == 0 || color != last) {
      last = color;
      if (known_.size() >= kMaxKnown) known_.clear();
      const auto [place, isNew] = known_.try_emplace(color);
      if (isNew) place->second = Find(rgb);
      mix = place->second;
    }
    indices[x] = pattern[x % kSide] < mix.level ? mix.second : mix.first;
  }
}

}  // namespace vexel::tools
