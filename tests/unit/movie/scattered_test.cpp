// Movies that come as single messages: definitions, frames, recovery, and bytes
// that are written into a script afterwards.
#include <gtest/gtest.h>

#include <vector>

#include "author/writer.h"
#include "movie/tags.h"
#include "stage/button.h"
#include "support/check_stage.h"
#include "support/random_movie.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::Bytes;
using author::Matrix;
using author::MovieWriter;
using author::TagStream;
using test::Children;
using test::TestPlayer;

class Scattered : public ::testing::Test {
 protected:
  Scattered() {
    const Bytes head = MovieWriter(100, 100, 12).Finish();
    player.SetHeader(head.data(), static_cast<int32_t>(head.size()));
    player.gotHeader = true;
    player.DrawFrame(0, false);
    player.lostCallback = [](void* arg, uint16_t id) {
      static_cast<Scattered*>(arg)->asked.push_back(id);
    };
    player.lostArg = this;
  }
  ~Scattered() override { EXPECT_EQ(test::CheckStage(player.display), ""); }

  static author::ShapeBuilder Box() {
    author::ShapeBuilder box;
    box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
    return box;
  }
  void Object(const Bytes& bytes) {
    EXPECT_EQ(player.SetObject(bytes.data(), static_cast<int32_t>(bytes.size())), kScriptOk);
  }
  void Object(const TagStream& tags) { Object(tags.bytes()); }
  void Frame(const Bytes& bytes, bool suppressActions = false) {
    EXPECT_EQ(player.SetFrame(bytes.data(), static_cast<int32_t>(bytes.size()), suppressActions),
              kScriptOk);
  }
  void Frame(const TagStream& tags) { Frame(tags.bytes()); }
  void DefineBoxes(uint16_t first, uint16_t last) {
    TagStream tags;
    for (uint16_t id = first; id <= last; ++id) tags.DefineShape(id, Box());
    Object(tags);
  }
  void DefineButton(uint16_t id, uint16_t box) {
    Object(TagStream().DefineButton2(id, false,
                                     {{author::kButtonUp, box, 1, {}, {}},
                                      {author::kButtonOver, box, 2, {}, {}},
                                      {author::kButtonDown, box, 3, {}, {}},
                                      {author::kButtonHit, box, 4, {}, {}}},
                                     {}));
  }
  SObject* At(uint16_t depth) { return player.display.FindObject(player.rootObject, depth); }

  TestPlayer player;
  std::vector<uint16_t> asked;  // ids of look-ups that failed
};

TEST_F(Scattered, HeaderGivesVersionStageRateAndFrameCount) {
  MovieWriter movie(author::Rect::Pixels(3, 4, 103, 84), 0x0C80, 5);
  movie.header().frameCount = 300;
  const Bytes head = movie.Finish();
  player.SetHeader(head.data(), static_cast<int32_t>(head.size()));
  EXPECT_EQ(player.version, 5);
  EXPECT_EQ(player.frame.xmin, 60);
  EXPECT_EQ(player.frame.ymax, 1680);
  EXPECT_EQ(player.frameRate, 0xC8000);
  EXPECT_EQ(player.frameDelay, 80);
  EXPECT_EQ(player.numFrames, 300);
  EXPECT_EQ(player.script, nullptr);
}

TEST_F(Scattered, HeaderWithoutTheSignatureChangesNothing) {
  Bytes head = MovieWriter(300, 300, 25).Finish();
  head[2] = 'G';
  player.SetHeader(head.data(), static_cast<int32_t>(head.size()));
  EXPECT_EQ(player.frame.xmax, 2000);
  EXPECT_EQ(player.scriptErr, 0);
}

TEST_F(Scattered, HeaderThatIsCutReadsAsZeros) {
  const Bytes head = MovieWriter(300, 300, 25).Finish();
  for (int32_t size = 0; size <= static_cast<int32_t>(head.size()); ++size) {
    TestPlayer other;
    other.SetHeader(head.data(), size);
    EXPECT_EQ(other.version, size >= 4 ? 4 : 0) << size;
  }
}

TEST_F(Scattered, ObjectsActAsDefinitionsOnly) {
  Object(TagStream()
             .DefineShape(1, Box())
             .PlaceObject(1, 1)
             .BackgroundColor({1, 2, 3})
             .FrameEnd()
             .DefineShape(2, Box()));
  EXPECT_NE(player.FindCharacter(1), nullptr);
  EXPECT_NE(player.FindCharacter(2), nullptr);
  EXPECT_EQ(Children(*player.rootObject), "");
  EXPECT_EQ(player.display.backgroundPriority, 0);
  EXPECT_EQ(player.curFrame, -1);
}

