#include "author/language/names.h"

#include <algorithm>

namespace vexel::author {

namespace {

// Ids from here on are the player's own.
constexpr uint32_t kFirstOwnId = 65532;

}  // namespace

int32_t CharacterBook::Find(const std::string& name) const {
  const auto found = ids_.find(name);
  return found == ids_.end() ? -1 : found->second;
}

const std::string* CharacterBook::NameOf(uint16_t id) const {
  const auto found = names_.find(id);
  return found == names_.end() ? nullptr : &found->second;
}

uint16_t CharacterBook::Next() const {
  return highest_ + 1 < kFirstOwnId ? static_cast<uint16_t>(highest_ + 1) : uint16_t{0};
}

void CharacterBook::Define(const std::string& name, uint16_t id) {
  ids_[name] = id;
  names_[id] = name;
  log_.push_back(name);
  Use(id);
}

void CharacterBook::Use(uint32_t id) {
  highest_ = std::max(highest_, id);
}

void CharacterBook::GoBack(const Mark& mark) {
  while (log_.size() > mark.defined) {
    const auto last = ids_.find(log_.back());
    names_.erase(last->second);
    ids_.erase(last);
    log_.pop_back();
  }
  highest_ = mark.highest;
}

}  // namespace vexel::author
