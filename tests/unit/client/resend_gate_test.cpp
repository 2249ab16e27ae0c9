#include "client/stream/resend_gate.h"

#include <gtest/gtest.h>

#include "client/stream/nonlinear_packetizer.h"
#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

// Frames of 44 bytes in packets of 48 of them: each packet ends inside a frame,
// and the frame before that ends in it.
class TheGate : public testing::Test {
 protected:
  const MovieIndex movie{FramesOf(std::vector<size_t>(8, 40))};
  const NonLinearPacketizer packetizer{&movie, 64};
  ResendGate gate;

  // Frame k, whole and marked as resent.
  NetworkPacket Frame(size_t k) const {
    std::vector<uint8_t> request;
    AppendBig(static_cast<uint32_t>(movie.bounds()[k]), 4, &request);
    AppendBig(1, 4, &request);
    AppendBig(0, 4, &request);
    return {.number = static_cast<uint32_t>(k), .bytes = packetizer.Answer(request).at(0).bytes};
  }
  std::vector<uint32_t> Taken() {
    std::vector<uint32_t> numbers;
    for (const NetworkPacket& packet : gate.Take()) numbers.push_back(packet.number);
    return numbers;
  }
  using Numbers = std::vector<uint32_t>;
};

TEST_F(TheGate, HoldsBytesUntilAFrameHasEndedBehindThem) {
  gate.PassedInOrder(packetizer.packets()[0].bytes);
  gate.Put(Frame(0));
  gate.Put(Frame(1));
  gate.Put(Frame(2));
  EXPECT_EQ(Taken(), Numbers{0});
  // Packet 1 is lost; packet 2 ends frame 2.
  gate.PassedInOrder(packetizer.packets()[2].bytes);
  EXPECT_EQ(Taken(), (Numbers{1, 2}));
  EXPECT_EQ(Taken(), Numbers());
}

TEST_F(TheGate, APieceFromWithinAFrameEndsNothing) {
  const MovieIndex large(FramesOf({400, 10}));
  const NonLinearPacketizer pieces(&large, 64);
  gate.Put(Frame(0));
  for (size_t i = 1; i < 6; i++) gate.PassedInOrder(pieces.packets()[i].bytes);
  EXPECT_EQ(Taken(), Numbers());
}

TEST_F(TheGate, AtTheStreamsEndEverythingPasses) {
  gate.Put(Frame(7));
  gate.Put({.number = 99, .bytes = {1, 2}});
  gate.Open();
  EXPECT_EQ(Taken(), (Numbers{7, 99}));
}

}  // namespace
}  // namespace vexel::client
