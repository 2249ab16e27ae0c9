// The list of running timelines. It is linked both ways, so a timeline leaves
// it without a search; the player's round over the list keeps its place in
// `threadCursor`, since a step may delete any timeline.
#include "movie/script_thread.h"
#include "stage/display_list.h"

namespace vexel {

void DisplayList::AddThread(ScriptThread* thread) {
  if (thread->listLink) return;
  thread->next = threads;
  if (threads) threads->listLink = &thread->next;
  thread->listLink = &threads;
  threads = thread;
}

void DisplayList::RemoveThread(ScriptThread* thread) {
  actionList.RemoveThread(thread);
  if (!thread->listLink) return;
  if (threadCursor == thread) threadCursor = thread->next;
  *thread->listLink = thread->next;
  if (thread->next) thread->next->listLink = thread->listLink;
  thread->next = nullptr;
  thread->listLink = nullptr;
}

}  // namespace vexel
