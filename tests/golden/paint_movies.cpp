// Movies of what fills areas: gradients and bitmaps.
#include "golden/movies.h"

namespace vexel::author::golden {

namespace {

Bytes Gradients() {
  MovieWriter movie = Begin();
  movie.DefineShape(1, Checker(8, Color{206, 202, 192})).Place(1, 1);

  ShapeBuilder shape;
  const auto cell = [&](int column, int row) {
    return Box(5 + 39 * column, 5 + 38 * row, 38 + 39 * column, 38 + 38 * row);
  };
  const auto add = [&](int column, int row, const FillStyle& fill) {
    shape.Style(shape.AddFill(fill)).Rectangle(cell(column, row));
  };
  const std::vector<GradientStop> two = {{0, kBlue}, {255, kGold}};
  const std::vector<GradientStop> eight = {
      {0, kRed},    {36, kGold}, {73, kGreen}, {109, Color{255, 255, 255}},
      {146, kBlue}, {182, kRed}, {219, kInk},  {255, kGold}};
  const std::vector<GradientStop> late = {{64, kRed}, {128, kGold}, {128, kBlue}, {192, kGreen}};
  const std::vector<GradientStop> glass = {
      {0, Faded(kRed, 255)}, {128, Faded(kGold, 96)}, {255, Faded(kBlue, 0)}};
  const auto square = [&](int column, int row) { return Matrix::GradientBox(cell(column, row)); };

  add(0, 0, FillStyle::Linear(square(0, 0), two));
  add(1, 0, FillStyle::Linear(Matrix::GradientBox(cell(1, 0), 30), eight));
  add(2, 0, FillStyle::Linear(square(2, 0), late));
  add(3, 0, FillStyle::Linear(Matrix::GradientBox(cell(3, 0), 90), glass));
  add(0, 1, FillStyle::Radial(square(0, 1), two));
  add(1, 1, FillStyle::Radial(square(1, 1), eight));
  // Half as wide as its square, so that the last colour runs on.
  add(2, 1, FillStyle::Radial(Matrix::GradientBox(Box(86, 43, 96, 76)), late));
  add(3, 1, FillStyle::Radial(square(3, 1), glass));
  // A slanted ellipse, a gradient seen from its edge, a stop alone, and none.
  Matrix slanted = Matrix::GradientBox(cell(0, 2), 40);
  slanted.a /= 2;
  slanted.b /= 2;
  add(0, 2, FillStyle::Radial(slanted, eight));
  add(1, 2, FillStyle::Linear(Matrix::GradientBox(Box(59, 81, 62, 114)), two));
  add(2, 2, FillStyle::Radial(square(2, 2), {{100, kGreen}}));
  movie.DefineShape(2, shape).Place(2, 2);

  // Placed with a slant and a colour transform: the gradient follows both.
  ShapeBuilder disc;
  disc.Style(disc.AddFill(FillStyle::Radial(Matrix::GradientBox(Box(-14, -14, 14, 14)), eight)));
  disc.Ellipse({}, U(14), U(14));
  movie.DefineShape(3, disc);
  Matrix matrix = Matrix::Scale(0.8, 1, U(138), U(97));
  matrix.c = kOne / 2;
  PlaceTinted(movie, 3, 3, matrix, Cxform{256, 128, 256, 200, 0, 40, -60, 0});
  return Finish(movie);
}

// A letter on a field, so that turns and mirrorings show.
constexpr const char* kLetter[] = {
    "............",  //
    ".########...",  //
    ".########...",  //
    ".##.........",  //
    ".##.........",  //
    ".######.....",  //
    ".######..o..",  //
    ".##.....ooo.",  //
    ".##......o..",  //
    ".##.........",  //
    ".##.........",  //
    "............",
};
constexpr int kSide = 12;

Picture LetterPicture(uint8_t fieldAlpha) {
  Picture picture(kSide, kSide);
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const char c = kLetter[y][x];
      picture.At(x, y) = c == '#'   ? Color{180, uint8_t(20 * y), 40}
                         : c == 'o' ? Color{255, 210, 40, 160}
                                    : Color{uint8_t(90 + 12 * x), 200, 230, fieldAlpha};
    }
  }
  return picture;
}

