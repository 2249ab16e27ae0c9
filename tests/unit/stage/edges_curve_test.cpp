// The division of curves into edges.
#include "stage/curve_edges.h"

#include <random>

#include "edge_fixture.h"

namespace vexel::test {
namespace {

class CurveEdges : public EdgeTest {
 protected:
  std::vector<PlainEdge> Add(const CURVE& c, bool preclip = false) {
    const EdgeTarget target = {&display, &list, nullptr, nullptr, ruleEvenOdd, preclip};
    AddCurveEdges(&c, target, &depth);
    return Take();
  }
  int32_t depth = 0;
};

TEST_F(CurveEdges, AControlTwoUnitsBeyondAnAnchorDoesNotSplit) {
  for (int beyond : {1, 2}) {
    std::vector<PlainEdge> edges = Add(CurveOf({0, 0}, {10, -beyond}, {20, 40}));
    ASSERT_EQ(edges.size(), 1u);
    EXPECT_EQ(edges[0].cy, 0) << "snapped to the anchor";
    edges = Add(CurveOf({0, 0}, {10, 40 + beyond}, {20, 40}));
    ASSERT_EQ(edges.size(), 1u);
    EXPECT_EQ(edges[0].cy, 40);
  }
}

TEST_F(CurveEdges, AControlThreeUnitsBeyondAnAnchorSplits) {
  // 0 - (-3) over 0 + 6 + 40: the extreme at 0.065 lies at -0.2, so the upper
  // piece is lost as horizontal and the lower one begins at the extreme.
  EXPECT_EQ(Add(CurveOf({0, 0}, {10, -3}, {20, 40})).size(), 1u);
  const std::vector<PlainEdge> edges = Add(CurveOf({0, 0}, {10, -13}, {20, 4}));
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0].dir, -1);
  EXPECT_EQ(edges[1].dir, 1);
  EXPECT_EQ(edges[0].y1, edges[1].y1);
}

TEST_F(CurveEdges, HorizontalCurvesAndLinesYieldNone) {
  EXPECT_TRUE(Add(LineOf({0, 5}, {100, 5})).empty());
  EXPECT_TRUE(Add(CurveOf({0, 5}, {50, 5}, {100, 5})).empty());
  EXPECT_TRUE(Add(CurveOf({0, 5}, {50, 6}, {100, 5})).empty());
}

TEST_F(CurveEdges, UpwardOnesAreTurnedAndCountDown) {
  const std::vector<PlainEdge> edges = Add(LineOf({10, 50}, {0, 0}));
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0], (PlainEdge{0, 0, 5, 25, 10, 50, true, ruleEvenOdd, -1, nullptr, nullptr}));
}

TEST_F(CurveEdges, TallCurvesAreHalvedAndTallLinesAreNot) {
  EXPECT_EQ(Add(CurveOf({0, 0}, {100, 128}, {0, 256})).size(), 1u);
  EXPECT_EQ(Add(CurveOf({0, 0}, {100, 128}, {0, 257})).size(), 2u);
  EXPECT_EQ(Add(LineOf({0, 0}, {0, 30000})).size(), 1u);
}

TEST_F(CurveEdges, AHeightThatWrapsCountsAsLow) {
  const CURVE c = CurveOf({40000, -0x60000000}, {40000, 0}, {50000, 0x60000000});
  const std::vector<PlainEdge> edges = Add(c, true);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0], (PlainEdge{32000, -32000, 32000, 0, 32000, 32000, true, ruleEvenOdd, 1,
                                 nullptr, nullptr}));
}

TEST_F(CurveEdges, TheExtremeOfAHugeCurveIsFoundWithoutWrapping) {
  const CURVE c = CurveOf({100, 0x30000000}, {100, -0x30000000}, {100, 0x30000000});
  int up = 0;
  int down = 0;
  for (const PlainEdge& e : Add(c, true)) {
    if (e.y1 != 0) continue;
    up += e.dir < 0;
    down += e.dir > 0;
  }
  EXPECT_EQ(up, 1);
  EXPECT_EQ(down, 1);
}

