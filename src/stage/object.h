// A placed object: a node of the tree that timelines build, sorted by depth.
// An object is a character at a place; sprites and buttons have children. The
// tree holds no pixels: each object caches the edges and colours of its
// character in device units until something moves or recolours it.
#pragma once

#include <cstdint>

#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "movie/fwd.h"
#include "movie/weak.h"
#include "raster/color_transform.h"

namespace vexel {

// What a tree walk accumulates on its way down; passed by value.
struct STransform {
  MATRIX mat;             // local to device so far
  ColorTransform cxform;  // colour transform so far
};

// Bits of PlaceInfo::flags, which are those of the placement tag.
enum PlaceFlags : uint8_t {
  kPlaceMove = 0x01,       // move what stands at the depth instead of placing
  kPlaceCharacter = 0x02,  // `character` is given
  kPlaceMatrix = 0x04,     // `mat` is given
  kPlaceCxform = 0x08,     // `cxform` is given
  kPlaceRatio = 0x10,      // `ratio` is given
  kPlaceName = 0x20,       // `name` is given
  kPlaceClipDepth = 0x40,  // `clipDepth` is given
  kPlaceClone = 0x80,      // clones a sprite that holds a loaded movie
};

// A request to place or move an object, filled in by a timeline or a button
// record. Its transform comes first, as in every walk over the tree.
struct PlaceInfo : STransform {
  uint8_t flags = 0;                // PlaceFlags
  SCharacter* character = nullptr;  // borrowed; the placed object holds it
  uint16_t depth = 0;
  uint16_t ratio = 0;      // morph position, 0 to 65535 as a fraction of one
  uint16_t clipDepth = 0;  // read only with kPlaceClipDepth
  bool scriptControlled = false;
  const char* name = nullptr;  // borrowed; the object takes a copy
};

// Whether a frame that is built anew from scattered data has placed an object.
enum SyncMark : uint8_t { kSyncUnmarked = 0, kSyncUnconfirmed = 1, kSyncConfirmed = 2 };

// `mode` of ScrollEditText; the first line is 1.
enum ScrollMode : int32_t {
  kScrollGet = 0,
  kScrollSet = 1,     // `value` takes what became of it
  kScrollGetMax = 2,  // the last line that can be the first one shown
};

// Objects live in the display list's pool, from PlaceObject to DoRemove or to
// their parent's FreeChildren. What is held across a call that can run tags
// stays in a WeakSlot<SObject>.
struct SObject {
  DisplayList* display = nullptr;
  SObject* parent = nullptr;        // null for the root
  SObject* next = nullptr;          // next sibling, from the bottom upward
  SObject* firstChild = nullptr;    // sorted by ascending depth
  SCharacter* character = nullptr;  // held; null for the root only
  uint16_t depth = 0;
  uint16_t ratio = 0;
  char* name = nullptr;  // owned (CreateStr), or null
  // The timeline that the object belongs to. A sprite owns its own, which
  // knows the object as its `rootObject`; any other object shows its parent's.
  ScriptThread* thread = nullptr;
  MATRIX mat;             // local transform
  ColorTransform cxform;  // local colour transform
  SRECT devBounds;        // the character's bounds in device units, as of the last CalcUpdate
  bool scriptControlled = false;  // actions own the place: timeline tags leave it alone
  uint8_t buttonState = 0;        // of a button: a ButtonState
  bool drawn = false;             // has joined a paint since its bounds were last invalidated
  bool dirty = false;             // changed since the last CalcUpdate
  bool visible = true;            // clear: the subtree is neither drawn nor hit
  uint16_t clipDepth = 0;  // not 0: masks the following siblings up to and including this depth

  // Of a drag: the object's origin follows the pointer, rather than the point
  // that was grabbed; where its origin may go, in its parent's units, or empty.
  bool dragCenter = false;
  SRECT dragConstraint = {kEmptyCoord, kEmptyCoord, kEmptyCoord, kEmptyCoord};
  char* dropTarget = nullptr;  // owned: path of what lies under the dragged object, or null

  REdge* edges = nullptr;    // cache, from the display's edge pool
  RColor* colors = nullptr;  // cache, from the display's colour pool

