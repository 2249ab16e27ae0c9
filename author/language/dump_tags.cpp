// Tags as statements: placements, actions, buttons, bitmaps.
#include <algorithm>

#include <zlib.h>

#include "author/language/dumper.h"
#include "author/script/action_text.h"
#include "author/script/button_events.h"
#include "author/script/cursor.h"
#include "author/tag_kinds.h"

namespace vexel::author {

namespace {

constexpr uint8_t kAllStates = kButtonUp | kButtonOver | kButtonDown | kButtonHit;
// Larger bitmaps are printed as the packets they are: rows of pixels tell a
// reader no more, and packets are short.
constexpr size_t kMaxShownRows = 64 * 1024;

std::string ActionBlock(const char* word, std::span<const uint8_t> block) {
  return std::string(word) + " {\n" + DisassembleActions(block, 2) + "}";
}

}  // namespace

std::string ReferenceTo(const CharacterBook& names, uint16_t id) {
  const std::string* name = names.NameOf(id);
  return name ? *name : std::to_string(id);
}

std::string Dumper::Reference(uint16_t id) const {
  return ReferenceTo(maker_.characters(), id);
}

// A name made of the kind and the id, if the id has none yet.
std::string Dumper::Head(const char* word, uint16_t id) const {
  const CharacterBook& characters = maker_.characters();
  const std::string name = word + std::to_string(id);
  if (characters.NameOf(id) || characters.Find(name) >= 0)
    return std::string(word) + " = " + std::to_string(id);
  if (characters.Next() == id && id != 0) return std::string(word) + " " + name;
  return std::string(word) + " " + name + " = " + std::to_string(id);
}

// Bytes behind the fields, and the form of the header.
std::string Dumper::Finish(StatementText& statement, const FramedTag& tag, const RecordReader& in,
                           const std::string& block) const {
  if (in.left() > 0) statement.Hex(Field::kExtra, in.Rest());
  TagStream usual;
  usual.Tag(tag.code, tag.body);
  if (usual.bytes().size() != tag.whole.size())
    statement.Flag(tag.isLong ? Field::kLong : Field::kShort);
  return statement.Take() + block + "\n";
}

std::string Dumper::Finish(StatementText& statement, const FramedTag& tag,
                           const RecordReader& in) const {
  return Finish(statement, tag, in, "");
}

std::optional<std::string> Dumper::Say(const FramedTag& tag, Manner manner) {
  RecordReader in(tag.body);
  std::string text;
  const auto simple = [&](StatementText statement) { return Finish(statement, tag, in); };
  switch (tag.code) {
    case kTagEnd:
      text = simple(StatementText("end"));
      break;
    case kTagFreeAll:
      text = simple(StatementText("freeall"));
      break;
    case kTagSyncFrame:
      text = simple(StatementText("sync"));
      break;
    case kTagFreeCharacter: {
      const uint16_t id = in.U16();
      text = simple(StatementText("free " + Reference(id)));
      break;
    }
    case kTagBackgroundColor: {
      // Behind the header a plain one is read as its field.
      if (tag.whole.size() != 5) return {};
      const Color color = in.ReadColor(false);
      text = simple(StatementText("background " + ColorText(color)));
      break;
    }
    case kTagFrameLabel: {
      const std::string label = in.Text();
      text = simple(StatementText("label " + QuoteText(label)));
      break;
    }
    case kTagFrameActions:
      text = SayActions(tag);
      break;
    case kTagPlaceObject:
      text = SayPlace(tag, in);
      break;
    case kTagPlaceObject2:
      text = SayPlace2(tag, in);
      break;
    case kTagRemoveObject:
    case kTagRemoveObject2:
      text = SayRemove(tag, in);
      break;
    case kTagDefineShape:
    case kTagDefineShape2:
    case kTagDefineShape3:
      text = SayShape(tag, in, manner);
      break;
    case kTagDefineMorphShape:
      text = SayMorph(tag, in, manner);
      break;
    case kTagDefineButton:
    case kTagDefineButton2:
      text = SayButton(tag, in);
      break;
    case kTagDefineButtonExtra:
      text = SayButtonColors(tag, in);
      break;
    case kTagDefineBits:
    case kTagDefineBitsJPEG:
    case kTagDefineBitsJPEGAlpha:
    case kTagDefineJPEGTables:
      text = SayBits(tag, in);
      break;
    case kTagDefineBitsLossless:
    case kTagDefineBitsLosslessAlpha:
      text = SayLossless(tag, in);
      break;
    case kTagDefineFont:
      text = SayFont(tag, in, manner);
      break;
    case kTagDefineFont2:
      text = SayFont2(tag, in, manner);
      break;
    case kTagDefineFontInfo:
      text = SayFontInfo(tag, in);
      break;
    case kTagDefineText:
    case kTagDefineText2:
      text = SayText(tag, in);
      break;
    case kTagDefineEditText:
      text = SayEdit(tag, in);
      break;
    default:
      return {};
  }
  if (!in.ok() || text.empty()) return {};
  return text;
}

std::string Dumper::SayPlace(const FramedTag& tag, RecordReader& in) {
  const uint16_t id = in.U16();
  const uint16_t depth = in.U16();
  MatrixForm form;
  const Matrix matrix = in.ReadMatrix(&form);
  StatementText statement("place " + Reference(id));
  statement.Stored(Field::kForm, {1}).Stored(Field::kDepth, {depth});
  statement.AddMatrix(matrix, form, false);
  if (in.left() > 0) {
    CxformForm cxformForm;
    const Cxform cxform = in.ReadCxform(false, &cxformForm);
    statement.AddCxform(cxform, cxformForm, true);
  }
  return Finish(statement, tag, in);
}

std::string Dumper::SayPlace2(const FramedTag& tag, RecordReader& in) {
  const uint8_t flags = in.U8();
  const uint16_t depth = in.U16();
  const bool move = flags & kMoveFlag;
  std::string reference;
  if (flags & kCharacterFlag) reference = Reference(in.U16());
  if (!move && reference.empty()) return {};
  StatementText statement(move ? "move " + std::to_string(depth) : "place " + reference);
  if (!move) statement.Stored(Field::kDepth, {depth});
  if (move && !reference.empty()) statement.Character(Field::kWith, reference);
  if (flags & kMatrixFlag) {
    MatrixForm form;
    const Matrix matrix = in.ReadMatrix(&form);
    statement.AddMatrix(matrix, form, true);
  }
  if (flags & kCxformFlag) {
    CxformForm form;
    const Cxform cxform = in.ReadCxform(true, &form);
    statement.AddCxform(cxform, form, true);
  }
  if (flags & kRatioFlag) statement.Stored(Field::kRatio, {in.U16()});
  uint8_t other = flags & kOtherFlags;
  if (flags & kNameFlag) {
    statement.Text(Field::kName, in.Text());
    // Nothing of its own is written for a clip depth beside a name.
    other |= flags & kClipFlag;
  } else if (flags & kClipFlag) {
    statement.Stored(Field::kClip, {in.U16()});
  }
  if (other) statement.Stored(Field::kFlags, {other});
  return Finish(statement, tag, in);
}

std::string Dumper::SayRemove(const FramedTag& tag, RecordReader& in) {
  const bool old = tag.code == kTagRemoveObject;
  std::string reference;
  if (old) reference = Reference(in.U16());
  StatementText statement("remove " + std::to_string(in.U16()));
  if (old) statement.Stored(Field::kForm, {1}).Character(Field::kWith, reference);
  return Finish(statement, tag, in);
}

std::string Dumper::SayActions(const FramedTag& tag) {
  StatementText tail("");
  const RecordReader nothing({});
  const std::string form = Finish(tail, tag, nothing);
  return ActionBlock("actions", tag.body) + form;
}

std::string Dumper::SayButton(const FramedTag& tag, RecordReader& in) {
  const bool second = tag.code == kTagDefineButton2;
  StatementText statement(Head("button", in.U16()));
  if (!second) statement.Stored(Field::kForm, {1});
  size_t next = 0;
  if (second) {
    if (const uint8_t menu = in.U8()) statement.Stored(Field::kMenu, {menu});
    const size_t at = in.at();
    const uint16_t offset = in.U16();
    if (offset) next = at + offset;
  }
  std::string block;
  while (in.ok()) {
    const uint8_t states = in.U8();
    if (states == 0) break;
    const uint16_t id = in.U16();
    const uint16_t depth = in.U16();
    StatementText show("show " + Reference(id));
    if (states & ~kAllStates) {
      show.Stored(Field::kState, {states});
    } else {
      show.Word("in");
      if (states & kButtonUp) show.Word("up");
      if (states & kButtonOver) show.Word("over");
      if (states & kButtonDown) show.Word("down");
      if (states & kButtonHit) show.Word("hit");
    }
    show.Stored(Field::kDepth, {depth});
    MatrixForm form;
    const Matrix matrix = in.ReadMatrix(&form);
    show.AddMatrix(matrix, form, false);
    if (second) {
      CxformForm cxformForm;
      const Cxform cxform = in.ReadCxform(true, &cxformForm);
      show.AddCxform(cxform, cxformForm, false);
    }
    block += show.Take() + "\n";
  }
  if (!second) {
    block += ActionBlock("actions", in.Take(in.left())) + "\n";
  } else {
    while (next != 0 && in.ok()) {
      in.MoveTo(next);
      const size_t at = in.at();
      const uint16_t offset = in.U16();
      const uint16_t conditions = in.U16();
      const size_t end = offset ? at + offset : tag.body.size();
      if (!in.ok() || end < in.at() || end > tag.body.size()) return {};
      const auto actions = in.Take(end - in.at());
      block += "on " + ConditionText(conditions) + " " + ActionBlock("actions", actions) + "\n";
      next = offset ? end : 0;
    }
  }
  return Finish(statement, tag, in, " {\n" + Indented(block) + "}");
}

std::string Dumper::SayButtonColors(const FramedTag& tag, RecordReader& in) {
  StatementText statement("buttoncolors " + Reference(in.U16()));
  std::string block;
  while (in.left() > 0 && in.ok()) {
    StatementText color("color");
    CxformForm form;
    const Cxform cxform = in.ReadCxform(false, &form);
    color.AddCxform(cxform, form, false);
    block += color.Take() + "\n";
  }
  return Finish(statement, tag, in, " {\n" + Indented(block) + "}");
}

std::string Dumper::SayBits(const FramedTag& tag, RecordReader& in) {
  if (tag.code == kTagDefineJPEGTables) {
    StatementText statement("jpegtables");
    statement.Hex(Field::kJpeg, in.Take(in.left()));
    return Finish(statement, tag, in);
  }
  StatementText statement(Head("picture", in.U16()));
  if (tag.code == kTagDefineBits) statement.Flag(Field::kTables);
  if (tag.code == kTagDefineBitsJPEGAlpha) {
    const uint32_t size = in.U32();
    const auto jpeg = in.Take(size);
    const auto packet = in.Take(in.left());
    statement.Hex(Field::kPacket, packet).Hex(Field::kJpeg, jpeg);
  } else {
    statement.Hex(Field::kJpeg, in.Take(in.left()));
  }
  return Finish(statement, tag, in);
}

std::string Dumper::SayLossless(const FramedTag& tag, RecordReader& in) {
  const bool alpha = tag.code == kTagDefineBitsLosslessAlpha;
  StatementText statement(Head("picture", in.U16()));
  const uint8_t format = in.U8();
  const uint16_t width = in.U16();
  const uint16_t height = in.U16();
  statement.Stored(Field::kFormat, {format}).Stored(Field::kPixels, {width, height});
  if (!alpha) statement.Flag(Field::kOpaque);
  const int count = format < 4 ? in.U8() : 0;
  const auto packet = in.Take(in.left());
  const size_t table = format < 4 ? size_t(count + 1) * (alpha ? 4 : 3) : 0;
  const size_t rows = format <= 5 ? BitmapRowBytes(format, width) * height : 0;
  if (rows > 0 && rows <= kMaxShownRows) {
    Bytes open(table + rows + 1);
    uLongf size = open.size();
    const bool good = uncompress(open.data(), &size, packet.data(), packet.size()) == Z_OK;
    open.resize(size);
    const Bytes again = good && size >= table ? Deflate(open) : Bytes();
    if (std::equal(again.begin(), again.end(), packet.begin(), packet.end())) {
      const std::span<const uint8_t> all(open);
      if (table) statement.Hex(Field::kTable, all.first(table));
      statement.Hex(Field::kRows, all.subspan(table));
      return Finish(statement, tag, in);
    }
  }
  if (count) statement.Part("count", count);
  statement.Hex(Field::kPacket, packet);
  return Finish(statement, tag, in);
}

}  // namespace vexel::author
