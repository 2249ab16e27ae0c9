// A harbour at dusk, 120 frames that close into a loop: a light turns, boats
// ride the swell, gulls cross, and a spyglass wanders over the view and shows
// the woods behind the hills, in a photograph.
//
// Every part is a sprite with a timeline of its own, its length a divisor of
// 120; the root timeline carries them about.
#include <cmath>
#include <cstdio>
#include <functional>
#include <set>
#include <string>

#include "author/writer.h"
#include "coast.h"
#include "photo.h"

namespace {

using namespace vexel::author;
using harbour::kHeight;
using harbour::kHorizon;
using harbour::kWidth;

constexpr int kFrames = 120;
constexpr double kRate = 24;
constexpr double kPhotoPlace = 0.4;  // more of the meadow below goes than of the sky
constexpr double kTau = 6.283185307179586;

// Movie units of pixels.
int32_t U(double pixels) {
  return static_cast<int32_t>(std::lround(pixels * kPixel));
}
Point P(double x, double y) {
  return {U(x), U(y)};
}
Rect Box(double left, double top, double right, double bottom) {
  return {U(left), U(right), U(top), U(bottom)};
}
Matrix At(double x, double y, double sx = 1, double sy = 1, double degrees = 0) {
  return Matrix::Rotate(degrees, sx, sy, U(x), U(y));
}
// A full turn in `period` frames.
double Turn(int frame, int period, double phase = 0) {
  return kTau * (double(frame) / period + phase);
}
uint16_t Ratio(double t) {
  return static_cast<uint16_t>(std::lround(t * 65535));
}

// What stands on a timeline: placed when first shown, moved from then on.
class Stage {
 public:
  explicit Stage(TagStream& tags) : tags_(tags) {}

  Placement Next(uint16_t depth, uint16_t id, const Matrix& matrix) {
    Placement placement;
    placement.depth = depth;
    placement.matrix = matrix;
    if (shown_.insert(depth).second) {
      placement.character = id;
    } else {
      placement.move = true;
    }
    return placement;
  }
  void Show(uint16_t depth, uint16_t id, const Matrix& matrix) {
    tags_.Place(Next(depth, id, matrix));
  }
  void Show(uint16_t depth, uint16_t id, const Matrix& matrix, const Cxform& cxform) {
    Placement placement = Next(depth, id, matrix);
    placement.cxform = cxform;
    tags_.Place(placement);
  }
  void Morph(uint16_t depth, uint16_t id, const Matrix& matrix, double ratio) {
    Placement placement = Next(depth, id, matrix);
    placement.ratio = Ratio(ratio);
    tags_.Place(placement);
  }
  // Shows a mask once: the depths behind it, up to `last`, are seen inside it.
  void Mask(uint16_t depth, uint16_t id, const Matrix& matrix, uint16_t last) {
    Placement placement = Next(depth, id, matrix);
    if (!placement.move) placement.clipDepth = last;
    tags_.Place(placement);
  }

 private:
  TagStream& tags_;
  std::set<uint16_t> shown_;
};

// The whole movie, as it grows.
class Harbour {
 public:
  // `photo`, of the size of the view, shows in the spyglass.
  explicit Harbour(const Picture& photo) : movie_(kWidth, kHeight, kRate), photo_(photo) {}

  Bytes Make();

 private:
  uint16_t Define(const ShapeBuilder& shape) {
    movie_.DefineShape(++last_, shape);
    return last_;
  }
  uint16_t Define(const MorphBuilder& morph) {
    movie_.DefineMorphShape(++last_, morph);
    return last_;
  }
  // A sprite of so many frames, each made by `frame`.
  uint16_t Define(int frames, const std::function<void(Stage&, int)>& frame) {
    TagStream tags;
    Stage stage(tags);
    for (int i = 0; i < frames; ++i) {
      frame(stage, i);
      tags.FrameEnd();
    }
    tags.End();
    movie_.DefineSprite(++last_, tags);
    return last_;
  }

