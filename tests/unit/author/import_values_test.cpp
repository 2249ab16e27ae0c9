// Attribute values: paths, transforms, colours, lengths.
#include <gtest/gtest.h>

#include <cmath>

#include "author/svg_builder.h"
#include "author/svg_values.h"

namespace vexel::author {
namespace {

std::string Ops(const VectorPath& path) {
  std::string text;
  for (const PathCommand& c : path.commands) text += "MLQCZ"[static_cast<int>(c.op)];
  return text;
}

VectorPath Parsed(std::string_view data) {
  VectorPath path;
  EXPECT_TRUE(ParsePathData(data, &path)) << data;
  return path;
}

TEST(ImportPathData, ReadsEveryCommandInBothForms) {
  EXPECT_EQ(Ops(Parsed("M1 2 L3 4 H5 V6 C1 2 3 4 5 6 S1 2 3 4 Q1 2 3 4 T5 6 Z")), "MLLLCCQQZ");
  VectorPath path = Parsed("m1 2 l3 4 h5 v6 q1 1 2 0 t 2 0 z");
  EXPECT_EQ(Ops(path), "MLLLQQZ");
  EXPECT_EQ(path.commands[3].p, (Vec2{9, 12}));
  EXPECT_EQ(path.commands[5].c1, (Vec2{12, 11}));
  EXPECT_EQ(path.commands[5].p, (Vec2{13, 12}));
}

TEST(ImportPathData, ReadsNumbersWithoutBlanks) {
  VectorPath path = Parsed("M.5.5-1-2a5,5 0 0110,10");
  ASSERT_GE(path.commands.size(), 3u);
  EXPECT_EQ(path.commands[1].p, (Vec2{-1, -2}));
  EXPECT_EQ(path.commands.back().p, (Vec2{9, 8}));
}

TEST(ImportPathData, KeepsWhatStandsBeforeAMistake) {
  VectorPath path;
  EXPECT_FALSE(ParsePathData("M0 0 L10 0 L x", &path));
  EXPECT_EQ(Ops(path), "ML");
}

TEST(ImportPathData, StopsAtNumbersThatAreNoPicture) {
  VectorPath path;
  EXPECT_FALSE(ParsePathData("M0 0 L1 1 L1e300 0 L2 2", &path));
  EXPECT_EQ(Ops(path), "ML");
}

TEST(ImportPathData, AnArcStaysOnItsCircle) {
  VectorPath path = Parsed("M10 0 A10 10 0 1 1 0 -10");
  Vec2 pen{10, 0};
  for (size_t i = 1; i < path.commands.size(); i++) {
    const PathCommand& c = path.commands[i];
    for (double t = 0; t <= 1; t += 0.125) {
      double u = 1 - t;
      Vec2 p = u * u * u * pen + 3 * u * u * t * c.c1 + 3 * u * t * t * c.c2 + t * t * t * c.p;
      EXPECT_NEAR(Length(p), 10, 1e-4);
    }
    pen = c.p;
  }
  EXPECT_EQ(pen, (Vec2{0, -10}));
  EXPECT_EQ(path.commands.size(), 7u);  // three quarters in six pieces
}

TEST(ImportPathData, DegenerateArcsEnd) {
  EXPECT_EQ(Ops(Parsed("M1 1 A5 5 0 0 1 1 1")), "M");
  EXPECT_EQ(Ops(Parsed("M1 1 A0 5 0 0 1 9 1")), "ML");
  // Radii that do not reach are scaled up to a half turn.
  VectorPath path = Parsed("M0 0 A1 1 0 0 1 10 0");
  EXPECT_NEAR(path.Bounds().Height(), 5, 1e-3);
}

TEST(ImportTransform, ListsApplyFromRightToLeft) {
  Affine m;
  ASSERT_TRUE(ParseTransform("translate(10) scale(2, 3)", &m));
  EXPECT_EQ(m.Apply({1, 1}), (Vec2{12, 3}));
  ASSERT_TRUE(ParseTransform("rotate(90, 5, 5)", &m));
  EXPECT_NEAR(m.Apply({5, 0}).x, 10, 1e-9);
  ASSERT_TRUE(ParseTransform(" matrix(1 0 0 1 3,4),skewX(45)", &m));
  EXPECT_NEAR(m.Apply({0, 2}).x, 5, 1e-9);
  Affine kept = m;
  EXPECT_FALSE(ParseTransform("scale(2) nonsense(3)", &m));
  EXPECT_EQ(m.Apply({1, 1}), kept.Apply({1, 1}));
}

TEST(ImportColor, ReadsAllNotations) {
  auto color = [](std::string_view text) {
    SvgColor c{1, 1, 1, -1};
    EXPECT_TRUE(ParseColor(text, &c)) << text;
    return std::vector<double>{double(c.red), double(c.green), double(c.blue), c.alpha};
  };
  using V = std::vector<double>;
  EXPECT_EQ(color("rebeccapurple").size(), 4u);
  EXPECT_EQ(color("navy"), (V{0, 0, 128, 1}));
  EXPECT_EQ(color("#f80"), (V{255, 136, 0, 1}));
  EXPECT_EQ(color("#ff8800"), (V{255, 136, 0, 1}));
  EXPECT_EQ(color("#ff880000"), (V{255, 136, 0, 0}));
  EXPECT_EQ(color("rgb(1, 2, 3)"), (V{1, 2, 3, 1}));
  EXPECT_EQ(color("rgb(100%, 0%, 50%)"), (V{255, 0, 128, 1}));
  EXPECT_EQ(color("rgba(1 2 3 / 25%)"), (V{1, 2, 3, 0.25}));
  EXPECT_EQ(color("hsl(120, 100%, 50%)"), (V{0, 255, 0, 1}));
  EXPECT_EQ(color("transparent"), (V{0, 0, 0, 0}));
  SvgColor c;
  for (const char* bad : {"", "currentColor", "#12", "#ggg", "rgb(1,2)", "rgb(1,2,3", "no colour"})
    EXPECT_FALSE(ParseColor(bad, &c)) << bad;
}

TEST(ImportLength, KnowsUnits) {
  auto length = [](std::string_view text) {
    double v = NAN;
    EXPECT_TRUE(ParseLength(text, {200, 10}, &v)) << text;
    return v;
  };
  EXPECT_EQ(length("12"), 12);
  EXPECT_EQ(length(" +1.5px "), 1.5);
  EXPECT_EQ(length("1in"), 96);
  EXPECT_EQ(length("72pt"), 96);
  EXPECT_NEAR(length("25.4mm"), 96, 1e-9);
  EXPECT_EQ(length("2em"), 20);
  EXPECT_EQ(length("50%"), 100);
  double v = 7;
  for (const char* bad : {"", "px", "1 2", "1furlong", "inf", "nan", "1e999", "1e12"})
    EXPECT_FALSE(ParseLength(bad, {200, 10}, &v)) << bad;
  EXPECT_EQ(v, 7);
}

TEST(ImportDataUrl, DecodesBothForms) {
  std::string type;
  std::vector<uint8_t> bytes;
  ASSERT_TRUE(DecodeDataUrl("data:image/png;base64,aGkh\n Pz8=", &type, &bytes));
  EXPECT_EQ(type, "image/png");
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "hi!??");
  ASSERT_TRUE(DecodeDataUrl("data:,a%20b%zz%4", &type, &bytes));
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "a b%zz%4");
  EXPECT_FALSE(DecodeDataUrl("picture.png", &type, &bytes));
  EXPECT_FALSE(DecodeDataUrl("data:image/png;base64", &type, &bytes));
}

TEST(ImportViewBox, FitsByAlignment) {
  bool slice;
  // A box twice as wide as the square it goes into.
  Affine m = FitViewBox("", 0, 0, 20, 10, 0, 0, 100, 100, &slice);
  EXPECT_EQ(m.Apply({0, 0}), (Vec2{0, 25}));
  m = FitViewBox("xMidYMax meet", 0, 0, 20, 10, 0, 0, 100, 100, &slice);
  EXPECT_EQ(m.Apply({0, 0}), (Vec2{0, 50}));
  m = FitViewBox("xMaxYMin slice", 0, 0, 20, 10, 0, 0, 100, 100, &slice);
  EXPECT_TRUE(slice);
  EXPECT_EQ(m.Apply({20, 10}), (Vec2{100, 100}));
  m = FitViewBox("none", 5, 5, 20, 10, 0, 0, 100, 100, &slice);
  EXPECT_EQ(m.Apply({25, 15}), (Vec2{100, 100}));
}

}  // namespace
}  // namespace vexel::author
