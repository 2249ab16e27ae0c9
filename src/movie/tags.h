// The one list of tag codes. The tag reader, the movie writer, the text form of
// movies, `vexel info` and the tests all read this list, so that a code has one
// number and one name everywhere.
#pragma once

#include <cstdint>

namespace vexel {

// X(code, enumerator, word, name)
//   enumerator  becomes kTag<enumerator>
//   word        names one code, for texts that are read back
//   name        the common name of the record, shared by the forms of one
//               definition (three codes define shapes)
// In ascending order of the code.
#define VEXEL_TAG_LIST(X)                                                 \
  X(0, End, "TagEnd", "TagEnd")                                           \
  X(1, FrameEnd, "TagFrameEnd", "TagFrameEnd")                            \
  X(2, DefineShape, "DefineShape", "DefineShape")                         \
  X(3, FreeCharacter, "FreeCharacter", "FreeCharacter")                   \
  X(4, PlaceObject, "PlaceObject", "PlaceObject")                         \
  X(5, RemoveObject, "RemoveObject", "RemoveObject")                      \
  X(6, DefineBitsShared, "DefineBitsShared", "DefineBits")                \
  X(7, DefineButton, "DefineButton", "DefineButton")                      \
  X(8, DefineJPEGTables, "DefineJPEGTables", "DefineJPEGTables")          \
  X(9, BackgroundColor, "TagBackgroundColor", "TagBackgroundColor")       \
  X(10, DefineFont, "DefineFont", "DefineFont")                           \
  X(11, DefineText, "DefineText", "DefineText")                           \
  X(12, FrameActions, "TagFrameActions", "TagFrameActions")               \
  X(13, DefineFontInfo, "DefineFontInfo", "DefineFontInfo")               \
  X(20, DefineBitsLossless, "DefineBitsLossless", "DefineBits")           \
  X(21, DefineBitsJPEG, "DefineBitsJPEG", "DefineBits")                   \
  X(22, DefineShapeSecond, "DefineShapeSecond", "DefineShape")            \
  X(23, DefineButtonExtra, "DefineButtonExtra", "DefineButtonExtra")      \
  X(26, PlaceObject2, "PlaceObject2", "PlaceObject2")                     \
  X(28, RemoveObjectDepth, "RemoveObjectDepth", "RemoveObject")           \
  X(29, SyncFrame, "TagSyncFrame", "TagSyncFrame")                        \
  X(31, FreeAll, "TagFreeAll", "TagFreeAll")                              \
  X(32, DefineShapeAlpha, "DefineShapeAlpha", "DefineShape")              \
  X(33, DefineTextAlpha, "DefineTextAlpha", "DefineText")                 \
  X(34, DefineButtonRecords, "DefineButtonRecords", "DefineButton")       \
  X(35, DefineBitsJPEGAlpha, "DefineBitsJPEGAlpha", "DefineBits")         \
  X(36, DefineBitsLosslessAlpha, "DefineBitsLosslessAlpha", "DefineBits") \
  X(37, DefineEditText, "DefineEditText", "DefineEditText")               \
  X(39, DefineSprite, "DefineSprite", "DefineSprite")                     \
  X(43, FrameLabel, "TagFrameLabel", "TagFrameLabel")                     \
  X(46, DefineMorphShape, "DefineMorphShape", "DefineMorphShape")         \
  X(48, DefineFont2, "DefineFont2", "DefineFont2")

// An unscoped enumeration over the width of SParser::tagCode: codes are read
// as integers, and most possible codes are not in the list.
enum TagCode : int32_t {
#define VEXEL_TAG_ENUM(code, enumerator, word, name) kTag##enumerator = code,
  VEXEL_TAG_LIST(VEXEL_TAG_ENUM)
#undef VEXEL_TAG_ENUM
};

// A tag header holds the code in 10 bits.
inline constexpr int32_t kMaxTagCode = 1023;

struct TagInfo {
  int32_t code;
  const char* word;
  const char* name;
};

inline constexpr TagInfo kTagInfos[] = {
#define VEXEL_TAG_INFO(code, enumerator, word, name) {code, word, name},
    VEXEL_TAG_LIST(VEXEL_TAG_INFO)
#undef VEXEL_TAG_INFO
};

// The row of a code, or null for a code that no reader knows.
constexpr const TagInfo* FindTagInfo(int32_t code) {
  for (const TagInfo& info : kTagInfos) {
    if (info.code == code) return &info;
  }
  return nullptr;
}

}  // namespace vexel