TEST_F(Scattered, FramesActAsPlacementsOnly) {
  DefineBoxes(1, 1);
  Frame(TagStream().DefineShape(2, Box()).PlaceObject(1, 5).BackgroundColor({1, 2, 3}));
  EXPECT_EQ(player.FindCharacter(2), nullptr);
  EXPECT_EQ(Children(*player.rootObject), "5");
  EXPECT_EQ(player.display.backgroundColor.green, 2);
  EXPECT_EQ(player.curFrame, -1);
}

TEST_F(Scattered, CharactersOutliveTheirMessage) {
  Bytes message = TagStream().DefineShape(1, Box()).bytes();
  Object(message);
  std::fill(message.begin(), message.end(), uint8_t{0xFF});
  Frame(TagStream().PlaceObject(1, 1));
  player.display.Update();
  EXPECT_EQ(player.Pixel(5, 5), 0xC80000u);
}

TEST_F(Scattered, FirstDefinitionOfAnIdStays) {
  DefineBoxes(1, 1);
  const SCharacter* character = player.FindCharacter(1);
  DefineBoxes(1, 1);
  EXPECT_EQ(player.FindCharacter(1), character);
}

TEST_F(Scattered, LastTagIsCutToItsMessage) {
  Bytes message = TagStream().DefineShape(1, Box()).bytes();
  message.resize(message.size() - 2);
  Object(message);
  EXPECT_NE(player.FindCharacter(1), nullptr);
}

TEST_F(Scattered, HeaderOfATagThatIsNotWhollyThereEndsTheMessage) {
  const uint8_t short1[] = {0x8F};
  const uint8_t long1[] = {0xBF, 0x00, 0x10, 0x00};
  Object(Bytes(short1, short1 + 1));
  Object(Bytes(long1, long1 + 4));
  Object(Bytes());
  Frame(Bytes());
  EXPECT_EQ(player.SetObject(nullptr, 10), kScriptOk);
  EXPECT_EQ(player.SetFrame(nullptr, -1, false), kScriptOk);
}

TEST_F(Scattered, LengthWithItsTopBitSetRunsToTheEndOfTheMessage) {
  TagStream tags;
  tags.LyingTag(999, 0x80000010, {}, author::TagForm::kLong).PlaceObject(1, 1);
  DefineBoxes(1, 1);
  Frame(tags);
  EXPECT_EQ(Children(*player.rootObject), "");
}

TEST_F(Scattered, ActionsOfAFrameAreQueuedUnlessSuppressed) {
  const Bytes frame = TagStream().FrameActions(Bytes{7, 0}).bytes();
  Frame(frame, true);
  EXPECT_TRUE(player.display.actionList.IsEmpty());
  Frame(frame, false);
  EXPECT_FALSE(player.display.actionList.IsEmpty());
}

TEST_F(Scattered, QueuedActionsOutliveTheirMessage) {
  author::ActionBuilder actions;
  actions.SetVariable("x", "1");
  Frame(TagStream().FrameActions(actions));
  Frame(TagStream().BackgroundColor({1, 1, 1}));
  EXPECT_EQ(player.FindVariable("x"), nullptr);
  player.loaded = true;
  player.DoActions();
  EXPECT_NE(player.FindVariable("x"), nullptr);
}

TEST_F(Scattered, FrameEndStopsAFrame) {
  DefineBoxes(1, 1);
  Frame(TagStream().PlaceObject(1, 1).FrameEnd().PlaceObject(1, 2));
  EXPECT_EQ(Children(*player.rootObject), "1");
}

TEST_F(Scattered, PlacingBehindAFreeAllPlacesTheRootAgain) {
  DefineBoxes(1, 1);
  Frame(TagStream().PlaceObject(1, 1));
  Frame(TagStream().FreeAll());
  EXPECT_EQ(player.rootObject, nullptr);
  EXPECT_EQ(player.FindCharacter(1), nullptr);
  Frame(TagStream().RemoveObject(1).FreeAll());
  DefineBoxes(1, 1);
  Frame(TagStream().PlaceObject(1, 2));
  ASSERT_NE(player.rootObject, nullptr);
  EXPECT_EQ(Children(*player.rootObject), "2");
}

