// Pointer and keys: which field has the focus, and what it is told.
#include <algorithm>

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
  if (!hit || !hit->field) {
    if (down && stage.focus && !stage.focus->field->selecting) {
      stage.cursorBlink = false;
      LoseFocus();
    }
    return;
  }
  if (!down || Selecting()) return;
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

// ---- tab -------------------------------------------------------------------

static void Collect(Object* parent, std::vector<Object*>& out) {
  for (Object* c = parent->firstChild; c; c = c->next) {
    if (c->field && !(c->field->flags & Field::kReadOnly)) out.push_back(c);
    Collect(c, out);
  }
}

static i32 Weight(const Rect& r) {
  return r.ymin * 2 + r.xmin / 3;
}

Rect Player::TabBounds(const Object* o) const {
  Matrix m;
  for (const Object* up = o; up->parent; up = up->parent) m = Concat(m, up->mat);
  return TransformRect(Concat(m, stage.camera), o->character->bounds);
}

void Player::Tab(bool back) {
  Stage::Tabbed& now = stage.tabbed;
  if (!now.object) now = stage.savedTab;
  stage.savedTab = now;
  if (stage.focus) now = {stage.focus, TabBounds(stage.focus)};
  const bool held = now.object != nullptr;
  const i32 weight = held ? Weight(now.bounds) : -1;
  std::vector<Object*> fields;
  Collect(&stage.root, fields);
  std::vector<Stage::Tabbed> map;
  for (Object* o : fields) map.push_back({o, TabBounds(o)});
  std::stable_sort(map.begin(), map.end(), [](const auto& a, const auto& b) {
    return Weight(a.bounds) < Weight(b.bounds);
  });
  if (map.empty()) {
    now.object = nullptr;
    return;
  }
  now = back ? map.back() : map.front();
  if (!back) {
    for (const auto& entry : map) {
      if (Weight(entry.bounds) <= weight) continue;
      now = entry;
      break;
    }
  } else if (held) {
    for (auto it = map.rbegin(); it != map.rend(); ++it) {
      if (Weight(it->bounds) >= weight) continue;
      now = *it;
      break;
    }
  }
  if (stage.focus) LoseFocus();
  stage.focus = now.object;
  Field& field = *now.object->field;
  field.anchor = static_cast<i32>(field.text.size());
  field.cursor = 0;
  now.object->Modify();
}

}  // namespace vexel::model
