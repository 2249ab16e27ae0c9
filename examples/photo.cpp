// Every pixel is the mean of the ground that it covers in the file, edge pixels
// counted by the part that lies inside, all in integers: the same on every
// machine.
#include "photo.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

#include "author/import_pixels.h"

namespace demo {

using vexel::author::Color;
using vexel::author::Picture;
using vexel::author::SceneBitmap;

namespace {

// Along one axis: `length` pixels of the file from `start` become `pixels`.
struct Axis {
  int64_t start;
  int64_t length;
  int64_t pixels;

  // What pixel `i` covers, in units of 1 / pixels of a pixel of the file.
  int64_t From(int64_t i) const { return start * pixels + i * length; }
  // How much of that lies in pixel `at` of the file.
  int64_t Share(int64_t i, int64_t at) const {
    return std::min(From(i + 1), (at + 1) * pixels) - std::max(From(i), at * pixels);
  }
  int64_t First(int64_t i) const { return From(i) / pixels; }
  int64_t Last(int64_t i) const { return (From(i + 1) - 1) / pixels; }
};

Color Mean(const SceneBitmap& file, const Axis& across, const Axis& down, int64_t x, int64_t y) {
  int64_t red = 0, green = 0, blue = 0;
  for (int64_t v = down.First(y); v <= down.Last(y); ++v) {
    const int64_t height = down.Share(y, v);
    for (int64_t u = across.First(x); u <= across.Last(x); ++u) {
      const int64_t share = height * across.Share(x, u);
      const uint32_t pixel = file.pixels[static_cast<size_t>(v * file.width + u)];
      red += share * (pixel >> 16 & 255);
      green += share * (pixel >> 8 & 255);
      blue += share * (pixel & 255);
    }
  }
  const int64_t whole = across.length * down.length;
  const auto channel = [whole](int64_t sum) {
    return static_cast<uint8_t>((sum + whole / 2) / whole);
  };
  return {channel(red), channel(green), channel(blue)};
}

}  // namespace

bool ReadPhoto(const std::string& path, uint16_t width, uint16_t height, double place, Picture* out,
               std::string* error) {
  std::ifstream in(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  if (!in) {
    *error = "cannot be read";
    return false;
  }
  SceneBitmap file;
  if (!vexel::author::DecodeJpeg(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(),
                                 &file, error)) {
    return false;
  }
  if (file.width < width || file.height < height) {
    *error = "is too small";
    return false;
  }
  Axis across = {0, file.width, width};
  Axis down = {0, file.height, height};
  // The wider of the two shapes loses ground at its sides, the other above and below.
  Axis& cut = int64_t{file.width} * height > int64_t{file.height} * width ? across : down;
  const int64_t all = cut.length;
  cut.length = &cut == &across ? int64_t{file.height} * width / height
                               : int64_t{file.width} * height / width;
  cut.start = static_cast<int64_t>(static_cast<double>(all - cut.length) * place);

  *out = Picture(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) out->At(x, y) = Mean(file, across, down, x, y);
  }
  return true;
}

}  // namespace demo
