// A sequence of tags: a movie's, a sprite's, or the piece of one message.
#pragma once

#include <optional>

#include "author/action_builder.h"
#include "author/bitmap.h"
#include "author/button.h"
#include "author/morph_builder.h"
#include "author/shape_builder.h"
#include "author/text.h"
#include "movie/tags.h"

namespace vexel::author {

// The length of a tag stands in 6 bits of its header, or behind it in 32.
enum class TagForm : uint8_t { kAuto, kShort, kLong };

// A placement of the second form. Parts that are absent are absent in the file.
struct Placement {
  bool move = false;  // changes what stands at the depth
  uint16_t depth = 0;
  std::optional<uint16_t> character{};
  std::optional<Matrix> matrix{};
  std::optional<Cxform> cxform{};
  std::optional<uint16_t> ratio{};
  // With a name, players take a clip depth from the first two bytes of the
  // name: nothing else is written for it, and the two rarely go together.
  std::optional<std::string> name{};
  std::optional<uint16_t> clipDepth{};
  uint8_t extraFlags = 0;
  MatrixForm matrixForm{};
  CxformForm cxformForm{};
};

class TagStream {
 public:
  // Any tag. kAuto takes the short form up to 62 bytes, but always the long
  // one for bitmaps, which players find again by their six header bytes.
  TagStream& Tag(int code, std::span<const uint8_t> body, TagForm form = TagForm::kAuto);
  // A header that claims a length of its own.
  TagStream& LyingTag(int code, uint32_t length, std::span<const uint8_t> body,
                      TagForm form = TagForm::kAuto);
  TagStream& Raw(std::span<const uint8_t> bytes);

  TagStream& End();
  TagStream& FrameEnd();
  TagStream& FrameLabel(std::string_view label);
  TagStream& FrameActions(const Bytes& block);
  TagStream& FrameActions(const ActionBuilder& actions) { return FrameActions(actions.Finish()); }
  TagStream& BackgroundColor(Color color);
  TagStream& SyncFrame();
  TagStream& FreeAll();

  TagStream& PlaceObject(uint16_t id, uint16_t depth, const Matrix& matrix = {},
                         const std::optional<Cxform>& cxform = {});
  TagStream& Place(const Placement& placement);  // PlaceObject2
  TagStream& Place(uint16_t id, uint16_t depth, const Matrix& matrix = {});
  TagStream& Move(uint16_t depth, const Matrix& matrix);
  TagStream& RemoveObject(uint16_t id, uint16_t depth);
  TagStream& RemoveObject(uint16_t depth);

  TagStream& FreeCharacter(uint16_t id);
  // `code` is one of the three shape codes; kTagDefineShape3 has alpha.
  TagStream& DefineShape(uint16_t id, const ShapeBuilder& shape, int code = kTagDefineShape3);
  TagStream& DefineShape(uint16_t id, const Rect& bounds, const StyleTables& styles,
                         const std::vector<ShapeRecord>& records, int code = kTagDefineShape3);
  TagStream& DefineMorphShape(uint16_t id, const MorphBuilder& morph);
  TagStream& DefineBits(uint16_t id, int code, const Bytes& body);
  TagStream& DefineLossless(uint16_t id, const Picture& picture, bool alpha);
  TagStream& DefineJpeg(uint16_t id, const Bytes& jpeg);  // with its own tables
  TagStream& DefineJPEGTables(const Bytes& jpeg);
  TagStream& DefineFont(uint16_t id, const Font& font);
  TagStream& DefineFont2(uint16_t id, const Font& font);
  TagStream& DefineFontInfo(uint16_t id, const Font& font, uint8_t flags, bool wideCodes);
  TagStream& DefineText(uint16_t id, const Rect& bounds, const StaticText& text, bool alpha = true);
  TagStream& DefineEditText(uint16_t id, const Rect& bounds, const EditTextField& field);
  TagStream& DefineButton(uint16_t id, const std::vector<ButtonRecord>& records,
                          const Bytes& block);
  TagStream& DefineButton2(uint16_t id, bool trackAsMenu, const std::vector<ButtonRecord>& records,
                           const std::vector<ButtonActions>& actions);
  TagStream& DefineButtonExtra(uint16_t id, const std::vector<Cxform>& cxforms);
  // Frames of the sprite: those that its stream ended, or a count of one's own.
  TagStream& DefineSprite(uint16_t id, const TagStream& sprite, int frames = kAuto);

  const Bytes& bytes() const { return out_.bytes(); }
  int frames() const { return frames_; }  // frame ends so far
  int tags() const { return tags_; }

 private:
  BitWriter out_;
  int frames_ = 0;
  int tags_ = 0;
};

}  // namespace vexel::author
