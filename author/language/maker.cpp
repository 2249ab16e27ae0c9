// The statements of the language itself, and the names of characters.
#include "author/language/maker.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "author/importers.h"
#include "author/script/nearest.h"

namespace vexel::author {

namespace {

// Blocks that run inside each other, those of `use` and `include` too. Each
// costs the program's stack.
constexpr int kMaxRunDepth = 200;
constexpr size_t kMaxIncludes = 32;
// All texts of a movie together.
constexpr size_t kMaxSourceBytes = size_t{1} << 30;

}  // namespace

const Maker::Row Maker::kRows[] = {
    {"let", kAnywhere, &Maker::Let},
    {"repeat", kAnywhere, &Maker::Repeat},
    {"if", kAnywhere, &Maker::If},
    {"define", kAnywhere, &Maker::Define},
    {"use", kAnywhere, &Maker::Use},
    {"include", kAnywhere, &Maker::Include},
    {"movie", kInMovie, &Maker::Movie},
    {"frame", kAnywhere, &Maker::Frame},
    {"at", kAnywhere, &Maker::At},
    {"tween", kAnywhere, &Maker::Tween},
    {"place", kAnywhere, &Maker::PlaceCharacter},
    {"move", kAnywhere, &Maker::MoveObject},
    {"remove", kAnywhere, &Maker::RemoveObject},
    {"background", kAnywhere, &Maker::Background},
    {"label", kAnywhere, &Maker::Label},
    {"actions", kAnywhere, &Maker::Code},
    {"script", kAnywhere, &Maker::Code},
    {"free", kAnywhere, &Maker::Free},
    {"freeall", kAnywhere, &Maker::FreeAll},
    {"sync", kAnywhere, &Maker::Sync},
    {"end", kInMorph, &Maker::MorphEnd},
    {"end", kAnywhere, &Maker::EndTag},
    {"noend", kAnywhere, &Maker::NoEnd},
    {"tag", kAnywhere, &Maker::AnyTag},
    {"raw", kAnywhere, &Maker::RawBytes},
    {"shape", kAnywhere, &Maker::Shape},
    {"morph", kAnywhere, &Maker::Morph},
    {"picture", kAnywhere, &Maker::Picture},
    {"art", kAnywhere, &Maker::Art},
    {"jpegtables", kAnywhere, &Maker::JpegTables},
    {"sprite", kAnywhere, &Maker::Sprite},
    {"button", kAnywhere, &Maker::Button},
    {"buttoncolors", kAnywhere, &Maker::ButtonColors},
    {"font", kAnywhere, &Maker::FontCharacter},
    {"fontinfo", kAnywhere, &Maker::FontInfo},
    {"text", kAnywhere, &Maker::TextCharacter},
    {"edit", kAnywhere, &Maker::Edit},
    {"paint", kAnywhere, &Maker::Paint},
    {"pen", kAnywhere, &Maker::Pen},
    {"fill", kAnywhere, &Maker::Fill},
    {"fill0", kAnywhere, &Maker::Fill0},
    {"stroke", kAnywhere, &Maker::Stroke},
    {"layer", kAnywhere, &Maker::Layer},
    {"path", kAnywhere, &Maker::Path},
    {"rect", kAnywhere, &Maker::RectFigure},
    {"circle", kAnywhere, &Maker::Circle},
    {"ellipse", kAnywhere, &Maker::Ellipse},
    {"polygon", kAnywhere, &Maker::Polygon},
    {"line", kAnywhere, &Maker::OpenLine},
    {"change", kAnywhere, &Maker::Change},
    {"edge", kAnywhere, &Maker::Edge},
    {"curve", kAnywhere, &Maker::Curve},
    {"start", kAnywhere, &Maker::MorphStart},
    {"show", kAnywhere, &Maker::Show},
    {"on", kAnywhere, &Maker::On},
    {"color", kAnywhere, &Maker::ColorEntry},
    {"glyph", kAnywhere, &Maker::GlyphEntry},
    {"run", kAnywhere, &Maker::Run},
};

std::string DiskFiles::Locate(const std::string& beside, const std::string& named) {
  if (access(beside.c_str(), F_OK) == 0) return beside;
  for (const std::string& folder : folders_) {
    const std::string path = folder + "/" + named;
    if (access(path.c_str(), F_OK) == 0) return path;
  }
  return beside;
}

bool DiskFiles::Read(const std::string& path, size_t limit, std::string* bytes,
                     std::string* error) {
  std::vector<uint8_t> data;
  if (!ReadArtFile(path, &data, error)) return false;
  if (data.size() > limit) {
    *error = "too large";
    return false;
  }
  bytes->assign(data.begin(), data.end());
  return true;
}

bool MovieFiles::ReadFont(const std::string&, const std::string&, Font*, std::vector<std::string>*,
                          std::string* error) {
  *error = "no fonts are read here";
  return false;
}

bool NoFiles::Read(const std::string&, size_t, std::string*, std::string* error) {
  *error = "no files are read here";
  return false;
}

MadeMovie MakeMovie(const std::string& name, std::string text, MovieFiles& files) {
  return Maker(files).Make(name, std::move(text));
}

Maker::Maker(MovieFiles& files) : files_(files) {
  in_.SetOtherNames([this](const std::string& name) { return FindCharacter(name); });
  timelines_.push_back(std::make_unique<Timeline>());
}

MadeMovie Maker::Make(const std::string& name, std::string text) {
  made_.files.insert(name);
  units_.push_back(std::make_unique<SourceUnit>(name, std::move(text)));
  unitsByPath_[name] = units_.back().get();
  including_.push_back(name);
  in_.MoveTo({units_.back().get(), 0});
  while (in_.Peek().kind != TokenKind::kEnd) RunStatement(kInMovie);
  statementPlace_ = in_.Place();
  const Timeline& line = Line();
  try {
    made_.bytes = Header(line.Join(), line.Frames());
  } catch (const std::range_error& error) {
    in_.Fail(error.what());
  }
  return std::move(made_);
}

void Maker::RunStatement(uint8_t place) {
  if (in_.Peek().kind != TokenKind::kWord)
    in_.Fail("a statement is wanted here, not " + in_.Here());
  const Token& word = in_.Peek();
  const StatementInfo* statement = FindStatement(word.text, place);
  if (!statement) {
    Nearest nearest(word.text);
    for (const StatementInfo& known : Statements()) {
      if (known.places & place) nearest.Offer(known.word);
    }
    const bool elsewhere = FindStatement(word.text, kAnywhere) != nullptr;
    in_.Fail("'" + word.text + "' " +
             (elsewhere ? "does not belong here" : "is no statement" + nearest.Hint()));
  }
  statement_ = statement;
  place_ = place;
  statementPlace_ = in_.Place();
  const SourcePlace here = statementPlace_;
  const auto row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& known) {
    return word.text == known.word && (known.places & statement->places) == statement->places;
  });
  in_.Take();
  try {
    (this->*row->handler)();
  } catch (const std::range_error& error) {
    throw SourceError(here, error.what());
  }
}