  uint16_t Sky();
  uint16_t Hills();
  uint16_t Sun();
  uint16_t Glow(Color middle, double radius);
  uint16_t Cloud(int seed);
  uint16_t Town();
  uint16_t Windows(int seed);
  uint16_t Water();
  uint16_t SunRoad();
  uint16_t Swell(double amplitude, double length, Color top, Color bottom, int frames);
  uint16_t Lighthouse();
  uint16_t Beam();
  uint16_t Headland();
  uint16_t Boat(Color hull, Color sail);
  uint16_t Gull();
  uint16_t Disc(double radius);
  uint16_t Photo();
  uint16_t Rim(double radius);

  MovieWriter movie_;
  const Picture& photo_;
  uint16_t last_ = 0;
};

uint16_t Harbour::Sky() {
  ShapeBuilder shape;
  const Rect box = Box(0, 0, kWidth, kHorizon + 1);
  shape.Style(
      shape.AddFill(FillStyle::Linear(Matrix::GradientBox(box, 90), {{0, {38, 42, 94}},
                                                                     {90, {101, 74, 139}},
                                                                     {150, {198, 98, 127}},
                                                                     {200, {246, 149, 96}},
                                                                     {255, {255, 214, 138}}})));
  return Define(shape.Rectangle(box));
}

uint16_t Harbour::Glow(Color middle, double radius) {
  ShapeBuilder shape;
  Color edge = middle;
  edge.alpha = 0;
  Color half = middle;
  half.alpha = static_cast<uint8_t>(middle.alpha * 2 / 7);
  shape.Style(
      shape.AddFill(FillStyle::Radial(Matrix::GradientBox(Box(-radius, -radius, radius, radius)),
                                      {{0, middle}, {90, half}, {255, edge}})));
  return Define(shape.Ellipse({}, U(radius), U(radius)));
}

uint16_t Harbour::Sun() {
  const uint16_t halo = Glow({255, 225, 150, 190}, 190);
  ShapeBuilder disc;
  disc.Style(disc.AddFill(
      FillStyle::Radial(Matrix::GradientBox(Box(-34, -34, 34, 34)),
                        {{0, {255, 252, 225}}, {200, {255, 236, 160}}, {255, {255, 214, 120}}})));
  const uint16_t body = Define(disc.Ellipse({}, U(31), U(31)));
  return Define(60, [=](Stage& stage, int frame) {
    const double pulse = 1 + 0.05 * std::sin(Turn(frame, 60));
    stage.Show(1, halo, At(0, 0, pulse, pulse));
    stage.Show(2, body, At(0, 0));
  });
}

uint16_t Harbour::Hills() {
  ShapeBuilder shape;
  const Color tops[] = {{176, 104, 140}, {122, 74, 122}, {72, 46, 88}};
  const Color feet[] = {{240, 160, 130}, {186, 108, 122}, {112, 66, 100}};
  for (int ridge = 0; ridge < harbour::kRidges; ++ridge) {
    if (ridge > 0) shape.NewStyles();
    shape.Style(shape.AddFill(
        FillStyle::Linear(Matrix::GradientBox(Box(0, kHorizon - 90, kWidth, kHorizon), 90),
                          {{0, tops[ridge]}, {255, feet[ridge]}})));
    shape.MoveTo(P(0, kHorizon + 1)).LineTo(P(0, harbour::RidgeTop(ridge, 0)));
    // Quadratic pieces through the middles of a fine run of points.
    for (double x = 0; x < kWidth; x += 10) {
      const double middle = harbour::RidgeTop(ridge, x + 5);
      const double next = harbour::RidgeTop(ridge, x + 10);
      const double control = 2 * middle - (harbour::RidgeTop(ridge, x) + next) / 2;
      shape.CurveTo(P(x + 5, control), P(x + 10, next));
    }
    shape.LineTo(P(kWidth, kHorizon + 1)).Close();
  }
  return Define(shape);
}

// A heap of soft discs.
uint16_t Harbour::Cloud(int seed) {
  ShapeBuilder shape;
  for (int i = 0; i < 9; ++i) {
    const double t = (i + 0.5) / 9;
    const double x = (t - 0.5) * 230 + 16 * std::sin(seed * 2.7 + i * 5.1);
    const double radius =
        20 + 34 * std::sin(t * kTau / 2) * (0.75 + 0.25 * std::sin(seed + i * 2.3));
    const double y = -0.35 * radius + 5 * std::sin(seed * 1.3 + i * 3.7);
    if (i > 0) shape.NewStyles();
    shape.Style(shape.AddFill(FillStyle::Radial(
        Matrix::GradientBox(Box(x - radius, y - radius * 0.55, x + radius, y + radius * 0.55)),
        {{0, {255, 226, 206, 150}}, {130, {255, 190, 178, 80}}, {255, {240, 160, 170, 0}}})));
    shape.Ellipse(P(x, y), U(radius), U(radius * 0.55));
  }
  return Define(shape);
}

uint16_t Harbour::Town() {
  ShapeBuilder shape;
  const uint32_t wall =
      shape.AddFill(FillStyle::Linear(Matrix::GradientBox(Box(540, 215, kWidth, kHorizon), 90),
                                      {{0, {92, 58, 96}}, {255, {58, 38, 74}}}));
  const uint32_t roof = shape.AddFill(Color{104, 48, 66});
  for (int i = 0; i < 22; ++i) {
    const double x = 548 + i * 11.6;
    const double width = 9 + 3 * std::sin(i * 2.1);
    const double base = kHorizon + 1;
    const double top = base - 12 - 7 * std::fabs(std::sin(i * 1.7)) - (i % 7 == 3 ? 12 : 0);
    shape.Style(wall).Rectangle(Box(x, top, x + width, base));
    shape.Style(roof).Polygon(
        {P(x - 1, top), P(x + width / 2, top - 5 - (i % 7 == 3 ? 12 : 0)), P(x + width + 1, top)});
  }
  return Define(shape);
}

uint16_t Harbour::Windows(int seed) {
  ShapeBuilder panes;
  panes.Style(panes.AddFill(Color{255, 214, 120, 230}));
  for (int i = seed; i < 22; i += 2) {
    const double x = 548 + i * 11.6;
    for (int k = 0; k < 2; ++k) {
      if ((i * 7 + k * 3) % 5 == 0) continue;
      const double left = x + 2 + k * 4;
      const double top = kHorizon - 9 - (i % 3) * 2;
      panes.Rectangle(Box(left, top, left + 1.8, top + 2.6));
    }
  }
  const uint16_t lit = Define(panes);
  return Define(40, [=](Stage& stage, int frame) {
    const double light = 0.75 + 0.25 * std::sin(Turn(frame, 40, seed * 0.37));
    stage.Show(1, lit, At(0, 0), Cxform::Alpha(light));
  });
}

uint16_t Harbour::Water() {
  ShapeBuilder shape;
  const Rect box = Box(0, kHorizon, kWidth, kHeight);
  shape.Style(shape.AddFill(FillStyle::Linear(
      Matrix::GradientBox(box, 90),
      {{0, {250, 180, 128}}, {40, {206, 126, 128}}, {120, {104, 82, 132}}, {255, {34, 40, 88}}})));
  return Define(shape.Rectangle(box));
}

// Glitter under the sun: flat lenses that trade their widths.
uint16_t Harbour::SunRoad() {
  MorphBuilder morph;
  const uint32_t fill = morph.AddFill({255, 236, 176, 200}, {255, 206, 140, 120});
  morph.Style(fill);
  for (int i = 0; i < 16; ++i) {
    const double y = 5 + i * 4.2 + i * i * 0.28;
    const double spread = 30 + i * 3.4;
    const auto lens = [&](double phase) {
      const double swing = std::sin(i * 2.4 + phase);
      struct {
        double x, half, thick;
      } l{7 * std::sin(i * 1.9 + phase), spread * (0.55 + 0.45 * swing), 0.9 + i * 0.11};
      return l;
    };
    const auto a = lens(0);
    const auto b = lens(2.2);
    morph.MoveTo(P(a.x - a.half, y), P(b.x - b.half, y));
    morph.CurveTo(P(a.x, y - a.thick * 2), P(a.x + a.half, y), P(b.x, y - b.thick * 2),
                  P(b.x + b.half, y));
    morph.CurveTo(P(a.x, y + a.thick * 2), P(a.x - a.half, y), P(b.x, y + b.thick * 2),
                  P(b.x - b.half, y));
  }
  const uint16_t glitter = Define(morph);
  return Define(40, [=](Stage& stage, int frame) {
    stage.Morph(1, glitter, At(0, 0), 0.5 - 0.5 * std::cos(Turn(frame, 40)));
  });
}

// One band of sea with a waving top edge that runs by one wave in its loop.
uint16_t Harbour::Swell(double amplitude, double length, Color top, Color bottom, int frames) {
  ShapeBuilder shape;
  const double depth = 70;
  const Color clear = {bottom.red, bottom.green, bottom.blue, 0};
  const uint32_t body =
      shape.AddFill(FillStyle::Linear(Matrix::GradientBox(Box(0, -amplitude, kWidth, depth), 90),
                                      {{0, top}, {70, bottom}, {255, clear}}));
  const uint32_t foam = shape.AddLine(22, {255, 226, 200, 90});
  const int waves = static_cast<int>(std::ceil(kWidth / length)) + 3;
  const double left = -2 * length;
  shape.Fill0(0).Fill1(body).Line(0).MoveTo(P(left, depth)).LineTo(P(left, 0));
  shape.Line(foam);
  for (int i = 0; i < 2 * waves; ++i) {
    const double x = left + i * length / 2;
    const double sign = i % 2 ? 1 : -1;
    shape.CurveTo(P(x + length / 4, sign * amplitude * 2), P(x + length / 2, 0));
  }
  shape.Line(0).LineTo(P(left + waves * length, depth)).Close();
  const uint16_t band = Define(shape);
  return Define(frames, [=](Stage& stage, int frame) {
    stage.Show(1, band,
               At(length * frame / frames, amplitude * 0.6 * std::sin(Turn(frame, frames))));
  });
}

uint16_t Harbour::Headland() {
  ShapeBuilder shape;
  const uint32_t rock = shape.AddFill(
      FillStyle::Linear(Matrix::GradientBox(Box(-20, 200, 230, 330), 60),
                        {{0, {112, 70, 92}}, {110, {66, 44, 76}}, {255, {30, 26, 56}}}));
  const uint32_t grass = shape.AddFill(Color{74, 66, 84});
  shape.Style(rock)
      .MoveTo(P(-10, 352))
      .LineTo(P(-10, 196))
      .CurveTo(P(60, 190), P(118, 206))
      .CurveTo(P(160, 214), P(174, 236))
      .CurveTo(P(196, 244), P(204, 268))
      .CurveTo(P(228, 280), P(236, 312))
      .CurveTo(P(226, 336), P(150, 346))
      .LineTo(P(-10, 352))
      .Close();
  shape.Style(grass)
      .MoveTo(P(-10, 204))
      .LineTo(P(-10, 194))
      .CurveTo(P(60, 187), P(120, 204))
      .CurveTo(P(158, 212), P(172, 232))
      .CurveTo(P(130, 214), P(96, 212))
      .CurveTo(P(40, 198), P(-10, 204));
  const uint32_t crack = shape.AddLine(26, {24, 20, 46, 130});
  shape.Style(0, crack).MoveTo(P(60, 214)).CurveTo(P(74, 240), P(66, 300));
  shape.MoveTo(P(120, 224)).CurveTo(P(138, 250), P(132, 306));
  shape.MoveTo(P(168, 246)).CurveTo(P(184, 270), P(186, 312));
  return Define(shape);
}

// The tower, its foot at the origin, the lamp 118 pixels above.
uint16_t Harbour::Lighthouse() {
  ShapeBuilder shape;
  const auto half = [](double y) { return 9.5 + 7.5 * (-y < 104 ? (104 + y) / 104 : 0); };
  const auto round = [&](Color lit, Color shade) {
    return shape.AddFill(FillStyle::Linear(Matrix::GradientBox(Box(-17, -104, 17, 0)),
                                           {{0, shade}, {90, lit}, {170, lit}, {255, shade}}));
  };
  const uint32_t white = round({255, 240, 226}, {150, 118, 140});
  const uint32_t red = round({214, 68, 62}, {110, 34, 60});
  const uint32_t iron = shape.AddFill(Color{48, 34, 60});
  const uint32_t glass = shape.AddFill(Color{255, 240, 170});
  const uint32_t edge = shape.AddLine(16, {48, 34, 60, 150});
  for (int i = 0; i < 6; ++i) {
    const double low = -i * 104.0 / 6;
    const double high = low - 104.0 / 6;
    shape.Style(i % 2 ? red : white)
        .Polygon(
            {P(-half(low), low), P(-half(high), high), P(half(high), high), P(half(low), low)});
  }
  shape.Style(0, edge).MoveTo(P(-half(0), 0)).LineTo(P(-half(-104), -104));
  shape.MoveTo(P(half(0), 0)).LineTo(P(half(-104), -104));
  shape.Style(iron).RoundRectangle(Box(-14, -109, 14, -104), U(2));
  shape.Style(glass).Rectangle(Box(-8, -127, 8, -109));
  const uint32_t bars = shape.AddLine(22, {48, 34, 60});
  shape.Style(0, bars).MoveTo(P(-8, -109)).LineTo(P(-8, -127));
  shape.MoveTo(P(0, -109)).LineTo(P(0, -127)).MoveTo(P(8, -109)).LineTo(P(8, -127));
  shape.Style(red).MoveTo(P(-11, -127)).CurveTo(P(-6, -139), P(0, -140));
  shape.CurveTo(P(6, -139), P(11, -127)).Close();
  shape.Style(iron).Ellipse(P(0, -142), U(2), U(2.4));
  shape.Style(iron).RoundRectangle(Box(-4, -18, 4, 0), U(4));
  return Define(shape);
}

// A cone of light to the right, turned by the placing.
uint16_t Harbour::Beam() {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(FillStyle::Linear(
      Matrix::GradientBox(Box(-560, -90, 560, 90)),
      {{128, {255, 246, 200, 150}}, {180, {255, 240, 190, 60}}, {255, {255, 236, 180, 0}}})));
  shape.MoveTo(P(0, -3)).LineTo(P(560, -78)).LineTo(P(560, 62)).LineTo(P(0, 3)).Close();
  const uint16_t cone = Define(shape);
  const uint16_t flash = Glow({255, 248, 214, 255}, 46);
  return Define(60, [=](Stage& stage, int frame) {
    const double angle = Turn(frame, 60);
    const double across = std::cos(angle);
    const double toUs = std::max(0.0, std::sin(angle));
    // Twice in a turn the cone points along the line of sight and is gone.
    stage.Show(1, cone, At(0, 0, across, 0.55 + 0.45 * std::fabs(across)),
               Cxform::Alpha(std::pow(std::fabs(across), 0.7) * (std::sin(angle) < 0 ? 0.55 : 1)));
    const double size = 0.45 + 1.5 * std::pow(toUs, 3);
    stage.Show(2, flash, At(0, 0, size, size), Cxform::Alpha(0.6 + 0.4 * toUs));
  });
}

