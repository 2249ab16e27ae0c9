// The list of layers. The player itself is layer 0 and the list's head, so
// every search for layer 0 finds it; all other layers are owned by the list.
#include <strings.h>

#include <new>

#include "movie/character.h"
#include "player/splayer.h"
#include "player/text.h"

namespace vexel {

namespace {

// A layer's root object stands at the layer's number, a depth of 16 bits.
constexpr int32_t kMaxLayer = 65535;

constexpr size_t kLayerPrefixLength = 6;

}  // namespace

ScriptPlayer* FindLayer(ScriptPlayer* head, int32_t layer) {
  while (head && head->layerDepth != layer) head = head->nextLayer;
  return head;
}

int32_t LayerNum(const char* name) {
  if (!name) return -1;
  if (strncasecmp(name, "_vexel", kLayerPrefixLength) != 0 &&
      strncasecmp(name, "_level", kLayerPrefixLength) != 0) {
    return -1;
  }
  return ToInt(name + kLayerPrefixLength);
}

ScriptPlayer* SPlayer::OpenLayer(int32_t layer, bool keepExisting) {
  if (layer < 0 || layer > kMaxLayer) return nullptr;
  if (layer == 0 && script && !keepExisting) ClearScript();
  if (ScriptPlayer* found = FindLayer(this, layer)) {
    if (!keepExisting && found != this) found->ClearScript();
    SetVersionVariable(this, found);
    return found;
  }
  auto* opened = new (std::nothrow) ScriptPlayer;
  if (!opened) return nullptr;
  opened->nextLayer = nextLayer;
  nextLayer = opened;
  opened->display = &display;
  display.AddThread(opened);
  opened->splayer = this;
  opened->layerDepth = static_cast<uint16_t>(layer);
  SetVersionVariable(this, opened);
  return opened;
}

void SPlayer::ClearLayer(int32_t layer) {
  if (layer == 0) {
    ClearScript();
    return;
  }
  for (ScriptPlayer* before = this; before->nextLayer; before = before->nextLayer) {
    ScriptPlayer* found = before->nextLayer;
    if (found->layerDepth != layer) continue;
    before->nextLayer = found->nextLayer;
    delete found;
    return;
  }
}

void SPlayer::FreeLayers() {
  while (ScriptPlayer* layer = nextLayer) {
    nextLayer = layer->nextLayer;
    delete layer;
  }
  ScriptPlayer::ClearScript();
}

void SPlayer::ClearScript() {
  Suspend();
  FreeLayers();
  RectSetEmpty(&zoomRect);
  loaded = false;
  dragObject.Set(nullptr);
  focus.Set(nullptr);
  saveFocus.Clear();
  SetCamera(kCameraShowSoon);
}

// The new movie's character is made for this one object, which holds it. The
// root object of a layer has no timeline above it and cannot be replaced.
ScriptPlayer* SPlayer::OpenSprite(ScriptThread* target) {
  SObject* old = target ? target->rootObject : nullptr;
  if (!old || !old->character || !old->parent || !old->parent->thread) return nullptr;
  SObject* parent = old->parent;

  auto* movie = new (std::nothrow) ScriptPlayer;
  SCharacter* character =
      movie ? CreateHeapCharacter(movie, kLoadedMovieId, charLoadedMovie) : nullptr;
  if (!character) {
    delete movie;
    return nullptr;
  }
  movie->splayer = this;
  character->bounds = old->character->bounds;

  PlaceInfo info;
  info.flags = kPlaceCharacter | kPlaceMatrix;
  info.character = character;
  info.depth = old->depth;
  info.mat = old->mat;
  info.cxform = old->cxform;
  if (old->cxform.flags != 0) info.flags |= kPlaceCxform;
  info.ratio = old->ratio;
  info.scriptControlled = old->scriptControlled;
  info.clipDepth = old->clipDepth;
  if (old->clipDepth != 0) info.flags |= kPlaceClipDepth;
  char* name = CreateStr(old->name);
  info.name = name;
  if (name) info.flags |= kPlaceName;

  parent->thread->RemoveSprite(target, false);
  if (!display.PlaceObject(parent, &info)) {
    delete movie;
    movie = nullptr;
  }
  FreeStr(name);
  character->Release();
  return movie;
}

}  // namespace vexel
