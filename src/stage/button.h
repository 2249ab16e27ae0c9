// What a button's data says: which characters it shows in which state, where
// its hit area lies, and which actions its events fire. The data stays in the
// file's form, in one of two versions, and is walked each time it is needed.
//
// Walks end at the data's end, which reads as zeros, and hold the bytes, so a
// button may lose its character while one is under way.
#pragma once

#include <cstdint>

#include "geometry/matrix.h"
#include "movie/data_block.h"
#include "movie/fwd.h"
#include "movie/sparser.h"
#include "raster/color_transform.h"

namespace vexel {

// What a button shows, and where the pointer is to the button that has it.
enum ButtonState : uint8_t {
  buttonNone = 0,  // no children yet
  buttonIdle = 1,
  buttonOver = 2,
  buttonPressed = 3,         // the pointer is over it
  buttonPressedOutside = 4,  // the press began over it; shows what buttonOver shows
};

// What happens to a button; also the bit numbers of an action record's
// condition word.
enum ButtonTransition : uint8_t {
  buttonEnter = 0,
  buttonLeave = 1,
  buttonPress = 2,
  buttonRelease = 3,
  buttonDragOut = 4,         // of a normal button
  buttonDragBack = 5,        // of the pressed button
  buttonReleaseOutside = 6,  // of the pressed button
  buttonMenuDragIn = 7,      // a press wanders onto a button of a menu
  buttonMenuDragOut = 8,     // and leaves it
};

// In a record's state byte, beside the bits of the states that show it.
inline constexpr uint8_t kButtonHitArea = 0x08;

// Which bits of a state byte show a record in `state`.
uint8_t ButtonRecordMask(int32_t state);

struct ButtonRecord {
  uint8_t states;
  uint16_t id;
  uint16_t layer;  // added to the button's depth, in 16 bits
  MATRIX mat;
  ColorTransform cxform;
};

class ButtonRecordReader {
 public:
  ButtonRecordReader(const SCharacter* button, DisplayList* display);
  // False behind the last record, and once the stage's allowance of tags is
  // spent, out of which each record is paid: a few buttons of many records each
  // can place one another by the ten thousand.
  bool Next(ButtonRecord* out);
  // The record's character, or null; never one of the system's.
  SCharacter* FindCharacter(const ButtonRecord& record) const;

 private:
  DisplayList* m_display;
  ScriptPlayer* m_player;
  DataSpan m_data;
  DataSpan m_extraData;
  SParser m_records;
  SParser m_cxforms;  // of the first form's records, where there are any
  bool m_isSecondForm;
};

// The one action block of the first form, which stands behind the records.
DataSpan ButtonActionBlock(const SCharacter* button);

// The action records of the second form; none of another button.
class ButtonActionReader {
 public:
  explicit ButtonActionReader(const SCharacter* button);
  bool Next();

  // Of the record that Next stepped to.
  uint16_t conditions = 0;
  DataSpan block;

 private:
  DataSpan m_data;
  SParser m_parser;
  int32_t m_offset = 0;    // to the next record; 0 for none
  int32_t m_offsetAt = 0;  // where that stood, which it counts from
};

bool IsSecondButtonForm(const SCharacter* button);

// Bits 9 to 15 of a condition word: the key that fires the record, 0 for none.
inline constexpr int kButtonKeyShift = 9;

}  // namespace vexel
