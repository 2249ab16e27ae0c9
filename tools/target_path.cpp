#include "target_path.h"

#include <algorithm>

#include "player/text.h"

namespace vexel::tools {

namespace {

bool IsTimeline(const SObject* object) {
  return object->character->type == charSprite || object->character->type == charLoadedMovie;
}

SObject* FindChild(SObject* parent, const std::string& name) {
  for (SObject* child = parent->firstChild; child; child = child->next) {
    if (IsTimeline(child) && StrEqual(child->name, name.c_str())) return child;
  }
  return nullptr;
}

}  // namespace

ScriptThread* FindTimeline(SPlayer* player, const std::string& path) {
  SObject* at = player->rootObject;
  bool first = !path.starts_with('/');
  for (size_t pos = first ? 0 : 1; at && pos < path.size(); first = false) {
    const size_t end = std::min(path.find('/', pos), path.size());
    const std::string name = path.substr(pos, end - pos);
    pos = end + 1;
    if (const int32_t layer = first ? LayerNum(name.c_str()) : -1; layer >= 0) {
      const ScriptPlayer* movie = FindLayer(player, layer);
      at = movie ? movie->rootObject : nullptr;
    } else if (name == "..") {
      at = at->parent;
    } else {
      at = FindChild(at, name);
    }
  }
  return at ? at->thread : nullptr;
}

}  // namespace vexel::tools