// A sloop, the middle of its waterline at the origin.
uint16_t Harbour::Boat(Color hull, Color sail) {
  ShapeBuilder body;
  const Color dark = {static_cast<uint8_t>(hull.red / 2), static_cast<uint8_t>(hull.green / 2),
                      static_cast<uint8_t>(hull.blue / 2), 255};
  const uint32_t planks = body.AddFill(
      FillStyle::Linear(Matrix::GradientBox(Box(-46, -13, 50, 10), 90), {{0, hull}, {255, dark}}));
  const uint32_t trim = body.AddLine(40, {255, 236, 210});
  const uint32_t wood = body.AddLine(50, {92, 58, 52});
  const uint32_t rope = body.AddLine(12, {60, 44, 60, 200});
  body.Style(0, rope).MoveTo(P(2, -124)).LineTo(P(50, -13));
  body.MoveTo(P(2, -124)).LineTo(P(-44, -12));
  body.Style(0, wood).MoveTo(P(2, -10)).LineTo(P(2, -126));
  body.MoveTo(P(2, -19)).LineTo(P(-40, -21));
  body.Style(planks)
      .MoveTo(P(-45, -11))
      .CurveTo(P(0, -8), P(52, -14))
      .CurveTo(P(44, 6), P(26, 9))
      .LineTo(P(-30, 9))
      .CurveTo(P(-44, 6), P(-45, -11));
  body.Style(0, trim).MoveTo(P(-45, -9)).CurveTo(P(0, -6), P(50, -12));
  const uint16_t hullId = Define(body);

  MorphBuilder sails;
  const Color shade = {static_cast<uint8_t>(sail.red * 3 / 4),
                       static_cast<uint8_t>(sail.green * 2 / 3),
                       static_cast<uint8_t>(sail.blue * 3 / 4), 255};
  MorphFill cloth;
  cloth.type = kFillLinear;
  cloth.startMatrix = Matrix::GradientBox(Box(-46, -120, 10, -20));
  cloth.endMatrix = Matrix::GradientBox(Box(-54, -120, 22, -20));
  cloth.stops = {{0, shade, 0, shade}, {150, sail, 120, sail}, {255, shade, 255, shade}};
  MorphFill jib = cloth;
  jib.startMatrix = Matrix::GradientBox(Box(0, -110, 50, -20));
  jib.endMatrix = Matrix::GradientBox(Box(4, -110, 58, -20));
  const uint32_t seam = sails.AddLine({12, 12, {110, 80, 90, 140}, {110, 80, 90, 140}});
  sails.Style(sails.AddFill(cloth), seam)
      .MoveTo(P(0, -122), P(0, -122))
      .CurveTo(P(-12, -66), P(-40, -24), P(-26, -70), P(-42, -25))
      .CurveTo(P(-18, -19), P(0, -22), P(-18, -15), P(0, -22))
      .LineTo(P(0, -122), P(0, -122));
  sails.Style(sails.AddFill(jib), seam)
      .MoveTo(P(5, -114), P(5, -114))
      .CurveTo(P(26, -66), P(46, -18), P(34, -70), P(47, -19))
      .CurveTo(P(26, -17), P(8, -26), P(27, -11), P(10, -25))
      .CurveTo(P(10, -70), P(5, -114), P(16, -72), P(5, -114));
  const uint16_t sailId = Define(sails);

  MorphBuilder pennant;
  pennant.Style(pennant.AddFill({222, 72, 66}, {236, 108, 74}))
      .MoveTo(P(0, 0), P(0, 0))
      .CurveTo(P(-9, -6), P(-18, 1), P(-9, 6), P(-18, 1))
      .CurveTo(P(-24, 5), P(-30, 2), P(-24, -2), P(-29, 6))
      .CurveTo(P(-20, 11), P(-14, 7), P(-20, 3), P(-14, 9))
      .CurveTo(P(-7, 4), P(0, 8), P(-7, 14), P(0, 8))
      .LineTo(P(0, 0), P(0, 0));
  const uint16_t cloths = Define(pennant);
  const uint16_t flag = Define(24, [=](Stage& stage, int frame) {
    stage.Morph(1, cloths, At(0, 0), 0.5 - 0.5 * std::cos(Turn(frame, 24)));
  });

  return Define(60, [=](Stage& stage, int frame) {
    stage.Show(1, flag, At(2, -128));
    stage.Show(2, hullId, At(0, 0));
    stage.Morph(3, sailId, At(2, 0), 0.5 - 0.5 * std::cos(Turn(frame, 60, 0.2)));
  });
}

