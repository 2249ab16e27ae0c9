// What an object holds, and letting go of it.
#include "stage/object.h"

#include <utility>

#include "geometry/interpolate.h"
#include "movie/character.h"
#include "movie/script_player.h"
#include "player/splayer.h"
#include "player/text.h"
#include "raster/rcolor.h"
#include "stage/display_list.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

// A morph's position as a 16.16 number; 65535 stays just under 1.0.
SFIXED MorphPosition(const SObject* object) {
  return object->ratio;
}

// Deletes the timeline that the object owned. An object whose own timeline was
// never made shows its parent's, which is not its to delete; nor is that of a
// layer, which places itself a new root object when it needs one.
void DeleteThread(const SObject* object, ScriptThread* thread, uint8_t type) {
  if (!thread || thread->rootObject != object) return;
  if (type == charLoadedMovie) {
    thread->rootObject = nullptr;
    delete thread->player;
  } else if (type == charSprite) {
    delete thread;
  } else {
    thread->rootObject = nullptr;
  }
}

SPlayer* PlayerOf(const SCharacter* character) {
  return character && character->player ? character->player->splayer : nullptr;
}

}  // namespace

void SObject::Modify() {
  display->dirty = true;
  dirty = true;
}

void SObject::FreeCache() {
  display->FreeEdges(&edges);
  while (RColor* color = colors) {
    colors = color->next;
    display->FreeColor(color);
  }
}

void SObject::FreeTreeCache() {
  FreeCache();
  for (SObject* child = firstChild; child; child = child->next) child->FreeTreeCache();
}

void SObject::Free() {
  if (SPlayer* splayer = PlayerOf(character)) splayer->ObjectFreed(this);
  weakSlots.ClearAll();
  FreeCache();
  delete std::exchange(editText, nullptr);
  if (SCharacter* held = std::exchange(character, nullptr)) {
    // A loaded movie takes what belongs to it along, so its character goes first.
    const uint8_t type = held->type;
    held->Release();
    DeleteThread(this, std::exchange(thread, nullptr), type);
  }
  FreeStr(name);
  name = nullptr;
  FreeStr(dropTarget);
  dropTarget = nullptr;
}

void SObject::CalcDevBounds(const MATRIX* m) {
  if (!character) {
    RectSetEmpty(&devBounds);
    return;
  }
  if (character->type == charMorphShape) {
    SRECT between;
    Interpolate(&character->bounds, &character->bounds2, MorphPosition(this), &between);
    MatrixTransformRect(m, &between, &devBounds);
    return;
  }
  MatrixTransformRect(m, &character->bounds, &devBounds);
}

}  // namespace vexel
