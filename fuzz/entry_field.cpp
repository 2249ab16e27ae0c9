// Text fields with records and fonts of the input's making, on the root
// timeline and in a sprite, typed and clicked into while the movie is sought and
// its variables are written. After each step the fields must be whole, and a
// field that was typed into must agree with its variable.
#include <algorithm>
#include <cstring>
#include <memory>

#include "author/records.h"
#include "author/writer.h"
#include "entries.h"
#include "field_input.h"
#include "fuzz_player.h"
#include "player/text.h"
#include "text/clipboard.h"
#include "text/edit_text.h"

namespace vexel::fuzz {

namespace {

using namespace author;

enum : uint16_t { kFontId = 1, kSprite = 2, kBox = 3, kFirstField = 10 };

constexpr int kFrames = 5;

// A run ends after so many steps, or once it has gone through so many
// characters: each draw may lay out all texts, and each frame may read them
// anew from their variables.
constexpr int kMaxOps = 300;
constexpr int64_t kMaxCharacters = 8 << 20;

// The time of about a frame, in units of 10 milliseconds.
constexpr int kFrameTime = 8;
constexpr int kMaxWait = 32;

// Longer texts are no values of variables.
constexpr int32_t kSureValue = 1 << 18;

class Input {
 public:
  Input(const uint8_t* data, size_t size) : m_at(data), m_end(data + size) {}
  bool AtEnd() const { return m_at == m_end; }
  uint8_t Byte() { return AtEnd() ? 0 : *m_at++; }
  uint16_t Word() {
    const uint8_t low = Byte();
    return static_cast<uint16_t>(low | Byte() << 8);
  }
  std::span<const uint8_t> Take(size_t size) {
    const std::span<const uint8_t> bytes(m_at, std::min(size, static_cast<size_t>(m_end - m_at)));
    m_at += bytes.size();
    return bytes;
  }
  std::span<const uint8_t> Body() { return Take(Word()); }
  std::string Text() {
    const auto bytes = Take(Byte());
    const std::string text(bytes.begin(), bytes.end());
    return text.substr(0, text.find('\0'));
  }
  const char* Variable() { return kFieldVariables[Byte() % std::size(kFieldVariables)]; }

