// Timelines: frames, what is placed in them, and the tags that stand for it.
#include <algorithm>

#include "author/language/maker.h"
#include "author/script/action_text.h"
#include "author/script/script.h"
#include "author/tag_kinds.h"

namespace vexel::author {

namespace {

constexpr uint32_t kMaxFrame = 65535;

const std::initializer_list<std::string_view> kPlacementParts = {
    "scale", "scalebits", "rotate", "rotatebits", "movebits", "colorflags", "colorbits"};

}  // namespace

Bytes Timeline::Join() const {
  BitWriter out;
  for (const Cell& cell : cells) {
    out.Append(cell.tags.bytes());
    if (cell.ended) out.U16(kTagFrameEnd << 6);
  }
  if (!hasEnd && !noEnd) out.U16(kTagEnd << 6);
  return out.Take();
}

int Timeline::Frames() const {
  int frames = 0;
  for (const Cell& cell : cells) frames += cell.tags.frames() + (cell.ended ? 1 : 0);
  return frames;
}

void Maker::CountOutput(size_t bytes) {
  output_ += bytes;
  if (output_ > kMaxMadeMovie) in_.Fail("the movie becomes larger than 512 MiB");
}

void Maker::Emit(int code, const Bytes& body, const Clauses& clauses) {
  TagForm form = TagForm::kAuto;
  if (clauses.Has(Field::kLong)) form = TagForm::kLong;
  if (clauses.Has(Field::kShort)) form = TagForm::kShort;
  CountOutput(body.size() + 6);
  if (clauses.Has(Field::kExtra)) {
    Bytes whole = body;
    const Bytes extra = clauses.BytesOf(Field::kExtra);
    CountOutput(extra.size());
    whole.insert(whole.end(), extra.begin(), extra.end());
    Tags().Tag(code, whole, form);
  } else {
    Tags().Tag(code, body, form);
  }
  if (code == kTagEnd) Line().hasEnd = true;
}

void Maker::EndFrame() {
  Timeline& line = Line();
  CountOutput(2);
  line.cells[line.current].ended = true;
  if (++line.current == line.cells.size()) {
    in_.Work(8);
    line.cells.emplace_back();
  }
}

void Maker::Movie() {
  if (header_ || timelines_.size() > 1) in_.Fail("there is a movie statement already");
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"bounds"});
  header_ = clauses;
  if (clauses.Has(Field::kBackground)) {
    BitWriter body;
    WriteColor(body, clauses.Get(Field::kBackground).color, false);
    Emit(kTagBackgroundColor, body, {});
  }
}

Bytes Maker::Header(const Bytes& tags, int frames) const {
  Rect bounds = Rect::Pixels(0, 0, 550, 400);
  int64_t rate = 12 << 8, version = 4;
  HeaderForm form;
  form.frameCount = frames;
  if (header_) {
    if (header_->Has(Field::kBytes)) {
      Bytes whole = header_->BytesOf(Field::kBytes);
      whole.insert(whole.end(), tags.begin(), tags.end());
      return whole;
    }
    if (header_->Has(Field::kSize)) {
      bounds = {0, static_cast<int32_t>(header_->Stored(Field::kSize, 0)), 0,
                static_cast<int32_t>(header_->Stored(Field::kSize, 1))};
    }
    if (header_->Has(Field::kBounds)) bounds = header_->ToRect(Field::kBounds);
    rate = header_->StoredOr(Field::kRate, rate);
    version = header_->StoredOr(Field::kVersion, version);
    form.frameCount = static_cast<int>(header_->StoredOr(Field::kFrames, frames));
    form.declaredLength = header_->StoredOr(Field::kLength, kAuto);
    form.rectBits = header_->Part("bounds");
  }
  MovieWriter movie(bounds, static_cast<uint16_t>(rate), static_cast<uint8_t>(version));
  movie.header() = form;
  movie.Raw(tags);
  return movie.Finish();
}

void Maker::Frame() {
  const uint8_t place = place_;
  if (in_.Peek().kind == TokenKind::kText) {
    BitWriter body;
    body.Text(in_.NeedText("a label"));
    Emit(kTagFrameLabel, body, {});
  }
  if (in_.AtBlock()) RunBlock(place);
  EndFrame();
}

