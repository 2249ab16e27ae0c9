// The one list of tag codes. The tag reader, the movie writer, the text form of
// movies, `vexel info`, traces and tests all read this list, so that a code has
// one number and one name everywhere.
#pragma once

#include <cstdint>

namespace vexel {

// X(code, word, name), in ascending order of the code:
//   word  names one code: the enumerator is kTag<word>, and texts that are
//         read back use the word itself
//   name  the common name of the record, shared by the forms of one
//         definition (three codes define shapes)
#define VEXEL_TAGS(X)                           \
  X(0, End, "TagEnd")                           \
  X(1, FrameEnd, "TagFrameEnd")                 \
  X(2, DefineShape, "DefineShape")              \
  X(3, FreeCharacter, "FreeCharacter")          \
  X(4, PlaceObject, "PlaceObject")              \
  X(5, RemoveObject, "RemoveObject")            \
  X(6, DefineBits, "DefineBits")                \
  X(7, DefineButton, "DefineButton")            \
  X(8, DefineJPEGTables, "DefineJPEGTables")    \
  X(9, BackgroundColor, "TagBackgroundColor")   \
  X(10, DefineFont, "DefineFont")               \
  X(11, DefineText, "DefineText")               \
  X(12, FrameActions, "TagFrameActions")        \
  X(13, DefineFontInfo, "DefineFontInfo")       \
  X(20, DefineBitsLossless, "DefineBits")       \
  X(21, DefineBitsJPEG, "DefineBits")           \
  X(22, DefineShape2, "DefineShape")            \
  X(23, DefineButtonExtra, "DefineButtonExtra") \
  X(26, PlaceObject2, "PlaceObject2")           \
  X(28, RemoveObject2, "RemoveObject")          \
  X(29, SyncFrame, "TagSyncFrame")              \
  X(31, FreeAll, "TagFreeAll")                  \
  X(32, DefineShape3, "DefineShape")            \
  X(33, DefineText2, "DefineText")              \
  X(34, DefineButton2, "DefineButton")          \
  X(35, DefineBitsJPEGAlpha, "DefineBits")      \
  X(36, DefineBitsLosslessAlpha, "DefineBits")  \
  X(37, DefineEditText, "DefineEditText")       \
  X(39, DefineSprite, "DefineSprite")           \
  X(43, FrameLabel, "TagFrameLabel")            \
  X(46, DefineMorphShape, "DefineMorphShape")   \
  X(48, DefineFont2, "DefineFont2")

// Unscoped, over the type of SParser::tagCode: codes are read as integers, and
// most possible codes are not in the list.
enum TagCode : int32_t {
#define VEXEL_TAG_ENUM(code, word, name) kTag##word = code,
  VEXEL_TAGS(VEXEL_TAG_ENUM)
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
#define VEXEL_TAG_INFO(code, word, name) {code, #word, name},
    VEXEL_TAGS(VEXEL_TAG_INFO)
#undef VEXEL_TAG_INFO
};

// The row of a code, or null for a code that no reader handles.
constexpr const TagInfo* FindTagInfo(int32_t code) {
  for (const TagInfo& info : kTagInfos) {
    if (info.code == code) return &info;
  }
  return nullptr;
}

// The common name of a tag code, or null for a code that no reader handles.
constexpr const char* TagName(int32_t code) {
  const TagInfo* info = FindTagInfo(code);
  return info ? info->name : nullptr;
}

}  // namespace vexel
