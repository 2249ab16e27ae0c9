// The numbered properties: what each reads, what a write changes and marks.
#include "player/properties.h"

#include <cmath>

#include "geometry/trig.h"
#include "nested_movie.h"

namespace vexel::test {
namespace {

class Properties : public NestedMovieTest {
 protected:
  // Sprite "a", with nothing marked.
  Properties() {
    player.display.CalcUpdate();
    EXPECT_FALSE(a->dirty);
  }
  double Get(int32_t index) { return player.GetProperty(a->thread, index); }
  std::string GetStr(int32_t index) { return Take(player.GetPropertyStr(a->thread, index)); }
  // What a write marks: "modified", "owned", both, or nothing.
  std::string Marks() {
    std::string marks = a->dirty ? "modified" : "";
    if (a->scriptControlled) marks += marks.empty() ? "owned" : " owned";
    player.display.CalcUpdate();
    a->scriptControlled = false;
    return marks;
  }
  std::string Set(int32_t index, double value) {
    player.SetProperty(a->thread, index, value);
    return Marks();
  }
  std::string SetStr(int32_t index, const char* value) {
    player.SetPropertyStr(a->thread, index, value);
    return Marks();
  }
  std::string Linear() {
    return std::to_string(a->mat.a) + ' ' + std::to_string(a->mat.b) + ' ' +
           std::to_string(a->mat.c) + ' ' + std::to_string(a->mat.d);
  }
};

TEST_F(Properties, TheNumbersAreThoseOfScripts) {
  EXPECT_EQ(kPropX, 0);
  EXPECT_EQ(kPropCurrentFrame, 4);
  EXPECT_EQ(kPropHeight, 9);
  EXPECT_EQ(kPropDropTarget, 14);
  EXPECT_EQ(kPropBufferTime, 18);
}

TEST_F(Properties, NoTimelineHasNoProperties) {
  for (int32_t index = -1; index < 20; ++index) {
    EXPECT_EQ(player.GetProperty(nullptr, index), 0);
    EXPECT_EQ(Take(player.GetPropertyStr(nullptr, index)), "(null)");
    player.SetProperty(nullptr, index, 3);
    player.SetPropertyStr(nullptr, index, "3");
  }
  EXPECT_EQ(player.bufferTime, 5);
  EXPECT_TRUE(player.highQuality);
}

TEST_F(Properties, ATimelineWithoutAnObjectHasItsFramesAndThePlayersNumbers) {
  ScriptPlayer* layer = player.OpenLayer(5, false);
  for (const int32_t index : {0, 1, 2, 3, 6, 7, 8, 9, 10}) {
    EXPECT_EQ(player.GetProperty(layer, index), 0) << index;
    player.SetProperty(layer, index, 3);
  }
  for (const int32_t index : {13, 14, 15}) {
    EXPECT_EQ(Take(player.GetPropertyStr(layer, index)), "") << index;
    player.SetPropertyStr(layer, index, "x");
  }
  EXPECT_EQ(player.GetProperty(layer, kPropCurrentFrame), 0);
  EXPECT_EQ(player.GetProperty(layer, kPropBufferTime), 5);
  player.SetProperty(layer, kPropBufferTime, 9);
  EXPECT_EQ(player.bufferTime, 9);
}

TEST_F(Properties, OtherNumbersReadAsZeroAndWriteNothing) {
  for (const int32_t index : {-1, 20, 1000, kInt32Max, kInt32Min}) {
    EXPECT_EQ(Set(index, 7), "") << index;
    EXPECT_EQ(Get(index), 0) << index;
    EXPECT_EQ(GetStr(index), "0") << index;
  }
}

TEST_F(Properties, Number19DoesNothing) {
  const MATRIX before = a->mat;
  EXPECT_EQ(Set(19, 7), "");
  EXPECT_EQ(SetStr(19, "7"), "");
  EXPECT_EQ(Get(19), 0);
  EXPECT_TRUE(MatrixEqual(&before, &a->mat, 0));
  EXPECT_EQ(player.bufferTime, 5);
  EXPECT_TRUE(player.display.useFocusRect);
}

TEST_F(Properties, APositionIsInPixelsCutToTwentieths) {
  EXPECT_EQ(Set(kPropX, 12.59), "modified owned");
  EXPECT_EQ(a->mat.tx, 251);
  EXPECT_EQ(Get(kPropX), 12.55);
  EXPECT_EQ(GetStr(kPropX), "12.55");
  EXPECT_EQ(Set(kPropY, -0.99), "modified owned");
  EXPECT_EQ(a->mat.ty, -19);
  EXPECT_EQ(Get(kPropY), -0.95);
}

TEST_F(Properties, APositionThatStaysIsOwnedAllTheSame) {
  EXPECT_EQ(Set(kPropX, 0.04), "owned");
  EXPECT_EQ(Set(kPropY, 0), "owned");
}

TEST_F(Properties, APositionOutOfRangeIsTheLowestInteger) {
  Set(kPropX, 1e300);
  EXPECT_EQ(a->mat.tx, kInt32Min);
  Set(kPropY, std::nan(""));
  EXPECT_EQ(a->mat.ty, kInt32Min);
}

TEST_F(Properties, AScaleIsTheLengthOfAnAxisInPercent) {
  a->mat = {0x18000, 0, 0, 0x8000, 0, 0};
  EXPECT_EQ(std::lround(Get(kPropXScale)), 150);
  EXPECT_EQ(std::lround(Get(kPropYScale)), 50);
  a->mat = {0, 0x20000, -0x30000, 0, 0, 0};
  EXPECT_EQ(std::lround(Get(kPropXScale)), 200);
  EXPECT_EQ(std::lround(Get(kPropYScale)), 300);
  const SPOINT axis = {a->mat.c, a->mat.d};
  EXPECT_EQ(Get(kPropYScale), PointLength(&axis) * 100.0 / 65536);
}

TEST_F(Properties, AMirroredAxisReadsAsPositive) {
  a->mat = {-0x10000, 0, 0, -0x10000, 0, 0};
  EXPECT_EQ(std::lround(Get(kPropXScale)), 100);
  EXPECT_EQ(std::lround(Get(kPropYScale)), 100);
}

TEST_F(Properties, ANewScaleKeepsTheDirectionOfItsAxis) {
  MatrixRotate(30 << 16, &a->mat);
  const SFIXED x = _FPATan2(a->mat.b, a->mat.a, 16, 16);
  const SFIXED y = _FPATan2(-a->mat.c, a->mat.d, 16, 16);
  EXPECT_EQ(Set(kPropXScale, 50), "modified owned");
  EXPECT_EQ(a->mat.a, FixedMul(_FPCos(x, 16, 16), 0x8000));
  EXPECT_EQ(a->mat.b, FixedMul(_FPSin(x, 16, 16), 0x8000));
  EXPECT_EQ(Set(kPropYScale, 200), "modified owned");
  EXPECT_EQ(a->mat.c, FixedMul(-_FPSin(y, 16, 16), 0x20000));
  EXPECT_EQ(a->mat.d, FixedMul(_FPCos(y, 16, 16), 0x20000));
}

TEST_F(Properties, TheSineIsNegatedBeforeItIsScaled) {
  a->mat = {0x10000, 0, 0, 0x10000, 0, 0};
  Set(kPropRotation, 30);
  const int32_t sine = _FPSin(30 << 16, 16, 16);
  const SPOINT axis = {0, 0x10000};
  EXPECT_EQ(a->mat.c, FixedMul(-sine, PointLength(&axis)));
}

TEST_F(Properties, AScaleWithinTheDeadBandOf16ChangesNothing) {
  a->mat = {0x10000, 0, 0, 0x10000, 0, 0};
  const SPOINT axis = {0x10000, 0};
  const SFIXED length = PointLength(&axis);
  EXPECT_EQ(Set(kPropXScale, (length + 16.5) * 100 / 65536), "owned");
  EXPECT_EQ(Set(kPropXScale, (length - 15.5) * 100 / 65536), "owned");
  EXPECT_EQ(a->mat.a, 0x10000);
  EXPECT_EQ(Set(kPropYScale, (length + 16.5) * 100 / 65536), "owned");
  EXPECT_EQ(a->mat.d, 0x10000);
}

TEST_F(Properties, AScaleBeyondTheDeadBandOf16IsTaken) {
  a->mat = {0x10000, 0, 0, 0x10000, 0, 0};
  const SPOINT axis = {0x10000, 0};
  const SFIXED length = PointLength(&axis);
  EXPECT_EQ(Set(kPropXScale, (length + 17.5) * 100 / 65536), "modified owned");
  EXPECT_EQ(Set(kPropYScale, (length - 16.5) * 100 / 65536), "modified owned");
  EXPECT_NE(a->mat.a, 0x10000);
  EXPECT_NE(a->mat.d, 0x10000);
}

TEST_F(Properties, ANegativeScaleTurnsTheAxisRound) {
  a->mat = {0x10000, 0, 0, 0x10000, 0, 0};
  Set(kPropXScale, -100);
  EXPECT_EQ(a->mat.a, -0x10000);
  EXPECT_EQ(std::lround(Get(kPropXScale)), 100);
  EXPECT_EQ(std::lround(std::abs(Get(kPropRotation))), 180);
}

TEST_F(Properties, ScalesOutOfRangeStayInRange) {
  Set(kPropXScale, 1e300);
  Set(kPropYScale, -1e300);
  Set(kPropXScale, kInt32Max);
  Set(kPropYScale, std::nan(""));
  Set(kPropRotation, 1e300);
  Set(kPropRotation, -32768);
  EXPECT_FALSE(std::isnan(Get(kPropXScale)));
}

TEST_F(Properties, AFrameCountsFromOne) {
  EXPECT_EQ(a->thread->curFrame, 0);
  EXPECT_EQ(Get(kPropCurrentFrame), 1);
  EXPECT_EQ(GetStr(kPropCurrentFrame), "1");
  EXPECT_EQ(Set(kPropCurrentFrame, 5), "");
  EXPECT_EQ(Get(kPropCurrentFrame), 1);
  a->thread->DoFrame(1);
  EXPECT_EQ(Get(kPropCurrentFrame), 2);
}

TEST_F(Properties, TotalFramesAreThoseDeclared) {
  EXPECT_EQ(Get(kPropTotalFrames), 8);
  EXPECT_EQ(player.GetProperty(&player, kPropTotalFrames), 10);
  EXPECT_EQ(Set(kPropTotalFrames, 5), "");
  EXPECT_EQ(Get(kPropTotalFrames), 8);
}

TEST_F(Properties, AlphaIsAPercentageOf256) {
  EXPECT_EQ(Get(kPropAlpha), 100);
  EXPECT_EQ(Set(kPropAlpha, 50), "modified owned");
  EXPECT_EQ(a->cxform.aa, 128);
  EXPECT_EQ(a->cxform.flags, ColorTransform::kHasMul);
  EXPECT_EQ(Get(kPropAlpha), 50);
  EXPECT_EQ(Set(kPropAlpha, 33), "modified owned");
  EXPECT_EQ(a->cxform.aa, 84);
  EXPECT_EQ(GetStr(kPropAlpha), "32.8125");
  EXPECT_EQ(Set(kPropAlpha, 100), "modified owned");
  EXPECT_EQ(a->cxform.flags, 0);
}

TEST_F(Properties, AnAlphaThatStaysIsOwnedAllTheSame) {
  EXPECT_EQ(Set(kPropAlpha, 100.2), "owned");
  EXPECT_EQ(a->cxform.aa, 256);
}

TEST_F(Properties, AnAlphaOutOfRangeKeepsItsLow16Bits) {
  EXPECT_EQ(Set(kPropAlpha, -10), "modified owned");
  EXPECT_EQ(a->cxform.aa, -25);
  Set(kPropAlpha, 1e6);
  EXPECT_EQ(a->cxform.aa, static_cast<int16_t>(2560000));
}

TEST_F(Properties, HidingModifiesAndLeavesTheObjectToItsTimeline) {
  EXPECT_EQ(Get(kPropVisible), 1);
  EXPECT_EQ(Set(kPropVisible, 0), "modified");
  EXPECT_FALSE(a->visible);
  EXPECT_EQ(Get(kPropVisible), 0);
  EXPECT_EQ(Set(kPropVisible, -0.1), "modified");
  EXPECT_TRUE(a->visible);
}

TEST_F(Properties, ShowingWhatIsVisibleDoesNothingAtAll) {
  EXPECT_EQ(Set(kPropVisible, 7), "");
  Set(kPropVisible, 0);
  EXPECT_EQ(Set(kPropVisible, 0), "");
}

TEST_F(Properties, HidingTakesTheFocusFromAButtonInside) {
  SObject* button = a->next->next;
  const SRECT bounds = {40, 80, 40, 80};
  player.display.Update();
  player.focusButton.Set(button, bounds);
  player.display.tabFocusRect = bounds;
  player.SetProperty(&player, kPropVisible, 0);
  EXPECT_EQ(player.focusButton.button.Get(), nullptr);
  EXPECT_TRUE(RectIsEmpty(&player.display.tabFocusRect));
  EXPECT_EQ(player.display.dirtyCount, 1);
}

TEST_F(Properties, HidingAnotherObjectLeavesTheFocus) {
  SObject* button = a->next->next;
  const SRECT bounds = {40, 80, 40, 80};
  player.focusButton.Set(button, bounds);
  player.display.tabFocusRect = bounds;
  EXPECT_EQ(Set(kPropVisible, 0), "modified");
  EXPECT_EQ(player.focusButton.button.Get(), button);
  EXPECT_FALSE(RectIsEmpty(&player.display.tabFocusRect));
  player.SetProperty(&player, kPropVisible, 1);
  EXPECT_EQ(player.focusButton.button.Get(), button);
}

TEST_F(Properties, WidthAndHeightAreThoseOfTheBoundingBox) {
  EXPECT_EQ(Get(kPropWidth), 10);
  EXPECT_EQ(Get(kPropHeight), 20);
  EXPECT_EQ(Set(kPropWidth, 50), "");
  EXPECT_EQ(Set(kPropHeight, 50), "");
  a->mat.a = 0x20000;
  EXPECT_EQ(Get(kPropWidth), 20);
  EXPECT_EQ(player.GetProperty(&player, kPropWidth), 24);
}

TEST_F(Properties, AnEmptySpriteHasNoSize) {
  player.display.RemoveObject(b);
  EXPECT_EQ(Get(kPropWidth), 0);
  EXPECT_EQ(Get(kPropHeight), 0);
}

TEST_F(Properties, RotationIsTheDirectionOfTheXAxis) {
  EXPECT_EQ(Get(kPropRotation), 0);
  a->mat = {0, 0x10000, -0x10000, 0, 0, 0};
  EXPECT_EQ(Get(kPropRotation), 90);
  a->mat = {0, -0x10000, 0x10000, 0, 0, 0};
  EXPECT_EQ(GetStr(kPropRotation), "-90");
}

TEST_F(Properties, ARotationTurnsBothAxes) {
  EXPECT_EQ(Set(kPropRotation, 90), "modified owned");
  EXPECT_EQ(Linear(), "0 65536 -65536 0");
  EXPECT_EQ(Set(kPropRotation, 360), "modified owned");
  EXPECT_EQ(Linear(), "65536 0 0 65536");
}

TEST_F(Properties, ARotationKeepsSkewAndLengths) {
  a->mat = {0x20000, 0, 0x8000, 0x8000, 7, 9};
  const SPOINT y = {a->mat.c, a->mat.d};
  const SFIXED skew = _FPATan2(-a->mat.c, a->mat.d, 16, 16);
  const SFIXED length = PointLength(&y);
  EXPECT_EQ(Set(kPropRotation, 40.5), "modified owned");
  const SFIXED angle = 40 * 65536 + 32768;
  EXPECT_EQ(a->mat.b, FixedMul(_FPSin(angle, 16, 16), 0x20000));
  EXPECT_EQ(a->mat.c, FixedMul(-_FPSin(angle + skew, 16, 16), length));
  EXPECT_EQ(a->mat.d, FixedMul(_FPCos(angle + skew, 16, 16), length));
  EXPECT_EQ(a->mat.tx, 7);
  EXPECT_EQ(a->mat.ty, 9);
}

TEST_F(Properties, ARotationWithinTheDeadBandOf16ChangesNothing) {
  EXPECT_EQ(Set(kPropRotation, 0.01), "owned");
  EXPECT_EQ(Linear(), "65536 0 0 65536");
  EXPECT_EQ(Set(kPropRotation, 0.1), "modified owned");
}

TEST_F(Properties, ReadAndWrittenBackAScaleStandsStill) {
  for (int degrees = -180; degrees < 180; degrees += 7) {
    MatrixRotate(degrees << 16, &a->mat);
    EXPECT_EQ(SetStr(kPropXScale, GetStr(kPropXScale).c_str()), "owned") << degrees;
    EXPECT_EQ(SetStr(kPropYScale, GetStr(kPropYScale).c_str()), "owned") << degrees;
  }
}

TEST_F(Properties, TheTargetPathIsATextOnly) {
  EXPECT_EQ(Get(kPropTarget), 0);
  EXPECT_EQ(GetStr(kPropTarget), "/a");
  EXPECT_EQ(Take(player.GetPropertyStr(b->thread, kPropTarget)), "/a/b");
  EXPECT_EQ(SetStr(kPropTarget, "/x"), "");
  EXPECT_EQ(Set(kPropTarget, 1), "");
  EXPECT_EQ(GetStr(kPropTarget), "/a");
}

TEST_F(Properties, FramesLoadedOfASpriteAreAllOfItsFrames) {
  player.numFramesComplete = 2;
  EXPECT_EQ(Get(kPropFramesLoaded), 8);
  EXPECT_EQ(Set(kPropFramesLoaded, 1), "");
}

TEST_F(Properties, FramesLoadedOfAMovieAreThoseThatHaveArrived) {
  EXPECT_EQ(player.GetProperty(&player, kPropFramesLoaded), 10);
  player.numFramesComplete = 2;
  EXPECT_EQ(player.GetProperty(&player, kPropFramesLoaded), 2);
  player.numFramesComplete = -1;
  EXPECT_EQ(player.GetProperty(&player, kPropFramesLoaded), -1);
}

TEST_F(Properties, FramesLoadedOfAMovieInASpriteAreItsOwn) {
  ScriptPlayer* movie = player.OpenSprite(a->thread);
  movie->numFrames = 10;
  movie->numFramesComplete = 3;
  EXPECT_EQ(player.GetProperty(movie, kPropFramesLoaded), 3);
}

TEST_F(Properties, ANameIsWrittenAsATextAndLeavesTheObjectToItsTimeline) {
  EXPECT_EQ(Get(kPropName), 0);
  EXPECT_EQ(GetStr(kPropName), "a");
  EXPECT_EQ(SetStr(kPropName, "new name"), "");
  EXPECT_EQ(GetStr(kPropName), "new name");
  EXPECT_EQ(player.FindTarget(player.rootObject, "new name"), a->thread);
  EXPECT_EQ(Set(kPropName, 5), "");
  EXPECT_EQ(GetStr(kPropName), "new name");
}

TEST_F(Properties, AnObjectWithoutANameHasTheEmptyText) {
  SetStr(kPropName, nullptr);
  EXPECT_EQ(a->name, nullptr);
  EXPECT_EQ(GetStr(kPropName), "");
}

TEST_F(Properties, ANameMayBeSetToItself) {
  player.SetPropertyStr(a->thread, kPropName, a->name);
  EXPECT_EQ(GetStr(kPropName), "a");
}

TEST_F(Properties, TheDropTargetIsReadOnly) {
  EXPECT_EQ(GetStr(kPropDropTarget), "");
  a->dropTarget = CreateStr("/a/b");
  EXPECT_EQ(GetStr(kPropDropTarget), "/a/b");
  EXPECT_EQ(Get(kPropDropTarget), 0);
  EXPECT_EQ(SetStr(kPropDropTarget, "5"), "");
  EXPECT_EQ(GetStr(kPropDropTarget), "/a/b");
}

TEST_F(Properties, TheAddressIsThatOfTheCharactersMovie) {
  EXPECT_EQ(GetStr(kPropUrl), "");
  player.url = CreateStr("http://host/m");
  EXPECT_EQ(GetStr(kPropUrl), "http://host/m");
  EXPECT_EQ(Get(kPropUrl), 0);
  EXPECT_EQ(SetStr(kPropUrl, "5"), "");
  EXPECT_EQ(GetStr(kPropUrl), "http://host/m");
  ScriptPlayer* layer = OpenNested(1);
  EXPECT_EQ(Take(player.GetPropertyStr(layer, kPropUrl)), "");
}

TEST_F(Properties, QualityIsThePlayers) {
  EXPECT_EQ(Get(kPropQuality), 1);
  player.bestQuality = true;
  EXPECT_EQ(Get(kPropQuality), 2);
  player.highQuality = false;
  EXPECT_EQ(Get(kPropQuality), 0);
}

TEST_F(Properties, QualityOneAndAHalfIsHighNotBest) {
  EXPECT_EQ(Set(kPropQuality, 1.5), "");
  EXPECT_TRUE(player.highQuality);
  EXPECT_FALSE(player.bestQuality);
  EXPECT_EQ(GetStr(kPropQuality), "1");
  Set(kPropQuality, 1.5000001);
  EXPECT_EQ(GetStr(kPropQuality), "2");
}

TEST_F(Properties, ANewQualityShowsSoonAndEndsTheGovernor) {
  player.autoQuality = true;
  player.TakeCalls();
  Set(kPropQuality, 0);
  EXPECT_FALSE(player.highQuality);
  EXPECT_FALSE(player.autoQuality);
  EXPECT_FALSE(player.display.antialias);
  EXPECT_EQ(player.TakeCalls(), "CheckUpdate ");
  Set(kPropQuality, -1);
  EXPECT_TRUE(player.display.antialias);
}

TEST_F(Properties, TheFocusRectangleIsRedrawnWhenItIsSwitched) {
  player.display.Update();
  ASSERT_EQ(player.display.dirtyCount, 0);
  EXPECT_EQ(Set(kPropFocusRect, 0), "");
  EXPECT_EQ(GetStr(kPropFocusRect), "0");
  EXPECT_EQ(player.display.dirtyCount, 0);
  player.display.tabFocusRect = {40, 80, 40, 80};
  Set(kPropFocusRect, 0.5);
  EXPECT_EQ(GetStr(kPropFocusRect), "1");
  EXPECT_EQ(player.display.dirtyCount, 1);
}

TEST_F(Properties, Number18IsAStoredNumber) {
  EXPECT_EQ(Get(kPropBufferTime), 5);
  EXPECT_EQ(Set(kPropBufferTime, -7.9), "");
  EXPECT_EQ(GetStr(kPropBufferTime), "-7");
  Set(kPropBufferTime, 1e10);
  EXPECT_EQ(player.bufferTime, kInt32Min);
}

TEST_F(Properties, ATextThatIsNoNumberWritesNothing) {
  EXPECT_EQ(SetStr(kPropX, "7 "), "");
  EXPECT_EQ(SetStr(kPropX, ""), "");
  EXPECT_EQ(SetStr(kPropX, "0x10"), "");
  EXPECT_EQ(SetStr(kPropX, nullptr), "");
  EXPECT_EQ(a->mat.tx, 0);
  EXPECT_EQ(SetStr(kPropX, "+7.5e0"), "modified owned");
  EXPECT_EQ(a->mat.tx, 150);
}

TEST_F(Properties, AfterAWriteTagsNoLongerMoveTheObject) {
  player.SetProperty(a->thread, kPropY, 3);
  player.DrawFrame(1, false);
  EXPECT_EQ(a->mat.tx, 0);
}

TEST_F(Properties, WithoutAWriteTagsMoveTheObject) {
  player.SetProperty(a->thread, kPropVisible, 0);
  player.SetPropertyStr(a->thread, kPropName, "x");
  player.DrawFrame(1, false);
  EXPECT_EQ(a->mat.tx, 200);
}

TEST_F(Properties, AWriteByAButtonBelongsToTheSpriteThatHoldsIt) {
  const SObject* button = a->next->next;
  ASSERT_EQ(button->character->type, charButton);
  EXPECT_EQ(button->thread, &player);
  player.SetProperty(button->thread, kPropX, 5);
  EXPECT_TRUE(player.rootObject->scriptControlled);
  EXPECT_FALSE(button->scriptControlled);
  EXPECT_EQ(player.rootObject->mat.tx, 100);
}

}  // namespace
}  // namespace vexel::test
