// Key codes as the host gives them: these, or the code of a character. The bits
// of their modifiers are those of text/edit_text.h.
#pragma once

#include <cstdint>

namespace vexel {

enum KeyCode : int32_t {
  kKeyLeft = 1,
  kKeyRight = 2,
  kKeyHome = 3,
  kKeyEnd = 4,
  kKeyInsert = 5,
  kKeyDelete = 6,
  kKeyClear = 7,
  kKeyBackspace = 8,
  kKeyCut = 9,
  kKeyCopy = 10,
  kKeyPaste = 11,
  kKeySelectAll = 12,
  kKeyReturn = 13,
  kKeyUp = 14,
  kKeyDown = 15,
  kKeyPageUp = 16,
  kKeyPageDown = 17,
  kKeyTab = 18,
  kKeySpace = 32,
};

}  // namespace vexel