LosslessBody LetterIndexes(int format, const std::vector<Color>& table) {
  std::vector<uint8_t> indexes;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const char c = kLetter[y][x];
      const int last = static_cast<int>(table.size()) - 1;
      indexes.push_back(static_cast<uint8_t>(
          c == '#' ? last : (c == 'o' && last > 1 ? 1 + (x + y) % (last - 1) : 0)));
    }
  }
  return LosslessFromIndexes(format, kSide, kSide, indexes, table);
}

// Characters 1 to 6: the letter in every format. Required: bitmaps of less than 8
// bits lend their size alone, and draw black.
void DefineLetters(TagStream& movie) {
  LosslessBody words;
  words.format = kBitmap16;
  words.width = words.height = kSide;
  const Picture picture = LetterPicture(255);
  for (const Color& color : picture.pixels) {
    const int word = color.red >> 3 << 10 | color.green >> 3 << 5 | color.blue >> 3;
    words.rows.push_back(static_cast<uint8_t>(word >> 8));
    words.rows.push_back(static_cast<uint8_t>(word & 255));
  }
  movie.DefineBits(1, kTagDefineBitsLossless, EncodeLossless(words, false));
  movie.DefineLossless(2, picture, false);
  movie.DefineLossless(3, LetterPicture(70), true);
  std::vector<Color> ramp;
  for (int i = 0; i < 40; ++i) {
    ramp.push_back({uint8_t(250 - 6 * i), uint8_t(240 - 3 * i), uint8_t(120 + 3 * i)});
  }
  movie.DefineBits(4, kTagDefineBitsLossless, EncodeLossless(LetterIndexes(kBitmap8, ramp), false));
  // Entries with alpha are premultiplied.
  movie.DefineBits(
      5, kTagDefineBitsLosslessAlpha,
      EncodeLossless(LetterIndexes(kBitmap8, {Color{0, 40, 60, 80}, Color{90, 20, 0, 128}, kInk}),
                     true));
  movie.DefineBits(6, kTagDefineBitsLossless,
                   EncodeLossless(LetterIndexes(kBitmap1, {kPaper, kRed}), false));
}

// A square of `side` pixels whose own corner is the bitmap's.
uint16_t DefinePatch(TagStream& movie, uint16_t id, uint16_t bitmap, const Matrix& matrix,
                     bool clipped, double side) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(FillStyle::Bitmap(bitmap, matrix, clipped)));
  shape.Rectangle(Box(0, 0, side, side));
  movie.DefineShape(id, shape);
  return id;
}

Bytes Bitmaps() {
  MovieWriter movie = Begin();
  DefineLetters(movie);
  movie.DefineShape(10, Checker(6, Color{200, 206, 196})).Place(10, 1);
  uint16_t id = 20;
  uint16_t depth = 2;
  for (uint16_t bitmap = 1; bitmap <= 6; ++bitmap) {
    const double x = 5 + 26 * (bitmap - 1);
    // Pixel for pixel, three ways: clipped in a larger square, tiled, and doubled.
    movie.Place(DefinePatch(movie, id++, bitmap, Matrix::Scale(20, 20), true, 16), depth++,
                At(x, 4));
    movie.Place(DefinePatch(movie, id++, bitmap, Matrix::Scale(20, 20, U(-4), U(-4)), false, 22),
                depth++, At(x, 20));
    movie.Place(DefinePatch(movie, id++, bitmap, Matrix::Scale(36.5, 36.5), true, 22), depth++,
                At(x, 46));
    // Turned, clipped: beyond its edge the edge's own pixels run on.
    movie.Place(DefinePatch(movie, id++, bitmap, Matrix::Rotate(30, 22, 22, U(9), U(2)), true, 22),
                depth++, At(x, 71));
    // Turned, tiled and small.
    movie.Place(
        DefinePatch(movie, id++, bitmap, Matrix::Rotate(-20, 13, 13, U(3), U(5)), false, 20),
        depth++, At(x, 96));
  }
  return Finish(movie);
}

