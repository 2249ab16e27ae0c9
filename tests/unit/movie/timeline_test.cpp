// Running timelines: tags, frames, seeks, labels.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

#include "author/writer.h"
#include "movie/observer.h"
#include "movie/tags.h"
#include "support/check_stage.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::Bytes;
using author::MovieWriter;
using author::TagStream;
using test::Children;
using test::TestPlayer;

author::ShapeBuilder Box() {
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
  return box;
}

// A player that has taken a movie in, but has not run a tag of it.
class Timeline : public ::testing::Test {
 protected:
  void Take(const Bytes& bytes) { Take(bytes, 0, bytes.size()); }
  void Take(const Bytes& bytes, size_t from, size_t to) {
    player.PushDataBuf(bytes.data() + from, static_cast<int32_t>(to - from));
  }
  ~Timeline() override { EXPECT_EQ(test::CheckStage(player.display), ""); }

  // First bytes of the queued blocks, which the tests number by frame.
  std::string Queued() {
    std::string out;
    DataSpan block;
    ScriptThread* thread;
    while (player.display.actionList.PopAction(&block, &thread)) {
      out += block.bytes ? static_cast<char>('0' + block.bytes[0]) : '-';
    }
    return out;
  }
  std::string Shown() const { return Children(*player.rootObject); }

  TestPlayer player;
};

