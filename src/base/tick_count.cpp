#include "base/tick_count.h"

#include <sys/time.h>

namespace vexel {

UINT32 GetTickCount() {
  timeval now;
  gettimeofday(&now, nullptr);
  static const int64_t base = static_cast<int64_t>(now.tv_sec) - 1;
  int64_t ms = (static_cast<int64_t>(now.tv_sec) - base) * 1000 + now.tv_usec / 1000;
  return static_cast<UINT32>(static_cast<uint64_t>(ms));
}

}  // namespace vexel
