// Moving the cursor, taking text out, and the clipboard.
#include <cstring>
#include <new>

#include "text/clipboard.h"
#include "text/edit_text.h"

namespace vexel {

void EditText::MoveCursor(int32_t index, bool extend) {
  selectionCursor = index;
  if (!extend) selectionAnchor = index;
}

void EditText::Forward(bool word, bool extend) {
  int32_t at = selectionCursor;
  if (word) {
    while (at < length && LineBreakOK_Index(at)) ++at;
    while (at < length && !LineBreakOK_Index(at)) ++at;
  } else if (at < length) {
    ++at;
  }
  MoveCursor(at, extend);
  atLineEnd = false;
}

void EditText::Backward(bool word, bool extend) {
  int32_t at = selectionCursor;
  if (word) {
    while (at > 0 && LineBreakOK_Index(at - 1)) --at;
    while (at > 0 && !LineBreakOK_Index(at - 1)) --at;
  } else if (at > 0) {
    --at;
  }
  MoveCursor(at, extend);
  atLineEnd = false;
}

void EditText::RemoveSpan(int32_t start, int32_t end) {
  // With the 0 behind the text.
  const auto tail = static_cast<size_t>(length - end) + 1;
  memmove(buffer + start, buffer + end, tail * sizeof *buffer);
  length -= end - start;
}

void EditText::Delete() {
  if (HasSelection()) {
    DeleteSelection();
  } else if (selectionAnchor < length) {
    RemoveSpan(selectionAnchor, selectionAnchor + 1);
  }
}

void EditText::Backspace() {
  if (HasSelection()) {
    DeleteSelection();
  } else if (selectionAnchor > 0) {
    RemoveSpan(selectionAnchor - 1, selectionAnchor);
    MoveCursor(selectionAnchor - 1, false);
  }
}

void EditText::DeleteSelection() {
  if (!HasSelection()) return;
  const int32_t start = SelectionStart();
  RemoveSpan(start, SelectionEnd());
  MoveCursor(start, false);
  atLineEnd = false;
}

void EditText::ClearSelection() {
  MoveCursor(0, false);
}

void EditText::CopyToClipboard() {
  if (!buffer) return;
  const int32_t count = SelectionEnd() - SelectionStart();
  auto* copy = new (std::nothrow) uint16_t[static_cast<size_t>(count) + 1];
  if (!copy) return;
  for (int32_t i = 0; i < count; ++i) {
    const uint16_t c = buffer[SelectionStart() + i];
    copy[i] = c == '\r' ? '\n' : c;
  }
  char* bytes = WideToMBCS(copy, 0, count);
  delete[] copy;
  if (bytes) PlayerSetClipboardData(bytes);
  delete[] bytes;
}

void EditText::PasteFromClipboard() {
  atLineEnd = false;
  PlayerStartPaste(Player());
}

void EditText::GetEnabledCommands(int32_t& commands) const {
  commands = 0;
  if (flags & kEditTextNoSelect) return;
  commands = kEditSelectAll;
  const bool copies = HasSelection() && !(flags & kEditTextPassword);
  if (copies) commands |= kEditCopy;
  if (flags & kEditTextReadOnly) return;
  if (copies) commands |= kEditCut;
  if (HasSelection()) commands |= kEditClear;
  commands |= kEditPaste;
}

}  // namespace vexel
