// The button machine: which button has the pointer, what it shows, and which
// actions it fires. The stage tracks one button at a time; a transition swaps
// the button's children and queues its actions.
//
// Placing a child runs the first frame of a sprite, whose tags may remove
// anything: objects in hand are kept in slots.
#include "stage/button.h"

#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "movie/character.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

bool IsButton(const SObject* object) {
  return object->character && object->character->type == charButton;
}

bool IsMenu(const SObject* object) {
  return IsButton(object) && object->character->trackAsMenu;
}

// The state after each transition.
constexpr uint8_t kStateAfter[] = {
    buttonOver,            // buttonEnter
    buttonIdle,            // buttonLeave
    buttonPressed,         // buttonPress
    buttonOver,            // buttonRelease
    buttonPressedOutside,  // buttonDragOut
    buttonPressed,         // buttonDragBack
    buttonIdle,            // buttonReleaseOutside
    buttonPressed,         // buttonMenuDragIn
    buttonIdle,            // buttonMenuDragOut
};
static_assert(sizeof kStateAfter == buttonMenuDragOut + 1);

constexpr int32_t kNoTransition = -1;

// What happens to the tracked button in `state`, or to `hit` if there is none.
int32_t FindTransition(const SObject* button, int32_t state, const SObject* hit, bool mouseDown) {
  switch (state) {
    case buttonIdle:
      if (!hit) return kNoTransition;
      if (!mouseDown) return buttonEnter;
      // A press that began elsewhere works on the buttons of a menu only.
      return IsMenu(hit) ? buttonMenuDragIn : kNoTransition;
    case buttonOver:
      if (hit != button) return buttonLeave;
      return mouseDown ? buttonPress : kNoTransition;
    case buttonPressed:
      if (hit != button) return IsMenu(button) ? buttonMenuDragOut : buttonDragOut;
      return mouseDown ? kNoTransition : buttonRelease;
    case buttonPressedOutside:
      if (hit == button) return buttonDragBack;
      return mouseDown ? kNoTransition : buttonReleaseOutside;
    default:
      return kNoTransition;
  }
}

}  // namespace

void DisplayList::TrackButton(SObject* object) {
  button = object;
  savedButtonParent = object ? object->parent : nullptr;
  savedButtonCharacter = object ? object->character : nullptr;
  savedButtonDepth = object ? object->depth : uint16_t{0};
  savedButtonRatio = object ? object->ratio : uint16_t{0};
}

bool DisplayList::SetButton(SObject* hit, bool mouseDown) {
  if (!button) {
    buttonState = buttonIdle;
    TrackButton(nullptr);
  }
  const int32_t transition = FindTransition(button, buttonState, hit, mouseDown);
  if (transition == kNoTransition) return false;
  WeakSlot<SObject> entered(hit);
  DoButtonStateTransition(buttonState == buttonIdle ? hit : button, transition);
  // One event may leave a button and enter another.
  if (!button && entered) SetButton(entered.Get(), mouseDown);
  return true;
}

void DisplayList::DoButtonStateTransition(SObject* object, int32_t transition) {
  WeakSlot<SObject> changed(object);
  buttonState = kStateAfter[transition];
  UpdateButton(object, buttonState);
  if (changed) DoButtonAction(object, transition);
  if (buttonState == buttonIdle) {
    TrackButton(nullptr);
  } else if (changed) {
    TrackButton(object);
  }
}

// All removals come first. A record that both states show keeps its object, and
// with it a sprite's present frame.
void DisplayList::UpdateButton(SObject* object, int32_t state) {
  if (!IsButton(object) || object->buttonState == state) return;
  WeakSlot<SObject> changed(object);
  const uint8_t oldMask = ButtonRecordMask(object->buttonState);
  const uint8_t newMask = ButtonRecordMask(state);
  ButtonRecordReader removals(object->character, this);
  ButtonRecordReader placements = removals;
  ButtonRecord record;
  while (removals.Next(&record)) {
    if ((record.states & oldMask) == 0 || (record.states & newMask) != 0) continue;
    RemoveObject(object, static_cast<uint16_t>(record.layer + object->depth));
  }
  while (changed && placements.Next(&record)) {
    if ((record.states & newMask) == 0 || (record.states & oldMask) != 0) continue;
    PlaceInfo info;
    info.character = placements.FindCharacter(record);
    if (!info.character || !changed) continue;
    info.flags = kPlaceCharacter | kPlaceMatrix | kPlaceCxform;
    info.mat = record.mat;
    info.cxform = record.cxform;
    info.depth = static_cast<uint16_t>(record.layer + object->depth);
    PlaceObject(object, &info);
  }
  if (changed) object->buttonState = static_cast<uint8_t>(state);
}

void DisplayList::DoButtonAction(SObject* object, int32_t transition) {
  const SCharacter* character = object->character;
  if (!IsSecondButtonForm(character)) {
    if (transition == buttonRelease) {
      actionList.PushAction(ButtonActionBlock(character), object->thread);
    }
    return;
  }
  ButtonActionReader records(character);
  while (records.Next()) {
    if (records.conditions >> transition & 1) actionList.PushAction(records.block, object->thread);
  }
}

void SObject::CalcButtonBounds(SRECT* out) const {
  MATRIX m;
  MatrixIdentity(&m);
  for (const SObject* o = this; o != &display->root; o = o->parent) MatrixConcat(&m, &o->mat, &m);
  MatrixConcat(&m, &display->camera.mat, &m);
  RectSetEmpty(out);
  if (character->type == charEditText) MatrixTransformRect(&m, &character->bounds, out);
  if (character->type != charButton) return;
  ButtonRecordReader records(character, display);
  ButtonRecord record;
  while (records.Next(&record)) {
    if ((record.states & kButtonHitArea) == 0) continue;
    SObject area;
    area.character = records.FindCharacter(record);
    if (!area.character) continue;
    MATRIX areaMat;
    MatrixConcat(&record.mat, &m, &areaMat);
    area.CalcDevBounds(&areaMat);
    RectUnion(out, &area.devBounds, out);
  }
}

void SObject::MarkForSyncFrameRemoval() {
  if (character && character->type != charRoot) {
    syncRemovalMark = kSyncUnconfirmed;
    if (buttonState != buttonNone) display->UpdateButton(this, buttonNone);
  }
  for (SObject* child = firstChild; child; child = child->next) child->MarkForSyncFrameRemoval();
}

void DisplayList::MarkForSyncFrameRemoval() {
  root.MarkForSyncFrameRemoval();
}

}  // namespace vexel