void Maker::RunBlock(uint8_t place) {
  if (depth_ >= kMaxRunDepth) in_.Fail("more than 200 blocks run inside each other");
  in_.NeedSign("{");
  ++depth_;
  in_.OpenScope();
  while (!in_.AtSign("}")) RunStatement(place);
  in_.CloseScope();
  --depth_;
  in_.NeedSign("}");
}

// Passes a block without running it.
void Maker::SkipBlock() {
  if (!in_.AtBlock()) in_.Fail("a block in braces is wanted here, not " + in_.Here());
  const Evaluator::Cursor at = in_.cursor();
  in_.MoveTo({at.unit, in_.Peek().partner + 1});
}

Clauses Maker::ReadClauses() {
  Clauses clauses;
  clauses.Read(in_, *statement_, *this, place_);
  return clauses;
}

void Maker::Let() {
  const std::string name = in_.NeedName("a value").text;
  in_.NeedSign("=");
  in_.Define(name, in_.Expression());
}

void Maker::Repeat() {
  const uint8_t place = place_;
  const int64_t count = in_.Whole("the count", 0, 10'000'000);
  std::string name;
  if (in_.TakeWord("as")) name = in_.NeedName("the counter").text;
  const Evaluator::Cursor block = in_.cursor();
  SkipBlock();
  const Evaluator::Cursor behind = in_.cursor();
  for (int64_t i = 0; i < count; ++i) {
    in_.Work(1);
    in_.MoveTo(block);
    in_.OpenScope();
    if (!name.empty()) in_.Define(name, Value::Of(double(i)));
    RunBlock(place);
    in_.CloseScope();
  }
  in_.MoveTo(behind);
}

