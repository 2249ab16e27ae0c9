// Keys. A button may name a key that fires it wherever the pointer is; then
// come the keys that lead from button to button, and then the text field that
// has the focus.
#include "movie/character.h"
#include "player/splayer.h"
#include "stage/button.h"

namespace vexel {

namespace {

// Key conditions have 7 bits, and 0 says that there is none.
constexpr int32_t kMaxButtonKey = 127;

// The first action block of the button that the key fires; false for none.
bool FindKeyAction(const SCharacter* button, int32_t key, DataSpan* action) {
  ButtonActionReader records(button);
  while (records.Next()) {
    if (records.conditions >> kButtonKeyShift != key) continue;
    *action = records.block;
    return true;
  }
  return false;
}

}  // namespace

bool SPlayer::FireButtonKey(int32_t key) {
  if (key < 1 || key > kMaxButtonKey) return false;
  RemoveAllButtons();
  NumButtons(&display.root);
  for (int32_t i = 0; i < buttonCount; ++i) {
    if (buttons[i]->character->type != charButton) continue;
    DataSpan action;
    if (!FindKeyAction(buttons[i]->character, key, &action)) continue;
    display.actionList.PushAction(action, buttons[i]->thread);
    DoActions();
    UpdateScreen();
    return true;
  }
  return false;
}

bool SPlayer::HandleKeyDown(int32_t key, int32_t modifiers) {
  if (!loaded) return false;
  display.ResetTagBudget();
  return FireButtonKey(key) || TabKeyDown(key, modifiers) || TextKeyDown(key, modifiers);
}

}  // namespace vexel