// The matrices of objects and colour transforms upon bitmaps; a missing bitmap.
Bytes BitmapsPlaced() {
  MovieWriter movie = Begin();
  DefineLetters(movie);
  movie.DefineShape(10, Checker(6, Color{200, 206, 196})).Place(10, 1);
  uint16_t id = 20;
  uint16_t depth = 2;
  for (uint16_t bitmap = 1; bitmap <= 6; ++bitmap) {
    const double x = 5 + 26 * (bitmap - 1);
    const uint16_t patch = DefinePatch(movie, id++, bitmap, Matrix::Scale(20, 20), true, 12);
    movie.Place(patch, depth++, Matrix::Scale(-1.7, 1.7, U(x + 21), U(4)));
    movie.Place(patch, depth++, Matrix::Rotate(90, 1, 1, U(x + 13), U(29)));
    PlaceTinted(movie, patch, depth++, Matrix::Scale(1.8, 1.8, U(x), U(44)),
                Cxform{128, 256, 300, 256, 100, 0, -40, 0});
    PlaceTinted(movie, patch, depth++, Matrix::Rotate(12, 1.6, 1.6, U(x + 4), U(70)),
                Cxform::Alpha(0.5));
  }
  const Matrix twice = Matrix::Scale(40, 40);
  movie.Place(DefinePatch(movie, 60, 999, twice, true, 20), 60, At(5, 96));
  // Far smaller than life, and tiled within a disc.
  movie.Place(DefinePatch(movie, 61, 2, Matrix::Scale(6, 6), false, 20), 61, At(31, 96));
  ShapeBuilder disc;
  disc.Style(disc.AddFill(FillStyle::Bitmap(2, Matrix::Rotate(45, 20, 20))),
             disc.AddLine(30, kInk));
  disc.Ellipse(P(95, 106), U(38), U(10));
  movie.DefineShape(62, disc).Place(62, 62);
  return Finish(movie);
}

// A card for buffers of few colours: ramps, flat tints, a bitmap, slanted edges
// and something to see through.
Bytes Card() {
  MovieWriter movie = Begin();
  DefineLetters(movie);
  ShapeBuilder shape;
  const Color ends[] = {{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
  for (int i = 0; i < 4; ++i) {
    const Rect bar = Box(4, 4 + 10 * i, 156, 13 + 10 * i);
    shape.Style(shape.AddFill(
        FillStyle::Linear(Matrix::GradientBox(bar), {{0, ends[i]}, {255, Color{255, 255, 255}}})));
    shape.Rectangle(bar);
  }
  for (int i = 0; i < 8; ++i) {
    const auto grey = static_cast<uint8_t>(18 + 31 * i);
    shape.Style(shape.AddFill(Color{grey, grey, grey}))
        .Rectangle(Box(4 + 12 * i, 46, 15 + 12 * i, 57));
    shape.Style(shape.AddFill(Color{grey, 120, static_cast<uint8_t>(255 - grey)}))
        .Rectangle(Box(4 + 12 * i, 58, 15 + 12 * i, 69));
  }
  shape.Style(shape.AddFill(kGreen), shape.AddLine(40, kInk)).Ellipse(P(126, 58), U(22), U(12));
  shape.Style(shape.AddFill(FillStyle::Bitmap(2, Matrix::Scale(70, 70, U(4), U(74)), true)));
  shape.Rectangle(Box(4, 74, 46, 116));
  shape.Style(shape.AddFill(FillStyle::Bitmap(4, Matrix::Scale(20, 20, U(50), U(74)))));
  shape.Rectangle(Box(50, 74, 86, 116));
  const Matrix ball = Matrix::GradientBox(Box(92, 72, 152, 132));
  shape.Style(shape.AddFill(FillStyle::Radial(ball, {{0, kGold}, {140, kRed}, {255, kInk}})));
  shape.Rectangle(Box(90, 74, 156, 116));
  movie.DefineShape(10, shape).Place(10, 1);
  ShapeBuilder glass;
  glass.Style(glass.AddFill(Faded(kBlue, 110))).Polygon(Star(P(86, 84), 34, 5, 2));
  movie.DefineShape(11, glass).Place(11, 2);
  return Finish(movie);
}

}  // namespace

std::vector<NamedMovie> PaintMovies() {
  return {{"gradients", Gradients},
          {"bitmaps", Bitmaps},
          {"bitmaps-placed", BitmapsPlaced},
          {"card", Card}};
}

}  // namespace vexel::author::golden
