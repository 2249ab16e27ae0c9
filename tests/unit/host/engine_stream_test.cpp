// Streams of both layouts: the header, messages and bytes, and the clock.
#include <thread>

#include "engine_fixture.h"
#include "host/render_thread_manager.h"

namespace vexel::test {
namespace {

using author::Matrix;
using author::MovieWriter;
using author::TagStream;

class EngineStream : public EngineFixture {
 protected:
  std::string Stage() const {
    std::string depths;
    for (const SObject* child = engine->rootObject->firstChild; child; child = child->next) {
      depths += std::to_string(child->depth) + " ";
    }
    return depths;
  }
  TagStream Box(uint16_t id) {
    author::ShapeBuilder box;
    box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
    return TagStream().DefineShape(id, box);
  }
  UINT32 Waiting() const { return engine->WaitingFrames().Count(); }
};

// --- Start and end ---

TEST_F(EngineStream, StartNeedsStreamAndPlayer) {
  EXPECT_EQ(engine->StartStream(nullptr, host.player.get()), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(engine->StartStream(host.stream.get(), nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(EngineStream, SourceThatCannotSendAgainSetsTheHoldMode) {
  EXPECT_EQ(engine->HoldMode(), 2);
  Init();
  EXPECT_EQ(engine->HoldMode(), 2);
  EXPECT_EQ(engine->EndStream(), ZEM_OK);
  EXPECT_EQ(engine->HoldMode(), 0);
  host.stream->source->others.clear();
  engine->StartStream(host.stream.get(), host.player.get());
  EXPECT_EQ(engine->HoldMode(), 1);
}

TEST_F(EngineStream, SecondStreamHoldsAgain) {
  Init();
  engine->EndStream();
  engine->StartStream(host.stream.get(), host.player.get());
  EXPECT_EQ(engine->HoldMode(), 2);
}

TEST_F(EngineStream, StreamWithoutASourceStarts) {
  host.stream->source = {};
  EXPECT_EQ(engine->StartStream(host.stream.get(), host.player.get()), ZEM_OK);
  EXPECT_EQ(engine->HoldMode(), 1);
  EXPECT_EQ(engine->OnHeader(Header(0, HeadOf(BoxMovie(1))).get()), ZEM_OK);
}

TEST_F(EngineStream, EndLetsGoOfStreamAndBackChannel) {
  Init();
  const UINT32 streams = host.stream->refs();
  engine->EndStream();
  EXPECT_EQ(host.stream->refs(), streams - 1);
  // And nothing is asked for any more.
  engine->RequestLostCharacter(7);
  EXPECT_TRUE(host.backChannel->sent.empty());
}

TEST_F(EngineStream, AnswersFourInterfaces) {
  for (const ZEMID& id :
       {IID_IUnknown, IID_IZEMRenderer, IID_IZEMSiteUser, IID_IZEMContextMenuResponse}) {
    EXPECT_TRUE(Query<IUnknown>(static_cast<IZEMRenderer*>(engine.get()), id));
  }
  void* out = this;
  EXPECT_EQ(engine->QueryInterface(IID_IZEMFileResponse, &out), ZEM_NO_INTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(engine->QueryInterface(IID_IUnknown, nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(EngineStream, TellsItsTypesAndItsDisplay) {
  const char** types = nullptr;
  UINT32 granularity = 0;
  EXPECT_EQ(engine->GetRendererInfo(types, granularity), ZEM_OK);
  EXPECT_STREQ(types[0], "application/x-brightarc-vexel");
  EXPECT_STREQ(types[1], "application/x-brightarc-vexel2");
  EXPECT_EQ(types[2], nullptr);
  EXPECT_EQ(granularity, 100u);
  UINT32 type = 0;
  IZEMBuffer* info = nullptr;
  EXPECT_EQ(engine->GetDisplayType(type, info), ZEM_OK);
  EXPECT_EQ(type, 7u);
}

// --- The header ---

TEST_F(EngineStream, NullHeaderFails) {
  Init();
  EXPECT_EQ(engine->OnHeader(nullptr), ZEM_FAILED);
  EXPECT_TRUE(host.upgrades->names.empty());
}

TEST_F(EngineStream, MinorVersion1IsRefusedAndOfferedForUpgrade) {
  Init();
  Ptr<IZEMValues> header = Header(0, HeadOf(BoxMovie(1)));
  header->SetPropertyULONG32("StreamVersion", 0x00100000);
  EXPECT_EQ(engine->OnHeader(header.get()), ZEM_FAILED);
  EXPECT_EQ(host.upgrades->names, std::vector<std::string>{"0 application/x-brightarc-vexel2"});
}

TEST_F(EngineStream, BitsBelow20OfAVersionAreFree) {
  Init();
  Ptr<IZEMValues> header = Header(0, HeadOf(BoxMovie(1)));
  header->SetPropertyULONG32("StreamVersion", 0x000FFFFF);
  header->SetPropertyULONG32("ContentVersion", 0x000ABCDE);
  EXPECT_EQ(engine->OnHeader(header.get()), ZEM_OK);
  EXPECT_TRUE(host.upgrades->names.empty());
}

TEST_F(EngineStream, MajorVersionAndContentVersionCountToo) {
  Init();
  for (const char* key : {"StreamVersion", "ContentVersion"}) {
    for (UINT32 version : {0x10000000u, 0x07F00000u, 0xFFFFFFFFu}) {
      Ptr<IZEMValues> header = Header(0, HeadOf(BoxMovie(1)));
      header->SetPropertyULONG32(key, version);
      EXPECT_EQ(engine->OnHeader(header.get()), ZEM_FAILED) << key << version;
    }
  }
}

TEST_F(EngineStream, RefusalDoesNotDependOnTheUpgrade) {
  Init();
  Ptr<IZEMValues> header = Header(0, HeadOf(BoxMovie(1)));
  header->SetPropertyULONG32("StreamVersion", 0x00100000);
  host.Without(IID_IZEMUpgradeCollection);
  EXPECT_EQ(engine->OnHeader(header.get()), ZEM_FAILED);
  EXPECT_EQ(engine->AddMimeToUpgradeCollection("x"), ZEM_NO_INTERFACE);
  EXPECT_EQ(engine->AddMimeToUpgradeCollection(nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(EngineStream, HeaderWithoutAMovieStartsNothing) {
  Init();
  Ptr<IZEMValues> header = MakeValues();
  EXPECT_EQ(engine->OnHeader(header.get()), ZEM_OK);
  EXPECT_FALSE(engine->gotHeader);
  EXPECT_EQ(engine->GetMediaSize().width, 0);
  Packet({1, 2, 3});
  engine->OnTimeSync(5);
}

TEST_F(EngineStream, LinearHeadWithoutTheSignatureIsAnEmptyMovie) {
  Init();
  Bytes head = HeadOf(BoxMovie(1));
  head[0] = 'X';
  EXPECT_EQ(engine->OnHeader(Header(0, head).get()), ZEM_OK);
  EXPECT_EQ(engine->GetMediaSize().width, 0);
  EXPECT_EQ(engine->GetMediaSize().height, 0);
  Attach();
  Frame(0, 4, 0, TagStream().BackgroundColor({1, 2, 3}));
  engine->OnTimeSync(0);
}

TEST_F(EngineStream, NonLinearHeadWithoutTheSignatureIsAnEmptyMovie) {
  Init();
  Bytes head = HeadOf(BoxMovie(1));
  head[0] = 'X';
  EXPECT_EQ(engine->OnHeader(Header(kNonLinear, head).get()), ZEM_OK);
  EXPECT_EQ(engine->GetMediaSize().width, 0);
  Packet({1, 2, 3, 4});
  engine->OnTimeSync(0);
}

TEST_F(EngineStream, PictureHasTheMoviesSize) {
  Open(0, MovieWriter(author::Rect{-205, 1000, 39, 1639}, 0x0C00).Finish());
  EXPECT_EQ(engine->GetMediaSize().width, 60);
  EXPECT_EQ(engine->GetMediaSize().height, 80);
}

TEST_F(EngineStream, SizeIsClampedTo32767) {
  Open(0, MovieWriter(author::Rect{-1000000, 1000000, 0, 20}, 0x0C00).Finish());
  EXPECT_EQ(engine->GetMediaSize().width, 32767);
  EXPECT_EQ(engine->GetMediaSize().height, 1);
}

TEST_F(EngineStream, NegativeSizeIsNone) {
  Open(0, MovieWriter(author::Rect{100, -100, 100, 0}, 0x0C00).Finish());
  EXPECT_EQ(engine->GetMediaSize().width, 0);
  EXPECT_EQ(engine->GetMediaSize().height, 0);
}

TEST_F(EngineStream, HeaderIsReportedToTheLetter) {
  MovieWriter movie(author::Rect::Pixels(0, 0, 100, 80), 0x0C80, 4);
  movie.header().frameCount = 7;
  Open(0, movie.Finish());
  EXPECT_TRUE(
      Logged("14 Header Info:\r\n\tVexel Version:\t4\r\n\tScript Length:\t4294967295\r\n\tWidth:"
             "\t\t100\r\n\tHeight:\t\t80\r\n\tFrameRate:\t12\r\n\tNumFrames:\t7\r\n\tNon-linear:"
             "\t0"));
}

TEST_F(EngineStream, NonLinearHeaderIsReportedWithTheLength) {
  const Bytes movie = BoxMovie(3, 25);
  Open(kNonLinear, HeadOf(movie));
  EXPECT_TRUE(Logged("14 Header Info:\r\n\tVexel Version:\t4\r\n\tScript Length:\t" +
                     std::to_string(movie.size()) +
                     "\r\n\tWidth:\t\t100\r\n\tHeight:\t\t80\r\n\tFrameRate:\t25\r\n\tNumFrames:"
                     "\t3\r\n\tNon-linear:\t1"));
}

TEST_F(EngineStream, ThreadManagerLearnsTheMode) {
  CRenderThreadManager manager(static_cast<IZEMRenderer*>(engine.get()), engine.get(), 70);
  engine->SetThreadManager(&manager);
  Open(kNonLinear, HeadOf(BoxMovie(1)));
  EXPECT_EQ(engine->OnHeader(Header(0, HeadOf(BoxMovie(1))).get()), ZEM_OK);
  engine->SetThreadManager(nullptr);
}

// --- Packets ---

TEST_F(EngineStream, PacketsAreReported) {
  OpenLinear();
  EXPECT_EQ(engine->OnPacket(nullptr, 0), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(engine->OnPacket(MakeLostPacket().get(), 0), ZEM_OK);
  EXPECT_TRUE(Logged("15 OnPacket(): PACKET LOST"));
  engine->OnTimeSync(77);
  EXPECT_EQ(engine->OnPacket(MakePacket({2}, 1234).get(), -5), ZEM_OK);
  EXPECT_TRUE(Logged("15 OnPacket(): pkt_ts=  1234 last_ts=    77 offset=-5"));
}

TEST_F(EngineStream, EmptyMessagesAndUnknownKindsAreIgnored) {
  OpenLinear();
  EXPECT_EQ(Packet({}), ZEM_OK);
  EXPECT_EQ(Packet({0}), ZEM_OK);
  EXPECT_EQ(Packet({2, 0x40, 0x00}), ZEM_OK);
  EXPECT_EQ(Packet({3, 0x40, 0x00}), ZEM_OK);
  EXPECT_EQ(Waiting(), 0u);
}

TEST_F(EngineStream, ObjectsAreDefinedAtOnce) {
  OpenLinear();
  Message(0, Box(5));
  EXPECT_NE(engine->FindCharacter(5), nullptr);
}

TEST_F(EngineStream, MessagesBeforeTheHeaderAreDropped) {
  Init();
  Message(0, Box(5));
  Frame(1);
  EXPECT_EQ(Waiting(), 0u);
  engine->OnTimeSync(0);
}

TEST_F(EngineStream, AnsweredObjectRecoversWhatWaited) {
  OpenLinear();
  Frame(0, 4, 0, TagStream().PlaceObject(9, 1));
  EXPECT_EQ(host.backChannel->sent.size(), 1u);
  EXPECT_EQ(engine->rootObject->firstChild->character->type, charLost);
  Message(0, Box(0));
  EXPECT_EQ(engine->rootObject->firstChild->character->type, charLost);
  Message(4, Box(9));
  EXPECT_EQ(engine->rootObject->firstChild->character->id, 0);
  EXPECT_EQ(engine->rootObject->firstChild->character->type, charShape);
}

TEST_F(EngineStream, SequenceCountsModulo16) {
  OpenLinear();
  Frame(13, 4);
  for (int sequence : {14, 15, 0, 1}) Frame(sequence);
  EXPECT_EQ(Waiting(), 4u);
}

TEST_F(EngineStream, FramesBehindAGapAreDroppedUntilAKeyFrame) {
  OpenLinear();
  Frame(2, 4);
  Frame(3);
  Frame(5);
  Frame(6);
  Frame(7);
  EXPECT_EQ(Waiting(), 1u);
  Frame(9, 8);
  Frame(10);
  EXPECT_EQ(Waiting(), 3u);
}

TEST_F(EngineStream, FramesBehindAGapAreDroppedUntilAFrameAtOnce) {
  OpenLinear();
  Frame(2, 4);
  Frame(5);
  EXPECT_EQ(Waiting(), 0u);
  Frame(8, 4);
  Frame(9);
  EXPECT_EQ(Waiting(), 1u);
}

TEST_F(EngineStream, HoldMode0QueuesFramesBehindAGap) {
  OpenLinear();
  engine->GetURL("VXCommand:Hold=n", nullptr, nullptr, 0);
  Frame(2, 4);
  Frame(3);
  Frame(5);
  EXPECT_EQ(Waiting(), 2u);
}

TEST_F(EngineStream, FrameAtOnceDiscardsTenAndAppliesItself) {
  OpenLinear();
  Message(0, Box(1));
  Frame(15, 4);
  for (int i = 0; i < 10; ++i) Frame(i, 0, 0, TagStream().PlaceObject(1, 1));
  EXPECT_EQ(Waiting(), 10u);
  // Its time is not looked at.
  Frame(3, 4, 99999, TagStream().PlaceObject(1, 7));
  EXPECT_EQ(Waiting(), 0u);
  EXPECT_EQ(Stage(), "7 ");
}

TEST_F(EngineStream, FramesPlayWhenTheirTimeHasCome) {
  OpenLinear();
  Message(0, Box(1));
  Frame(0, 4);
  Frame(1, 0, 100, TagStream().PlaceObject(1, 1));
  Frame(2, 0, 200, TagStream().PlaceObject(1, 2));
  engine->OnTimeSync(99);
  EXPECT_EQ(Stage(), "");
  engine->OnTimeSync(100);
  EXPECT_EQ(Stage(), "1 ");
  EXPECT_EQ(Pixel(5, 5), 0xC80000u);
  engine->OnTimeSync(500);
  EXPECT_EQ(Stage(), "1 2 ");
}

TEST_F(EngineStream, FrameOfTheFutureHoldsUpThoseBehindIt) {
  OpenLinear();
  Message(0, Box(1));
  Frame(0, 4);
  Frame(1, 0, 1000, TagStream().PlaceObject(1, 1));
  Frame(2, 0, 0, TagStream().PlaceObject(1, 2));
  engine->OnTimeSync(500);
  EXPECT_EQ(Stage(), "");
  EXPECT_EQ(Waiting(), 2u);
  engine->OnTimeSync(1000);
  EXPECT_EQ(Stage(), "1 2 ");
}

TEST_F(EngineStream, Frame2049DoublesTheRing) {
  OpenLinear();
  Frame(0, 4);
  for (int i = 1; i <= 2048; ++i) Frame(i & 15);
  EXPECT_EQ(engine->WaitingFrames().Size(), 2048u);
  Frame(2049 & 15);
  EXPECT_EQ(engine->WaitingFrames().Size(), 4096u);
  EXPECT_EQ(Waiting(), 2049u);
}

TEST_F(EngineStream, RingThatIsFullBreaksTheSequence) {
  OpenLinear();
  Frame(0, 4);
  for (int i = 1; i <= 65536; ++i) Frame(i & 15);
  EXPECT_EQ(Waiting(), 65536u);
  Frame(65537 & 15);
  EXPECT_EQ(Waiting(), 65536u);
  engine->OnTimeSync(0);
  EXPECT_EQ(Waiting(), 0u);
  Frame(65538 & 15);
  EXPECT_EQ(Waiting(), 0u);
}

TEST_F(EngineStream, ActionsOfALinearMovieWaitForAFrameAtOnce) {
  OpenLinear();
  author::ActionBuilder actions;
  actions.SetVariable("x", "1");
  Frame(1, 0, 0, TagStream().FrameActions(actions));
  engine->OnTimeSync(0);
  EXPECT_EQ(engine->FindVariable("x"), nullptr);
  Frame(2, 4);
  EXPECT_NE(engine->FindVariable("x"), nullptr);
}

TEST_F(EngineStream, NonLinearPacketsArePushedIntoTheMovie) {
  const Bytes movie = BoxMovie(3);
  Open(kNonLinear, HeadOf(movie));
  EXPECT_FALSE(engine->loop);
  for (size_t at = HeadOf(movie).size(); at < movie.size(); ++at) {
    EXPECT_FALSE(engine->IsComplete());
    Packet({movie[at]});
  }
  EXPECT_TRUE(engine->IsComplete());
  EXPECT_TRUE(engine->loaded);
  EXPECT_EQ(engine->CurrentFrame(), 0);
}

TEST_F(EngineStream, PacketsBehindTheEndOfPacketsStillArrive) {
  const Bytes movie = BoxMovie(3);
  const Bytes head = HeadOf(movie);
  Open(kNonLinear, head);
  EXPECT_EQ(engine->OnEndofPackets(), ZEM_OK);
  Packet(Bytes(movie.begin() + static_cast<long>(head.size()), movie.end()));
  EXPECT_TRUE(engine->IsComplete());
}

// --- The clock ---

TEST_F(EngineStream, ClockMovesANonLinearMovie) {
  Play(BoxMovie(12, 10));
  engine->OnTimeSync(0);
  EXPECT_EQ(engine->CurrentFrame(), 1);
  engine->OnTimeSync(500);
  EXPECT_EQ(engine->CurrentFrame(), 6);
  engine->OnTimeSync(5000);
  EXPECT_EQ(engine->CurrentFrame(), 11);
}

TEST_F(EngineStream, CallbackStartsAtTheEndOfANonLinearStreamOnce) {
  Play(BoxMovie(3, 10), 1000);
  engine->OnTimeSync(999);
  EXPECT_EQ(host.scheduler->timers.size(), 0u);
  engine->OnTimeSync(1000);
  EXPECT_EQ(host.scheduler->timers.size(), 1u);
  engine->OnTimeSync(1100);
  EXPECT_EQ(host.scheduler->timers.size(), 1u);
  EXPECT_EQ(host.scheduler->timers[0].dueMs, host.scheduler->nowMs + 100);
  host.scheduler->Advance(100);
  EXPECT_EQ(host.scheduler->timers.size(), 1u) << "and again";
  EXPECT_EQ(engine->DetachSite(), ZEM_OK);
  EXPECT_EQ(host.scheduler->timers.size(), 0u);
}

TEST_F(EngineStream, CallbackOfAMovieWithoutAHeaderKeepsNoLoopBusy) {
  Open(kNonLinear, {'V', 'X', 'F', 4}, 1000);
  engine->OnTimeSync(1000);
  ASSERT_EQ(host.scheduler->timers.size(), 1u);
  EXPECT_EQ(host.scheduler->timers[0].dueMs, host.scheduler->nowMs + 100);
}

TEST_F(EngineStream, MovieRunsOnBehindItsStream) {
  author::MovieWriter movie(100, 80, 100);
  for (int i = 0; i < 1000; ++i) movie.FrameEnd();
  movie.End();
  Play(movie.Finish(), 100);
  engine->OnTimeSync(100);
  const int32_t frame = engine->CurrentFrame();
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  host.scheduler->Advance(10);
  EXPECT_GE(engine->CurrentFrame(), frame + 4);
}

TEST_F(EngineStream, CallbackStartsAgainBehindAnotherAttach) {
  Play(BoxMovie(3, 10), 1000);
  engine->OnTimeSync(1000);
  engine->DetachSite();
  engine->AttachSite(host.site.get());
  engine->OnTimeSync(1100);
  EXPECT_EQ(host.scheduler->timers.size(), 1u);
}

TEST_F(EngineStream, CallbackInsideATimeSyncOnlySchedulesAgain) {
  Play(BoxMovie(9, 10), 0);
  engine->OnTimeSync(0);
  const int32_t frame = engine->CurrentFrame();
  host.site->onRedraw = [this] { engine->HandleCallback(0, 0); };
  engine->OnTimeSync(100);
  EXPECT_EQ(engine->CurrentFrame(), frame + 1);
  EXPECT_EQ(host.scheduler->timers.size(), 1u);
}

TEST_F(EngineStream, LinearStreamHasNoCallback) {
  OpenLinear();
  engine->OnTimeSync(99999);
  EXPECT_EQ(host.scheduler->timers.size(), 0u);
}

TEST_F(EngineStream, WithoutASchedulerTheMovieStopsWithItsStream) {
  host.Without(IID_IZEMScheduler);
  Play(BoxMovie(3, 10), 1000);
  EXPECT_EQ(engine->OnTimeSync(1000), ZEM_OK);
  EXPECT_EQ(engine->OnTimeSync(1100), ZEM_OK);
  EXPECT_EQ(engine->HandleCallback(0, 0), ZEM_OK);
}

TEST_F(EngineStream, MissingDurationNeverEnds) {
  Init();
  Ptr<IZEMValues> header = MakeValues();
  header->SetPropertyULONG32("RendererFlags", kNonLinear);
  header->SetPropertyBuffer("OpaqueData", MakeBuffer(BoxMovie(2)).get());
  EXPECT_EQ(engine->OnHeader(header.get()), ZEM_OK);
  engine->OnTimeSync(0xFFFFFFFE);
  EXPECT_EQ(host.scheduler->timers.size(), 0u);
  engine->OnTimeSync(0xFFFFFFFF);
  EXPECT_EQ(host.scheduler->timers.size(), 1u);
}

TEST_F(EngineStream, SeekMovesANonLinearMovie) {
  Play(BoxMovie(12, 10));
  engine->OnTimeSync(0);
  EXPECT_EQ(engine->OnPreSeek(0, 500), ZEM_OK);
  EXPECT_EQ(engine->OnPostSeek(0, 500), ZEM_OK);
  EXPECT_TRUE(engine->seekPending);
  EXPECT_EQ(engine->seekFrame, 5);
  engine->OnTimeSync(500);
  EXPECT_FALSE(engine->seekPending);
}

TEST_F(EngineStream, SeekBeyondTheEndGoesToTheLastFrame) {
  Play(BoxMovie(12, 10));
  engine->OnPostSeek(0, 1200);
  EXPECT_EQ(engine->seekFrame, 11);
  engine->OnPostSeek(0, 0xFFFFFFFF);
  EXPECT_EQ(engine->seekFrame, 11);
  engine->OnPostSeek(0, 1199);
  EXPECT_EQ(engine->seekFrame, 11);
}

TEST_F(EngineStream, SeekInAMovieWithoutFramesGoesToFrame0) {
  author::MovieWriter movie(100, 80, 10);
  movie.header().frameCount = 0;
  Play(movie.Finish());
  engine->OnPostSeek(0, 5000);
  EXPECT_EQ(engine->seekFrame, 0);
}

TEST_F(EngineStream, LinearStreamDoesNothingOnASeek) {
  OpenLinear();
  EXPECT_EQ(engine->OnPostSeek(0, 5000), ZEM_OK);
  EXPECT_FALSE(engine->seekPending);
}

TEST_F(EngineStream, PauseAndBeginAreNoted) {
  EXPECT_EQ(engine->OnBegin(0), ZEM_OK);
  EXPECT_FALSE(engine->hostStopped);
  EXPECT_EQ(engine->OnPause(0), ZEM_OK);
  EXPECT_TRUE(engine->hostStopped);
  EXPECT_EQ(engine->OnBuffering(1, 50), ZEM_OK);
}

TEST_F(EngineStream, MovieMovesTheClientsClock) {
  Play(BoxMovie(12, 10));
  engine->XPlay();
  engine->XStopPlay();
  engine->XSeek(7);
  EXPECT_EQ(host.player->calls, (std::vector<std::string>{"Begin", "Pause", "Seek 700"}));
}

TEST_F(EngineStream, SeekTimesAreRounded) {
  Play(BoxMovie(12, 12));
  engine->XSeek(1);
  engine->XSeek(2);
  // Half the rate goes in first: (6 + 1000) / 12 and (6 + 2000) / 12.
  EXPECT_EQ(host.player->calls, (std::vector<std::string>{"Seek 83", "Seek 167"}));
}

TEST_F(EngineStream, RatesBelow1SeekToo) {
  Play(BoxMovie(2));
  engine->frameRate = 0x8000;
  engine->XSeek(3);
  engine->frameRate = 0;
  engine->XSeek(3);
  EXPECT_EQ(host.player->calls, std::vector<std::string>{"Seek 6000"});
}

TEST_F(EngineStream, WithoutAPlayerTheClockStaysWhereItIs) {
  engine->XPlay();
  engine->XStopPlay();
  engine->XSeek(3);
}

// --- Late writes ---

class LateWrites : public EngineStream {
 protected:
  INT32 Write(UINT32 position, const Bytes& data) {
    const Bytes place = {static_cast<UINT8>(position >> 24), static_cast<UINT8>(position >> 16),
                         static_cast<UINT8>(position >> 8), static_cast<UINT8>(position)};
    const Bytes bytes = Joined(place, data);
    return engine->AddLateWriteBuffer(MakeBuffer(bytes).get());
  }
};

TEST_F(LateWrites, GoWhereTheyBelong) {
  const Bytes movie = BoxMovie(3);
  Play(movie);
  const UINT32 last = static_cast<UINT32>(movie.size()) - 1;
  EXPECT_EQ(Write(last, {0x77}), ZEM_OK);
  EXPECT_EQ(engine->script[last], 0x77);
}

TEST_F(LateWrites, WaitWhileTheReaderStandsThere) {
  Play(BoxMovie(3));
  const UINT32 reader = static_cast<UINT32>(engine->pos);
  EXPECT_EQ(Write(reader, {0x77}), ZEM_FAILED);
  engine->OnTimeSync(0);
  EXPECT_EQ(Write(reader, {0x77}), ZEM_OK);
}

TEST_F(LateWrites, OutsideOfTheMovieAreRefused) {
  const Bytes movie = BoxMovie(3);
  Play(movie);
  EXPECT_EQ(Write(static_cast<UINT32>(movie.size()), {1}), ZEM_FAILED);
  EXPECT_EQ(Write(0xFFFFFFFF, {1}), ZEM_FAILED);
  EXPECT_EQ(Write(9, {}), ZEM_FAILED);
}

TEST_F(LateWrites, WithoutAPositionAreBadArguments) {
  EXPECT_EQ(engine->AddLateWriteBuffer(nullptr), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(engine->AddLateWriteBuffer(MakeBuffer({1, 2, 3}).get()), ZEM_BAD_ARGUMENT);
}

TEST_F(LateWrites, LinearMoviesTakeNone) {
  OpenLinear();
  EXPECT_EQ(Write(0, {1}), ZEM_FAILED);
}

TEST_F(LateWrites, ForAMovieThatWasReplacedAreDropped) {
  Play(BoxMovie(3));
  engine->GetURL("", "_level0", nullptr, 0);
  EXPECT_EQ(Write(12, {1}), ZEM_OK);
}

// --- One stream behind another ---

TEST_F(EngineStream, LinearStreamBehindANonLinearOneStartsAfresh) {
  Play(BoxMovie(3));
  engine->OnTimeSync(0);
  engine->EndStream();
  engine->StartStream(host.stream.get(), host.player.get());
  const Bytes head = MovieWriter(60, 50, 12).Finish();
  EXPECT_EQ(engine->OnHeader(Header(0, head).get()), ZEM_OK);
  EXPECT_EQ(engine->FindCharacter(1), nullptr);
  EXPECT_EQ(engine->GetMediaSize().width, 60);
  Message(0, Box(1));
  Frame(0, 4, 0, TagStream().PlaceObject(1, 1));
  engine->OnTimeSync(0);
  EXPECT_EQ(engine->bits.width, 60);
  EXPECT_EQ(engine->bits.height, 50);
  EXPECT_EQ(damage.m_lWidth, 60);
  EXPECT_EQ(Pixel(5, 5), 0xC80000u);
  EXPECT_EQ(Stage(), "1 ");
}

TEST_F(EngineStream, SecondLinearHeaderStartsAfresh) {
  OpenLinear();
  Message(0, Box(1));
  Frame(5, 4, 0, TagStream().PlaceObject(1, 1));
  Frame(6);
  EXPECT_EQ(engine->OnHeader(Header(0, MovieWriter(60, 50, 12).Finish()).get()), ZEM_OK);
  EXPECT_EQ(Waiting(), 0u);
  EXPECT_EQ(Stage(), "");
  EXPECT_EQ(engine->FindCharacter(1), nullptr);
  Frame(1);
  EXPECT_EQ(Waiting(), 1u);
}

TEST_F(EngineStream, NonLinearStreamBehindABadOnePlays) {
  Bytes bad = HeadOf(BoxMovie(1));
  bad[0] = 'X';
  Open(kNonLinear, bad);
  EXPECT_EQ(engine->OnHeader(Header(kNonLinear, BoxMovie(3)).get()), ZEM_OK);
  EXPECT_TRUE(engine->loaded);
  EXPECT_EQ(engine->GetMediaSize().width, 100);
}

TEST_F(EngineStream, LinearMessagesAreDroppedOnceTheirMovieIsGone) {
  OpenLinear();
  Message(0, Box(1));
  Frame(0, 4);
  Frame(1, 0, 100, TagStream().PlaceObject(1, 1));
  engine->GetURL("", "_level0", nullptr, 0);
  Message(0, Box(2));
  Frame(2, 4, 0, TagStream().PlaceObject(1, 2));
  engine->OnTimeSync(1000);
  EXPECT_EQ(engine->rootObject, nullptr);
  EXPECT_EQ(engine->FindCharacter(2), nullptr);
}

// --- Calls out of order ---

TEST_F(EngineStream, AnyCallMayComeFirst) {
  engine->EndStream();
  engine->OnTimeSync(5);
  engine->OnPostSeek(1, 2);
  engine->OnEndofPackets();
  engine->HandleCallback(1, 2);
  Packet({0, 1, 2});
  engine->DetachSite();
  engine->AttachSite(nullptr);
  engine->OnCommand(20042);
  engine->Update(3);
  EXPECT_EQ(engine->OnHeader(Header(kNonLinear, BoxMovie(2)).get()), ZEM_OK);
  engine->OnTimeSync(0);
  EXPECT_EQ(engine->CurrentFrame(), 1);
}

TEST_F(EngineStream, AllIsLetGoInTheEnd) {
  Play(BoxMovie(3), 0);
  engine->OnTimeSync(0);
  engine->Shutdown();
  engine = {};
  host.scheduler->timers.clear();
  EXPECT_EQ(host.context->refs(), 1u);
  EXPECT_EQ(host.stream->refs(), 1u);
  EXPECT_EQ(host.menu->response, nullptr);
  engine = new CVexelEngine;
}

}  // namespace
}  // namespace vexel::test
