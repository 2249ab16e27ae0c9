#include <gtest/gtest.h>

#include "host/stream_packets.h"

namespace vexel {
namespace {

using test::Append;
using test::Bytes;
using test::CutHead;
using test::FramedFile;
using test::kEndsInside;
using test::kResent;
using test::kStartsInside;
using test::MakeLostPacket;
using test::PutBig;
using test::Reassembly;

// A head of 20 bytes and frames of the given lengths, all bytes different from
// their neighbours.
FramedFile MakeFile(std::initializer_list<UINT32> lengths) {
  FramedFile file;
  UINT32 end = 20;
  file.bounds.push_back(end);
  for (UINT32 length : lengths) file.bounds.push_back(end += length);
  for (UINT32 i = 0; i < end; ++i) file.bytes.push_back(static_cast<UINT8>(i * 7 + 1));
  return file;
}

Bytes RangeRequest(UINT32 position, UINT32 length) {
  Bytes bytes;
  PutBig(bytes, position, 4);
  PutBig(bytes, length, 4);
  PutBig(bytes, 0, 4);
  return bytes;
}

struct NonLinearReassembly : testing::Test, Reassembly {
  NonLinearReassembly() : Reassembly(true, 20) {}

  Bytes Part(UINT32 p, UINT32 q) const {
    return Bytes(file.bytes.begin() + p, file.bytes.begin() + q);
  }
  INT32 Send(UINT32 p, UINT32 q, bool resent = false) { return Put(file.Cut(p, q, resent)); }
  // All that went out in order.
  Bytes Output() const {
    Bytes all;
    for (const auto& message : handler.messages) Append(all, message.bytes);
    return all;
  }
  Bytes Last() const { return handler.messages.empty() ? Bytes() : handler.messages.back().bytes; }
  size_t Count() const { return handler.messages.size(); }

