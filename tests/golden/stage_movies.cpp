// Movies of what stands on a stage: masks, layers of transparency, timelines
// within timelines.
#include "golden/movies.h"

namespace vexel::author::golden {

namespace {

void PlaceMask(TagStream& tags, uint16_t id, uint16_t depth, uint16_t last, const Matrix& matrix) {
  Placement placement;
  placement.depth = depth;
  placement.character = id;
  placement.matrix = matrix;
  placement.clipDepth = last;
  tags.Place(placement);
}

ShapeBuilder Stripes(Color color, double degrees) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(color));
  const double slant = std::tan(degrees * 3.141592653589793 / 180) * 120;
  for (double x = -120; x < 160; x += 10) {
    shape.Polygon({P(x, 0), P(x + 5, 0), P(x + 5 + slant, 120), P(x + slant, 120)});
  }
  return shape;
}

Bytes Masks() {
  MovieWriter movie = Begin();
  movie.DefineShape(1, Stripes(kBlue, 30));
  movie.DefineShape(2, Stripes(Faded(kRed, 150), 0));
  ShapeBuilder disc;
  disc.Style(disc.AddFill(kInk)).Ellipse({}, U(40), U(40));
  movie.DefineShape(3, disc);
  ShapeBuilder star;
  star.Style(star.AddFill(FillStyle::Linear(Matrix::GradientBox(Box(-30, -30, 30, 30)),
                                            {{0, kRed}, {255, Faded(kGold, 0)}})));
  star.Polygon(Star({}, 38, 5, 2));
  movie.DefineShape(4, star);
  ShapeBuilder sheet;
  sheet.Style(sheet.AddFill(kGold)).Rectangle(Box(-100, -100, 100, 100));
  movie.DefineShape(5, sheet);

  // A disc lets stripes through; a star within it lets a sheet through, with
  // its hole; a sprite within both has a mask of its own.
  PlaceMask(movie, 3, 1, 10, At(50, 50));
  movie.Place(1, 2);
  PlaceMask(movie, 4, 3, 6, At(62, 46));
  movie.Place(5, 4, At(80, 60));
  TagStream sprite;
  PlaceMask(sprite, 3, 1, 5, Matrix::Scale(0.4, 0.4));
  sprite.Place(5, 2);
  sprite.Place(2, 3, At(-80, -60)).FrameEnd().End();
  movie.DefineSprite(6, sprite);
  Placement green;
  green.depth = 5;
  green.character = 6;
  green.matrix = At(50, 60);
  green.cxform = Cxform{100, 256, 100, 256};
  movie.Place(green);
  // Behind the star's last depth and still under the disc.
  movie.Place(2, 8);
  // Outside of all masks, then a second mask that lets a turned sheet through.
  movie.Place(4, 11, Matrix::Scale(0.6, 0.6, U(130), U(30)));
  PlaceMask(movie, 4, 12, 13, Matrix::Rotate(36, 0.9, 0.9, U(118), U(82)));
  movie.Place(1, 13);
  return Finish(movie);
}

// Deeper stacks than a pixel keeps apart.
Bytes Glass() {
  MovieWriter movie = Begin(Color{255, 255, 255});
  movie.DefineShape(1, Checker(10, Color{214, 214, 220})).Place(1, 1);
  const Color tints[] = {kRed, kGold, kGreen, kBlue};
  ShapeBuilder pane[4];
  for (uint16_t i = 0; i < 4; ++i) {
    pane[i].Style(pane[i].AddFill(Faded(tints[i], 60)), pane[i].AddLine(20, Faded(kInk, 120)));
    pane[i].Ellipse({}, U(30), U(22));
    movie.DefineShape(static_cast<uint16_t>(2 + i), pane[i]);
  }
  for (uint16_t i = 0; i < 16; ++i) {
    movie.Place(static_cast<uint16_t>(2 + i % 4), static_cast<uint16_t>(2 + i),
                At(34 + 4 * i, 28 + i % 3));
  }
  // One picture under one transform each.
  ShapeBuilder mark;
  mark.Style(mark.AddFill(kRed)).Rectangle(Box(0, 0, 12, 12));
  mark.Style(mark.AddFill(kGreen)).Rectangle(Box(6, 6, 18, 18));
  mark.Style(mark.AddFill(Faded(kBlue, 128))).Ellipse(P(9, 16), U(8), U(8));
  movie.DefineShape(8, mark);
  const Cxform transforms[] = {
      {},
      Cxform::Alpha(0.5),
      Cxform::Tint(kGold, 0.6),
      {-256, -256, -256, 256, 255, 255, 255, 0},
      {512, 512, 512, 256, 0, 0, 0, 0},
      {256, 256, 256, 256, 0, 0, 0, -100},
      {0, 0, 0, 256, 120, 120, 120, 0},
      {64, 256, 256, 256, 0, -120, 90, 120},
      {256, 256, 256, 0, 0, 0, 0, 70},
      Cxform::Alpha(0),
      {256, 256, 256, 256, 200, 200, 200, 0},
      {256, 0, 0, 128, 0, 0, 0, 64},
  };
  uint16_t depth = 30;
  for (const Cxform& cxform : transforms) {
    const int place = depth - 30;
    PlaceTinted(movie, 8, depth++, At(6 + 26 * (place % 6), 60 + 29 * (place / 6)), cxform);
  }
  return Finish(movie);
}

