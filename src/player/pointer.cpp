// The pointer: what an event does to the button under it, to a drag, and to a
// zoomed view that it moves. Transitions of buttons run actions, after which
// no object in hand need be there any more.
#include "geometry/intmath.h"
#include "geometry/rect.h"
#include "movie/character.h"
#include "player/splayer.h"
#include "stage/button.h"

namespace vexel {

namespace {

// The shape of the pointer is to be chosen anew.
constexpr int32_t kCursorByStage = 1;

bool IsKind(const SObject* object, CharacterType type) {
  return object && object->character->type == type;
}

}  // namespace

void SPlayer::MouseDown(const SPOINT* pt) {
  if (!loaded) return;
  display.ResetTagBudget();
  DoButton(pt, true, true);
  if (display.button || IsSelecting()) return;
  if (RectIsEmpty(&zoomRect)) {
    XReleaseCapture();
  } else {
    panPoint = *pt;
    panning = true;
    XSetCapture();
  }
}

void SPlayer::MouseUp(const SPOINT* pt) {
  if (!loaded) return;
  display.ResetTagBudget();
  if (dragObject) UpdateDragObject(pt);
  if (!DrawSelection(pt, false)) {
    if (panning) {
      panning = false;
    } else {
      DoButton(pt, false, true);
    }
  }
  XReleaseCapture();
}

void SPlayer::MouseMove(const SPOINT* pt, bool mouseIsDown) {
  if (!loaded) return;
  display.ResetTagBudget();
  if (dragObject) UpdateDragObject(pt);
  if (DrawSelection(pt, true)) return;
  if (!panning) {
    DoButton(pt, mouseIsDown, true);
    return;
  }
  PanZoomRect(Saturate32(int64_t{panPoint.x} - pt->x), Saturate32(int64_t{panPoint.y} - pt->y));
  SetCamera(kCameraShowNow);
  UpdateScreen();
  panPoint = *pt;
}

void SPlayer::DoButton(const SPOINT* pt, bool mouseIsDown, bool updateScreen) {
  SObject* hit = display.HitButton(pt);
  bool changed;
  if (IsKind(hit, charEditText)) {
    changed = PointAtText(hit, pt, mouseIsDown);
    // A text never drives the buttons.
    hit = nullptr;
  } else {
    changed = display.mouseOverEditText;
    display.mouseOverEditText = false;
    if (mouseIsDown) UnfocusText();
  }
  if (display.SetButton(hit, mouseIsDown) || changed) {
    // The pointer hides the keyboard's frame.
    display.InvalidateRect(&display.tabFocusRect);
    RectSetEmpty(&display.tabFocusRect);
    DoActions();
    if (updateScreen) UpdateScreen();
    UpdateCursor(kCursorByStage);
    if (display.button && mouseIsDown) {
      XSetCapture();
    } else {
      XReleaseCapture();
    }
  }
  // A pointer that has left the stage is not asked for again by the run loop.
  const SPOINT dev = display.DevPoint(pt);
  if (RectPointIn(&display.devViewRect, &dev)) {
    mouseState = mouseIsDown ? kMouseDown : kMouseUp;
    mousePoint = *pt;
  } else {
    mouseState = kMouseUnknown;
  }
}

void SPlayer::DoButton(SObject* object, bool mouseIsDown, bool updateScreen) {
  if (IsKind(object, charEditText)) {
    FocusText(object);
    return;
  }
  display.mouseOverEditText = false;
  if (mouseIsDown) UnfocusText();
  if (object && !IsKind(object, charButton)) return;
  WeakSlot<SObject> framed(object);
  if (display.SetButton(object, mouseIsDown)) {
    display.InvalidateRect(&display.tabFocusRect);
    if (framed) {
      framed->CalcButtonBounds(&display.tabFocusRect);
      display.InvalidateRect(&display.tabFocusRect);
    } else {
      RectSetEmpty(&display.tabFocusRect);
    }
    DoActions();
    if (updateScreen) UpdateScreen();
    UpdateCursor(kCursorByStage);
  }
  mouseState = mouseIsDown ? kMouseDown : kMouseUp;
}

void SPlayer::CancelCapture(bool clearMouse) {
  display.ResetTagBudget();
  panning = false;
  if (clearMouse) {
    mouseState = kMouseUnknown;
    if (display.SetButton(nullptr, false)) {
      DoActions();
      UpdateScreen();
    }
  } else {
    mouseState = kMouseUp;
  }
  UpdateCursor(kCursorByStage);
}

void SPlayer::ObjectFreed(const SObject* object) {
  if (dragObject.Get() == object) {
    dragObject.Set(nullptr);
    dragging = false;
  }
  if (!IsKind(object, charButton) || focusButton.button.Get() != object) return;
  focusButton.button.Set(nullptr);
  display.InvalidateRect(&display.tabFocusRect);
  RectSetEmpty(&display.tabFocusRect);
}

}  // namespace vexel
