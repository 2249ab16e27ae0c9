// Matrices and colour transforms in the words of an author: degrees, factors,
// boxes. Floating point is at home here; players never see it.
#include "author/types.h"

#include <cmath>
#include <numbers>

namespace vexel::author {

namespace {

int32_t Fixed(double value) {
  return static_cast<int32_t>(std::lround(value * kOne));
}

// Half the side of the square that gradients are laid out on.
constexpr double kGradientHalf = 16384;

}  // namespace

Matrix Matrix::Translate(int32_t tx, int32_t ty) {
  return {kOne, 0, 0, kOne, tx, ty};
}

Matrix Matrix::Scale(double sx, double sy, int32_t tx, int32_t ty) {
  return {Fixed(sx), 0, 0, Fixed(sy), tx, ty};
}

Matrix Matrix::Rotate(double degrees, double sx, double sy, int32_t tx, int32_t ty) {
  const double radians = degrees * std::numbers::pi / 180;
  const double cosine = std::cos(radians);
  const double sine = std::sin(radians);
  return {Fixed(sx * cosine), Fixed(sx * sine), Fixed(-sy * sine), Fixed(sy * cosine), tx, ty};
}

Matrix Matrix::GradientBox(const Rect& box, double degrees) {
  const double halfWidth = (double(box.xmax) - box.xmin) / 2;
  const double halfHeight = (double(box.ymax) - box.ymin) / 2;
  const double radians = degrees * std::numbers::pi / 180;
  const double cosine = std::cos(radians);
  const double sine = std::sin(radians);
  return {Fixed(halfWidth * cosine / kGradientHalf),
          Fixed(halfHeight * sine / kGradientHalf),
          Fixed(-halfWidth * sine / kGradientHalf),
          Fixed(halfHeight * cosine / kGradientHalf),
          static_cast<int32_t>(std::lround(box.xmin + halfWidth)),
          static_cast<int32_t>(std::lround(box.ymin + halfHeight))};
}

Cxform Cxform::Alpha(double opacity) {
  Cxform cxform;
  cxform.alphaMul = static_cast<int32_t>(std::lround(opacity * 256));
  return cxform;
}

Cxform Cxform::Tint(Color color, double amount) {
  const auto mul = static_cast<int32_t>(std::lround((1 - amount) * 256));
  const auto add = [amount](uint8_t channel) {
    return static_cast<int32_t>(std::lround(amount * channel));
  };
  return {mul, mul, mul, 256, add(color.red), add(color.green), add(color.blue), 0};
}

}  // namespace vexel::author
