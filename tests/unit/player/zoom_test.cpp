#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

// 200 by 100 pixels in a client area of the same size.
class Zooming : public ::testing::Test {
 protected:
  Zooming() : player(200, 100) {
    author::MovieWriter movie(200, 100);
    movie.FrameEnd().End();
    player.highQuality = false;
    player.Push(movie.Finish());
    player.TakeCalls();
  }
  void ExpectShown(SCOORD left, SCOORD top, SCOORD right, SCOORD bottom, SCOORD tolerance = 0) {
    const SRECT& r = player.zoomRect;
    EXPECT_NEAR(r.xmin, left, tolerance);
    EXPECT_NEAR(r.ymin, top, tolerance);
    EXPECT_NEAR(r.xmax, right, tolerance);
    EXPECT_NEAR(r.ymax, bottom, tolerance);
  }
  TestPlayer player;
};

TEST_F(Zooming, ARectangleInsideTheMovieIsShownAsItIs) {
  player.Zoom({1000, 500}, {2000, 1000});
  ExpectShown(1500, 750, 2500, 1250);
  EXPECT_EQ(player.TakeCalls(), "CheckUpdate ");
  EXPECT_EQ(player.display.camera.mat.a, 200 * 65536 / 1000);
}

TEST_F(Zooming, OddSizesLoseTheirLastUnit) {
  player.Zoom({1001, 501}, {2000, 1000});
  ExpectShown(1500, 750, 2500, 1250);
}

TEST_F(Zooming, ARectangleAtTheEdgeIsShiftedInside) {
  player.Zoom({1000, 500}, {0, 0});
  ExpectShown(0, 0, 1000, 500);
  player.Zoom({1000, 500}, {4000, 2000});
  ExpectShown(3000, 1500, 4000, 2000);
}

TEST_F(Zooming, AWiderRectangleIsCutToTheMovie) {
  player.Zoom({8000, 1000}, {100, 1000});
  ExpectShown(0, 500, 4000, 1500);
}

TEST_F(Zooming, TheDeepestZoomIs20To1) {
  player.Zoom({1, 1}, {2000, 1000});
  ExpectShown(1900, 950, 2100, 1050);
}

TEST_F(Zooming, ASizeThatCoversTheMovieGoesHome) {
  player.Zoom({1000, 500}, {2000, 1000});
  player.Zoom({4000, 2000}, {100, 100});
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
}

TEST_F(Zooming, HundredPercentOfTheWholeMovieEndsAtHome) {
  const MATRIX home = player.display.camera.mat;
  player.Zoom(100);
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
  EXPECT_TRUE(MatrixEqual(&home, &player.display.camera.mat, 0));
}

TEST_F(Zooming, HundredPercentOfAPartShowsThatPart) {
  player.Zoom({1000, 500}, {2000, 1000});
  player.Zoom(100);
  ExpectShown(1500, 750, 2500, 1250, 2);
}

// The percentage is that of the ground shown.
TEST_F(Zooming, FiftyPercentMagnifiesTwice) {
  player.Zoom({2000, 1000}, {2000, 1000});
  player.Zoom(50);
  ExpectShown(1500, 750, 2500, 1250, 2);
  player.Zoom(0);
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
}

TEST_F(Zooming, AFactorZoomsAroundAPixelOrTheMiddle) {
  const SPOINT corner = {0, 0};
  player.ZoomF(0x8000, &corner);
  ExpectShown(0, 0, 2000, 1000, 2);
  player.Home();
  player.ZoomScale(0x8000);
  ExpectShown(1000, 500, 3000, 1500, 2);
  player.highQuality = true;
  player.SetCamera(kCameraOnly);
  player.ZoomScale(0x8000);
  ExpectShown(1500, 750, 2500, 1250, 2);
}

