// A text field of a placed object: its text, its selection, and the tables of
// its last drawing, which keys and mouse read.
#pragma once

#include <string>
#include <vector>

#include "shape.h"

namespace vexel::model {

struct FontDesc {
  std::string name;
  i32 height = 0;
  bool bold = false, italic = false;
  CharacterRef font;
  i64 codes = -1;   // offset of the code table
  i64 layout = -1;  // of the block behind it
};

struct Field {
  enum : int {
    kFont = 1,
    kMaxLength = 2,
    kColor = 4,
    kReadOnly = 8,
    kPassword = 0x10,
    kMultiLine = 0x20,
    kWrap = 0x40,
    kInitial = 0x80,
    kOutlines = 0x100,
    kBorder = 0x800,
    kNoSelect = 0x1000,
    kLayout = 0x2000
  };

  Object* object;
  CharacterRef character;
  std::vector<u16> text;
  std::string variable, initial;
  i32 anchor = 0, cursor = 0, hscroll = 0, vscroll = 0;
  Matrix devMatrix;
  bool mouseDown = false, selecting = false, atLineEnd = false, drawn = false;
  bool scrollToCursor = false;
  u32 clickTime = 0;
  Point clickPoint;
  int flags = 0;
  i32 maxLength = 0, fontHeight = 0, align = 0;
  std::vector<i32> lineStarts, lineX, widths;
  i32 lineCount = 0;
  Rect textRect;
  i32 ascent = 0, lineHeight = 0;

  explicit Field(Object* o);

  void SetBuffer(const std::string& s);
  std::string GetBuffer() const;
  void UpdateFromVariable();

  void Draw(const STransform& t);
  void HandleKeyDown(int key, int modifiers);
  void DoMouse(Point pixel, bool down, u32 now);
  void ClearSelection() { anchor = cursor = 0; }

  i32 VisibleLines() const;
  i32 MaxVScroll() const;

  static bool insertMode;  // of all fields

 private:
  struct Record;
  Record Read() const;
  FontDesc GetFontDesc() const;
  bool Lay(const STransform& t);
  bool CalculateLineStarts(i32 maxWidth, i32 indent);
  void FindCursor();
  void AutoScroll();
  RColor* NewColor(Rgbi value, int order, const STransform& t);

  i32 Length() const { return static_cast<i32>(text.size()); }
  // 0 behind the end
  u16 At(i32 i) const { return i >= 0 && i < Length() ? text[static_cast<size_t>(i)] : 0; }
  i32 WidthAt(i32 i) const {
    return i >= 0 && i < static_cast<i32>(widths.size()) ? widths[static_cast<size_t>(i)] : 0;
  }
  i32 LineStart(i32 line) const;
  i32 LineNumber(i32 i) const;
  i32 LineEnd(i32 i) const;
  bool Breaks(i32 i) const;
  Point Local(Point pixel) const;

  void Go(i32 position, bool extend);
  void Forward(bool word, bool extend);
  void Backward(bool word, bool extend);
  void DeleteSelection();
  void Delete();
  void Insert(std::vector<u16> what);
};

// A glyph's index in the font, or -1.
int FindGlyph(int code, const FontDesc& desc);

// The movie whose fonts stand in for those that have no outlines; it is kept.
void SetBuiltInFonts(const std::vector<u8>& movie);
CharacterRef FindBuiltInFont(int id);

}  // namespace vexel::model
