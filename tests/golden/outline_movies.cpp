// Movies of outlines that are built while playing: morphs and letters.
#include "golden/movies.h"

namespace vexel::author::golden {

namespace {

// A square that becomes a star, its fill and its line with it.
MorphBuilder SquareToStar() {
  MorphBuilder morph;
  morph.Style(morph.AddFill(kRed, kGold), morph.AddLine({20, 80, kInk, kBlue}));
  const Point square[] = {P(0, -11), P(11, -11), P(11, 11), P(-11, 11), P(-11, -11)};
  const std::vector<Point> star = Star({}, 14, 5, 1);
  const std::vector<Point> notch = Star({}, -5, 5, 1);
  morph.MoveTo(square[0], star[0]);
  for (size_t i = 0; i < 5; ++i) {
    const Point from = square[i];
    const Point to = square[(i + 1) % 5];
    const Point middle = {(from.x + to.x) / 2, (from.y + to.y) / 2};
    morph.LineTo(middle, notch[(i + 3) % 5]).LineTo(to, star[(i + 1) % 5]);
  }
  return morph;
}

// A disc that becomes a drop, its gradient turning from linear left to right.
MorphBuilder DiscToDrop() {
  MorphBuilder morph;
  MorphFill fill;
  fill.type = kFillLinear;
  fill.startMatrix = Matrix::GradientBox(Box(-12, -12, 12, 12));
  fill.endMatrix = Matrix::GradientBox(Box(-12, -12, 12, 12), 90);
  fill.stops = {{0, kBlue, 0, kGreen}, {255, kPaper, 160, Faded(kGold, 90)}};
  morph.Style(morph.AddFill(fill));
  const int32_t r = U(12);
  morph.MoveTo({0, -r}, {0, -2 * r / 1});
  morph.CurveTo({r, -r}, {r, 0}, {0, -r}, {r / 2, 0});
  morph.CurveTo({r, r}, {0, r}, {r, r}, {0, r});
  morph.CurveTo({-r, r}, {-r, 0}, {-r, r}, {-r / 2, 0});
  morph.CurveTo({-r, -r}, {0, -r}, {0, -r}, {0, -2 * r});
  return morph;
}

Bytes Morphs() {
  MovieWriter movie = Begin();
  movie.DefineMorphShape(1, SquareToStar());
  movie.DefineMorphShape(2, DiscToDrop());
  // A line that meets a curve on the other side.
  MorphBuilder bow;
  bow.Style(bow.AddFill(Faded(kGreen, 200), Faded(kBlue, 80)));
  bow.MoveTo(P(-12, 0), P(-12, 6)).LineTo(P(12, 0), P(12, 6));
  bow.CurveTo(P(0, 14), P(-12, 0), P(0, -24), P(-12, 6));
  movie.DefineMorphShape(3, bow);
  const uint16_t ratios[] = {0, 16384, 32768, 49152, 65535};
  uint16_t depth = 1;
  for (uint16_t id = 1; id <= 3; ++id) {
    for (int i = 0; i < 5; ++i) {
      Placement placement;
      placement.depth = depth++;
      placement.character = id;
      placement.matrix = At(16 + 32 * i, id == 1 ? 22 : id == 2 ? 70 : 98);
      placement.ratio = ratios[i];
      movie.Place(placement);
    }
  }
  return Finish(movie);
}

// Letters of straight and bent strokes on the square of 1024, drawn for this.
Glyph Letter(char code, int16_t advance, const ShapeBuilder& shape) {
  Glyph glyph;
  glyph.code = static_cast<uint16_t>(code);
  glyph.advance = advance;
  glyph.outline = shape.records();
  return glyph;
}

Font Letters() {
  Font font;
  font.name = "Golden";
  font.glyphs.push_back(Letter(' ', 300, ShapeBuilder()));
  ShapeBuilder e;
  e.Fill1(1).Polygon({{60, 0},
                      {60, -700},
                      {520, -700},
                      {520, -580},
                      {200, -580},
                      {200, -410},
                      {460, -410},
                      {460, -290},
                      {200, -290},
                      {200, -120},
                      {520, -120},
                      {520, 0}});
  font.glyphs.push_back(Letter('E', 580, e));
  ShapeBuilder l;
  l.Fill1(1).Polygon({{60, 0}, {60, -700}, {200, -700}, {200, -120}, {500, -120}, {500, 0}});
  font.glyphs.push_back(Letter('L', 540, l));
  ShapeBuilder o;
  // Glyphs fill by winding: the inner outline runs the other way to leave a hole,
  // which the one of Q does not.
  o.Fill1(1).Ellipse({340, -350}, 300, 360).Ellipse({340, -350}, -160, 230);
  font.glyphs.push_back(Letter('O', 680, o));
  ShapeBuilder q;
  q.Fill1(1).Ellipse({340, -350}, 300, 360).Ellipse({340, -350}, 160, 230);
  q.Polygon({{400, -100}, {640, 120}, {700, 40}, {480, -160}});
  font.glyphs.push_back(Letter('Q', 720, q));
  ShapeBuilder s;
  s.Fill1(1).MoveTo({480, -560}).CurveTo({300, -800}, {130, -600}).CurveTo({70, -450}, {290, -370});
  s.CurveTo({400, -310}, {340, -190}).CurveTo({240, -60}, {90, -220}).LineTo({20, -100});
  s.CurveTo({240, 110}, {440, -70}).CurveTo({560, -310}, {350, -430});
  s.CurveTo({200, -480}, {240, -570}).CurveTo({310, -650}, {400, -470}).Close();
  font.glyphs.push_back(Letter('S', 530, s));
  ShapeBuilder v;
  v.Fill1(1).Polygon(
      {{0, -700}, {150, -700}, {310, -180}, {470, -700}, {620, -700}, {380, 0}, {240, 0}});
  font.glyphs.push_back(Letter('V', 620, v));
  return font;
}

Bytes Words() {
  MovieWriter movie = Begin();
  const Font font = Letters();
  movie.DefineFont(1, font);
  const auto run = [&](double height, const char* words, Color color, double x, double y) {
    TextRun made = MakeRun(font, 1, static_cast<uint16_t>(U(height)), words);
    made.color = color;
    made.x = static_cast<int16_t>(U(x));
    made.y = static_cast<int16_t>(U(y));
    return made;
  };
  const Rect bounds = Box(-160, -120, 320, 240);

  StaticText sizes;
  sizes.runs = {run(40, "SOLVE", kInk, 4, 32), run(20, "SOLVE", kRed, 4, 50),
                run(12, "LOVELESS", kBlue, 4, 62), run(8, "SELVES OLE Q", kInk, 4, 71),
                run(5, "VESSEL LOSSES", kInk, 4, 78)};
  // A run that only changes colour goes on where the last one ended.
  TextRun on = MakeRun(font, 1, static_cast<uint16_t>(U(12)), "SO");
  on.color = kGreen;
  sizes.runs.insert(sizes.runs.begin() + 3, on);
  movie.DefineText(2, bounds, sizes).Place(2, 1);

  StaticText turned;
  turned.matrix = Matrix::Rotate(-25, 1, 1, U(92), U(108));
  turned.runs = {run(24, "LOVE", Faded(kRed, 140), 0, 0),
                 run(24, "SOLE", Faded(kBlue, 140), 4, -8)};
  movie.DefineText(3, bounds, turned).Place(3, 2);
  // Stretched, slanted, and larger than the frame.
  StaticText plain;
  plain.runs = {run(16, "VOLQ", kInk, 0, 0)};
  movie.DefineText(4, bounds, plain);
  Matrix slanted = Matrix::Scale(1.6, 1, U(4), U(98));
  slanted.c = -kOne / 3;
  movie.Place(4, 3, slanted);
  PlaceTinted(movie, 4, 4, Matrix::Scale(1, 0.6, U(8), U(114)), Cxform::Tint(kGold, 0.8));
  PlaceTinted(movie, 4, 5, Matrix::Scale(9, 9, U(96), U(150)), Cxform::Alpha(0.12));
  return Finish(movie);
}

}  // namespace

std::vector<NamedMovie> OutlineMovies() {
  return {{"morphs", Morphs}, {"words", Words}};
}

}  // namespace vexel::author::golden