// Transforms of parents upon those of children: half and half again, tint on
// tint, and a turn within a slant.
Bytes Nested() {
  MovieWriter movie = Begin();
  ShapeBuilder flag;
  flag.Style(flag.AddFill(kRed), flag.AddLine(20, kInk)).Rectangle(Box(0, 0, 20, 12));
  flag.Style(flag.AddFill(kGold)).Polygon(Star(P(7, 6), 5, 5, 2));
  movie.DefineShape(1, flag);
  for (uint16_t level = 0; level < 4; ++level) {
    TagStream sprite;
    sprite.Place(static_cast<uint16_t>(1 + level), 1, At(-4, -14));
    Placement again;
    again.depth = 2;
    again.character = static_cast<uint16_t>(1 + level);
    again.matrix = Matrix::Rotate(40, 0.9, 0.8, U(16), U(2));
    again.cxform = level % 2 == 0 ? Cxform::Alpha(0.7) : Cxform{220, 256, 120, 256, 0, 0, 60, 0};
    sprite.Place(again).FrameEnd().End();
    movie.DefineSprite(static_cast<uint16_t>(2 + level), sprite);
  }
  Matrix slanted = Matrix::Scale(1.3, 1.1, U(64), U(66));
  slanted.c = -kOne / 4;
  movie.Place(5, 1, slanted);
  return Finish(movie);
}

// A clock of squares: the root takes six frames, a sprite three, a sprite in it
// two. The sixth step takes the root back to its start, a backward seek.
Bytes Timelines() {
  MovieWriter movie = Begin();
  ShapeBuilder square;
  square.Style(square.AddFill(kRed), square.AddLine(20, kInk)).Rectangle(Box(0, 0, 14, 14));
  movie.DefineShape(1, square);
  ShapeBuilder disc;
  disc.Style(disc.AddFill(kBlue)).Ellipse(P(7, 7), U(7), U(7));
  movie.DefineShape(2, disc);

  // Two frames: a disc above, a disc below.
  TagStream inner;
  inner.Place(2, 1, At(0, -16)).FrameEnd();
  inner.Move(1, At(0, 16)).FrameEnd().End();
  movie.DefineSprite(3, inner);
  // Three frames: a square moves to the right and takes the inner sprite along.
  TagStream outer;
  outer.Place(1, 1).Place(3, 2).FrameEnd();
  for (int i = 1; i < 3; ++i) {
    outer.Move(1, At(20 * i, 0)).Move(2, At(20 * i, 0)).FrameEnd();
  }
  outer.End();
  movie.DefineSprite(4, outer);

  // The root: the sprite stays for the whole loop, another one from frame 2 to 4,
  // and a bar of marks grows by one a frame.
  movie.Place(4, 1, At(10, 24));
  for (uint16_t frame = 0; frame < 6; ++frame) {
    movie.Place(1, static_cast<uint16_t>(10 + frame),
                Matrix::Scale(0.6, 0.6, U(8 + 14 * frame), U(104)));
    if (frame == 2) {
      Placement late;
      late.depth = 2;
      late.character = 4;
      late.matrix = Matrix::Scale(0.8, 0.8, U(80), U(70));
      late.cxform = Cxform::Tint(kGreen, 0.7);
      movie.Place(late);
    }
    if (frame == 3) movie.Move(2, Matrix::Rotate(-30, 0.8, 0.8, U(80), U(80)));
    if (frame == 5) movie.RemoveObject(2);
    movie.FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

}  // namespace

std::vector<NamedMovie> StageMovies() {
  return {{"masks", Masks}, {"glass", Glass}, {"nested", Nested}, {"timelines", Timelines}};
}

}  // namespace vexel::author::golden
