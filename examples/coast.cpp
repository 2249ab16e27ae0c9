// Hills are sums of a few waves, fallen off toward where a ridge meets the sea.
#include "coast.h"

#include <algorithm>
#include <cmath>

namespace harbour {

namespace {

struct Ridge {
  double height;  // pixels above the horizon
  double from;    // x where the ridge rises and where it is gone again
  double to;
  double length;  // of its longest wave, pixels
  double phase;
};

constexpr Ridge kRidge[kRidges] = {
    {96, -300, 1100, 410, 0.4},
    {74, 250, 1300, 300, 2.1},
    {58, 470, 1500, 190, 4.4},
};

constexpr double kTau = 6.283185307179586;

}  // namespace

double RidgeTop(int index, double x) {
  const Ridge& ridge = kRidge[index];
  const double t = std::clamp((x - ridge.from) / (ridge.to - ridge.from), 0.0, 1.0);
  const double swell = std::pow(std::sin(t * kTau / 2), 0.8);
  const double w = x / ridge.length * kTau + ridge.phase;
  const double rough =
      0.62 + 0.22 * std::sin(w) + 0.11 * std::sin(2.3 * w + 1) + 0.05 * std::sin(5.1 * w + 2);
  return kHorizon - ridge.height * swell * rough;
}

}  // namespace harbour
