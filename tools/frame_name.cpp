#include "frame_name.h"

namespace vexel::tools {

FrameName::FrameName(const std::string& pattern) {
  const size_t percent = pattern.find('%');
  if (percent == std::string::npos || pattern.rfind('%') != percent) return;
  size_t at = percent + 1;
  if (at + 1 < pattern.size() && pattern[at] == '0' && pattern[at + 1] >= '1' &&
      pattern[at + 1] <= '9') {
    digits_ = static_cast<size_t>(pattern[at + 1] - '0');
    at += 2;
  }
  if (at >= pattern.size() || pattern[at] != 'd') return;
  before_ = pattern.substr(0, percent);
  after_ = pattern.substr(at + 1);
  valid_ = true;
}

std::string FrameName::Of(int32_t frame) const {
  const std::string number = std::to_string(frame);
  const size_t zeros = number.size() < digits_ ? digits_ - number.size() : 0;
  return before_ + std::string(zeros, '0') + number + after_;
}

}  // namespace vexel::tools
