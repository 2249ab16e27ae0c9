// The keys of a field: the codes from 1 to 17 are commands, any other is a
// character.
#include <algorithm>

#include "player/key_codes.h"
#include "text/clipboard.h"
#include "text/edit_text.h"

namespace vexel {

void EditText::HandleKeyDown(int32_t key, int32_t modifiers) {
  if (!drawn) return;
  const bool shift = (modifiers & kModifierShift) != 0;
  const bool control = (modifiers & kModifierControl) != 0;
  if (!MoveByKey(key, shift, control) && !(flags & kEditTextReadOnly)) {
    EditByKey(key, shift, control);
  }
  scrollToCursor = true;
  PlayerOwnSelection(Player(), true);
}

// What a read-only field obeys too. False for any other key.
bool EditText::MoveByKey(int32_t key, bool shift, bool control) {
  switch (key) {
    case kKeyLeft:
      Backward(control, shift);
      return true;
    case kKeyRight:
      Forward(control, shift);
      return true;
    case kKeyHome:
      LineHome(shift, control);
      return true;
    case kKeyEnd:
      LineEnd(shift, control);
      return true;
    case kKeyUp:
      LineUp(shift);
      return true;
    case kKeyDown:
      LineDown(shift);
      return true;
    case kKeyPageUp:
      MoveCursor(0, shift);
      atLineEnd = false;
      return true;
    case kKeyPageDown:
      MoveCursor(length, shift);
      atLineEnd = false;
      return true;
    case kKeySelectAll:
      selectionAnchor = length;
      selectionCursor = 0;
      hscroll = 0;
      return true;
    case kKeyInsert:
      m_insertMode = !m_insertMode;
      return true;
    case kKeyCopy:
      // Required: a password is copied as well; only menus don't offer it.
      if (HasSelection()) CopyToClipboard();
      return true;
    default:
      return false;
  }
}

void EditText::EditByKey(int32_t key, bool shift, bool control) {
  switch (key) {
    case kKeyDelete:
      DeleteByKey(shift, control);
      break;
    case kKeyClear:
      DeleteSelection();
      atLineEnd = false;
      break;
    case kKeyBackspace:
      Backspace();
      break;
    case kKeyCut:
      CopyToClipboard();
      DeleteSelection();
      break;
    case kKeyPaste:
      DeleteSelection();
      PasteFromClipboard();
      break;
    case kKeyReturn:
      if (flags & kEditTextMultiline) Type('\r');
      break;
    default:
      // Hosts give bytes above 127 as negative codes.
      Type(static_cast<uint16_t>(key < 0 ? key & 0xFF : key));
      break;
  }
}

void EditText::Type(uint16_t c) {
  InsertWideChars(&c, 1);
}

// Required: a word goes without the blank behind it.
void EditText::DeleteByKey(bool shift, bool control) {
  if (!control) {
    Delete();
  } else if (!shift) {
    if (!HasSelection()) Forward(true, true);
    Delete();
  }
  atLineEnd = false;
}

// Behind the end of a wrapped line the index is that of the next line's start.
int32_t EditText::CursorInItsLine() const {
  return atLineEnd && selectionCursor > 0 ? selectionCursor - 1 : selectionCursor;
}

void EditText::LineHome(bool shift, bool control) {
  MoveCursor(control ? 0 : LineStart(FindLineNumber(CursorInItsLine())), shift);
  atLineEnd = false;
}

void EditText::LineEnd(bool shift, bool control) {
  if (atLineEnd) return;
  if (control) {
    MoveCursor(length, shift);
    return;
  }
  int32_t end = FindLineEnd(selectionCursor);
  if (LineBreakOK_Index(end)) {
    ++end;
    atLineEnd = true;
  }
  MoveCursor(end, shift);
}

// The same column in line `line`, as far as that one reaches.
void EditText::MoveToLine(int32_t line, int32_t column, bool shift) {
  const int32_t start = LineStart(line);
  const int64_t index = int64_t{start} + column;
  MoveCursor(static_cast<int32_t>(std::min<int64_t>(index, FindLineEnd(start))), shift);
  atLineEnd = false;
}

void EditText::LineUp(bool shift) {
  const int32_t cursor = CursorInItsLine();
  const int32_t line = FindLineNumber(cursor);
  MoveToLine(std::max(line - 1, 0), cursor - LineStart(line), shift);
}

void EditText::LineDown(bool shift) {
  const int32_t cursor = CursorInItsLine();
  const int32_t line = FindLineNumber(cursor);
  const bool last = FindLineEnd(cursor) >= length;
  MoveToLine(last ? line : line + 1, cursor - LineStart(line), shift);
}

}  // namespace vexel
