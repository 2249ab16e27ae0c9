// The lie of the land around the harbour, in pixels of the 800 by 450 view.
#pragma once

namespace harbour {

inline constexpr int kWidth = 800;
inline constexpr int kHeight = 450;
inline constexpr double kHorizon = 262;  // y of the far edge of the water
inline constexpr int kRidges = 3;        // 0 is the farthest

// The y of the top of a ridge of hills at an x; at most kHorizon.
double RidgeTop(int ridge, double x);

}  // namespace harbour
