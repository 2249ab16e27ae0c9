// Running a timeline: one tag, the tags of a frame, a seek, a step.
#include <cstring>

#include "movie/observer.h"
#include "movie/script_player.h"
#include "movie/script_thread.h"
#include "movie/tags.h"
#include "player/splayer.h"
#include "player/text.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// The movie's own background outranks none at all, and yields to a host's.
constexpr int32_t kMoviePriority = 1;

// The text of the label tag at the reader's position; one that its tag does not
// close reads as empty, since at each of many labels the NUL could be as far as
// the movie's end.
const char* LabelOfTag(const SParser& at) {
  const uint8_t* text = at.script + at.pos;
  const void* nul = memchr(text, 0, static_cast<size_t>(at.tagEnd - at.pos));
  return nul ? reinterpret_cast<const char*>(text) : "";
}

// Whether the text at the reader's position is `label`. Looks at no more of it
// than `label` is long: a text may lack its NUL and run through the whole movie.
bool IsLabel(const SParser& at, const char* label) {
  const int64_t room = int64_t{at.dataEnd} - at.pos;
  const int64_t length = static_cast<int64_t>(strlen(label));
  if (room < length) return false;
  const char* text = reinterpret_cast<const char*>(at.script) + at.pos;
  // The end of the data ends a text as well, but StrEqual needs a NUL.
  if (room > length) return text[length] == 0 && StrEqual(text, label);
  char* copy = CreateStr(text, static_cast<int32_t>(length));
  const bool equal = StrEqual(copy, label);
  FreeStr(copy);
  return equal;
}

}  // namespace

ScriptThread::ScriptThread() {
  ClearState();
}

ScriptThread::~ScriptThread() {
  weakSlots.ClearAll();
  if (display) display->RemoveThread(this);
  ClearVariables();
}

bool ScriptThread::IsRoot() const {
  return player == this;
}

void ScriptThread::ClearState() {
  curFrame = -1;
  currentLabel = nullptr;
  atEnd = false;
  seeking = false;
  len = 0;
  pos = 0;
  script = nullptr;
  scriptBlock.Reset();
  dataEnd = 0;
  numFrames = 0;
  scriptErr = 0;
  playing = true;
  loop = true;
}

void ScriptThread::AttachScript(const DataSpan& tags) {
  scriptBlock = tags.block;
  script = tags.bytes;
  dataEnd = tags.length;
  tagEnd = kNoTagEnd;
}

DataSpan ScriptThread::AttachData(int32_t start, int32_t end) const {
  if (end > dataEnd) end = dataEnd;
  if (start > end) start = end;
  return {scriptBlock, const_cast<uint8_t*>(script) + start, end - start};
}

void ScriptThread::BackgroundColor() {
  const SRGB color = GetColor(false);
  if (display) display->SetBackgroundColor(color, kMoviePriority);
}

void ScriptThread::FrameActions() {
  if (seeking || !display) return;
  display->actionList.PushAction(AttachData(pos, tagEnd), this);
}

void ScriptThread::FreeCharacterTag() {
  const uint16_t id = GetWord();
  if (id < kFirstSystemId) player->FreeCharacter(id);
}

int32_t ScriptThread::DoTag() {
  if (atEnd) return kScriptAtEnd;
  if (display && display->tagsLeft <= 0) return kScriptWaiting;
  const int32_t code = GetTag(len);
  if (code < 0) return kScriptWaiting;
  PlayObserver* observer = nullptr;
  if (display) {
    --display->tagsLeft;
    observer = display->observer;
  }
  if (observer) observer->OnTag(*this);

  // Handlers run other timelines (a placed sprite's first frame), never this
  // one; still, where this tag ends is kept out of their reach.
  const int32_t end = tagEnd;
  switch (code) {
    case kTagEnd:
      atEnd = true;
      break;
    case kTagFrameEnd:
      ++curFrame;
      if (observer) observer->OnFrame(*this);
      break;
    case kTagFreeCharacter:
      FreeCharacterTag();
      break;
    case kTagPlaceObject:
      PlaceObject();
      break;
    case kTagPlaceObject2:
      PlaceObject2();
      break;
    case kTagRemoveObject:
    case kTagRemoveObject2:
      RemoveObject();
      break;
    case kTagBackgroundColor:
      BackgroundColor();
      break;
    case kTagFrameActions:
      FrameActions();
      break;
    case kTagFrameLabel:
      currentLabel = LabelOfTag(*this);
      break;
    default:
      DoDefinition();
      break;
  }
  pos = end;
  return scriptErr;
}

int32_t ScriptThread::DoTags(int32_t frame) {
  int32_t result = kScriptOk;
  while (curFrame < frame && result == kScriptOk) result = DoTag();
  return result;
}

// The frames before `frame` pass in silence, `frame` itself runs its actions.
int32_t ScriptThread::SeekForward(int32_t frame) {
  seeking = true;
  DoTags(WrapSub(frame, 1));
  seeking = false;
  return DoTags(frame);
}

int32_t ScriptThread::DrawFrame(int32_t frame, bool seek) {
  if (scriptErr != 0) return scriptErr;
  if (!player || !player->gotHeader) return kScriptWaiting;
  if (!EnsureRootObject()) return kScriptNoMemory;
  SPlayer* splayer = player->splayer;
  if (splayer) splayer->saveFocus.Begin(splayer->focus.Get());
  const int32_t result = RunTo(frame, seek);
  if (splayer) splayer->saveFocus.End();
  return result;
}

int32_t ScriptThread::RunTo(int32_t frame, bool seek) {
  if (!seek) return DoTags(frame);
  if (curFrame <= frame) return SeekForward(frame);

  pos = startPos;
  curFrame = -1;
  currentLabel = nullptr;
  atEnd = false;
  display->BeginHold(rootObject);
  const int32_t result = SeekForward(frame);
  display->FinishHold();
  return result;
}

int32_t ScriptThread::Seek(int32_t frame) {
  StopPlay();
  return DrawFrame(frame < 0 ? 0 : frame, true);
}

void ScriptThread::DoFrame(int32_t delta, bool force) {
  if (!playing && !force) return;
  int32_t target = WrapAdd(curFrame, delta);
  if (IsRoot() && !player->IsComplete() && target > player->numFramesComplete) {
    target = player->numFramesComplete;
  }
  if (force) {
    // Standing one frame further on makes the way to the old one lead back.
    target = curFrame;
    curFrame = WrapAdd(curFrame, 1);
  }
  const int32_t result = DrawFrame(target, force);
  if (result < 0) {
    playing = false;
  } else if (result == kScriptAtEnd) {
    if (loop && curFrame != 0) {
      DrawFrame(0, true);
    } else {
      playing = false;
    }
  }
}

void ScriptThread::Play(bool rewind) {
  if (rewind && !loop && curFrame >= numFrames - 1) Seek(0);
  playing = true;
}

// Walks on a parser of its own, so the timeline itself does not move.
int32_t ScriptThread::FindLabel(const char* label) const {
  if (!label) return -1;
  SParser walk(script, dataEnd, startPos);
  int32_t frame = 0;
  int32_t code;
  while ((code = walk.GetTag(len)) >= 0) {
    if (display && --display->tagsLeft <= 0) break;
    if (code == kTagFrameEnd) {
      ++frame;
    } else if (code == kTagFrameLabel && IsLabel(walk, label)) {
      return frame;
    }
    walk.pos = walk.tagEnd;
  }
  return -1;
}

}  // namespace vexel
