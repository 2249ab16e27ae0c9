// Sprites cloned and removed by scripts.
#include "movie/script_player.h"
#include "movie/script_thread.h"
#include "player/text.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// Of a clone: the end of a morph.
constexpr uint16_t kFullRatio = 65535;

// The timeline that placed the sprite which `thread` runs; null for a root
// timeline and for an object that stands under none.
ScriptThread* ParentThread(ScriptThread* thread) {
  if (!thread || thread->IsRoot() || !thread->rootObject) return nullptr;
  SObject* parent = thread->rootObject->parent;
  return parent ? parent->thread : nullptr;
}

// Starts a request that places `object` again: matrix and colour transform.
void CopyPlace(const SObject* object, PlaceInfo* info) {
  info->flags = kPlaceCharacter | kPlaceMatrix;
  info->mat = object->mat;
  if (object->cxform.flags != 0) {
    info->cxform = object->cxform;
    info->flags |= kPlaceCxform;
  } else {
    info->cxform.Clear();
  }
}

}  // namespace

void ScriptThread::CloneSprite(ScriptThread* source, const char* name, int32_t depth) {
  const SObject* object = source->rootObject;
  if (!object || !object->character || !rootObject) return;
  PlaceInfo info;
  CopyPlace(object, &info);
  info.depth = static_cast<uint16_t>(depth);
  info.ratio = kFullRatio;
  info.name = name;
  if (name) info.flags |= kPlaceName;
  if (object->clipDepth != 0) {
    info.clipDepth = object->clipDepth;
    info.flags |= kPlaceClipDepth;
  }
  if (object->character->type == charLoadedMovie) {
    info.character = CopyToHeap(object->character);
    if (!info.character) return;
    info.character->data = source->AttachData(0, source->dataEnd);
    info.flags |= kPlaceClone;
  } else {
    info.character = object->character;
    info.character->AddRef();
  }
  // What stood at the depth may be the source itself, and a loaded movie that
  // ends with it leaves nothing to clone.
  WeakSlot<ScriptThread> movie(source);
  display->RemoveObject(rootObject, info.depth);
  if (movie || !(info.flags & kPlaceClone)) display->PlaceObject(rootObject, &info);
  info.character->Release();
}

void ScriptThread::RemoveSprite(ScriptThread* target, bool keepPlace) {
  SObject* object = target->rootObject;
  if (!object || !object->character || !rootObject) return;
  if (!keepPlace) {
    display->RemoveObject(rootObject, object->depth);
    return;
  }
  SCharacter* character = player->CreatePoolCharacter(kEmptySpriteId, charSprite);
  if (!character) return;
  character->data = AttachData(0, 0);
  character->bounds = object->character->bounds;

  PlaceInfo info;
  CopyPlace(object, &info);
  info.character = character;
  info.depth = object->depth;
  info.ratio = object->ratio;
  info.scriptControlled = object->scriptControlled;
  char* name = CreateStr(object->name);
  info.name = name;
  if (name) info.flags |= kPlaceName;
  display->RemoveObject(rootObject, info.depth);
  display->PlaceObject(rootObject, &info);
  FreeStr(name);
  character->Release();
}

void CloneSprite(ScriptThread* thread, const char* name, int32_t depth) {
  if (ScriptThread* parent = ParentThread(thread)) parent->CloneSprite(thread, name, depth);
}

void RemoveSprite(ScriptThread* thread, bool keepPlace) {
  if (ScriptThread* parent = ParentThread(thread)) parent->RemoveSprite(thread, keepPlace);
}

}  // namespace vexel
