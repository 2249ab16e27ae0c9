// The queue of action blocks that timelines and buttons leave for the player
// to run. A ring whose counters run freely; it grows by doubling to 4096
// entries, and what does not fit is dropped without a word.
#pragma once

#include <cstdint>

#include "movie/data_block.h"
#include "movie/fwd.h"

namespace vexel {

inline constexpr uint32_t kActionListCapacity = 32;       // at the start
inline constexpr uint32_t kActionListMaxCapacity = 4096;  // powers of two both

class ActionList {
 public:
  ActionList();
  ~ActionList();
  ActionList(const ActionList&) = delete;
  ActionList& operator=(const ActionList&) = delete;

  // Queues the block for `thread`. The entry holds a reference on the bytes,
  // so they outlive the tag, the character and the movie they came from.
  void PushAction(const DataSpan& action, ScriptThread* thread);

  // Cancels every waiting entry of `thread`, leaving holes in place: an entry
  // whose bytes are null is passed over by whoever runs the queue.
  void RemoveThread(ScriptThread* thread);

  // Drops all entries.
  void Clear();

  bool IsEmpty() const { return head == tail; }

  // The oldest entry, which must exist; both null once it is cancelled.
  const DataSpan& FirstAction() const { return actions[head & mask]; }
  ScriptThread* FirstThread() const { return threads[head & mask]; }

  // Takes the oldest entry off the queue into `action` and `thread`; both are
  // null for a cancelled one. False if the queue is empty.
  bool PopAction(DataSpan* action, ScriptThread** thread);

  uint32_t capacity = kActionListCapacity;  // a power of two
  uint32_t mask = kActionListCapacity - 1;
  DataSpan* actions;       // `capacity` blocks
  ScriptThread** threads;  // the timeline of each, not owned
  // Counters that wrap freely and are masked on each access; equal means
  // empty, and they are compared for equality only.
  uint32_t head = 0;  // the next entry to run
  uint32_t tail = 0;  // the next free entry

 private:
  // Doubles the capacity; false at the limit or without memory.
  bool Grow();
};

// Calls of frames nest so deep at the most; the base is one of them.
inline constexpr int32_t kMaxActionCalls = 256;

// A list that is being run: the base entry holds the stage's own list, the
// others lists that the interpreter makes and deletes.
struct ActionCallEntry {
  ActionList* list = nullptr;
  // What the last set-target action chose. Null with `hasTarget` when it named
  // nothing. Cleared, both of them, when that timeline ends.
  ScriptThread* targetThread = nullptr;
  bool hasTarget = false;
  int32_t resumeAt = 0;  // offset in the list's first block, where a call left it
};

}  // namespace vexel