uint16_t Harbour::Gull() {
  MorphBuilder wings;
  wings.Style(wings.AddFill({64, 48, 80}, {84, 62, 92}))
      .MoveTo(P(-22, -9), P(-21, 6))
      .CurveTo(P(-11, -13), P(0, 0), P(-12, -5), P(0, -1))
      .CurveTo(P(11, -13), P(22, -9), P(12, -5), P(21, 6))
      .CurveTo(P(11, -8), P(3, 3), P(11, -1), P(3, 2))
      .LineTo(P(-3, 3), P(-3, 2))
      .CurveTo(P(-11, -8), P(-22, -9), P(-11, -1), P(-21, 6));
  const uint16_t id = Define(wings);
  return Define(30, [=](Stage& stage, int frame) {
    // Two strokes, then a glide.
    const double t = frame < 20 ? 0.5 - 0.5 * std::cos(Turn(frame, 10)) : 0.12;
    stage.Morph(1, id, At(0, 0), t);
  });
}

uint16_t Harbour::Disc(double radius) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(Color{0, 0, 0}));
  return Define(shape.Ellipse({}, U(radius), U(radius)));
}

uint16_t Harbour::Photo() {
  const uint16_t bitmap = ++last_;
  movie_.DefineJpeg(bitmap, EncodeJpeg(photo_, 82));
  ShapeBuilder shape;
  shape.Style(shape.AddFill(FillStyle::Bitmap(bitmap, Matrix::Scale(kPixel, kPixel), true)));
  return Define(shape.Rectangle(Box(0, 0, kWidth, kHeight)));
}

