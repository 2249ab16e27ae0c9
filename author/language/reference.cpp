// An introduction by hand, then every statement and every field of the table.
#include "author/language/reference.h"

#include "author/language/table.h"

namespace vexel::author {

namespace {

constexpr const char* kIntroduction = R"(# The text form of movies

<!-- Printed from the table of tags and fields: build/bin/vexel-text reference > docs/text-form.md -->

    vexel make scene.vxt -o scene.vxf     a movie from a text
    vexel dump scene.vxf > again.vxt      a text from a movie: making it gives the same bytes
    vexel render scene.vxf -o scene.png   look at it

## A first movie

    movie size 320, 240 rate 24 background #204060

    shape star {
      fill gold
      stroke #804000 width 1.5
      polygon 0, -15, 4, -4, 15, -4, 6, 3, 9, 14, 0, 8, -9, 14, -6, 3, -15, -4, -4, -4
    }

    frame {
      repeat 5 as i { place star at 40 + 60*i, 200 }
      place star as hero at 20, 60
    }
    tween 24 as t { move hero at mix(20, 300, ease(t)), 60 rotate 360*t }
    frame { actions { stop } }

## How a text is read

A text is a row of **statements**. A statement is a word, its head, its **fields**, and
perhaps a block in braces. A field is a word and its values; fields come in any order, each
once. Line ends and blanks mean nothing. Values in a row are divided by commas.

Comments are `// to the end of the line` and `/* to here */`.

**Numbers** are decimal, hexadecimal as 0xFF, per cent as 50% (which is 0.5). Lengths are
pixels and are kept in twentieths: 10.05 is exact. Angles are degrees, clockwise. The x axis
goes right, the y axis down.

**Texts** stand in double quotes, with `\n \r \t \" \\ \xHH`; texts in a row are one text.
**Bytes** are texts of hexadecimal digits.

**Colours** are `#rgb`, `#rgba`, `#rrggbb`, `#rrggbbaa`, or the names of style sheets (`gold`).

**Expressions** may stand wherever a value may: `+ - * /`, parentheses, `< <= > >= == !=`
(1 or 0), `"text" + number`, names of `let`, `repeat`, `tween` and `define`, and functions:

| function | value |
| --- | --- |
| `sin(d)` `cos(d)` `tan(d)` `angle(x, y)` | of degrees; the angle of a direction |
| `sqrt abs floor ceil round (v)`, `power(v, e)`, `mod(v, m)` | `mod` is never negative for m > 0 |
| `min(...)` `max(...)` `clamp(v, low, high)` | |
| `mix(a, b, t)` | from a to b, numbers or colours |
| `ease(t)` `easein(t)` `easeout(t)` | 0 to 1, with soft ends |
| `random(a, b)` | the same row of numbers each time |
| `choose(c, a, b)` | a if c is not 0, else b |
| `rgb(r, g, b)` `rgb(r, g, b, alpha)` `fade(colour, alpha)` | channels 0 to 255, alpha 0 to 1 |

**Names of characters.** `shape star { ... }` defines a character called `star` and gives it
the next free id; `shape star = 7 { ... }` gives it 7; `shape = 7 { ... }` gives it 7 and no name.
Where a character is wanted, a name or an id will do.

**Depths.** `place star` lies above all that was placed before in its timeline. `as hero` is what
`move` and `remove` call that depth; they take its number too.

**Frames** count from 0. `frame { ... }` fills a frame and ends it; `at frame 10 { ... }` comes back
to a frame or makes it; `tween` ends a frame after each round. The end tag is added at the end.

**Tags of any kind.** `long` and `short` choose the length field of a tag, `extra` adds bytes behind
its fields, `packed(...)` forces the widths of its bit fields, `tag 99 bytes "0102"` writes any tag
with any body, `raw "0102"` writes bytes that are no tag.

Widths in `packed`: of a matrix `scale` and `rotate` (0 or 1: whether they are there), `scalebits`,
`rotatebits`, `movebits`; of a colour transform `colorflags`, `colorbits`; of rectangles `bounds`,
`endbounds`; of outlines `fills`, `lines` (widths of the numbers of paints and pens), `longfills`,
`longlines` (counts in 16 bits); of text `glyph`, `advance`; of fonts `wide`; of pictures `count`.

**Files** are looked for beside the text that names them, then in the folders of `-I`.

)";

const char* KindText(FieldKind kind) {
  switch (kind) {
    case FieldKind::kFlag:
      return "nothing";
    case FieldKind::kScaled:
    case FieldKind::kReal:
      return "number";
    case FieldKind::kColor:
      return "colour";
    case FieldKind::kText:
      return "text";
    case FieldKind::kBytes:
      return "bytes";
    case FieldKind::kCharacter:
      return "character";
    case FieldKind::kStops:
      return "stops";
    case FieldKind::kWords:
      return "words";
    case FieldKind::kParts:
      return "(word number, ...)";
  }
  return "";
}

std::string Plain(double number) {
  std::string text = std::to_string(number);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string RangeText(const FieldInfo& field) {
  if (field.kind != FieldKind::kScaled && field.kind != FieldKind::kReal) return "";
  const double unit = field.kind == FieldKind::kScaled ? field.unit : 1;
  return Plain(field.low / unit) + " to " + Plain(field.high / unit);
}

std::string CountText(const FieldInfo& field) {
  if (field.kind != FieldKind::kScaled && field.kind != FieldKind::kReal)
    return KindText(field.kind);
  std::string count = std::to_string(field.fewest);
  if (field.most != field.fewest) count += " to " + std::to_string(field.most);
  return count + (field.most == 1 ? " number" : " numbers");
}

struct Chapter {
  const char* title;
  const char* first;  // word of the first statement that belongs to it
};

// The table's own order, cut where a new subject begins.
constexpr Chapter kChapters[] = {
    {"The language", "let"},          {"Timelines", "movie"},
    {"Characters", "shape"},          {"Outlines, paints and pens", "paint"},
    {"Parts of characters", "start"},
};

void AddStatement(const StatementInfo& statement, std::string* out) {
  *out += std::string("### `") + statement.word;
  if (*statement.head) *out += std::string(1, ' ') + statement.head;
  *out += std::string("`\n\n") + statement.meaning + "\n\n";
  std::string fields;
  for (size_t i = 0; i < static_cast<size_t>(Field::kFieldCount); ++i) {
    if (!FieldsOf(statement)[i]) continue;
    if (!fields.empty()) fields += ", ";
    fields += std::string(1, '`') + InfoOf(static_cast<Field>(i)).word + "`";
  }
  if (!fields.empty()) *out += "Fields: " + fields + ".  \n";
  if (statement.block) *out += "Block: " + std::string(statement.block) + ".  \n";
  if (*statement.tags) *out += "Tags: " + std::string(statement.tags) + ".  \n";
  *out += "\n    " + std::string(statement.example) + "\n\n";
}

}  // namespace

std::string LanguageReference() {
  std::string out = kIntroduction;
  size_t chapter = 0;
  for (const StatementInfo& statement : Statements()) {
    if (chapter < std::size(kChapters) &&
        std::string_view(statement.word) == kChapters[chapter].first) {
      out += "## " + std::string(kChapters[chapter].title) + "\n\n";
      ++chapter;
    }
    AddStatement(statement, &out);
  }
  out += "## Fields\n\n| field | values | range | meaning |\n| --- | --- | --- | --- |\n";
  for (size_t i = 0; i < static_cast<size_t>(Field::kFieldCount); ++i) {
    const FieldInfo& field = InfoOf(static_cast<Field>(i));
    out += "| `" + std::string(field.word) + "` | " + CountText(field) + " | " + RangeText(field) +
           " | " + field.meaning + " |\n";
  }
  return out;
}

}  // namespace vexel::author
