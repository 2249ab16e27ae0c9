// Memory that runs out on demand. The stress program is linked so that the
// allocations of the code under test come through here; those that throw,
// which only tests make, always succeed.
#pragma once

#include <cstdint>

namespace vexel::test {

enum class FailMode {
  kOnce,     // the n-th allocation fails
  kForever,  // the n-th and all after it fail
};

// Starts to count; the allocation number `n`, from 1, is the first to fail.
void ArmAllocations(FailMode mode, int64_t n);

// Ends it. True if some allocation failed: the code asks for at least `n`.
bool DisarmAllocations();

// Allocations succeed, uncounted, while one of these exists.
class AllocationPause {
 public:
  AllocationPause();
  ~AllocationPause();
  AllocationPause(const AllocationPause&) = delete;
  AllocationPause& operator=(const AllocationPause&) = delete;
};

}  // namespace vexel::test
