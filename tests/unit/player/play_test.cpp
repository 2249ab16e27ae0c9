#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

using author::MovieWriter;

// A movie of `frames` empty frames that loops.
author::Bytes EmptyMovie(int frames, double rate = 12) {
  MovieWriter movie(100, 100, rate);
  for (int i = 0; i < frames; ++i) movie.FrameEnd();
  movie.End();
  return movie.Finish();
}

// A player that has shown the first frame of a movie.
class Playing : public ::testing::Test {
 protected:
  void Load(const author::Bytes& movie) {
    player.Push(movie);
    player.TakeCalls();
  }
  TestPlayer player;
};

TEST_F(Playing, ThePlayerStartsOnceTheFirstFrameIsThere) {
  player.Push(EmptyMovie(3));
  EXPECT_TRUE(player.loaded);
  EXPECT_TRUE(player.running);
  EXPECT_EQ(player.TakeCalls(), "StartTimer CheckUpdate ");
  EXPECT_EQ(player.CurrentFrame(), 0);
  EXPECT_EQ(player.nextFrameTime, 1000u);
}

TEST_F(Playing, TheFirstCallAtTime0RunsOneFrame) {
  Load(EmptyMovie(100));
  player.DoPlay(0);
  EXPECT_EQ(player.CurrentFrame(), 1);
  EXPECT_EQ(player.nextFrameTime, 1000u + 83);
}

TEST_F(Playing, AtRate12OneSecondLaterRuns12FramesInOneGo) {
  Load(EmptyMovie(100));
  player.DoPlay(0);
  player.DoPlay(1000);
  EXPECT_EQ(player.CurrentFrame(), 13);
  player.DoPlay(1083);
  EXPECT_EQ(player.CurrentFrame(), 13) << "11.99 truncates";
  player.DoPlay(1084);
  EXPECT_EQ(player.CurrentFrame(), 14);
}

TEST_F(Playing, ARateOfHalfAFrameNeverRunsAFrameAfterTheFirstCall) {
  Load(EmptyMovie(100, 0.5));
  EXPECT_EQ(player.frameRate, 0x8000);
  player.DoPlay(0);
  EXPECT_EQ(player.CurrentFrame(), 1);
  player.DoPlay(1000000);
  EXPECT_EQ(player.CurrentFrame(), 1);
}

TEST_F(Playing, ARateOf0RunsTheFirstCallsFrameAndNoOther) {
  Load(EmptyMovie(100, 0));
  EXPECT_EQ(player.frameDelay, 1000);
  player.DoPlay(5000);
  EXPECT_EQ(player.CurrentFrame(), 1);
  player.DoPlay(1000000);
  EXPECT_EQ(player.CurrentFrame(), 1);
}

TEST_F(Playing, AFractionalRateCountsAsItsWholePart) {
  Load(EmptyMovie(100, 12.9));
  player.DoPlay(0);
  player.DoPlay(1000);
  EXPECT_EQ(player.CurrentFrame(), 13);
}

TEST_F(Playing, AClockThatGoesBackRewindsNothing) {
  Load(EmptyMovie(100));
  player.DoPlay(1000);
  EXPECT_EQ(player.CurrentFrame(), 13);
  player.DoPlay(500);
  EXPECT_EQ(player.CurrentFrame(), 13);
  player.DoPlay(1000);
  EXPECT_EQ(player.CurrentFrame(), 19) << "counted from the last position";
}

TEST_F(Playing, APositionThatWrapsIsASignedDifference) {
  Load(EmptyMovie(100));
  player.firstPlay = false;
  player.lastPlayFrames = 0xFFFFFFFFu;
  player.DoPlay(0);
  EXPECT_EQ(player.CurrentFrame(), 1);
}

TEST_F(Playing, ASeekOfTheHostRunsOneFrameFromThere) {
  Load(EmptyMovie(100));
  player.DoPlay(0);
  player.seekPending = true;
  player.seekFrame = 40;
  player.DoPlay(5000);
  EXPECT_FALSE(player.seekPending);
  EXPECT_EQ(player.CurrentFrame(), 41);
  EXPECT_TRUE(player.IsPlaying());
  EXPECT_EQ(player.lastPlayFrames, 60u);
  EXPECT_EQ(player.lastPlayTime, 5000u);
}

TEST_F(Playing, ASeekOfTheHostHasTheWholeTagBudget) {
  Load(EmptyMovie(100));
  player.DoPlay(0);
  player.display.tagsLeft = 0;
  player.seekPending = true;
  player.seekFrame = 40;
  player.DoPlay(5000);
  EXPECT_EQ(player.CurrentFrame(), 41);
}

