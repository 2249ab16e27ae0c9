// A text field on the stage: a buffer of characters that is bound by name to a
// variable of the movie, its selection and its scroll positions, and what the
// last Draw left behind for the pointer and the keys. Laid out anew only when
// its object's edges were freed: whoever changes a text calls Modify on the
// object.
//
// model and input: edit_text.cpp, edit_selection.cpp, edit_insert.cpp,
// edit_keys.cpp, edit_mouse.cpp, edit_lines.cpp; layout and drawing: edit_draw.cpp,
// edit_layout.cpp, edit_fonts.cpp.
#pragma once

#include <cstdint>

#include "geometry/matrix.h"
#include "geometry/point.h"
#include "geometry/rect.h"
#include "movie/edit_text_flags.h"
#include "movie/fwd.h"
#include "movie/script_value.h"
#include "text/font_desc.h"
#include "text/int_table.h"

namespace vexel {

// Values of `align`, as files hold them.
inline constexpr int32_t kAlignLeft = 0;
inline constexpr int32_t kAlignRight = 1;
inline constexpr int32_t kAlignCenter = 2;

// Bits of the modifiers that come with a key.
inline constexpr int32_t kModifierShift = 1;    // extends the selection
inline constexpr int32_t kModifierControl = 2;  // works by word or document

// What GetEnabledCommands answers.
enum EditCommand : int32_t {
  kEditCut = 1,
  kEditCopy = 2,
  kEditPaste = 4,
  kEditClear = 8,
  kEditSelectAll = 16,
};

// Owned by its object, from placement to Free or until the object gets another
// character. Positions are indexes into `buffer`. What texts copy counts against
// kMaxScriptText, as script values do; beyond it is as if memory were out.
class EditText {
 public:
  // Reads the record of `object`'s character. Without memory for the empty
  // text `buffer` is null, and everything else does nothing.
  explicit EditText(SObject* object);
  ~EditText();
  EditText(const EditText&) = delete;
  EditText& operator=(const EditText&) = delete;

  // --- The text (edit_text.cpp) ---

  // Takes `text` in place of the buffer; scroll positions stay. Without memory
  // nothing changes.
  void SetBuffer(const char* text);
  // A new array for delete[], null without memory.
  char* GetBuffer() const;
  // Takes the value of the bound variable, or gives it the initial text; and
  // takes up a focus that a seek has put aside.
  void UpdateFromVariable();
  // Room for a text of `n` characters; false, with nothing changed, without
  // memory.
  bool Expand(int32_t n);

  // Between bytes and characters: new arrays for delete[], null without memory.
  static uint16_t* MBCSToWide(const char* text, int32_t offset, int32_t bytes);
  static char* WideToMBCS(const uint16_t* text, int32_t offset, int32_t count);
  static int32_t WideStrLen(const uint16_t* text);
  static void WideStrCopy(uint16_t* to, const uint16_t* from);
  static bool IsMultiByte();
  static bool IsLeadByte(uint8_t byte);

  // --- Editing (edit_selection.cpp, edit_insert.cpp) ---

  // Inserts or overwrites, what the font doesn't have left out; `count` bytes
  // or characters. A full field takes what fits.
  void Insert(const char* bytes, int32_t count);
  void InsertWideChars(const uint16_t* text, int32_t count);
  bool HasSelection() const { return selectionAnchor != selectionCursor; }
  int32_t SelectionStart() const {
    return selectionAnchor < selectionCursor ? selectionAnchor : selectionCursor;
  }
  int32_t SelectionEnd() const {
    return selectionAnchor < selectionCursor ? selectionCursor : selectionAnchor;
  }
  void Delete();
  void Backspace();
  void DeleteSelection();
  void ClearSelection();
  // One character, or by `word`; `extend` leaves the anchor.
  void Forward(bool word, bool extend);
  void Backward(bool word, bool extend);
  void CopyToClipboard();
  void PasteFromClipboard();
  // The EditCommands that a menu may offer.
  void GetEnabledCommands(int32_t& commands) const;

  // --- Keys and pointer; nothing until a Draw has succeeded ---

  // A KeyCode or a character, with kModifier bits (edit_keys.cpp).
  void HandleKeyDown(int32_t key, int32_t modifiers);
  // The pointer at `pixel` of the client area, pressed or not (edit_mouse.cpp).
  void DoMouse(const SPOINT* pixel, bool mouseIsDown);
  // While the pointer is held outside: one step toward it.
  void AutoScroll();

  // --- Lines (edit_lines.cpp) ---