void Maker::At() {
  const uint8_t place = place_;
  if (!in_.TakeWord("frame")) in_.Fail("'at frame NUMBER' is wanted");
  const auto frame = static_cast<size_t>(in_.Whole("the frame", 0, kMaxFrame));
  Timeline& line = Line();
  const size_t back = line.current;
  while (line.cells.size() <= frame) {
    CountOutput(2);
    in_.Work(8);
    line.cells.back().ended = true;
    line.cells.emplace_back();
  }
  line.current = frame;
  RunBlock(place);
  // What follows is another frame, unless the block ended it already.
  if (line.current + 1 == line.cells.size()) EndFrame();
  line.current = back;
}

void Maker::Tween() {
  const uint8_t place = place_;
  const int64_t count = in_.Whole("the count of frames", 1, kMaxFrame);
  std::string name;
  if (in_.TakeWord("as")) name = in_.NeedName("the counter").text;
  const Evaluator::Cursor block = in_.cursor();
  SkipBlock();
  const Evaluator::Cursor behind = in_.cursor();
  for (int64_t i = 0; i < count; ++i) {
    in_.MoveTo(block);
    in_.OpenScope();
    if (!name.empty())
      in_.Define(name, Value::Of(count == 1 ? 1.0 : double(i) / double(count - 1)));
    RunBlock(place);
    in_.CloseScope();
    EndFrame();
  }
  in_.MoveTo(behind);
}

void Maker::PlaceCharacter() {
  const uint16_t character = CharacterRef("a character");
  std::string handle;
  if (in_.TakeWord("as")) handle = in_.NeedName("what stands there").text;
  const Clauses clauses = ReadClauses();
  clauses.CheckParts(kPlacementParts);
  Timeline& line = Line();
  int64_t depth = clauses.StoredOr(Field::kDepth, line.highest + 1);
  if (depth > 65535) in_.Fail("depth is 0 to 65535, and all above are taken");
  line.highest = std::max(line.highest, static_cast<uint32_t>(depth));
  if (!handle.empty()) line.depths[handle] = static_cast<uint16_t>(depth);

  BitWriter body;
  if (clauses.StoredOr(Field::kForm, 2) == 1) {
    for (Field field : {Field::kRatio, Field::kClip, Field::kName, Field::kFlags}) {
      if (clauses.Has(field)) clauses.Fail(field, "form 1 does not hold this");
    }
    body.U16(character);
    body.U16(static_cast<uint32_t>(depth));
    WriteMatrix(body, clauses.ToMatrix(), clauses.ToMatrixForm());
    if (clauses.HasCxform()) WriteCxform(body, clauses.ToCxform(), false, clauses.ToCxformForm());
    Emit(kTagPlaceObject, body, clauses);
    return;
  }
  WritePlacement(body, clauses, static_cast<uint16_t>(depth), character, false);
  Emit(kTagPlaceObject2, body, clauses);
}

// The second form. The parts that are said are there.
void Maker::WritePlacement(BitWriter& body, const Clauses& clauses, uint16_t depth,
                           std::optional<uint16_t> character, bool move) {
  const bool clip = clauses.Has(Field::kClip), name = clauses.Has(Field::kName);
  // Players look for the depth in the name's own bytes.
  if (clip && name) clauses.Fail(Field::kClip, "a name and a clip depth do not go together");
  int64_t flags = clauses.StoredOr(Field::kFlags, 0);
  if (flags > 255) clauses.Fail(Field::kFlags, "flags is 0 to 255 here");
  if (move) flags |= kMoveFlag;
  if (character) flags |= kCharacterFlag;
  if (clauses.HasMatrix()) flags |= kMatrixFlag;
  if (clauses.HasCxform()) flags |= kCxformFlag;
  if (clauses.Has(Field::kRatio)) flags |= kRatioFlag;
  if (name) flags |= kNameFlag;
  if (clip) flags |= kClipFlag;
  body.U8(static_cast<uint32_t>(flags));
  body.U16(depth);
  if (character) body.U16(*character);
  if (clauses.HasMatrix()) WriteMatrix(body, clauses.ToMatrix(), clauses.ToMatrixForm());
  if (clauses.HasCxform()) WriteCxform(body, clauses.ToCxform(), true, clauses.ToCxformForm());
  if (clauses.Has(Field::kRatio)) body.U16(static_cast<uint32_t>(clauses.Stored(Field::kRatio)));
  if (name) body.Text(clauses.TextOf(Field::kName));
  if (clip) body.U16(static_cast<uint32_t>(clauses.Stored(Field::kClip)));
}

