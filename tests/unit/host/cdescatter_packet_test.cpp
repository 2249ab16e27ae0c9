#include "host/cdescatter_packet.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vexel {
namespace {

using test::Bytes;
using test::BytesOf;
using test::New;
using test::Ptr;

struct CDeScatterPacketTest : testing::Test {
  bool Put(UINT32 offset, const Bytes& bytes, bool isLast = false) {
    return packet.SetFragment(bytes.data(), offset, static_cast<UINT32>(bytes.size()), isLast);
  }
  // "start+length" of each hole.
  std::string Holes() const {
    std::string text;
    for (INT32 i = 0; i < packet.m_nMissing; ++i) {
      if (i) text += ' ';
      text += std::to_string(packet.m_Missing[i].start) + "+";
      const UINT32 length = packet.m_Missing[i].length;
      text += length == CDeScatterPacket::kOpenEnd ? "open" : std::to_string(length);
    }
    return text;
  }
  Bytes Message() const { return Bytes(packet.m_pData, packet.m_pData + packet.m_ulTotal); }
  Bytes Request() {
    Ptr<IZEMBuffer> out;
    EXPECT_EQ(packet.GetResendRequest(out.Out()), ZEM_OK);
    return BytesOf(out.get());
  }

  Ptr<test::FakeFactory> factory = New<test::FakeFactory>();
  CDeScatterPacket packet{factory.get(), 0x1234};
};

TEST_F(CDeScatterPacketTest, BeginsWithOneOpenHole) {
  EXPECT_EQ(Holes(), "0+open");
  EXPECT_FALSE(packet.IsComplete());
}

TEST_F(CDeScatterPacketTest, FragmentsInOrderMoveTheHoleOn) {
  Put(0, {1, 2, 3});
  EXPECT_EQ(Holes(), "3+open");
  Put(3, {4, 5});
  EXPECT_EQ(Holes(), "5+open");
  Put(5, {6}, true);
  EXPECT_TRUE(packet.IsComplete());
  EXPECT_EQ(Message(), Bytes({1, 2, 3, 4, 5, 6}));
}

TEST_F(CDeScatterPacketTest, FragmentsLastFirstCloseTheHoleFromBehind) {
  Put(4, {5, 6}, true);
  EXPECT_EQ(Holes(), "0+4");
  Put(2, {3, 4});
  EXPECT_EQ(Holes(), "0+2");
  Put(0, {1, 2});
  EXPECT_EQ(Holes(), "");
  EXPECT_EQ(Message(), Bytes({1, 2, 3, 4, 5, 6}));
}

TEST_F(CDeScatterPacketTest, FragmentInsideAnOpenHoleSplitsIt) {
  Put(10, {1, 2});
  EXPECT_EQ(Holes(), "0+10 12+open");
}

TEST_F(CDeScatterPacketTest, FragmentInsideAKnownHoleLeavesAPhantom) {
  Put(20, {1, 1}, true);
  Put(5, {1, 2, 3});
  // Not "8+12", the exact tail.
  EXPECT_EQ(Holes(), "0+5 8+17");
  Put(0, Bytes(5, 1));
  Put(8, Bytes(12, 1));
  EXPECT_EQ(Holes(), "20+5") << "over bytes that have come";
  Put(20, {1, 1}, true);  // the answer to a request, cut at the message's end
  EXPECT_TRUE(packet.IsComplete());
}

TEST_F(CDeScatterPacketTest, MiddleAfterTheLastLeavesAHoleThatOnlyAResendCloses) {
  Put(30, {9}, true);
  Put(10, Bytes(5, 1));
  EXPECT_EQ(Holes(), "0+10 15+25");
  Put(20, Bytes(10, 2));
  EXPECT_EQ(Holes(), "0+10 15+5 30+15");
  Put(0, Bytes(10, 3));
  Put(15, Bytes(5, 4));
  EXPECT_EQ(Holes(), "30+15");
  EXPECT_EQ(packet.m_ulReceived, packet.m_ulTotal) << "and yet every byte is there";
  Put(30, {9}, true);
  EXPECT_TRUE(packet.IsComplete());
}

TEST_F(CDeScatterPacketTest, HolesBehindTheEndAreDropped) {
  Put(50, {1});
  EXPECT_EQ(Holes(), "0+50 51+open");
  Put(10, {2}, true);  // the end lies before what came
  EXPECT_EQ(Holes(), "0+10");
  Put(0, Bytes(10, 3));
  EXPECT_TRUE(packet.IsComplete());
  EXPECT_EQ(Message().size(), 11u);
}

TEST_F(CDeScatterPacketTest, FragmentThatArrivesTwiceIsCountedTwiceAndChangesNoHole) {
  Put(0, {1, 2, 3});
  EXPECT_EQ(packet.m_ulReceived, 3u);
  Put(0, {1, 2, 3});
  EXPECT_EQ(packet.m_ulReceived, 6u);
  EXPECT_EQ(Holes(), "3+open");
  Put(3, {4}, true);
  EXPECT_EQ(packet.m_ulTotal, 4u) << "the message's length is right all the same";
}

TEST_F(CDeScatterPacketTest, FragmentWiderThanItsHoleTouchesThatHoleOnly) {
  Put(2, {3, 4});
  Put(6, {7, 8});
  EXPECT_EQ(Holes(), "0+2 4+2 8+open");
  Put(0, Bytes(8, 1));
  EXPECT_EQ(Holes(), "4+2 8+open") << "its length ends at 0";
}

TEST_F(CDeScatterPacketTest, SeventeenthHoleIsRefusedUncounted) {
  for (UINT32 i = 1; i <= 15; ++i) ASSERT_TRUE(Put(i * 10, {1}));
  ASSERT_EQ(packet.m_nMissing, 16);
  const std::string holes = Holes();
  EXPECT_FALSE(Put(500, {1}));
  EXPECT_EQ(Holes(), holes);
  EXPECT_EQ(packet.m_ulReceived, 15u);
  EXPECT_TRUE(Put(0, Bytes(10, 1))) << "what closes a hole still comes in";
  EXPECT_TRUE(Put(500, {1}));
}

TEST_F(CDeScatterPacketTest, GrowsToAnyOffsetAndKeepsAllBytes) {
  ASSERT_TRUE(Put(100000, {7, 8}));
  EXPECT_EQ(packet.m_ulCapacity % CDeScatterPacket::kGrowth, 0u);
  ASSERT_TRUE(Put(0, {1}));
  ASSERT_TRUE(Put(200000, {9}, true));
  EXPECT_EQ(packet.m_pData[100001], 8);
  EXPECT_EQ(packet.m_pData[0], 1);
  EXPECT_EQ(packet.m_pData[150000], 0) << "what never came reads as 0";
}

TEST_F(CDeScatterPacketTest, GrowsWhenAnEndMeetsTheCapacity) {
  ASSERT_TRUE(Put(0, Bytes(32766, 1)));
  EXPECT_EQ(packet.m_ulCapacity, 32767u);
  ASSERT_TRUE(Put(32766, {1}));
  EXPECT_EQ(packet.m_ulCapacity, 65534u);
}

TEST_F(CDeScatterPacketTest, RefusesWhatIsTooLongOrWraps) {
  EXPECT_TRUE(Put(CDeScatterPacket::kMaxLength - 1, {1}));
  EXPECT_FALSE(Put(CDeScatterPacket::kMaxLength, {1}));
  EXPECT_FALSE(Put(0xFFFFFFFF, {1}));
  EXPECT_FALSE(Put(0xFFFFFFFE, {1, 2, 3, 4}));
  EXPECT_EQ(packet.m_ulReceived, 1u);
}

TEST_F(CDeScatterPacketTest, EmptyLastFragmentEndsTheMessage) {
  Put(0, {1, 2});
  Put(2, {}, true);
  EXPECT_TRUE(packet.IsComplete());
  EXPECT_EQ(Message(), Bytes({1, 2}));
}

TEST_F(CDeScatterPacketTest, RequestNamesAllHolesWithTheIdentifierLowByteFirst) {
  EXPECT_EQ(Request(), Bytes({3, 0x34, 0x12, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
  Put(0x102, {1});
  EXPECT_EQ(Request(), Bytes({3, 0x34, 0x12, 0, 0, 0, 0, 0, 0, 1, 2,  //
                              0, 0, 1, 3, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(CDeScatterPacketTest, RequestMarksTheMessageAsAnAnswer) {
  Put(0, {0x10, 2});
  Request();
  EXPECT_EQ(packet.m_pData[0], 0x14);
}

TEST_F(CDeScatterPacketTest, MarkIsSetAgainWhenTheFirstByteComesLater) {
  Put(1, {2}, true);
  Request();
  Put(0, {0x10});
  EXPECT_TRUE(packet.IsComplete());
  EXPECT_EQ(Message(), Bytes({0x14, 2}));
}

TEST_F(CDeScatterPacketTest, RequestWithoutMemoryLeavesNothing) {
  factory->failAfter = 0;
  IZEMBuffer* out = nullptr;
  EXPECT_EQ(packet.GetResendRequest(out), ZEM_OUT_OF_MEMORY);
  EXPECT_EQ(out, nullptr);
}

}  // namespace
}  // namespace vexel
