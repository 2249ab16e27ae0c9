#include <gtest/gtest.h>

#include "host/stream_packets.h"

namespace vexel {
namespace {

using test::Bytes;
using test::FragmentRecord;
using test::Join;
using test::MakeLostPacket;
using test::Reassembly;
using test::WholeRecord;

struct LinearReassembly : testing::Test, Reassembly {
  LinearReassembly() : Reassembly(false) {}
  // The message that came out last.
  Bytes Last() const { return handler.messages.empty() ? Bytes() : handler.messages.back().bytes; }
  size_t Count() const { return handler.messages.size(); }
};

TEST_F(LinearReassembly, ThreeRecordsGiveThreeMessagesWithTheirTimes) {
  EXPECT_EQ(
      Put(Join({WholeRecord(100, {1}), WholeRecord(200, {2, 2}), WholeRecord(300, {3, 3, 3})}), 0,
          30),
      ZEM_OK);
  ASSERT_EQ(Count(), 3u);
  EXPECT_EQ(handler.messages[0].bytes, Bytes({1}));
  EXPECT_EQ(handler.messages[0].time, 70u);
  EXPECT_EQ(handler.messages[1].bytes, Bytes({2, 2}));
  EXPECT_EQ(handler.messages[1].time, 170u);
  EXPECT_EQ(handler.messages[2].time, 270u);
  EXPECT_EQ(handler.offsets, 0) << "messages carry their times; no offset is passed on";
}

TEST_F(LinearReassembly, BufferWithoutBytesIsPassedOver) {
  EXPECT_EQ(reassembler.OnPacket(test::MakeHollowPacket().get(), 0), ZEM_OK);
  EXPECT_EQ(Count(), 0u);
}

TEST_F(LinearReassembly, PacketFromInsideTheClassFactoryIsRefused) {
  INT32 inside = ZEM_OK;
  test::g_inside = [&] {
    test::g_inside = nullptr;
    inside = Put(WholeRecord(0, {2}));
  };
  EXPECT_EQ(Put(WholeRecord(0, {1})), ZEM_OK);
  EXPECT_EQ(inside, ZEM_UNEXPECTED);
  EXPECT_EQ(Count(), 1u);
}

TEST_F(LinearReassembly, PacketOfARequestIsMadeBeforeItsBuffer) {
  Put(FragmentRecord(5, 0, {1}, false));
  factory->failAfter = 1;
  reassembler.RequestLostCharacter(5, 0);
  EXPECT_EQ(factory->made, 1);
  EXPECT_TRUE(backChannel->sent.empty());
}

TEST_F(LinearReassembly, TimesBeforeTheStartAreDueAtOnce) {
  Put(WholeRecord(100, {1}), 0, 101);
  EXPECT_EQ(handler.messages[0].time, 0u);
  Put(WholeRecord(100, {1}), 0, -50);
  EXPECT_EQ(handler.messages[1].time, 150u);
}

TEST_F(LinearReassembly, FragmentsLastFirstGiveOneMessage) {
  Put(FragmentRecord(9, 4, {5, 6}, true));
  Put(FragmentRecord(9, 2, {3, 4}, false));
  EXPECT_EQ(Count(), 0u);
  Put(FragmentRecord(9, 0, {1, 2}, false));
  ASSERT_EQ(Count(), 1u);
  EXPECT_EQ(Last(), Bytes({1, 2, 3, 4, 5, 6}));
}

TEST_F(LinearReassembly, FragmentedMessageIsDueAtOnce) {
  Put(FragmentRecord(9, 0, {1}, true), 5000, 20);
  EXPECT_EQ(handler.messages[0].time, 0u);
}

TEST_F(LinearReassembly, FragmentThatArrivesTwiceLeavesTheMessageRight) {
  Put(FragmentRecord(9, 0, {1, 2}, false));
  Put(FragmentRecord(9, 0, {1, 2}, false));
  Put(FragmentRecord(9, 2, {3}, true));
  EXPECT_EQ(Last(), Bytes({1, 2, 3}));
}

TEST_F(LinearReassembly, FirstFragmentStandsAtTheStartWhateverItsOffsetSays) {
  Bytes record = FragmentRecord(9, 0, {1, 2}, true);
  record[7] = 99;
  Put(record);
  EXPECT_EQ(Last(), Bytes({1, 2}));
}

TEST_F(LinearReassembly, NewHighIdentifierDestroysTheUnfinishedOneBefore) {
  Put(FragmentRecord(60000, 0, {1}, false));
  Put(FragmentRecord(60001, 0, {2}, false));
  Put(FragmentRecord(60000, 1, {1}, true));  // begins anew, and destroys 60001
  EXPECT_EQ(Count(), 0u);
  Put(FragmentRecord(60001, 1, {2}, true));
  EXPECT_EQ(Count(), 0u);
}

TEST_F(LinearReassembly, IdentifiersUpTo59999NeverDestroyEachOther) {
  Put(FragmentRecord(59998, 0, {1}, false));
  Put(FragmentRecord(59999, 0, {2}, false));
  Put(FragmentRecord(60000, 0, {3}, false));
  Put(FragmentRecord(59998, 1, {1}, true));
  Put(FragmentRecord(59999, 1, {2}, true));
  Put(FragmentRecord(60000, 1, {3}, true));
  ASSERT_EQ(Count(), 3u);
  EXPECT_EQ(Last(), Bytes({3, 3}));
}

TEST_F(LinearReassembly, FinishedHighIdentifierIsForgotten) {
  Put(FragmentRecord(60000, 0, {1}, true));
  Put(FragmentRecord(60001, 0, {2}, true));
  Put(FragmentRecord(60000, 0, {3}, true));
  EXPECT_EQ(Count(), 3u);
}

TEST_F(LinearReassembly, RecordLongerThanThePacketEndsIt) {
  Bytes packet = Join({WholeRecord(0, {1}), WholeRecord(0, {2}), WholeRecord(0, {3})});
  packet[9 + 1] = 200;
  EXPECT_EQ(Put(packet), ZEM_OK);
  EXPECT_EQ(Count(), 1u);
}

TEST_F(LinearReassembly, RecordThatOverrunsTheRestEndsThePacket) {
  Bytes packet = Join({WholeRecord(0, {1}), WholeRecord(0, {2})});
  packet[9 + 1] = 2;  // less than the packet is long, more than is left
  Put(packet);
  EXPECT_EQ(Count(), 1u);
  Put(Join({WholeRecord(0, {5}), Bytes{0, 1, 0, 0, 0, 0, 0}}));  // and half a head
  EXPECT_EQ(Last(), Bytes({5}));
}

TEST_F(LinearReassembly, DamagedLengthsNeverReadOutside) {
  const Bytes packet =
      Join({WholeRecord(0, Bytes(30, 1)), FragmentRecord(3, 0, Bytes(30, 2), true)});
  for (size_t at = 0; at < packet.size(); ++at) {
    for (int value = 0; value < 256; value += 5) {
      Bytes damaged = packet;
      damaged[at] = static_cast<UINT8>(value);
      EXPECT_EQ(Put(damaged), ZEM_OK);
    }
  }
}

TEST_F(LinearReassembly, PacketTwiceGivesItsMessagesTwice) {
  const Bytes packet = Join({WholeRecord(5, {1}), FragmentRecord(3, 0, {2}, true)});
  Put(packet);
  Put(packet);
  EXPECT_EQ(Count(), 4u);
}

TEST_F(LinearReassembly, LostAndEmptyPacketsAreIgnored) {
  EXPECT_EQ(reassembler.OnPacket(MakeLostPacket().get(), 0), ZEM_OK);
  test::Ptr<IZEMPacket> bare = test::MakePacket({});
  bare->Set(nullptr, 0, 0, 0, 0);
  EXPECT_EQ(reassembler.OnPacket(bare.get(), 0), ZEM_OK);
  EXPECT_EQ(Put({}), ZEM_OK);
  EXPECT_EQ(reassembler.OnPacket(nullptr, 0), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(Count(), 0u);
}

TEST_F(LinearReassembly, AsksForAWholeCharacterThatNobodyCollects) {
  stream->number = 0x10007;
  reassembler.RequestLostCharacter(0x1234, 0);
  ASSERT_EQ(Requests().size(), 1u);
  EXPECT_EQ(Requests()[0], Bytes({3, 0x34, 0x12, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
  IZEMPacket* packet = backChannel->sent[0].get();
  EXPECT_EQ(packet->GetStreamNumber(), 7) << "the low 16 bits";
  EXPECT_EQ(packet->GetQRSFlags(), 1);
  EXPECT_EQ(packet->GetQRSRuleNumber(), 0);
  EXPECT_EQ(packet->GetTime(), 0u);
}

TEST_F(LinearReassembly, AsksForTheHolesOfACharacterThatIsBeingCollected) {
  Put(FragmentRecord(5, 0, {0x10, 1}, false));
  Put(FragmentRecord(5, 4, {5}, true));
  reassembler.RequestLostCharacter(5, 0);
  EXPECT_EQ(Requests()[0], Bytes({3, 5, 0, 0, 0, 0, 2, 0, 0, 0, 2}));
  Put(FragmentRecord(5, 2, {3, 4}, false));
  EXPECT_EQ(Last(), Bytes({0x14, 1, 3, 4, 5})) << "marked as an answer";
}

TEST_F(LinearReassembly, SecondRequestWithinTenSecondsSendsNothing) {
  reassembler.RequestLostCharacter(5, 1000);
  reassembler.RequestLostCharacter(5, 11000);
  EXPECT_EQ(Requests().size(), 1u);
  reassembler.RequestLostCharacter(5, 11001);
  EXPECT_EQ(Requests().size(), 2u);
  reassembler.RequestLostCharacter(6, 11001);
  EXPECT_EQ(Requests().size(), 3u) << "each character has its own time";
}

TEST_F(LinearReassembly, RequestFromTheFutureCountsAsNever) {
  reassembler.RequestLostCharacter(5, 50000);
  reassembler.RequestLostCharacter(5, 49999);
  EXPECT_EQ(Requests().size(), 2u);
}

TEST_F(LinearReassembly, After2048IdentifiersNewOnesAreAskedForAtEveryCall) {
  for (int id = 0; id < 2048; ++id) reassembler.RequestLostCharacter(static_cast<UINT16>(id), 1);
  for (int i = 0; i < 3; ++i) reassembler.RequestLostCharacter(3000, 2);
  EXPECT_EQ(Requests().size(), 2051u);
  reassembler.RequestLostCharacter(2047, 2);
  EXPECT_EQ(Requests().size(), 2051u);
}

TEST_F(LinearReassembly, WithoutAWayBackNothingIsAskedFor) {
  reassembler.SetStream(stream.get(), nullptr);
  reassembler.RequestLostCharacter(5, 1);
  reassembler.SetStream(nullptr, backChannel.get());
  reassembler.RequestLostCharacter(5, 1);
  EXPECT_TRUE(Requests().empty());
  reassembler.SetStream(stream.get(), backChannel.get());
  reassembler.RequestLostCharacter(5, 1);
  EXPECT_EQ(Requests().size(), 1u) << "what was not sent does not count";
}

TEST_F(LinearReassembly, HeaderForgetsWhatAnEarlierStreamLeft) {
  Put(FragmentRecord(5, 0, {1}, false));
  reassembler.RequestLostCharacter(5, 1);
  reassembler.StartHeader(false, 0);
  Put(FragmentRecord(5, 1, {2}, true));
  EXPECT_EQ(Count(), 0u);
  reassembler.RequestLostCharacter(6, 1);
  reassembler.RequestLostCharacter(5, 1);
  EXPECT_EQ(Requests().size(), 3u);
}

TEST_F(LinearReassembly, EmptyMessagesBehindTheLimitLeaveNothingBehind) {
  for (int id = 0; id < 60000; id += 7) {
    Put(FragmentRecord(static_cast<UINT16>(id), 0x7FFFFFFF, {1}, true));
  }
  EXPECT_EQ(Count(), 0u);
  reassembler.RequestLostCharacter(7, 1);
  EXPECT_EQ(Requests()[0].size(), 11u);
}

TEST_F(LinearReassembly, WithoutMemoryThePacketGoesOn) {
  factory->failAfter = 1;  // a buffer, and no packet
  EXPECT_EQ(Put(WholeRecord(0, {1})), ZEM_OK);
  factory->failAfter = -1;
  EXPECT_EQ(Count(), 0u);
  Put(WholeRecord(0, {2}));
  EXPECT_EQ(Last(), Bytes({2}));
}

}  // namespace
}  // namespace vexel