// A depth by number, or by the name that `place` gave it.
uint16_t Maker::Target(const char* what) {
  if (in_.Peek().kind == TokenKind::kWord) {
    const auto found = Line().depths.find(in_.Peek().text);
    if (found != Line().depths.end()) {
      in_.Take();
      return found->second;
    }
    if (!in_.Find(in_.Peek().text))
      in_.Fail("nothing was placed as '" + in_.Peek().text + "' in this timeline");
  }
  return static_cast<uint16_t>(in_.Whole(what, 0, 65535));
}

void Maker::MoveObject() {
  const uint16_t depth = Target("a depth");
  const Clauses clauses = ReadClauses();
  clauses.CheckParts(kPlacementParts);
  std::optional<uint16_t> character;
  if (clauses.Has(Field::kWith)) character = static_cast<uint16_t>(clauses.Stored(Field::kWith));
  BitWriter body;
  WritePlacement(body, clauses, depth, character, true);
  Emit(kTagPlaceObject2, body, clauses);
}

void Maker::RemoveObject() {
  const uint16_t depth = Target("a depth");
  const Clauses clauses = ReadClauses();
  const bool old = clauses.StoredOr(Field::kForm, 2) == 1;
  BitWriter body;
  if (old) {
    if (!clauses.Has(Field::kWith)) in_.Fail("form 1 takes `with CHARACTER`");
    body.U16(static_cast<uint32_t>(clauses.Stored(Field::kWith)));
  }
  body.U16(depth);
  Emit(old ? kTagRemoveObject : kTagRemoveObject2, body, clauses);
}

void Maker::Background() {
  const Color color = in_.ColorValue("the background");
  const Clauses clauses = ReadClauses();
  BitWriter body;
  WriteColor(body, color, false);
  Emit(kTagBackgroundColor, body, clauses);
}

void Maker::Label() {
  BitWriter body;
  body.Text(in_.NeedText("a label"));
  const Clauses clauses = ReadClauses();
  Emit(kTagFrameLabel, body, clauses);
}

// The block of actions whose word was just passed.
Bytes Maker::CodeBlock(bool script) {
  const Token& code = in_.Take();
  const SourceSlice slice = in_.SliceOf(code);
  in_.Work((slice.end - slice.begin) / 2);
  return script ? CompileScript(slice) : AssembleActions(slice);
}

void Maker::Code() {
  const bool script = std::string_view(statement_->word) == "script";
  const uint8_t place = place_;
  const StatementInfo* statement = statement_;
  const Bytes block = CodeBlock(script);
  if (place == kInButton) {
    ButtonBlock(block);
    return;
  }
  statement_ = statement;
  const Clauses clauses = ReadClauses();
  Emit(kTagFrameActions, block, clauses);
}

void Maker::Free() {
  BitWriter body;
  body.U16(CharacterRef("a character"));
  const Clauses clauses = ReadClauses();
  Emit(kTagFreeCharacter, body, clauses);
}

void Maker::FreeAll() {
  Emit(kTagFreeAll, Bytes(), ReadClauses());
}

void Maker::Sync() {
  Emit(kTagSyncFrame, Bytes(), ReadClauses());
}

void Maker::EndTag() {
  Emit(kTagEnd, Bytes(), ReadClauses());
}

void Maker::NoEnd() {
  Line().noEnd = true;
}

void Maker::AnyTag() {
  const auto code = static_cast<int>(in_.Whole("a tag's code", 0, kMaxTagCode));
  const Clauses clauses = ReadClauses();
  Emit(code, clauses.Has(Field::kBytes) ? clauses.BytesOf(Field::kBytes) : Bytes(), clauses);
}

void Maker::RawBytes() {
  const SourcePlace place = in_.Place();
  std::string bytes;
  if (!ParseHex(in_.NeedText("raw"), &bytes))
    throw SourceError(place, "raw takes pairs of hexadecimal digits");
  CountOutput(bytes.size());
  Tags().Raw(Bytes(bytes.begin(), bytes.end()));
}

void Maker::OpenSprite() {
  if (timelines_.size() > 60) in_.Fail("more than 60 sprites in each other");
  timelines_.push_back(std::make_unique<Timeline>());
}

void Maker::CloseSprite(uint16_t id, const Clauses& clauses) {
  const std::unique_ptr<Timeline> line = std::move(timelines_.back());
  timelines_.pop_back();
  BitWriter body;
  body.U16(id);
  body.U16(static_cast<uint32_t>(clauses.StoredOr(Field::kFrames, line->Frames())));
  body.Append(line->Join());
  Emit(kTagDefineSprite, body, clauses);
}

void Maker::Sprite() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  OpenSprite();
  RunBlock(kInTimeline);
  CloseSprite(id, clauses);
}

}  // namespace vexel::author
