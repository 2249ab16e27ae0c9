// Rectangles as edges.
#include "stage/rect_edges.h"

#include "edge_fixture.h"
#include "stage/stroker.h"

namespace vexel::test {
namespace {

class RectEdges : public EdgeTest {};

TEST_F(RectEdges, AreItsTwoUprightSides) {
  const SRECT r = {10, 30, 20, 50};
  MATRIX m;
  MatrixTranslate(1, 2, &m);
  AddRect(&r, &m, nullptr, &display, &list, nullptr);
  const std::vector<PlainEdge> edges = Take();
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0], (PlainEdge{11, 22, 11, 37, 11, 52, true, ruleWinding, 1, nullptr, nullptr}));
  EXPECT_EQ(edges[1], (PlainEdge{31, 22, 31, 37, 31, 52, true, ruleWinding, -1, nullptr, nullptr}));
}

TEST_F(RectEdges, TurnedHaveFour) {
  const SRECT r = {0, 100, 0, 100};
  MATRIX m;
  MatrixRotate(30 << 16, &m);
  AddRect(&r, &m, nullptr, &display, &list, nullptr);
  const std::vector<PlainEdge> edges = Take();
  ASSERT_EQ(edges.size(), 4u);
  EXPECT_NE(WindingAt(edges, 10, 50), 0);
  EXPECT_EQ(WindingAt(edges, 90, 10), 0);
}

TEST_F(RectEdges, OfAStrokerAreALineAround) {
  SStroker stroker(&display, &list);
  const SRECT r = {10, 30, 20, 50};
  MATRIX m;
  MatrixIdentity(&m);
  AddRect(&r, &m, nullptr, &display, &list, &stroker);
  const std::vector<PlainEdge> edges = Take();
  EXPECT_EQ(WindingAt(edges, 20, 30), 0) << "hollow";
  int covered = 0;
  for (int y = 15; y < 55; ++y)
    for (int x = 5; x < 35; ++x) covered += WindingAt(edges, x, y) != 0;
  EXPECT_NEAR(covered, 100, 6);
}

TEST_F(RectEdges, OutsideOf16BitsAreHeldToThem) {
  const SRECT r = {-100000, 100000, -100000, 100000};
  MATRIX m;
  MatrixIdentity(&m);
  AddRect(&r, &m, nullptr, &display, &list, nullptr);
  const std::vector<PlainEdge> edges = Take();
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0].x1, -32768);
  EXPECT_EQ(edges[0].y2, 32767);
}

}  // namespace
}  // namespace vexel::test
