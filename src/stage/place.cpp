// Placing, moving and removing objects: what timelines, buttons and actions do
// to the tree. Children stand in ascending depth; among equals the one placed
// last is first, so it lies beneath and is the one that is found.
#include <cstdio>
#include <new>
#include <utility>

#include "movie/budget.h"
#include "movie/character.h"
#include "movie/script_player.h"
#include "player/splayer.h"
#include "player/text.h"
#include "stage/button.h"
#include "stage/display_list.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

// Steps along a list of children that count as a tag.
constexpr int32_t kStepsPerTag = 64;

// Kinds whose objects carry state that the character alone does not give.
bool HasState(const SCharacter* character) {
  return character->type == charButton || character->type == charSprite ||
         character->type == charLoadedMovie;
}

// Inside a hold the end of the hold reads the variable.
void MakeText(SObject* object) {
  object->editText = new (std::nothrow) EditText(object);
  if (object->editText && object->parent != object->display->holdParent) {
    object->editText->UpdateFromVariable();
  }
}

// After a change of character.
void RemakeText(SObject* object) {
  delete std::exchange(object->editText, nullptr);
  if (object->character->type == charEditText) {
    MakeText(object);
    return;
  }
  const ScriptPlayer* movie = object->character->player;
  if (movie && movie->splayer && movie->splayer->focus.Get() == object) {
    movie->splayer->focus.Set(nullptr);
  }
}

// Lets `copy` read the movie that `source` has wholly received, from its first
// tag.
void ShareMovie(const ScriptPlayer* source, ScriptPlayer* copy) {
  copy->AttachScript({source->scriptBlock, source->scriptBlock.Bytes(), source->dataEnd});
  copy->splayer = source->splayer;
  copy->dataInPlace = source->dataInPlace;
  copy->scriptLen = source->scriptLen;
  copy->headerBytes = source->headerBytes;
  copy->gotHeader = source->gotHeader;
  copy->numFramesComplete = source->numFramesComplete;
  copy->scanPos = source->scanPos;
  copy->frame = source->frame;
  copy->frameRate = source->frameRate;
  copy->frameDelay = source->frameDelay;
  copy->version = source->version;
  copy->numFrames = source->numFrames;
  copy->startPos = source->startPos;
  copy->pos = source->startPos;
  copy->len = source->len;
}

}  // namespace

// What stands in the link is the first child at `depth` or above. Timelines
// go through their depths in ascending order, so the walk goes on where the
// last one ended if it can. Long walks are paid for out of the tag budget: a
// hostile movie could make every tag walk past every object.
SObject** DisplayList::FindLink(SObject* parent, uint16_t depth) {
  SObject* before = nullptr;
  if (lastBefore && lastBefore->parent == parent && lastBefore->depth < depth) before = lastBefore;
  SObject** link = before ? &before->next : &parent->firstChild;
  int32_t steps = 0;
  for (; *link && (*link)->depth < depth; ++steps) {
    before = *link;
    link = &before->next;
  }
  lastBefore = before;
  if (tagsLeft > 0) tagsLeft -= steps / kStepsPerTag;
  return link;
}

SObject* DisplayList::FindObject(SObject* parent, uint16_t depth) {
  SObject* object = *FindLink(parent, depth);
  return object && object->depth == depth ? object : nullptr;
}

SObject* DisplayList::PlaceObject(SObject* parent, const PlaceInfo* info) {
  if (objectCount >= kMaxObjects || parent->nesting >= kMaxNesting) return nullptr;
  void* memory = objectAlloc.Alloc();
  if (!memory) return nullptr;
  ++objectCount;
  auto* object = new (memory) SObject;

  SObject** link = FindLink(parent, info->depth);
  object->display = this;
  object->parent = parent;
  object->nesting = static_cast<uint16_t>(parent->nesting + 1);
  object->next = *link;
  *link = object;
  object->character = info->character;
  object->character->AddRef();
  object->mat = info->mat;
  object->cxform = info->cxform;
  object->depth = info->depth;
  object->ratio = info->ratio;
  object->scriptControlled = info->scriptControlled;
  RectSetEmpty(&object->devBounds);
  if (object->character->type == charSprite && !info->name) {
    char automatic[24];
    ++instanceNameCount;
    snprintf(automatic, sizeof automatic, "instance%d", static_cast<int>(instanceNameCount));
    object->name = CreateStr(automatic);
  } else {
    object->name = CreateStr(info->name);
  }
  object->thread = parent->thread;
  if (info->flags & kPlaceClipDepth) object->clipDepth = info->clipDepth;
  object->Modify();

  // A sprite's first tags run before this returns.
  WeakSlot<SObject> placed(object);
  switch (object->character->type) {
    case charSprite:
      PlaceSprite(object);
      break;
    case charLoadedMovie:
      PlaceLoadedMovie(object, (info->flags & kPlaceClone) != 0);
      break;
    case charButton:
      PlaceButton(object);
      break;
    case charEditText:
      MakeText(object);
      break;
    default:
      break;
  }
  return placed.Get();
}