TEST_F(Scattered, SyncFrameBehindAFreeAllHasNothingToClose) {
  DefineBoxes(1, 1);
  Frame(TagStream().PlaceObject(1, 1));
  Frame(TagStream().SyncFrame().FreeAll());
  EXPECT_EQ(player.rootObject, nullptr);
}

TEST_F(Scattered, SeeksFindNothingBetweenMessages) {
  DefineBoxes(1, 1);
  Frame(TagStream().FrameLabel("here").PlaceObject(1, 1));
  EXPECT_EQ(player.script, nullptr);
  EXPECT_EQ(player.FindLabel("here"), -1);
  EXPECT_EQ(player.Seek(3), kScriptWaiting);
  EXPECT_EQ(Children(*player.rootObject), "1");
}

// --- Sync frames ---

TEST_F(Scattered, SyncFrameThatRepeatsAllLeavesAllAsItIs) {
  DefineBoxes(1, 2);
  TagStream tags;
  tags.PlaceObject(1, 1, Matrix::Translate(20, 0));
  tags.PlaceObject(2, 2, {}, author::Cxform{});
  Frame(tags);
  SObject* first = At(1);
  SObject* second = At(2);
  player.display.Update();
  player.display.dirtyCount = 0;
  Frame(TagStream().SyncFrame().Raw(tags.bytes()));
  EXPECT_EQ(At(1), first);
  EXPECT_EQ(At(2), second);
  EXPECT_FALSE(first->dirty);
  EXPECT_FALSE(second->dirty);
  EXPECT_EQ(player.display.dirtyCount, 0);
}

TEST_F(Scattered, ObjectThatASyncFrameDoesNotMentionGoes) {
  DefineBoxes(1, 3);
  Frame(TagStream().PlaceObject(1, 1).PlaceObject(2, 2).PlaceObject(3, 3));
  Frame(TagStream().SyncFrame().PlaceObject(2, 2));
  EXPECT_EQ(Children(*player.rootObject), "2");
}

TEST_F(Scattered, ObjectThatDiffersIsPlacedAnew) {
  DefineBoxes(1, 2);
  Frame(TagStream().PlaceObject(1, 1).PlaceObject(1, 2).PlaceObject(1, 3));
  author::Cxform cxform;
  cxform.redMul = 100;
  Frame(TagStream()
            .SyncFrame()
            .PlaceObject(1, 1, Matrix::Translate(1, 0))
            .PlaceObject(1, 2, {}, cxform)
            .PlaceObject(2, 3)
            .PlaceObject(2, 4));
  EXPECT_EQ(Children(*player.rootObject), "1 2 3 4");
  EXPECT_EQ(At(1)->mat.tx, 1);
  EXPECT_EQ(At(2)->cxform.ra, 100);
  EXPECT_EQ(At(3)->character->id, 2);
  EXPECT_EQ(At(4)->syncRemovalMark, kSyncUnmarked);
}

TEST_F(Scattered, SecondFormOfPlacementActsOutsideASyncFrameOnly) {
  DefineBoxes(1, 1);
  Frame(TagStream().Place(1, 1));
  EXPECT_EQ(Children(*player.rootObject), "1");
  Frame(TagStream().SyncFrame().Place(1, 2));
  EXPECT_EQ(Children(*player.rootObject), "");
}

TEST_F(Scattered, SyncFrameThatEndsInAFrameEndIsNotClosed) {
  DefineBoxes(1, 1);
  Frame(TagStream().PlaceObject(1, 1).PlaceObject(1, 2));
  Frame(TagStream().SyncFrame().PlaceObject(1, 1).FrameEnd());
  EXPECT_EQ(Children(*player.rootObject), "1 2");
  EXPECT_EQ(At(2)->syncRemovalMark, kSyncUnconfirmed);
}

TEST_F(Scattered, ConfirmedButtonGetsItsChildrenBack) {
  DefineBoxes(1, 1);
  DefineButton(7, 1);
  Frame(TagStream().PlaceObject(7, 5));
  EXPECT_EQ(Children(*At(5)), "6");
  Frame(TagStream().SyncFrame().PlaceObject(7, 5));
  EXPECT_EQ(Children(*At(5)), "6");
  EXPECT_EQ(At(5)->buttonState, buttonIdle);
}

