// The flags of an edit text, the first word of its data: what concerns the
// pointer and the keyboard before anything of the text is read.
#pragma once

#include <cstdint>

#include "movie/character.h"
#include "movie/sparser.h"

namespace vexel {

inline constexpr uint16_t kEditTextHasFont = 0x0001;  // the record gives font and height
inline constexpr uint16_t kEditTextHasMaxLength = 0x0002;
inline constexpr uint16_t kEditTextHasColor = 0x0004;
inline constexpr uint16_t kEditTextReadOnly = 0x0008;
inline constexpr uint16_t kEditTextPassword = 0x0010;   // shown as asterisks
inline constexpr uint16_t kEditTextMultiline = 0x0020;  // Enter makes a new line
inline constexpr uint16_t kEditTextWordWrap = 0x0040;
inline constexpr uint16_t kEditTextHasInitialText = 0x0080;
inline constexpr uint16_t kEditTextUseOutlines =
    0x0100;  // the movie's own font; else a built-in one
inline constexpr uint16_t kEditTextBorder = 0x0800;
inline constexpr uint16_t kEditTextNoSelect = 0x1000;  // neither hit nor selected
inline constexpr uint16_t kEditTextHasLayout = 0x2000;

inline uint16_t EditTextFlags(const SCharacter* text) {
  return SParser(text->data.bytes, text->data.length).GetWord();
}

}  // namespace vexel
