// Text fields as the tree sees them: what the pointer, a script's scroll
// properties and a changed variable do to the fields at and below an object.
#include <cstring>

#include "geometry/intmath.h"
#include "movie/character.h"
#include "player/splayer.h"
#include "player/text.h"
#include "stage/display_list.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

// What counts as a tag: a script can make a movie look for its fields as often
// as it has actions.
constexpr int32_t kObjectsPerTag = 16;
constexpr int32_t kTextsPerTag = 4;
constexpr int32_t kPathBytesPerTag = 16;
constexpr int32_t kCharactersPerTag = 64;

SPlayer* PlayerOf(const EditText* text) {
  const ScriptPlayer* movie = text->object->character->player;
  return movie ? movie->splayer : nullptr;
}

// The name of the variable that `text` shows, without its path; null for none.
const char* NameOf(const EditText* text) {
  const char* name = text->variableName;
  const char* colon = name ? strchr(name, ':') : nullptr;
  return colon ? colon + 1 : name;
}

// True if that variable belongs to `thread`. The last question to ask: paths
// are long ways.
bool IsBoundTo(const EditText* text, const ScriptThread* thread) {
  SPlayer* player = PlayerOf(text);
  if (!player) return false;
  const char* name = nullptr;
  const ScriptThread* found =
      player->ResolveVariable(text->variableName, text->object->thread, &name);
  const auto path = static_cast<int32_t>(name - text->variableName);
  if (path > 0) text->object->display->SpendTags(1 + path / kPathBytesPerTag);
  return found == thread;
}

// True if `object` is `top` or below it, and not on hold.
bool IsInTree(const SObject* object, const SObject* top) {
  const DisplayList* display = top->display;
  for (const SObject* at = object; at; at = at->parent) {
    if (at == top) return true;
    if (display->holdParent && at->parent == display->holdParent) {
      const SObject* held = display->holdList;
      while (held && held != at) held = held->next;
      if (held) return false;
    }
  }
  return false;
}

// The first text in drawing order that is bound to `name` of `thread`.
EditText* FindText(const SObject* object, const ScriptThread* thread, const char* name,
                   int32_t* steps) {
  ++*steps;
  if (EditText* text = object->editText) {
    const char* own = NameOf(text);
    if (own && strcmp(own, name) == 0 && IsBoundTo(text, thread)) return text;
  }
  for (const SObject* child = object->firstChild; child; child = child->next) {
    if (EditText* text = FindText(child, thread, name, steps)) return text;
  }
  return nullptr;
}

}  // namespace

void SObject::EditTextMouse(const SPOINT* pixel, bool mouseIsDown) {
  if (editText) editText->DoMouse(pixel, mouseIsDown);
}

bool SObject::ScrollEditText(ScriptThread* thread, const char* name, int32_t mode, int32_t& value) {
  if (!display->texts || display->tagsLeft <= 0) return false;
  int32_t steps = 0;
  EditText* text = FindText(this, thread, name, &steps);
  display->SpendTags(steps / kObjectsPerTag);
  if (!text) return false;
  if (mode == kScrollGet) {
    value = WrapAdd(text->vscroll, 1);
  } else if (mode == kScrollSet) {
    // Required: the script reads back the line counted from 0.
    const int32_t last = text->CalcMaxVScroll();
    value = value < 1 ? 0 : value - 1 > last ? last : value - 1;
    text->vscroll = value;
    text->object->Modify();
  } else if (mode == kScrollGetMax) {
    value = WrapAdd(text->CalcMaxVScroll(), 1);
  }
  return true;
}

// Variables change far more often than there are fields to show them, so the
// stage's list of fields is gone through, and not the tree.
void SObject::UpdateEditText(ScriptThread* thread, const char* name, const char* value,
                             bool force) {
  int32_t steps = 0;
  for (EditText* text = display->texts; text && display->tagsLeft > 0; text = text->nextText) {
    if (++steps % kTextsPerTag == 0) display->SpendTags(1);
    if (!StrEqual(NameOf(text), name) || !IsBoundTo(text, thread)) continue;
    if (!force && PlayerOf(text)->focus.Get() == text->object) continue;
    if (!IsInTree(text->object, this)) continue;
    text->SetBuffer(value);
    text->object->Modify();
    // A script writes a long text at no cost, and each field copies it.
    display->SpendTags(text->length / kCharactersPerTag);
  }
}

}  // namespace vexel
