// Runs whole lives of a player, each time with another allocation failing, and
// holds the stage to its invariants after every step. Pools are cut down to
// blocks of a few items, so that every kind of allocation comes up often.
#include <gtest/gtest.h>

#include <cstring>

#include "author/writer.h"
#include "stress/fail_alloc.h"
#include "support/check_stage.h"
#include "support/random_movie.h"
#include "support/test_player.h"
#include "text/edit_text.h"

namespace vexel::test {
namespace {

using author::Bytes;
using author::MovieWriter;
using author::TagStream;

constexpr int32_t kItemsPerBlock = 2;

// A life asks for at least as many blocks.
constexpr int64_t kFewestAllocations = 40;

void ShrinkPools(SPlayer* player) {
  DisplayList& stage = player->display;
  for (ChunkAlloc* pool : {&stage.edgeAlloc, &stage.objectAlloc, &stage.colorAlloc,
                           &stage.raster.activeEdgeAlloc, &stage.raster.runAlloc,
                           &stage.raster.rampAlloc, &stage.raster.mapAlloc, &player->charAlloc}) {
    pool->itemsPerBlock = kItemsPerBlock;
  }
}

// Sprites in sprites, a mask, a gradient, a bitmap, a loop and queued actions.
Bytes NestedMovie() {
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0, 128}))
      .Rectangle(author::Rect::Pixels(0, 0, 40, 40));
  author::ActionBuilder stop;
  stop.GotoFrame(1);
  TagStream inner;
  inner.Place(1, 1).FrameEnd().Move(1, author::Matrix::Translate(100, 0)).FrameEnd();
  TagStream outer;
  author::Placement mask;
  mask.depth = 1;
  mask.character = 1;
  mask.clipDepth = 5;
  outer.Place(mask).Place(2, 2).FrameActions(stop).FrameEnd().RemoveObject(2).FrameEnd();
  MovieWriter movie(60, 40);
  movie.BackgroundColor({10, 20, 30}).DefineShape(1, box);
  movie.DefineLossless(4, author::Picture(8, 8, {0, 200, 0, 100}), true);
  movie.DefineSprite(2, inner).DefineSprite(3, outer);
  movie.Place(3, 1).Place(1, 2).FrameEnd().FreeCharacter(1).RemoveObject(2).FrameEnd();
  movie.Place(3, 7).FrameActions(stop).FrameEnd().End();
  return movie.Finish();
}

// A field in the movie's font and one in a built-in one.
Bytes FieldMovie() {
  author::EditTextField field;
  field.flags = author::kEditBorder | author::kEditMultiline | author::kEditWordWrap;
  field.font = 1;
  field.height = 120;
  field.variable = "words";
  field.initialText = "ab cd\re";
  MovieWriter movie(60, 40);
  movie.DefineFont2(1, author::BlockFont("Blocks"));
  movie.DefineEditText(2, author::Rect::Pixels(0, 0, 30, 40), field).Place(2, 1);
  field.flags |= author::kEditOutlines;
  movie.DefineEditText(3, author::Rect::Pixels(0, 0, 30, 40), field);
  movie.Place(3, 2, author::Matrix::Translate(600, 0)).FrameEnd();
  movie.Move(2, author::Matrix::Translate(500, 40)).FrameEnd().End();
  return movie.Finish();
}

void Check(const SPlayer& player, const char* where) {
  AllocationPause pause;
  ASSERT_EQ(CheckStage(player.display), "") << where;
}

SObject* FirstSprite(SObject* parent) {
  for (SObject* o = parent->firstChild; o; o = o->next) {
    if (o->thread && o->thread->rootObject == o && !o->thread->IsRoot()) return o;
  }
  return nullptr;
}

