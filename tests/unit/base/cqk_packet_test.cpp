#include "base/cqk_packet.h"

#include <gtest/gtest.h>

#include "base/cqk_buffer.h"

namespace vexel {
namespace {

class CQKPacketTest : public testing::Test {
 protected:
  CQKPacketTest() {
    bytes->AddRef();
    packet->AddRef();
    rtp->AddRef();
  }
  ~CQKPacketTest() override {
    EXPECT_EQ(packet->Release(), 0u);
    EXPECT_EQ(rtp->Release(), 0u);
    EXPECT_EQ(bytes->Release(), 0u);
  }

  CQKBuffer* bytes = new CQKBuffer;
  IZEMPacket* packet = new CQKPacket;
  IZEMPacket* rtp = new CQKRTPPacket;
};

TEST_F(CQKPacketTest, WithABufferRefusesToBeLost) {
  EXPECT_EQ(packet->Set(bytes, 1, 2, 3, 4), ZEM_OK);
  EXPECT_EQ(packet->SetAsLost(), ZEM_UNEXPECTED);
  EXPECT_EQ(packet->IsLost(), 0);
  EXPECT_EQ(packet->Set(nullptr, 1, 2, 3, 4), ZEM_OK);
  EXPECT_EQ(packet->SetAsLost(), ZEM_OK);
  EXPECT_NE(packet->IsLost(), 0);
}

TEST_F(CQKPacketTest, HandsOutItsBufferWithAReference) {
  EXPECT_EQ(packet->GetBuffer(), nullptr);
  packet->Set(bytes, 1, 2, 3, 4);
  packet->Set(bytes, 1000, 20, 30, 400);
  IZEMBuffer* out = nullptr;
  UINT32 time;
  UINT16 stream, rule;
  UINT8 flags;
  EXPECT_EQ(packet->Get(out, time, stream, flags, rule), ZEM_OK);
  EXPECT_EQ(out, bytes);
  EXPECT_EQ(time, 1000u);
  EXPECT_EQ(stream, 20);
  EXPECT_EQ(flags, 30);
  EXPECT_EQ(rule, 400);
  EXPECT_EQ(packet->GetTime(), 1000u);
  EXPECT_EQ(packet->GetStreamNumber(), 20);
  EXPECT_EQ(packet->GetQRSFlags(), 30);
  EXPECT_EQ(packet->GetQRSRuleNumber(), 400);
  EXPECT_EQ(packet->GetBuffer(), bytes);
  EXPECT_EQ(bytes->Release(), 3u);
  EXPECT_EQ(bytes->Release(), 2u);
}

TEST_F(CQKPacketTest, WithTwoReferencesRefusesToBeSet) {
  packet->Set(nullptr, 5, 0, 0, 0);
  packet->AddRef();
  EXPECT_EQ(packet->Set(bytes, 1, 2, 3, 4), ZEM_UNEXPECTED);
  EXPECT_EQ(packet->GetTime(), 5u);
  EXPECT_EQ(packet->GetBuffer(), nullptr);
  packet->Release();
}

TEST_F(CQKPacketTest, APlainPacketKnowsNoTransportTime) {
  IZEMBuffer* out = nullptr;
  UINT32 time, stamp;
  UINT16 stream, rule;
  UINT8 flags;
  EXPECT_EQ(packet->GetRTPTime(), 0xFFFFFFFFu);
  EXPECT_EQ(packet->GetRTP(out, time, stamp, stream, flags, rule), ZEM_UNEXPECTED);
  EXPECT_EQ(packet->SetRTP(bytes, 1, 2, 3, 4, 5), ZEM_UNEXPECTED);
}

TEST_F(CQKPacketTest, ATransportPacketCarriesBothTimes) {
  EXPECT_EQ(rtp->SetRTP(bytes, 10, 900, 3, 4, 5), ZEM_OK);
  IZEMBuffer* out = nullptr;
  UINT32 time, stamp;
  UINT16 stream, rule;
  UINT8 flags;
  EXPECT_EQ(rtp->GetRTP(out, time, stamp, stream, flags, rule), ZEM_OK);
  EXPECT_EQ(out, bytes);
  out->Release();
  EXPECT_EQ(time, 10u);
  EXPECT_EQ(stamp, 900u);
  EXPECT_EQ(stream, 3);
  EXPECT_EQ(flags, 4);
  EXPECT_EQ(rule, 5);
  EXPECT_EQ(rtp->Set(bytes, 11, 3, 4, 5), ZEM_OK);
  EXPECT_EQ(rtp->GetRTPTime(), 11u);
}

// Required: the transport's time changes even if the packet refuses.
TEST_F(CQKPacketTest, ARefusedSetStillChangesTheTransportTime) {
  rtp->SetRTP(nullptr, 10, 900, 0, 0, 0);
  rtp->AddRef();
  EXPECT_EQ(rtp->Set(bytes, 77, 0, 0, 0), ZEM_UNEXPECTED);
  EXPECT_EQ(rtp->GetTime(), 10u);
  EXPECT_EQ(rtp->GetRTPTime(), 77u);
  EXPECT_EQ(rtp->SetRTP(bytes, 78, 79, 0, 0, 0), ZEM_UNEXPECTED);
  EXPECT_EQ(rtp->GetRTPTime(), 79u);
  rtp->Release();
}

TEST_F(CQKPacketTest, AnswersForItsInterfaces) {
  void* out = nullptr;
  EXPECT_EQ(packet->QueryInterface(IID_IZEMPacket, &out), ZEM_OK);
  EXPECT_EQ(packet->QueryInterface(IID_IUnknown, &out), ZEM_OK);
  EXPECT_EQ(packet->QueryInterface(IID_IZEMRTPPacket, &out), ZEM_NO_INTERFACE);
  EXPECT_EQ(out, nullptr);
  packet->Release();
  packet->Release();
  EXPECT_EQ(rtp->QueryInterface(IID_IZEMPacket, &out), ZEM_OK);
  EXPECT_EQ(rtp->QueryInterface(IID_IZEMRTPPacket, &out), ZEM_OK);
  EXPECT_EQ(out, rtp);
  rtp->Release();
  rtp->Release();
}

}  // namespace
}  // namespace vexel