TEST_F(CurveEdges, AFlatCurveIsStoredAsALine) {
  EXPECT_TRUE(Add(CurveOf({0, 0}, {11, 20}, {20, 40}))[0].isLine);
  EXPECT_FALSE(Add(CurveOf({0, 0}, {12, 20}, {20, 40}))[0].isLine);
}

TEST_F(CurveEdges, FarToTheSideTheyBecomeVerticalLines) {
  std::vector<PlainEdge> edges = Add(CurveOf({-40000, 0}, {-35000, 10}, {-20000, 100}), true);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0], (PlainEdge{-32000, 0, -32000, 50, -32000, 100, true, ruleEvenOdd, 1, nullptr,
                                 nullptr}));
  edges = Add(LineOf({16001, 40000}, {40000, -40000}), true);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0], (PlainEdge{32000, -32000, 32000, 0, 32000, 32000, true, ruleEvenOdd, -1,
                                 nullptr, nullptr}));
}

TEST_F(CurveEdges, WithinTheOuterLimitTheyStayAsTheyAre) {
  const std::vector<PlainEdge> edges = Add(LineOf({-32000, 0}, {-20000, 100}), true);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].x1, -32000);
}

TEST_F(CurveEdges, AboveAndBelowTheViewTheyAreDropped) {
  EXPECT_TRUE(Add(LineOf({0, -40000}, {0, -16001}), true).empty());
  EXPECT_TRUE(Add(LineOf({0, 16001}, {0, 40000}), true).empty());
  EXPECT_TRUE(Add(CurveOf({0, 16001}, {900, 30000}, {0, 16001}), true).empty());
}

TEST_F(CurveEdges, ALineAcrossTheViewIsDividedUntilItFits) {
  const std::vector<PlainEdge> edges = Add(LineOf({-100000, -10}, {100000, 10}), true);
  ASSERT_GE(edges.size(), 2u);
  for (const PlainEdge& e : edges) {
    EXPECT_GE(std::min(e.x1, e.x2), -32000);
    EXPECT_LE(std::max(e.x1, e.x2), 32000);
  }
  EXPECT_EQ(edges.front().y1, -10);
  EXPECT_EQ(edges.back().y2, 10);
}

TEST_F(CurveEdges, PointsBeyond16BitsAreHeldToThem) {
  const std::vector<PlainEdge> edges = Add(LineOf({-70000, -70000}, {70000, 0}));
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].x1, -32768);
  EXPECT_EQ(edges[0].y1, -32768);
  EXPECT_EQ(edges[0].x2, 32767);
  EXPECT_TRUE(Add(LineOf({0, 40000}, {0, 70000})).empty()) << "no height is left";
}

TEST_F(CurveEdges, TheCounterStaysRaisedAfterTooManyDivisions) {
  const EdgeTarget target = {&display, &list, nullptr, nullptr, ruleEvenOdd, false};
  // Divided by halves it comes down to 256 only at level 17.
  const CURVE c = CurveOf({0, -0x1800000}, {0, 0}, {0, 0x1800000});
  AddCurveEdges(&c, target, &depth);
  EXPECT_GT(depth, 0);
  depth = 0;
  Take();
  Add(CurveOf({0, 0}, {0, 4000}, {0, 8000}));
  EXPECT_EQ(depth, 0);
}

TEST_F(CurveEdges, TheBudgetEndsThem) {
  display.edgeCount = kMaxEdges;
  EXPECT_TRUE(Add(LineOf({0, 0}, {0, 10})).empty());
  EXPECT_TRUE(Add(CurveOf({0, 0}, {0, 4000}, {0, 8000})).empty());
  display.edgeCount = 0;
}

// The procedure as it reads, every piece divided to the end.
class PlainBuilder {
 public:
  std::vector<PlainEdge> edges;
  int depth = 0;
  bool preclip = false;