// Brass around the glass, and the light on it.
uint16_t Harbour::Rim(double radius) {
  ShapeBuilder shape;
  const double outer = radius + 9;
  const uint32_t brass = shape.AddFill(FillStyle::Linear(
      Matrix::GradientBox(Box(-outer, -outer, outer, outer), 50), {{0, {255, 236, 170}},
                                                                   {70, {176, 120, 54}},
                                                                   {128, {244, 206, 124}},
                                                                   {190, {120, 76, 40}},
                                                                   {255, {224, 170, 90}}}));
  const uint32_t glare = shape.AddFill(
      FillStyle::Linear(Matrix::GradientBox(Box(-radius, -radius, radius, radius * 0.4), 90),
                        {{0, {255, 255, 255, 84}}, {255, {255, 255, 255, 0}}}));
  const uint32_t line = shape.AddLine(24, {64, 38, 30, 220});
  shape.Style(brass, line).Ellipse({}, U(outer), U(outer));
  shape.Ellipse({}, U(radius), U(radius));
  shape.Style(glare)
      .MoveTo(P(-radius * 0.84, -radius * 0.36))
      .CurveTo(P(-radius * 0.62, -radius * 0.9), P(0, -radius * 0.93))
      .CurveTo(P(radius * 0.62, -radius * 0.9), P(radius * 0.84, -radius * 0.36))
      .CurveTo(P(0, -radius * 0.62), P(-radius * 0.84, -radius * 0.36));
  return Define(shape);
}

