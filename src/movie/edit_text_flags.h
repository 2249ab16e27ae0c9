// The flags of an edit text, the first word of its data: what concerns the
// pointer and the keyboard before anything of the text is read.
#pragma once

#include <cstdint>

#include "movie/character.h"
#include "movie/sparser.h"

namespace vexel {

inline constexpr uint16_t kEditTextReadOnly = 0x0008;
inline constexpr uint16_t kEditTextNoSelect = 0x1000;  // neither hit nor selected

inline uint16_t EditTextFlags(const SCharacter* text) {
  return SParser(text->data.bytes, text->data.length).GetWord();
}

}  // namespace vexel
