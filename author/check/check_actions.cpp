// Blocks of actions: their form, where their jumps lead, and which actions can
// be reached.
#include <algorithm>
#include <map>

#include "author/check/checker.h"
#include "author/script/action_walk.h"

namespace vexel::author {

namespace {

std::string NameOf(const ActionView& action) {
  return action.info ? action.info->name : "the action " + std::to_string(action.code);
}

// Whether the interpreter's next action may stand elsewhere than behind this
// one, and after how many skipped ones it may go on.
int SkipCount(const ActionView& action) {
  if (!OperandSize(action)) return 0;
  if (action.code == kActionWaitForFrame) return action.operands[2];
  if (action.code == kActionWaitForFrameExpr) return action.operands[0];
  return 0;
}

bool IsBranch(const ActionView& action) {
  return (action.code == kActionJump || action.code == kActionIf) && OperandSize(action);
}

// Marks the actions that can run. Jumps into the midst of actions are not
// followed: they are told of by themselves, and then nothing is certain.
class Reach {
 public:
  Reach(const std::vector<ActionView>& actions, size_t size) : actions_(actions) {
    reached_.resize(actions.size());
    for (size_t i = 0; i < actions.size(); ++i) {
      if (actions[i].at < size) index_[actions[i].at] = i;
    }
    Push(0);
    while (!open_.empty()) {
      const size_t i = open_.back();
      open_.pop_back();
      Follow(i);
    }
  }
  bool Has(size_t i) const { return reached_[i]; }

 private:
  void Push(size_t i) {
    if (i >= actions_.size() || reached_[i]) return;
    reached_[i] = true;
    open_.push_back(i);
  }

  void Follow(size_t i) {
    const ActionView& action = actions_[i];
    if (action.code == kActionEnd) return;
    if (IsBranch(action)) {
      const auto target = index_.find(static_cast<size_t>(JumpTarget(action)));
      if (target != index_.end()) Push(target->second);
      if (action.code == kActionJump) return;
    }
    Push(i + 1);
    if (const int skip = SkipCount(action)) Push(i + 1 + static_cast<size_t>(skip));
  }

  const std::vector<ActionView>& actions_;
  std::vector<bool> reached_;
  std::vector<size_t> open_;
  std::map<size_t, size_t> index_;
};

}  // namespace

void Checker::Actions(const Tag& tag, std::span<const uint8_t> block, size_t at) {
  const auto add = [&](FindingKind kind, size_t offset, std::string reason) {
    Add(kind, at + offset, tag.code, std::move(reason));
  };
  std::vector<ActionView> actions;
  bool oddJump = false;
  bool cut = false;
  size_t pos = 0;
  while (pos < block.size()) {
    const std::optional<ActionView> action = ReadAction(block, pos);
    if (!action) {
      cut = true;
      break;
    }
    actions.push_back(*action);
    pos = action->end;
  }
  for (const ActionView& action : actions) {
    if (!IsBranch(action)) continue;
    const int64_t target = JumpTarget(action);
    if (target < 0 || target >= std::ssize(block)) {
      add(FindingKind::kDamaged, action.at, NameOf(action) + " leads out of the block");
    } else {
      const auto found = std::lower_bound(
          actions.begin(), actions.end(), static_cast<size_t>(target),
          [](const ActionView& other, size_t offset) { return other.at < offset; });
      if (found != actions.end() && found->at == static_cast<size_t>(target)) continue;
      oddJump = true;
      add(FindingKind::kUnknown, action.at, NameOf(action) + " leads into the midst of an action");
    }
  }

  const Reach reach(actions, block.size());
  size_t unreached = 0;
  size_t firstUnreached = 0;
  size_t runsTo = 0;  // behind the last action that can run
  for (size_t i = 0; i < actions.size(); ++i) {
    const ActionView& action = actions[i];
    if (!reach.Has(i) && !oddJump) {
      // An end byte behind an endless loop is nobody's mistake.
      if (action.code == kActionEnd) continue;
      if (unreached++ == 0) firstUnreached = action.at;
      continue;
    }
    runsTo = action.end;
    if (action.code == kActionEnd) continue;
    if (!action.info) {
      add(FindingKind::kUnknown, action.at,
          "players step over the action " + std::to_string(action.code));
      continue;
    }
    const std::optional<size_t> size = OperandSize(action);
    if (!size) {
      const bool value =
          action.code == kActionPush && !action.operands.empty() && action.operands[0] > 1;
      add(value ? FindingKind::kUnknown : FindingKind::kDamaged, action.at,
          NameOf(action) + (value ? " has a value of unknown type" : " is cut short"));
      continue;
    }
    if (*size < action.operands.size()) {
      add(FindingKind::kWasteful, action.at,
          NameOf(action) + " has " + Count(action.operands.size() - *size, "byte") +
              " behind its operands");
    }
    // Texts that may name a frame.
    if (action.code == kActionPush && action.operands[0] == 0) {
      frameNames_.texts.insert(Lower(reinterpret_cast<const char*>(action.operands.data() + 1)));
    } else if (action.code == kActionGotoLabel) {
      frameNames_.texts.insert(Lower(reinterpret_cast<const char*>(action.operands.data())));
    } else if (action.code == kActionGotoExpr || action.code == kActionCall ||
               action.code == kActionWaitForFrameExpr) {
      if (i == 0 || actions[i - 1].code != kActionPush) frameNames_.computed = true;
    }
  }
  const bool endsInside = runsTo < pos || (!actions.empty() && actions.back().code == kActionEnd);
  if (cut && !endsInside) {
    add(FindingKind::kDamaged, pos, "an action declares more bytes than the block has");
  } else if (!cut && !endsInside) {
    add(FindingKind::kDamaged, pos, "the block has no end byte");
  } else if (cut && unreached == 0) {
    add(FindingKind::kUnreachable, pos,
        Count(block.size() - pos, "byte") + " behind the end of the block");
  }
  if (unreached > 0) {
    add(FindingKind::kUnreachable, firstUnreached,
        Count(unreached, "action") + " that no way leads to");
  }
}

}  // namespace vexel::author
