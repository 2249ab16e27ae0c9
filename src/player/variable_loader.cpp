// Loading of variables. The loader is a movie that runs nothing: it stands on
// no list, gathers its bytes like any movie, and ends itself once they are in.
#include "player/variable_loader.h"

#include <cstring>
#include <new>

#include "player/splayer.h"
#include "player/text.h"
#include "player/url_builder.h"

namespace vexel {

namespace {

// Reads up to one of `ends` or the end of the text, decoded.
const char* ExtractUntil(const char* text, const char* ends, URLBuilder* out) {
  while (*text && !strchr(ends, *text)) text = ExtractCharacter(text, out);
  return text;
}

// The timeline that a loaded text is for, or null.
// Required: the path starts at the first child of layer 0's root object, so
// that a relative one is taken from there.
ScriptThread* LoaderTarget(SPlayer* player, const char* path, int32_t layer) {
  if (path) {
    SObject* root = player->rootObject;
    ScriptThread* found = player->FindTarget(root ? root->firstChild : nullptr, path);
    if (found) return found;
    const int32_t named = LayerNum(path);
    return named >= 0 ? player->OpenLayer(named, true) : nullptr;
  }
  ScriptPlayer* opened = player->OpenLayer(layer, true);
  // So that paths reach the layer also before a movie comes into it. Without
  // memory for it the variables are still set.
  if (opened) opened->EnsureRootObject();
  return opened;
}

}  // namespace

void DecodeQueryString(ScriptThread* thread, const char* text) {
  while (*text) {
    URLBuilder name{};
    URLBuilder value{};
    text = ExtractUntil(text, "=&", &name);
    if (*text == '=') ++text;
    text = ExtractUntil(text, "&", &value);
    if (*text == '&') ++text;
    if (name.buffer && *name.buffer)
      thread->SetVariable(name.buffer, value.buffer ? value.buffer : "");
    FreeStr(name.buffer);
    FreeStr(value.buffer);
  }
}

void ExtractVariables(ScriptThread* thread, const char* url) {
  const char* mark = url ? strchr(url, '?') : nullptr;
  if (thread && mark) DecodeQueryString(thread, mark + 1);
}

ScriptPlayer* SPlayer::OpenVariableLoader(int32_t layer, const char* target) {
  auto* loader = new (std::nothrow) ScriptPlayer;
  if (!loader) return nullptr;
  loader->splayer = this;
  loader->variableLoader = true;
  loader->loaderLayer = layer;
  loader->loaderTarget = CreateStr(target);
  if (target && !loader->loaderTarget) {
    delete loader;
    return nullptr;
  }
  return loader;
}

void ScriptPlayer::SetDataComplete() {
  if (!variableLoader) return;
  if (len > 0) {
    uint8_t* text = scriptBlock.Bytes();  // has room for a zero behind its bytes
    text[len] = 0;
    ScriptThread* thread = LoaderTarget(splayer, loaderTarget, loaderLayer);
    if (thread) DecodeQueryString(thread, reinterpret_cast<const char*>(text));
  }
  delete this;
}

}  // namespace vexel
