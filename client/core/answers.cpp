#include "client/core/answers.h"

#include <utility>

namespace vexel::client {

void Answers::Give(std::function<void()> answer) {
  ++*pending_;
  const auto at = owed_.emplace(owed_.end());
  *at = loop_->Soon([this, at, answer = std::move(answer)] {
    // The answer may end this object: its own watch goes first.
    const Watch watch = std::move(*at);
    owed_.erase(at);
    --*pending_;
    answer();
  });
}

void Answers::DropAll() {
  *pending_ -= static_cast<int>(owed_.size());
  owed_.clear();
}

}  // namespace vexel::client
