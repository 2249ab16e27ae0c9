// Timelines as statements, with every statement put to the test.
#include "author/language/dump.h"

#include <algorithm>

#include "author/language/dumper.h"
#include "author/script/cursor.h"
#include "author/tag_kinds.h"

namespace vexel::author {

namespace {

constexpr size_t kHeaderBytes = 8;
// Sprites in sprites that are printed as such: each level is a block or two.
constexpr int kMaxLevels = 30;
// Of what a text may use; the rest of the movie is printed as bytes then.
constexpr double kSpent = 0.75;
// Frames without anything are counted from here on.
constexpr int kManyBare = 3;

// What stands outside of frames, where nothing depends on its place in them.
bool IsDefinition(int code) {
  return IsDefinitionTag(code) || code == kTagDefineJPEGTables || code == kTagDefineButtonExtra ||
         code == kTagDefineFontInfo;
}

// What the maker's own end tag is.
bool IsPlainEnd(const FramedTag& tag) {
  return tag.code == kTagEnd && tag.whole.size() == 2;
}

bool IsPlainFrameEnd(const FramedTag& tag) {
  return tag.code == kTagFrameEnd && tag.whole.size() == 2;
}

// A label as `frame` writes it.
bool IsPlainLabel(const FramedTag& tag) {
  const auto zero = std::find(tag.body.begin(), tag.body.end(), 0);
  return tag.code == kTagFrameLabel && !tag.body.empty() && zero == tag.body.end() - 1 &&
         tag.isLong == (tag.body.size() >= kLongTagLength);
}

std::string BytesStatement(std::span<const uint8_t> bytes) {
  return StatementText("raw").Word(HexText(bytes)).Take() + "\n";
}

}  // namespace

std::optional<FramedTag> FrameTag(std::span<const uint8_t> bytes) {
  RecordReader in(bytes);
  FramedTag tag;
  const uint32_t word = in.U16();
  tag.code = static_cast<int>(word >> 6);
  uint32_t length = word & kLongTagLength;
  if (length == kLongTagLength) {
    tag.isLong = true;
    length = in.U32();
  }
  if (!in.ok() || in.left() < length) return {};
  tag.body = in.Take(length);
  tag.whole = bytes.first(in.at());
  return tag;
}

std::string Indented(const std::string& text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    if (end - at > 1) out += "  ";
    out.append(text, at, end - at);
    at = end;
  }
  return out;
}

Dumper::Dumper() : maker_(files_) {}

bool Dumper::Spent() const {
  return maker_.Used() > kSpent;
}

// Whether the text makes these bytes. If not, nothing is left of it.
bool Dumper::Makes(const std::string& text, std::span<const uint8_t> bytes) {
  const CharacterBook::Mark mark = maker_.characters().Now();
  try {
    const Bytes made = maker_.Feed(text);
    if (std::equal(made.begin(), made.end(), bytes.begin(), bytes.end())) return true;
  } catch (const SourceError&) {
    // Said in a way that the language does not know; a plainer one follows.
  }
  maker_.characters().GoBack(mark);
  return false;
}

std::string Dumper::RawTag(const FramedTag& tag) const {
  StatementText statement("tag " + std::to_string(tag.code));
  if (!tag.body.empty()) statement.Hex(Field::kBytes, tag.body);
  TagStream usual;
  usual.Tag(tag.code, tag.body);
  if (usual.bytes().size() != tag.whole.size())
    statement.Flag(tag.isLong ? Field::kLong : Field::kShort);
  std::string text = statement.Take() + "\n";
  if (const char* name = TagName(tag.code)) text = std::string("// ") + name + "\n" + text;
  return text;
}

std::string Dumper::DumpTag(const FramedTag& tag) {
  for (Manner manner : {Manner::kNice, Manner::kRecords}) {
    const std::optional<std::string> text = Say(tag, manner);
    if (text && Makes(*text, tag.whole)) return *text;
  }
  const std::string raw = RawTag(tag);
  Makes(raw, tag.whole);
  return raw;
}

std::optional<std::string> Dumper::DumpSprite(const FramedTag& tag, int level) {
  RecordReader in(tag.body);
  const uint16_t id = in.U16();
  const uint16_t frames = in.U16();
  if (!in.ok() || level >= kMaxLevels) return {};
  const CharacterBook::Mark mark = maker_.characters().Now();
  StatementText head(Head("sprite", id));
  // The head alone defines the name, as it will when the text is made.
  const std::string probe = head.Take() + " { noend }\n";
  try {
    maker_.Feed(probe);
  } catch (const SourceError&) {
    maker_.characters().GoBack(mark);
    return {};
  }
  const Printed inside = DumpTags(in.Rest(), level + 1);
  if (inside.frames != frames) head.Stored(Field::kFrames, {frames});
  if (tag.isLong != (tag.body.size() >= kLongTagLength)) head.Flag(Field::kLong);
  return head.Take() + " {\n" + Indented(inside.text) + "}\n";
}

void Dumper::FlushBare(int* bare, std::string* out) {
  if (*bare >= kManyBare) {
    *out += "repeat " + std::to_string(*bare) + " { frame }\n";
  } else {
    for (int i = 0; i < *bare; ++i) *out += "frame\n";
  }
  *bare = 0;
}