TEST_F(Scattered, PressInProgressOutlivesASyncFrame) {
  DefineBoxes(1, 1);
  DefineButton(7, 1);
  Frame(TagStream().PlaceObject(7, 5));
  player.loaded = true;
  player.display.CalcUpdate();
  const SPOINT pt = {5, 5};
  player.MouseMove(&pt, false);
  player.MouseDown(&pt);
  ASSERT_EQ(player.display.button, At(5));
  EXPECT_EQ(Children(*At(5)), "8");
  Frame(TagStream().SyncFrame().PlaceObject(7, 5));
  EXPECT_EQ(player.display.button, At(5));
  EXPECT_EQ(Children(*At(5)), "8");
  EXPECT_EQ(At(5)->buttonState, player.display.buttonState);
}

TEST_F(Scattered, TwoSyncTagsAreAsOne) {
  DefineBoxes(1, 1);
  Frame(TagStream().PlaceObject(1, 1).PlaceObject(1, 2));
  Frame(TagStream().SyncFrame().PlaceObject(1, 1).SyncFrame().PlaceObject(1, 2));
  EXPECT_EQ(Children(*player.rootObject), "2");
}

TEST_F(Scattered, ObjectsOfOneDepthCloseWithoutHarm) {
  DefineBoxes(1, 3);
  Frame(TagStream().PlaceObject(1, 1).PlaceObject(2, 1).PlaceObject(3, 1).PlaceObject(1, 2));
  Frame(TagStream().SyncFrame().PlaceObject(3, 1));
  EXPECT_EQ(Children(*player.rootObject), "1");
}

// --- What was missing ---

TEST_F(Scattered, MissingCharacterIsAskedForAndStoodInFor) {
  Frame(TagStream().PlaceObject(9, 1));
  EXPECT_EQ(asked, std::vector<uint16_t>{9});
  ASSERT_NE(At(1), nullptr);
  EXPECT_EQ(At(1)->character, player.lostCharacter);
}

TEST_F(Scattered, RecoveryLooksForThePlaceholdersOwnId) {
  TagStream tags;
  Frame(TagStream().PlaceObject(9, 1, Matrix::Translate(40, 60)));
  DefineBoxes(9, 9);
  player.RecoverLost();
  EXPECT_EQ(At(1)->character, player.lostCharacter);
  EXPECT_EQ(asked, (std::vector<uint16_t>{9, 0}));
  DefineBoxes(0, 0);
  player.RecoverLost();
  EXPECT_EQ(At(1)->character->id, 0);
  EXPECT_EQ(At(1)->character->type, charShape);
  EXPECT_EQ(At(1)->mat.tx, 40);
  EXPECT_EQ(At(1)->mat.ty, 60);
}

TEST_F(Scattered, RecoveryWithoutALossDoesNothing) {
  DefineBoxes(0, 0);
  Frame(TagStream().PlaceObject(9, 1));
  player.lostFlag = false;
  SObject* object = At(1);
  player.RecoverLost();
  EXPECT_EQ(At(1), object);
}

TEST_F(Scattered, RecoveryHandlesTwentyOf25) {
  TagStream tags;
  for (uint16_t depth = 1; depth <= 25; ++depth) tags.PlaceObject(9, depth);
  Frame(tags);
  DefineBoxes(0, 0);
  player.RecoverLost();
  for (uint16_t depth = 1; depth <= 25; ++depth) {
    EXPECT_EQ(At(depth)->character->type, depth <= 20 ? charShape : charLost) << depth;
  }
}

TEST_F(Scattered, RecoveryWithoutARootObjectDoesNothing) {
  Frame(TagStream().PlaceObject(9, 1).FreeAll());
  player.RecoverLost();
  EXPECT_EQ(player.rootObject, nullptr);
}

// --- Bytes written afterwards ---

class LateBytes : public ::testing::Test {
 protected:
  LateBytes() {
    MovieWriter movie(100, 100);
    movie.BackgroundColor({1, 2, 3}).FrameEnd().BackgroundColor({4, 5, 6}).FrameEnd().End();
    bytes = movie.Finish();
    player.dataInPlace = true;
    player.Push(bytes);
    reader = static_cast<uint32_t>(player.pos);
  }
  Bytes bytes;
  TestPlayer player;
  uint32_t reader = 0;  // where the first frame left the reader
};

TEST_F(LateBytes, RangeThatHoldsTheReaderIsNotWriteable) {
  ASSERT_GT(reader, 10u);
  EXPECT_FALSE(player.IsScriptRangeWriteable(reader, 1));
  EXPECT_FALSE(player.IsScriptRangeWriteable(reader - 3, 4));
  EXPECT_TRUE(player.IsScriptRangeWriteable(reader - 4, 4));
  EXPECT_TRUE(player.IsScriptRangeWriteable(reader + 1, 3));
}

