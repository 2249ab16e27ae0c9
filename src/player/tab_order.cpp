// The keyboard's way from button to button. Movies give no tab order: it is
// made anew for each key from where the buttons lie on the screen, since they
// come, go and move with every frame.
//
// Giving a button the focus runs its actions, which may remove any object; the
// list of buttons is good only until then, and what has the focus is kept in a
// slot, beside its rectangle, by which it is found again.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "geometry/intmath.h"
#include "movie/character.h"
#include "movie/edit_text_flags.h"
#include "player/arrow_keys.h"
#include "player/key_codes.h"
#include "player/splayer.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

constexpr int32_t kButtonsGrowBy = 50;

// The weight before the first button's.
constexpr int32_t kNoWeight = -1;

bool TakesFocus(const SObject* object) {
  const SCharacter* character = object->character;
  if (character->type == charButton) return true;
  return character->type == charEditText && !(EditTextFlags(character) & kEditTextReadOnly);
}

}  // namespace

void SPlayer::SButton::Set(SObject* object, const SRECT& rect) {
  button.Set(object);
  bounds = rect;
}

// --- The list of buttons ---

void SPlayer::RemoveAllButtons() {
  buttonCount = 0;
}

void SPlayer::AddButton(SObject* object) {
  if (buttonCount == buttonSize) {
    const size_t size = static_cast<size_t>(buttonSize + kButtonsGrowBy);
    void* grown = realloc(buttons, size * sizeof *buttons);
    if (!grown) return;
    buttons = static_cast<SObject**>(grown);
    buttonSize += kButtonsGrowBy;
  }
  buttons[buttonCount++] = object;
}

int32_t SPlayer::NumButtons(SObject* parent) {
  int32_t count = 0;
  for (SObject* child = parent->firstChild; child; child = child->next) {
    if (!child->visible) continue;
    if (TakesFocus(child)) {
      AddButton(child);
      ++count;
    }
    count += NumButtons(child);
  }
  return count;
}

bool SPlayer::ButtonFind(const SButton* wanted, SButton* found) {
  RemoveAllButtons();
  NumButtons(&display.root);
  for (int32_t i = 0; i < buttonCount; ++i) {
    SRECT bounds;
    buttons[i]->CalcButtonBounds(&bounds);
    if (!RectEqual(&bounds, &wanted->bounds, 0)) continue;
    found->Set(buttons[i], bounds);
    return true;
  }
  return false;
}

// --- The tab order ---

// Rows from top to bottom, and in a row from left to right; height pulls six
// times as much as width. Equal weights cannot be told apart.
int32_t SPlayer::CalcButtonWeight(const SRECT* rect) {
  return WrapAdd(WrapMul(rect->ymin, 2), rect->xmin / 3);
}

void SPlayer::ButtonSort(ButtonWeight* map, int32_t last) {
  std::stable_sort(map, map + last + 1, [](const ButtonWeight& a, const ButtonWeight& b) {
    return a.weight < b.weight;
  });
}

SPlayer::ButtonWeight* SPlayer::BuildButtonTabMap() {
  RemoveAllButtons();
  NumButtons(&display.root);
  if (buttonCount == 0) return nullptr;
  auto* map = new (std::nothrow) ButtonWeight[static_cast<size_t>(buttonCount)];
  if (!map) return nullptr;
  for (int32_t i = 0; i < buttonCount; ++i) {
    map[i].button = buttons[i];
    buttons[i]->CalcButtonBounds(&map[i].bounds);
    map[i].weight = CalcButtonWeight(&map[i].bounds);
  }
  ButtonSort(map, buttonCount - 1);
  return map;
}

void SPlayer::ButtonTabNext() {
  TabFromText();
  const int32_t weight = focusButton.button ? CalcButtonWeight(&focusButton.bounds) : kNoWeight;
  ButtonFocusRemove();
  ButtonWeight* map = BuildButtonTabMap();
  if (!map) {
    focusButton.button.Set(nullptr);
    return;
  }
  const ButtonWeight* chosen = map;
  for (int32_t i = 0; i < buttonCount; ++i) {
    if (map[i].weight <= weight) continue;
    chosen = &map[i];
    break;
  }
  focusButton.Set(chosen->button, chosen->bounds);
  delete[] map;
  ButtonFocusSet(focusButton.button.Get());
}

void SPlayer::ButtonTabPrevious() {
  TabFromText();
  const bool hadFocus = static_cast<bool>(focusButton.button);
  const int32_t weight = CalcButtonWeight(&focusButton.bounds);
  ButtonFocusRemove();
  ButtonWeight* map = BuildButtonTabMap();
  if (!map) {
    focusButton.button.Set(nullptr);
    return;
  }
  const ButtonWeight* chosen = &map[buttonCount - 1];
  for (int32_t i = buttonCount - 1; hadFocus && i >= 0; --i) {
    if (map[i].weight >= weight) continue;
    chosen = &map[i];
    break;
  }
  focusButton.Set(chosen->button, chosen->bounds);
  delete[] map;
  ButtonFocusSet(focusButton.button.Get());
}

// --- The focus ---

void SPlayer::ButtonFocusSet(SObject* object) {
  ClearFocus();
  DoButton(object, false, true);
  mouseState = kMouseUnknown;
}

void SPlayer::ButtonFocusRemove() {
  DoButton(static_cast<SObject*>(nullptr), false, true);
}

void SPlayer::ButtonEnter() {
  const auto onButton = [this] {
    const SObject* object = focusButton.button.Get();
    return object && object->character->type == charButton;
  };
  if (onButton()) DoButton(focusButton.button.Get(), true, true);
  if (onButton()) DoButton(focusButton.button.Get(), false, true);
}

bool SPlayer::TabKeyDown(int32_t key, int32_t modifiers) {
  if (key == kKeyTab) {
    if (!focusButton.button) focusButton.Set(savedButton.button.Get(), savedButton.bounds);
    savedButton.Set(focusButton.button.Get(), focusButton.bounds);
    if (modifiers & kModifierShift) {
      ButtonTabPrevious();
    } else {
      ButtonTabNext();
    }
    return static_cast<bool>(focusButton.button);
  }
  // The other keys are for buttons only while the frame shows one. It can be
  // left over: when the pointer is lost its button goes idle, and a tab that
  // leads on to a text finds no button to take the frame from.
  if (!focusButton.button || focus || RectIsEmpty(&display.tabFocusRect)) return false;
  savedButton.Set(focusButton.button.Get(), focusButton.bounds);
  switch (key) {
    case kKeyLeft:
      ButtonGoDirection(buttonLeft);
      break;
    case kKeyRight:
      ButtonGoDirection(buttonRight);
      break;
    case kKeyUp:
      ButtonGoDirection(buttonUp);
      break;
    case kKeyDown:
      ButtonGoDirection(buttonDown);
      break;
    case kKeyReturn:
    case kKeySpace: {
      ButtonEnter();
      // Where no button has the same place any more, the press has changed the
      // screen.
      SButton found;
      if (!ButtonFind(&focusButton, &found)) ButtonTabNext();
      return true;
    }
    default:
      break;
  }
  return static_cast<bool>(focusButton.button);
}

}  // namespace vexel
