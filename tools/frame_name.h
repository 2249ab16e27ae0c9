// The names of a row of pictures: a pattern with the frame's number in it.
#pragma once

#include <cstdint>
#include <string>

namespace vexel::tools {

class FrameName {
 public:
  // A name with one `%d`, or `%0Nd` for N digits with zeros in front (N from 1
  // to 9). Any other use of `%` makes it invalid.
  explicit FrameName(const std::string& pattern);

  bool valid() const { return valid_; }

  // The name of a frame.
  std::string Of(int32_t frame) const;

 private:
  std::string before_;
  std::string after_;
  size_t digits_ = 1;
  bool valid_ = false;
};

}  // namespace vexel::tools
