#include "author/script/code_emitter.h"

namespace vexel::author {

namespace {

constexpr size_t kMaxText = 65533;  // with a type byte and a zero 65535
constexpr int64_t kJumpReach = 32767;

void CheckText(std::string_view text, const SourcePlace& place) {
  if (text.size() > kMaxText) {
    throw SourceError(
        place, "this text has " + std::to_string(text.size()) + " bytes; 65533 are the most");
  }
}

}  // namespace

void CodeEmitter::Push(std::string_view text, const SourcePlace& place) {
  CheckText(text, place);
  builder_.Push(text);
}

void CodeEmitter::SetTarget(std::string_view path, const SourcePlace& place) {
  CheckText(path, place);
  builder_.SetTarget(path);
}

void CodeEmitter::Bind(Label label) {
  builder_.Bind(label);
  if (bound_.size() <= label.index) bound_.resize(label.index + 1);
  bound_[label.index] = builder_.size();
}

void CodeEmitter::Jump(Label label, const SourcePlace& place) {
  builder_.Jump(label);
  branches_.push_back({builder_.size(), label, place});
}

void CodeEmitter::If(Label label, const SourcePlace& place) {
  builder_.If(label);
  branches_.push_back({builder_.size(), label, place});
}

Bytes CodeEmitter::Finish() {
  for (const Branch& branch : branches_) {
    const int64_t offset = int64_t(bound_[branch.label.index]) - int64_t(branch.from);
    if (offset > kJumpReach || offset < -kJumpReach - 1) {
      throw SourceError(branch.place,
                        "a jump over " + std::to_string(offset < 0 ? -offset : offset) +
                            " bytes of actions is needed here, and 32767 are the most; move a "
                            "part of the script to a frame of its own, and call() that");
    }
  }
  return builder_.Finish();
}

}  // namespace vexel::author
