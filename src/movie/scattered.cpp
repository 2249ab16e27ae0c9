// Movies that come as scattered data: a header, definitions and frames, each a
// message of its own, in any order and with some of them missing.
//
// A message is a run of ordinary tags. It is copied into a counted block, of
// which `script` is set to each in turn; so characters and queued actions keep
// what they read, and nothing is left that a seek could walk through.
//
// A frame changes what the frames before it left. After a loss a sync frame
// mends that: it lists all objects, what it repeats is kept with its state, and
// what it doesn't mention goes.
#include <cstring>

#include "movie/script_player.h"
#include "movie/tags.h"
#include "stage/button.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// Required: objects that wait for a character beyond these go on waiting.
constexpr int32_t kMaxRecovered = 20;

// A place that the placeholder held.
struct LostPlace {
  STransform transform;
  uint16_t depth;
  uint16_t characterId;
};

}  // namespace

bool ScriptPlayer::AttachMessage(const uint8_t* data, int32_t size) {
  if (!data || size < 0) size = 0;
  const DataRef block = DataRef::Adopt(DataBlock::Create(size));
  if (!block) return false;
  if (size > 0) memcpy(block.Get()->Bytes(), data, static_cast<size_t>(size));
  AttachScript({block, block.Bytes(), size});
  pos = 0;
  tagEnd = 0;
  return true;
}

void ScriptPlayer::DetachMessage() {
  AttachScript({});
  pos = 0;
}

// Frames the next tag of the message, and cuts the last one to what has come.
bool ScriptPlayer::NextMessageTag() {
  pos = tagEnd;
  if (pos >= dataEnd || (display && !display->SpendTags(1))) return false;
  return GetTag(kNoTagLimit, true) >= 0;
}

void ScriptPlayer::SetHeader(const uint8_t* data, int32_t size) {
  if (!AttachMessage(data, size)) return;
  if (size >= 3 && memcmp(script, kMovieSignature, sizeof kMovieSignature) == 0) {
    version = size > 3 ? script[3] : 0;
    pos = kMovieHeaderBytes;
    ReadStage();
  }
  DetachMessage();
}

int32_t ScriptPlayer::SetObject(const uint8_t* data, int32_t size) {
  if (!AttachMessage(data, size)) return kScriptNoMemory;
  while (NextMessageTag()) DoDefinition();
  DetachMessage();
  return kScriptOk;
}

int32_t ScriptPlayer::SetFrame(const uint8_t* data, int32_t size, bool suppressActions) {
  if (!AttachMessage(data, size)) return kScriptNoMemory;
  bool inSync = false;
  if (DoFrameTags(suppressActions, &inSync) && inSync && rootObject) {
    RemoveUnconfirmed();
    RestoreButtons();
  }
  DetachMessage();
  return kScriptOk;
}

// False if the frame ended early, which leaves a sync frame open.
bool ScriptPlayer::DoFrameTags(bool suppressActions, bool* inSync) {
  while (NextMessageTag()) {
    // Handlers run other timelines (a placed sprite's first frame), and freeing
    // all rewinds this one.
    const int32_t end = tagEnd;
    switch (tagCode) {
      case kTagFrameEnd:
        // Required: what a sync frame marked then stays as it is.
        return false;
      case kTagFreeCharacter:
        FreeCharacterTag();
        break;
      case kTagPlaceObject:
        // The root object is gone behind a TagFreeAll.
        if (!EnsureRootObject()) break;
        if (*inSync) {
          PlaceObjectSyncFrame();
        } else {
          PlaceObject();
        }
        break;
      case kTagPlaceObject2:
        if (!*inSync && EnsureRootObject()) PlaceObject2();
        break;
      case kTagRemoveObject:
      case kTagRemoveObject2:
        RemoveObject();
        break;
      case kTagBackgroundColor:
        BackgroundColor();
        break;
      case kTagFrameActions:
        if (!suppressActions) FrameActions();
        break;
      case kTagSyncFrame:
        *inSync = true;
        if (display) display->MarkForSyncFrameRemoval();
        break;
      case kTagFreeAll:
        FreeAll();
        break;
      default:
        break;
    }
    tagEnd = end;
  }
  return true;
}

void ScriptPlayer::RemoveUnconfirmed() {
  for (WeakSlot<SObject> child(rootObject->firstChild); child;) {
    SObject* object = child.Get();
    child.Set(object->next);
    if (object->syncRemovalMark == kSyncUnconfirmed) {
      display->RemoveObject(rootObject, object->depth);
    }
  }
}

// Marking took the children of all buttons away. Giving them back does not
// lose a press in progress.
void ScriptPlayer::RestoreButtons() {
  for (WeakSlot<SObject> child(rootObject->firstChild); child;) {
    SObject* object = child.Get();
    child.Set(object->next);
    const SCharacter* character = object->character;
    if (object->syncRemovalMark != kSyncConfirmed || character->type != charButton) continue;
    int32_t state = buttonIdle;
    const SObject* tracked = display->button;
    if (tracked && tracked->character->id == character->id && tracked->depth == object->depth) {
      display->button = object;
      state = display->buttonState;
    }
    display->UpdateButton(object, state);
  }
}

void ScriptPlayer::RecoverLost() {
  if (!lostFlag) return;
  lostFlag = false;
  if (!display) return;
  display->FreeCache();
  if (!rootObject) return;

  LostPlace places[kMaxRecovered];
  int32_t count = 0;
  for (const SObject* child = rootObject->firstChild; child; child = child->next) {
    if (child->character->type != charLost) continue;
    places[count++] = {{child->mat, child->cxform}, child->depth, child->character->id};
    if (count == kMaxRecovered) break;
  }
  for (int32_t i = 0; i < count; ++i) display->RemoveObject(rootObject, places[i].depth);
  for (int32_t i = 0; i < count; ++i) {
    PlaceInfo info;
    static_cast<STransform&>(info) = places[i].transform;
    info.flags = kPlaceCharacter | kPlaceMatrix;
    info.depth = places[i].depth;
    // Required: the placeholder doesn't know which character was wanted, so its
    // own id, 0, is looked up.
    info.character = FindCharacter(places[i].characterId);
    if (!info.character) info.character = lostCharacter;
    if (info.character && rootObject) display->PlaceObject(rootObject, &info);
  }
}

bool ScriptPlayer::IsScriptRangeWriteable(uint32_t position, uint32_t length) const {
  const int64_t end = int64_t{position} + length;
  if (length == 0 || end > scriptLen || !dataInPlace || !script) return false;
  const int64_t reader = pos;
  return reader < position || reader >= end;
}

void ScriptPlayer::WriteScriptRange(const uint8_t* data, uint32_t length, uint32_t position) {
  if (!data || length == 0 || !script || !dataInPlace) return;
  if (int64_t{position} + length > scriptLen) return;
  memcpy(scriptBlock.Bytes() + position, data, length);
}

}  // namespace vexel
