// Buttons of both forms.
#pragma once

#include "author/records.h"

namespace vexel::author {

// States in which a button shows a record, and its hit area.
enum ButtonStates : uint8_t {
  kButtonUp = 0x01,
  kButtonOver = 0x02,
  kButtonDown = 0x04,
  kButtonHit = 0x08,
};

// Events of a button, as bit numbers of a condition word.
enum ButtonEvent : uint8_t {
  kEventRollOver = 0,
  kEventRollOut = 1,
  kEventPress = 2,
  kEventRelease = 3,
  kEventDragOut = 4,
  kEventDragOver = 5,
  kEventReleaseOutside = 6,
  kEventMenuDragOver = 7,
  kEventMenuDragOut = 8,
};

struct ButtonRecord {
  uint8_t states = kButtonUp;
  uint16_t character = 0;
  uint16_t depth = 1;
  Matrix matrix;
  Cxform cxform;  // written in the second form only
};

struct ButtonActions {
  uint16_t conditions = 1 << kEventRelease;  // bits by ButtonEvent
  Bytes block;                               // with its end byte
};

// First form, behind the id: records, then the one action block.
void WriteButton(BitWriter& out, const std::vector<ButtonRecord>& records, const Bytes& block);
// Second form, behind the id.
void WriteButton2(BitWriter& out, bool trackAsMenu, const std::vector<ButtonRecord>& records,
                  const std::vector<ButtonActions>& actions);
// Behind the id of a button of the first form: a transform for each record.
void WriteButtonExtra(BitWriter& out, const std::vector<Cxform>& cxforms);

}  // namespace vexel::author
