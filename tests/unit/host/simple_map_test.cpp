#include "host/simple_map.h"

#include <gtest/gtest.h>

#include <vector>

namespace vexel {
namespace {

constexpr UINT32 kLast = CDeScatterPacket::kMaxLength - 1;  // a fragment here makes a big message

CDeScatterPacket* NewPacket(UINT16 id) {
  return new CDeScatterPacket(nullptr, id);
}

CDeScatterPacket* AddBig(CSimpleMap& map, UINT16 id, bool complete) {
  CDeScatterPacket* packet = NewPacket(id);
  const UINT8 byte = 1;
  map.Add(id, packet);
  if (complete) {
    const std::vector<UINT8> all(kLast + 1);
    packet->SetFragment(all.data(), 0, kLast + 1, true);
  } else {
    packet->SetFragment(&byte, kLast, 1, false);
  }
  return packet;
}

TEST(CSimpleMap, FindsTheYoungestOfEqualKeys) {
  CSimpleMap map;
  CDeScatterPacket* old = NewPacket(5);
  CDeScatterPacket* young = NewPacket(5);
  ASSERT_TRUE(map.Add(5, old));
  ASSERT_TRUE(map.Add(5, young));
  EXPECT_EQ(map.Find(5), young);
  EXPECT_EQ(map.Find(6), nullptr);
}

TEST(CSimpleMap, RemoveLeavesThePacketToTheCaller) {
  CSimpleMap map;
  CDeScatterPacket* packet = NewPacket(5);
  map.Add(5, packet);
  map.Add(6, NewPacket(6));
  map.Remove(5);
  EXPECT_EQ(map.Find(5), nullptr);
  EXPECT_NE(map.Find(6), nullptr);
  delete packet;
  map.Remove(77);
}

TEST(CSimpleMap, MakesRoomWithFinishedMessagesFirstOldestFirst) {
  CSimpleMap map;
  AddBig(map, 1, false);
  AddBig(map, 2, true);
  CDeScatterPacket* keep = AddBig(map, 3, true);
  EXPECT_TRUE(map.MakeRoom(CDeScatterPacket::kMaxLength, keep));
  EXPECT_NE(map.Find(1), nullptr);
  EXPECT_EQ(map.Find(2), nullptr);
  EXPECT_NE(map.Find(3), nullptr);
}

TEST(CSimpleMap, MakesRoomWithTheOldestWhenNoneIsFinished) {
  CSimpleMap map;
  for (UINT16 id = 1; id <= 3; ++id) AddBig(map, id, false);
  EXPECT_TRUE(map.MakeRoom(CDeScatterPacket::kMaxLength, map.Find(1)));
  EXPECT_NE(map.Find(1), nullptr);
  EXPECT_EQ(map.Find(2), nullptr);
  EXPECT_NE(map.Find(3), nullptr);
}

TEST(CSimpleMap, RefusesWhatNeverFits) {
  CSimpleMap map;
  EXPECT_FALSE(map.MakeRoom(CSimpleMap::kMaxBytes + 1, nullptr));
  EXPECT_TRUE(map.MakeRoom(CSimpleMap::kMaxBytes, nullptr));
}

}  // namespace
}  // namespace vexel
