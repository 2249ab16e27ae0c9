// Of the words there are, the one that a misspelt word most likely meant.
#pragma once

#include <string>
#include <string_view>

namespace vexel::author {

class Nearest {
 public:
  explicit Nearest(std::string_view word) : word_(word.substr(0, kLongest)) {}
  void Offer(std::string_view known);
  // "; did you mean ...?", or nothing if no word offered is near enough.
  std::string Hint() const;

 private:
  // Words beyond this are compared by their beginnings.
  static constexpr size_t kLongest = 32;

  std::string word_;
  std::string best_;
  size_t distance_ = kLongest;
};

}  // namespace vexel::author
