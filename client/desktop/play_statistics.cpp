#include "client/desktop/play_statistics.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace vexel::client {

namespace {

constexpr double kMicroseconds = 1e6;

int64_t RealUs() {
  using std::chrono::steady_clock, std::chrono::microseconds;
  return std::chrono::duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

int64_t ProcessorUs() {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  return (int64_t{used.ru_utime.tv_sec} + used.ru_stime.tv_sec) * 1'000'000 +
         used.ru_utime.tv_usec + used.ru_stime.tv_usec;
}

}  // namespace

PlayStatistics::PlayStatistics() : startUs_(RealUs()), startProcessorUs_(ProcessorUs()) {}

void PlayStatistics::Show(size_t frame) {
  if (last_ != kNone && frame <= last_) return;
  due_ += last_ == kNone ? 1 : frame - last_;
  shown_++;
  last_ = frame;
}

std::string PlayStatistics::Line(uint64_t pictures) const {
  const double real = static_cast<double>(RealUs() - startUs_) / kMicroseconds;
  const double used = static_cast<double>(ProcessorUs() - startProcessorUs_) / kMicroseconds;
  char line[200];
  std::snprintf(line, sizeof line,
                "%.1f s, %llu frames due, %llu shown, %llu pictures, %.2f s of processor time "
                "(%.1f %%)",
                real, static_cast<unsigned long long>(due_),
                static_cast<unsigned long long>(shown_), static_cast<unsigned long long>(pictures),
                used, used * 100 / std::max(real, 0.001));
  return line;
}

}  // namespace vexel::client
