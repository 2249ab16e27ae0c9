// Tags: a 16-bit header of code and length, the body behind it. Each typed
// function packs its body apart, since the header must know the length.
#include "author/tag_stream.h"

#include <stdexcept>

#include "author/tag_kinds.h"

namespace vexel::author {

TagStream& TagStream::Tag(int code, std::span<const uint8_t> body, TagForm form) {
  return LyingTag(code, static_cast<uint32_t>(body.size()), body, form);
}

TagStream& TagStream::LyingTag(int code, uint32_t length, std::span<const uint8_t> body,
                               TagForm form) {
  if (code < 0 || code > kMaxTagCode) throw std::range_error("a tag code has 10 bits");
  const bool isLong = form == TagForm::kAuto ? length >= kLongTagLength || IsBitmapTag(code)
                                             : form == TagForm::kLong;
  if (!isLong && length >= kLongTagLength)
    throw std::range_error("a short tag has at most 62 bytes");
  const auto word = static_cast<uint32_t>(code) << 6;
  if (isLong) {
    out_.U16(word | kLongTagLength);
    out_.U32(length);
  } else {
    out_.U16(word | length);
  }
  out_.Append(body);
  ++tags_;
  if (code == kTagFrameEnd) ++frames_;
  return *this;
}

TagStream& TagStream::Raw(std::span<const uint8_t> bytes) {
  out_.Append(bytes);
  return *this;
}

TagStream& TagStream::End() {
  return Tag(kTagEnd, {});
}

TagStream& TagStream::FrameEnd() {
  return Tag(kTagFrameEnd, {});
}

TagStream& TagStream::FrameLabel(std::string_view label) {
  BitWriter body;
  body.Text(label);
  return Tag(kTagFrameLabel, body.bytes());
}

TagStream& TagStream::FrameActions(const Bytes& block) {
  return Tag(kTagFrameActions, block);
}

TagStream& TagStream::BackgroundColor(Color color) {
  BitWriter body;
  WriteColor(body, color, false);
  return Tag(kTagBackgroundColor, body.bytes());
}

TagStream& TagStream::SyncFrame() {
  return Tag(kTagSyncFrame, {});
}

TagStream& TagStream::FreeAll() {
  return Tag(kTagFreeAll, {});
}

TagStream& TagStream::PlaceObject(uint16_t id, uint16_t depth, const Matrix& matrix,
                                  const std::optional<Cxform>& cxform) {
  BitWriter body;
  body.U16(id);
  body.U16(depth);
  WriteMatrix(body, matrix);
  if (cxform) WriteCxform(body, *cxform, false);
  return Tag(kTagPlaceObject, body.bytes());
}

TagStream& TagStream::Place(const Placement& placement) {
  BitWriter body;
  body.U8((placement.move ? 0x01u : 0) | (placement.character ? 0x02u : 0) |
          (placement.matrix ? 0x04u : 0) | (placement.cxform ? 0x08u : 0) |
          (placement.ratio ? 0x10u : 0) | (placement.name ? 0x20u : 0) |
          (placement.clipDepth ? 0x40u : 0) | placement.extraFlags);
  body.U16(placement.depth);
  if (placement.character) body.U16(*placement.character);
  if (placement.matrix) WriteMatrix(body, *placement.matrix, placement.matrixForm);
  if (placement.cxform) WriteCxform(body, *placement.cxform, true, placement.cxformForm);
  if (placement.ratio) body.U16(*placement.ratio);
  if (placement.name) {
    body.Text(*placement.name);
  } else if (placement.clipDepth) {
    body.U16(*placement.clipDepth);
  }
  return Tag(kTagPlaceObject2, body.bytes());
}

TagStream& TagStream::Place(uint16_t id, uint16_t depth, const Matrix& matrix) {
  Placement placement;
  placement.character = id;
  placement.depth = depth;
  placement.matrix = matrix;
  return Place(placement);
}

TagStream& TagStream::Move(uint16_t depth, const Matrix& matrix) {
  Placement placement;
  placement.move = true;
  placement.depth = depth;
  placement.matrix = matrix;
  return Place(placement);
}

TagStream& TagStream::RemoveObject(uint16_t id, uint16_t depth) {
  BitWriter body;
  body.U16(id);
  body.U16(depth);
  return Tag(kTagRemoveObject, body.bytes());
}

TagStream& TagStream::RemoveObject(uint16_t depth) {
  BitWriter body;
  body.U16(depth);
  return Tag(kTagRemoveObject2, body.bytes());
}

TagStream& TagStream::FreeCharacter(uint16_t id) {
  BitWriter body;
  body.U16(id);
  return Tag(kTagFreeCharacter, body.bytes());
}

TagStream& TagStream::DefineShape(uint16_t id, const ShapeBuilder& shape, int code) {
  return DefineShape(id, shape.Bounds(), shape.styles(), shape.records(), code);
}

TagStream& TagStream::DefineShape(uint16_t id, const Rect& bounds, const StyleTables& styles,
                                  const std::vector<ShapeRecord>& records, int code) {
  BitWriter body;
  body.U16(id);
  WriteRect(body, bounds);
  WriteShape(body, styles, records, code == kTagDefineShape3);
  return Tag(code, body.bytes());
}

TagStream& TagStream::DefineMorphShape(uint16_t id, const MorphBuilder& morph) {
  BitWriter body;
  body.U16(id);
  WriteRect(body, morph.StartBounds());
  WriteRect(body, morph.EndBounds());
  morph.Write(body);
  return Tag(kTagDefineMorphShape, body.bytes());
}

TagStream& TagStream::DefineBits(uint16_t id, int code, const Bytes& data) {
  BitWriter body;
  body.U16(id);
  body.Append(data);
  return Tag(code, body.bytes());
}

TagStream& TagStream::DefineLossless(uint16_t id, const Picture& picture, bool alpha) {
  return DefineBits(id, alpha ? kTagDefineBitsLosslessAlpha : kTagDefineBitsLossless,
                    EncodeLossless(LosslessFromPicture(picture, alpha), alpha));
}

TagStream& TagStream::DefineJpeg(uint16_t id, const Bytes& jpeg) {
  return DefineBits(id, kTagDefineBitsJPEG, jpeg);
}

TagStream& TagStream::DefineJPEGTables(const Bytes& jpeg) {
  return Tag(kTagDefineJPEGTables, jpeg);
}

TagStream& TagStream::DefineFont(uint16_t id, const Font& font) {
  BitWriter body;
  body.U16(id);
  WriteFont(body, font);
  return Tag(kTagDefineFont, body.bytes());
}

TagStream& TagStream::DefineFont2(uint16_t id, const Font& font) {
  BitWriter body;
  body.U16(id);
  WriteFont2(body, font);
  return Tag(kTagDefineFont2, body.bytes());
}

TagStream& TagStream::DefineFontInfo(uint16_t id, const Font& font, uint8_t flags, bool wideCodes) {
  BitWriter body;
  body.U16(id);
  WriteFontInfo(body, font, flags, wideCodes);
  return Tag(kTagDefineFontInfo, body.bytes());
}

TagStream& TagStream::DefineText(uint16_t id, const Rect& bounds, const StaticText& text,
                                 bool alpha) {
  BitWriter body;
  body.U16(id);
  WriteRect(body, bounds);
  WriteStaticText(body, text, alpha);
  return Tag(alpha ? kTagDefineText2 : kTagDefineText, body.bytes());
}

TagStream& TagStream::DefineEditText(uint16_t id, const Rect& bounds, const EditTextField& field) {
  BitWriter body;
  body.U16(id);
  WriteRect(body, bounds);
  WriteEditText(body, field);
  return Tag(kTagDefineEditText, body.bytes());
}

TagStream& TagStream::DefineButton(uint16_t id, const std::vector<ButtonRecord>& records,
                                   const Bytes& block) {
  BitWriter body;
  body.U16(id);
  WriteButton(body, records, block);
  return Tag(kTagDefineButton, body.bytes());
}

TagStream& TagStream::DefineButton2(uint16_t id, bool trackAsMenu,
                                    const std::vector<ButtonRecord>& records,
                                    const std::vector<ButtonActions>& actions) {
  BitWriter body;
  body.U16(id);
  WriteButton2(body, trackAsMenu, records, actions);
  return Tag(kTagDefineButton2, body.bytes());
}

TagStream& TagStream::DefineButtonExtra(uint16_t id, const std::vector<Cxform>& cxforms) {
  BitWriter body;
  body.U16(id);
  WriteButtonExtra(body, cxforms);
  return Tag(kTagDefineButtonExtra, body.bytes());
}

TagStream& TagStream::DefineSprite(uint16_t id, const TagStream& sprite, int frames) {
  BitWriter body;
  body.U16(id);
  body.U16(static_cast<uint32_t>(frames == kAuto ? sprite.frames() : frames));
  body.Append(sprite.bytes());
  return Tag(kTagDefineSprite, body.bytes());
}

}  // namespace vexel::author
