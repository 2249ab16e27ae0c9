// Movies to be streamed through bad networks: nothing in them runs by itself,
// so the picture at a time depends on the movie's bytes alone.
//
//     make_stream_movies FOLDER
#include <cstdio>
#include <random>
#include <string>

#include "author/movie_writer.h"

namespace {

using namespace vexel::author;

constexpr int kFrames = 60;
constexpr int kWidth = 200, kHeight = 150;  // pixels
constexpr int kRate = 25;
constexpr int kPixel = 20;  // units

std::mt19937 random_{1};

int32_t Below(int32_t limit) {
  return static_cast<int32_t>(random_() % static_cast<uint32_t>(limit));
}

Color AnyColor() {
  return {static_cast<uint8_t>(Below(256)), static_cast<uint8_t>(Below(256)),
          static_cast<uint8_t>(Below(256)), 255};
}

// A polygon of so many corners, about 3 bytes each.
ShapeBuilder AnyShape(int corners) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(AnyColor()));
  std::vector<Point> points;
  for (int i = 0; i < corners; i++) points.push_back({Below(60 * kPixel), Below(60 * kPixel)});
  shape.Polygon(points);
  return shape;
}

Matrix AnyPlace() {
  return Matrix::Translate(Below(kWidth * kPixel), Below(kHeight * kPixel));
}

// Every other frame brings a character; `early` brings all of them at once.
Bytes ShapesMovie(bool early, int corners) {
  MovieWriter movie(kWidth, kHeight, kRate);
  movie.BackgroundColor({240, 240, 230, 255});
  uint16_t defined = 0;
  for (int frame = 0; frame < kFrames; frame++) {
    const int wanted = early ? kFrames / 2 : frame / 2 + 1;
    while (defined < wanted) movie.DefineShape(++defined, AnyShape(corners));
    if (frame % 2 == 0)
      movie.Place(static_cast<uint16_t>(frame / 2 + 1), static_cast<uint16_t>(frame / 2 + 1),
                  AnyPlace());
    if (frame % 5 == 4) movie.RemoveObject(static_cast<uint16_t>(frame / 4 + 1));
    movie.Move(static_cast<uint16_t>(Below(frame / 2 + 1) + 1), AnyPlace());
    movie.FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

// Pictures of noise, which take many packets each.
Bytes PicturesMovie() {
  MovieWriter movie(kWidth, kHeight, kRate);
  for (int frame = 0; frame < kFrames; frame++) {
    if (frame % 10 == 0) {
      const uint16_t id = static_cast<uint16_t>(frame / 5 + 1);
      Picture picture(60, 50);
      for (Color& pixel : picture.pixels) pixel = AnyColor();
      movie.DefineLossless(id, picture, false);
      ShapeBuilder shape;
      shape.Style(shape.AddFill(FillStyle::Bitmap(id, Matrix::Scale(kPixel, kPixel))));
      shape.Rectangle({0, 60 * kPixel, 0, 50 * kPixel});
      movie.DefineShape(static_cast<uint16_t>(id + 1), shape);
      movie.Place(static_cast<uint16_t>(id + 1), static_cast<uint16_t>(id), AnyPlace());
    }
    movie.Move(static_cast<uint16_t>(2 * Below(frame / 10 + 1) + 1), AnyPlace());
    movie.FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

bool Write(const std::string& path, const Bytes& movie) {
  if (WriteFile(path, movie)) return true;
  std::fprintf(stderr, "%s cannot be written\n", path.c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string folder = std::string(argv[1]) + "/";
  return Write(folder + "spread.vxf", ShapesMovie(false, 300)) &&
                 Write(folder + "small.vxf", ShapesMovie(false, 20)) &&
                 Write(folder + "early.vxf", ShapesMovie(true, 200)) &&
                 Write(folder + "pictures.vxf", PicturesMovie())
             ? 0
             : 1;
}