  void Add(CURVE argument) {
    CURVE c = argument;
    int dir = 1;
    if (c.anchor1.y > c.anchor2.y) {
      std::swap(c.anchor1, c.anchor2);
      dir = -1;
    }
    if (!c.isLine) {
      const int y1 = c.anchor1.y, y2 = c.anchor2.y, cy = c.control.y;
      if (cy >= y1 && cy <= y2) {
      } else if (cy < y1 && y1 - cy <= 2) {
        c.control.y = y1;
      } else if (cy > y2 && cy - y2 <= 2) {
        c.control.y = y2;
      } else {
        const int a = argument.anchor1.y, b = argument.anchor2.y;
        CURVE first, second;
        CurveDivide(&argument, FixedDiv(a - cy, a - 2 * cy + b), &first, &second);
        Halves(first, second);
        return;
      }
      if (y2 - y1 > 256) {
        Half(argument);
        return;
      }
    }
    if (c.anchor1.y == c.anchor2.y) return;
    if (preclip) {
      SRECT r;
      CurveBounds(&c, &r);
      if (r.ymax < -16000 || r.ymin > 16000) return;
      const SRECT outer = {-32000, 32000, -32000, 32000};
      const SPOINT low = {r.xmin, r.ymin}, high = {r.xmax, r.ymax};
      if (RectPointIn(&outer, &low) && RectPointIn(&outer, &high)) {
      } else if (r.xmax < -16000) {
        MakeVertLine(&c, -32000);
      } else if (r.xmin > 16000) {
        MakeVertLine(&c, 32000);
      } else if (depth <= 15) {
        Half(argument);
        return;
      }
    }
    const PlainEdge e = {Cut(c.anchor1.x),
                         Cut(c.anchor1.y),
                         Cut(c.control.x),
                         Cut(c.control.y),
                         Cut(c.anchor2.x),
                         Cut(c.anchor2.y),
                         CurveFlatness(&c) <= 1,
                         ruleEvenOdd,
                         dir,
                         nullptr,
                         nullptr};
    if (e.y2 > e.y1) edges.push_back(e);
  }

 private:
  static int Cut(int v) { return std::clamp(v, -32768, 32767); }
  void Half(const CURVE& c) {
    CURVE first, second;
    CurveDivide(&c, &first, &second);
    Halves(first, second);
  }
  void Halves(const CURVE& first, const CURVE& second) {
    if (++depth > 16) return;
    Add(first);
    Add(second);
    --depth;
  }
};

TEST_F(CurveEdges, EqualTheirPlainTwin) {
  std::mt19937 random(11);
  for (int i = 0; i < 20000; ++i) {
    const int size = 1 << (3 + random() % 16);
    const auto value = [&] { return static_cast<int>(random() % (2u * size)) - size; };
    const int offset = random() % 2 ? value() : 0;
    CURVE c = CurveOf({value() + offset, value()}, {value(), value() - offset}, {value(), value()});
    if (random() % 3 == 0) c = LineOf(c.anchor1, c.anchor2);
    PlainBuilder plain;
    plain.preclip = random() % 2 == 0;
    plain.Add(c);
    depth = 0;
    ASSERT_EQ(Add(c, plain.preclip), plain.edges)
        << "CurveOf({" << c.anchor1.x << ", " << c.anchor1.y << "}, {" << c.control.x << ", "
        << c.control.y << "}, {" << c.anchor2.x << ", " << c.anchor2.y << "}) line " << c.isLine
        << " preclip " << plain.preclip;
  }
}

TEST_F(CurveEdges, AnyNumbersAreTaken) {
  std::mt19937 random(12);
  const auto value = [&] { return static_cast<int32_t>(random()) >> (random() % 8); };
  for (int i = 0; i < 300; ++i) {
    CURVE c = CurveOf({value(), value()}, {value(), value()}, {value(), value()});
    c.isLine = random() % 4 == 0;
    depth = 0;
    Add(c, random() % 2 == 0);
  }
}

}  // namespace
}  // namespace vexel::test
