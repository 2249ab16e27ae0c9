// The state of one look at a movie: what it defines, what it uses, and what
// was found. A pass over the tags fills it; what needs the whole movie is
// judged at the end.
#pragma once

#include <map>
#include <optional>
#include <set>

#include "author/check/check.h"
#include "author/check/tag_reader.h"
#include "author/tag_kinds.h"
#include "author/types.h"
#include "movie/tags.h"

namespace vexel::author {

class Checker {
 public:
  explicit Checker(std::span<const uint8_t> movie) : movie_(movie) {}

  CheckResult Run();

 private:
  // A tag at hand: where its header begins, and its body.
  struct Tag {
    int32_t code;
    size_t at;
    bool isLong;
    TagReader body;
  };

  // The timeline whose tags are being read.
  struct Timeline {
    size_t end;         // of its bytes in the movie
    int32_t owner;      // the sprite's id; kRoot for the movie itself
    size_t frames = 0;  // ends of frames met
    uint32_t declared = 0;
  };
  static constexpr int32_t kRoot = -1;

  enum class UseKind : uint8_t { kPlace, kFill, kFont, kButtonExtra, kFontInfo };

  struct Character {
    size_t at = 0;       // of the tag that defines it last
    size_t firstAt = 0;  // and of the first one
    int32_t code = 0;
    size_t bytes = 0;    // of the whole tag
    size_t freedAt = 0;  // 0 if it is not
    int glyphs = -1;     // of a font
    bool reached = false;
  };

  // A character named by another, or by a timeline.
  struct Use {
    UseKind kind;
    uint16_t id;
    int32_t owner;  // a character's id, or kRoot
    size_t at;
    int32_t code;
    int32_t glyph = -1;  // the highest one taken from a font
  };

  // What actions name, which labels are held to.
  struct FrameNames {
    std::set<std::string, std::less<>> texts;  // in small letters
    bool computed = false;                     // frames are worked out somewhere
  };

  struct Label {
    std::string text;  // in small letters
    size_t at;
  };

  // The numbers of styles that edges may name.
  struct StyleCounts {
    uint32_t fills = 0;
    uint32_t lines = 0;
  };

  void Add(FindingKind kind, size_t at, int32_t code, std::string reason);
  void Damaged(const Tag& tag, std::string reason);
  void Add(FindingKind kind, const Tag& tag, std::string reason);

  bool Header(size_t* firstTag, uint32_t* frames);
  // Framing.
  void Tags(size_t at, Timeline* timeline);
  std::optional<Tag> ReadTag(size_t at, size_t end);
  void BehindEnd(size_t at, size_t end);
  void OneTag(Tag tag, Timeline* timeline);
  void Records(Tag* tag, Timeline* timeline);

  // Definitions. Each reads a body from behind its id.
  uint16_t Define(Tag* tag);
  void Use(const Tag& tag, UseKind kind, uint16_t id, int32_t owner, int32_t glyph = -1);
  void Shape(Tag* tag, uint16_t id);
  void Morph(Tag* tag, uint16_t id);
  void Button(Tag* tag, uint16_t id);
  void Button2(Tag* tag, uint16_t id);
  bool ButtonRecords(Tag* tag, uint16_t id, bool cxforms);
  void Font(Tag* tag, uint16_t id);
  void Font2(Tag* tag, uint16_t id);
  void Text(Tag* tag, uint16_t id);
  void EditText(Tag* tag, uint16_t id);
  void Sprite(Tag* tag, uint16_t id);
  void Bitmap(Tag* tag);
  void Place(Tag* tag, int32_t owner);
  void Place2(Tag* tag, int32_t owner);

  // Parts of shapes and glyphs.
  uint32_t StyleCount(TagReader* in);
  void FillStyle(Tag* tag, TagReader* in, uint16_t id, bool alpha, bool morph);
  StyleCounts Styles(Tag* tag, TagReader* in, uint16_t id, bool alpha, bool morph);
  // Up to the end record. Without `tables` new styles are damage.
  void Edges(Tag* tag, TagReader* in, uint16_t id, StyleCounts counts, bool alpha, bool tables);
  void Glyphs(Tag* tag, size_t table, uint32_t count, bool wide);

  // Parts of bitmaps: false if damage was reported.
  bool Jpeg(const Tag& tag, std::span<const uint8_t> data, bool shared, uint32_t* width,
            uint32_t* height);
  void Inflate(const Tag& tag, std::span<const uint8_t> data, uint64_t size, const char* what);

  // A block of actions that begins at `at` in the movie.
  void Actions(const Tag& tag, std::span<const uint8_t> block, size_t at);

  // What needs the whole movie.
  void JudgeUses();
  void JudgeReach();
  void JudgeLabels();

  std::span<const uint8_t> movie_;
  CheckResult result_;
  std::map<uint16_t, Character> characters_;
  std::vector<struct Use> uses_;
  FrameNames frameNames_;
  std::vector<Label> labels_;
  std::optional<std::span<const uint8_t>> jpegTables_;
  std::map<std::pair<int32_t, std::string_view>, size_t> bitmaps_;  // by code and body: where
  uint64_t inflated_ = 0;                                           // bytes so far, of all bitmaps
  int depth_ = 0;                                                   // of sprites in sprites
};

// A count with its noun: "1 byte", "3 bytes".
std::string Count(uint64_t count, const char* noun);
std::string Lower(std::string_view text);

}  // namespace vexel::author