 private:
  const uint8_t* m_at;
  const uint8_t* m_end;
};

void TagWithId(TagStream* out, int code, uint16_t id, std::span<const uint8_t> body) {
  BitWriter tag;
  tag.U16(id);
  tag.Append(body);
  out->Tag(code, tag.bytes());
}

void DefineFonts(TagStream* out, Input* in, uint8_t fonts) {
  switch (fonts) {
    case kForm1:
      TagWithId(out, kTagDefineFont, kFontId, in->Body());
      TagWithId(out, kTagDefineFontInfo, kFontId, in->Body());
      break;
    case kForm2:
      TagWithId(out, kTagDefineFont2, kFontId, in->Body());
      break;
    default:
      out->DefineFont2(kFontId, BlockFont("_sans"));
      break;
  }
}

void DefineField(TagStream* out, Input* in, uint16_t id) {
  static constexpr Rect kBounds[] = {
      {0, 600, 0, 300}, {0, 1280, 0, 960}, {-200, 300, -100, 200},           {0, 600, 0, 0},
      {0, 0, 0, 300},   {0, 60, 0, 60},    {-100000, 100000, -50000, 50000}, {40, 20, 100, 50},
  };
  const Rect& bounds = kBounds[in->Byte() % std::size(kBounds)];
  const int repeats = in->Byte() % (2 * kMaxRepeats);
  const auto record = in->Body();
  BitWriter tag;
  tag.U16(id);
  WriteRect(tag, bounds);
  tag.Align();
  tag.Append(record);
  if (repeats < kMaxRepeats && !record.empty()) {
    tag.Append(Bytes(size_t{1} << repeats, record.back()));
  }
  out->Tag(kTagDefineEditText, tag.bytes());
}

// All fields on the root timeline and in the sprite "s". They go and come from
// frame to frame, and other characters take their places.
Bytes MakeMovie(Input* in, uint8_t fonts) {
  MovieWriter movie(kViewWidth, kViewHeight);
  DefineFonts(&movie, in, fonts);
  const auto count = static_cast<uint16_t>(1 + in->Byte() % kMaxFields);
  for (uint16_t i = 0; i < count; ++i) {
    DefineField(&movie, in, static_cast<uint16_t>(kFirstField + i));
  }
  ShapeBuilder box;
  box.Style(box.AddFill(Color{200, 40, 40})).Rectangle(Rect::Pixels(0, 0, 20, 20));
  movie.DefineShape(kBox, box);
  movie.DefineButton2(4, false, {{kButtonUp | kButtonOver | kButtonHit, kBox, 1, {}, {}}}, {});

  const auto place = [&](TagStream* out, uint16_t i, int32_t x, int32_t y) {
    out->Place(static_cast<uint16_t>(kFirstField + i % count), static_cast<uint16_t>(5 + i),
               Matrix::Translate(x, y));
  };
  TagStream sprite;
  place(&sprite, 0, 0, 0);
  sprite.FrameEnd();
  sprite.FrameLabel("v_changed").FrameActions(ActionBuilder().SetVariable("/:w", "changed"));
  sprite.FrameEnd().End();
  movie.DefineSprite(kSprite, sprite);

  movie.Place({.depth = 1, .character = kSprite, .name = "s"});
  movie.Place(4, 2, Matrix::Translate(900, 700));
  for (uint16_t i = 0; i < count; ++i) place(&movie, i, 200 * i, 300 * i);
  movie.FrameActions(ActionBuilder().Op(kActionStop)).FrameEnd();
  movie.Move(5, Matrix::Translate(30, 10)).FrameEnd();
  Placement other;
  other.depth = 5;
  other.character = static_cast<uint16_t>(kFirstField + count - 1);
  other.move = true;
  movie.Place(other).FrameLabel("w_changed");
  movie.FrameActions(ActionBuilder().GotoFrame(3).SetVariable("v", "w").GotoFrame(0)).FrameEnd();
  movie.RemoveObject(5).Place(kBox, 3).FrameEnd();
  movie.FrameLabel("/s:v_changed");
  place(&movie, 0, 0, 0);
  movie.FrameEnd().End();
  return movie.Finish();
}

bool IsIndex(int32_t index, const EditText& text) {
  return index >= 0 && index <= text.length;
}

void CheckFields(const DisplayList& display) {
  for (const EditText* text = display.texts; text; text = text->nextText) {
    if (!text->buffer) continue;
    if (text->length < 0 || text->buffer[text->length] != 0) __builtin_trap();
    if (!IsIndex(text->selectionAnchor, *text) || !IsIndex(text->selectionCursor, *text))
      __builtin_trap();
    if (text->object->editText != text) __builtin_trap();
  }
}

class Session {
 public:
  Session(FuzzPlayer* player, Input* in) : m_player(*player), m_in(*in) {
    SetClipboardPlatform({[](const char* text) { s_clip = text; },
                          [](SPlayer* player) { player->PasteText(s_clip.data(), ClipSize()); },
                          nullptr});
    s_clip.clear();
    EditText::m_insertMode = true;
  }
  ~Session() { SetClipboardPlatform({}); }

  void Run() {
    Draw();
    for (int i = 0; i < kMaxOps && !m_in.AtEnd() && m_characters < kMaxCharacters; ++i) {
      m_player.display.ResetTagBudget();
      Step(m_in.Byte() % kFieldOps);
      CheckFields(m_player.display);
    }
    Draw();
  }

 private:
  static int32_t ClipSize() { return static_cast<int32_t>(s_clip.size()); }

  SPOINT Point() {
    const int x = m_in.Byte();
    return {x % kViewWidth, m_in.Byte() % kViewHeight};
  }

  void Count(int times) {
    for (const EditText* text = m_player.display.texts; text; text = text->nextText) {
      m_characters += times * int64_t{1 + text->length};
    }
  }

  void Draw() {
    Count(1);
    m_player.Redraw();
    CheckFields(m_player.display);
  }