TEST_F(Playing, NothingPlaysBeforeTheFirstFrameOrWhileActionsRun) {
  player.DoPlay(1000);
  EXPECT_TRUE(player.firstPlay);
  Load(EmptyMovie(100));
  player.actionDepth = 1;
  player.DoPlay(1000);
  EXPECT_TRUE(player.firstPlay);
  EXPECT_EQ(player.CurrentFrame(), 0);
  player.actionDepth = 0;
}

TEST_F(Playing, ACatchUpOfAnyLengthEndsOnceNothingMoves) {
  Load(EmptyMovie(1));
  player.firstPlay = false;
  player.lastPlayFrames = 0x80000001u;
  player.DoPlay(0);
  EXPECT_FALSE(player.IsPlaying()) << "a timeline of one frame stops";
  EXPECT_EQ(player.CurrentFrame(), 0);
}

TEST_F(Playing, ACatchUpOfAnyLengthEndsWithTheTagBudget) {
  // Tags that do nothing, to spend the budget quickly.
  constexpr int kUnknownCode = 45;
  MovieWriter movie(100, 100);
  for (int i = 0; i < 100000; ++i) movie.Tag(kUnknownCode, {});
  movie.FrameEnd().FrameEnd().End();
  Load(movie.Finish());
  player.firstPlay = false;
  player.lastPlayFrames = 0x80000001u;
  player.DoPlay(0);
  EXPECT_EQ(player.display.tagsLeft, 0);
  player.DoPlay(0);
  EXPECT_TRUE(player.IsPlaying());
}

TEST_F(Playing, ARoundWaitsForDataWithoutStopping) {
  const author::Bytes movie = EmptyMovie(10);
  player.PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()) - 8);
  player.PushDataComplete();
  player.DoPlay(1000);
  EXPECT_TRUE(player.IsPlaying());
  const int32_t reached = player.CurrentFrame();
  EXPECT_LT(reached, 9);
  player.PushDataBuf(movie.data() + movie.size() - 8, 8);
  player.PushDataComplete();
  player.DoPlay(1083 + 84);
  EXPECT_GT(player.CurrentFrame(), reached);
}

TEST_F(Playing, TimelinesBornInARoundWaitForTheNextOne) {
  author::TagStream wheel;
  wheel.FrameEnd().FrameEnd().FrameEnd();
  MovieWriter movie(100, 100);
  movie.DefineSprite(1, wheel).FrameEnd();
  movie.Place(1, 1).FrameEnd().FrameEnd().End();
  Load(movie.Finish());
  player.StepThreads();
  const SObject* sprite = player.rootObject->firstChild;
  ASSERT_NE(sprite, nullptr);
  EXPECT_EQ(sprite->thread->curFrame, 0);
  player.StepThreads();
  EXPECT_EQ(sprite->thread->curFrame, 1);
}

// The sprite stands behind the root in the list only after the root was
// listed; here the root's step removes what the round would step next.
TEST_F(Playing, AStepMayDeleteTheNextTimelineOfTheRound) {
  author::TagStream wheel;
  wheel.FrameEnd().FrameEnd().FrameEnd();
  author::TagStream killer;
  killer.Place(1, 1).FrameEnd().RemoveObject(1).FrameEnd();
  MovieWriter movie(100, 100);
  movie.DefineSprite(1, wheel).DefineSprite(2, killer).Place(2, 1).FrameEnd().FrameEnd().End();
  Load(movie.Finish());
  SObject* outer = player.rootObject->firstChild;
  ASSERT_NE(outer->firstChild, nullptr);
  // The inner sprite joined last, so it is first; put the outer one before it.
  player.display.RemoveThread(outer->thread);
  player.display.AddThread(outer->thread);
  ASSERT_EQ(outer->thread->next, outer->firstChild->thread);
  player.StepThreads();
  EXPECT_EQ(outer->firstChild, nullptr);
  EXPECT_EQ(player.CurrentFrame(), 1) << "the round went on behind the deleted one";
  EXPECT_EQ(CheckStage(player.display), "");
}

TEST_F(Playing, QueuedBlocksLeaveTheQueueOnlyWhenActionsMayRun) {
  author::ActionBuilder block;
  block.GotoFrame(1);
  MovieWriter movie(100, 100);
  movie.FrameEnd().FrameActions(block).FrameEnd().FrameEnd().End();
  Load(movie.Finish());
  player.Seek(1);
  EXPECT_FALSE(player.display.actionList.IsEmpty());
  player.actionDepth = 1;
  player.DoActions();
  EXPECT_FALSE(player.display.actionList.IsEmpty());
  player.actionDepth = 0;
  player.loaded = false;
  player.DoActions();
  EXPECT_FALSE(player.display.actionList.IsEmpty());
  player.loaded = true;
  player.DoActions();
  EXPECT_TRUE(player.display.actionList.IsEmpty());
  EXPECT_EQ(player.actionDepth, 0);
}

