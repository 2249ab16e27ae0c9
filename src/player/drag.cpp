// An object that a script has tied to the pointer.
#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "movie/script_thread.h"
#include "player/splayer.h"
#include "player/text.h"

namespace vexel {

namespace {

SCOORD Clamp(SCOORD v, SCOORD low, SCOORD high) {
  return v < low ? low : v > high ? high : v;
}

// The top of the timeline that the object belongs to.
SObject* TimelineRoot(const SObject* object) {
  return object->thread ? object->thread->rootObject : nullptr;
}

}  // namespace

void SPlayer::UpdateDragObject(const SPOINT* pt) {
  SObject* o = dragObject ? TimelineRoot(dragObject.Get()) : nullptr;
  if (!o) return;

  // The units of the object's parent to pixels.
  MATRIX m;
  MatrixIdentity(&m);
  for (const SObject* p = o->parent; p != &display.root; p = p->parent) {
    MatrixConcat(&m, &p->mat, &m);
  }
  MATRIX client;
  ClientMatrix(&client);
  MatrixConcat(&m, &client, &m);
  MATRIX inverse;
  MatrixInvert(&m, &inverse);

  SPOINT pointer = *pt;
  const SPOINT from = {o->mat.tx, o->mat.ty};
  SPOINT to;
  if (o->dragCenter) {
    MatrixTransformPoint(&inverse, &pointer, &to);
  } else {
    SPOINT movement = dragPoint - pointer;
    MatrixDeltaTransformPoint(&inverse, &movement, &movement);
    to = from - movement;
  }

  const SRECT& limits = o->dragConstraint;
  if (!RectIsEmpty(&limits)) {
    to = {Clamp(to.x, limits.xmin, limits.xmax), Clamp(to.y, limits.ymin, limits.ymax)};
    // The next movement counts from here, so that the pointer doesn't run ahead.
    if (o->dragCenter) {
      MatrixTransformPoint(&m, &to, &pointer);
    } else {
      SPOINT movement = from - to;
      MatrixDeltaTransformPoint(&m, &movement, &movement);
      pointer = dragPoint - movement;
    }
  }

  o->mat.tx = to.x;
  o->mat.ty = to.y;
  o->Modify();
  dragPoint = pointer;
  UpdateDropTarget();
}

// Required: looks under the pointer as it was at the last event, and not where
// the object has just been put.
void SPlayer::UpdateDropTarget() {
  SObject* dragged = dragObject.Get();
  if (!dragged) return;
  const bool wasVisible = dragged->visible;
  dragged->visible = false;
  const SObject* hit = display.HitTest(&mousePoint);
  dragged->visible = wasVisible;
  SObject* target = hit ? TimelineRoot(hit) : nullptr;
  FreeStr(dragged->dropTarget);
  dragged->dropTarget = target ? GetTargetPath(target) : nullptr;
}

}  // namespace vexel
