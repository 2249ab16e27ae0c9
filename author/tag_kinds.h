// What the writer, the dump and the check know of tags by their codes.
#pragma once

#include <cstdint>

#include "movie/tags.h"

namespace vexel::author {

// A length field of all ones announces the 32-bit length.
inline constexpr uint32_t kLongTagLength = 63;

// Flags of a placement of the second form: what it gives. The last has no
// field that belongs to it.
inline constexpr uint8_t kMoveFlag = 0x01;
inline constexpr uint8_t kCharacterFlag = 0x02;
inline constexpr uint8_t kMatrixFlag = 0x04;
inline constexpr uint8_t kCxformFlag = 0x08;
inline constexpr uint8_t kRatioFlag = 0x10;
inline constexpr uint8_t kNameFlag = 0x20;
inline constexpr uint8_t kClipFlag = 0x40;
inline constexpr uint8_t kOtherFlags = 0x80;

// Whether a tag defines a bitmap. Players frame such a tag again from its body,
// six bytes back, so its header always has the long form.
constexpr bool IsBitmapTag(int32_t code) {
  switch (code) {
    case kTagDefineBits:
    case kTagDefineBitsLossless:
    case kTagDefineBitsJPEG:
    case kTagDefineBitsJPEGAlpha:
    case kTagDefineBitsLosslessAlpha:
      return true;
    default:
      return false;
  }
}

// Whether a tag defines a character, whose id its body begins with.
constexpr bool IsDefinitionTag(int32_t code) {
  switch (code) {
    case kTagDefineShape:
    case kTagDefineShape2:
    case kTagDefineShape3:
    case kTagDefineMorphShape:
    case kTagDefineButton:
    case kTagDefineButton2:
    case kTagDefineFont:
    case kTagDefineFont2:
    case kTagDefineText:
    case kTagDefineText2:
    case kTagDefineEditText:
    case kTagDefineSprite:
      return true;
    default:
      return IsBitmapTag(code);
  }
}

}  // namespace vexel::author
