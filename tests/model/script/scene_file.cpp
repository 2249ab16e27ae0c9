// A scene through the movie writer. Definitions stand before all else.
#include "scene_file.h"

#include "author/writer.h"

namespace vexel::model::script {

namespace {

author::Matrix ToAuthor(const Matrix& m) {
  return {m.a, m.b, m.c, m.d, m.tx, m.ty};
}

void WriteTag(author::TagStream& out, const Tag& tag) {
  switch (tag.kind) {
    case TagKind::kEnd:
      out.End();
      break;
    case TagKind::kFrameEnd:
      out.FrameEnd();
      break;
    case TagKind::kLabel:
      out.FrameLabel(tag.label);
      break;
    case TagKind::kActions:
      out.FrameActions(*tag.block);
      break;
    case TagKind::kPlace:
    case TagKind::kMove: {
      author::Placement place;
      place.move = tag.kind == TagKind::kMove;
      place.depth = tag.depth;
      if (tag.character >= 0) place.character = static_cast<uint16_t>(tag.character);
      if (tag.matrix) place.matrix = ToAuthor(*tag.matrix);
      if (tag.alpha) {
        author::Cxform cxform;
        cxform.alphaMul = *tag.alpha;
        place.cxform = cxform;
      }
      if (tag.name) place.name = *tag.name;
      out.Place(place);
      break;
    }
    case TagKind::kRemove:
      out.RemoveObject(tag.depth);
      break;
  }
}

}  // namespace

int CountFrames(const Timeline& timeline) {
  int count = 0;
  for (const Tag& tag : timeline) count += tag.kind == TagKind::kFrameEnd;
  return count;
}

Bytes SceneFile(const Scene& scene) {
  author::MovieWriter movie({0, 2000, 0, 2000}, 12 << 8, static_cast<uint8_t>(scene.version));
  movie.header().frameCount = scene.frameCount;
  for (const auto& [id, character] : scene.characters) {
    if (character.type == kSpriteType) {
      author::TagStream sprite;
      for (const Tag& tag : character.timeline) WriteTag(sprite, tag);
      movie.DefineSprite(static_cast<uint16_t>(id), sprite, character.frameCount);
    } else {
      // Bounds without an edge: it has a size, and the pointer never hits it.
      const Rect& b = character.bounds;
      movie.DefineShape(static_cast<uint16_t>(id), {b.xmin, b.xmax, b.ymin, b.ymax}, {}, {});
    }
  }
  for (const Tag& tag : scene.main) WriteTag(movie, tag);
  return movie.Finish();
}

}  // namespace vexel::model::script
