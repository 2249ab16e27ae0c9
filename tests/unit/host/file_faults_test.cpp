// A non-linear stream from packets to pixels: what was lost is there when the
// timeline passes again.
#include <gtest/gtest.h>

#include "host/session.h"

namespace vexel {
namespace {

using test::Bytes;
using test::FramedFile;
using test::Session;

constexpr UINT32 kRed = 0xC80000, kWhite = 0xFFFFFF;

struct FileFaults : testing::Test, Session {
  // Ten frames a second; from the third one on, the box stands 10 pixels further
  // to the right each frame.
  FramedFile file = test::FramesOf(test::SlidingBox(9));

  void Send(size_t from, size_t to, bool resent = false) {
    Put(file.Cut(file.bounds[from], file.bounds[to], resent));
  }
  // Shows the frame of that number, from 1 on: a seek plays one frame on.
  void Seek(UINT32 frame) {
    const UINT32 time = (frame - 1) * 100;
    renderer->OnPreSeek(0, time);
    renderer->OnPostSeek(0, time);
    Sync(time);
  }
};

TEST_F(FileFaults, LostFramesLeaveTheBoxWhereItWasUntilTheyComeAgain) {
  OpenFile(file);
  Send(0, 3);
  renderer->OnPacket(test::MakeLostPacket().get(), 0);  // frames 3 and 4
  Send(5, 9);
  Sync(0);
  Seek(4);
  EXPECT_EQ(Pixel(15, 5), kRed) << "as in frame 2";
  Seek(5);
  EXPECT_EQ(Pixel(45, 5), kRed) << "numbers of frames hold";
  ASSERT_EQ(host.backChannel->sent.size(), 1u);
  Send(3, 5, true);
  Sync(550);
  Seek(4);
  EXPECT_EQ(Pixel(35, 5), kRed);
  EXPECT_EQ(Pixel(15, 5), kWhite);
  Seek(3);
  EXPECT_EQ(Pixel(25, 5), kRed);
}

TEST_F(FileFaults, FrameInPartsIsWholeAgainWhenItsLostPartComes) {
  OpenFile(file);
  const UINT32 middle = (file.bounds[4] + file.bounds[5]) / 2;
  Send(0, 4);
  // The first part of frame 4 is lost.
  Put(file.Cut(middle, file.bounds[9]));
  Sync(0);
  Seek(4);
  EXPECT_EQ(Pixel(25, 5), kRed) << "as in frame 3";
  Put(file.Cut(file.bounds[4], middle, true));
  Seek(5);
  Seek(4);
  EXPECT_EQ(Pixel(35, 5), kRed);
}

TEST_F(FileFaults, LastPacketLostIsNoticedByNobody) {
  OpenFile(file);
  Send(0, 8);
  renderer->OnPacket(test::MakeLostPacket().get(), 0);
  Sync(0);
  Seek(8);
  EXPECT_TRUE(host.backChannel->sent.empty());
  EXPECT_EQ(Pixel(65, 5), kRed) << "the movie waits in the last frame it has";
}

TEST_F(FileFaults, SwappedPacketsArePlayedInTheOrderInWhichTheyCame) {
  OpenFile(file);
  Send(0, 3);
  Send(5, 9);
  Send(3, 5);  // stale, and not marked: its bytes go out behind the others
  Sync(0);
  EXPECT_EQ(host.backChannel->sent.size(), 2u);
  Seek(4);
  EXPECT_EQ(Pixel(15, 5), kRed) << "filled";
}

}  // namespace
}  // namespace vexel
