// What a button's actions answer to, in words.
//
// A condition word has a bit for each event, and above them the code of a key:
// "press, release", "key left", "rollOver, key 65".
#pragma once

#include "author/button.h"
#include "author/language/source.h"

namespace vexel::author {

// The bit of an event in a condition word.
struct ButtonEventName {
  ButtonEvent event;
  const char* name;
};

inline constexpr ButtonEventName kButtonEventNames[] = {
    {kEventRollOver, "rollOver"},
    {kEventRollOut, "rollOut"},
    {kEventPress, "press"},
    {kEventRelease, "release"},
    {kEventDragOut, "dragOut"},
    {kEventDragOver, "dragOver"},
    {kEventReleaseOutside, "releaseOutside"},
    {kEventMenuDragOver, "menuDragOver"},
    {kEventMenuDragOut, "menuDragOut"},
};

// Keys that are no characters.
struct KeyName {
  uint8_t code;
  const char* name;
};

inline constexpr KeyName kKeyNames[] = {
    {1, "left"},   {2, "right"},      {3, "home"},      {4, "end"},    {5, "insert"},
    {6, "delete"}, {7, "clear"},      {8, "backspace"}, {9, "cut"},    {10, "copy"},
    {11, "paste"}, {12, "selectall"}, {13, "return"},   {14, "up"},    {15, "down"},
    {16, "top"},   {17, "bottom"},    {18, "tab"},      {32, "space"},
};

inline constexpr int kKeyShift = 9;  // of the key's code in a condition word
inline constexpr int kLastKeyCode = 127;

// A condition word in words. Every word has its own text; that of 0, which
// nothing answers to, is "never".
std::string ConditionText(uint16_t conditions);

// A condition word from its text: events, and at most one key by its name, as a
// character in quotes or by its code. Commas divide them. A mistake throws
// SourceError.
uint16_t ParseConditions(const SourceSlice& slice);

}  // namespace vexel::author
