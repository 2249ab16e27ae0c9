#include "client/stream/linear_packetizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "author/check/tag_reader.h"
#include "client/stream/record_writer.h"
#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

using Bytes = std::vector<uint8_t>;

struct Message {
  int32_t id;  // -1 for a whole record, which has none
  uint32_t time;
  Bytes bytes;
  bool frame() const { return bytes[0] & kFrameMessage; }
  uint32_t sequence() const { return bytes[0] >> 4; }
};

// The messages of packets that all come, in order.
std::vector<Message> MessagesOf(const std::vector<StreamPacket>& packets) {
  std::vector<Message> messages;
  std::map<int32_t, Bytes> unfinished;
  for (const StreamPacket& packet : packets) {
    const std::span<const uint8_t> bytes = packet.bytes;
    for (size_t at = 0; at < bytes.size();) {
      const uint32_t word = BigAt(bytes, at, 2);
      const size_t size = word & 0xFFF;
      const auto payload = bytes.subspan(at + kRecordHead, size);
      if (word >> 8 & kRecordFragment) {
        const int32_t id = static_cast<int32_t>(BigAt(bytes, at + 2, 2));
        const size_t offset = BigAt(bytes, at + 4, 4);
        Bytes& message = unfinished[id];
        EXPECT_EQ(message.size(), offset);
        EXPECT_EQ((word >> 8 & kRecordFirst) != 0, offset == 0);
        message.insert(message.end(), payload.begin(), payload.end());
        if (word >> 8 & kRecordLast) {
          messages.push_back({id, 0, message});
          unfinished.erase(id);
        }
      } else {
        messages.push_back({-1, BigAt(bytes, at + 4, 4), {payload.begin(), payload.end()}});
      }
      at += kRecordHead + size;
    }
  }
  EXPECT_TRUE(unfinished.empty());
  return messages;
}

struct Tag {
  uint32_t code;
  Bytes body;
  bool operator==(const Tag&) const = default;
};

std::vector<Tag> TagsOf(std::span<const uint8_t> bytes) {
  std::vector<Tag> tags;
  author::TagReader reader(bytes, 0);
  while (reader.left() > 0) {
    const uint32_t word = reader.U16();
    const uint32_t size = (word & 63) == 63 ? reader.U32() : word & 63;
    const auto body = reader.Take(size);
    tags.push_back({word >> 6, {body.begin(), body.end()}});
  }
  return tags;
}

Bytes Request(uint16_t id, const std::vector<std::pair<uint32_t, uint32_t>>& ranges) {
  Bytes request{3, static_cast<uint8_t>(id), static_cast<uint8_t>(id >> 8)};
  for (const auto& [start, length] : ranges) {
    AppendBig(start, 4, &request);
    AppendBig(length, 4, &request);
  }
  return request;
}

author::ShapeBuilder Square() {
  author::ShapeBuilder shape;
  shape.Style(shape.AddFill(author::Color{255, 0, 0, 255})).Rectangle({0, 200, 0, 200});
  return shape;
}

// The unknown tag inside makes the sprite as long as is wanted.
author::Bytes MovieWithSprite(size_t filler) {
  author::TagStream sprite;
  sprite.Tag(999, author::Bytes(filler, 3)).FrameEnd().End();
  author::MovieWriter movie(50, 50, 10);
  movie.DefineSprite(7, sprite).Place(7, 1).FrameEnd().Move(1, author::Matrix::Translate(20, 0));
  movie.FrameEnd().End();
  return movie.Finish();
}

TEST(LinearPacketizer, TheMessagesHoldAllDefinitionsAndControlsInOrder) {
  for (uint32_t seed = 1; seed <= 40; seed++) {
    const MovieIndex movie(author::RandomMovie(seed, {.actions = true}));
    for (const size_t size : {64, 500, 1400}) {
      const LinearPacketizer packetizer(&movie, size, 0);
      std::vector<Tag> expected, got;
      for (const MovieTag& tag : movie.tags()) {
        if (tag.code == kTagEnd || tag.code == kTagFrameLabel || !TagName(tag.code)) continue;
        const auto body = movie.Slice(tag.body, tag.end);
        expected.push_back({static_cast<uint32_t>(tag.code), {body.begin(), body.end()}});
      }
      size_t frames = 0;
      for (const Message& message : MessagesOf(packetizer.packets())) {
        const auto tags = TagsOf(std::span(message.bytes).subspan(1));
        got.insert(got.end(), tags.begin(), tags.end());
        if (!message.frame()) continue;
        EXPECT_EQ(message.sequence(), frames % 16);
        EXPECT_EQ((message.bytes[0] & kAtOnce) != 0, frames == 0);
        got.push_back({kTagFrameEnd, {}});
        frames++;
      }
      EXPECT_EQ(frames, movie.frames());
      // Within a frame, definitions come first and amendments join them.
      const auto sorted = [](std::vector<Tag> tags) {
        std::vector<std::pair<uint32_t, Bytes>> all;
        for (Tag& tag : tags) all.emplace_back(tag.code, std::move(tag.body));
        std::sort(all.begin(), all.end());
        return all;
      };
      EXPECT_EQ(sorted(got), sorted(expected)) << "seed " << seed << ", packets of " << size;
    }
  }
}

