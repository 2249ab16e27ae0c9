// The clock that this process tells the plug-in. The plug-in times its work by
// gettimeofday; this program has one of its own, which stands until it is moved
// on, so that a script gives the same pictures on any machine.
#pragma once

#include <cstdint>

namespace vexel::client {

// Milliseconds since the start, which gettimeofday counts from some day on.
void SetProcessClock(uint64_t ms);
uint64_t ProcessClock();

}  // namespace vexel::client
