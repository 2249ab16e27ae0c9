// Random action blocks over the writer's grammar.
#pragma once

#include "scene.h"

namespace vexel::model::script {

// Numbers that follow from a seed, on every platform alike.
class Lots {
 public:
  explicit Lots(u64 seed) : m_state(seed * 0x9E3779B97F4A7C15u + 0x1234567) {}
  u64 Next() {
    m_state += 0x9E3779B97F4A7C15u;
    u64 z = m_state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  int Below(int n) { return n <= 0 ? 0 : static_cast<int>(Next() % static_cast<u64>(n)); }
  int Between(int low, int high) { return low + Below(high - low + 1); }
  bool OneIn(int n) { return Below(n) == 0; }

 private:
  u64 m_state;
};

struct BlockStyle {
  int length = 4;        // about so many statements
  bool loops = false;    // mostly loops
  bool odd = false;      // with things that no author writes
  bool endless = false;  // with loops that the limit of a run ends
};

Bytes RandomBlock(Lots& lots, const BlockStyle& style);

}  // namespace vexel::model::script