  // Frames at 20, 120, 150, 180, 220, 1020.
  FramedFile file = MakeFile({100, 30, 30, 40, 800, 60});
};

TEST_F(NonLinearReassembly, BufferWithoutBytesIsAFailure) {
  EXPECT_EQ(reassembler.OnPacket(test::MakeHollowPacket().get(), 0), ZEM_FAILED);
}

TEST_F(NonLinearReassembly, WholeFramesGoOutAsTheyAre) {
  EXPECT_EQ(Put(file.Cut(20, 150), 700, 100), ZEM_OK);
  ASSERT_EQ(Count(), 1u);
  EXPECT_EQ(Last(), Part(20, 150));
  EXPECT_EQ(handler.messages[0].time, 600u);
  EXPECT_TRUE(Requests().empty());
}

TEST_F(NonLinearReassembly, TimesNeverFallBelowZero) {
  Put(file.Cut(20, 150), 50, 100);
  EXPECT_EQ(handler.messages[0].time, 0u);
}

TEST_F(NonLinearReassembly, CutFrameWaitsForItsEnd) {
  Send(20, 140);
  EXPECT_EQ(Output(), Part(20, 120));
  Send(140, 150);
  EXPECT_EQ(Output(), Part(20, 150));
  EXPECT_TRUE(Requests().empty());
}

TEST_F(NonLinearReassembly, FrameMayRunThroughManyPackets) {
  for (UINT32 p = 20; p < 1080; p += 53) Send(p, std::min(p + 53, 1080u));
  EXPECT_EQ(Output(), Part(20, 1080));
  EXPECT_TRUE(handler.lateWrites.empty());
  EXPECT_TRUE(Requests().empty());
}

TEST_F(NonLinearReassembly, MissingFramesBecomeEmptyOnesOfTheSameLength) {
  Send(20, 120);
  // Three frames, 100 bytes, are lost.
  EXPECT_EQ(reassembler.OnPacket(MakeLostPacket().get(), 0), ZEM_OK);
  EXPECT_EQ(Send(220, 1020), ZEM_OK);
  ASSERT_EQ(Count(), 3u);
  const Bytes& dummy = handler.messages[1].bytes;
  ASSERT_EQ(dummy.size(), 100u);
  Bytes expected = {0x40, 0, 0x40, 0, 0x40, 0, 0xFF, 0xF9, 88, 0, 0, 0};
  expected.resize(100);
  EXPECT_EQ(dummy, expected);
  EXPECT_EQ(Last(), Part(220, 1020));
  EXPECT_EQ(Requests(), std::vector<Bytes>{RangeRequest(120, 100)});
  // As if nothing had happened:
  Send(1020, 1080);
  EXPECT_EQ(Last(), Part(1020, 1080));
  EXPECT_EQ(Count(), 4u);
  EXPECT_EQ(Requests().size(), 1u);
}

TEST_F(NonLinearReassembly, GapFromAnUnfinishedFrameIsFilledFromThatFrameOn) {
  Send(20, 140);  // 120 to 140 wait
  Send(180, 220);
  EXPECT_EQ(handler.messages[1].bytes.size(), 60u) << "120 to 180";
  EXPECT_EQ(Output().size(), 200u);
  EXPECT_EQ(Requests(), std::vector<Bytes>{RangeRequest(140, 40)});
}

TEST_F(NonLinearReassembly, FrameWhoseStartIsMissingBecomesEmpty) {
  Send(20, 120);
  Send(140, 180);  // the start of frame 1 is lost
  EXPECT_EQ(handler.messages[1].bytes.size(), 30u);
  EXPECT_EQ(handler.messages[1].bytes[0], 0x40);
  EXPECT_EQ(Last(), Part(150, 180));
  EXPECT_TRUE(handler.lateWrites.empty());
}

TEST_F(NonLinearReassembly, FrameCompleteBehindAGapIsWrittenAtOnce) {
  Send(20, 120);
  // 120 to 180 lost; the packet that begins frame 3 comes, then its end.
  Send(180, 200);
  Send(200, 220);
  EXPECT_EQ(Output().size(), 200u) << "frames 1 to 3 are filled";
  ASSERT_EQ(handler.lateWrites.size(), 1u);
  EXPECT_EQ(handler.lateWrites[0].position, 180u);
  EXPECT_EQ(handler.lateWrites[0].bytes, Part(180, 220));
}

TEST_F(NonLinearReassembly, ResentFrameInTheMapGivesOneLateWrite) {
  Send(20, 120);
  Send(140, 180);  // frame 1 lacks 120 to 140
  Send(120, 140, true);
  ASSERT_EQ(handler.lateWrites.size(), 1u);
  EXPECT_EQ(handler.lateWrites[0].position, 120u);
  EXPECT_EQ(handler.lateWrites[0].bytes, Part(120, 150));
  EXPECT_EQ(Count(), 3u) << "nothing more goes out in order";
}

TEST_F(NonLinearReassembly, ResentWholeFramesAreWrittenAtOnceWithoutAMessage) {
  Send(20, 120);
  Send(220, 1020);
  Send(120, 220, true);
  ASSERT_EQ(handler.lateWrites.size(), 1u);
  EXPECT_EQ(handler.lateWrites[0].position, 120u);
  EXPECT_EQ(handler.lateWrites[0].bytes, Part(120, 220));
}

TEST_F(NonLinearReassembly, ResentPartOfAFrameThatNobodyCollectsIsDropped) {
  Send(20, 120);
  Send(220, 1020);
  EXPECT_EQ(Send(120, 140, true), ZEM_OK);
  EXPECT_EQ(Send(140, 150, true), ZEM_OK);
  EXPECT_TRUE(handler.lateWrites.empty());
}

TEST_F(NonLinearReassembly, ResentPacketWithAllThreeKindsOfParts) {
  Send(20, 130);   // a part of frame 1
  Send(140, 170);  // its end is there, 130 to 140 is missing; frame 2 begins
  Send(220, 300);  // 170 to 220 is missing; frame 4 begins
  handler.lateWrites.clear();
  Send(130, 300, true);
  ASSERT_EQ(handler.lateWrites.size(), 2u);
  EXPECT_EQ(handler.lateWrites[0].position, 120u);
  EXPECT_EQ(handler.lateWrites[0].bytes, Part(120, 150));
  EXPECT_EQ(handler.lateWrites[1].position, 150u);
  EXPECT_EQ(handler.lateWrites[1].bytes, Part(150, 220));
}

TEST_F(NonLinearReassembly, ResentTwiceIsWrittenTwice) {
  Send(20, 120);
  Send(140, 180);
  Send(120, 140, true);
  Send(120, 140, true);
  ASSERT_EQ(handler.lateWrites.size(), 2u);
  EXPECT_EQ(handler.lateWrites[1].bytes, Part(120, 150));
}

TEST_F(NonLinearReassembly, ResendOfWhatWasNeverLostChangesNothing) {
  Send(20, 150);
  Send(20, 150, true);
  ASSERT_EQ(handler.lateWrites.size(), 1u);
  EXPECT_EQ(handler.lateWrites[0].bytes, Part(20, 150));
  Send(150, 220);
  EXPECT_EQ(Output(), Part(20, 220));
  EXPECT_TRUE(Requests().empty());
}

TEST_F(NonLinearReassembly, EachPartOfACutFrameMayBeTheOneThatIsLost) {
  // Frame 4 in four parts: 220, 400, 600, 800 to 1020.
  const UINT32 cuts[] = {220, 400, 600, 800, 1020};
  for (int lost = 0; lost < 4; ++lost) {
    Reassembly one(true, 20);
    one.Put(file.Cut(20, 220));
    for (int part = 0; part < 4; ++part) {
      if (part != lost) one.Put(file.Cut(cuts[part], cuts[part + 1]));
    }
    one.Put(file.Cut(1020, 1080));
    size_t sent = 0;
    for (const auto& message : one.handler.messages) sent += message.bytes.size();
    EXPECT_EQ(sent, 1060u) << lost;
    EXPECT_EQ(one.Requests().size(), 1u) << lost;
    // Sent again as it was cut, and whole. The last part was never expected,
    // since nobody knew that the frame went on after it: its frame is filled.
    one.Put(file.Cut(cuts[lost], cuts[lost + 1], true));
    one.Put(file.Cut(220, 1020, true));
    ASSERT_FALSE(one.handler.lateWrites.empty()) << lost;
    for (const auto& write : one.handler.lateWrites) {
      EXPECT_EQ(write.position, 220u);
      EXPECT_EQ(write.bytes, Part(220, 1020));
    }
    EXPECT_EQ(one.handler.lateWrites.size(), 2u) << lost;
  }
}

TEST_F(NonLinearReassembly, GapOfOneFrameAndThreeBytesIsRefused) {
  IZEMBuffer* out = nullptr;
  EXPECT_EQ(reassembler.CreateDummyFrames(100, 103, 5, 6, out), ZEM_FAILED);
  EXPECT_EQ(out, nullptr);
}

TEST_F(NonLinearReassembly, GapOfTwoFramesAndSixBytesTakesAnEmptyShortTag) {
  test::Ptr<IZEMBuffer> out;
  ASSERT_EQ(reassembler.CreateDummyFrames(100, 106, 5, 7, out.Out()), ZEM_OK);
  EXPECT_EQ(test::BytesOf(out.get()), Bytes({0x40, 0, 0x40, 0, 0xC0, 0xF9}));
}

TEST_F(NonLinearReassembly, GapOfTwoBytesAFrameIsFilledWithEndsOfFrames) {
  test::Ptr<IZEMBuffer> out;
  ASSERT_EQ(reassembler.CreateDummyFrames(100, 104, 5, 7, out.Out()), ZEM_OK);
  EXPECT_EQ(test::BytesOf(out.get()), Bytes({0x40, 0, 0x40, 0}));
}

TEST_F(NonLinearReassembly, FillerTagIsShortUpToFiveBytes) {
  const Bytes expected[] = {
      {0xC0, 0xF9},          {0xC1, 0xF9, 0},          {0xC2, 0xF9, 0, 0},
      {0xC3, 0xF9, 0, 0, 0}, {0xFF, 0xF9, 0, 0, 0, 0}, {0xFF, 0xF9, 1, 0, 0, 0, 0}};
  for (UINT32 rest = 2; rest <= 7; ++rest) {
    test::Ptr<IZEMBuffer> out;
    ASSERT_EQ(reassembler.CreateDummyFrames(0, rest, 3, 3, out.Out()), ZEM_OK);
    EXPECT_EQ(test::BytesOf(out.get()), expected[rest - 2]);
  }
  test::Ptr<IZEMBuffer> out;
  ASSERT_EQ(reassembler.CreateDummyFrames(0, 0x10206, 0, 0, out.Out()), ZEM_OK);
  const Bytes bytes = test::BytesOf(out.get());
  EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 6), Bytes({0xFF, 0xF9, 0, 2, 1, 0}));
}