TEST_F(LateBytes, RangeLiesInsideTheScript) {
  const uint32_t end = static_cast<uint32_t>(player.scriptLen);
  EXPECT_TRUE(player.IsScriptRangeWriteable(end - 1, 1));
  EXPECT_FALSE(player.IsScriptRangeWriteable(end - 1, 2));
  EXPECT_FALSE(player.IsScriptRangeWriteable(end, 1));
  EXPECT_FALSE(player.IsScriptRangeWriteable(end - 1, 0));
  EXPECT_FALSE(player.IsScriptRangeWriteable(0xFFFFFFF0, 0x20));
}

TEST_F(LateBytes, NothingIsWriteableUnlessTheHostMayWrite) {
  player.dataInPlace = false;
  EXPECT_FALSE(player.IsScriptRangeWriteable(reader + 1, 1));
  const uint8_t byte[] = {0x55};
  player.WriteScriptRange(byte, 1, reader + 1);
  EXPECT_EQ(player.script[reader + 1], bytes[reader + 1]);
  EXPECT_FALSE(ScriptPlayer().IsScriptRangeWriteable(0, 1));
}

TEST_F(LateBytes, BytesGoWhereTheyAreSentAlsoUnderTheReader) {
  const uint8_t patch[] = {0x55, 0x66};
  player.WriteScriptRange(patch, 2, reader);
  EXPECT_EQ(player.script[reader], 0x55);
  EXPECT_EQ(player.script[reader + 1], 0x66);
  EXPECT_EQ(player.script[reader + 2], bytes[reader + 2]);
}

TEST_F(LateBytes, BadWritesChangeNothing) {
  const uint8_t patch[] = {0x55, 0x66};
  const uint32_t end = static_cast<uint32_t>(player.scriptLen);
  player.WriteScriptRange(nullptr, 2, reader);
  player.WriteScriptRange(patch, 0, reader);
  player.WriteScriptRange(patch, 2, end - 1);
  player.WriteScriptRange(patch, 2, 0xFFFFFFFF);
  EXPECT_EQ(Bytes(player.script, player.script + end), bytes);
}

TEST_F(LateBytes, LateFrameIsSeenWhenTheTimelinePasses) {
  // The second background colour: its tag follows the first frame's end.
  const uint8_t color[] = {7, 8, 9};
  player.WriteScriptRange(color, 3, reader + 2);
  player.display.backgroundPriority = 0;
  player.DrawFrame(1, false);
  EXPECT_EQ(player.display.backgroundColor.red, 7);
}

// --- A movie cut into messages shows what it shows as a whole ---

class CutMovies : public ::testing::TestWithParam<uint32_t> {};

TEST_P(CutMovies, ShowTheSameFrames) {
  author::RandomMovieOptions options;
  const Bytes bytes = author::RandomMovie(GetParam(), options);
  TestPlayer whole(240, 160);
  whole.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
  TestPlayer cut(240, 160);
  SParser walk(bytes.data(), static_cast<int32_t>(bytes.size()), whole.startPos);
  cut.SetHeader(bytes.data(), walk.pos);
  cut.gotHeader = true;
  cut.DrawFrame(0, false);

  int32_t frame = 0;
  Bytes message;
  for (int32_t code; (code = walk.GetTag(kNoTagLimit)) > kTagEnd; walk.pos = walk.tagEnd) {
    const std::span<const uint8_t> tag(bytes.data() + walk.tagPos, bytes.data() + walk.tagEnd);
    if (code != kTagFrameEnd) {
      // Definitions go first; a frame passes them over.
      cut.SetObject(tag.data(), static_cast<int32_t>(tag.size()));
      message.insert(message.end(), tag.begin(), tag.end());
      continue;
    }
    cut.SetFrame(message.data(), static_cast<int32_t>(message.size()), false);
    message.clear();
    whole.DrawFrame(frame, false);
    for (TestPlayer* player : {&whole, &cut}) {
      if (frame == 0) player->SetCamera(kCameraOnly);
      player->display.Update();
    }
    ASSERT_EQ(memcmp(whole.bits.baseAddr, cut.bits.baseAddr,
                     static_cast<size_t>(whole.bits.rowBytes) * 160),
              0)
        << "seed " << GetParam() << " frame " << frame;
    ++frame;
  }
  EXPECT_EQ(frame, whole.numFrames);
}

INSTANTIATE_TEST_SUITE_P(Seeds, CutMovies, ::testing::Range(1u, 60u));

}  // namespace
}  // namespace vexel