// Frame n queues the block {n}, and places the box at depth n + 1.
Bytes Frames(int count) {
  MovieWriter movie(100, 100);
  movie.DefineShape(1, Box());
  for (int i = 0; i < count; ++i) {
    movie.Place(1, static_cast<uint16_t>(i + 1))
        .FrameActions(Bytes{static_cast<uint8_t>(i), 0})
        .FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

TEST_F(Timeline, FirstDrawFramePlacesTheRootAndRunsFrame0) {
  Take(Frames(2));
  EXPECT_EQ(player.rootObject, nullptr);
  EXPECT_EQ(player.DrawFrame(0, true), 0);
  ASSERT_NE(player.rootObject, nullptr);
  EXPECT_EQ(player.rootObject->character->type, charRoot);
  EXPECT_EQ(player.rootObject->character->id, 65534);
  EXPECT_EQ(player.rootObject->thread, &player);
  EXPECT_EQ(player.rootObject->parent, &player.display.root);
  EXPECT_EQ(player.curFrame, 0);
  EXPECT_EQ(Shown(), "1");
  EXPECT_EQ(Queued(), "0");
}

TEST_F(Timeline, DrawFrameWaitsForTheHeader) {
  const Bytes bytes = Frames(1);
  Take(bytes, 0, 12);
  EXPECT_EQ(player.DrawFrame(0, true), 1);
  EXPECT_EQ(player.rootObject, nullptr);
}

TEST_F(Timeline, DrawFrameWithoutAStageFails) {
  ScriptPlayer alone;
  const Bytes bytes = Frames(1);
  alone.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
  EXPECT_EQ(alone.DrawFrame(0, true), -2);
  alone.DoFrame(1);
  EXPECT_FALSE(alone.playing);
}

TEST_F(Timeline, StopsBehindTheFrameEndOfTheWantedFrame) {
  Take(Frames(4));
  EXPECT_EQ(player.DrawFrame(1, false), 0);
  EXPECT_EQ(player.curFrame, 1);
  EXPECT_EQ(Shown(), "1 2");
  EXPECT_EQ(Queued(), "01");
  EXPECT_EQ(player.DrawFrame(1, false), 0);
  EXPECT_EQ(player.DrawFrame(0, false), 0);
  EXPECT_EQ(Queued(), "");
}

TEST_F(Timeline, SeekToTheCurrentFrameOnlyStops) {
  Take(Frames(3));
  player.DrawFrame(1, true);
  Queued();
  EXPECT_EQ(player.Seek(1), 0);
  EXPECT_FALSE(player.playing);
  EXPECT_EQ(Queued(), "");
  EXPECT_EQ(player.curFrame, 1);
}

TEST_F(Timeline, SeekQueuesTheActionsOfItsTargetAlone) {
  Take(Frames(5));
  player.DrawFrame(0, true);
  Queued();
  EXPECT_EQ(player.Seek(3), 0);
  EXPECT_EQ(player.curFrame, 3);
  EXPECT_EQ(Queued(), "3");
  EXPECT_EQ(Shown(), "1 2 3 4");
  EXPECT_EQ(player.Seek(1), 0);
  EXPECT_EQ(player.curFrame, 1);
  EXPECT_EQ(Queued(), "1");
  EXPECT_EQ(Shown(), "1 2");
  EXPECT_FALSE(player.seeking);
}

TEST_F(Timeline, ActionsPassedWhileSeekingNeverRunAfterwards) {
  Take(Frames(4));
  player.Seek(2);
  EXPECT_EQ(Queued(), "2");
  player.DrawFrame(3, false);
  EXPECT_EQ(Queued(), "3");
}

TEST_F(Timeline, SeekBelow0GoesTo0) {
  Take(Frames(3));
  player.Seek(2);
  Queued();
  EXPECT_EQ(player.Seek(-7), 0);
  EXPECT_EQ(player.curFrame, 0);
  EXPECT_EQ(Queued(), "0");
}

TEST_F(Timeline, SeekBehindTheLastFrameStopsThere) {
  Take(Frames(3));
  EXPECT_EQ(player.Seek(100), 2);
  EXPECT_EQ(player.curFrame, 2);
  EXPECT_TRUE(player.atEnd);
  EXPECT_FALSE(player.seeking);
}

TEST_F(Timeline, SeekBehindTheDataStopsAtTheLastCompleteTag) {
  const Bytes bytes = Frames(4);
  Take(bytes, 0, bytes.size() - 4);
  EXPECT_EQ(player.Seek(9), 1);
  EXPECT_FALSE(player.seeking);
  EXPECT_EQ(player.curFrame, 2);
  Take(bytes, bytes.size() - 4, bytes.size());
  EXPECT_EQ(player.Seek(3), 0);
  EXPECT_EQ(player.curFrame, 3);
}

TEST_F(Timeline, LoopsBackThroughASeekTo0) {
  Take(Frames(3));
  std::string frames;
  std::string actions;
  for (int i = 0; i < 8; ++i) {
    player.DoFrame(1);
    frames += static_cast<char>('0' + player.curFrame);
    actions += Queued();
    EXPECT_TRUE(player.playing);
  }
  EXPECT_EQ(frames, "01201201");
  EXPECT_EQ(actions, "01201201");
}

TEST_F(Timeline, StopsAtItsEndWithoutLoopAndPlaysOverOnRewind) {
  Take(Frames(3));
  player.loop = false;
  for (int i = 0; i < 3; ++i) player.DoFrame(1);
  EXPECT_TRUE(player.playing);
  player.DoFrame(1);
  EXPECT_FALSE(player.playing);
  EXPECT_EQ(player.curFrame, 2);
  player.DoFrame(1);
  EXPECT_EQ(player.curFrame, 2);
  Queued();
  player.Play(true);
  EXPECT_TRUE(player.playing);
  EXPECT_EQ(player.curFrame, 0);
  EXPECT_EQ(Queued(), "0");
}

TEST_F(Timeline, PlayRewindsOnlyAtTheEndAndOnlyWithoutLoop) {
  Take(Frames(3));
  player.Seek(2);
  player.Play(true);  // it loops
  EXPECT_EQ(player.curFrame, 2);
  player.loop = false;
  player.Play(false);
  EXPECT_EQ(player.curFrame, 2);
  player.Seek(1);
  player.Play(true);
  EXPECT_EQ(player.curFrame, 1);
  EXPECT_TRUE(player.playing);
}

TEST_F(Timeline, OneFrameStopsRatherThanLoops) {
  Take(Frames(1));
  player.DoFrame(1);
  EXPECT_TRUE(player.playing);
  player.DoFrame(1);
  EXPECT_FALSE(player.playing);
  EXPECT_EQ(player.curFrame, 0);
  EXPECT_EQ(Queued(), "0");
}

TEST_F(Timeline, RootWaitsAtTheLastCompleteFrameAndGoesOnWithMoreData) {
  const Bytes bytes = Frames(6);
  // Up to and with the end of frame 3.
  const size_t frameBytes = 13;
  const size_t cut = bytes.size() - 2 - 2 * frameBytes;
  Take(bytes, 0, cut);
  ASSERT_EQ(player.numFramesComplete, 3);
  player.Seek(3);
  player.Play(false);
  player.DoFrame(1);
  EXPECT_EQ(player.curFrame, 3);
  EXPECT_TRUE(player.playing);
  Take(bytes, cut, bytes.size());
  player.DoFrame(1);
  EXPECT_EQ(player.curFrame, 4);
}

TEST_F(Timeline, CompleteMovieIsNotHeldBackAtFrame16000) {
  MovieWriter movie(100, 100);
  for (int i = 0; i < 16050; ++i) movie.FrameEnd();
  movie.End();
  Take(movie.Finish());
  EXPECT_EQ(player.numFramesComplete, 16000);
  player.Seek(16000);
  player.Play(false);
  player.DoFrame(1);
  player.DoFrame(1);
  EXPECT_EQ(player.curFrame, 16002);
}

TEST_F(Timeline, IncompleteTagIsTriedAgain) {
  const Bytes bytes = Frames(2);
  Take(bytes, 0, bytes.size() - 5);
  EXPECT_EQ(player.DrawFrame(1, false), 1);
  const int32_t at = player.pos;
  EXPECT_EQ(player.DoTag(), 1);
  EXPECT_EQ(player.pos, at);
  Take(bytes, bytes.size() - 5, bytes.size());
  EXPECT_EQ(player.DrawFrame(1, false), 0);
}

TEST_F(Timeline, EndTagEndsForGood) {
  Take(Frames(1));
  player.DrawFrame(0, true);
  EXPECT_EQ(player.DoTag(), 0);
  EXPECT_TRUE(player.atEnd);
  EXPECT_EQ(player.DoTag(), 2);
}

TEST_F(Timeline, UnknownTagsAreSkipped) {
  MovieWriter movie(100, 100);
  for (int code : {14, 19, 24, 25, 27, 29, 30, 31, 38, 40, 45, 47, 49, 300, 1023}) {
    movie.Tag(code, Bytes(7, 0xFF));
  }
  movie.FrameEnd().End();
  Take(movie.Finish());
  EXPECT_EQ(player.DrawFrame(0, true), 0);
  EXPECT_EQ(Shown(), "");
}

TEST_F(Timeline, TagBodiesEndWhereTheTagSaysWhateverTheHandlerRead) {
  MovieWriter movie(100, 100);
  movie.DefineShape(1, Box());
  movie.Tag(4, Bytes{1});      // far too short for a placement
  movie.Tag(5, Bytes(40, 0));  // far too long for a removal
  movie.Place(1, 9).FrameEnd().End();
  Take(movie.Finish());
  EXPECT_EQ(player.DrawFrame(0, true), 0);
  EXPECT_TRUE(Shown().ends_with("9"));
}

TEST_F(Timeline, BackgroundColorHasPriority1) {
  MovieWriter movie(100, 100);
  movie.BackgroundColor({10, 20, 30}).BackgroundColor({1, 1, 1}).FrameEnd().End();
  Take(movie.Finish());
  player.DrawFrame(0, true);
  EXPECT_EQ(player.display.backgroundPriority, 1);
  EXPECT_EQ(player.display.backgroundColor.red, 10);
  EXPECT_EQ(player.display.backgroundColor.alpha, 255);
}

TEST_F(Timeline, LabelsAreRememberedAndForgottenOnRewind) {
  MovieWriter movie(100, 100);
  movie.FrameEnd().FrameLabel("here").FrameEnd().End();
  Take(movie.Finish());
  player.Seek(1);
  EXPECT_STREQ(player.currentLabel, "here");
  player.Seek(0);
  EXPECT_EQ(player.currentLabel, nullptr);
}

TEST_F(Timeline, FindLabelIgnoresTheCaseOfLetters) {
  MovieWriter movie(100, 100);
  movie.FrameLabel("Start").FrameEnd().FrameEnd().FrameLabel("end-2").FrameEnd().End();
  Take(movie.Finish());
  player.DrawFrame(0, true);
  const int32_t at = player.pos;
  EXPECT_EQ(player.FindLabel("START"), 0);
  EXPECT_EQ(player.FindLabel("End-2"), 2);
  EXPECT_EQ(player.FindLabel("end"), -1);
  EXPECT_EQ(player.FindLabel(nullptr), -1);
  EXPECT_EQ(player.pos, at);
}

// A label tag of any body, which need not end in a NUL.
Bytes MovieThatEndsIn(const Bytes& label) {
  MovieWriter movie(100, 100);
  movie.FrameEnd().FrameEnd().Tag(kTagFrameLabel, label);
  return movie.Finish();
}

TEST_F(Timeline, FindLabelTakesTheEndOfTheDataForTheEndOfALabel) {
  Take(MovieThatEndsIn({'o', 'P', 'e', 'n'}));
  EXPECT_EQ(player.FindLabel("open"), 2);
  EXPECT_EQ(player.FindLabel("ope"), -1);
  EXPECT_EQ(player.FindLabel("opens"), -1);
}

TEST_F(Timeline, LabelsMayBeEmpty) {
  Take(MovieThatEndsIn({}));
  EXPECT_EQ(player.FindLabel(""), 2);
  EXPECT_EQ(player.FindLabel("a"), -1);
}

TEST_F(Timeline, LabelThatItsTagDoesNotCloseRunsIntoTheNextTagWhenSearchedFor) {
  MovieWriter movie(100, 100);
  // The next tag's header is the bytes 0x41 0x00: an "A" and the NUL.
  movie.FrameEnd().Tag(kTagFrameLabel, Bytes{'o', 'p'}).Tag(kTagFrameEnd, Bytes{1}).End();
  Take(movie.Finish());
  EXPECT_EQ(player.FindLabel("opA"), 1);
  player.Seek(1);
  EXPECT_STREQ(player.currentLabel, "");
}

TEST_F(Timeline, HalfAMillionLabelsWithoutANulAreRunAndSearchedInNoTime) {
  MovieWriter movie(100, 100);
  for (int i = 0; i < 500000; ++i) movie.Tag(kTagFrameLabel, Bytes());
  movie.FrameEnd();
  const Bytes bytes = movie.Finish();
  Take(bytes);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(player.Seek(0), kScriptOk);
  EXPECT_EQ(player.FindLabel("none"), -1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(Timeline, ForcedStepRebuildsTheFrameThatItStandsOn) {
  Take(Frames(4));
  player.Seek(2);
  EXPECT_EQ(Queued(), "2");
  SObject* kept = player.rootObject->firstChild;
  player.DoFrame(1);
  EXPECT_EQ(Queued(), "");
  player.DoFrame(1, true);
  EXPECT_EQ(player.curFrame, 2);
  EXPECT_EQ(Queued(), "2");
  EXPECT_EQ(player.rootObject->firstChild, kept);
  EXPECT_FALSE(player.playing);
}

TEST_F(Timeline, FindLabelKnowsOnlyWhatHasArrived) {
  MovieWriter movie(100, 100);
  movie.FrameEnd().FrameEnd().FrameEnd().FrameEnd().FrameLabel("late").FrameEnd().End();
  const Bytes bytes = movie.Finish();
  Take(bytes, 0, bytes.size() - 5);
  EXPECT_EQ(player.FindLabel("late"), -1);
  Take(bytes, bytes.size() - 5, bytes.size());
  EXPECT_EQ(player.FindLabel("late"), 4);
}

TEST_F(Timeline, BackwardSeekKeepsWhatComesOutUnchanged) {
  MovieWriter movie(100, 100);
  TagStream sprite;
  sprite.FrameEnd().FrameEnd().End();
  movie.DefineShape(1, Box()).DefineSprite(2, sprite);
  movie.Place(2, 1).FrameEnd();
  movie.Place(1, 2).FrameEnd();
  movie.End();
  Take(movie.Finish());
  player.DrawFrame(0, true);
  SObject* kept = player.rootObject->firstChild;
  kept->thread->SetVariable("x", "1");
  player.Seek(1);
  EXPECT_EQ(Children(*player.rootObject), "1:instance1 2");
  player.Seek(0);
  EXPECT_EQ(player.rootObject->firstChild, kept);
  EXPECT_NE(kept->thread->FindVariable("x"), nullptr);
  EXPECT_EQ(kept->next, nullptr);
}

TEST_F(Timeline, FreedCharactersComeBackOnABackwardSeekOnlyIfDefinedBefore) {
  // Freed in frame 1: gone for the placement of frame 2, also the second time.
  MovieWriter movie(100, 100);
  movie.DefineShape(1, Box()).Place(1, 1).FrameEnd();
  movie.FreeCharacter(1).FrameEnd();
  movie.Place(1, 2).FrameEnd();
  movie.End();
  Take(movie.Finish());
  player.Seek(2);
  EXPECT_EQ(player.display.FindObject(player.rootObject, 2)->character, player.lostCharacter);
  EXPECT_EQ(player.display.FindObject(player.rootObject, 1)->character->id, 1);
  player.Seek(0);
  EXPECT_EQ(Shown(), "1");
}

TEST_F(Timeline, ActionBlocksOutliveTheirMovie) {
  Take(Frames(1));
  player.DrawFrame(0, true);
  const int64_t length = 2;
  DataSpan block;
  ScriptThread* thread;
  ASSERT_TRUE(player.display.actionList.PopAction(&block, &thread));
  EXPECT_EQ(thread, &player);
  EXPECT_EQ(block.length, length);
  player.ClearScript();
  EXPECT_EQ(block.bytes[1], 0);
}

TEST_F(Timeline, TagsOfOneHostCallAreLimited) {
  Take(Frames(3));
  player.display.tagsLeft = 4;
  EXPECT_EQ(player.DrawFrame(2, false), kScriptWaiting);
  EXPECT_EQ(player.curFrame, 0);
  player.display.ResetTagBudget();
  EXPECT_EQ(player.DrawFrame(2, false), 0);
}

TEST_F(Timeline, SpriteThatPlacesItselfEndsAtTheNestingLimit) {
  MovieWriter movie(100, 100);
  TagStream sprite;
  sprite.Place(2, 1).Place(2, 2).FrameEnd().End();
  movie.DefineSprite(2, sprite).Place(2, 1).FrameEnd();
  movie.End();
  Take(movie.Finish());
  EXPECT_EQ(player.DrawFrame(0, true), 0);
  EXPECT_LE(player.display.objectCount, kMaxObjects);
}

TEST_F(Timeline, SpritesRunOnTheirOwnAndAreNotHeldBack) {
  MovieWriter movie(100, 100);
  TagStream sprite;
  sprite.FrameEnd().FrameEnd().FrameEnd().End();
  movie.DefineSprite(2, sprite).Place(2, 1).FrameEnd();
  movie.header().declaredLength = 10000;
  Take(movie.Finish());
  player.DrawFrame(0, true);
  ScriptThread* thread = player.rootObject->firstChild->thread;
  EXPECT_EQ(thread->curFrame, 0);
  EXPECT_EQ(thread->numFrames, 3);
  EXPECT_EQ(player.numFramesComplete, 0);
  thread->DoFrame(1);
  thread->DoFrame(1);
  EXPECT_EQ(thread->curFrame, 2);
  thread->DoFrame(1);
  EXPECT_EQ(thread->curFrame, 0);
}

TEST_F(Timeline, ClearStatePlaysAndLoops) {
  player.playing = false;
  player.loop = false;
  player.scriptErr = -1;
  player.ScriptThread::ClearState();
  EXPECT_TRUE(player.playing);
  EXPECT_TRUE(player.loop);
  EXPECT_EQ(player.scriptErr, 0);
  EXPECT_EQ(player.curFrame, -1);
  EXPECT_EQ(player.script, nullptr);
}

// Writes down what it is told: "code@header+length" of a tag, and a frame's
// number, in parentheses if it is passed on the way to another one.
class Notes : public PlayObserver {
 public:
  void OnTag(const ScriptThread& thread) override {
    text += std::to_string(thread.tagCode) + '@' + std::to_string(thread.tagPos - thread.startPos);
    text += '+' + std::to_string(thread.tagEnd - thread.pos) + ' ';
  }
  void OnFrame(const ScriptThread& thread) override {
    const std::string number = std::to_string(thread.curFrame);
    text += thread.seeking ? '(' + number + ") " : number + ' ';
  }
  std::string Take() { return std::exchange(text, std::string()); }

  std::string text;
};

TEST_F(Timeline, AnObserverIsToldOfEveryTagBeforeAndOfEveryFrameAfterItRuns) {
  Notes notes;
  MovieWriter movie(100, 100);
  movie.FrameLabel("abc").FrameEnd().FrameEnd().FrameEnd().End();
  Take(movie.Finish());
  player.display.observer = &notes;
  player.DrawFrame(0, false);
  EXPECT_EQ(notes.Take(), "43@0+4 1@6+0 0 ");
  player.Seek(2);
  EXPECT_EQ(notes.Take(), "1@8+0 (1) 1@10+0 2 ");
  player.Seek(1);
  EXPECT_EQ(notes.Take(), "43@0+4 1@6+0 (0) 1@8+0 1 ");
  player.Seek(1);
  player.FindLabel("none");
  EXPECT_EQ(notes.Take(), "");
}

TEST_F(Timeline, AnObserverIsToldOfSpritesToo) {
  Notes notes;
  TagStream sprite;
  sprite.FrameEnd().FrameEnd().End();
  MovieWriter movie(100, 100);
  movie.DefineSprite(2, sprite).Place(2, 1).FrameEnd().End();
  Take(movie.Finish());
  player.display.observer = &notes;
  player.DrawFrame(0, false);
  EXPECT_EQ(notes.Take(), "39@0+10 26@12+6 1@0+0 0 1@20+0 0 ");
  player.display.observer = nullptr;
  player.DrawFrame(0, true);
  EXPECT_EQ(notes.Take(), "");
}

}  // namespace
}  // namespace vexel