TEST(LinearPacketizer, ObjectsComeBeforeTheFrameOfTheirDefinition) {
  const author::Bytes file = MovieWithSprite(10);
  const MovieIndex movie(file);
  const auto messages = MessagesOf(LinearPacketizer(&movie, 1400, 0).packets());
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_FALSE(messages[0].frame());
  EXPECT_TRUE(messages[1].frame());
  EXPECT_EQ(messages[2].time, 100u);
}

TEST(LinearPacketizer, AmendmentsJoinTheMessageOfTheirCharacter) {
  author::MovieWriter writer(50, 50, 10);
  writer.DefineShape(1, Square());
  writer.DefineButton(2, {}, {}).FrameEnd();
  writer.DefineButtonExtra(2, {author::Cxform()}).FrameEnd().End();
  const MovieIndex movie(writer.Finish());
  const auto messages = MessagesOf(LinearPacketizer(&movie, 1400, 0).packets());
  ASSERT_EQ(messages.size(), 4u);
  const auto tags = TagsOf(std::span(messages[1].bytes).subspan(1));
  ASSERT_EQ(tags.size(), 2u);
  EXPECT_EQ(tags[0].code, static_cast<uint32_t>(kTagDefineButton));
  EXPECT_EQ(tags[1].code, static_cast<uint32_t>(kTagDefineButtonExtra));
}

TEST(LinearPacketizer, SharedTablesTravelUnderAnIdentifierThatNoCharacterHas) {
  author::MovieWriter writer(50, 50, 10);
  writer.DefineJPEGTables(author::Bytes(3000, 1)).DefineShape(59999, Square()).FrameEnd().End();
  const MovieIndex movie(writer.Finish());
  const auto messages = MessagesOf(LinearPacketizer(&movie, 1400, 0).packets());
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_EQ(messages[0].id, 59998);
}

TEST(LinearPacketizer, AFrameOfUpToARecordIsNotCut) {
  author::MovieWriter writer(50, 50, 10);
  writer.FrameActions(author::Bytes(3000, 0)).FrameEnd().FrameActions(author::Bytes(5000, 0));
  writer.FrameEnd().FrameActions(author::Bytes(5000, 0)).FrameEnd().End();
  const MovieIndex movie(writer.Finish());
  const LinearPacketizer packetizer(&movie, 1400, 0);
  const auto messages = MessagesOf(packetizer.packets());
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_EQ(messages[0].id, -1);
  EXPECT_GT(packetizer.packets()[0].bytes.size(), 1400u);
  // Larger ones take identifiers in turn.
  EXPECT_EQ(messages[1].id, 60000);
  EXPECT_EQ(messages[2].id, 60001);
}

TEST(LinearPacketizer, AKeyFramePlacesAllThatStands) {
  author::MovieWriter writer(50, 50, 10);
  writer.DefineShape(1, Square()).Place(1, 5).Place(1, 3).FrameEnd();
  for (int i = 0; i < 11; i++) writer.Move(5, author::Matrix::Translate(i * 20, 0)).FrameEnd();
  writer.End();
  const MovieIndex movie(writer.Finish());
  const auto messages = MessagesOf(LinearPacketizer(&movie, 1400, 1000).packets());
  const Message& key = messages[1 + 10];
  EXPECT_EQ(key.bytes[0], kFrameMessage | kKeyFrame | 10 << 4);
  const auto tags = TagsOf(std::span(key.bytes).subspan(1));
  ASSERT_EQ(tags.size(), 3u);
  EXPECT_EQ(tags[0].code, static_cast<uint32_t>(kTagSyncFrame));
  EXPECT_EQ(tags[1].code, static_cast<uint32_t>(kTagPlaceObject));
  EXPECT_EQ(tags[1].body[2], 3);
  EXPECT_EQ(tags[2].body[2], 5);
  for (const Tag& tag : tags) EXPECT_NE(tag.code, static_cast<uint32_t>(kTagFrameEnd));
  EXPECT_FALSE(messages[1 + 11].bytes[0] & kKeyFrame);
}

TEST(LinearPacketizer, AKeyFrameIsPutOffWhileSomethingIsTransparent) {
  author::MovieWriter writer(50, 50, 10);
  writer.DefineShape(1, Square());
  writer.Place({.depth = 1, .character = 1, .cxform = author::Cxform::Alpha(0.5)});
  for (int i = 0; i < 30; i++) {
    if (i == 13) writer.RemoveObject(1);
    writer.FrameEnd();
  }
  writer.End();
  const MovieIndex movie(writer.Finish());
  const auto messages = MessagesOf(LinearPacketizer(&movie, 1400, 1000).packets());
  for (size_t i = 0; i < 30; i++)
    EXPECT_EQ((messages[1 + i].bytes[0] & kKeyFrame) != 0, i == 13 || i == 23) << i;
}

