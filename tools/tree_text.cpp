#include "tree_text.h"

#include <algorithm>
#include <initializer_list>

#include "escapes.h"
#include "movie/character.h"

namespace vexel::tools {

namespace {

std::string Numbers(std::initializer_list<int32_t> values) {
  std::string text;
  for (const int32_t v : values) {
    if (!text.empty()) text += ',';
    text += std::to_string(v);
  }
  return text;
}

// Trees are 256 levels deep at most.
void AddRows(const SObject* first, size_t level, std::vector<TreeRow>* rows) {
  for (const SObject* o = first; o; o = o->next) {
    rows->push_back({o, level});
    AddRows(o->firstChild, level + 1, rows);
  }
}

}  // namespace

std::vector<TreeRow> TreeRows(const DisplayList& display) {
  std::vector<TreeRow> rows;
  AddRows(display.root.firstChild, 0, &rows);
  return rows;
}

std::string TreeText(const TreeRow& row) {
  const SObject* o = row.object;
  const MATRIX& m = o->mat;
  const ColorTransform& c = o->cxform;
  std::string text = std::string(row.level * 2, ' ') + std::to_string(o->depth);
  text += " id=" + std::to_string(o->character->id);
  text += " type=" + std::to_string(o->character->type);
  text += " name=" + Escaped(o->name);
  text += " matrix=" + Numbers({m.a, m.b, m.c, m.d, m.tx, m.ty});
  text += " cxform=" + Numbers({c.flags, c.aa, c.ab, c.ra, c.rb, c.ga, c.gb, c.ba, c.bb});
  text += " ratio=" + std::to_string(o->ratio);
  text += " clip=" + std::to_string(o->clipDepth);
  text += " visible=" + std::to_string(o->visible ? 1 : 0);
  text += " button=" + std::to_string(o->buttonState);
  text += " script=" + std::to_string(o->scriptControlled ? 1 : 0);
  return text;
}

std::vector<int32_t> DepthChain(const SObject* object) {
  std::vector<int32_t> depths;
  for (; object && object->parent; object = object->parent) depths.push_back(object->depth);
  std::reverse(depths.begin(), depths.end());
  return depths;
}

}  // namespace vexel::tools
