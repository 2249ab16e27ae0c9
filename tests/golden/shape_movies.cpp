// Movies of shapes: how edges fill, how lines are stroked, and what happens far
// outside of the picture.
#include "golden/movies.h"

namespace vexel::author::golden {

namespace {

Bytes Fills() {
  MovieWriter movie = Begin();
  ShapeBuilder shape;
  const uint32_t red = shape.AddFill(kRed);
  const uint32_t blue = shape.AddFill(kBlue);
  const uint32_t green = shape.AddFill(kGreen);

  // Two squares side by side: the edge between them has a fill on either side.
  shape.Fill0(0).Fill1(red);
  shape.MoveTo(P(25, 6)).LineTo(P(6, 6)).LineTo(P(6, 34)).LineTo(P(25.5, 34));
  shape.Fill0(blue).Fill1(red).LineTo(P(25, 6));
  shape.Fill0(0).Fill1(blue).MoveTo(P(25, 6));
  shape.LineTo(P(46, 6)).LineTo(P(46, 34)).LineTo(P(25.5, 34));

  // A disc with a disc of another colour in it, in which there is a hole.
  shape.Style(green).Ellipse(P(80, 20), U(22), U(15));
  shape.Fill0(green).Fill1(red).Ellipse(P(80, 20), U(14), U(10));
  shape.Style(red).Ellipse(P(80, 20), U(6), U(5));

  // Outlines that cross themselves leave what they enclose twice.
  shape.Style(blue).Polygon(Star(P(130, 24), 21, 5, 2));
  shape.Style(red).Polygon({P(8, 46), P(46, 74), P(46, 46), P(8, 74)});

  // One colour on both sides of an edge leaves no seam.
  shape.Style(green).Rectangle(Box(56, 46, 100, 74));
  shape.Fill0(green).Fill1(green).MoveTo(P(60, 50)).LineTo(P(97, 71));
  shape.CurveTo(P(80, 40), P(62, 68)).LineTo(P(60, 50));

  // Squares of one colour that overlap cancel each other; new tables lie above.
  shape.Style(blue).Rectangle(Box(110, 50, 136, 70)).Rectangle(Box(122, 58, 150, 80));
  shape.NewStyles();
  shape.Style(shape.AddFill(kGold)).Rectangle(Box(114, 62, 130, 76));

  // Slivers: thinner than a row of samples, and wedges that run out.
  shape.Style(shape.AddFill(kInk));
  for (int i = 0; i < 6; ++i) {
    const double y = 86 + 5 * i;
    shape.Rectangle({U(8), U(44), U(y), U(y) + 1 + 2 * i});
    shape.Rectangle({U(52 + 6 * i), U(52 + 6 * i) + 1 + 2 * i, U(84), U(114)});
  }
  shape.Polygon({P(96, 86), P(152, 87), P(96, 88)});
  shape.Polygon({P(96, 93), P(152, 94), P(96, 98)});
  shape.MoveTo(P(96, 110)).CurveTo(P(124, 96), P(152, 112)).CurveTo(P(124, 100), P(96, 110));
  movie.DefineShape(1, shape).Place(1, 1);
  return Finish(movie);
}

// Thicknesses from a hairline to 20 pixels, in movie units.
constexpr uint16_t kWidths[] = {0, 10, 20, 30, 40, 60, 100, 160, 240, 400};

Bytes OpenLines() {
  MovieWriter movie = Begin();
  ShapeBuilder shape;
  double x = 5;
  for (uint16_t width : kWidths) {
    const double half = width / 40.0;
    x += half;
    shape.Style(0, shape.AddLine(width, width == 0 ? kRed : kInk));
    shape.MoveTo(P(x + 8, 12)).LineTo(P(x, 50));
    x += half + 6;
  }
  // A fan of one width, and corners of each kind.
  const uint32_t fan = shape.AddLine(30, kBlue);
  for (int i = 0; i <= 8; ++i) {
    const double turn = 3.141592653589793 * i / 8;
    shape.Style(0, fan).MoveTo(P(34, 112));
    shape.LineTo(P(34 - 28 * std::cos(turn), 112 - 40 * std::sin(turn)));
  }
  shape.Style(0, shape.AddLine(120, kGreen));
  shape.MoveTo(P(76, 108)).LineTo(P(80, 76)).LineTo(P(90, 108)).LineTo(P(112, 100));
  shape.Style(0, shape.AddLine(80, Faded(kRed, 128)));
  shape.MoveTo(P(120, 72)).LineTo(P(150, 108)).LineTo(P(150, 72)).LineTo(P(120, 108));
  movie.DefineShape(1, shape).Place(1, 1);
  return Finish(movie);
}

Bytes ClosedLines() {
  MovieWriter movie = Begin();
  ShapeBuilder shape;
  const uint32_t fill = shape.AddFill(Color{250, 220, 150});
  const uint32_t hair = shape.AddLine(0, kInk);
  const uint32_t thin = shape.AddLine(20, kRed);
  const uint32_t middle = shape.AddLine(70, kBlue);
  const uint32_t thick = shape.AddLine(160, kGreen);
  shape.Style(fill, hair).Ellipse(P(22, 22), U(16), U(14));
  shape.Style(fill, thin).Ellipse(P(60, 22), U(16), U(14));
  shape.Style(fill, middle).Ellipse(P(99, 22), U(15), U(13));
  shape.Style(fill, thick).Ellipse(P(138, 22), U(13), U(12));
  shape.Style(fill, hair).Polygon(Star(P(22, 60), 17, 3, 1));
  shape.Style(fill, thin).Polygon(Star(P(60, 60), 17, 5, 2));
  shape.Style(fill, middle).RoundRectangle(Box(84, 46, 114, 72), U(7));
  shape.Style(fill, thick).Polygon({P(126, 46), P(152, 52), P(148, 74), P(124, 70)});
  // Curves that end in the open, turn sharply, and run back on themselves.
  shape.Style(0, thin).MoveTo(P(6, 112)).CurveTo(P(24, 66), P(42, 112));
  shape.Style(0, middle).MoveTo(P(52, 110)).CurveTo(P(60, 76), P(68, 110));
  shape.CurveTo(P(76, 78), P(84, 110));
  shape.Style(0, thick).MoveTo(P(98, 110)).CurveTo(P(112, 76), P(124, 108));
  shape.Style(0, middle).MoveTo(P(136, 108)).CurveTo(P(160, 84), P(138, 86));
  movie.DefineShape(1, shape).Place(1, 1);
  return Finish(movie);
}

// Upright lines and boxes at odd places: strokes along an axis snap to whole
// pixels, fills and slanted lines do not.
Bytes Snapping() {
  MovieWriter movie = Begin();
  ShapeBuilder shape;
  const uint32_t lines[] = {shape.AddLine(20, kInk), shape.AddLine(40, kRed),
                            shape.AddLine(60, kBlue)};
  for (int i = 0; i < 8; ++i) {
    const int32_t shift = i * 3;  // movie units
    for (int k = 0; k < 3; ++k) {
      shape.Style(0, lines[k]);
      const int32_t x = U(6 + 6 * i) + shift;
      shape.MoveTo({x, U(6 + 14 * k)}).LineTo({x, U(17 + 14 * k)});
      const int32_t y = U(6 + 5 * i) + shift;
      shape.MoveTo({U(60 + 14 * k), y}).LineTo({U(71 + 14 * k), y});
    }
  }
  const uint32_t fill = shape.AddFill(kGold);
  for (int i = 0; i < 4; ++i) {
    const int32_t x = U(8 + 24 * i) + i * 5;
    shape.Style(fill, lines[0]).Rectangle({x, x + U(16), U(56) + i * 5, U(68) + i * 5});
    shape.Style(fill, 0).Rectangle({x, x + U(16), U(76) + i * 5, U(88) + i * 5});
  }
  shape.Style(0, lines[0]).MoveTo(P(108, 8)).LineTo(P(150, 9)).LineTo(P(149, 50)).Close();
  movie.DefineShape(1, shape).Place(1, 1);

  // The same box moved, scaled, and turned by a right angle.
  ShapeBuilder box;
  box.Style(box.AddFill(kGreen), box.AddLine(20, kInk)).Rectangle(Box(0, 0, 12, 8));
  movie.DefineShape(2, box);
  movie.Place(2, 2, At(112.3, 60.3)).Place(2, 3, Matrix::Scale(1.5, 1.5, U(132.3), U(60.7)));
  movie.Place(2, 4, Matrix::Rotate(90, 1, 1, U(122.4), U(80.4)));
  movie.Place(2, 5, Matrix::Rotate(10, 1, 1, U(134.4), U(80.4)));
  movie.Place(2, 6, Matrix::Scale(8, 1.5, U(10.4), U(99.4)));
  movie.Place(2, 7, Matrix::Scale(-2, 0.5, U(146.4), U(105.4)));
  return Finish(movie);
}

// The frame is a hole in a drawing some 200 times as wide: device coordinates
// pass 16000, where edges are cut down before they are drawn.
Bytes Far() {
  MovieWriter movie = Begin();
  ShapeBuilder shape;
  const uint32_t line = shape.AddLine(8, kInk);
  shape.Style(shape.AddFill(Color{190, 214, 236}), line);
  shape.Rectangle(Box(-100, -100, 100, 4));
  shape.Style(shape.AddFill(kGreen), line).Ellipse(P(0, 60), U(60), U(60));
  shape.Style(shape.AddFill(kRed), 0)
      .Polygon({P(-300, -2.8), P(300, 1), P(300, 1.2), P(-300, -2.2)});
  shape.Style(shape.AddFill(FillStyle::Linear(Matrix::GradientBox(Box(-2, 0, 2, 2)),
                                              {{0, kGold}, {128, kRed}, {255, kBlue}})));
  shape.Polygon({P(0, 1), P(170, 150), P(-190, 190)});
  movie.DefineShape(1, shape);
  movie.Place(1, 1, Matrix::Scale(36, 36, U(80), U(50)));
  return Finish(movie);
}

}  // namespace

std::vector<NamedMovie> ShapeMovies() {
  return {{"fills", Fills},
          {"lines-open", OpenLines},
          {"lines-closed", ClosedLines},
          {"snapping", Snapping},
          {"far", Far}};
}

}  // namespace vexel::author::golden
