// The rows of statements, and how the fields they list are found.
#include "author/language/table.h"

#include <array>
#include <cassert>
#include <string>

namespace vexel::author {

namespace {

constexpr FieldInfo kFields[] = {
#define VEXEL_FIELD_INFO(enumerator, word, kind, unit, fewest, most, low, high, meaning) \
  {Field::k##enumerator, word, FieldKind::kind, unit, fewest, most, low, high, meaning},
    VEXEL_FIELDS(VEXEL_FIELD_INFO)
#undef VEXEL_FIELD_INFO
};
static_assert(std::size(kFields) == static_cast<size_t>(Field::kFieldCount));

constexpr const char* kMatrixGroup = "at scale rotate skew matrix";
constexpr const char* kColorGroup = "alpha tint by multiply add";
constexpr const char* kTagGroup = "long short extra";

constexpr uint8_t kTimelines = kInMovie | kInTimeline;

// clang-format off
constexpr StatementInfo kStatements[] = {
    // The language itself.
    {"let", kAnywhere, "NAME = VALUE", "", nullptr, "",
     "Names a value: a number, a colour or a text. It holds to the end of the block.",
     "let gap = 12.5  let sky = #88ccff"},
    {"repeat", kAnywhere, "COUNT [as NAME]", "", "what is repeated", "",
     "Runs its block COUNT times; NAME counts from 0.",
     "repeat 20 as i { place star at 10*i, 40 }"},
    {"if", kAnywhere, "VALUE", "", "what is done, then perhaps else { ... }", "",
     "Runs its block if the value is not 0.",
     "if i > 3 { place star at 10, 10 } else { place moon at 10, 10 }"},
    {"define", kAnywhere, "NAME(NAME, ...)", "", "what it does", "",
     "Keeps a block under a name, for `use`. Its names in parentheses are given values there.",
     "define house(x, c) { fill c  rect x, 20, 30, 40 }"},
    {"use", kAnywhere, "NAME(VALUE, ...)", "", nullptr, "",
     "Runs a block that was defined.", "use house(40, #aa3300)"},
    {"include", kAnywhere, "\"FILE\"", "", nullptr, "",
     "Goes on with another text, found beside this one.", "include \"palette.vxt\""},

    // Timelines.
    {"movie", kInMovie, "", "size bounds rate version frames length background bytes packed", nullptr, "",
     "The header. Left out: 550, 400 pixels, 12 frames a second. With bytes it is these, whatever they say.",
     "movie size 320, 240 rate 24 background #ffffff"},
    {"frame", kTimelines, "[\"LABEL\"]", "", "what happens in the frame; may be left out", "1, 43",
     "Ends a frame, which holds what the block does and what came before it. With a text the "
     "frame gets that label.",
     "frame \"start\" { place star at 10, 20 }"},
    {"at", kTimelines, "frame NUMBER", "", "what happens there", "",
     "Runs its block in a frame by its number, from 0, then comes back. Frames that are not yet "
     "there are made.",
     "at frame 10 { remove star }"},
    {"tween", kTimelines, "COUNT [as NAME]", "", "what happens in each frame", "",
     "Runs its block COUNT times and ends a frame after each. NAME goes from 0 to 1.",
     "tween 24 as t { move hero at mix(10, 200, ease(t)), 40 }"},
    {"place", kTimelines, "CHARACTER [as NAME]",
     "depth +matrix +color ratio clip name form flags packed +tag", nullptr, "26, 4",
     "Puts a character on the stage. NAME is what `move` and `remove` may call it by. Form 1 is "
     "the older record, without name, ratio and clip.",
     "place star as hero at 10, 20 scale 150% rotate 30 alpha 50%"},
    {"move", kTimelines, "NAME or DEPTH", "with +matrix +color ratio clip name flags packed +tag",
     nullptr, "26",
     "Changes what stands at a depth. What is not said stays as it is; a place that is said is "
     "said wholly: at, scale and rotate together.",
     "move hero at 30, 20 rotate 40"},
    {"remove", kTimelines, "NAME or DEPTH", "with form +tag", nullptr, "28, 5",
     "Takes away what stands at a depth. Form 1 names the character too.", "remove hero"},
    {"background", kTimelines, "COLOR", "+tag", nullptr, "9", "The colour of the stage.",
     "background #204060"},
    {"label", kTimelines, "\"TEXT\"", "+tag", nullptr, "43", "The label of the frame.",
     "label \"start\""},
    {"actions", kTimelines | kInButton, "", "+tag", "actions, one a line", "12",
     "What the movie does when it comes to the frame, action by action.", "actions { stop }"},
    {"script", kTimelines | kInButton, "", "+tag", "a script", "12",
     "The same as expressions and statements.", "script { stop() }"},
    {"free", kTimelines, "CHARACTER", "+tag", nullptr, "3", "Forgets a character.", "free star"},
    {"freeall", kTimelines, "", "+tag", nullptr, "31", "Forgets all: for streams of messages.",
     "freeall"},
    {"sync", kTimelines, "", "+tag", nullptr, "29", "A frame mark: for streams of messages.",
     "sync"},
    {"end", kTimelines, "", "+tag", nullptr, "0",
     "The end tag, where it is not the last of its timeline: then none is added.", "end"},
    {"noend", kTimelines, "", "", nullptr, "", "The timeline has no end tag.", "noend"},
    {"tag", kTimelines, "CODE", "bytes long short", nullptr, "any",
     "Any tag with any body.", "tag 777 bytes \"01 02 ff\""},
    {"raw", kTimelines, "\"HEX\"", "", nullptr, "",
     "Bytes that are no tag.", "raw \"40 00\""},

    // Characters.
    {"shape", kTimelines, "NAME [= ID]", "form bounds packed +tag", "paints, pens, selections and outlines",
     "32, 22, 2",
     "A drawing. Form 3 has colours with alpha, forms 2 and 1 have none.",
     "shape star { fill #ffcc00 polygon 0,0, 10,30, -15,10, 15,10, -10,30 }"},
    {"morph", kTimelines, "NAME [= ID]", "bounds endbounds packed +tag",
     "paints, pens, then start { ... } and end { ... }", "46",
     "A drawing that changes into another one. Both halves draw the same count of edges.",
     "morph m { paint p red to blue start { fill p circle 50,50,40 } end { circle 50,50,10 } }"},
    {"picture", kTimelines, "NAME [= ID]",
     "file mask jpeg tables plane packet format pixels table rows opaque bytes packed +tag", nullptr,
     "6, 20, 21, 35, 36",
     "A bitmap: from a file (.png, .jpg), or by what the tag holds.",
     "picture photo file \"photo.jpg\""},
    {"art", kTimelines, "NAME [= ID]", "file", nullptr, "39 and others",
     "A drawing of another program (.svg), or a picture, as a sprite of one frame at its own size.",
     "art boat file \"boat.svg\""},
    {"jpegtables", kTimelines, "", "jpeg +tag", nullptr, "8", "The tables that pictures may share.",
     "jpegtables jpeg \"ffd8 ffd9\""},
    {"sprite", kTimelines, "NAME [= ID]", "frames +tag", "a timeline of its own", "39",
     "A character with frames of its own.",
     "sprite wheel { frame { place spoke } repeat 9 as i { frame { move 1 rotate 40*i } } }"},
    {"button", kTimelines, "NAME [= ID]", "form menu packed +tag", "show and on; in form 1 actions too", "34, 7",
     "A character that answers to the mouse and to keys.",
     "button go { show box in up over  show lit in down  show box in hit  on release script { play() } }"},
    {"buttoncolors", kTimelines, "BUTTON", "+tag", "color, one for each record of the button", "23",
     "Colour transforms for a button of form 1.",
     "buttoncolors go { color multiply 50%, 100%, 100% }"},
    {"font", kTimelines, "NAME [= ID]",
     "form name file chars blocks bold italic flags ascent descent leading packed +tag",
     "glyph ...", "48, 10",
     "A font. Form 1 holds outlines alone. Of a file, TrueType or OpenType, it takes the outlines "
     "of some characters, and name, style and measures where no field says them.",
     "font f blocks name \"Squares\"  font g file \"serif.ttf\" chars \"Hello\""},
    {"fontinfo", kTimelines, "FONT", "name flags codes packed +tag", nullptr, "13",
     "Name and codes of a font of form 1.", "fontinfo f name \"Squares\" codes 65, 66"},
    {"text", kTimelines, "NAME [= ID]", "form bounds +matrix packed +tag", "run ...", "33, 11",
     "Text that does not change. Form 1 has colours without alpha.",
     "text title { run font f height 20 color #000000 x 0 y 20 text \"HELLO\" }"},
    {"edit", kTimelines, "NAME [= ID]",
     "bounds font height color maxlength readonly password multiline wrap outlines border noselect "
     "align margins indent leading spacing variable text flags packed +tag", nullptr, "37",
     "A text field.",
     "edit answer bounds 0, 0, 120, 20 font f height 12 color #000000 variable \"answer\" text \"?\""},

    // Outlines and what they are painted with.
    {"paint", kAnywhere, "NAME [COLOR]",
     "color linear radial type stops along center radius picture clipped +matrix packed", nullptr, "",
     "A fill by name: a colour, a gradient or a bitmap. Outside of shapes it can be used in all of "
     "them. In a morph `to` and the same fields tell its end.",
     "paint sky linear along 0, 0, 0, 200 stops #4060ff, #c0e0ff"},
    {"pen", kAnywhere, "NAME", "width color", nullptr, "",
     "A line by name. In a morph `to` and the same fields tell its end.", "pen thin width 0.5 color #000000"},
    {"fill", kInShape, "NAME, NUMBER, COLOR or none", "", nullptr, "",
     "What the next outlines are filled with. Numbers count the paints of the shape from 1.", "fill sky"},
    {"fill0", kInShape, "NAME, NUMBER, COLOR or none", "", nullptr, "",
     "What lies on the other side of the next edges, where two fills meet at them.", "fill0 sky"},
    {"stroke", kInShape, "NAME, NUMBER, none, or COLOR width WIDTH", "width", nullptr, "",
     "What the next outlines are drawn with.", "stroke #000000 width 2"},
    {"layer", kInShape, "", "packed", "paints and pens; may be left out", "",
     "What follows lies above all that came before, lines too; paints and pens begin anew.", "layer"},
    {"path", kInShape, "\"SVG PATH\"", "+matrix", nullptr, "",
     "Outlines in the notation of SVG, in pixels. Without a first M it goes on from the pen.",
     "path \"M 10 10 L 90 10 Q 90 60 50 60 C 20 60 10 40 10 10 Z\""},
    {"rect", kInShape, "X, Y, WIDTH, HEIGHT", "round +matrix", nullptr, "", "A rectangle.",
     "rect 10, 10, 80, 40 round 5"},
    {"circle", kInShape, "X, Y, RADIUS", "+matrix", nullptr, "", "A circle.", "circle 50, 50, 40"},
    {"ellipse", kInShape, "X, Y, RX, RY", "+matrix", nullptr, "", "An ellipse.", "ellipse 50, 50, 40, 20"},
    {"polygon", kInShape, "X, Y, X, Y, ...", "+matrix", nullptr, "", "A closed polygon.",
     "polygon 0, 0, 40, 0, 20, 30"},
    {"line", kInShape, "X, Y, X, Y, ...", "+matrix", nullptr, "", "An open line.", "line 0, 0, 40, 0"},
    {"change", kInShape, "", "to fill0 fill stroke bits packed", "paints and pens: new tables", "",
     "One record of a style change as it stands in the file. fill0, fill and stroke take numbers.", "change to 10, 20 fill 1"},
    {"edge", kInShape, "DX, DY", "bits both vertical horizontal", nullptr, "",
     "One straight edge as it stands in the file.", "edge 10, 0 bits 12"},
    {"curve", kInShape, "DX, DY, DX, DY", "bits", nullptr, "",
     "One curved edge as it stands in the file: to the control point, and on from there.",
     "curve 10, 0, 10, 10"},
    {"start", kInMorph, "", "packed", "selections and outlines", "", "How a morph begins.",
     "start { fill p  rect 0, 0, 40, 40 }"},
    {"end", kInMorph, "", "packed", "outlines", "", "How a morph ends.", "end { rect 0, 0, 20, 80 }"},

    // Parts of characters.
    {"show", kInButton, "CHARACTER", "in state depth +matrix +color packed", nullptr, "",
     "What a button shows in which states; in `hit` it is where the button feels the mouse.",
     "show box in up over depth 1 at 0, 0"},
    {"on", kInButton, "EVENT, EVENT, ... actions { ... } or script { ... }", "", nullptr, "",
     "What a button does. Events: rollOver rollOut press release dragOut dragOver releaseOutside "
     "menuDragOver menuDragOut, key \"a\", key left.",
     "on release, key \"a\" script { gotoAndPlay(1) }"},
    {"color", kInColors, "", "+color packed", nullptr, "", "A colour transform.",
     "color add 40, 0, 0"},
    {"glyph", kInFont, "[\"LETTER\"]", "code advance packed", "outlines in 1024ths of the font's square", "",
     "A letter of a font; its outlines are filled with fill 1.",
     "glyph \"I\" advance 400 { fill 1 rect 100, -700, 200, 700 }"},
    {"run", kInText, "", "font height color x y align text glyphs count flags", nullptr, "",
     "Letters in one font and colour. What it does not say stays as the run before left it. The text "
     "is UTF-8, or Windows-1252 where it is none; a text field's is always Windows-1252.",
     "run font f height 20 color red x 0 y 20 text \"HELLO\""},
};
// clang-format on

FieldSet SetOf(std::string_view list) {
  FieldSet set;
  while (!list.empty()) {
    const size_t blank = list.find(' ');
    const std::string_view word = list.substr(0, blank);
    list = blank == std::string_view::npos ? std::string_view() : list.substr(blank + 1);
    if (word == "+matrix") {
      set |= SetOf(kMatrixGroup);
    } else if (word == "+color") {
      set |= SetOf(kColorGroup);
    } else if (word == "+tag") {
      set |= SetOf(kTagGroup);
    } else {
      for (const FieldInfo& field : kFields) {
        if (field.word == word) set.set(static_cast<size_t>(field.field));
      }
    }
  }
  return set;
}

using FieldSets = std::array<FieldSet, std::size(kStatements)>;

FieldSets MakeSets() {
  FieldSets sets;
  for (size_t i = 0; i < sets.size(); ++i) sets[i] = SetOf(kStatements[i].fields);
  return sets;
}

}  // namespace

const FieldInfo& InfoOf(Field field) {
  return kFields[static_cast<size_t>(field)];
}

std::span<const StatementInfo> Statements() {
  return kStatements;
}

const StatementInfo* FindStatement(std::string_view word, uint8_t place) {
  for (const StatementInfo& statement : kStatements) {
    if ((statement.places & place) && statement.word == word) return &statement;
  }
  return nullptr;
}

const FieldSet& FieldsOf(const StatementInfo& statement) {
  static const FieldSets sets = MakeSets();
  return sets[static_cast<size_t>(&statement - kStatements)];
}

const FieldInfo* FindField(const StatementInfo& statement, std::string_view word) {
  const FieldSet& set = FieldsOf(statement);
  for (const FieldInfo& field : kFields) {
    if (field.word == word) return set[static_cast<size_t>(field.field)] ? &field : nullptr;
  }
  return nullptr;
}

}  // namespace vexel::author
