// The tags that place, move and remove objects.
#include "movie/script_player.h"
#include "movie/script_thread.h"
#include "movie/tags.h"
#include "player/text.h"
#include "stage/display_list.h"

namespace vexel {

bool ScriptThread::EnsureRootObject() {
  if (!display) return false;
  if (rootObject) return true;
  SCharacter* character = player->CreateCharacter(kRootId);
  if (character) {
    character->type = charRoot;
  } else {
    character = player->FindCharacter(kRootId);
    if (!character) return false;
  }
  PlaceInfo info;
  MatrixIdentity(&info.mat);
  info.cxform.Clear();
  info.flags = kPlaceCharacter;
  info.character = character;
  info.depth = layerDepth;
  rootObject = display->PlaceObject(&display->root, &info);
  if (!rootObject) return false;
  rootObject->thread = this;
  return true;
}

// What is not in the dictionary is stood in for by the movie's placeholder,
// on the root timeline only. Ids of the system are never placed by tags.
void ScriptThread::ReadCharacter(uint16_t id, PlaceInfo* info) {
  if (id >= kFirstSystemId) return;
  info->character = player->FindCharacter(id);
  if (!info->character && IsRoot()) info->character = player->lostCharacter;
}

void ScriptThread::ReadPlaceObject(PlaceInfo* info) {
  info->flags = kPlaceCharacter | kPlaceMatrix;
  const uint16_t id = GetWord();
  info->depth = GetWord();
  GetMatrix(&info->mat);
  if (pos < tagEnd) {
    GetColorTransform(&info->cxform, false);
    info->flags |= kPlaceCxform;
  } else {
    info->cxform.Clear();
  }
  ReadCharacter(id, info);
}

void ScriptThread::PlaceObject() {
  PlaceInfo info;
  ReadPlaceObject(&info);
  if (info.character && rootObject) display->PlaceObject(rootObject, &info);
}

void ScriptThread::PlaceObjectSyncFrame() {
  PlaceInfo info;
  ReadPlaceObject(&info);
  if (!rootObject) return;
  if (SObject* object = display->FindObject(rootObject, info.depth)) {
    if (object->character == info.character && MatrixEqual(&object->mat, &info.mat, 0) &&
        Equal(&object->cxform, &info.cxform)) {
      object->syncRemovalMark = kSyncConfirmed;
      return;
    }
    display->RemoveObject(rootObject, info.depth);
  }
  if (info.character) display->PlaceObject(rootObject, &info);
}

void ScriptThread::PlaceObject2() {
  PlaceInfo info;
  info.flags = GetByte() & ~kPlaceClone;
  info.depth = GetWord();
  if (info.flags & kPlaceCharacter) {
    ReadCharacter(GetWord(), &info);
    if (!info.character) return;
  }
  if (info.flags & kPlaceMatrix) {
    GetMatrix(&info.mat);
  } else {
    MatrixIdentity(&info.mat);
  }
  if (info.flags & kPlaceCxform) {
    GetColorTransform(&info.cxform, true);
  } else {
    info.cxform.Clear();
  }
  if (info.flags & kPlaceRatio) info.ratio = GetWord();
  char* name = nullptr;
  if (info.flags & kPlaceName) {
    const DataSpan text = AttachData(pos, tagEnd);
    name = CreateStr(reinterpret_cast<const char*>(text.bytes), text.length);
    info.name = name;
  }
  // Required: reading the name does not move the reader, so a clip depth that
  // follows a name is read from the name's first two bytes.
  if (info.flags & kPlaceClipDepth) info.clipDepth = GetWord();

  if (rootObject) {
    if (info.flags & kPlaceMove) {
      display->MoveObject(rootObject, &info);
    } else if (info.character) {
      display->PlaceObject(rootObject, &info);
    }
  }
  FreeStr(name);
}

void ScriptThread::RemoveObject() {
  if (tagCode == kTagRemoveObject) GetWord();  // the character, which the depth makes needless
  const uint16_t depth = GetWord();
  if (rootObject) display->RemoveObject(rootObject, depth);
}

}  // namespace vexel
