// The text field that has the keyboard: how it gets and loses the focus, and
// what its keys do to the variable that it shows.
#include <cstring>

#include "player/splayer.h"
#include "player/text.h"
#include "player/url_builder.h"
#include "stage/object.h"
#include "text/clipboard.h"
#include "text/edit_text.h"

namespace vexel {

namespace {

// A field bound to x calls the frame with this label behind x.
constexpr char kChangedLabel[] = "_changed";

}  // namespace

void SPlayer::BlinkCursor() {
  if (!focus) return;
  cursorBlink = !cursorBlink;
  focus->Modify();
}

bool SPlayer::IsSelecting() const {
  const SObject* object = focus.Get();
  return object && object->editText && object->editText->selecting;
}

void SPlayer::ClearFocus() {
  if (!focus) return;
  if (focus->editText) focus->editText->ClearSelection();
  focus->Modify();
  focus.Set(nullptr);
  PlayerOwnSelection(this, false);
}

void SPlayer::UnfocusText() {
  if (!focus || IsSelecting()) return;
  cursorBlink = false;
  ClearFocus();
}

// The phase of the cursor stays, so it may be some time before it shows.
void SPlayer::FocusText(SObject* object) {
  if (object == focus.Get()) return;
  UnfocusText();
  focus.Set(object);
  if (EditText* text = object->editText) {
    text->selectionAnchor = text->length;
    text->selectionCursor = 0;
  }
  object->Modify();
  display.mouseOverEditText = true;
  PlayerOwnSelection(this, true);
}

// The pointer goes on with the selection that it draws in the text, wherever it
// is; false if it draws none.
bool SPlayer::DrawSelection(const SPOINT* pt, bool mouseIsDown) {
  if (!IsSelecting()) return false;
  focus->EditTextMouse(pt, mouseIsDown);
  focus->Modify();
  return true;
}

// The pointer is on `object`. True if it came there just now.
bool SPlayer::PointAtText(SObject* object, const SPOINT* pt, bool mouseIsDown) {
  if (!mouseIsDown) {
    XReleaseCapture();
  } else if (IsSelecting()) {
    return false;
  } else {
    XSetCapture();
    if (object != focus.Get()) {
      UnfocusText();
      focus.Set(object);
    }
    object->EditTextMouse(pt, true);
    object->Modify();
    PlayerOwnSelection(this, true);
  }
  const bool came = !display.mouseOverEditText;
  display.mouseOverEditText = true;
  return came;
}

// The tab order goes on from the text that has the focus.
void SPlayer::TabFromText() {
  if (!focus) return;
  SRECT bounds;
  focus->CalcButtonBounds(&bounds);
  focusButton.Set(focus.Get(), bounds);
}

// Writes the text of the focused field into its variable, and if that changes
// it, runs the frame that wants to know.
void SPlayer::WriteText(const EditText* text) {
  const char* name = text->variableName;
  char* shown = name && *name ? text->GetBuffer() : nullptr;
  if (!shown) return;
  ScriptThread* thread = focus->thread;
  char* before = GetVariable(thread, name);
  const bool changed = strcmp(shown, before ? before : "") != 0;
  FreeStr(before);
  if (changed) {
    SetVariable(thread, name, shown, false);
    URLBuilder label = {};
    label.AppendString(name);
    label.AppendString(kChangedLabel);
    int32_t frame;
    if (ScriptThread* target = ResolveFrameNum(label.buffer, thread, &frame)) {
      CallFrame(target, frame);
    }
    FreeStr(label.buffer);
  }
  delete[] shown;
}

bool SPlayer::TextKeyDown(int32_t key, int32_t modifiers) {
  if (!focus) return false;
  if (EditText* text = focus->editText) {
    text->HandleKeyDown(key, modifiers);
    WriteText(text);
  }
  // The frame that was called may have taken the field away.
  if (focus) focus->Modify();
  return true;
}

bool SPlayer::PasteText(const char* bytes, int32_t size) {
  EditText* text = focus ? focus->editText : nullptr;
  if (!text || text->flags & kEditTextReadOnly) return false;
  display.ResetTagBudget();
  text->Insert(bytes, size);
  text->scrollToCursor = true;
  WriteText(text);
  if (focus) focus->Modify();
  return true;
}

}  // namespace vexel
