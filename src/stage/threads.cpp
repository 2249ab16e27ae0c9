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

void DisplayList::RemoveThread(ScriptThread* thread) {
  // Paid for out of the tag budget: sprites that hold themselves come and go by
  // the ten thousand, each with a full queue to look through.
  if (tagsLeft > 0) {
    tagsLeft -= static_cast<int32_t>((actionList.tail - actionList.head) / kStepsPerTag);
  }
  actionList.RemoveThread(thread);
  if (!thread->listLink) return;
  if (threadCursor == thread) threadCursor = thread->next;
  *thread->listLink = thread->next;
  if (thread->next) thread->next->listLink = thread->listLink;
  thread->next = nullptr;
  thread->listLink = nullptr;
}

}  // namespace vexel
