// Holds a stage to its invariants: the tree, the pools and their counts, the
// list of timelines, the dirty list.
#pragma once

#include <cstdint>
#include <string>

#include "movie/character.h"
#include "movie/script_thread.h"
#include "raster/edge.h"
#include "raster/rcolor.h"
#include "stage/display_list.h"
#include "text/edit_text.h"

namespace vexel::test {

struct StageCount {
  int32_t objects = 0;
  int32_t edges = 0;
  int32_t colors = 0;
  int32_t texts = 0;
};

inline int32_t UsedItems(const ChunkAlloc& pool) {
  int32_t used = 0;
  for (const ChunkBlock* block = pool.firstBlock; block; block = block->next) used += block->used;
  return used;
}

// Edges that the objects under `parent` have cached.
inline int32_t CountEdges(const SObject& parent) {
  int32_t count = 0;
  for (const SObject* o = parent.firstChild; o; o = o->next) {
    for (const REdge* e = o->edges; e; e = e->next) ++count;
    count += CountEdges(*o);
  }
  return count;
}

inline std::string CheckTree(const SObject& parent, StageCount* count) {
  int32_t depth = -1;
  for (const SObject* o = parent.firstChild; o; o = o->next) {
    ++count->objects;
    for (const REdge* e = o->edges; e; e = e->next) ++count->edges;
    for (const RColor* c = o->colors; c; c = c->next) ++count->colors;
    const std::string where = " at depth " + std::to_string(o->depth);
    if (o->parent != &parent) return "wrong parent" + where;
    if (o->display != parent.display) return "wrong display" + where;
    if (o->nesting != parent.nesting + 1) return "wrong nesting" + where;
    if (o->depth < depth) return "children not sorted" + where;
    if (o->editText) ++count->texts;
    if (o->editText && o->editText->object != o) return "foreign field" + where;
    if (o->editText && o->character->type != charEditText) return "needless field" + where;
    if (!o->character || o->character->uses < 1) return "no hold on the character" + where;
    if (o->thread && o->thread->rootObject != o && o->thread != parent.thread) {
      return "foreign timeline" + where;
    }
    depth = o->depth;
    const std::string below = CheckTree(*o, count);
    if (!below.empty()) return below;
  }
  return {};
}

// Empty when all is whole, otherwise what is wrong first.
inline std::string CheckStage(const DisplayList& stage) {
  StageCount count;
  const std::string tree = CheckTree(stage.root, &count);
  if (!tree.empty()) return tree;
  if (stage.holdParent || stage.holdList) return "a hold is open";
  if (count.objects != stage.objectCount) return "objects out of count";
  if (count.edges != stage.edgeCount) return "edges out of count";
  if (count.colors != stage.colorCount) return "colours out of count";
  if (UsedItems(stage.objectAlloc) != count.objects) return "objects leak";
  if (UsedItems(stage.edgeAlloc) != count.edges) return "edges leak";
  if (UsedItems(stage.colorAlloc) != count.colors) return "colours leak";
  ScriptThread* const* link = &stage.threads;
  for (const ScriptThread* t = stage.threads; t; t = t->next) {
    if (t->listLink != link) return "timelines linked wrongly";
    if (t->display != &stage) return "timeline on another stage";
    if (t->rootObject && t->rootObject->thread != t) return "timeline without its object";
    link = &t->next;
  }
  EditText* const* textLink = &stage.texts;
  for (EditText* text = stage.texts; text; text = text->nextText) {
    if (text->textLink != textLink) return "fields linked wrongly";
    textLink = &text->nextText;
    --count.texts;
  }
  if (count.texts != 0) return "fields out of count";
  if (stage.dirtyCount < 0 || stage.dirtyCount > kDirtyRects) return "dirty list too long";
  for (int32_t i = 0; i < stage.dirtyCount; ++i) {
    if (stage.dirtyArea[i] != RectArea(&stage.dirtyRect[i])) return "wrong dirty area";
  }
  return {};
}

}  // namespace vexel::test
