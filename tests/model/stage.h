// The stage: the tree of placed objects, the camera, what is dirty.
#pragma once

#include <list>
#include <memory>
#include <vector>

#include "movie.h"

namespace vexel::model {

struct Field;

// The text focus across a rebuild of the tree.
struct SavedFocus {
  bool held = false;
  std::string name;
  u16 depth = 0;
  i32 anchor = 0, cursor = 0;
  bool selecting = false;
};

struct STransform {
  Matrix mat;
  ColorTransform cxform;
};

struct PlaceInfo {
  Matrix mat;
  ColorTransform cxform;
  int flags = 0;
  CharacterRef character;
  u16 depth = 0, ratio = 0, clipDepth = 0;
};

struct Object {
  Stage* stage = nullptr;
  Object* parent = nullptr;
  Object* next = nullptr;
  Object* firstChild = nullptr;
  CharacterRef character;
  u16 depth = 0, ratio = 0, clipDepth = 0;
  Thread* thread = nullptr;
  std::unique_ptr<Thread> own;
  Matrix mat;
  ColorTransform cxform;
  Rect devBounds;
  bool drawn = false, dirty = false;
  int buttonState = 0;  // 0 before its first
  EdgeList edges;
  ColorList colors;
  std::unique_ptr<Field> field;

  Object();
  ~Object();

  void Modify();
  void FreeCache();
  void CalcDevBounds(const Matrix& m);
  void CalcUpdate(const Matrix& parent, bool force);
  void BuildEdges(const STransform& t);
  void BuildText(const STransform& t);
  void Draw(Raster& raster, STransform t, const RColor* clipper);
  Object* DrawClipBracket(Raster& raster, const STransform& t, const RColor* clipper);
  bool HitTestOne(const STransform& t, Point p);
  void HitTest(Object*& found, STransform t, Point p);
  Object* HitClipper(STransform t, Point p);
  int Nesting() const;

  void UpdateFields(Thread* of, const std::string& name, const std::string& value, bool force);
  bool ScrollField(Thread* of, const std::string& name, int mode, i32& value);
  // The topmost button or selectable field under the point.
  void HitButton(Object*& found, STransform t, Point p);
  bool ButtonAt(const STransform& t, Point p) const;
  bool FieldAt(const STransform& t, Point p) const;
};

struct Stage {
  Object root;
  Matrix camera;
  bool antialias = false, animating = false, smooth = false, dirty = false;
  bool haveBackground = false;
  Srgb background;
  int backgroundPriority = 0;
  Buffer* bits = nullptr;
  Rect devViewRect;
  std::vector<Rect> dirtyRects;
  std::vector<Rect> painted;  // in pixels, what the last update drew
  Raster raster;
  Object* holdList = nullptr;
  Object* holdParent = nullptr;
  std::list<Thread*> threads;
  std::list<Thread*>::iterator cursor;  // the next thread of a step in progress
  bool stepping = false;
  Object* focus = nullptr;  // the field that takes the keys
  bool cursorBlink = false;
  SavedFocus savedFocus;
  // The keyboard's place among the fields, and the one before; the bounds are those of its time.
  struct Tabbed {
    Object* object = nullptr;
    Rect bounds;
  };
  Tabbed tabbed, savedTab;
  Rect tabFocus;                // the frame around the keyboard's button, in device units
  bool overField = false;       // the pointer is over a field
  Object* hitButton = nullptr;  // while a transition runs
  Object* button = nullptr;     // owns the pointer
  int buttonState = 0;
  // Who it is, for a button that comes in its place.
  struct Tracked {
    Object* parent = nullptr;
    CharacterRef character;
    u16 depth = 0, ratio = 0;
  };
  Tracked tracked;
  int drawing = 0;  // frames under way, one inside the other

  Stage();
  ~Stage();

  Object* PlaceObject(Object* parent, const PlaceInfo& info);
  Object* MoveObject(Object* parent, const PlaceInfo& info);
  void RemoveObject(Object* parent, u16 depth);
  void BeginHold(Object* parent);
  void FinishHold();
  void SetBackgroundColor(Srgb c, int priority);
  void StepThreads();
  Object* HitTest(Point pixel);  // the topmost object under it, or null
  Object* HitButton(Point pixel);
  void SaveFocus();
  bool SetButton(Object* hit, bool down);
  void HideTabFocus();
  Rect ButtonBounds(const Object* o) const;

  void InvalidateRect(Rect r);
  void CalcUpdate();
  void Update();
  void SetBits(Buffer* b);
  void ModifyCamera();
  void SetCamera(Rect frame, Rect screen, bool smooth, int mode);

 private:
  void DoRemove(Object** link);
  void UpdateButton(Object* o, int state);
  void Transition(Object* o, int transition);
  void FreeChildren(Object* o);
  void Free(Object* o);
  void UpdateDevViewRect();
  bool MergeDirtyList(bool force);
  void DecomposeDirtyList();
  void UpdateRect(Rect r);
};

}  // namespace vexel::model
