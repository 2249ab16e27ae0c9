// The clock of a presentation that can be slowed down, hurried and held.
#pragma once

#include <cstdint>

namespace vexel::client {

class PlayClock {
 public:
  // Milliseconds that never go back.
  uint64_t Now() const;
  // 1 is as the movie was made; above 0.
  void SetSpeed(double speed);
  double speed() const { return speed_; }
  // A held clock stands, whatever its speed.
  void Hold(bool hold);
  bool held() const { return held_; }

 private:
  void Rebase();

  double speed_ = 1;
  bool held_ = false;
  uint64_t base_ = 0;        // milliseconds of this clock ...
  int64_t baseRealUs_ = -1;  // ... at this real time; below 0: not started
};

}  // namespace vexel::client