TEST_F(Zooming, ARectangleIsShownByItsSizeAndMiddle) {
  const SRECT r = {1000, 2000, 500, 1000};
  player.Zoom(&r);
  ExpectShown(1000, 500, 2000, 1000);
  player.SetZoomRect(0, 0, 500, 250);
  ExpectShown(0, 0, 500, 250);
  player.SetZoomRect(500, 0, 500, 250);
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
  player.SetZoomRect(0, 0, 500, 250);
  player.SetZoomRect(0, 300, 500, 250);
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
}

TEST_F(Zooming, FullSizeFixesTheScaleOrShowsTheTopLeft) {
  player.Zoom100();
  EXPECT_EQ(player.scaleMode, kScaleFixed);
  EXPECT_EQ(player.display.camera.mat.a, 3276);
  player.Home();
  EXPECT_EQ(player.scaleMode, kScaleFit);
  player.scaleMode = kScaleTopLeft;
  player.client = {0, 50, 0, 40};
  player.Zoom100();
  ExpectShown(0, 0, 1000, 800);
  EXPECT_EQ(player.scaleMode, kScaleTopLeft);
}

TEST_F(Zooming, AtFixedScaleTheWholeMovieIsTheSource) {
  player.zoomRect = {0, 1000, 0, 500};
  player.scaleMode = kScaleFixed;
  player.SetCamera(kCameraOnly);
  EXPECT_EQ(player.display.camera.mat.tx, 0 + 100 - 100);
  player.Zoom({1000, 500}, {2000, 1000});
  EXPECT_EQ(player.scaleMode, kScaleFit) << "zooming leaves it";
}

TEST_F(Zooming, PanningDoesNothingUnlessZoomed) {
  player.Pan(10, 10, kPanPixels);
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
  EXPECT_EQ(player.TakeCalls(), "");
}

TEST_F(Zooming, PanningMovesByPixelsOrPercentAndStopsAtTheMovie) {
  player.Zoom({2000, 1000}, {2000, 1000});
  player.Pan(10, -20, kPanPixels);  // a pixel shows 10 units
  ExpectShown(1100, 300, 3100, 1300, 3);
  player.Pan(-25, 25, kPanPercent);
  ExpectShown(600, 550, 2600, 1550, 5);
  player.Pan(-100000, 100000, kPanPixels);
  ExpectShown(0, 1000, 2000, 2000, 5);
}

TEST_F(Zooming, TheCameraIsShownNowSoonOrNotAtAll) {
  player.SetCamera(kCameraOnly);
  EXPECT_EQ(player.TakeCalls(), "");
  player.SetCamera(kCameraShowNow);
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen ");
  player.SetCamera(kCameraShowSoon);
  EXPECT_EQ(player.TakeCalls(), "CheckUpdate ");
}

TEST_F(Zooming, MoviesThatMoveDoNotSmoothBitmapsUnlessTheBestIsAskedFor) {
  player.numFrames = 1;
  player.SetCamera(kCameraOnly);
  EXPECT_FALSE(player.display.animating);
  player.numFrames = 2;
  player.SetCamera(kCameraOnly);
  EXPECT_TRUE(player.display.animating);
  player.bestQuality = true;
  player.SetCamera(kCameraOnly);
  EXPECT_FALSE(player.display.animating);
}

TEST_F(Zooming, ExtremeNumbersTrapNowhere) {
  const int32_t extremes[] = {kInt32Min, kInt32Min + 1, -1, 0, 1, kInt32Max};
  for (const int32_t a : extremes) {
    for (const int32_t b : extremes) {
      player.Zoom({a, b}, {b, a});
      player.Pan(a, b, kPanPercent);
      player.Pan(a, b, kPanPixels);
      const SPOINT p = {a, b};
      player.ZoomF(a, &p);
      player.ZoomF(b, nullptr);
      player.Zoom(a);
      player.SetZoomRect(a, a, b, b);
      player.Zoom(50);
      player.client = {0, a, 0, b};
      player.Zoom100();
      player.client = {0, 200, 0, 100};
    }
  }
  EXPECT_EQ(CheckStage(player.display), "");
}

}  // namespace
}  // namespace vexel::test