void Live(const Bytes& movie) {
  TestPlayer player(60, 40);
  ShrinkPools(&player);
  const auto size = static_cast<int32_t>(movie.size());
  player.PushDataBuf(movie.data(), size / 2);
  player.PushDataComplete();
  Check(player, "half of it");
  player.PushDataBuf(movie.data() + size / 2, size - size / 2);
  player.PushDataComplete();
  Check(player, "all of it");
  player.display.Update();
  Check(player, "drawn");
  for (int i = 0; i < 4; ++i) {
    player.StepThreads();
    player.display.Update();
    Check(player, "stepped");
  }
  player.GotoFrame(0);
  player.display.Update();
  Check(player, "back at the start");
  player.display.FreeCache();
  player.FreeCache();
  Check(player, "cache freed");
  player.highQuality = false;
  player.SetCamera(kCameraOnly);
  player.display.Update();
  Check(player, "drawn in low quality");
  if (ScriptPlayer* layer = player.OpenLayer(2, false)) {
    layer->PushDataBuf(movie.data(), size);
    layer->DrawFrame(1, true);
    Check(player, "a second layer");
  }
  if (SObject* sprite = player.rootObject ? FirstSprite(player.rootObject) : nullptr) {
    CloneSprite(sprite->thread, "copy", 20000);
    Check(player, "a cloned sprite");
    if (ScriptPlayer* loaded = player.OpenSprite(sprite->thread)) {
      loaded->PushDataBuf(movie.data(), size);
      loaded->DrawFrame(1, true);
      Check(player, "a loaded sprite");
      player.CloneSprite(loaded, "twin", 20001);
      Check(player, "a cloned movie");
      RemoveSprite(loaded, true);
    }
  }
  Check(player, "sprites changed");
  player.StepThreads();
  player.display.Update();
  player.ClearLayer(2);
  Check(player, "layer closed");
}

// Failing every allocation one by one is quadratic; further on it goes in
// growing steps.
void LiveWithout(const Bytes& movie, FailMode mode) {
  int64_t n = 1;
  for (;; n += 1 + n / 50) {
    ArmAllocations(mode, n);
    Live(movie);
    if (!DisarmAllocations() || testing::Test::HasFatalFailure()) break;
  }
  EXPECT_GT(n, kFewestAllocations) << "they no longer come by here";
}

TEST(OutOfMemory, AnySingleAllocationOfANestedMovieMayFail) {
  LiveWithout(NestedMovie(), FailMode::kOnce);
}

TEST(OutOfMemory, MemoryMayEndAnywhereInANestedMovie) {
  LiveWithout(NestedMovie(), FailMode::kForever);
}

TEST(OutOfMemory, AnySingleAllocationOfTextFieldsMayFail) {
  LiveWithout(FieldMovie(), FailMode::kOnce);
}

TEST(OutOfMemory, MemoryMayEndAnywhereInTextFields) {
  LiveWithout(FieldMovie(), FailMode::kForever);
}

// What ran out of memory is laid out whole when it is drawn again.
TEST(OutOfMemory, AFieldThatCouldNotBeDrawnIsDrawnLater) {
  for (int64_t n = 1;; ++n) {
    TestPlayer player(60, 40);
    player.fontState = FontState::kLoaded;
    player.Push(FieldMovie());
    const EditText* text = player.rootObject->firstChild->next->editText;
    ArmAllocations(FailMode::kOnce, n);
    player.display.Update();
    if (!DisarmAllocations()) break;
    player.rootObject->firstChild->next->Modify();
    player.display.Update();
    ASSERT_TRUE(text->drawn) << n;
    ASSERT_EQ(text->lineCount, 2) << n;
    ASSERT_EQ(text->charWidths.Count(), text->length + 1) << n;
  }
}

class OutOfMemoryInRandomMovies : public testing::TestWithParam<uint32_t> {};

TEST_P(OutOfMemoryInRandomMovies, AnySingleAllocationMayFail) {
  LiveWithout(author::RandomMovie(GetParam()), FailMode::kOnce);
}

TEST_P(OutOfMemoryInRandomMovies, MemoryMayEndAnywhere) {
  LiveWithout(author::RandomMovie(GetParam()), FailMode::kForever);
}

INSTANTIATE_TEST_SUITE_P(Seeds, OutOfMemoryInRandomMovies, testing::Range(1u, 7u));

// A failure leaves nothing behind that a later redraw could not make good.
TEST(OutOfMemory, ThePictureIsWholeOnceThereIsMemoryAgain) {
  const Bytes movie = NestedMovie();
  TestPlayer whole(60, 40);
  whole.Push(movie);
  whole.display.Update();
  for (int64_t n = 1; n < 200; n += 3) {
    TestPlayer player(60, 40);
    ShrinkPools(&player);
    player.Push(movie);
    ArmAllocations(FailMode::kForever, n);
    player.display.Update();
    DisarmAllocations();
    player.display.FreeCache();
    player.display.InvalidateRect(&player.display.devViewRect);
    player.display.Update();
    ASSERT_EQ(memcmp(player.bits.baseAddr, whole.bits.baseAddr,
                     static_cast<size_t>(whole.bits.rowBytes) * 40),
              0)
        << n;
  }
}

}  // namespace
}  // namespace vexel::test
