// What the definition of an edit text says, read anew whenever it is asked for:
// the bytes stay in the file's form.
#pragma once

#include <cstdint>

#include "geometry/color.h"
#include "movie/fwd.h"

namespace vexel {

// How high a text is whose font isn't known: 18 points, in twentieths.
inline constexpr int32_t kPlainHeight = 360;

// What a record leaves out has the value given here.
struct EditRecord {
  // Of an edit text; `character` is not kept.
  explicit EditRecord(const SCharacter* character);

  uint16_t flags = 0;                 // kEditText bits
  uint16_t fontId = 0;                // 0: the built-in serif
  int32_t fontHeight = kPlainHeight;  // twentieths
  RGBI color = {0, 0, 0, 255};        // not premultiplied
  int32_t maxLength = 0;              // characters; 0 for no limit
  int32_t align = 0;                  // kAlignLeft and its like
  int32_t leftMargin = 0;             // twentieths, as all that follow
  int32_t rightMargin = 0;
  int32_t indent = 0;
  int32_t leading = 0;  // may be negative
  int32_t textsAt = 0;  // offset in the data of the variable's name and the initial text
};

}  // namespace vexel
