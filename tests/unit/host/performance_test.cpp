#include "host/performance.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vexel {
namespace {

struct PerformanceTest : testing::Test {
  UINT32 Percent() { return GetPerformancePercentage(host.context.get()); }
  void Quality(std::string value) { values["Quality"] = std::move(value); }
  test::FakeHost host;
  std::map<std::string, std::string>& values = host.preferences->values;
};

TEST_F(PerformanceTest, IsSeventyWithoutPreferences) {
  EXPECT_EQ(Percent(), 70u) << "none of them is set";
  host.Without(IID_IZEMPreferences);
  EXPECT_EQ(Percent(), 70u) << "nobody keeps them";
  EXPECT_EQ(GetPerformancePercentage(nullptr), 70u);
}

TEST_F(PerformanceTest, IsThirtyWithQualityZero) {
  Quality("0");
  EXPECT_EQ(Percent(), 30u);
}

TEST_F(PerformanceTest, IsFiftyWithQualityTwo) {
  Quality("2");
  EXPECT_EQ(Percent(), 50u);
}

TEST_F(PerformanceTest, LiesBetweenTheBoundsThatAreSet) {
  values = {{"KestVexelDrawingMax", "90"}, {"KestVexelDrawingMin", "10"}, {"Quality", "1"}};
  EXPECT_EQ(Percent(), 30u);
  Quality("3");
  EXPECT_EQ(Percent(), 70u);
}

TEST_F(PerformanceTest, MissingValueMayBeANullBuffer) {
  host.preferences->missingIsNull = true;
  EXPECT_EQ(Percent(), 70u);
}

TEST_F(PerformanceTest, ValuesMayLackTheirZero) {
  host.preferences->terminated = false;
  values = {{"KestVexelDrawingMax", "80"},
            {"Quality", std::string(100000, '4')},
            {"KestVexelDrawingMin", ""}};
  Percent();
  Quality("4");
  EXPECT_EQ(Percent(), 80u);
}

TEST_F(PerformanceTest, CountsUnsigned) {
  values = {{"KestVexelDrawingMax", "30"}, {"KestVexelDrawingMin", "70"}};
  EXPECT_EQ(Percent(), 70u + ((0u - 40u) * 4 >> 2));
}

}  // namespace
}  // namespace vexel
