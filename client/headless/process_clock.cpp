// The dynamic linker finds the program's function before the C library's, for
// the plug-in as for all libraries; none of those that are linked here needs
// this clock to move (they wait by the monotonic one).
#include "client/headless/process_clock.h"

#include <sys/time.h>

namespace vexel::client {

namespace {

uint64_t processMs = 0;
constexpr time_t kStart = 1000000000;  // seconds since 1970

}  // namespace

void SetProcessClock(uint64_t ms) {
  processMs = ms;
}

uint64_t ProcessClock() {
  return processMs;
}

}  // namespace vexel::client

extern "C" __attribute__((visibility("default"))) int gettimeofday(struct timeval* now,
                                                                   void*) noexcept {
  const uint64_t ms = vexel::client::ProcessClock();
  now->tv_sec = vexel::client::kStart + static_cast<time_t>(ms / 1000);
  now->tv_usec = static_cast<suseconds_t>(ms % 1000 * 1000);
  return 0;
}
