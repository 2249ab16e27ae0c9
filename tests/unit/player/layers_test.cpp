#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

using author::MovieWriter;
using author::TagStream;

author::Bytes SmallMovie() {
  TagStream wheel;
  wheel.FrameEnd().FrameEnd();
  MovieWriter movie(100, 100);
  author::Placement named;
  named.depth = 4;
  named.character = 1;
  named.name = "wheel";
  movie.DefineSprite(1, wheel).Place(named).FrameEnd().FrameEnd().End();
  return movie.Finish();
}

TEST(LayerNumTest, ReadsTheDigitsBehindALayersName) {
  EXPECT_EQ(LayerNum(nullptr), -1);
  EXPECT_EQ(LayerNum("_level"), 0);
  EXPECT_EQ(LayerNum("_LEVEL3x"), 3);
  EXPECT_EQ(LayerNum("_vexel12/a"), 12);
  EXPECT_EQ(LayerNum("level2"), -1);
  EXPECT_EQ(LayerNum(""), -1);
  EXPECT_EQ(LayerNum("_leve"), -1);
  EXPECT_EQ(LayerNum("_level-1"), 0);
  EXPECT_EQ(LayerNum("_level99999999999999999999"), 0x7FFFFFFF);
}

class Layers : public ::testing::Test {
 protected:
  ~Layers() override { EXPECT_EQ(CheckStage(player.display), ""); }
  ScriptPlayer* Open(int32_t layer) {
    ScriptPlayer* opened = player.OpenLayer(layer, false);
    const author::Bytes movie = SmallMovie();
    opened->PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()));
    return opened;
  }
  TestPlayer player;
};

TEST_F(Layers, OpeningALayerTwiceKeepsOneAndClearsItsMovieTheSecondTime) {
  ScriptPlayer* layer = Open(3);
  layer->DrawFrame(0, true);
  EXPECT_EQ(layer->layerDepth, 3);
  EXPECT_EQ(layer->splayer, &player);
  EXPECT_TRUE(layer->gotHeader);
  EXPECT_EQ(player.display.objectCount, 2);
  EXPECT_EQ(player.OpenLayer(3, false), layer);
  EXPECT_FALSE(layer->gotHeader);
  EXPECT_EQ(layer->script, nullptr);
  EXPECT_EQ(player.display.objectCount, 0);
  EXPECT_EQ(player.nextLayer, layer);
  EXPECT_EQ(layer->nextLayer, nullptr);
}

TEST_F(Layers, KeepingTheExistingMovieKeepsIt) {
  ScriptPlayer* layer = Open(3);
  EXPECT_EQ(player.OpenLayer(3, true), layer);
  EXPECT_TRUE(layer->gotHeader);
  player.Push(SmallMovie());
  EXPECT_EQ(player.OpenLayer(0, true), &player);
  EXPECT_TRUE(player.loaded);
}

TEST_F(Layers, ANewLayerStandsDirectlyBehindThePlayer) {
  ScriptPlayer* a = Open(2);
  ScriptPlayer* b = Open(7);
  EXPECT_EQ(player.nextLayer, b);
  EXPECT_EQ(b->nextLayer, a);
  EXPECT_EQ(player.display.threads, b);
  EXPECT_EQ(FindLayer(&player, 0), &player);
  EXPECT_EQ(FindLayer(&player, 2), a);
  EXPECT_EQ(FindLayer(&player, 5), nullptr);
}

TEST_F(Layers, NumbersBeyond16BitsOpenNothing) {
  EXPECT_EQ(player.OpenLayer(65536, false), nullptr);
  EXPECT_EQ(player.OpenLayer(0x7FFFFFFF, false), nullptr);
  EXPECT_EQ(player.OpenLayer(-1, false), nullptr);
  EXPECT_EQ(player.OpenLayer(65535, false)->layerDepth, 65535);
}

TEST_F(Layers, OpeningLayer0AgainDropsAllLayersAndMovies) {
  player.Push(SmallMovie());
  Open(3)->DrawFrame(0, true);
  player.zoomRect = {0, 100, 0, 100};
  player.TakeCalls();
  EXPECT_EQ(player.OpenLayer(0, false), &player);
  EXPECT_EQ(player.nextLayer, nullptr);
  EXPECT_EQ(player.script, nullptr);
  EXPECT_FALSE(player.loaded);
  EXPECT_FALSE(player.running);
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
  EXPECT_EQ(player.display.objectCount, 0);
  EXPECT_EQ(player.TakeCalls(), "StopTimer CheckUpdate ");
  player.Push(SmallMovie());
  EXPECT_TRUE(player.loaded) << "and takes another movie";
}

TEST_F(Layers, ClearingALayerTakesItOffTheStage) {
  ScriptPlayer* a = Open(2);
  Open(7)->DrawFrame(0, true);
  EXPECT_EQ(player.display.objectCount, 2);
  player.ClearLayer(7);
  EXPECT_EQ(player.display.objectCount, 0);
  EXPECT_EQ(player.nextLayer, a);
  EXPECT_EQ(player.display.threads, a);
  player.ClearLayer(9);
  EXPECT_EQ(player.nextLayer, a) << "a missing layer is ignored";
  player.ClearLayer(0);
  EXPECT_EQ(player.nextLayer, nullptr);
}

TEST_F(Layers, EachLayersRootObjectStandsAtItsNumber) {
  player.Push(SmallMovie());
  Open(7)->DrawFrame(0, true);
  Open(2)->DrawFrame(0, true);
  EXPECT_EQ(Children(player.display.root), "0 2 7");
}

