// Plain values of the movie writer. Lengths are movie units, twentieths of a
// pixel, unless a name says pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexel::author {

using Bytes = std::vector<uint8_t>;

// Where a width or a flag may be forced, this stands for "the smallest that
// holds the values".
inline constexpr int kAuto = -1;

inline constexpr int32_t kPixel = 20;      // movie units in a pixel
inline constexpr int32_t kOne = 0x10000;   // 1.0 in 16.16
inline constexpr int32_t kGlyphEm = 1024;  // side of the square that glyphs are drawn on

struct Point {
  int32_t x = 0;
  int32_t y = 0;

  friend constexpr bool operator==(const Point&, const Point&) = default;
  friend constexpr Point operator+(Point p, Point q) { return {p.x + q.x, p.y + q.y}; }
  friend constexpr Point operator-(Point p, Point q) { return {p.x - q.x, p.y - q.y}; }
};

constexpr Point Pixels(int32_t x, int32_t y) {
  return {x * kPixel, y * kPixel};
}

struct Rect {
  int32_t xmin = 0;
  int32_t xmax = 0;
  int32_t ymin = 0;
  int32_t ymax = 0;

  friend constexpr bool operator==(const Rect&, const Rect&) = default;

  static constexpr Rect Pixels(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return {left * kPixel, right * kPixel, top * kPixel, bottom * kPixel};
  }
};

// x' = a x + c y + tx and y' = b x + d y + ty, the linear fields in 16.16.
struct Matrix {
  int32_t a = kOne;
  int32_t b = 0;
  int32_t c = 0;
  int32_t d = kOne;
  int32_t tx = 0;
  int32_t ty = 0;

  friend constexpr bool operator==(const Matrix&, const Matrix&) = default;

  static Matrix Translate(int32_t tx, int32_t ty);
  static Matrix Scale(double sx, double sy, int32_t tx = 0, int32_t ty = 0);
  // Scales first, then turns (clockwise on the screen), then moves.
  static Matrix Rotate(double degrees, double sx = 1, double sy = 1, int32_t tx = 0,
                       int32_t ty = 0);
  // The matrix that maps the square of a gradient, whose sides lie at -16384
  // and 16384, onto a rectangle: a linear gradient runs from left to right, a
  // radial one from the middle to the nearest edges.
  static Matrix GradientBox(const Rect& box, double degrees = 0);
};

// A colour as files hold it: not premultiplied.
struct Color {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  uint8_t alpha = 255;

  friend constexpr bool operator==(const Color&, const Color&) = default;
};

// A colour transform. 256 multiplies by one; each stored value fits 15 bits
// with its sign.
struct Cxform {
  int32_t redMul = 256;
  int32_t greenMul = 256;
  int32_t blueMul = 256;
  int32_t alphaMul = 256;
  int32_t redAdd = 0;
  int32_t greenAdd = 0;
  int32_t blueAdd = 0;
  int32_t alphaAdd = 0;

  friend constexpr bool operator==(const Cxform&, const Cxform&) = default;

  static Cxform Alpha(double opacity);
  // Mixes toward a colour: 0 leaves the picture, 1 leaves the colour alone.
  static Cxform Tint(Color color, double amount);
};

}  // namespace vexel::author
