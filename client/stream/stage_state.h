// What stands on the stage after each frame, for key frames: a list of the
// placed characters, kept as a player keeps it while no script interferes.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "client/stream/movie_index.h"

namespace vexel::client {

class StageState {
 public:
  // Follows one tag: definitions (for their kinds) and control tags. A tag that
  // is cut short changes nothing.
  void Apply(const MovieIndex& movie, const MovieTag& tag);

  // A key frame: the tag that begins one, and a placement for every object.
  // `extra` are tags between the two.
  std::vector<uint8_t> KeyFrame(std::span<const uint8_t> extra) const;

  // A placement in a key frame has no alpha. False while something on stage
  // would look otherwise after it.
  bool expressible() const;

 private:
  struct Cxform {
    uint32_t flags = 0;  // bit 0: mul is written, bit 1: add is; players compare them
    int32_t mul[4] = {256, 256, 256, 256};  // red, green, blue, alpha
    int32_t add[4] = {0, 0, 0, 0};
  };
  struct Placed {
    uint16_t depth = 0;
    uint16_t character = 0;
    std::vector<uint8_t> matrix;  // as it is written
    Cxform cxform;
  };
  enum class Kind : uint8_t { kOther, kButton, kSprite };

  void Place(std::span<const uint8_t> body);
  void Place2(std::span<const uint8_t> body);
  void Remove(uint16_t depth);
  // The first object that is not less deep.
  std::vector<Placed>::iterator At(uint16_t depth);

  std::vector<Placed> placed_;  // by depth
  std::map<uint16_t, Kind> kinds_;
};

}  // namespace vexel::client
