// When the frames of a film stand, in exact fractions: a film has a steady
// rate, and no rounding of one frame's time may add up over many.
#pragma once

#include <cstdint>
#include <string>

namespace vexel::tools {

// Frames a second as a fraction in lowest terms, both from 1 to 65535, which
// every kind of film can tell exactly.
struct FrameRate {
  int32_t num = 0;
  int32_t den = 1;
  bool operator==(const FrameRate&) const = default;
};

inline constexpr int32_t kMaxRateTerm = 65535;

// "25", "29.97" with up to three decimals, or "30000/1001"; from 0.01 to 1000.
bool ParseFrameRate(const std::string& text, FrameRate* rate);

// Of a movie's rate in 8.8 fixed point, from 1 to 65535.
FrameRate FrameRateOfMovie(uint32_t rate);

// The number of frames that begin before a time in milliseconds, when frame 0
// begins at 0: also the first that begins at this time or after it.
int64_t FramesBefore(FrameRate rate, int64_t ms);

// When a frame begins, in milliseconds, rounded down.
int64_t FrameStartMs(FrameRate rate, int64_t frame);

// The time to play to, in milliseconds, for picture `picture` of a film that
// begins at `fromMs`; below zero if the first frame still stands. A player's
// clock asks for the second frame as soon as it is first read, so it is started
// when the first frame has been shown for as long as others are.
// `clockRate` is the whole frames a second that the clock counts, at least 1.
int64_t ClockMs(FrameRate rate, int64_t picture, int64_t fromMs, int32_t clockRate);

}  // namespace vexel::tools
