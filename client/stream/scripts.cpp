#include "client/stream/scripts.h"

#include "author/check/tag_reader.h"
#include "movie/tags.h"

namespace vexel::client {

namespace {

constexpr uint32_t kLongForm = 63;  // in the length field of a tag's header
constexpr size_t kSpriteHead = 4;   // identifier and frame count

// Sprites hold no definitions, so no other sprites.
bool AnyIn(std::span<const uint8_t> tags, bool inSprite) {
  try {
    author::TagReader reader(tags, 0);
    while (reader.left() >= 2) {
      const uint32_t word = reader.U16();
      const auto code = static_cast<int32_t>(word >> 6);
      uint32_t size = word & kLongForm;
      if (size == kLongForm) size = reader.U32();
      const std::span<const uint8_t> body = reader.Take(size);
      if (code == kTagEnd) break;
      if (code == kTagFrameActions || code == kTagDefineButton || code == kTagDefineButton2)
        return true;
      if (code == kTagDefineSprite && !inSprite && body.size() > kSpriteHead &&
          AnyIn(body.subspan(kSpriteHead), true))
        return true;
    }
  } catch (const author::CutShort&) {
  }
  return false;
}

}  // namespace

bool HasScripts(std::span<const uint8_t> tags) {
  return AnyIn(tags, false);
}

}  // namespace vexel::client
