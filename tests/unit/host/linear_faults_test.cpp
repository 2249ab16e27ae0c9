// A linear stream from packets to pixels, with each fault that a way can bring.
#include <gtest/gtest.h>

#include "host/session.h"

namespace vexel {
namespace {

using author::TagStream;
using test::Append;
using test::Bytes;
using test::FragmentRecord;
using test::Join;
using test::Session;
using test::WholeRecord;

constexpr UINT32 kRed = 0xC80000, kGreen = 0x00C800, kWhite = 0xFFFFFF;
constexpr UINT8 kObject = 0, kFrame = 1, kAtOnce = 4, kKey = 8, kAnswer = 4;

Bytes Message(UINT8 head, const TagStream& tags) {
  return Join({{head}, tags.bytes()});
}
UINT8 FrameHead(int sequence, UINT8 flags = 0) {
  return static_cast<UINT8>(kFrame | flags | (sequence & 15) << 4);
}
// A box of 10 by 10 pixels.
TagStream Box(uint16_t id, author::Color color = {200, 0, 0}) {
  author::ShapeBuilder box;
  box.Style(box.AddFill(color)).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
  return TagStream().DefineShape(id, box);
}
author::Matrix At(int x) {
  return author::Matrix::Translate(x * 20, 0);
}

struct LinearFaults : testing::Test, Session {
  LinearFaults() {
    Open(false, author::MovieWriter(100, 80, 10).Finish());
    Put(WholeRecord(0, Message(FrameHead(0, kAtOnce), TagStream())));
  }
  // Frames of their own, due at once.
  void Frame(int sequence, const TagStream& tags, UINT8 flags = 0) {
    Put(WholeRecord(0, Message(FrameHead(sequence, flags), tags)));
  }
  void Object(const TagStream& tags, UINT8 flags = 0) {
    Put(WholeRecord(0, Message(static_cast<UINT8>(kObject | flags), tags)));
  }
  // A key frame with a box at `x`.
  TagStream Key(int x, uint16_t id = 1) {
    return TagStream().SyncFrame().PlaceObject(id, 1, At(x));
  }
};

TEST_F(LinearFaults, WithoutFaultsFramesFollowEachOther) {
  Object(Box(1));
  Frame(1, TagStream().PlaceObject(1, 1));
  Frame(2, TagStream().RemoveObject(1).PlaceObject(1, 1, At(20)));
  Sync(0);
  EXPECT_EQ(Pixel(25, 5), kRed);
  EXPECT_EQ(Pixel(5, 5), kWhite);
  EXPECT_TRUE(host.backChannel->sent.empty());
}

TEST_F(LinearFaults, LostObjectIsAskedForAndHealsAtTheNextKeyFrame) {
  Frame(1, TagStream().PlaceObject(1, 1));  // its definition is lost
  Sync(100);
  EXPECT_EQ(Pixel(5, 5), kWhite) << "a placeholder stands there";
  ASSERT_EQ(host.backChannel->sent.size(), 1u);
  EXPECT_EQ(test::BytesOf(host.backChannel->sent[0].get()),
            Bytes({3, 1, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
  Put(FragmentRecord(1, 0, Message(kObject | kAnswer, Box(1)), true));
  Sync(200);
  EXPECT_EQ(Pixel(5, 5), kWhite) << "those who waited look for character 0, and ask for it";
  ASSERT_EQ(host.backChannel->sent.size(), 2u);
  EXPECT_EQ(test::BytesOf(host.backChannel->sent[1].get())[1], 0);
  Frame(2, Key(0), kKey);
  Sync(300);
  EXPECT_EQ(Pixel(5, 5), kRed);
  EXPECT_EQ(host.backChannel->sent.size(), 2u);
}

TEST_F(LinearFaults, LostObjectHealsWithANewPlacement) {
  Frame(1, TagStream().PlaceObject(1, 1));
  Sync(100);
  Put(FragmentRecord(1, 0, Message(kObject | kAnswer, Box(1)), true));
  Frame(2, TagStream().PlaceObject(1, 2, At(30)));
  Sync(200);
  EXPECT_EQ(Pixel(35, 5), kRed);
}

TEST_F(LinearFaults, ObjectIsAskedForOnceInTenSeconds) {
  Frame(1, TagStream().PlaceObject(1, 1));
  Sync(100);
  Frame(2, TagStream().PlaceObject(1, 2));
  Sync(5000);
  EXPECT_EQ(host.backChannel->sent.size(), 1u);
  Frame(3, TagStream().PlaceObject(1, 3));
  Sync(10200);
  // The frame plays inside the sync, whose time is the present.
  EXPECT_EQ(host.backChannel->sent.size(), 2u);
}

TEST_F(LinearFaults, PartlyLostObjectIsAskedForByItsHoles) {
  const Bytes message = Message(kObject, Box(1));
  const auto part = [&](size_t from, size_t to) {
    return Bytes(message.begin() + static_cast<long>(from),
                 message.begin() + static_cast<long>(to));
  };
  Put(FragmentRecord(1, 0, part(0, 8), false));
  Put(FragmentRecord(1, 16, part(16, message.size()), true));
  Frame(1, TagStream().PlaceObject(1, 1));
  Sync(100);
  ASSERT_EQ(host.backChannel->sent.size(), 1u);
  EXPECT_EQ(test::BytesOf(host.backChannel->sent[0].get()),
            Bytes({3, 1, 0, 0, 0, 0, 8, 0, 0, 0, 8}));
  Put(FragmentRecord(1, 8, part(8, 16), false));
  Frame(2, Key(0), kKey);
  Sync(200);
  EXPECT_EQ(Pixel(5, 5), kRed);
}

TEST_F(LinearFaults, FramesBehindALostOneAreRefusedUntilAKeyFrame) {
  Object(Box(1));
  Frame(1, TagStream().PlaceObject(1, 1));
  // Frame 2 is lost.
  Frame(3, TagStream().PlaceObject(1, 2, At(20)));
  Frame(4, TagStream().PlaceObject(1, 3, At(40)));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kRed);
  EXPECT_EQ(Pixel(25, 5), kWhite);
  EXPECT_EQ(Pixel(45, 5), kWhite);
  Frame(5, Key(60), kKey);
  Frame(6, TagStream().PlaceObject(1, 2, At(80)));
  Sync(0);
  EXPECT_EQ(Pixel(65, 5), kRed);
  EXPECT_EQ(Pixel(85, 5), kRed);
}

TEST_F(LinearFaults, FramesBehindALostOneAreRefusedUntilOneAtOnce) {
  Object(Box(1));
  Frame(3, TagStream().PlaceObject(1, 2, At(20)));
  Frame(9, Key(40), kAtOnce);
  Frame(10, TagStream().PlaceObject(1, 3, At(60)));
  Sync(0);
  EXPECT_EQ(Pixel(25, 5), kWhite);
  EXPECT_EQ(Pixel(45, 5), kRed);
  EXPECT_EQ(Pixel(65, 5), kRed);
}

TEST_F(LinearFaults, FragmentsLastFirstGiveThePicture) {
  const Bytes message = Message(kObject, Box(1));
  for (size_t end = message.size(); end > 0;) {
    const size_t begin = end > 7 ? end - 7 : 0;
    Put(FragmentRecord(
        1, static_cast<UINT32>(begin),
        Bytes(message.begin() + static_cast<long>(begin), message.begin() + static_cast<long>(end)),
        end == message.size()));
    end = begin;
  }
  Frame(1, TagStream().PlaceObject(1, 1));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kRed);
  EXPECT_TRUE(host.backChannel->sent.empty());
}

TEST_F(LinearFaults, MiddleFragmentOutOfOrderIsCompleteAfterOneAnswer) {
  const Bytes message = Message(kObject, Box(1));
  const size_t n = message.size() / 4;
  const auto put = [&](size_t part) {
    const size_t end = part == 3 ? message.size() : (part + 1) * n;
    Put(FragmentRecord(1, static_cast<UINT32>(part * n),
                       Bytes(message.begin() + static_cast<long>(part * n),
                             message.begin() + static_cast<long>(end)),
                       part == 3));
  };
  for (size_t part : {3, 1, 0, 2}) put(part);
  Frame(1, TagStream().PlaceObject(1, 1));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kWhite) << "every byte is there, and yet a hole is open";
  ASSERT_EQ(host.backChannel->sent.size(), 1u);
  // The answer: each range, cut where the message ends.
  const Bytes request = test::BytesOf(host.backChannel->sent[0].get());
  ASSERT_EQ(request.size(), 11u);
  const size_t start = request[5] * 256u + request[6];
  put(start / n);
  Frame(2, Key(0), kKey);
  Sync(100);
  EXPECT_EQ(Pixel(5, 5), kRed);
}

TEST_F(LinearFaults, FragmentTwiceChangesNothing) {
  const Bytes message = Message(kObject, Box(1));
  const Bytes first(message.begin(), message.begin() + 10);
  const Bytes rest(message.begin() + 10, message.end());
  Put(FragmentRecord(1, 0, first, false));
  Put(FragmentRecord(1, 0, first, false));
  Put(FragmentRecord(1, 10, rest, true));
  Frame(1, TagStream().PlaceObject(1, 1));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kRed);
}

TEST_F(LinearFaults, DamagedLengthDropsTheRestOfItsPacket) {
  const Bytes box = WholeRecord(0, Message(kObject, Box(1)));
  const Bytes frame = WholeRecord(0, Message(FrameHead(1), TagStream().PlaceObject(1, 1)));
  Bytes packet = Join({box, frame});
  packet[box.size() + 1] = 0xF0;
  Put(packet);
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kWhite) << "the frame is lost";
  Frame(2, TagStream().PlaceObject(1, 1));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kWhite) << "so the next one is refused";
  Frame(3, Key(0), kKey);
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kRed) << "the object before the damage was taken";
}

TEST_F(LinearFaults, ObjectTwiceKeepsItsFirstDefinition) {
  Object(Box(1));
  Object(Box(1, {0, 200, 0}));
  Frame(1, TagStream().PlaceObject(1, 1));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kRed);
  EXPECT_NE(Pixel(5, 5), kGreen);
}

TEST_F(LinearFaults, FrameTwiceBreaksTheSequence) {
  Object(Box(1));
  Frame(1, TagStream().PlaceObject(1, 1));
  Frame(1, TagStream().PlaceObject(1, 1));
  Frame(2, TagStream().PlaceObject(1, 2, At(20)));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), kRed);
  EXPECT_EQ(Pixel(25, 5), kWhite);
  Frame(3, Key(40), kKey);
  Sync(0);
  EXPECT_EQ(Pixel(45, 5), kRed);
}

}  // namespace
}  // namespace vexel
