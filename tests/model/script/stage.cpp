// Placing, moving and removing objects; the hold; sprites by script.
#include "stage.h"

namespace vexel::model::script {

constexpr size_t kMaxQueue = 4096;
constexpr u16 kMaxTimelineDepth = 16383;

void ActionList::Push(const Block& block, Thread* thread) {
  if (entries.size() - read < kMaxQueue) entries.push_back({block, 0, thread});
}

void ActionList::RemoveThread(const Thread* thread) {
  for (size_t i = read; i < entries.size(); ++i) {
    if (entries[i].thread == thread) entries[i] = {};
  }
}

Stage::~Stage() {
  FreeChildren(&root);
}

Object* Stage::PlaceObject(Object* parent, const PlaceInfo& info, Movie* movie) {
  Object** link = &parent->firstChild;
  while (*link && (*link)->depth < info.depth) link = &(*link)->next;
  auto* object = new Object;
  ++objects;
  object->parent = parent;
  object->next = *link;
  *link = object;
  object->character = info.character;
  object->movie = movie;
  object->mat = info.mat;
  object->cxform = info.cxform;
  object->depth = info.depth;
  object->ratio = info.ratio;
  object->scriptControlled = info.scriptControlled;
  if (info.character->type == kSpriteType && !info.hasName) {
    ++instanceNames;
    object->hasName = true;
    object->name = "instance" + std::to_string(instanceNames);
  } else {
    object->hasName = info.hasName;
    object->name = info.name;
  }
  object->thread = parent->thread;
  if (info.character->type == kSpriteType) {
    object->own = std::make_unique<Thread>();
    Thread* thread = object->own.get();
    object->thread = thread;
    thread->stage = this;
    thread->movie = movie;
    thread->layerDepth = object->depth;
    thread->root = object;
    thread->tags = &info.character->timeline;
    thread->numFrames = info.character->frameCount;
    threads.push_back(thread);
    thread->DrawFrame(0, false);
  }
  return object;
}

void Stage::MoveObject(Object* parent, const PlaceInfo& info) {
  Object* object = parent->firstChild;
  while (object && object->depth < info.depth) object = object->next;
  if (!object || object->depth != info.depth || object->scriptControlled) return;
  if (info.flags & 2) {
    const int now = object->character->type, then = info.character->type;
    if (now == then || (now != kSpriteType && then != kSpriteType)) {
      object->character = info.character;
    }
  }
  if (info.flags & 4) object->mat = info.mat;
  if (info.flags & 8) object->cxform = info.cxform;
  if (info.flags & 0x10) object->ratio = info.ratio;
}

void Stage::RemoveObject(Object* parent, u16 depth) {
  Object** link = &parent->firstChild;
  while (*link && (*link)->depth < depth) link = &(*link)->next;
  if (*link && (*link)->depth == depth) DoRemove(link);
}

void Stage::DoRemove(Object** link) {
  Object* object = *link;
  FreeChildren(object);
  Free(object);
  *link = object->next;
  delete object;
}

void Stage::FreeChildren(Object* object) {
  Object* child = object->firstChild;
  object->firstChild = nullptr;
  while (child) {
    Object* next = child->next;
    FreeChildren(child);
    Free(child);
    delete child;
    child = next;
  }
}

void Stage::Free(Object* object) {
  --objects;
  if (dragObject == object) {
    dragObject = nullptr;
    dragging = false;
  }
  if (object->own) RemoveThread(object->own.get());
}

void Stage::RemoveThread(Thread* thread) {
  actionList.RemoveThread(thread);
  for (CallEntry& entry : calls) {
    if (entry.target == thread) {
      entry.target = nullptr;
      entry.hasTarget = false;
    }
    entry.list->RemoveThread(thread);
  }
  std::erase(threads, thread);
  std::erase(round, thread);
}

void Stage::StepThreads() {
  round = threads;
  while (!round.empty()) {
    Thread* thread = round.back();
    round.pop_back();
    thread->DoFrame(1);
  }
}

void Stage::BeginHold(Object* parent) {
  if (holdParent) FinishHold();
  holdParent = parent;
  holdList = parent->firstChild;
  parent->firstChild = nullptr;
}

void Stage::FinishHold() {
  Object** link = &holdParent->firstChild;
  Object* cur = *link;
  while (Object* old = holdList) {
    if (!cur || old->depth < cur->depth) {
      if (old->depth > kMaxTimelineDepth) {
        holdList = old->next;
        old->next = cur;
        *link = old;
      } else {
        DoRemove(&holdList);
      }
      cur = *link;
      continue;
    }
    if (old->depth > cur->depth) {
      link = &cur->next;
      cur = *link;
      continue;
    }
    const bool same = old->mat == cur->mat && old->cxform == cur->cxform;
    const bool oldIsSprite = old->character->type == kSpriteType;
    bool keep = false;
    if (old->character == cur->character && old->ratio == cur->ratio) {
      keep = same || oldIsSprite;
    } else if (old->ratio == cur->ratio && oldIsSprite && cur->character->type == kSpriteType) {
      keep = true;
    }
    if (keep) {
      if (!same && !old->scriptControlled) {
        old->mat = cur->mat;
        old->cxform = cur->cxform;
      }
      DoRemove(link);
      holdList = old->next;
      old->next = *link;
      *link = old;
    } else {
      link = &cur->next;
      DoRemove(&holdList);
    }
    cur = *link;
  }
  holdParent = nullptr;
}

void Stage::CloneSprite(Thread* source, const Text& name, i32 depth) {
  if (!source || source->isMain) return;
  const Object* from = source->root;
  Object* parent = from->parent;
  Movie* movie = from->movie;
  PlaceInfo info;
  info.flags = 6 | 0x20;
  info.depth = static_cast<u16>(depth);
  info.character = from->character;
  info.mat = from->mat;
  if (from->cxform.flags != 0) info.cxform = from->cxform;
  info.ratio = 65535;
  info.hasName = true;
  info.name = name;
  // Under the root object of the parent's timeline, which is the parent.
  RemoveObject(parent, info.depth);
  PlaceObject(parent, info, movie);
}

void Stage::RemoveSprite(Thread* target) {
  if (!target || target->isMain) return;
  RemoveObject(target->root->parent, target->root->depth);
}

Rect BoundingBox(const Object& object, const Matrix& m) {
  const Matrix c = Concat(object.mat, m);
  Rect out = object.character ? TransformRect(c, object.character->bounds) : Rect{};
  for (const Object* child = object.firstChild; child; child = child->next) {
    out = RectUnion(out, BoundingBox(*child, c));
  }
  return out;
}

}  // namespace vexel::model::script
