// The pass over the tags: header, framing, and which record is read how.
#include "author/check/check.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "author/check/checker.h"

namespace vexel::author {

namespace {

constexpr size_t kHeaderBytes = 8;
// A player reads the rest of the header only when this much is there.
constexpr size_t kHeaderNeeds = 19;
constexpr size_t kMaxFindings = 10000;
// Sprites in sprites. Players take a sprite's tags in a sprite for what they
// are, but nothing is meant by it.
constexpr int kMaxDepth = 50;

constexpr uint16_t kFirstSystemId = 65532;

}  // namespace

const char* FindingKindName(FindingKind kind) {
  static constexpr const char* kNames[] = {"damaged", "unknown", "unsupported", "unreachable",
                                           "wasteful"};
  static_assert(std::size(kNames) == kFindingKinds);
  return kNames[static_cast<size_t>(kind)];
}

std::string Count(uint64_t count, const char* noun) {
  std::string text = std::to_string(count);
  text.append(" ").append(noun);
  if (count != 1) text += 's';
  return text;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

void Checker::Add(FindingKind kind, size_t at, int32_t code, std::string reason) {
  ++result_.counts[static_cast<size_t>(kind)];
  if (result_.findings.size() >= kMaxFindings) return;
  result_.findings.push_back({kind, at, code, std::move(reason)});
}

void Checker::Add(FindingKind kind, const Tag& tag, std::string reason) {
  Add(kind, tag.at, tag.code, std::move(reason));
}

void Checker::Damaged(const Tag& tag, std::string reason) {
  Add(FindingKind::kDamaged, tag, std::move(reason));
}

CheckResult Checker::Run() {
  Timeline root = {movie_.size(), kRoot};
  size_t at = 0;
  if (Header(&at, &root.declared)) {
    root.end = movie_.size();
    Tags(at, &root);
    JudgeUses();
    JudgeReach();
    JudgeLabels();
  }
  std::stable_sort(result_.findings.begin(), result_.findings.end(),
                   [](const Finding& a, const Finding& b) { return a.offset < b.offset; });
  return std::move(result_);
}

// Cuts movie_ to its declared length.
bool Checker::Header(size_t* firstTag, uint32_t* frames) {
  const auto damaged = [this](size_t at, std::string reason) {
    Add(FindingKind::kDamaged, at, -1, std::move(reason));
    return false;
  };
  if (movie_.size() < kHeaderBytes) return damaged(0, "the header of 8 bytes is cut short");
  if (std::memcmp(movie_.data(), "VXF", 3) != 0) return damaged(0, "it does not begin with VXF");
  TagReader in(movie_.subspan(4), 4);
  const uint32_t length = in.U32();
  if (length < kHeaderBytes) return damaged(4, "the length it declares is below 8");
  if (length > movie_.size()) {
    damaged(4,
            "it declares " + Count(length, "byte") + " and has " + std::to_string(movie_.size()));
  } else if (length < movie_.size()) {
    Add(FindingKind::kUnreachable, length, -1,
        Count(movie_.size() - length, "byte") + " behind the length that the header declares");
    movie_ = movie_.first(length);
  }
  if (movie_.size() < kHeaderNeeds) {
    return damaged(8, "it has fewer than 19 bytes, so no player reads its frame and rate");
  }
  try {
    in = TagReader(movie_.subspan(kHeaderBytes), kHeaderBytes);
    in.Reading("the movie's frame, rate and frame count");
    in.Rect();
    const int64_t wasted = in.wastedBits();
    if (wasted >= 8) {
      Add(FindingKind::kWasteful, 8, -1,
          "the fields of the frame are " + Count(static_cast<uint64_t>(wasted), "bit") +
              " wider than their values");
    }
    if (in.U16() == 0) damaged(in.at() - 2, "the frame rate is 0");
    *frames = in.U16();
  } catch (const CutShort& cut) {
    return damaged(cut.at, std::string("the movie ends in ") + cut.what);
  }
  *firstTag = in.at();
  return true;
}

std::optional<Checker::Tag> Checker::ReadTag(size_t at, size_t end) {
  TagReader in(movie_.subspan(at, end - at), at);
  try {
    in.Reading("the header of a tag");
    const uint32_t word = in.U16();
    uint32_t length = word & kLongTagLength;
    const bool isLong = length == kLongTagLength;
    const auto code = static_cast<int32_t>(word >> 6);
    if (isLong) length = in.U32();
    if (length > in.left()) {
      Add(FindingKind::kDamaged, at, code,
          "the tag declares " + Count(length, "byte") + ", " + std::to_string(in.left()) +
              " are left");
      return std::nullopt;
    }
    const size_t body = in.at();
    return Tag{code, at, isLong, TagReader(movie_.subspan(body, length), body)};
  } catch (const CutShort&) {
    Add(FindingKind::kDamaged, at, -1,
        in.left() + in.pos() == 0 ? "the tags end without an end tag"
                                  : "the tags end inside the header of a tag");
    return std::nullopt;
  }
}

void Checker::Tags(size_t at, Timeline* timeline) {
  const size_t begin = at;
  bool ended = false;
  while (!ended) {
    std::optional<Tag> tag = ReadTag(at, timeline->end);
    if (!tag) break;
    at = tag->body.at() + tag->body.size();
    ended = tag->code == kTagEnd;
    OneTag(*tag, timeline);
  }
  if (ended && at < timeline->end) BehindEnd(at, timeline->end);
  if (ended && timeline->frames != timeline->declared) {
    Add(FindingKind::kDamaged, begin - 2,
        timeline->owner == kRoot ? -1 : static_cast<int32_t>(kTagDefineSprite),
        "the frame count says " + std::to_string(timeline->declared) + ", the tags make " +
            Count(timeline->frames, "frame"));
  }
}

void Checker::BehindEnd(size_t at, size_t end) {
  size_t tags = 0;
  size_t next = at;
  while (end - next >= 2) {
    TagReader in(movie_.subspan(next, end - next), next);
    uint32_t length = in.U16() & kLongTagLength;
    if (length == kLongTagLength) {
      if (in.left() < 4) break;
      length = in.U32();
    }
    if (length > in.left()) break;
    next = in.at() + length;
    ++tags;
  }
  const std::string bytes = Count(end - at, "byte");
  Add(FindingKind::kUnreachable, at, -1,
      next == end ? Count(tags, "tag") + " of " + bytes + " behind the end tag"
                  : bytes + " behind the end tag");
}

void Checker::OneTag(Tag tag, Timeline* timeline) {
  const size_t size = tag.body.size();
  if (IsBitmapTag(tag.code)) {
    if (!tag.isLong) Damaged(tag, "bitmaps need the long form of the header; players go astray");
  } else if (tag.isLong && size < kLongTagLength) {
    Add(FindingKind::kWasteful, tag,
        "the header has the long form for a body of " + Count(size, "byte"));
  }
  if (!FindTagInfo(tag.code)) {
    Add(FindingKind::kUnknown, tag, "players step over the code " + std::to_string(tag.code));
    return;
  }
  try {
    Records(&tag, timeline);
    const int64_t wasted = tag.body.wastedBits();
    if (wasted >= 8) {
      Add(FindingKind::kWasteful, tag,
          "fields are " + Count(static_cast<uint64_t>(wasted), "bit") + " wider than their values");
    }
    if (tag.body.left() > 0) {
      Add(FindingKind::kWasteful, tag, Count(tag.body.left(), "byte") + " behind the record");
    }
  } catch (const CutShort& cut) {
    Damaged(tag, std::string("the tag ends in ") + cut.what + " at byte " + std::to_string(cut.at));
  }
}

void Checker::Records(Tag* tag, Timeline* timeline) {
  TagReader& in = tag->body;
  if (IsDefinitionTag(tag->code)) {
    const uint16_t id = Define(tag);
    switch (tag->code) {
      case kTagDefineShape:
      case kTagDefineShape2:
      case kTagDefineShape3:
        return Shape(tag, id);
      case kTagDefineMorphShape:
        return Morph(tag, id);
      case kTagDefineButton:
        return Button(tag, id);
      case kTagDefineButton2:
        return Button2(tag, id);
      case kTagDefineFont:
        return Font(tag, id);
      case kTagDefineFont2:
        return Font2(tag, id);
      case kTagDefineText:
      case kTagDefineText2:
        return Text(tag, id);
      case kTagDefineEditText:
        return EditText(tag, id);
      case kTagDefineSprite:
        return Sprite(tag, id);
      default:
        return Bitmap(tag);
    }
  }
  switch (tag->code) {
    case kTagFrameEnd:
      ++timeline->frames;
      return;
    case kTagFreeCharacter: {
      const auto id = static_cast<uint16_t>(in.U16());
      const auto found = characters_.find(id);
      if (found == characters_.end()) {
        Damaged(*tag, "character " + std::to_string(id) + " is freed and was never defined");
      } else {
        found->second.freedAt = tag->at;
      }
      return;
    }
    case kTagPlaceObject:
      return Place(tag, timeline->owner);
    case kTagPlaceObject2:
      return Place2(tag, timeline->owner);
    case kTagRemoveObject:
      in.Take(4);
      return;
    case kTagRemoveObject2:
      in.Take(2);
      return;
    case kTagDefineJPEGTables: {
      const auto tables = in.Take(in.left());
      if (jpegTables_) {
        Add(FindingKind::kUnreachable, *tag, "only the first tables of the movie are used");
      } else {
        jpegTables_ = tables;
      }
      return;
    }
    case kTagBackgroundColor:
      in.Take(3);
      return;
    case kTagFrameActions: {
      const size_t at = in.at();
      Actions(*tag, in.Take(in.left()), at);
      return;
    }
    case kTagFrameLabel: {
      in.Reading("the text of a label");
      labels_.push_back({Lower(in.Text()), tag->at});
      return;
    }
    case kTagDefineFontInfo: {
      const auto id = static_cast<uint16_t>(in.U16());
      Use(*tag, UseKind::kFontInfo, id, kRoot);
      in.Reading("the font's name");
      in.Take(in.U8());
      in.Reading("the font's flags");
      in.U8();
      in.Take(in.left());  // codes, as many as the font has glyphs
      return;
    }
    case kTagDefineButtonExtra: {
      Use(*tag, UseKind::kButtonExtra, static_cast<uint16_t>(in.U16()), kRoot);
      in.Reading("the colour transforms");
      while (in.left() > 0) in.Cxform(false);
      return;
    }
    case kTagSyncFrame:
    case kTagFreeAll:
      Add(FindingKind::kUnsupported, *tag, "only movies that are sent piece by piece have this");
      in.Take(in.left());
      return;
    default:
      return;  // the end tag
  }
}

uint16_t Checker::Define(Tag* tag) {
  tag->body.Reading("the character's id");
  const auto id = static_cast<uint16_t>(tag->body.U16());
  tag->body.Reading("the record");
  if (id >= kFirstSystemId) {
    Damaged(*tag, "the id " + std::to_string(id) + " belongs to the player");
  }
  const auto [it, isNew] = characters_.emplace(id, Character());
  Character& character = it->second;
  if (!isNew && character.freedAt == 0) {
    Damaged(*tag, "character " + std::to_string(id) + " is defined a second time; the first, at " +
                      "byte " + std::to_string(character.at) + ", stays");
    return id;
  }
  const size_t firstAt = isNew ? tag->at : character.firstAt;
  character = Character();
  character.at = tag->at;
  character.firstAt = firstAt;
  character.code = tag->code;
  character.bytes = tag->body.at() - tag->at + tag->body.left();
  return id;
}

void Checker::Use(const Tag& tag, UseKind kind, uint16_t id, int32_t owner, int32_t glyph) {
  const auto found = characters_.find(id);
  if (kind == UseKind::kPlace && owner == kRoot && found != characters_.end() &&
      found->second.freedAt != 0) {
    Damaged(tag, "character " + std::to_string(id) + " is placed after it was freed");
  }
  uses_.push_back({kind, id, owner, tag.at, tag.code, glyph});
}

void Checker::Sprite(Tag* tag, uint16_t id) {
  TagReader& in = tag->body;
  in.Reading("the frame count");
  Timeline timeline = {in.at() + in.left(), id};
  timeline.declared = in.U16();
  if (depth_ >= kMaxDepth) {
    Damaged(*tag, "sprites are defined in sprites more than 50 deep");
  } else {
    ++depth_;
    Tags(in.at(), &timeline);
    --depth_;
  }
  in.Take(in.left());
}

void Checker::Place(Tag* tag, int32_t owner) {
  TagReader& in = tag->body;
  const auto id = static_cast<uint16_t>(in.U16());
  in.U16();
  in.Reading("the matrix");
  in.Matrix();
  in.Reading("the colour transform");
  if (in.left() > 0) in.Cxform(false);
  Use(*tag, UseKind::kPlace, id, owner);
}

void Checker::Place2(Tag* tag, int32_t owner) {
  enum : uint32_t { kCharacter = 2, kMatrix = 4, kCxform = 8, kRatio = 16, kName = 32, kClip = 64 };
  TagReader& in = tag->body;
  const uint32_t flags = in.U8();
  in.U16();
  if (flags & kCharacter) Use(*tag, UseKind::kPlace, static_cast<uint16_t>(in.U16()), owner);
  in.Reading("the matrix");
  if (flags & kMatrix) in.Matrix();
  in.Reading("the colour transform");
  if (flags & kCxform) in.Cxform(true);
  in.Reading("the ratio");
  if (flags & kRatio) in.U16();
  if (flags & kName && flags & kClip) {
    // Required: the name does not move the place where the clip depth is read.
    Add(FindingKind::kUnsupported, *tag, "the clip depth is read from the first bytes of the name");
  }
  if (flags & kName) {
    in.Reading("the name");
    in.Text();
  } else if (flags & kClip) {
    in.Reading("the clip depth");
    in.U16();
  }
  if (flags & 0x80) {
    Add(FindingKind::kUnknown, *tag, "the flag 0x80 means nothing in a movie");
  }
  if (flags & kName && flags & kClip) in.Take(std::min<size_t>(in.left(), 2));
}

CheckResult CheckMovie(std::span<const uint8_t> movie) {
  return Checker(movie).Run();
}

}  // namespace vexel::author
