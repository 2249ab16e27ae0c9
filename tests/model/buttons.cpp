// Buttons without actions: what each state shows, the one that owns the
// pointer, and the keyboard's way through buttons and fields.
#include <algorithm>

#include "field.h"
#include "render.h"

namespace vexel::model {

namespace {

struct Record {
  u32 states = 0;
  int id = 0;
  u16 layer = 0;
  Matrix mat;
  ColorTransform cxform;
};

std::vector<Record> Records(const Character& c) {
  Parser p;
  p.script = c.data;
  if (c.tagCode == 34) p.GetWord();
  std::vector<Record> out;
  for (u32 states; (states = p.GetByte()) != 0;) {
    Record r;
    r.states = states;
    r.id = static_cast<int>(p.GetWord());
    r.layer = static_cast<u16>(p.GetWord());
    r.mat = p.GetMatrix();
    if (c.tagCode == 34) r.cxform = p.GetColorTransform(true);
    out.push_back(r);
  }
  return out;
}

u32 Mask(int state) {
  static const u32 masks[] = {0, 1, 2, 4, 2};
  return masks[state];
}

constexpr u32 kHitArea = 8;

}  // namespace

void Stage::UpdateButton(Object* o, int state) {
  if (o->character->type != kButton || o->buttonState == state) return;
  const std::vector<Record> records = Records(*o->character);
  const u32 was = Mask(o->buttonState), is = Mask(state);
  for (const Record& r : records) {
    if (r.states & was && !(r.states & is)) RemoveObject(o, static_cast<u16>(o->depth + r.layer));
  }
  for (const Record& r : records) {
    if (!(r.states & is) || r.states & was) continue;
    PlaceInfo info;
    info.flags = 14;
    info.character = o->character->movie->Find(r.id);
    info.mat = r.mat;
    info.cxform = r.cxform;
    info.depth = static_cast<u16>(o->depth + r.layer);
    if (info.character) PlaceObject(o, info);
  }
  o->buttonState = state;
}

bool Object::ButtonAt(const STransform& t, Point p) const {
  for (const Record& r : Records(*character)) {
    const CharacterRef c = r.states & kHitArea ? character->movie->Find(r.id) : nullptr;
    if (!c) continue;
    Object area;
    area.stage = stage;
    area.character = c;
    area.depth = static_cast<u16>(depth + r.layer);
    area.mat = r.mat;
    if (c->type == kEditText) area.field = std::make_unique<Field>(&area);
    STransform at = t;
    at.mat = Concat(r.mat, t.mat);
    area.CalcDevBounds(at.mat);
    if (area.HitTestOne(at, p)) return true;
  }
  return false;
}

// In device units, by which the keyboard goes.
Rect Stage::ButtonBounds(const Object* o) const {
  Matrix m;
  for (const Object* up = o; up->parent; up = up->parent) m = Concat(m, up->mat);
  m = Concat(m, camera);
  if (o->field) return TransformRect(m, o->character->bounds);
  Rect out;
  for (const Record& r : Records(*o->character)) {
    Object area;
    area.character = r.states & kHitArea ? o->character->movie->Find(r.id) : nullptr;
    if (!area.character) continue;
    area.CalcDevBounds(Concat(r.mat, m));
    out = RectUnion(out, area.devBounds);
  }
  return out;
}

void Stage::Transition(Object* o, int transition) {
  static const int states[] = {2, 1, 3, 2, 4, 3, 1, 3, 1};
  buttonState = states[transition];
  UpdateButton(o, buttonState);
  if (buttonState != 1) {
    button = o;
    tracked = {o->parent, o->character, o->depth, o->ratio};
  } else {
    button = nullptr;
    tracked = Tracked{};
  }
}

bool Stage::SetButton(Object* hit, bool down) {
  if (!button) {
    buttonState = 1;
    tracked = Tracked{};
  }
  auto menu = [](const Object* o) { return o->character->trackAsMenu; };
  Object* on = nullptr;
  int transition = -1;
  switch (buttonState) {
    case 1:
      if (!hit || (down && !menu(hit))) return false;
      on = hit;
      transition = down ? 7 : 0;
      break;
    case 2:
      if (hit == button && !down) return false;
      on = button;
      transition = hit == button ? 2 : 1;
      break;
    case 3:
      if (hit == button && down) return false;
      on = button;
      transition = hit == button ? 3 : menu(button) ? 8 : 4;
      break;
    case 4:
      if (hit != button && down) return false;
      on = button;
      transition = hit == button ? 5 : 6;
      break;
    default:
      return false;
  }
  hitButton = hit;
  Transition(on, transition);
  // It may have stood in the button that was left.
  if (!button && hitButton) SetButton(hitButton, down);
  return true;
}

void Stage::HideTabFocus() {
  if (tabFocus.Empty()) return;
  InvalidateRect(tabFocus);
  tabFocus = Rect{};
}

// ---- tab -------------------------------------------------------------------

static void Collect(Object* parent, std::vector<Object*>& out) {
  for (Object* c = parent->firstChild; c; c = c->next) {
    if (c->character->type == kButton || (c->field && !(c->field->flags & Field::kReadOnly)))
      out.push_back(c);
    Collect(c, out);
  }
}

static i32 Weight(const Rect& r) {
  return r.ymin * 2 + r.xmin / 3;
}

// As if the pointer, not pressed, stood over a button or nothing.
void Player::FocusButton(Object* o) {
  stage.overField = false;
  if (!stage.SetButton(o, false)) return;
  stage.HideTabFocus();
  if (!o) return;
  stage.tabFocus = stage.ButtonBounds(o);
  stage.InvalidateRect(stage.tabFocus);
}

void Player::Tab(bool back) {
  Stage::Tabbed& now = stage.tabbed;
  if (!now.object) now = stage.savedTab;
  stage.savedTab = now;
  if (stage.focus) now = {stage.focus, stage.ButtonBounds(stage.focus)};
  const bool held = now.object != nullptr;
  const i32 weight = held ? Weight(now.bounds) : -1;
  FocusButton(nullptr);
  std::vector<Object*> fields;
  Collect(&stage.root, fields);
  std::vector<Stage::Tabbed> map;
  for (Object* o : fields) map.push_back({o, stage.ButtonBounds(o)});
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
  if (!now.object->field) {
    FocusButton(now.object);
    return;
  }
  stage.focus = now.object;
  stage.overField = true;
  Field& field = *now.object->field;
  field.anchor = static_cast<i32>(field.text.size());
  field.cursor = 0;
  now.object->Modify();
}

}  // namespace vexel::model
