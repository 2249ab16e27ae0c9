// Random movies and programs, by seed.
#include "programs.h"

#include <cstring>

#include "random_block.h"

namespace vexel::model::script {

namespace {

Matrix AnyMatrix(Lots& lots) {
  Matrix m;
  m.tx = lots.Between(-4000, 4000);
  m.ty = lots.Between(-4000, 4000);
  if (lots.OneIn(2)) {
    m.a = lots.Between(-0x30000, 0x30000);
    m.d = lots.Between(-0x30000, 0x30000);
  }
  if (lots.OneIn(3)) {
    m.b = lots.Between(-0x20000, 0x20000);
    m.c = lots.Between(-0x20000, 0x20000);
  }
  return m;
}

Tag Simple(TagKind kind) {
  Tag tag;
  tag.kind = kind;
  return tag;
}

Tag AnyPlacement(Lots& lots, int sprites) {
  Tag tag;
  tag.kind = lots.OneIn(5) ? TagKind::kMove : TagKind::kPlace;
  tag.depth = static_cast<u16>(lots.OneIn(12) ? 16380 + lots.Below(8) : 1 + lots.Below(5));
  if (tag.kind == TagKind::kPlace || lots.OneIn(3)) {
    // Shapes have the ids behind the sprites.
    tag.character = lots.OneIn(4) ? 100 + lots.Below(2) : lots.Below(sprites) + 1;
    if (sprites == 0) tag.character = 100 + lots.Below(2);
  }
  if (lots.OneIn(2)) tag.matrix = AnyMatrix(lots);
  if (lots.OneIn(4)) tag.alpha = lots.Between(-300, 600);
  if (lots.OneIn(3) ? false : tag.kind == TagKind::kPlace) {
    static const char* const kNames[] = {"a", "b", "c", "A", "kid", "", "ball", "b b"};
    tag.name = kNames[lots.Below(8)];
    if (lots.OneIn(30)) tag.name = std::string(static_cast<size_t>(125 + lots.Below(5)), 'L');
  }
  return tag;
}

Timeline AnyTimeline(Lots& lots, int frames, int sprites, const BlockStyle& style) {
  Timeline out;
  static const char* const kLabels[] = {"one", "two", "Three", "loop", "x_changed", ""};
  for (int frame = 0; frame < frames; ++frame) {
    if (lots.OneIn(2)) {
      Tag tag = Simple(TagKind::kLabel);
      tag.label = kLabels[lots.Below(6)];
      out.push_back(tag);
    }
    for (int n = lots.Below(frame == 0 ? 4 : 2); n > 0; --n) {
      out.push_back(AnyPlacement(lots, sprites));
    }
    if (frame > 0 && lots.OneIn(4)) {
      Tag tag = Simple(TagKind::kRemove);
      tag.depth = static_cast<u16>(1 + lots.Below(5));
      out.push_back(tag);
    }
    for (int n = lots.OneIn(3) ? 0 : lots.OneIn(4) ? 2 : 1; n > 0; --n) {
      Tag tag = Simple(TagKind::kActions);
      tag.block = std::make_shared<const Bytes>(RandomBlock(lots, style));
      out.push_back(tag);
    }
    out.push_back(Simple(TagKind::kFrameEnd));
  }
  if (lots.OneIn(8)) {
    // Tags behind the last frame.
    Tag tag = Simple(TagKind::kActions);
    tag.block = std::make_shared<const Bytes>(RandomBlock(lots, style));
    out.push_back(tag);
  }
  if (!lots.OneIn(10)) out.push_back(Simple(TagKind::kEnd));
  return out;
}

Scene AnyScene(Lots& lots, const BlockStyle& style) {
  Scene scene;
  static const int kVersions[] = {4, 4, 4, 4, 3, 2, 1, 129};
  scene.version = kVersions[lots.Below(8)];
  for (int id = 100; id < 102; ++id) {
    Character& shape = scene.characters[id];
    shape.id = id;
    shape.type = kShapeType;
    const int x = lots.Between(-500, 500), y = lots.Between(-500, 500);
    shape.bounds = {x, x + lots.Below(900), y, y + lots.Below(900)};
  }
  const int sprites = 1 + lots.Below(4);
  // A sprite holds only those before it.
  for (int id = 1; id <= sprites; ++id) {
    Character& sprite = scene.characters[id];
    sprite.id = id;
    sprite.type = kSpriteType;
    const int frames = 1 + lots.Below(4);
    sprite.timeline = AnyTimeline(lots, frames, id - 1, style);
    sprite.frameCount = lots.OneIn(12) ? lots.Below(9) : CountFrames(sprite.timeline);
  }
  scene.main = AnyTimeline(lots, 1 + lots.Below(5), sprites, style);
  scene.frameCount = lots.OneIn(12) ? lots.Below(9) : CountFrames(scene.main);
  return scene;
}

}  // namespace

Program RandomProgram(u64 seed) {
  Lots lots(seed);
  Program program;
  BlockStyle style;
  style.odd = lots.OneIn(3);
  style.loops = lots.OneIn(4);
  style.endless = lots.OneIn(60);
  style.length = 1 + lots.Below(lots.OneIn(4) ? 20 : 6);
  program.scene = AnyScene(lots, style);
  program.hasLayer = lots.OneIn(4);
  if (program.hasLayer) {
    program.layer = lots.OneIn(2) ? 3 : 1 + lots.Below(12);
    program.layerScene = AnyScene(lots, style);
  }
  program.hostStopped = lots.OneIn(2);
  u32 clock = 1000;
  for (int n = 1 + lots.Below(6); n > 0; --n) {
    Step step;
    const int kind = lots.Below(8);
    step.kind = kind == 0   ? StepKind::kGotoFrame
                : kind == 1 ? StepKind::kCallFrame
                            : StepKind::kStep;
    step.frame = lots.Between(-1, 6);
    clock += static_cast<u32>(lots.Below(500));
    step.clock = clock;
    program.steps.push_back(step);
  }
  return program;
}

}  // namespace vexel::model::script
