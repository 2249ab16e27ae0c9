// The movies of the golden pictures: each shows one subject on 160 by 120
// pixels, laid out so that a person can tell at a glance whether it is right.
#pragma once

#include <cmath>
#include <vector>

#include "author/writer.h"

namespace vexel::author::golden {

inline constexpr int kWidth = 160;
inline constexpr int kHeight = 120;

struct NamedMovie {
  const char* name;
  Bytes (*make)();
};

// Lists by subject, all of which make_movies writes.
std::vector<NamedMovie> ShapeMovies();    // fill rules, strokes, far coordinates
std::vector<NamedMovie> PaintMovies();    // gradients, bitmaps, a card for pixel formats
std::vector<NamedMovie> StageMovies();    // masks, transparency, sprites
std::vector<NamedMovie> OutlineMovies();  // morphs, text

// Movie units of pixels.
inline int32_t U(double pixels) {
  return static_cast<int32_t>(std::lround(pixels * kPixel));
}
inline Point P(double x, double y) {
  return {U(x), U(y)};
}
inline Rect Box(double left, double top, double right, double bottom) {
  return {U(left), U(right), U(top), U(bottom)};
}
inline Matrix At(double x, double y) {
  return Matrix::Translate(U(x), U(y));
}
inline std::vector<Point> Star(Point center, double radius, int points, int stride) {
  std::vector<Point> corners;
  for (int i = 0; i < points; ++i) {
    const double turn = 6.283185307179586 * i * stride / points;
    corners.push_back(center + P(radius * std::sin(turn), -radius * std::cos(turn)));
  }
  return corners;
}

inline constexpr Color kInk{30, 34, 46};
inline constexpr Color kPaper{244, 240, 228};
inline constexpr Color kRed{206, 62, 48};
inline constexpr Color kBlue{44, 92, 178};
inline constexpr Color kGreen{58, 146, 84};
inline constexpr Color kGold{232, 178, 44};

inline Color Faded(Color color, uint8_t alpha) {
  color.alpha = alpha;
  return color;
}

// A movie begun, with a background.
inline MovieWriter Begin(Color background = kPaper) {
  MovieWriter movie(kWidth, kHeight);
  movie.BackgroundColor(background);
  return movie;
}
// A movie of one frame ended.
inline Bytes Finish(MovieWriter& movie) {
  movie.FrameEnd().End();
  return movie.Finish();
}
// Places a character under a colour transform. The old form of placement has no
// alpha in its transform, so this takes the newer one.
inline void PlaceTinted(TagStream& tags, uint16_t id, uint16_t depth, const Matrix& matrix,
                        const Cxform& cxform) {
  Placement placement;
  placement.depth = depth;
  placement.character = id;
  placement.matrix = matrix;
  placement.cxform = cxform;
  tags.Place(placement);
}
// A shape of a checkerboard, to see transparency against.
inline ShapeBuilder Checker(double cell, Color color) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(color));
  for (int row = 0; row * cell < kHeight; ++row) {
    for (int column = row % 2; column * cell < kWidth; column += 2) {
      shape.Rectangle(Box(column * cell, row * cell, (column + 1) * cell, (row + 1) * cell));
    }
  }
  return shape;
}

}  // namespace vexel::author::golden
