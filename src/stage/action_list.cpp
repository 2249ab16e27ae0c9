// The queue of action blocks.
#include "stage/action_list.h"

#include <new>
#include <utility>

namespace vexel {

ActionList::ActionList()
    : actions(new (std::nothrow) DataSpan[kActionListCapacity]),
      threads(new (std::nothrow) ScriptThread* [kActionListCapacity] {}) {}

ActionList::~ActionList() {
  delete[] actions;
  delete[] threads;
}

bool ActionList::Grow() {
  if (capacity * 2 > kActionListMaxCapacity) return false;
  const uint32_t newMask = capacity * 2 - 1;
  auto* newActions = new (std::nothrow) DataSpan[capacity * 2];
  auto* newThreads = new (std::nothrow) ScriptThread* [capacity * 2] {};
  if (!newActions || !newThreads) {
    delete[] newActions;
    delete[] newThreads;
    return false;
  }
  for (uint32_t i = head; i != tail; ++i) {
    newActions[i & newMask] = std::move(actions[i & mask]);
    newThreads[i & newMask] = threads[i & mask];
  }
  delete[] actions;
  delete[] threads;
  actions = newActions;
  threads = newThreads;
  capacity *= 2;
  mask = newMask;
  return true;
}

void ActionList::PushAction(const DataSpan& action, ScriptThread* thread) {
  if (!actions || !threads) return;
  if (tail - head == capacity && !Grow()) return;
  actions[tail & mask] = action;
  threads[tail & mask] = thread;
  ++tail;
}

void ActionList::RemoveThread(ScriptThread* thread) {
  for (uint32_t i = head; i != tail; ++i) {
    if (threads[i & mask] != thread) continue;
    actions[i & mask] = DataSpan();
    threads[i & mask] = nullptr;
  }
}

void ActionList::Clear() {
  for (; head != tail; ++head) actions[head & mask] = DataSpan();
  head = 0;
  tail = 0;
}

bool ActionList::PopAction(DataSpan* action, ScriptThread** thread) {
  if (IsEmpty()) return false;
  *action = std::exchange(actions[head & mask], DataSpan());
  *thread = std::exchange(threads[head & mask], nullptr);
  ++head;
  return true;
}

}  // namespace vexel
