// Nearness is the count of characters to change, insert or drop, with capitals
// taken as small letters.
#include "author/script/nearest.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace vexel::author {

void Nearest::Offer(std::string_view known) {
  const std::string_view other = known.substr(0, kLongest);
  std::array<size_t, kLongest + 1> row;
  for (size_t j = 0; j <= other.size(); ++j) row[j] = j;
  for (size_t i = 0; i < word_.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i + 1;
    for (size_t j = 0; j < other.size(); ++j) {
      const bool same = std::tolower(static_cast<unsigned char>(word_[i])) ==
                        std::tolower(static_cast<unsigned char>(other[j]));
      const size_t change = diagonal + (same ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({change, row[j] + 1, diagonal + 1});
    }
  }
  if (row[other.size()] < distance_) {
    distance_ = row[other.size()];
    best_ = known;
  }
}

std::string Nearest::Hint() const {
  // A third of the word may be wrong.
  if (best_.empty() || distance_ > word_.size() / 3 + 1) return "";
  return "; did you mean " + best_ + "?";
}

}  // namespace vexel::author