void Maker::If() {
  const uint8_t place = place_;
  bool yes = in_.Number("a condition") != 0;
  for (;;) {
    if (yes) {
      RunBlock(place);
      // Whatever else there is is passed.
      while (in_.TakeWord("else")) {
        if (in_.TakeWord("if")) in_.Number("a condition");
        SkipBlock();
      }
      return;
    }
    SkipBlock();
    if (!in_.TakeWord("else")) return;
    yes = !in_.TakeWord("if") || in_.Number("a condition") != 0;
  }
}

void Maker::Define() {
  const std::string name = in_.NeedName("a block").text;
  Macro macro;
  in_.NeedSign("(");
  if (!in_.AtSign(")")) {
    do {
      if (macro.names.size() == 32) in_.Fail("more than 32 names");
      macro.names.push_back(in_.NeedName("a value").text);
    } while (in_.TakeSign(","));
  }
  in_.NeedSign(")");
  macro.body = in_.cursor();
  SkipBlock();
  macros_[name] = std::move(macro);
}

void Maker::Use() {
  const uint8_t place = place_;
  const Token& name = in_.NeedName("a block");
  const auto found = macros_.find(name.text);
  if (found == macros_.end()) {
    Nearest nearest(name.text);
    for (const auto& known : macros_) nearest.Offer(known.first);
    throw SourceError(in_.PlaceOf(name), "'" + name.text + "' is not defined" + nearest.Hint());
  }
  const Macro macro = found->second;
  std::vector<Value> values;
  in_.NeedSign("(");
  for (size_t i = 0; i < macro.names.size(); ++i) {
    if (i > 0) in_.NeedSign(",");
    values.push_back(in_.Expression());
  }
  if (!in_.AtSign(")")) {
    in_.Fail("'" + found->first + "' takes " + std::to_string(macro.names.size()) +
             (macro.names.size() == 1 ? " value" : " values"));
  }
  in_.NeedSign(")");
  const Evaluator::Cursor behind = in_.cursor();
  in_.OpenScope();
  for (size_t i = 0; i < values.size(); ++i) in_.Define(macro.names[i], std::move(values[i]));
  in_.MoveTo(macro.body);
  RunBlock(place);
  in_.CloseScope();
  in_.MoveTo(behind);
}

std::string Maker::Beside(const std::string& path) const {
  if (!path.empty() && path[0] == '/') return path;
  const std::string& name = in_.cursor().unit->source.name();
  const size_t slash = name.rfind('/');
  const std::string beside = slash == std::string::npos ? path : name.substr(0, slash + 1) + path;
  return files_.Locate(beside, path);
}

std::string Maker::ReadFile(const std::string& path, const SourcePlace& place) {
  if (path.find('\0') != std::string::npos || path.empty())
    throw SourceError(place, "this is no file name");
  std::string bytes, error;
  if (!files_.Read(path, kMaxSourceFile, &bytes, &error))
    throw SourceError(place, path + " cannot be read: " + error);
  in_.Work(bytes.size() / 64 + 1);
  made_.files.insert(path);
  return bytes;
}

