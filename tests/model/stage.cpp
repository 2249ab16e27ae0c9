// Placing, moving, removing, and the hold of a backward seek.
#include "field.h"

namespace vexel::model {

Stage::Stage() {
  root.stage = this;
  UpdateDevViewRect();
}

Stage::~Stage() {
  FreeChildren(&root);
}

Object::Object() = default;
Object::~Object() = default;

void Object::Modify() {
  stage->dirty = true;
  dirty = true;
}

void Object::FreeCache() {
  edges.clear();
  colors.clear();
}

int Object::Nesting() const {
  int n = 0;
  for (const Object* o = this; o; o = o->parent) ++n;
  return n;
}

Object* Stage::PlaceObject(Object* parent, const PlaceInfo& info) {
  if (parent->Nesting() > 256) return nullptr;
  Object** link = &parent->firstChild;
  while (*link && (*link)->depth < info.depth) link = &(*link)->next;
  Object* o = new Object;
  o->stage = this;
  o->parent = parent;
  o->next = *link;
  *link = o;
  o->character = info.character;
  o->mat = info.mat;
  o->cxform = info.cxform;
  o->depth = info.depth;
  o->ratio = info.ratio;
  o->thread = parent->thread;
  o->clipDepth = info.flags & 0x40 ? info.clipDepth : 0;
  o->Modify();
  if (o->character->type == kSprite) {
    o->own = std::make_unique<Thread>();
    Thread* t = o->own.get();
    o->thread = t;
    t->movie = o->character->movie;
    t->stage = this;
    t->root = o;
    t->layerDepth = o->depth;
    threads.push_front(t);
    t->script = o->character->data;
    t->tagEnd = 0x20000000;
    t->len = t->Size();
    t->numFrames = o->character->frameCount;
    t->DrawFrame(0, false);
  } else if (o->character->type == kButton) {
    int state = 1;
    if (tracked.character == o->character && tracked.parent == parent &&
        tracked.depth == o->depth && tracked.ratio == o->ratio) {
      state = buttonState;
      button = o;
    }
    UpdateButton(o, state);
  } else if (o->character->type == kEditText) {
    o->field = std::make_unique<Field>(o);
    if (parent != holdParent) o->field->UpdateFromVariable();
  }
  return o;
}

Object* Stage::MoveObject(Object* parent, const PlaceInfo& info) {
  Object* o = parent->firstChild;
  while (o && o->depth < info.depth) o = o->next;
  if (!o || o->depth != info.depth) return nullptr;
  o->Modify();
  if ((info.flags & 2) && info.character) {
    const int was = o->character->type, is = info.character->type;
    auto special = [](int type) { return type == kButton || type == kSprite; };
    if ((was == is || (!special(was) && !special(is))) && o->character != info.character) {
      o->character = info.character;
      if (focus == o && is != kEditText) focus = nullptr;
      o->field.reset();
      if (is == kEditText) {
        o->field = std::make_unique<Field>(o);
        if (parent != holdParent) o->field->UpdateFromVariable();
      }
    }
  }
  if (info.flags & 4) o->mat = info.mat;
  if (info.flags & 8) o->cxform = info.cxform;
  if (info.flags & 0x10) o->ratio = info.ratio;
  return o;
}

void Stage::RemoveObject(Object* parent, u16 depth) {
  Object** link = &parent->firstChild;
  while (*link && (*link)->depth < depth) link = &(*link)->next;
  if (*link && (*link)->depth == depth) DoRemove(link);
}

void Stage::DoRemove(Object** link) {
  Object* o = *link;
  if (o->drawn) InvalidateRect(o->devBounds);
  FreeChildren(o);
  Free(o);
  *link = o->next;
  delete o;
}

void Stage::FreeChildren(Object* o) {
  Object* child = o->firstChild;
  o->firstChild = nullptr;
  while (child) {
    Object* next = child->next;
    FreeChildren(child);
    if (child->drawn) InvalidateRect(child->devBounds);
    Free(child);
    delete child;
    child = next;
  }
}

void Stage::Free(Object* o) {
  o->FreeCache();
  if (focus == o) focus = nullptr;
  if (tabbed.object == o) {
    if (o->character->type == kButton) HideTabFocus();
    tabbed.object = nullptr;
  }
  if (button == o) button = nullptr;
  if (hitButton == o) hitButton = nullptr;
  if (savedTab.object == o) savedTab.object = nullptr;
  o->field.reset();
  if (!o->own) return;
  for (auto it = threads.begin(); it != threads.end(); ++it) {
    if (*it != o->own.get()) continue;
    if (stepping && it == cursor) ++cursor;
    threads.erase(it);
    break;
  }
  o->own.reset();
}

// The cursor stands on the thread to come, so that a step may delete any.
void Stage::StepThreads() {
  stepping = true;
  cursor = threads.begin();
  while (cursor != threads.end()) {
    Thread* t = *cursor;
    ++cursor;
    t->DoFrame(1);
  }
  stepping = false;
}

void Stage::BeginHold(Object* parent) {
  if (holdParent) FinishHold();
  holdParent = parent;
  holdList = parent->firstChild;
  parent->firstChild = nullptr;
}

void Stage::FinishHold() {
  if (!holdParent) return;
  Object** link = &holdParent->firstChild;
  while (holdList) {
    Object* old = holdList;
    Object* cur = *link;
    auto moveOldToLink = [&] {
      holdList = old->next;
      old->next = *link;
      *link = old;
    };
    if (!cur || old->depth < cur->depth) {
      if (old->depth > 16383) {
        moveOldToLink();
      } else {
        DoRemove(&holdList);
      }
      continue;
    }
    if (old->depth > cur->depth) {
      link = &cur->next;
      continue;
    }
    const bool same = old->mat == cur->mat && old->cxform == cur->cxform;
    auto isSprite = [](const Object* o) { return o->character->type == kSprite; };
    bool keep = false, alike = false;
    if (old->character == cur->character && old->ratio == cur->ratio &&
        old->clipDepth == cur->clipDepth) {
      keep = alike = same || isSprite(old);
    } else if (old->ratio == cur->ratio && isSprite(old) && isSprite(cur)) {
      keep = true;
    }
    if (keep) {
      if (!same) {
        old->Modify();
        old->mat = cur->mat;
        old->cxform = cur->cxform;
      }
      if (alike && button == cur) button = old;
      DoRemove(link);
      moveOldToLink();
    } else {
      link = &cur->next;
      DoRemove(&holdList);
    }
  }
  for (Object* o = holdParent->firstChild; o; o = o->next) {
    if (o->field) o->field->UpdateFromVariable();
  }
  holdParent = nullptr;
}

void Stage::SetBackgroundColor(Srgb c, int priority) {
  if (priority <= backgroundPriority) return;
  const Srgb stored = haveBackground ? background : Srgb{255, 255, 255, 255};
  if (!(c == stored)) {
    InvalidateRect(devViewRect);
    background = c;
    haveBackground = true;
  }
  backgroundPriority = priority;
}

}  // namespace vexel::model
