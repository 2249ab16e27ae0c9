// The list of running timelines. It is linked both ways, so a timeline leaves
// it without a search; the player's round over the list keeps its place in
// `threadCursor`, since a step may delete any timeline.
#include "movie/script_thread.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// Looking through so many waiting actions costs as much as a tag.
constexpr uint32_t kStepsPerTag = 64;

}  // namespace

void DisplayList::AddThread(ScriptThread* thread) {
  if (thread->listLink) return;
  thread->next = threads;
  if (threads) threads->listLink = &thread->next;
  thread->listLink = &threads;
  threads = thread;
}

// Paid for out of the tag budget: sprites that hold themselves come and go by
// the ten thousand, each with a full queue to look through.
void DisplayList::RemoveActions(ActionList* list, ScriptThread* thread) {
  if (tagsLeft > 0) tagsLeft -= static_cast<int32_t>((list->tail - list->head) / kStepsPerTag);
  list->RemoveThread(thread);
}

void DisplayList::RemoveThread(ScriptThread* thread) {
  RemoveActions(&actionList, thread);
  for (int32_t i = 0; i < actionCallDepth; ++i) {
    ActionCallEntry& call = actionCallStack[i];
    if (call.targetThread == thread) {
      call.targetThread = nullptr;
      call.hasTarget = false;
    }
    if (call.list != &actionList) RemoveActions(call.list, thread);
  }
  if (!thread->listLink) return;
  if (threadCursor == thread) threadCursor = thread->next;
  *thread->listLink = thread->next;
  if (thread->next) thread->next->listLink = thread->listLink;
  thread->next = nullptr;
  thread->listLink = nullptr;
}

}  // namespace vexel