Bytes Harbour::Make() {
  constexpr double kGlass = 92;  // radius of the spyglass
  const uint16_t sky = Sky();
  const uint16_t sun = Sun();
  const uint16_t clouds[] = {Cloud(1), Cloud(4), Cloud(9)};
  const uint16_t hills = Hills();
  const uint16_t town = Town();
  const uint16_t windows[] = {Windows(0), Windows(1)};
  const uint16_t water = Water();
  const uint16_t road = SunRoad();
  const uint16_t far = Swell(1.6, 46, {196, 122, 132, 90}, {120, 88, 134, 70}, 40);
  const uint16_t middle = Swell(3.2, 88, {150, 100, 136, 150}, {84, 70, 124, 120}, 60);
  const uint16_t near = Swell(5.5, 150, {92, 72, 126, 220}, {40, 44, 94, 230}, 60);
  const uint16_t headland = Headland();
  const uint16_t tower = Lighthouse();
  const uint16_t beam = Beam();
  const uint16_t red = Boat({190, 60, 58}, {255, 240, 214});
  const uint16_t blue = Boat({58, 82, 140}, {255, 214, 170});
  const uint16_t gull = Gull();
  const uint16_t mask = Disc(kGlass);
  const uint16_t photo = Photo();
  const uint16_t rim = Rim(kGlass);

  movie_.BackgroundColor({38, 42, 94});
  Stage stage(movie_);
  for (int frame = 0; frame < kFrames; ++frame) {
    const auto wave = [frame](int period, double phase = 0) {
      return std::sin(Turn(frame, period, phase));
    };
    uint16_t depth = 0;
    const auto show = [&](uint16_t id, const Matrix& matrix) { stage.Show(++depth, id, matrix); };
    const auto faint = [&](uint16_t id, const Matrix& matrix, const Cxform& cxform) {
      stage.Show(++depth, id, matrix, cxform);
    };
    // What never changes is placed in the first frame alone.
    const auto still = [&](uint16_t id) {
      ++depth;
      if (frame == 0) stage.Show(depth, id, At(0, 0));
    };

    still(sky);
    show(sun, At(286, 216 + 5 * wave(120)));
    show(clouds[0], At(210 + 26 * wave(120, 0.1), 92, 1.35, 1.1));
    show(clouds[1], At(640 + 20 * wave(120, 0.5), 66, 1.1, 0.9));
    faint(clouds[2], At(430 + 34 * wave(120, 0.8), 140, 1.7, 0.7), Cxform::Alpha(0.7));
    still(hills);
    still(town);
    still(windows[0]);
    still(windows[1]);
    show(gull, At(330 + 150 * wave(120), 120 + 22 * wave(60), 0.7, 0.7, 8 * wave(120, 0.25)));
    show(gull, At(380 + 150 * wave(120, -0.05), 150 + 20 * wave(60, 0.3), 0.5, 0.5));
    show(gull, At(620 + 110 * wave(120, 0.4), 96 + 16 * wave(40), 0.8, 0.8));
    still(water);
    faint(town, At(0, 2 * kHorizon + 2, 1, -1), Cxform::Alpha(0.3));
    show(road, At(286, kHorizon + 1, 1.15, 1.25));
    show(far, At(0, 288));
    still(headland);
    ++depth;
    if (frame == 0) stage.Show(depth, tower, At(92, 206));

    const double blueX = 640 + 60 * wave(120, 0.3);
    const double blueY = 300 + 2.0 * wave(60);
    faint(blue, At(blueX, blueY + 4, 0.55, -0.4, -2 * wave(60, 0.1)), Cxform::Alpha(0.22));
    show(blue, At(blueX, blueY, 0.55, 0.55, 2 * wave(60, 0.1)));
    show(middle, At(0, 326));
    const double redX = 400 + 95 * wave(120, -0.2);
    const double redY = 366 + 4.5 * wave(60, 0.4);
    faint(red, At(redX, redY + 8, 1.05, -0.6, -3 * wave(60, 0.55)), Cxform::Alpha(0.25));
    show(red, At(redX, redY, 1.05, 1.05, 3 * wave(60, 0.55)));
    show(near, At(0, 384));

    show(beam, At(92, 88));

    // The spyglass goes round a figure of eight.
    const double glassX = 455 + 215 * wave(120, 0.15);
    const double glassY = 196 + 74 * wave(60, 0.05);
    ++depth;
    stage.Mask(depth, mask, At(glassX, glassY), static_cast<uint16_t>(depth + 1));
    still(photo);
    show(rim, At(glassX, glassY));
    movie_.FrameEnd();
  }
  movie_.End();
  return movie_.Finish();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: demo_harbour OUT PHOTOS\n", stderr);
    return 2;
  }
  const std::string file = std::string(argv[2]) + "/aitzgorri_by_Aitzol_Berasategi.jpg";
  Picture photo;
  std::string error;
  if (!demo::ReadPhoto(file, kWidth, kHeight, kPhotoPlace, &photo, &error)) {
    std::fprintf(stderr, "demo_harbour: %s: %s\n", file.c_str(), error.c_str());
    return 1;
  }
  if (!WriteFile(argv[1], Harbour(photo).Make())) {
    std::fprintf(stderr, "demo_harbour: %s: cannot write\n", argv[1]);
    return 1;
  }
  return 0;
}
