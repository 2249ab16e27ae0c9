// The hold keeps objects alive across a rebuild. A timeline that goes back in
// time replays its tags from the start into an empty child list; what it places
// again just as it was keeps its old object, and with it a sprite's own frame
// and variables, a button's state and the cached edges.
//
// Both lists are sorted by depth, so one merging walk compares them.
#include "geometry/matrix.h"
#include "movie/character.h"
#include "stage/display_list.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

bool IsSprite(const SObject* object) {
  return object->character->type == charSprite;
}

bool HasTimeline(const SObject* object) {
  return IsSprite(object) || object->character->type == charLoadedMovie;
}

bool SamePlace(const SObject* a, const SObject* b) {
  return MatrixEqual(&a->mat, &b->mat, 0) && Equal(&a->cxform, &b->cxform);
}

}  // namespace

void DisplayList::BeginHold(SObject* parent) {
  FinishHold();
  holdParent = parent;
  holdList = parent->firstChild;
  parent->firstChild = nullptr;
  lastBefore = nullptr;
}

// Takes the head of the hold list in where `link` points, so that it is the
// next object that `link` shows.
void DisplayList::TakeHeldObject(SObject** link) {
  SObject* old = holdList;
  holdList = old->next;
  old->next = *link;
  *link = old;
}

// The held object lives on in the place of the rebuilt one at `link`, which is
// removed. Unless actions own it, it takes the rebuilt one's transform.
void DisplayList::KeepHeldObject(SObject** link, bool samePlace) {
  SObject* old = holdList;
  if (!samePlace && !old->scriptControlled) {
    old->Modify();
    old->mat = (*link)->mat;
    old->cxform = (*link)->cxform;
  }
  DoRemove(link);
  TakeHeldObject(link);
}

// Required: after an object was taken in, `link` stays before it, so a further
// held object at the same depth is compared with that one, and not with the
// next rebuilt one.
void DisplayList::FinishHold() {
  if (!holdParent) return;
  SObject** link = &holdParent->firstChild;
  while (SObject* old = holdList) {
    SObject* cur = *link;
    if (!cur || old->depth < cur->depth) {
      // The timeline has nothing here: what was made at run time stays.
      if (old->depth > kMaxTimelineDepth) {
        TakeHeldObject(link);
      } else {
        DoRemove(&holdList);
      }
      continue;
    }
    if (old->depth > cur->depth) {
      link = &cur->next;
      continue;
    }
    const bool samePlace = SamePlace(old, cur);
    const bool sameKind = cur->character == old->character && cur->ratio == old->ratio &&
                          cur->clipDepth == old->clipDepth;
    if (sameKind && (samePlace || IsSprite(old))) {
      if (button == cur) button = old;
      KeepHeldObject(link, samePlace);
    } else if (!sameKind && old->ratio == cur->ratio && HasTimeline(old) && HasTimeline(cur)) {
      KeepHeldObject(link, samePlace);
    } else {
      link = &cur->next;
      DoRemove(&holdList);
    }
  }
  for (SObject* child = holdParent->firstChild; child; child = child->next) {
    if (child->editText) child->editText->UpdateFromVariable();
  }
  holdParent = nullptr;
}

}  // namespace vexel