// Makes `thread` the object's own, empty and listed; its bytes come next.
void DisplayList::JoinThread(SObject* object, ScriptThread* thread, ScriptPlayer* player) {
  thread->ClearState();
  object->thread = thread;
  thread->player = player;
  thread->layerDepth = object->depth;
  thread->rootObject = object;
  thread->display = this;
  AddThread(thread);
}

void DisplayList::PlaceSprite(SObject* object) {
  auto* thread = new (std::nothrow) ScriptThread;
  if (!thread) return;
  const SCharacter* character = object->character;
  JoinThread(object, thread, character->player);
  thread->AttachScript(character->data);
  thread->dataInPlace = character->player->dataInPlace;
  thread->startPos = 0;
  thread->pos = 0;
  thread->len = character->data.length;
  thread->numFrames = character->frameCount;
  thread->DrawFrame(0, false);
}

// The character names the movie that was loaded; a clone runs a movie of its
// own over the same bytes, once they have all arrived. Until then its object
// stands there without a timeline, and its character may not go on naming a
// movie that does not belong to it and can end at any time.
void DisplayList::PlaceLoadedMovie(SObject* object, bool clone) {
  ScriptPlayer* source = object->character->player;
  if (!clone) {
    JoinThread(object, source, source);
    source->DrawFrame(0, false);
    return;
  }
  object->character->player = object->thread ? object->thread->player : nullptr;
  if (!source->IsComplete()) return;
  auto* copy = new (std::nothrow) ScriptPlayer;
  if (!copy) return;
  object->character->player = copy;
  JoinThread(object, copy, copy);
  ShareMovie(source, copy);
  copy->DrawFrame(0, false);
}

// A button that was tracked and left the stage with a frame comes back in the
// state that it left.
void DisplayList::PlaceButton(SObject* object) {
  int32_t state = buttonIdle;
  if (object->depth == savedButtonDepth && object->parent == savedButtonParent &&
      object->character == savedButtonCharacter && object->ratio == savedButtonRatio) {
    state = buttonState;
    button = object;
  }
  UpdateButton(object, state);
}

SObject* DisplayList::MoveObject(SObject* parent, const PlaceInfo* info) {
  SObject* object = FindObject(parent, info->depth);
  if (!object || object->scriptControlled) return nullptr;
  object->Modify();
  if (info->flags & kPlaceCharacter) {
    SCharacter* was = object->character;
    SCharacter* now = info->character;
    if (was->type == now->type || (!HasState(was) && !HasState(now))) {
      now->AddRef();
      object->character = now;
      if (was != now) RemakeText(object);
      was->Release();
    }
  }
  if (info->flags & kPlaceMatrix) object->mat = info->mat;
  if (info->flags & kPlaceCxform) object->cxform = info->cxform;
  if (info->flags & kPlaceRatio) object->ratio = info->ratio;
  return object;
}

void DisplayList::RemoveObject(SObject* parent, uint16_t depth) {
  SObject** link = FindLink(parent, depth);
  if (*link && (*link)->depth == depth) DoRemove(link);
}

void DisplayList::RemoveObject(SObject* object) {
  SObject** link = FindLink(object->parent, object->depth);
  while (*link && *link != object) link = &(*link)->next;
  if (*link) DoRemove(link);
}

void DisplayList::DoRemove(SObject** link) {
  SObject* object = *link;
  if (object->drawn) InvalidateRect(&object->devBounds);
  object->FreeChildren();
  *link = object->next;
  FreeObject(object);
}

// The tracked button's state and identity stay, for a replacement to pick up.
void DisplayList::FreeObject(SObject* object) {
  object->Free();
  if (button == object) button = nullptr;
  if (lastBefore == object) lastBefore = nullptr;
  object->~SObject();
  objectAlloc.Free(object);
  --objectCount;
}

namespace {

void FreeList(DisplayList* display, SObject* child) {
  while (child) {
    SObject* following = child->next;
    child->FreeChildren();
    if (child->drawn) display->InvalidateRect(&child->devBounds);
    display->FreeObject(child);
    child = following;
  }
}

}  // namespace

// Lists are detached first, so whatever a child's end sets off meets a parent
// that has no children any more. Those on hold go the same way.
void SObject::FreeChildren() {
  if (display->holdParent == this) {
    display->holdParent = nullptr;
    FreeList(display, std::exchange(display->holdList, nullptr));
  }
  FreeList(display, std::exchange(firstChild, nullptr));
}

}  // namespace vexel
