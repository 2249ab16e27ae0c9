// The dumper (internal to the language; the public door is dump.h).
//
// Each tag is read into a form that people understand and printed. What was
// printed is made into bytes at once: if they differ from the movie's, a
// plainer form is tried, and in the end the tag's own bytes. So the text is
// exact even for what nobody thought of.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "author/language/maker.h"
#include "author/language/printer.h"
#include "author/language/record_reader.h"

namespace vexel::author {

// A tag as it lies in the movie.
struct FramedTag {
  int code = 0;
  bool isLong = false;
  std::span<const uint8_t> body;
  std::span<const uint8_t> whole;  // header and body
};

// The tag at the start of the bytes; none if they end before it does.
std::optional<FramedTag> FrameTag(std::span<const uint8_t> bytes);

class Dumper {
 public:
  Dumper();
  std::string Run(std::span<const uint8_t> movie);

 private:
  // How plainly a tag is said.
  enum class Manner { kNice, kRecords };

  // dump.cpp: timelines.
  struct Item {
    std::string text;
    bool outside = false;  // may stand before the frame's block
    bool label = false;
  };
  struct Printed {
    std::string text;
    int frames = 0;  // that the maker will count
  };
  Printed DumpTags(std::span<const uint8_t> bytes, int level);
  void FlushFrame(std::vector<Item>* items, bool ended, int number, int* bare, std::string* out);
  static void FlushBare(int* bare, std::string* out);
  std::optional<std::string> DumpSprite(const FramedTag& tag, int level);
  std::string DumpTag(const FramedTag& tag);
  std::string RawTag(const FramedTag& tag) const;
  bool Makes(const std::string& text, std::span<const uint8_t> bytes);
  bool Spent() const;

  // What a tag says, or nothing if it cannot be read.
  std::optional<std::string> Say(const FramedTag& tag, Manner manner);
  std::string Finish(StatementText& statement, const FramedTag& tag, const RecordReader& in) const;
  std::string Finish(StatementText& statement, const FramedTag& tag, const RecordReader& in,
                     const std::string& block) const;
  std::string Head(const char* word, uint16_t id) const;
  std::string Reference(uint16_t id) const;

  // dump_tags.cpp
  std::string SayPlace(const FramedTag& tag, RecordReader& in);
  std::string SayPlace2(const FramedTag& tag, RecordReader& in);
  std::string SayRemove(const FramedTag& tag, RecordReader& in);
  std::string SayActions(const FramedTag& tag);
  std::string SayButton(const FramedTag& tag, RecordReader& in);
  std::string SayButtonColors(const FramedTag& tag, RecordReader& in);
  std::string SayBits(const FramedTag& tag, RecordReader& in);
  std::string SayLossless(const FramedTag& tag, RecordReader& in);

  // dump_shape.cpp
  std::string SayShape(const FramedTag& tag, RecordReader& in, Manner manner);
  std::string SayMorph(const FramedTag& tag, RecordReader& in, Manner manner);

  // dump_text.cpp
  std::string SayFont(const FramedTag& tag, RecordReader& in, Manner manner);
  std::string SayFont2(const FramedTag& tag, RecordReader& in, Manner manner);
  std::string SayFontInfo(const FramedTag& tag, RecordReader& in);
  std::string SayText(const FramedTag& tag, RecordReader& in);
  std::string SayEdit(const FramedTag& tag, RecordReader& in);

  NoFiles files_;
  Maker maker_;
};

// A character by its name, or by its id if it has none.
std::string ReferenceTo(const CharacterBook& names, uint16_t id);

// Lines of a block, two blanks further in.
std::string Indented(const std::string& text);

// Records as statements of an outline.
class ShapePrinter {
 public:
  // `unit` is what a pixel of the text is stored as; plain ones are single
  // records throughout.
  ShapePrinter(const CharacterBook& names, double unit, bool alpha, bool plain)
      : names_(names), unit_(unit), alpha_(alpha), plain_(plain) {}

  std::string Tables(const StyleTables& styles) const;
  std::string Records(const StyleTables* first, const std::vector<ShapeRecord>& records);
  std::string PaintFields(const FillStyle& fill) const;

 private:
  void AddPoint(char command, int64_t x, int64_t y);
  void FlushPath();
  std::string Number(int64_t value) const { return ScaledText(value, unit_); }
  void ChangeStatement(const ShapeRecord& record);
  void EdgeStatement(const ShapeRecord& record);
  std::string PaintName(uint32_t index) const;
  std::string PenName(uint32_t index) const;

  const CharacterBook& names_;
  double unit_;
  bool alpha_;
  bool plain_;
  size_t paints_ = 0;
  size_t pens_ = 0;
  std::string out_;
  std::string path_;
  std::string select_;
  int64_t x_ = 0, y_ = 0;
};

}  // namespace vexel::author
