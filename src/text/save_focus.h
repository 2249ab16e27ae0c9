// The focus across a seek: a timeline that is run from its start removes its
// text fields and places them anew, and the one that stands for the focused one
// takes the focus up again.
#pragma once

#include <cstdint>

#include "movie/fwd.h"

namespace vexel {

class EditText;

class SaveFocus {
 public:
  SaveFocus() = default;
  ~SaveFocus() { Clear(); }
  SaveFocus(const SaveFocus&) = delete;
  SaveFocus& operator=(const SaveFocus&) = delete;

  // Around the running of a timeline's tags, which nests, as sprites run their
  // first tags while they are placed: the outermost Begin saves, and what it
  // saved is there until its End.
  void Begin(const SObject* focus) {
    if (m_nesting++ == 0) Save(focus);
  }
  void End() {
    if (--m_nesting == 0) Clear();
  }
  // Notes the name, depth and selection of the field in `focus`; null notes
  // nothing. What was noted before is gone.
  void Save(const SObject* focus);
  void Clear();
  // Gives the selection to `text` if it is a field of the same name at the same
  // depth.
  bool Restore(EditText* text) const;

 private:
  char* m_name = nullptr;  // owned; null when nothing is noted
  uint16_t m_depth = 0;
  int32_t m_selectionAnchor = 0;
  int32_t m_selectionCursor = 0;
  bool m_selecting = false;
  int32_t m_nesting = 0;
};

}  // namespace vexel
