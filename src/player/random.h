// The pseudo-random numbers of the action language: a shift register, and a
// hash over it. One sequence a process, shared by all players. This header
// includes nothing of ours, so every folder of the ring uses it.
#pragma once

#include <cstdint>

namespace vexel {

// Feedback bits of a register of 32 bits with the full period.
inline constexpr uint32_t kRandomTaps = 0xA3000000;

struct TRandomFast {
  uint32_t seed;      // the register; 0 asks for a seed
  uint32_t taps;      // what a bit that is shifted out flips
  uint32_t reserved;  // 0
};

extern TRandomFast gRandomFast;

// Seeds from the tick clock, and sets the taps; whoever sets a seed of their own
// sets the taps too. A tick of 0 leaves a register that stays 0, and the next
// number tries again.
void RandomFastInit(TRandomFast* random);

// A number from 0 to n - 1; 0 for an `n` of 0 and less. Steps the register in
// any case.
int32_t Random(int32_t n);

int32_t RandomPureHasher(int32_t x);

}  // namespace vexel
