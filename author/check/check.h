// What is wrong with a movie, or not needed in it.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vexel::author {

enum class FindingKind : uint8_t {
  kDamaged,      // a player loses something, or shows another thing than meant
  kUnknown,      // codes and values that have no meaning
  kUnsupported,  // with a meaning, but not for a player of movie files
  kUnreachable,  // no frame, action or pointer gets there
  kWasteful,     // the same movie would do with fewer bytes
};
inline constexpr size_t kFindingKinds = 5;

// "damaged" and so on.
const char* FindingKindName(FindingKind kind);

struct Finding {
  FindingKind kind = FindingKind::kDamaged;
  size_t offset = 0;  // in the movie's bytes
  int32_t code = -1;  // of the tag; -1 for what is in no tag
  std::string reason;
};

struct CheckResult {
  std::vector<Finding> findings;  // by rising offset
  // How many there are of each kind. Movies that consist of mistakes have more
  // than are kept.
  std::array<size_t, kFindingKinds> counts = {};

  size_t Count(FindingKind kind) const { return counts[static_cast<size_t>(kind)]; }
};

// Looks a movie over from its first byte to its last. Nothing is too damaged
// for it; memory and time are bounded.
CheckResult CheckMovie(std::span<const uint8_t> movie);

}  // namespace vexel::author
