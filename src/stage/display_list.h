// The stage: the tree of placed objects, the camera that maps the movie to the
// target, what is dirty, the rasterizer, the pools of drawing objects, the
// running timelines and their queued actions. One player has one stage.
//
// Coordinates are twentieths of a pixel in the movie, and device units on the
// target: pixels, or quarter-pixels while `antialias` is set.
#pragma once

#include <cstdint>

#include "geometry/chunk_alloc.h"
#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "movie/budget.h"
#include "movie/fwd.h"
#include "raster/bit_buffer.h"
#include "raster/raster.h"
#include "stage/action_list.h"
#include "stage/object.h"

namespace vexel {

// The dirty list holds this many rectangles at rest: each is a full pass of
// the rasterizer, so a few chosen for little waste beat many small ones.
inline constexpr int32_t kDirtyRects = 3;

// The greatest depth that timelines may give; what stands above was placed at
// run time and outlives a rebuild of the frame.
inline constexpr uint16_t kMaxTimelineDepth = 16383;

// Device units to a pixel while the display anti-aliases.
inline constexpr int32_t kDevPerPixel = 4;

// A movie lives on a stage by pointers into it, so it neither moves nor copies.
class DisplayList {
 public:
  DisplayList();
  // Frees the tree. Timelines that are still listed are not deleted; their
  // `display` is cleared.
  ~DisplayList();
  DisplayList(const DisplayList&) = delete;
  DisplayList& operator=(const DisplayList&) = delete;

  // --- The tree (object.cpp, place.cpp, hold.cpp) ---

  // Places a new object under `parent`, beneath those at equal depth, and runs
  // the first frame of a sprite before it returns. Null, with the tree
  // untouched, when memory, the object budget or the nesting limit is
  // exhausted, or when the sprite's own first frame removed the object again.
  SObject* PlaceObject(SObject* parent, const PlaceInfo* info);
  // Changes what `info->flags` names of the object at `info->depth`. Null when
  // there is none, or when actions own it.
  SObject* MoveObject(SObject* parent, const PlaceInfo* info);
  // Removes the first object at `depth`; none there is no error.
  void RemoveObject(SObject* parent, uint16_t depth);
  // Removes `object` itself, wherever it stands under its parent.
  void RemoveObject(SObject* object);
  // The first object at `depth`, or null.
  SObject* FindObject(SObject* parent, uint16_t depth);
  // Frees the object in `*link` with its subtree, and closes the list.
  void DoRemove(SObject** link);
  // Frees an object without children and returns it to the pool; the caller
  // has taken it off every list.
  void FreeObject(SObject* object);

  // Bracket the rebuild of a timeline's frame: BeginHold moves the children of
  // `parent` aside, FinishHold keeps those that the rebuild placed again just
  // as they were, so that they keep their state, and drops the others.
  void BeginHold(SObject* parent);
  void FinishHold();

  // Marks the whole tree before a frame is built anew from scattered data.
  void MarkForSyncFrameRemoval();

  // --- What lies under a point, and buttons (hit_test.cpp, button.cpp). Points
  // are pixels; what they meet is what the last CalcUpdate saw. ---

  // A pixel in device units.
  SPOINT DevPoint(const SPOINT* pixel) const;
  // The topmost object of any kind, inside the view or not; null for none.
  SObject* HitTest(const SPOINT* pixel);
  // The topmost button or selectable edit text inside the view, or null.
  SObject* HitButton(const SPOINT* pixel);
  // The pointer is over the button `hit`, or over none. Runs what this changes:
  // swaps the children of buttons, which may run tags, and queues actions. True
  // if anything happened.
  bool SetButton(SObject* hit, bool mouseDown);
  // One ButtonTransition of `object`: its new state, its actions, and whether
  // it is the tracked one from now on.
  void DoButtonStateTransition(SObject* object, int32_t transition);
  // Gives a button the children of a ButtonState; nothing for other objects.
  void UpdateButton(SObject* object, int32_t state);
  // Queues what a button's ButtonTransition fires.
  void DoButtonAction(SObject* object, int32_t transition);

  // --- Timelines (threads.cpp) ---

  // Lists a timeline at the head of `threads`; a listed one stays where it is.
  void AddThread(ScriptThread* thread);
  // Takes it off the list, with its queued actions. An unknown one is ignored.
  void RemoveThread(ScriptThread* thread);

  // --- Background (display_list.cpp) ---

  // Ignored unless `priority` is above that of the stored colour. A colour of
  // 0 as a word leaves what the target holds.
  void SetBackgroundColor(SRGB color, int32_t priority);
  // Back to the initial white, unless the colour has a priority above 1.
  void Reset();

  // --- Memory (display_list.cpp) ---

  // Drops all cached edges and colours, and gives empty blocks of the pools
  // and of the rasterizer back.
  void FreeCache();
  // An edge or a colour for a cache or for one paint; null when the pool or
  // the stage's budget is exhausted. The memory is not cleared.
  REdge* NewEdge() {
    if (edgeCount >= kMaxEdges) return nullptr;
    auto* edge = static_cast<REdge*>(edgeAlloc.Alloc());
    if (edge) ++edgeCount;
    return edge;
  }
  void FreeEdge(REdge* edge) {
    edgeAlloc.Free(edge);
    --edgeCount;
  }
  void FreeEdges(REdge** list);
  RColor* NewColor();
  // FreeCache on the colour, and back to the pool.
  void FreeColor(RColor* color);

  // --- What is dirty (dirty.cpp) ---

  // Adds a rectangle in device units, grown by 2 pixels and cut to the view.
  void InvalidateRect(const SRECT* devRect);
  // Merges the pair of entries that wastes the least ground; unless `force`,
  // only a pair whose union is smaller than the sum of both. True if merged.
  bool MergeDirtyList(bool force);
  // Merges what pays, and cuts the rest so that nothing is painted twice.
  void DecomposeDirtyList();

