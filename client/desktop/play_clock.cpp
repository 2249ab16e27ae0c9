#include "client/desktop/play_clock.h"

#include <glib.h>

namespace vexel::client {

uint64_t PlayClock::Now() const {
  if (held_ || baseRealUs_ < 0) return base_;
  const double passed = static_cast<double>(g_get_monotonic_time() - baseRealUs_) * speed_ / 1000;
  return base_ + static_cast<uint64_t>(passed);
}

void PlayClock::Rebase() {
  base_ = Now();
  baseRealUs_ = g_get_monotonic_time();
}

void PlayClock::SetSpeed(double speed) {
  Rebase();
  speed_ = speed;
}

void PlayClock::Hold(bool hold) {
  if (hold == held_) return;
  Rebase();
  held_ = hold;
}

}  // namespace vexel::client
