// A player whose dictionary a test fills by hand, and short words for placing.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "author/writer.h"
#include "movie/character.h"
#include "support/check_stage.h"
#include "support/test_player.h"

namespace vexel::test {

inline DataSpan CopyBytes(const author::Bytes& bytes) {
  DataSpan span;
  span.block = DataRef::Adopt(DataBlock::Create(static_cast<int32_t>(bytes.size())));
  span.bytes = span.block.Bytes();
  span.length = static_cast<int32_t>(bytes.size());
  if (!bytes.empty()) memcpy(span.bytes, bytes.data(), bytes.size());
  return span;
}

class StageFixture : public ::testing::Test {
 protected:
  // The movie is taken as begun, so that sprites run.
  StageFixture() { player.gotHeader = true; }
  ~StageFixture() override { EXPECT_EQ(CheckStage(stage), ""); }

  // A character of the player's dictionary; 100 by 100 twentieths.
  SCharacter* Define(uint16_t id, uint8_t type) {
    SCharacter* character = player.CreateCharacter(id);
    if (!character) return nullptr;
    character->type = type;
    character->bounds = {0, 100, 0, 100};
    return character;
  }
  SCharacter* DefineSprite(uint16_t id, const author::TagStream& tags) {
    SCharacter* character = Define(id, charSprite);
    if (!character) return nullptr;
    character->data = CopyBytes(tags.bytes());
    character->frameCount = tags.frames();
    return character;
  }

  static PlaceInfo Info(uint16_t depth, SCharacter* character = nullptr) {
    PlaceInfo info;
    MatrixIdentity(&info.mat);
    info.cxform.Clear();
    info.depth = depth;
    info.character = character;
    info.flags = character ? kPlaceCharacter | kPlaceMatrix : 0;
    return info;
  }
  SObject* Place(uint16_t depth, SCharacter* character) {
    return Place(&stage.root, depth, character);
  }
  SObject* Place(SObject* parent, uint16_t depth, SCharacter* character) {
    const PlaceInfo info = Info(depth, character);
    return stage.PlaceObject(parent, &info);
  }
  // With the matrix moved right.
  SObject* PlaceAt(SObject* parent, uint16_t depth, SCharacter* character, SCOORD x) {
    PlaceInfo info = Info(depth, character);
    info.mat.tx = x;
    return stage.PlaceObject(parent, &info);
  }
  SObject* PlaceNamed(uint16_t depth, SCharacter* character, const char* name) {
    PlaceInfo info = Info(depth, character);
    info.name = name;
    info.flags |= kPlaceName;
    return stage.PlaceObject(&stage.root, &info);
  }

  TestPlayer player;
  DisplayList& stage = player.display;
};

}  // namespace vexel::test
