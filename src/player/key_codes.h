// Key codes as the host gives them: these, or the code of a character.
#pragma once

#include <cstdint>

namespace vexel {

enum KeyCode : int32_t {
  kKeyLeft = 1,
  kKeyRight = 2,
  kKeyReturn = 13,
  kKeyUp = 14,
  kKeyDown = 15,
  kKeyTab = 18,
  kKeySpace = 32,
};

// Bits of a key's modifiers.
inline constexpr int32_t kModifierShift = 1;

}  // namespace vexel