  // --- The update cycle (update.cpp) ---

  // Turns `dirty` marks into entries of the dirty list.
  void CalcUpdate();
  // CalcUpdate, then repaints what is dirty. Without a target the list is
  // thrown away. Not while a tag or an action runs.
  void Update();
  // One paint of the rectangle `bitsRect`, in pixels of the target.
  void UpdateRect(const SRECT* bitsRect);
  // Device units to pixels of the target, truncating toward zero.
  void CalcBitsDirty(const SRECT* dev, SRECT* bits) const;

  // --- The camera (camera.cpp) ---

  // The drawing target, not owned; null for none. Marks the whole view.
  void SetBits(CBitBuffer* target);
  // Maps the movie's rectangle `frame` (twentieths) onto `screen` (pixels).
  // `smooth` switches anti-aliasing on. The low 4 bits of `mode` scale (0 fit,
  // 1 fill, 2 stretch, 3 fixed size), 0x10 left, 0x20 right, 0x40 top and 0x80
  // bottom align; the middle otherwise. An unchanged camera costs nothing.
  void SetCamera(const SRECT* frame, const SRECT* screen, bool smooth, int32_t mode);
  // After the target's pixels or the camera changed: everything is dirty.
  void ModifyCamera();
  // Takes the size of the target; 2000 x 2000 pixels while it has none.
  void UpdateDevViewRect();

  STransform camera;  // movie to device; its colour transform stays clear
  SObject root;       // parent of the layers' root objects
  SRGB backgroundColor;
  int32_t backgroundPriority = 0;
  CBitBuffer* bits = nullptr;
  bool antialias = false;
  bool animating = false;  // set by the player: bitmaps are not smoothed
  bool dirty = false;      // some object was modified since the last CalcUpdate

  SRECT devViewRect;      // the whole target, from 0, 0
  SRECT screenDirtyRect;  // pixels repainted since the reader last emptied it
  SRECT devDirtyUnion;    // all that was invalidated since the last Update
  int32_t dirtyCount = 0;
  int32_t dirtyArea[kDirtyRects + 1];  // always the area of dirtyRect[i]
  SRECT dirtyRect[kDirtyRects + 1];    // the last exists inside InvalidateRect only

  CRaster raster;

  SObject* holdList = nullptr;      // the children moved aside
  SObject* holdParent = nullptr;    // whose; null outside a hold
  ScriptThread* threads = nullptr;  // linked through their own `next`; not owned

  // The button that has the pointer, and its ButtonState.
  SObject* button = nullptr;
  int32_t buttonState = 0;
  bool mouseOverEditText = false;  // the pointer is over text that can be selected

  SRECT tabFocusRect;        // the keyboard focus frame, device units
  bool useFocusRect = true;  // show it

  // Which button is tracked. Outlives the object, so that a button placed
  // again in the next frame takes over the state.
  SObject* savedButtonParent = nullptr;        // compared, never followed
  SCharacter* savedButtonCharacter = nullptr;  // compared, never followed
  uint16_t savedButtonDepth = 0;
  uint16_t savedButtonRatio = 0;

  PlayObserver* observer = nullptr;  // not owned; null for none

  // All text fields, linked through `nextText`; their objects own them. While it
  // is null no variable is shown anywhere.
  EditText* texts = nullptr;

  int32_t instanceNameCount = 0;  // automatic sprite names; never reset

  ChunkAlloc edgeAlloc;
  ChunkAlloc objectAlloc;
  ChunkAlloc colorAlloc;
  int32_t edgeCount = 0;  // items out, against the budgets
  int32_t objectCount = 0;
  int32_t colorCount = 0;

  ActionList actionList;
  // The lists that run at this moment, innermost last; none between runs.
  ActionCallEntry actionCallStack[kMaxActionCalls];
  int32_t actionCallDepth = 0;

  // Tags that may still be run inside the present host call, by all timelines
  // together. Every call of the host that can run tags starts with a full
  // budget; once it is spent, timelines wait as if for data.
  void ResetTagBudget() { tagsLeft = kMaxTagsPerCall; }
  int32_t tagsLeft = kMaxTagsPerCall;
  // Pays for work that a movie can multiply; false once the budget is spent.
  bool SpendTags(int32_t tags) {
    if (tagsLeft <= 0) return false;
    tagsLeft -= tags;
    return true;
  }

  // The next timeline that the running round over `threads` steps; moves on
  // when that one is removed. Null outside a round.
  ScriptThread* threadCursor = nullptr;

 private:
  SObject** FindLink(SObject* parent, uint16_t depth);
  void RemoveActions(ActionList* list, ScriptThread* thread);
  void JoinThread(SObject* object, ScriptThread* thread, ScriptPlayer* player);
  void PlaceSprite(SObject* object);
  void PlaceLoadedMovie(SObject* object, bool clone);
  void PlaceButton(SObject* object);
  void TrackButton(SObject* object);
  void TakeHeldObject(SObject** link);
  void KeepHeldObject(SObject** link, bool samePlace);
  void AddFocusFrame(RColor* color, REdge** edges);

  // The object before the one that the last FindLink found; null for none.
  SObject* lastBefore = nullptr;
};

// (xmax - xmin) times (ymax - ymin), wrapping at 32 bits.
int32_t RectArea(const SRECT* r);
// True if the two share ground; touching is not enough.
bool RectTestOverlap(const SRECT* a, const SRECT* b);
// Rewrites two overlapping rectangles as two that do not overlap and cover at
// least the same ground.
void DecomposeRect(SRECT* a, SRECT* b);

}  // namespace vexel