TEST(LinearPacketizer, ARequestForAWholeObjectIsAnsweredWithIt) {
  const author::Bytes file = MovieWithSprite(10);
  const MovieIndex movie(file);
  const LinearPacketizer packetizer(&movie, 1400, 0);
  const auto original = MessagesOf(packetizer.packets());
  const auto answer = MessagesOf(packetizer.Answer(Request(7, {{0, 0xFFFFFFFF}})));
  ASSERT_EQ(answer.size(), 1u);
  EXPECT_EQ(answer[0].bytes[0], original[0].bytes[0] | kAtOnce);
  EXPECT_TRUE(std::equal(answer[0].bytes.begin() + 1, answer[0].bytes.end(),
                         original[0].bytes.begin() + 1, original[0].bytes.end()));
}

TEST(LinearPacketizer, RangesAreAnsweredInFragmentsAndCutAtTheEnd) {
  const author::Bytes file = MovieWithSprite(3000);
  const MovieIndex movie(file);
  const LinearPacketizer packetizer(&movie, 1400, 0);
  const Bytes object = MessagesOf(packetizer.packets())[0].bytes;
  const auto answer = packetizer.Answer(Request(7, {{100, 50}, {2900, 5000}, {9999, 5}}));
  ASSERT_EQ(answer.size(), 1u);
  const std::span<const uint8_t> bytes = answer[0].bytes;
  EXPECT_EQ(BigAt(bytes, 0, 2), uint32_t{kRecordFragment} << 8 | 50);
  EXPECT_EQ(BigAt(bytes, 2, 2), 7u);
  EXPECT_EQ(BigAt(bytes, 4, 4), 100u);
  const size_t second = kRecordHead + 50;
  const size_t rest = object.size() - 2900;
  EXPECT_EQ(BigAt(bytes, second, 2), uint32_t{kRecordFragment | kRecordLast} << 8 | rest);
  EXPECT_EQ(bytes.size(), second + kRecordHead + rest);
  EXPECT_EQ(bytes[second + kRecordHead], object[2900]);
}

TEST(LinearPacketizer, RequestsThatMakeNoSenseAreNotAnswered) {
  const author::Bytes file = MovieWithSprite(10);
  const MovieIndex movie(file);
  const LinearPacketizer packetizer(&movie, 1400, 0);
  EXPECT_TRUE(packetizer.Answer({}).empty());
  EXPECT_TRUE(packetizer.Answer(Request(8, {{0, 0xFFFFFFFF}})).empty());
  EXPECT_TRUE(packetizer.Answer(Bytes{3, 7}).empty());
  Bytes odd = Request(7, {{0, 10}});
  odd.push_back(0);
  EXPECT_TRUE(packetizer.Answer(odd).empty());
  odd = Request(7, {{0, 10}});
  odd[0] = 4;
  EXPECT_TRUE(packetizer.Answer(odd).empty());
}

TEST(LinearPacketizer, AfterAJumpComesAKeyFrameAtOnceAndWhatItNeeds) {
  const author::Bytes file = MovieWithSprite(10);
  const MovieIndex movie(file);
  const LinearPacketizer packetizer(&movie, 1400, 0);
  const auto jump = packetizer.JumpTo(150, 0);
  const auto messages = MessagesOf(jump.first);
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_FALSE(messages[0].frame());
  EXPECT_EQ(messages[1].bytes[0], kFrameMessage | kAtOnce | 1 << 4);
  EXPECT_EQ(TagsOf(std::span(messages[1].bytes).subspan(1))[0].code,
            static_cast<uint32_t>(kTagSyncFrame));
  EXPECT_EQ(jump.next, packetizer.packets().size());
  // Backwards, with all objects out.
  EXPECT_EQ(MessagesOf(packetizer.JumpTo(0, packetizer.packets().size()).first).size(), 1u);
}

TEST(LinearPacketizer, OfALatePacketTheObjectsAreKept) {
  const author::Bytes file = MovieWithSprite(10);
  const MovieIndex movie(file);
  const LinearPacketizer packetizer(&movie, 1400, 0);
  Bytes late = packetizer.packets()[0].bytes;
  EXPECT_TRUE(packetizer.MakeLate(&late));
  const auto messages = MessagesOf({{0, late}});
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].bytes[0], kAtOnce);
  late = packetizer.packets()[1].bytes;
  EXPECT_FALSE(packetizer.MakeLate(&late));
}

}  // namespace
}  // namespace vexel::client
