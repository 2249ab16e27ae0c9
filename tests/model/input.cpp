// Pointer and keys: which field has the focus, and what it is told.
#include "field.h"
#include "render.h"

namespace vexel::model {

bool Player::Selecting() const {
  return stage.focus && stage.focus->field && stage.focus->field->selecting;
}

// Takes the selection off the focused field.
void Player::LoseFocus() {
  stage.focus->field->ClearSelection();
  stage.focus->Modify();
  stage.focus = nullptr;
}

void Player::DoButton(Point pixel, bool down, u32 now) {
  Object* hit = stage.HitButton(pixel);
  bool changed = false;
  if (!hit || !hit->field) {
    changed = stage.overField;
    stage.overField = false;
    if (down && stage.focus && !stage.focus->field->selecting) {
      stage.cursorBlink = false;
      LoseFocus();
    }
  } else {
    const bool goesOn = down && Selecting();
    if (down && !goesOn) {
      if (stage.focus != hit) {
        if (stage.focus) {
          stage.cursorBlink = false;
          LoseFocus();
        }
        stage.focus = hit;
      }
      hit->field->DoMouse(pixel, true, now);
      hit->Modify();
    }
    if (!goesOn) {
      changed = !stage.overField;
      stage.overField = true;
    }
    hit = nullptr;
  }
  if (stage.SetButton(hit, down) || changed) stage.HideTabFocus();
}

void Player::MouseDown(Point pixel, u32 now) {
  if (loaded) DoButton(pixel, true, now);
}

void Player::MouseMove(Point pixel, bool down, u32 now) {
  if (!loaded) return;
  if (Selecting()) {
    stage.focus->field->DoMouse(pixel, true, now);
    stage.focus->Modify();
  } else {
    DoButton(pixel, down, now);
  }
}

void Player::MouseUp(Point pixel, u32 now) {
  if (!loaded) return;
  if (Selecting()) {
    stage.focus->field->DoMouse(pixel, false, now);
    stage.focus->Modify();
  } else {
    DoButton(pixel, false, now);
  }
}

void Player::BlinkCursor() {
  if (!stage.focus) return;
  stage.cursorBlink = !stage.cursorBlink;
  stage.focus->Modify();
}

bool Player::HandleKeyDown(int key, int modifiers) {
  if (key == 18) {
    Tab((modifiers & 1) != 0);
    if (stage.tabbed.object) return true;
  }
  Object* const focus = stage.focus;
  if (!focus) return false;
  Field& field = *focus->field;
  field.HandleKeyDown(key, modifiers);
  focus->Modify();
  if (field.variable.empty()) return true;
  std::string name;
  Thread* thread = ResolveVariable(focus->thread, field.variable, name);
  const std::string text = field.GetBuffer();
  const std::string* value = thread ? thread->FindVariable(name) : nullptr;
  if (value ? *value == text : text.empty()) return true;
  if (thread) thread->SetVariable(name, text, false);
  return true;
}

}  // namespace vexel::model