  EditText* editText = nullptr;  // owned; of a text field only, and null without memory

  uint8_t syncRemovalMark = 0;  // a SyncMark
  uint16_t nesting = 0;         // levels below the root
  WeakHead<SObject> weakSlots;

  // Marks the object and the display; every change of a transform, ratio or
  // character goes with this call, and nothing else marks an object.
  void Modify();

  // Gives edges and colours back to their pools.
  void FreeCache();
  // The same for this object and everything under it.
  void FreeTreeCache();

  // Releases all that the object holds, its own timeline included, and clears
  // every WeakSlot on it. The caller has freed the children, and unlinks the
  // object and returns it to the pool.
  void Free();
  // Removes and frees the whole subtree below the object.
  void FreeChildren();

  // Sets `devBounds` from the character's own bounds under `mat` (local to
  // device); children have bounds of their own.
  void CalcDevBounds(const MATRIX* mat);

  // Recomputes bounds of what is dirty, or of everything if `forceDirty`, and
  // invalidates the old and the new ground. `parent` maps to device units.
  void CalcUpdate(const MATRIX* parent, bool forceDirty);

  // Fills `edges` and `colors` from the character under `t` (which includes
  // this object's own transform), unless they exist.
  void BuildEdges(const STransform* t);
  // Adds the subtree to a paint, from bottom to top. `t` is the parent's
  // transform; `clipper` the mask's colours, null, or the mark of no mask.
  void Draw(CRaster* raster, STransform t, RColor* clipper);
  // Adds a mask and the siblings that it clips; returns the next sibling.
  SObject* DrawClipBracket(CRaster* raster, STransform t, RColor* clipper);

  // --- What lies under a point (hit_test.cpp). Points are device units, and
  // `t` is the parent's transform; bounds are those of the last CalcUpdate. ---

  // Puts the topmost object under the point, of this one and all below it, into
  // `found`, and leaves it alone if there is none.
  void HitTest(SObject*& found, const STransform& t, const SPOINT* pt);
  // The same of buttons, by their hit areas, and of texts that can be selected.
  // Other objects are not found, and hide nothing.
  void HitButton(SObject*& found, const STransform& t, const SPOINT* pt);
  // Of a mask: the next sibling to test. Where the point is not in the mask,
  // what it clips is passed over.
  SObject* HitClipper(const STransform& t, const SPOINT* pt);
  // Whether the point is in this object itself; `t` includes its transform.
  bool HitTestOne(const STransform* t, const SPOINT* pt);

  // --- Buttons (button.cpp) ---

  // The hit area of a button, or the bounds of an edit text, in device units;
  // empty for other kinds.
  void CalcButtonBounds(SRECT* out) const;

  // --- Text fields (edit_object.cpp) ---

  // Lays the field out for a platform that paints texts itself; nothing
  // without one. True in any case (edit_draw.cpp).
  bool DrawEditText(const STransform* t);

  // The pointer on the field, with the button as it is now; nothing without one.
  void EditTextMouse(const SPOINT* pixel, bool mouseIsDown);
  // The scroll position of the first field at or below this object that is
  // bound to `name` of `thread`, as a ScrollMode says; false if there is none.
  bool ScrollEditText(ScriptThread* thread, const char* name, int32_t mode, int32_t& value);
  // `name` of `thread` is now `value`: so are all fields at and below this
  // object that are bound to it, but for the one with the focus unless `force`.
  void UpdateEditText(ScriptThread* thread, const char* name, const char* value, bool force);

  // Marks the subtree before its frame is built anew; buttons lose what they
  // show.
  void MarkForSyncFrameRemoval();
};

// `t` as the children of `object` see it.
STransform Concatenated(const SObject* object, const STransform& t);

// The box of the object and all below it, under its own transform: in the
// units of its parent, or, with `m`, where `m` maps those. Unseen objects
// count, masks cut nothing off, and a morph has its start shape's bounds.
void GetBoundingBox(const SObject* object, SRECT* out);
void GetBoundingBox(const SObject* object, const MATRIX* m, SRECT* out);

}  // namespace vexel