// --- A movie in the place of a sprite ---

TEST_F(Layers, AMovieTakesASpritesPlaceAndNameAndPlaysThere) {
  player.Push(SmallMovie());
  SObject* sprite = player.rootObject->firstChild;
  sprite->mat.tx = 77;
  sprite->scriptControlled = true;
  WeakSlot<ScriptThread> old(sprite->thread);
  ScriptPlayer* movie = player.OpenSprite(sprite->thread);
  ASSERT_NE(movie, nullptr);
  EXPECT_FALSE(old);
  SObject* object = player.rootObject->firstChild;
  EXPECT_EQ(Children(*player.rootObject), "4:wheel");
  EXPECT_EQ(object->character->type, charLoadedMovie);
  EXPECT_EQ(object->mat.tx, 77);
  EXPECT_TRUE(object->scriptControlled);
  EXPECT_EQ(object->thread, movie);
  EXPECT_EQ(movie->rootObject, object);
  EXPECT_EQ(movie->splayer, &player);
  EXPECT_TRUE(movie->IsRoot());

  const author::Bytes bytes = SmallMovie();
  movie->PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
  player.StepThreads();
  EXPECT_EQ(movie->curFrame, 0);
  EXPECT_EQ(Children(*object), "4:wheel");

  ScriptPlayer* again = player.OpenSprite(movie);
  ASSERT_NE(again, nullptr) << "a loaded movie can be replaced too";
  EXPECT_EQ(Children(*player.rootObject), "4:wheel");
  player.display.RemoveObject(player.rootObject, 4);
  EXPECT_EQ(player.display.objectCount, 1);
}

TEST_F(Layers, ALayersRootObjectCannotBeReplaced) {
  player.Push(SmallMovie());
  EXPECT_EQ(player.OpenSprite(nullptr), nullptr);
  EXPECT_EQ(player.OpenSprite(&player), nullptr);
  EXPECT_EQ(player.display.objectCount, 2);
}

TEST_F(Layers, ACloneOfALoadedMovieRunsOnItsOwn) {
  player.Push(SmallMovie());
  ScriptPlayer* movie = player.OpenSprite(player.rootObject->firstChild->thread);
  const author::Bytes bytes = SmallMovie();
  movie->PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()) - 1);
  player.CloneSprite(movie, "early", 9);
  SObject* early = player.display.FindObject(player.rootObject, 9);
  ASSERT_NE(early, nullptr);
  EXPECT_EQ(early->thread, &player) << "the movie was not all there: no timeline of its own";

  movie->PushDataBuf(bytes.data() + bytes.size() - 1, 1);
  movie->DrawFrame(0, true);
  player.CloneSprite(movie, "copy", 10);
  SObject* copy = player.display.FindObject(player.rootObject, 10);
  ASSERT_NE(copy, nullptr);
  ASSERT_NE(copy->thread, &player);
  EXPECT_NE(copy->thread, movie);
  EXPECT_EQ(copy->thread->curFrame, 0);
  EXPECT_EQ(copy->ratio, 65535);
  EXPECT_EQ(Children(*copy), "4:wheel");

  player.display.RemoveObject(player.rootObject, 4);
  player.StepThreads();
  EXPECT_EQ(copy->thread->curFrame, 1) << "it outlives the movie it came from";
  EXPECT_EQ(CheckStage(player.display), "");
}

TEST_F(Layers, CloningALoadedMovieOntoItsOwnDepthEndsIt) {
  player.Push(SmallMovie());
  ScriptPlayer* movie = player.OpenSprite(player.rootObject->firstChild->thread);
  const author::Bytes bytes = SmallMovie();
  movie->PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
  player.CloneSprite(movie, nullptr, 4);
  EXPECT_EQ(CheckStage(player.display), "");
}

TEST_F(Layers, ALoadedMovieIsNotChangedIntoAShapeByMoving) {
  player.Push(SmallMovie());
  ScriptPlayer* movie = player.OpenSprite(player.rootObject->firstChild->thread);
  SCharacter* shape = player.CreateCharacter(9);
  PlaceInfo info;
  info.flags = kPlaceCharacter;
  info.depth = 4;
  info.character = shape;
  SObject* object = player.display.MoveObject(player.rootObject, &info);
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->character->type, charLoadedMovie);
  EXPECT_EQ(object->thread, movie);
}

TEST_F(Layers, ALayerWhoseRootObjectWasRemovedPlacesItselfANewOne) {
  player.Push(SmallMovie());
  player.display.RemoveObject(&player.display.root, 0);
  EXPECT_EQ(player.rootObject, nullptr);
  EXPECT_EQ(player.display.objectCount, 0);
  player.StepThreads();
  player.GotoFrame(0);
  EXPECT_EQ(Children(player.display.root), "0");
  EXPECT_EQ(Children(*player.rootObject), "4:wheel");
}

TEST_F(Layers, EveryMovieKnowsThePlayersVersion) {
  EXPECT_STREQ(player.FindVariable("$VERSION")->Text(), "UNIX 4,0,13,0");
  ScriptPlayer* layer = player.OpenLayer(3, false);
  EXPECT_STREQ(layer->FindVariable("$version")->Text(), "UNIX 4,0,13,0");
  layer->SetVariable("x", "1");
  EXPECT_EQ(player.OpenLayer(3, false), layer);
  EXPECT_EQ(layer->FindVariable("x"), nullptr);
  EXPECT_STREQ(layer->FindVariable("$version")->Text(), "UNIX 4,0,13,0");
}

}  // namespace
}  // namespace vexel::test