  // The ground that lines take: the character's bounds without the border.
  SRECT InnerBounds() const;
  // Rows that fit into `textRect`; 0 without a line height.
  int32_t CalcVisibleLines() const;
  int32_t CalcMaxVScroll() const;
  // The line that holds index `i`, the last of those that start there, and the
  // index behind its last character that the cursor can take without wrapping.
  int32_t FindLineNumber(int32_t i) const;
  int32_t FindLineEnd(int32_t i) const;
  // Scrolls so that the cursor is seen in `rect`; `widths` as `charWidths`.
  void FindCursor(const SRECT* rect, const int32_t* widths);
  static bool LineBreakOK(uint16_t c, uint16_t next);
  bool LineBreakOK_Index(int32_t index) const;
  static bool BreakEnglish(uint16_t c, uint16_t next);

  // --- Layout and drawing (edit_draw.cpp, edit_layout.cpp, edit_fonts.cpp) ---

  // Lays the text out under `t`, local to device, and adds its edges and
  // colours to the object with `outlines`; without, only the tables are made.
  // False, with `drawn` clear, when it can't be laid out to the end.
  bool Draw(const STransform* t, bool outlines);
  // Fills `lineStarts`: lines of at most `maxWidth`, `indent` narrower behind
  // the start and each character 13. False without memory, or if no character
  // fits.
  bool CalculateLineStarts(const int32_t* widths, int32_t maxWidth, int32_t indent);
  void GetFontDesc(FontDesc& desc);

  // Typing inserts, or overwrites. Shared by all texts; survives them.
  static bool m_insertMode;

  uint16_t* buffer = nullptr;    // owned; `length` characters and a 0. A character of two
                                 // bytes has its lead byte in the high half
  char* variableName = nullptr;  // owned copy; empty for none
  char* initialText = nullptr;   // owned copy, or null
  int32_t length = 0;            // characters
  int32_t selectionAnchor = 0;   // the selection lies between the two
  int32_t selectionCursor = 0;   // where the cursor stands
  int32_t hscroll = 0;           // the first character shown of each line
  int32_t vscroll = 0;           // the first line shown
  MATRIX devMatrix;              // of the last Draw: local to device
  IntTable lineX;                // of each line, the x of its first character shown
  bool mouseDown = false;        // as of the last DoMouse
  uint32_t clickTime = 0;        // tick of the last press
  SPOINT clickPoint = {0, 0};    // of the last press, pixels
  bool selecting = false;        // the pointer draws a selection
  uint16_t flags = 0;            // kEditText bits of the record
  int32_t maxLength = 0;         // characters; 0 for no limit
  int32_t fontHeight = 0;        // of the last Draw, twentieths
  IntTable lineStarts;           // where each line starts, and the end of the text
  int32_t lineCount = 0;         // entries of `lineStarts` less one
  bool atLineEnd = false;        // the cursor shows behind the end of a wrapped line rather
                                 // than before the next, where its index is the same
  SObject* object;               // the owner
  SCharacter* character;         // of the object, when this was made
  bool drawn = false;            // the last Draw succeeded, and the tables hold
  bool scrollToCursor = false;   // for the next Draw
  int32_t align = kAlignLeft;
  SRECT textRect;      // of the last Draw: inside the border, local units
  int32_t ascent = 0;  // of the last Draw, twentieths
  int32_t lineHeight = 0;
  IntTable charWidths;  // advance of each character, `length` + 1 entries

  // The fields of a stage, those of objects on hold too.
  EditText* nextText = nullptr;
  EditText** textLink;  // what points at this one

 private:
  // The player that shows the text; null for a movie on its own.
  SPlayer* Player() const;
  void SetText(TextView text);
  // Takes over an array of `room` + 1 entries that is charged for already.
  void TakeBuffer(uint16_t* entries, int32_t room);
  // The cursor to `index`, the anchor too unless it stays to `extend`.
  void MoveCursor(int32_t index, bool extend);
  // Closes the text over the characters from `start` to before `end`.
  void RemoveSpan(int32_t start, int32_t end);
  void InsertSpan(const uint16_t* text, int32_t count);
  void OverwriteSpan(const uint16_t* text, int32_t count);
  // Whether words or lines end at `index`.
  bool EndsWord(int32_t index) const;
  // Where line `line` starts, inside the text as it is now.
  int32_t LineStart(int32_t line) const;
  bool MoveByKey(int32_t key, bool shift, bool control);
  void EditByKey(int32_t key, bool shift, bool control);
  void Type(uint16_t c);
  void DeleteByKey(bool shift, bool control);
  int32_t CursorInItsLine() const;
  void LineHome(bool shift, bool control);
  void LineEnd(bool shift, bool control);
  void LineUp(bool shift);
  void LineDown(bool shift);
  void MoveToLine(int32_t line, int32_t column, bool shift);
  // A pixel in local units, by the last Draw.
  SPOINT LocalPoint(const SPOINT* pixel) const;
  int32_t IndexAt(int32_t line, SCOORD x, SCOORD xmax);

  int32_t m_room = 0;    // entries of `buffer` less one
  int64_t m_charge = 0;  // bytes charged for `buffer`, `variableName` and `initialText`
};

}  // namespace vexel