void Maker::Include() {
  const uint8_t place = place_;
  const SourcePlace at = in_.Place();
  const std::string path = Beside(in_.NeedText("the file"));
  if (std::find(including_.begin(), including_.end(), path) != including_.end())
    throw SourceError(at, path + " includes itself");
  if (including_.size() >= kMaxIncludes || depth_ >= kMaxRunDepth)
    throw SourceError(at, "too many texts include each other");
  const SourceUnit*& unit = unitsByPath_[path];
  if (!unit) {
    std::string text = ReadFile(path, at);
    sourceBytes_ += text.size();
    if (sourceBytes_ > kMaxSourceBytes) throw SourceError(at, "the texts are too long");
    units_.push_back(std::make_unique<SourceUnit>(path, std::move(text)));
    unit = units_.back().get();
  }
  const Evaluator::Cursor behind = in_.cursor();
  including_.push_back(path);
  in_.MoveTo({unit, 0});
  while (in_.Peek().kind != TokenKind::kEnd) RunStatement(place);
  including_.pop_back();
  in_.MoveTo(behind);
}

Bytes Maker::Feed(const std::string& text) {
  const SourceUnit unit("", text);
  in_.MoveTo({&unit, 0});
  in_.Count(unit.tokens.size());
  timelines_.push_back(std::make_unique<Timeline>());
  const size_t scopes = in_.ScopeCount();
  const auto close = [&] {
    std::unique_ptr<Timeline> line = std::move(timelines_.back());
    timelines_.pop_back();
    in_.CutScopes(scopes);
    shape_ = nullptr;
    morph_ = nullptr;
    button_ = nullptr;
    colors_ = nullptr;
    font_ = nullptr;
    text_ = nullptr;
    depth_ = 0;
    in_.MoveTo({});
    return line;
  };
  try {
    while (in_.Peek().kind != TokenKind::kEnd) RunStatement(kInTimeline);
  } catch (...) {
    close();
    throw;
  }
  return close()->cells[0].tags.bytes();
}

int32_t Maker::FindCharacter(const std::string& name) const {
  return characters_.Find(name);
}

// A character by its name or by a number.
uint16_t Maker::CharacterRef(const char* what) {
  if (in_.Peek().kind == TokenKind::kWord && !in_.Find(in_.Peek().text)) {
    const int32_t id = FindCharacter(in_.Peek().text);
    if (id < 0) {
      Nearest nearest(in_.Peek().text);
      for (const auto& known : characters_.all()) nearest.Offer(known.first);
      in_.Fail("no character is called '" + in_.Peek().text + "'" + nearest.Hint());
    }
    in_.Take();
    return static_cast<uint16_t>(id);
  }
  return static_cast<uint16_t>(in_.Whole(what, 0, 65535));
}

// The head of a definition: a name, with an id of its own if it likes, or = and
// an id alone, of which nothing is asked.
uint16_t Maker::NewCharacter() {
  if (in_.TakeSign("=") || in_.Peek().kind != TokenKind::kWord) {
    const auto id = static_cast<uint16_t>(in_.Whole("an id", 0, 65535));
    characters_.Use(id);
    return id;
  }
  const Token& name = in_.NeedName("a character");
  if (characters_.Find(name.text) >= 0)
    throw SourceError(in_.PlaceOf(name), "there is a character called '" + name.text + "' already");
  uint16_t id = characters_.Next();
  if (in_.TakeSign("=")) {
    const SourcePlace place = in_.Place();
    id = static_cast<uint16_t>(in_.Whole("an id", 0, 65535));
    if (const std::string* taken = characters_.NameOf(id))
      throw SourceError(place, "'" + *taken + "' has this id already");
  } else if (id == 0) {
    in_.Fail("more than 65531 characters");
  }
  characters_.Define(name.text, id);
  return id;
}

}  // namespace vexel::author