// Definitions at the front of a frame stand outside of its block.
void Dumper::FlushFrame(std::vector<Item>* items, bool ended, int number, int* bare,
                        std::string* out) {
  if (items->empty() && ended) {
    ++*bare;
    return;
  }
  FlushBare(bare, out);
  size_t at = 0;
  while (at < items->size() && (!ended || (*items)[at].outside)) *out += (*items)[at++].text;
  if (ended) {
    std::string inside, label;
    if (at < items->size() && (*items)[at].label) {
      const std::string& text = (*items)[at++].text;
      label = text.substr(5, text.size() - 6);  // behind "label"
    }
    for (; at < items->size(); ++at) inside += (*items)[at].text;
    *out += "frame" + label;
    if (!inside.empty()) *out += " {  // " + std::to_string(number) + "\n" + Indented(inside) + "}";
    *out += "\n";
  }
  items->clear();
}

Dumper::Printed Dumper::DumpTags(std::span<const uint8_t> bytes, int level) {
  // The maker adds an end tag unless one was said; so the last one is left out
  // if it is the only one.
  size_t ends = 0;
  bool endsLast = false;
  for (size_t at = 0;;) {
    const auto tag = FrameTag(bytes.subspan(at));
    if (!tag) {
      endsLast = endsLast && at == bytes.size();
      break;
    }
    endsLast = IsPlainEnd(*tag);
    if (tag->code == kTagEnd) ++ends;
    at += tag->whole.size();
  }
  const bool leaveEnd = ends == 1 && endsLast;

  Printed printed;
  std::vector<Item> items;
  bool saidEnd = leaveEnd;
  int number = 0, bare = 0;
  size_t at = 0;
  while (at < bytes.size()) {
    const auto tag = FrameTag(bytes.subspan(at));
    if (!tag || Spent()) {
      items.push_back({BytesStatement(bytes.subspan(at))});
      if (!saidEnd || leaveEnd) {
        items.push_back({"noend\n"});
        saidEnd = true;
      }
      at = bytes.size();
      break;
    }
    at += tag->whole.size();
    if (leaveEnd && at == bytes.size()) break;
    if (IsPlainFrameEnd(*tag)) {
      FlushFrame(&items, true, number++, &bare, &printed.text);
      ++printed.frames;
      continue;
    }
    Item item;
    item.outside = IsDefinition(tag->code) || tag->code == kTagBackgroundColor;
    std::optional<std::string> text;
    if (tag->code == kTagDefineSprite) text = DumpSprite(*tag, level);
    item.text = text ? *text : DumpTag(*tag);
    item.label = IsPlainLabel(*tag);
    if (tag->code == kTagFrameEnd) {
      ++printed.frames;
      ++number;
    }
    saidEnd = saidEnd || tag->code == kTagEnd;
    items.push_back(std::move(item));
  }
  if (!saidEnd) items.push_back({"noend\n"});
  FlushFrame(&items, false, number, &bare, &printed.text);
  return printed;
}

std::string Dumper::Run(std::span<const uint8_t> movie) {
  RecordReader in(movie);
  in.Take(3);
  const uint8_t version = in.U8();
  const uint32_t length = in.U32();
  int bits;
  const Rect bounds = in.ReadRect(&bits);
  const uint16_t rate = in.U16();
  const uint16_t frames = in.U16();
  if (!in.ok()) {
    // The movie ends inside its header.
    return StatementText("movie").Hex(Field::kBytes, movie).Take() + "\nnoend\n";
  }
  const Printed inside = DumpTags(in.Rest(), 0);
  StatementText head("movie");
  if (bounds.xmin == 0 && bounds.ymin == 0 && bounds.xmax >= 0 && bounds.ymax >= 0)
    head.Stored(Field::kSize, {bounds.xmax, bounds.ymax});
  else
    head.AddRect(Field::kBounds, bounds);
  head.Stored(Field::kRate, {rate});
  if (version != 4) head.Stored(Field::kVersion, {version});
  if (frames != inside.frames) head.Stored(Field::kFrames, {frames});
  if (length != movie.size()) head.Stored(Field::kLength, {length});
  head.Part("bounds", bits);
  MovieWriter usual(bounds, rate, version);
  usual.header().frameCount = frames;
  usual.header().declaredLength = length;
  usual.header().rectBits = bits;
  const Bytes made = usual.Finish();
  const auto header = movie.first(in.at());
  if (!std::equal(made.begin(), made.end(), header.begin(), header.end()))
    return StatementText("movie").Hex(Field::kBytes, header).Take() + "\n\n" + inside.text;
  return head.Take() + "\n\n" + inside.text;
}

std::string DumpMovie(std::span<const uint8_t> movie) {
  static constexpr uint8_t kSignature[] = {'V', 'X', 'F'};
  if (movie.size() < kHeaderBytes ||
      !std::equal(std::begin(kSignature), std::end(kSignature), movie.begin()))
    return {};
  return Dumper().Run(movie);
}

}  // namespace vexel::author
