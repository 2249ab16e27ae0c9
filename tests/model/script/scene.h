// A movie as a list of what its tags say, from which both the file for the
// player and the model's own timelines are made.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "color.h"
#include "geom.h"

namespace vexel::model::script {

using Bytes = std::vector<u8>;
using Block = std::shared_ptr<const Bytes>;  // an action block

enum class TagKind { kEnd, kFrameEnd, kLabel, kActions, kPlace, kMove, kRemove };

struct Tag {
  TagKind kind = TagKind::kFrameEnd;
  std::string label;
  Block block;
  u16 depth = 0;
  int character = -1;  // -1: none is given
  std::optional<Matrix> matrix;
  std::optional<int> alpha;  // multiplier of the colour transform
  std::optional<std::string> name;
};

using Timeline = std::vector<Tag>;

enum { kShapeType = 0, kSpriteType = 6, kRootType = 98 };

struct Character {
  int id = 0;
  int type = kShapeType;
  Rect bounds;
  Timeline timeline;
  int frameCount = 0;
};

struct Scene {
  int version = 4;
  std::map<int, Character> characters;
  Timeline main;
  int frameCount = 0;
};

int CountFrames(const Timeline& timeline);

}  // namespace vexel::model::script
