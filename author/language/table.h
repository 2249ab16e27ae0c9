// The one table of the movie language: every statement, the tags it stands for,
// and every field with its kind, unit and range. The maker reads by it, the
// dumper prints by it, and the reference of the language is printed from it.
//
// A field means the same wherever it stands: one word, one kind, one unit.
#pragma once

#include <bitset>
#include <cstdint>
#include <span>
#include <string_view>

namespace vexel::author {

// What stands behind a field's word.
enum class FieldKind : uint8_t {
  kFlag,       // nothing
  kScaled,     // numbers, kept as whole multiples of 1 / unit
  kReal,       // numbers, as they are
  kColor,      // a colour
  kText,       // a text
  kBytes,      // a text of hexadecimal digits
  kCharacter,  // the name or the id of a character
  kStops,      // colours of a gradient, each with a position before it if it likes
  kWords,      // words of a set of their own
  kParts,      // (word number, ...): encodings
};

// X(enumerator, word, kind, unit, fewest, most, low, high, meaning). Of scaled
// fields low and high bound the stored number; unit is what 1 is stored as.
#define VEXEL_FIELDS(X)                                                                         \
  X(At, "at", kScaled, 20, 2, 2, -0x40000000, 0x3FFFFFFF, "x, y in pixels")                     \
  X(Scale, "scale", kReal, 0x10000, 1, 2, -32768, 32768,                                        \
    "1 or 100% is true size; one number for both directions, or x, y")                          \
  X(Rotate, "rotate", kReal, 1, 1, 1, -1e6, 1e6, "degrees, clockwise")                          \
  X(Skew, "skew", kReal, 1, 2, 2, -89.9, 89.9, "degrees of the x and of the y direction")       \
  X(Matrix, "matrix", kReal, 0x10000, 4, 4, -32768, 32768,                                      \
    "a, b, c, d of x' = a x + c y, y' = b x + d y, in place of scale, rotate and skew")         \
  X(Alpha, "alpha", kReal, 256, 1, 1, -64, 64, "opacity, 100% is opaque")                       \
  X(Tint, "tint", kColor, 1, 1, 1, 0, 1, "mixes toward a colour, half way or as far as `by`")   \
  X(By, "by", kReal, 1, 1, 1, 0, 1, "how far, 0 to 100%")                                       \
  X(Multiply, "multiply", kScaled, 256, 3, 4, -32768, 32767,                                    \
    "factors of red, green, blue and alpha; 100% leaves a channel alone")                       \
  X(Add, "add", kScaled, 1, 3, 4, -32768, 32767,                                                \
    "what is added to red, green, blue and alpha, 255 is all")                                  \
  X(Depth, "depth", kScaled, 1, 1, 1, 0, 65535,                                                 \
    "higher lies above; left out: above all placed so far")                                     \
  X(Ratio, "ratio", kScaled, 65535, 1, 1, 0, 65535, "of a morph: 0 the start, 100% the end")    \
  X(Clip, "clip", kScaled, 1, 1, 1, 0, 65535, "clips all that lies above it, up to this depth") \
  X(Name, "name", kText, 1, 1, 1, 0, 0, "the name that actions know it by; of a font: its own") \
  X(With, "with", kCharacter, 1, 1, 1, 0, 65535, "the character that takes the place")          \
  X(Flags, "flags", kScaled, 1, 1, 1, 0, 65535, "bits that no other field sets")                \
  X(Form, "form", kScaled, 1, 1, 1, 1, 3, "which tag of several is written")                    \
  X(Long, "long", kFlag, 1, 0, 0, 0, 0, "the tag's length in 32 bits, where 6 would do")        \
  X(Short, "short", kFlag, 1, 0, 0, 0, 0, "the tag's length in 6 bits, where 32 are usual")     \
  X(Extra, "extra", kBytes, 1, 1, 1, 0, 0, "bytes at the end of the tag")                       \
  X(Packed, "packed", kParts, 1, 1, 16, 0, 65535,                                               \
    "widths of bit fields and the like, where they are not the smallest")                       \
  X(Size, "size", kScaled, 20, 2, 2, 0, 0x3FFFFFFF, "width, height in pixels")                  \
  X(Rate, "rate", kScaled, 256, 1, 1, 0, 65535, "frames a second")                              \
  X(Version, "version", kScaled, 1, 1, 1, 0, 255, "of the format")                              \
  X(Frames, "frames", kScaled, 1, 1, 1, 0, 65535, "the count of frames, if it is to differ")    \
  X(Length, "length", kScaled, 1, 1, 1, 0, 0xFFFFFFFF,                                          \
    "the length in bytes that the header tells, if it is to differ")                            \
  X(Background, "background", kColor, 1, 1, 1, 0, 0, "of the stage")                            \
  X(Bounds, "bounds", kScaled, 20, 4, 4, -0x40000000, 0x3FFFFFFF,                               \
    "left, top, right, bottom in pixels; left out: found from what is drawn")                   \
  X(EndBounds, "endbounds", kScaled, 20, 4, 4, -0x40000000, 0x3FFFFFFF,                         \
    "the bounds of a morph's end")                                                              \
  X(Color, "color", kColor, 1, 1, 1, 0, 0, "a colour")                                          \
  X(Width, "width", kScaled, 20, 1, 1, 0, 65535, "of a pen, pixels")                            \
  X(Linear, "linear", kFlag, 1, 0, 0, 0, 0, "a gradient along a line")                          \
  X(Radial, "radial", kFlag, 1, 0, 0, 0, 0, "a gradient from a middle outwards")                \
  X(Type, "type", kScaled, 1, 1, 1, 0, 255, "of a paint, the byte itself")                      \
  X(Stops, "stops", kStops, 255, 0, 255, 0, 255,                                                \
    "colours of a gradient: 0% red, 50% white, 100% blue, or evenly: red, white, blue")         \
  X(Along, "along", kScaled, 20, 4, 4, -0x4000000, 0x4000000,                                   \
    "x1, y1, x2, y2: where a linear gradient begins and ends, pixels")                          \
  X(Center, "center", kScaled, 20, 2, 2, -0x40000000, 0x3FFFFFFF, "of a radial gradient")       \
  X(Radius, "radius", kScaled, 20, 1, 2, -0x4000000, 0x4000000,                                 \
    "of a radial gradient, pixels; one number, or x, y")                                        \
  X(Picture, "picture", kCharacter, 1, 1, 1, 0, 65535, "the bitmap to paint with")              \
  X(Clipped, "clipped", kFlag, 1, 0, 0, 0, 0, "the bitmap is not repeated")                     \
  X(Bits, "bits", kScaled, 1, 1, 1, 0, 31, "width of the bit fields")                           \
  X(Both, "both", kFlag, 1, 0, 0, 0, 0, "both deltas are written, though one is 0")             \
  X(Vertical, "vertical", kFlag, 1, 0, 0, 0, 0, "only the y delta is written")                  \
  X(Horizontal, "horizontal", kFlag, 1, 0, 0, 0, 0, "only the x delta is written")              \
  X(To, "to", kScaled, 20, 2, 2, -0x40000000, 0x3FFFFFFF, "where the pen moves, pixels")        \
  X(Round, "round", kScaled, 20, 1, 1, 0, 0x100000, "radius of the corners, pixels")            \
  X(In, "in", kWords, 1, 1, 4, 0, 255, "states of a button: up, over, down, hit")               \
  X(State, "state", kScaled, 1, 1, 1, 0, 255, "the byte of the states itself")                  \
  X(Menu, "menu", kScaled, 1, 1, 1, 0, 255, "1: tracked as in a menu")                          \
  X(File, "file", kText, 1, 1, 1, 0, 0, "the file that is taken in, beside this text")          \
  X(Mask, "mask", kText, 1, 1, 1, 0, 0, "a picture file whose grey is the alpha of a JPEG")     \
  X(Jpeg, "jpeg", kBytes, 1, 1, 1, 0, 0, "a JPEG stream")                                       \
  X(Tables, "tables", kFlag, 1, 0, 0, 0, 0, "the JPEG stream uses the movie's jpegtables")      \
  X(Plane, "plane", kBytes, 1, 1, 1, 0, 0, "the alpha of a JPEG, a byte a pixel")               \
  X(Packet, "packet", kBytes, 1, 1, 1, 0, 0, "compressed data as they stand in the file")       \
  X(Format, "format", kScaled, 1, 1, 1, 0, 255,                                                 \
    "of lossless pixels: 0 to 3: 1, 2, 4, 8 bits into a table; 4: 16 bits; 5: 32 bits")         \
  X(Pixels, "pixels", kScaled, 1, 2, 2, 0, 65535, "width and height of a lossless bitmap")      \
  X(Table, "table", kBytes, 1, 1, 1, 0, 0, "the colour table, 3 bytes a colour, 4 with alpha")  \
  X(Rows, "rows", kBytes, 1, 1, 1, 0, 0,                                                        \
    "the rows of pixels from the top, each padded to 32 bits")                                  \
  X(Opaque, "opaque", kFlag, 1, 0, 0, 0, 0, "lossless without alpha")                           \
  X(Bytes, "bytes", kBytes, 1, 1, 1, 0, 0, "the body as it is")                                 \
  X(Bold, "bold", kFlag, 1, 0, 0, 0, 0, "a bold font")                                          \
  X(Italic, "italic", kFlag, 1, 0, 0, 0, 0, "a slanted font")                                   \
  X(Blocks, "blocks", kFlag, 1, 0, 0, 0, 0, "the built-in font of squares")                     \
  X(Chars, "chars", kText, 1, 1, 1, 0, 0,                                                       \
    "the characters to take of a font file; left out: those of Windows-1252")                   \
  X(Ascent, "ascent", kScaled, 1, 1, 1, -32768, 32767, "of 1024 units of the font's square")    \
  X(Descent, "descent", kScaled, 1, 1, 1, -32768, 32767, "of 1024 units")                       \
  X(Leading, "leading", kScaled, 1, 1, 1, -32768, 32767, "of 1024 units")                       \
  X(Advance, "advance", kScaled, 1, 1, 1, -32768, 32767, "of a glyph, of 1024 units")           \
  X(Code, "code", kScaled, 1, 1, 1, 0, 65535, "of the character that a glyph shows")            \
  X(Codes, "codes", kScaled, 1, 1, 65535, 0, 65535, "of the characters that the glyphs show")   \
  X(Font, "font", kCharacter, 1, 1, 1, 0, 65535, "a font")                                      \
  X(Height, "height", kScaled, 20, 1, 1, 0, 65535, "of the letters, pixels")                    \
  X(PenX, "x", kScaled, 20, 1, 1, -32768, 32767, "where the pen goes, pixels")                  \
  X(PenY, "y", kScaled, 20, 1, 1, -32768, 32767, "the baseline, pixels")                        \
  X(Text, "text", kText, 1, 1, 1, 0, 0, "the letters")                                          \
  X(Glyphs, "glyphs", kReal, 1, 2, 512, -65536, 65536,                                          \
    "numbers of glyphs, each with its advance in pixels: 3, 10.5, 4, 9")                        \
  X(Count, "count", kScaled, 1, 1, 1, 0, 255, "of glyphs, if it is to differ")                  \
  X(MaxLength, "maxlength", kScaled, 1, 1, 1, 0, 65535, "how many bytes can be typed")          \
  X(ReadOnly, "readonly", kFlag, 1, 0, 0, 0, 0, "cannot be edited")                             \
  X(Password, "password", kFlag, 1, 0, 0, 0, 0, "shows stars")                                  \
  X(Multiline, "multiline", kFlag, 1, 0, 0, 0, 0, "takes line ends")                            \
  X(Wrap, "wrap", kFlag, 1, 0, 0, 0, 0, "wraps words")                                          \
  X(Outlines, "outlines", kFlag, 1, 0, 0, 0, 0, "uses the movie's own font")                    \
  X(Border, "border", kFlag, 1, 0, 0, 0, 0, "has a border and a ground")                        \
  X(NoSelect, "noselect", kFlag, 1, 0, 0, 0, 0, "cannot be selected")                           \
  X(Align, "align", kScaled, 1, 1, 1, 0, 255,                                                   \
    "of lines; of a run, where x stands: 0 left, 1 right, 2 centre")                            \
  X(Margins, "margins", kScaled, 20, 2, 2, 0, 65535, "left and right, pixels")                  \
  X(Indent, "indent", kScaled, 20, 1, 1, 0, 65535, "of a paragraph, pixels")                    \
  X(Spacing, "spacing", kScaled, 20, 1, 1, -32768, 32767, "between lines, pixels")              \
  X(Variable, "variable", kText, 1, 1, 1, 0, 0, "the variable that holds the text")

enum class Field : uint8_t {
#define VEXEL_FIELD_ENUM(enumerator, ...) k##enumerator,
  VEXEL_FIELDS(VEXEL_FIELD_ENUM)
#undef VEXEL_FIELD_ENUM
      kFieldCount
};

struct FieldInfo {
  Field field;
  const char* word;
  FieldKind kind;
  double unit;
  size_t fewest;
  size_t most;
  double low;
  double high;
  const char* meaning;
};

const FieldInfo& InfoOf(Field field);

using FieldSet = std::bitset<static_cast<size_t>(Field::kFieldCount)>;

// Where a statement may stand.
enum StatementPlace : uint8_t {
  kInMovie = 1,     // outside of all blocks but those of frames and loops
  kInTimeline = 2,  // there, and in sprites
  kInShape = 4,     // shapes, halves of morphs, glyphs
  kInMorph = 8,
  kInButton = 16,
  kInColors = 32,
  kInFont = 64,
  kInText = 128,
  kAnywhere = 255,
};

struct StatementInfo {
  const char* word;
  uint8_t places;
  const char* head;    // what follows the word, for the reference
  const char* fields;  // words divided by blanks; +matrix, +color, +tag stand for groups
  const char* block;   // what the braces hold; null if there are none
  const char* tags;    // codes that it writes
  const char* meaning;
  const char* example;
};

std::span<const StatementInfo> Statements();
// Null for a word that begins no statement there.
const StatementInfo* FindStatement(std::string_view word, uint8_t place);
const FieldSet& FieldsOf(const StatementInfo& statement);

// The fields that a word of a statement can begin; null for none.
const FieldInfo* FindField(const StatementInfo& statement, std::string_view word);

}  // namespace vexel::author