  void Key(int32_t code, int32_t modifiers) {
    WeakSlot<SObject> field(m_player.focus.Get());
    if (!m_player.HandleKeyDown(code, modifiers) || !field || field.Get() != m_player.focus.Get())
      return;
    const EditText* text = field->editText;
    if (!text || !text->variableName || text->length > kSureValue) return;
    // A path may lead nowhere, a dot to another field's lines, and a name that is
    // too long is no variable's.
    if (!*text->variableName || strpbrk(text->variableName, ":.")) return;
    if (strlen(text->variableName) > kSureValue) return;
    const std::unique_ptr<char[]> shown(text->GetBuffer());
    char* value = m_player.GetVariable(field->thread, text->variableName);
    if (shown && strcmp(shown.get(), value ? value : "") != 0) __builtin_trap();
    FreeStr(value);
  }

  void Step(int op) {
    switch (op) {
      case kOpKey: {
        const uint8_t code = m_in.Byte();
        Key(code, m_in.Byte() & 3);
        break;
      }
      case kOpCode:
        Key(static_cast<int16_t>(m_in.Word()), 0);
        break;
      case kOpDown: {
        const SPOINT pt = Point();
        m_down = true;
        m_player.MouseDown(&pt);
        break;
      }
      case kOpMove: {
        const SPOINT pt = Point();
        m_player.MouseMove(&pt, m_down);
        break;
      }
      case kOpUp: {
        const SPOINT pt = Point();
        m_down = false;
        m_player.MouseUp(&pt);
        break;
      }
      case kOpSet: {
        const char* name = m_in.Variable();
        m_player.SetVariable(&m_player, name, m_in.Text().c_str());
        break;
      }
      case kOpScroll: {
        const std::string name = m_in.Variable() + std::string(".scroll");
        const std::string line = std::to_string(static_cast<int8_t>(m_in.Byte()));
        m_player.SetVariable(&m_player, name.c_str(), line.c_str());
        break;
      }
      case kOpGet:
        for (const char* ending : {"", ".scroll", ".maxscroll"}) {
          FreeStr(m_player.GetVariable(&m_player, (m_in.Variable() + std::string(ending)).c_str()));
        }
        break;
      case kOpSeek:
        Count(1);
        m_player.GotoFrame(m_in.Byte() % kFrames);
        break;
      case kOpPlay:
        m_player.Play(false);
        for (int n = m_in.Byte() % kFrames; n > 0; --n) {
          Count(1);
          m_player.StepThreads();
        }
        break;
      case kOpBlink:
        m_player.BlinkCursor();
        break;
      case kOpPaste: {
        const std::string text = m_in.Text();
        m_player.PasteText(text.data(), static_cast<int32_t>(text.size()));
        break;
      }
      case kOpProperty: {
        ScriptThread* sprite = m_player.FindTarget(m_player.rootObject, "/s");
        const int32_t index = m_in.Byte() % 19;
        m_player.SetProperty(sprite, index, static_cast<int8_t>(m_in.Byte()));
        break;
      }
      case kOpView: {
        const uint8_t view = m_in.Byte();
        m_player.SetQuality((view & 1) != 0);
        m_player.Zoom(view & 2 ? 50 : 0);
        break;
      }
      case kOpWait: {
        const int time = m_in.Byte() % kMaxWait;
        Count(1 + time / kFrameTime);
        m_time += static_cast<uint32_t>(10 * time);
        m_player.PlayTo(m_time);
        break;
      }
      default:
        Draw();
        break;
    }
  }

  FuzzPlayer& m_player;
  Input& m_in;
  bool m_down = false;
  uint32_t m_time = 0;
  int64_t m_characters = 0;
  static inline std::string s_clip;
};

}  // namespace

void FuzzField(const uint8_t* data, size_t size) {
  Input in(data, size);
  const uint8_t fonts = in.Byte() % kFieldFontsCount;
  const Bytes movie = MakeMovie(&in, fonts);
  FuzzPlayer player;
  // Loading the built-in fonts is most of a run that has any use for them.
  if (fonts != kBuiltInFonts) player.fontState = FontState::kLoaded;
  player.PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()));
  player.PushDataComplete();
  Session(&player, &in).Run();
}

}  // namespace vexel::fuzz