TEST_F(Playing, GoingToAFrameStopsThereAndAsksForTheScreen) {
  Load(EmptyMovie(10));
  player.GotoFrame(4);
  EXPECT_EQ(player.CurrentFrame(), 4);
  EXPECT_FALSE(player.IsPlaying());
  EXPECT_EQ(player.TakeCalls(), "CheckUpdate ");
  player.Forward();
  EXPECT_EQ(player.CurrentFrame(), 5);
  player.Back();
  player.Back();
  EXPECT_EQ(player.CurrentFrame(), 3);
  player.Rewind();
  EXPECT_EQ(player.CurrentFrame(), 0);
  player.Back();
  EXPECT_EQ(player.CurrentFrame(), 0);
  player.TakeCalls();
  player.actionDepth = 1;
  player.GotoFrame(2);
  EXPECT_EQ(player.CurrentFrame(), 2);
  EXPECT_EQ(player.TakeCalls(), "") << "the run in progress does the rest";
  player.actionDepth = 0;
}

TEST_F(Playing, RunningStartsTheTimerOnceAndSuspendingStopsIt) {
  player.timerStarts = false;
  player.Run();
  EXPECT_FALSE(player.running);
  player.timerStarts = true;
  TestPlayer::tick = 5000;
  player.Run();
  player.Run();
  EXPECT_EQ(player.nextFrameTime, 5000u);
  player.Suspend();
  player.Suspend();
  EXPECT_EQ(player.TakeCalls(), "StartTimer StartTimer StopTimer ");
}

TEST_F(Playing, WhatHasArrivedIsCountedInPercentAndFrames) {
  EXPECT_EQ(player.PercentLoaded(), 0);
  EXPECT_FALSE(player.FrameLoaded(0));
  const author::Bytes movie = EmptyMovie(100);
  player.PushDataBuf(movie.data(), static_cast<int32_t>(movie.size() / 2));
  EXPECT_EQ(player.PercentLoaded(), static_cast<int>(movie.size() / 2 * 100 / movie.size()));
  EXPECT_TRUE(player.FrameLoaded(10));
  EXPECT_FALSE(player.FrameLoaded(99));
  EXPECT_EQ(player.TotalFrames(), 100);
}

// --- The governor ---

class Governed : public Playing {
 protected:
  Governed() {
    Load(EmptyMovie(2));
    player.autoQuality = true;
    player.DoPlay(0);
    player.behindCount = player.aheadCount = player.qualitySamples = 0;
    player.TakeCalls();
  }
  // One step that takes `ms` of the clock; the delay of a frame is 83.
  void Step(uint32_t ms) {
    time += 84;
    TestPlayer::tickStep = ms;
    player.DoPlay(time);
    TestPlayer::tickStep = 0;
  }
  uint32_t time = 0;
};

TEST_F(Governed, FiveLateFramesTurnQualityOffOnTheFifth) {
  for (int i = 0; i < 4; ++i) Step(84);
  EXPECT_TRUE(player.highQuality);
  Step(84);
  EXPECT_FALSE(player.highQuality);
  EXPECT_EQ(player.TakeCalls(), "CheckUpdate ");
  EXPECT_FALSE(player.display.antialias);
}

TEST_F(Governed, ExactlyTheDelayCountsNeitherWay) {
  ASSERT_EQ(player.frameDelay, 83);
  for (int i = 0; i < 20; ++i) Step(83);
  for (int i = 0; i < 5; ++i) Step(20);  // a quarter, truncated
  EXPECT_EQ(player.behindCount, 0);
  EXPECT_EQ(player.aheadCount, 0);
  EXPECT_EQ(player.qualitySamples, 25);
  Step(19);
  EXPECT_EQ(player.aheadCount, 1);
}

TEST_F(Governed, AChangeEachWayCostsAtLeast11Frames) {
  for (int i = 0; i < 5; ++i) Step(84);
  ASSERT_FALSE(player.highQuality);
  int frames = 0;
  while (!player.highQuality && frames < 100) {
    Step(0);
    ++frames;
  }
  EXPECT_EQ(frames, 11);
  frames = 0;
  while (player.highQuality && frames < 100) {
    Step(84);
    ++frames;
  }
  EXPECT_GE(frames, 11);
}

TEST_F(Governed, TheCountsAreNeverReset) {
  for (int i = 0; i < 30; ++i) Step(50);
  for (int i = 0; i < 10; ++i) Step(84);
  EXPECT_TRUE(player.highQuality) << "10 of 40 is below a third of the whole run";
  for (int i = 0; i < 6; ++i) Step(84);
  EXPECT_FALSE(player.highQuality) << "16 of 46 is above it";
}

TEST_F(Governed, ItSleepsUnlessAutomaticQualityIsOn) {
  player.autoQuality = false;
  for (int i = 0; i < 20; ++i) Step(500);
  EXPECT_TRUE(player.highQuality);
  EXPECT_EQ(player.qualitySamples, 0);
}

}  // namespace
}  // namespace vexel::test
