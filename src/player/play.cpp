// The run loop: how many frames are due on the host's clock, and stepping the
// timelines that often. Frames that the clock has passed run all their tags and
// actions, but nothing is drawn between them.
#include "player/splayer.h"
#include "player/text.h"

namespace vexel {

namespace {

// The governor decides after this many samples, and leaves this many frames
// between two changes.
constexpr int32_t kMinSamples = 5;
constexpr int32_t kMinFramesBetweenChanges = 11;

}  // namespace

void SPlayer::Run() {
  if (running || !StartTimer()) return;
  running = true;
  nextFrameTime = GetTime();
}

void SPlayer::Suspend() {
  if (!running) return;
  StopTimer();
  running = false;
}

// The cursor is the stage's: a step can delete any timeline, the next one
// included, and RemoveThread then moves the cursor on. Timelines born in the
// round join at the head of the list, so they wait for the next round.
bool SPlayer::StepThreads() {
  const int32_t tagsBefore = display.tagsLeft;
  display.threadCursor = display.threads;
  while (ScriptThread* thread = display.threadCursor) {
    display.threadCursor = thread->next;
    thread->DoFrame(1);
  }
  const bool changed = display.tagsLeft != tagsBefore || !display.actionList.IsEmpty();
  DoActions();
  return changed;
}

void SPlayer::DoPlay(uint32_t time) {
  if (!loaded || actionDepth != 0) return;
  display.ResetTagBudget();
  const uint32_t now = GetTime();
  // Required: only the whole part of the rate counts, and the product wraps.
  const uint32_t rate = static_cast<uint32_t>(Asr(frameRate, 16));
  const uint32_t position = rate * time / 1000;

  int32_t due;
  if (firstPlay) {
    due = static_cast<int32_t>(position + 1);
    firstPlay = false;
  } else if (seekPending) {
    Seek(seekFrame);
    Play(false);
    seekPending = false;
    due = 1;
  } else {
    due = static_cast<int32_t>(position - lastPlayFrames);
  }
  lastPlayTime = time;
  lastPlayFrames = position;
  if (due < 1) return;

  nextFrameTime = now + static_cast<uint32_t>(frameDelay);
  // A round that changes nothing would be followed by equal ones, however many
  // are due.
  while (due > 0 && display.tagsLeft > 0 && StepThreads()) --due;
  // Buttons that move under a still pointer react.
  if (!display.mouseOverEditText && !panning && mouseState != kMouseUnknown) {
    DoButton(&mousePoint, mouseState == kMouseDown, false);
  }
  if (autoQuality) Govern(GetTime() - now);
}

// Required: compares the whole catch-up with one frame's delay, and never
// forgets: the counts are those of the whole run.
void SPlayer::Govern(uint32_t elapsed) {
  const uint32_t delay = static_cast<uint32_t>(frameDelay);
  if (elapsed > delay) {
    ++behindCount;
  } else if (elapsed < delay / 4) {
    ++aheadCount;
  }
  ++qualitySamples;
  if (qualitySamples >= kMinSamples && framesSinceQualityChange >= kMinFramesBetweenChanges) {
    const bool tooSlow = highQuality && int64_t{behindCount} * 3 > qualitySamples;
    const bool timeToSpare = !highQuality && int64_t{aheadCount} * 3 > qualitySamples;
    if (tooSlow || timeToSpare) {
      highQuality = !highQuality;
      framesSinceQualityChange = 0;
      SetCamera(kCameraShowSoon);
    }
  }
  ++framesSinceQualityChange;
}

void SPlayer::GotoFrame(int32_t frameIndex) {
  display.ResetTagBudget();
  Seek(frameIndex);
  if (actionDepth != 0) return;
  DoActions();
  CheckUpdate();
}

void SPlayer::Forward() {
  GotoFrame(curFrame < kInt32Max ? curFrame + 1 : curFrame);
}

void SPlayer::Back() {
  GotoFrame(curFrame - 1);
}

int32_t SPlayer::PercentLoaded() const {
  return scriptLen > 0 ? Saturate32(int64_t{len} * 100 / scriptLen) : 0;
}

void SPlayer::FreeBuffer() {
  bits.FreeBits();
  display.InvalidateRect(&display.devViewRect);
}

}  // namespace vexel
