// Keeping the focus across a seek.
#include "text/save_focus.h"

#include <cstring>

#include "player/text.h"
#include "stage/object.h"
#include "text/edit_text.h"

namespace vexel {

void SaveFocus::Save(const SObject* focus) {
  Clear();
  const EditText* text = focus ? focus->editText : nullptr;
  if (!text || !text->variableName) return;
  m_name = CreateStr(text->variableName);
  m_depth = focus->depth;
  m_selectionAnchor = text->selectionAnchor;
  m_selectionCursor = text->selectionCursor;
  m_selecting = text->selecting;
}

void SaveFocus::Clear() {
  FreeStr(m_name);
  m_name = nullptr;
}

bool SaveFocus::Restore(EditText* text) const {
  if (!m_name || !text->variableName) return false;
  if (strcmp(m_name, text->variableName) != 0 || text->object->depth != m_depth) return false;
  text->selectionAnchor = m_selectionAnchor;
  text->selectionCursor = m_selectionCursor;
  text->selecting = m_selecting;
  return true;
}

}  // namespace vexel
