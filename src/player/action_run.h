// One run of the queued action blocks: where it stands, what it was asked to
// do when all scripts have finished, and the functions of the actions.
#pragma once

#include <cstdint>

#include "movie/actions.h"
#include "player/action_cache.h"
#include "player/script_stack.h"
#include "player/splayer.h"

namespace vexel {

// Once a run has gone through so many actions, the player is halted for ever.
inline constexpr int32_t kMaxActionsPerRun = 200000;

// Requests for navigation that a run may leave.
inline constexpr int32_t kMaxPendingUrls = 32;

// Owned texts; null ones stand for memory that was out.
struct PendingUrl {
  char* url;
  char* window;
  char* postData;  // null also for none
  int32_t flags;
};

// What movies of the first versions ask of the host's clock.
struct ClockRequests {
  bool stop;           // the clock shall stand; starts as it is
  bool changed;        // somebody said so
  int32_t frame = -1;  // to go to
};

class ActionRun {
 public:
  explicit ActionRun(SPlayer* owner);
  ~ActionRun();
  ActionRun(const ActionRun&) = delete;
  ActionRun& operator=(const ActionRun&) = delete;

  // Runs all that is queued, and what that queues.
  void RunLists();
  // Then: the requests, in this order: navigation, play, seek, stop.
  void Finish();

  // --- For the actions ---

  // The timeline that queued the running block; null once it is deleted.
  ScriptThread* Thread() const { return call->list->FirstThread(); }
  // What actions act on: the choice of the last set-target action, else the
  // block's own timeline. May be null.
  ScriptThread* Target() const { return call->hasTarget ? call->targetThread : Thread(); }
  // The timeline at `path` from the target, or from the player without one;
  // the target itself for an empty path. May be null.
  ScriptThread* FindTimeline(const PoppedText& path) const;
  // Of the target, or of the player without one. May be null.
  SObject* TargetRoot() const;

  // Operands, from the first byte behind the length. Bytes past the block's
  // end are 0, so a text ends there at the latest.
  uint8_t Byte(int32_t offset) const {
    const int64_t at = int64_t{operands} + offset;
    return at < size ? bytes[at] : uint8_t{0};
  }
  uint16_t Word(int32_t offset) const {
    return static_cast<uint16_t>(Byte(offset) | Byte(offset + 1) << 8);
  }
  // Closed by a NUL, and good until the next call.
  TextView Text(int32_t offset);
  // The same as a value, good as long as the block runs.
  ScriptValue TextValue(int32_t offset);

  void Jump() { next += static_cast<int16_t>(Word(0)); }
  // Takes over the texts; frees them if there are too many requests. Texts
  // count as script text; those that exceed its budget void their request.
  void AddPending(char* url, char* window, char* postData, int32_t flags);
  // Goes on with another list before the running block goes on.
  void EnterCall(ActionList* list);

  SPlayer* player;
  ScriptStack& stack;
  ActionCache& cache;

  ActionCallEntry* call = nullptr;  // the running list
  // The running block, and offsets in it. `next` may lie outside: that ends
  // the block.
  const uint8_t* bytes = nullptr;
  int32_t size = 0;
  int32_t operands = 0;
  int32_t next = 0;
  int32_t skip = 0;  // actions still to pass over

  ClockRequests clock;

 private:
  void RunList(bool resumed);
  template <bool kTraced>
  void RunBlock(int32_t at);
  void Trace(int32_t at, uint8_t code);

  ScriptValue m_cutText;   // a text that the block's end cut
  int32_t m_executed = 0;  // actions gone through, over all lists
  bool m_leave = false;    // a call was entered, or the run is halted
  int32_t m_pendingCount = 0;
  int64_t m_pendingBytes = 0;  // charged for their texts
  PendingUrl m_pending[kMaxPendingUrls];
};

// The functions of the actions, by the names of the list.
#define VEXEL_ACTION_FUNCTION(code, name, operands, target) void Action##name(ActionRun& run);
VEXEL_ACTIONS(VEXEL_ACTION_FUNCTION)
#undef VEXEL_ACTION_FUNCTION

}  // namespace vexel
