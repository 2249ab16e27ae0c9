// The one list of tag codes: reader, writer, `info` and traces all take codes
// and names from here.
#pragma once

#include <cstdint>

namespace vexel {

// X(code, identifier, name as `info` prints it)
#define VEXEL_TAGS(X)                                \
  X(0, kTagEnd, "TagEnd")                            \
  X(1, kTagFrameEnd, "TagFrameEnd")                  \
  X(2, kTagDefineShape, "DefineShape")               \
  X(3, kTagFreeCharacter, "FreeCharacter")           \
  X(4, kTagPlaceObject, "PlaceObject")               \
  X(5, kTagRemoveObject, "RemoveObject")             \
  X(6, kTagDefineBits, "DefineBits")                 \
  X(7, kTagDefineButton, "DefineButton")             \
  X(8, kTagDefineJPEGTables, "DefineJPEGTables")     \
  X(9, kTagBackgroundColor, "TagBackgroundColor")    \
  X(10, kTagDefineFont, "DefineFont")                \
  X(11, kTagDefineText, "DefineText")                \
  X(12, kTagFrameActions, "TagFrameActions")         \
  X(13, kTagDefineFontInfo, "DefineFontInfo")        \
  X(20, kTagDefineBitsLossless, "DefineBits")        \
  X(21, kTagDefineBitsJPEG, "DefineBits")            \
  X(22, kTagDefineShape2, "DefineShape")             \
  X(23, kTagDefineButtonExtra, "DefineButtonExtra")  \
  X(26, kTagPlaceObject2, "PlaceObject2")            \
  X(28, kTagRemoveObject2, "RemoveObject")           \
  X(32, kTagDefineShape3, "DefineShape")             \
  X(33, kTagDefineText2, "DefineText")               \
  X(34, kTagDefineButton2, "DefineButton")           \
  X(35, kTagDefineBitsJPEGAlpha, "DefineBits")       \
  X(36, kTagDefineBitsLosslessAlpha, "DefineBits")   \
  X(37, kTagDefineEditText, "DefineEditText")        \
  X(39, kTagDefineSprite, "DefineSprite")            \
  X(43, kTagFrameLabel, "TagFrameLabel")             \
  X(46, kTagDefineMorphShape, "DefineMorphShape")    \
  X(48, kTagDefineFont2, "DefineFont2")

enum TagCode : int32_t {
#define VEXEL_TAG_ENUM(code, identifier, name) identifier = code,
  VEXEL_TAGS(VEXEL_TAG_ENUM)
#undef VEXEL_TAG_ENUM
};

// The name of a tag code, or null for a code that no reader handles.
constexpr const char* TagName(int32_t code) {
  switch (code) {
#define VEXEL_TAG_NAME(code, identifier, name) \
  case identifier:                             \
    return name;
    VEXEL_TAGS(VEXEL_TAG_NAME)
#undef VEXEL_TAG_NAME
    default:
      return nullptr;
  }
}

}  // namespace vexel
