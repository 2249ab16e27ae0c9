// A small renderer of one view: fractal noise for mist, the band of stars, the
// rock of the hills and the ripples of the water; a moon with its halo and its
// road on the sea; lights of the town with their reflections; grain and the
// dark corners of a lens at the end.
#include "night_photo.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "coast.h"

namespace harbour {

namespace {

using vexel::author::Color;
using vexel::author::Picture;

struct Light {
  double red = 0;
  double green = 0;
  double blue = 0;

  Light operator+(Light b) const { return {red + b.red, green + b.green, blue + b.blue}; }
  Light operator*(double s) const { return {red * s, green * s, blue * s}; }
};

Light Mix(Light a, Light b, double t) {
  return a * (1 - t) + b * t;
}

double Smooth(double low, double high, double x) {
  const double t = std::clamp((x - low) / (high - low), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

uint32_t Hash(int x, int y, uint32_t seed) {
  uint32_t h = static_cast<uint32_t>(x) * 374761393u + static_cast<uint32_t>(y) * 668265263u +
               seed * 2246822519u;
  h = (h ^ (h >> 13)) * 1274126177u;
  return h ^ (h >> 16);
}

double Lot(int x, int y, uint32_t seed) {
  return Hash(x, y, seed) / 4294967296.0;
}

// Smooth noise of 0 to 1 on a lattice of side 1.
double Noise(double x, double y, uint32_t seed) {
  const double fx = std::floor(x);
  const double fy = std::floor(y);
  const int ix = static_cast<int>(fx);
  const int iy = static_cast<int>(fy);
  const double tx = Smooth(0, 1, x - fx);
  const double ty = Smooth(0, 1, y - fy);
  const double top = std::lerp(Lot(ix, iy, seed), Lot(ix + 1, iy, seed), tx);
  const double bottom = std::lerp(Lot(ix, iy + 1, seed), Lot(ix + 1, iy + 1, seed), tx);
  return std::lerp(top, bottom, ty);
}

double Fractal(double x, double y, uint32_t seed, int octaves = 5) {
  double sum = 0;
  double weight = 0.5;
  for (int i = 0; i < octaves; ++i) {
    sum += weight * Noise(x, y, seed + static_cast<uint32_t>(i));
    x = x * 2.03 + 17;
    y = y * 2.03 + 31;
    weight /= 2;
  }
  return sum;
}

constexpr double kMoonX = 560;
constexpr double kMoonY = 92;
constexpr double kMoonRadius = 21;

Light Sky(double x, double y) {
  Light light = Mix({0.015, 0.025, 0.075}, {0.10, 0.17, 0.30}, Smooth(0, kHorizon, y));
  // The band of stars runs from the lower left to the upper right.
  const double across = (y - 150 + (x - 400) * 0.42) / 70;
  const double band = std::exp(-across * across);
  const double dust = Fractal(x / 90, y / 60, 11);
  light = light + Light{0.16, 0.15, 0.21} * (band * Smooth(0.3, 0.75, dust));
  const double mist = Fractal(x / 170 + 5, y / 38, 23);
  const double low = Smooth(60, kHorizon, y);
  light = light + Light{0.09, 0.12, 0.17} * (low * Smooth(0.45, 0.8, mist));
  const double moon = std::hypot(x - kMoonX, y - kMoonY);
  light = light + Light{0.55, 0.6, 0.7} * std::exp(-moon / 34) +
          Light{0.10, 0.13, 0.20} * std::exp(-moon / 150);
  if (moon < kMoonRadius + 1) {
    const double seas = Fractal(x / 11, y / 11, 41);
    const Light face = Light{0.98, 0.96, 0.88} * (0.72 + 0.5 * (seas - 0.2));
    light = Mix(face, light, Smooth(kMoonRadius - 1, kMoonRadius + 1, moon));
  }
  return light;
}

struct Spot {
  double x;
  double y;
  double size;
  Light light;
};

std::vector<Spot> Stars() {
  std::vector<Spot> stars;
  for (int i = 0; i < 900; ++i) {
    const double x = Lot(i, 1, 71) * kWidth;
    const double y = std::pow(Lot(i, 2, 71), 1.2) * (kHorizon - 6);
    const double bright = std::pow(Lot(i, 3, 71), 7) * 1.3 + 0.08;
    const double warm = Lot(i, 4, 71);
    stars.push_back(
        {x, y, 0.55 + 0.5 * bright, Mix({0.75, 0.85, 1.0}, {1.0, 0.88, 0.7}, warm) * bright});
  }
  return stars;
}

// Windows and lamps of the town on the nearest ridge.
std::vector<Spot> Lamps() {
  std::vector<Spot> lamps;
  for (int i = 0; i < 150; ++i) {
    const double x = 540 + std::pow(Lot(i, 1, 91), 0.8) * 265;
    const double top = RidgeTop(2, x);
    const double y = top + 4 + Lot(i, 2, 91) * std::max(0.0, kHorizon - top - 6);
    const double bright = 0.35 + 0.65 * Lot(i, 3, 91);
    lamps.push_back({x, y, 0.8 + 0.7 * Lot(i, 4, 91),
                     Mix({1.0, 0.62, 0.25}, {1.0, 0.9, 0.65}, Lot(i, 5, 91)) * bright});
  }
  return lamps;
}

void Shine(std::vector<Light>& view, const Spot& spot, double reach) {
  for (int y = static_cast<int>(spot.y - reach); y <= spot.y + reach; ++y) {
    for (int x = static_cast<int>(spot.x - reach); x <= spot.x + reach; ++x) {
      if (x < 0 || y < 0 || x >= kWidth || y >= kHeight) continue;
      const double d = std::hypot(x + 0.5 - spot.x, y + 0.5 - spot.y) / spot.size;
      Light& pixel = view[static_cast<size_t>(y) * kWidth + static_cast<size_t>(x)];
      pixel = pixel + spot.light * (std::exp(-d * d) + 0.10 * std::exp(-d / 2.5));
    }
  }
}

Light Land(double x, double y, int ridge) {
  const double top = RidgeTop(ridge, x);
  const double rock = Fractal(x / 24 + ridge * 40, y / 14, 57);
  const Light dark[kRidges] = {{0.050, 0.075, 0.125}, {0.030, 0.048, 0.080}, {0.014, 0.022, 0.036}};
  // Slopes that look up to the moon catch its light.
  const double slope = RidgeTop(ridge, x + 4) - RidgeTop(ridge, x - 4);
  const double lit = std::clamp(0.5 + slope * (x < kMoonX ? -0.12 : 0.12), 0.0, 1.0);
  const double fade = Smooth(0, 34, y - top);
  return dark[ridge] * (0.7 + 0.9 * rock) + Light{0.045, 0.055, 0.075} * (lit * (1 - fade) * rock);
}

// The view above the water; the sea mirrors it.
std::vector<Light> Above() {
  std::vector<Light> view(size_t(kWidth) * kHeight);
  const auto at = [&](int x, int y) -> Light& {
    return view[static_cast<size_t>(y) * kWidth + static_cast<size_t>(x)];
  };
  for (int y = 0; y < kHorizon; ++y) {
    for (int x = 0; x < kWidth; ++x) at(x, y) = Sky(x + 0.5, y + 0.5);
  }
  for (const Spot& star : Stars()) {
    if (std::hypot(star.x - kMoonX, star.y - kMoonY) > kMoonRadius + 6) Shine(view, star, 4);
  }
  for (int ridge = 0; ridge < kRidges; ++ridge) {
    for (int x = 0; x < kWidth; ++x) {
      const double top = RidgeTop(ridge, x + 0.5);
      for (int y = std::max(0, static_cast<int>(top)); y < kHorizon; ++y) {
        const double cover = std::clamp(y + 1 - top, 0.0, 1.0);
        at(x, y) = Mix(at(x, y), Land(x, y, ridge), cover);
      }
    }
  }
  for (const Spot& lamp : Lamps()) Shine(view, lamp, 9);
  return view;
}

Light Sea(const std::vector<Light>& above, double x, double y) {
  const double depth = (y - kHorizon) / (kHeight - kHorizon);
  // Ripples grow toward the viewer and tear the mirror image sideways and down.
  const double scale = 3 + 26 * depth;
  const double ripple = Fractal(x / (scale * 4), y / scale * 1.6, 67, 4) - 0.47;
  const double mirror = kHorizon - (y - kHorizon) * 0.92 + ripple * (20 + 170 * depth);
  const int sx = std::clamp(static_cast<int>(x + ripple * 26 * (0.2 + depth)), 0, kWidth - 1);
  const int sy = std::clamp(static_cast<int>(mirror), 0, static_cast<int>(kHorizon) - 1);
  Light light = above[static_cast<size_t>(sy) * kWidth + static_cast<size_t>(sx)] * 0.62;
  light = Mix(light, {0.018, 0.045, 0.085}, 0.25 + 0.4 * depth);
  // The moon's road.
  const double width = 14 + 110 * depth;
  const double road = std::exp(-std::pow((x - kMoonX) / width, 2));
  return light + Light{0.75, 0.82, 0.9} * (road * Smooth(0.02, 0.22, ripple) * (0.9 - 0.4 * depth));
}

uint8_t Develop(double light, double grain) {
  // A film's shoulder, then the screen's gamma.
  const double exposed = 1 - std::exp(-1.7 * std::max(light, 0.0));
  return static_cast<uint8_t>(std::clamp(std::pow(exposed, 1 / 1.55) * 255 + grain, 0.0, 255.0));
}

}  // namespace

Picture NightPhoto() {
  const std::vector<Light> above = Above();
  Picture picture(kWidth, kHeight);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      Light light = y < kHorizon ? above[static_cast<size_t>(y) * kWidth + static_cast<size_t>(x)]
                                 : Sea(above, x + 0.5, y + 0.5);
      const double corner = std::hypot((x - 400) / 400.0, (y - 225) / 225.0);
      light = light * (1 - 0.28 * Smooth(0.6, 1.4, corner));
      const double grain = (Lot(x, y, 101) - 0.5) * 3;
      picture.At(x, y) = {Develop(light.red, grain), Develop(light.green, grain),
                          Develop(light.blue, grain), 255};
    }
  }
  return picture;
}

}  // namespace harbour
