// Reading the record of an edit text. A record that is cut short reads as zeros
// from there.
#include "text/edit_record.h"

#include "movie/character.h"
#include "movie/edit_text_flags.h"
#include "movie/sparser.h"

namespace vexel {

EditRecord::EditRecord(const SCharacter* character) {
  SParser in(character->data.bytes, character->data.length);
  flags = in.GetWord();
  if (flags & kEditTextHasFont) {
    fontId = in.GetWord();
    fontHeight = in.GetWord();
  }
  if (flags & kEditTextHasColor) in.GetColor(&color, true);
  if (flags & kEditTextHasMaxLength) maxLength = in.GetWord();
  if (flags & kEditTextHasLayout) {
    align = in.GetByte();
    leftMargin = in.GetWord();
    rightMargin = in.GetWord();
    indent = in.GetWord();
    leading = static_cast<int16_t>(in.GetWord());
  }
  textsAt = in.pos;
}

}  // namespace vexel