TEST_F(NonLinearReassembly, DummyFramesReplaceWhatTheyAreGiven) {
  test::Ptr<IZEMBuffer> old = test::MakeBuffer({1});
  IZEMBuffer* out = old.get();
  out->AddRef();
  ASSERT_EQ(reassembler.CreateDummyFrames(0, 2, 0, 1, out), ZEM_OK);
  EXPECT_NE(out, old.get());
  out->Release();
  old->AddRef();
  EXPECT_EQ(old->Release(), 1u) << "what was there is released";
}

TEST_F(NonLinearReassembly, RangesThatGoBackwardHaveNoDummyFrames) {
  IZEMBuffer* out = nullptr;
  EXPECT_EQ(reassembler.CreateDummyFrames(100, 100, 0, 0, out), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(reassembler.CreateDummyFrames(100, 99, 0, 1, out), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(reassembler.CreateDummyFrames(100, 200, 2, 1, out), ZEM_BAD_ARGUMENT);
  // More frames than any gap could hold do not wrap.
  EXPECT_EQ(reassembler.CreateDummyFrames(0, 2, 0, 0x80000001, out), ZEM_FAILED);
}

TEST_F(NonLinearReassembly, LateWriteNeedsBytes) {
  IZEMBuffer* out = nullptr;
  const UINT8 byte = 9;
  EXPECT_EQ(reassembler.CreateLateWriteBuffer(5, nullptr, 1, out), ZEM_UNEXPECTED);
  EXPECT_EQ(reassembler.CreateLateWriteBuffer(5, &byte, 0, out), ZEM_UNEXPECTED);
  ASSERT_EQ(reassembler.CreateLateWriteBuffer(0x01020304, &byte, 1, out), ZEM_OK);
  EXPECT_EQ(test::BytesOf(out), Bytes({1, 2, 3, 4, 9}));
  out->Release();
}

TEST_F(NonLinearReassembly, PacketFromBehindAsksWithTheWrappedLengthAndSetsThePosition) {
  Send(20, 180);
  Send(120, 150);
  EXPECT_EQ(Requests(), std::vector<Bytes>{RangeRequest(180, 120u - 180u)});
  EXPECT_EQ(Last(), Part(120, 150)) << "its bytes go out a second time";
  Send(150, 180);
  EXPECT_EQ(Requests().size(), 1u) << "expected from itself on";
}

TEST_F(NonLinearReassembly, RequestsLeaveAtTheEndOfTheCall) {
  struct Watch final : test::Fake<IZEMBackChannel> {
    Watch() : Fake(IID_IZEMBackChannel) {}
    INT32 Send(IZEMPacket*) override {
      messages = handler->messages.size();
      return ZEM_OK;
    }
    const test::RecordingHandler* handler = nullptr;
    size_t messages = 0;
  };
  const auto watch = test::New<Watch>();
  watch->handler = &handler;
  reassembler.SetStream(stream.get(), watch.get());
  Send(220, 1020);
  EXPECT_EQ(watch->messages, 2u);
}

TEST_F(NonLinearReassembly, BitThreeAloneIsDroppedUnread) {
  Bytes packet = file.Cut(20, 120);
  packet[8] |= test::kUnknown;
  EXPECT_EQ(Put(packet), ZEM_OK);
  EXPECT_EQ(Count(), 0u);
  packet[8] |= kResent;
  Put(packet);
  EXPECT_EQ(handler.lateWrites.size(), 1u) << "with bit 2 it is a resend";
  Send(20, 120);
  EXPECT_TRUE(Requests().empty()) << "and no position has moved";
}

TEST_F(NonLinearReassembly, PacketWithoutBufferOrHeadFails) {
  test::Ptr<IZEMPacket> bare = test::MakePacket({});
  bare->Set(nullptr, 0, 0, 0, 0);
  EXPECT_EQ(reassembler.OnPacket(bare.get(), 0), ZEM_FAILED);
  EXPECT_EQ(Put(Bytes(15)), ZEM_FAILED);
  EXPECT_EQ(reassembler.OnPacket(nullptr, 0), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(Count(), 0u);
}

TEST_F(NonLinearReassembly, LengthsInTheHeadEndAtThePayload) {
  CutHead head;
  head.position = 25;
  head.first = 0;
  head.last = 2;
  head.flags = kStartsInside | kEndsInside;
  head.headOffset = 5;
  head.headLength = 60000;
  head.tailStart = 60000;
  EXPECT_EQ(Put(head.With(Bytes(10, 1))), ZEM_OK);
  for (const auto& message : handler.messages) EXPECT_LE(message.bytes.size(), 15u);
}

TEST_F(NonLinearReassembly, WholeFramesThatEndBeforeTheyStartSendNothing) {
  Send(20, 130);
  CutHead head;
  head.position = 130;
  head.first = 1;
  head.last = 3;
  head.flags = kStartsInside | kEndsInside;
  head.headOffset = 10;
  head.headLength = 20;
  head.tailStart = 5;
  const size_t before = Count();
  Put(head.With(Bytes(90, 1)));
  EXPECT_EQ(Count(), before + 1) << "frame 1 alone";
}

TEST_F(NonLinearReassembly, DamagedHeadsNeverReadOutside) {
  reassembler.SetFileStart(20, 1080);
  const Bytes packet = file.Cut(140, 300);
  for (size_t at = 0; at < 16; ++at) {
    for (int value = 0; value < 256; ++value) {
      Bytes damaged = packet;
      damaged[at] = static_cast<UINT8>(value);
      Put(damaged);
      damaged.resize(20);
      Put(damaged);
    }
  }
}

TEST_F(NonLinearReassembly, PacketsBeyondTheDeclaredLengthAreDropped) {
  reassembler.SetFileStart(20, 1080);
  CutHead head;
  head.position = 1081;
  head.first = head.last = 9;
  EXPECT_EQ(Put(head.With({1, 2})), ZEM_OK);
  EXPECT_EQ(Count(), 0u);
  EXPECT_TRUE(Requests().empty());
  Send(1020, 1080);
  EXPECT_EQ(Output().size(), 1060u);
}

TEST_F(NonLinearReassembly, WithoutALengthPacketsMayLeapSixtyFourMegabytes) {
  CutHead head;
  head.first = head.last = 3;
  head.position = 20 + (64u << 20) + 1;
  Put(head.With({1, 2}));
  EXPECT_EQ(Count(), 0u);
  head.position -= 1;
  Put(head.With({1, 2}));
  ASSERT_EQ(Count(), 2u);
  EXPECT_EQ(handler.messages[0].bytes.size(), 64u << 20);
}

TEST_F(NonLinearReassembly, WithoutMemoryTheCallSaysSo) {
  factory->failAfter = 0;
  EXPECT_EQ(Send(20, 120), ZEM_OUT_OF_MEMORY);
  factory->failAfter = -1;
  Send(120, 150);
  EXPECT_EQ(handler.messages.size(), 2u) << "the gap is filled";
}

TEST_F(NonLinearReassembly, NobodyAsksForLostCharacters) {
  reassembler.RequestLostCharacter(5, 1);
  EXPECT_TRUE(Requests().empty());
}

TEST_F(NonLinearReassembly, LostLastPacketIsNoticedByNobody) {
  Send(20, 1020);
  reassembler.OnPacket(MakeLostPacket().get(), 0);
  EXPECT_TRUE(Requests().empty());
  EXPECT_EQ(Output(), Part(20, 1020));
}

// A source that answers requests, over a way that loses packets.
struct Simulation {
  explicit Simulation(unsigned seed) : random(seed) {}

  unsigned Random(unsigned range) {
    random = random * 1664525 + 1013904223;
    return static_cast<unsigned>((random >> 33) % range);
  }

  // What stands in the file after everything went through, with what went out
  // in order behind each other and late writes at their places.
  Bytes Run(const FramedFile& file, int lossPercent, bool wholeFrames) {
    Reassembly one(true, file.bounds[0], static_cast<UINT32>(file.bytes.size()));
    std::vector<Bytes> answers;
    std::vector<test::RecordingHandler::LateWrite> waiting;
    size_t seen = 0, messages = 0, writes = 0;
    Bytes result(file.bytes.begin(), file.bytes.begin() + file.bounds[0]);
    const auto apply = [&] {
      for (; messages < one.handler.messages.size(); ++messages) {
        Append(result, one.handler.messages[messages].bytes);
      }
      for (; writes < one.handler.lateWrites.size(); ++writes) {
        waiting.push_back(one.handler.lateWrites[writes]);
      }
      // What has not gone out can't be written over yet.
      std::erase_if(waiting, [&](const auto& write) {
        if (write.position + write.bytes.size() > result.size()) return false;
        std::copy(write.bytes.begin(), write.bytes.end(), result.begin() + write.position);
        return true;
      });
      const auto requests = one.Requests();
      for (; seen < requests.size(); ++seen) {
        const Bytes& r = requests[seen];
        UINT32 from = UINT32{r[0]} << 24 | r[1] << 16 | r[2] << 8 | r[3];
        UINT32 to = from + (UINT32{r[4]} << 24 | r[5] << 16 | r[6] << 8 | r[7]);
        if (wholeFrames) {
          from = file.bounds[file.FrameOf(from)];
          to = file.bounds[file.FrameOf(to - 1) + 1];
        }
        answers.push_back(file.Cut(from, to, true));
      }
    };
    const UINT32 size = static_cast<UINT32>(file.bytes.size());
    for (UINT32 p = file.bounds[0]; p < size;) {
      const UINT32 q = std::min(size, p + 1 + Random(200));
      // The last packet always comes: nobody would notice.
      if (q == size || static_cast<int>(Random(100)) >= lossPercent) {
        one.Put(file.Cut(p, q));
      } else {
        one.reassembler.OnPacket(MakeLostPacket().get(), 0);
      }
      apply();
      if (!answers.empty() && Random(3) == 0) {
        one.Put(answers.front());
        answers.erase(answers.begin());
        apply();
      }
      p = q;
    }
    for (const Bytes& answer : answers) one.Put(answer);
    answers.clear();
    apply();
    return result;
  }

  uint64_t random;
};

FramedFile RandomFile(Simulation& simulation) {
  FramedFile file;
  UINT32 end = 20;
  file.bounds.push_back(end);
  const unsigned frames = 1 + simulation.Random(60);
  // Long enough for the filling, as frames with a tag besides their end are.
  for (unsigned i = 0; i < frames; ++i) file.bounds.push_back(end += 4 + simulation.Random(300));
  for (UINT32 i = 0; i < end; ++i) file.bytes.push_back(static_cast<UINT8>(simulation.Random(256)));
  return file;
}

TEST(NonLinearSimulation, WithoutLossEveryByteGoesOutOnce) {
  for (unsigned seed = 1; seed <= 100; ++seed) {
    Simulation simulation(seed);
    const FramedFile file = RandomFile(simulation);
    ASSERT_EQ(simulation.Run(file, 0, true), file.bytes) << seed;
  }
}

TEST(NonLinearSimulation, LossIsMendedByAnswersOfWholeFrames) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    Simulation simulation(seed);
    const FramedFile file = RandomFile(simulation);
    ASSERT_EQ(simulation.Run(file, 20, true), file.bytes) << seed;
  }
}

TEST(NonLinearSimulation, LengthsHoldWhateverTheAnswersAre) {
  int mended = 0;
  for (unsigned seed = 1; seed <= 300; ++seed) {
    Simulation simulation(seed);
    const FramedFile file = RandomFile(simulation);
    const Bytes result = simulation.Run(file, 20, false);
    ASSERT_EQ(result.size(), file.bytes.size()) << seed;
    mended += result == file.bytes;
  }
  EXPECT_GT(mended, 150) << "a frame all of whose parts were lost stays empty";
}

}  // namespace
}  // namespace vexel
