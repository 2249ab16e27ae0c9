// fields_agree [FIRST COUNT [STEPS]]
// Plays random movies of text fields with the player and with the model, gives
// both the same keys, clicks, drags, variables and seeks, and compares after
// each step the picture, byte by byte, and every field's text, selection and
// scroll position.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "field.h"
#include "field_movie.h"
#include "movie_bits.h"
#include "player/text.h"
#include "render.h"
#include "text/built_in_fonts.h"
#include "text/edit_text.h"
#include "tools/headless_player.h"

namespace {

using vexel::model::FieldMovie;
using vexel::model::Object;
using vexel::model::Random;
using vexel::tools::HeadlessPlayer;
using vexel::tools::MovieFile;
using vexel::tools::ViewOptions;

// What the steps met, so that a run that tests nothing shows.
struct Met {
  long focus = 0, selection = 0, button = 0, frame = 0;
} met;

struct Case {
  Case(uint64_t s, const FieldMovie& movie, const MovieFile& file, const ViewOptions& view)
      : seed(s),
        names(movie.names),
        codes(movie.codes),
        frames(movie.frames),
        r(s ^ 0xF1E1D5),
        player(file, view),
        model(file.bytes, {view.width, view.height, view.highQuality, view.pixelFormat}) {}

  bool Run(int steps);

 private:
  uint64_t seed;
  std::vector<std::string> names;
  std::vector<int> codes;
  int frames;
  Random r;
  HeadlessPlayer player;
  vexel::model::Player model;
  uint32_t now = vexel::tools::kFirstTick;
  int step = 0;
  std::string did;
  vexel::model::Point at, lastPress;
  bool pressed = false;

  bool Fail(const std::string& what) const {
    std::printf("seed %llu step %d (%s): %s\n", static_cast<unsigned long long>(seed), step,
                did.c_str(), what.c_str());
    return false;
  }
  bool SamePicture() const;
  bool SameFields() const;
  bool SameTree(const vexel::SObject* is, const Object* model, const std::string& path) const;
  bool SameNumber(const char* name, int32_t is, int32_t want, const std::string& where) const {
    if (is == want) return true;
    return Fail(std::string(name) + " is " + std::to_string(is) + ", model " +
                std::to_string(want) + ": " + where);
  }
  void Act();
  void Key();
  void Mouse();
  void Variable();
  std::string Text();
};

std::string Shown(const std::string& s) {
  std::string out = "\"";
  for (char c : s) {
    if (c >= ' ' && c < 127) {
      out += c;
    } else {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02x", static_cast<uint8_t>(c));
      out += hex;
    }
  }
  return out + '"';
}

// What the model's field stands on, for who looks into a difference.
std::string Described(const vexel::model::Field& f) {
  std::string out = " [text " + Shown(f.GetBuffer()) + " flags " + std::to_string(f.flags) +
                    " align " + std::to_string(f.align) + " lines";
  for (int start : f.lineStarts) out += ' ' + std::to_string(start);
  out += " widths";
  for (int w : f.widths) out += ' ' + std::to_string(w);
  return out + " anchor " + std::to_string(f.anchor) + " cursor " + std::to_string(f.cursor) +
         " vscroll " + std::to_string(f.vscroll) + " hscroll " + std::to_string(f.hscroll) +
         " visible " + std::to_string(f.VisibleLines()) + " line height " +
         std::to_string(f.lineHeight) + " width " +
         std::to_string(f.textRect.xmax - f.textRect.xmin) + ']';
}

bool Case::SamePicture() const {
  const vexel::model::Buffer& b = model.Bits();
  for (int y = 0; y < b.height; ++y) {
    const uint8_t* p = player.bits.baseAddr + y * player.bits.rowBytes;
    const uint8_t* q = b.bytes.data() + y * b.rowBytes;
    for (int i = 0; i < b.rowBytes; ++i) {
      if (p[i] != q[i])
        return Fail("byte " + std::to_string(i) + " of row " + std::to_string(y) + " is " +
                    std::to_string(p[i]) + ", model " + std::to_string(q[i]));
    }
  }
  return true;
}

bool Case::SameTree(const vexel::SObject* is, const Object* want, const std::string& path) const {
  if (!is->editText != !want->field) return Fail(path + ": a field is missing");
  if (want->field) {
    const vexel::EditText& a = *is->editText;
    const vexel::model::Field& b = *want->field;
    char* text = is->editText->GetBuffer();
    const std::string got = text ? text : "";
    delete[] text;
    if (got != b.GetBuffer())
      return Fail(path + ": text is " + Shown(got) + ", model " + Shown(b.GetBuffer()) + " of " +
                  b.variable);
    const std::string where = path + " anchor " + std::to_string(a.selectionAnchor) + " cursor " +
                              std::to_string(a.selectionCursor) + Described(b);
    if (!SameNumber("drawn", a.drawn, b.drawn, where) ||
        !SameNumber("anchor", a.selectionAnchor, b.anchor, where) ||
        !SameNumber("cursor", a.selectionCursor, b.cursor, where) ||
        !SameNumber("atLineEnd", a.atLineEnd, b.atLineEnd, where) ||
        !SameNumber("selecting", a.selecting, b.selecting, where) ||
        !SameNumber("hscroll", a.hscroll, b.hscroll, where) ||
        !SameNumber("vscroll", a.vscroll, b.vscroll, where) ||
        !SameNumber("focus", player.focus.Get() == is, want->stage->focus == want, where))
      return false;
    if (b.drawn && !SameNumber("lineCount", a.lineCount, b.lineCount, where)) return false;
  }
  const vexel::SObject* x = is->firstChild;
  const Object* y = want->firstChild;
  for (; x && y; x = x->next, y = y->next) {
    if (!SameTree(x, y, path + '.' + std::to_string(y->depth))) return false;
  }
  if (!x != !y) return Fail(path + ": other children");
  return true;
}

// The timelines' variables, and what scripts read of scrolling.
bool Case::SameFields() const {
  HeadlessPlayer& p = const_cast<HeadlessPlayer&>(player);
  Object* const root = const_cast<vexel::model::Player&>(model).TheStage().root.firstChild;
  if (!SameTree(&player.display.root, root->parent, "")) return false;
  vexel::model::Thread* const thread = root->thread;
  for (const char* name : {"a", "b", "c", "Msg", "x1", "d"}) {
    char* is = p.GetVariable(&p, name);
    const std::string* want = thread->FindVariable(name);
    const std::string got = is ? is : "";
    const bool have = is != nullptr;
    vexel::FreeStr(is);
    if (have != (want != nullptr) || (want && got != *want))
      return Fail(std::string("variable ") + name + " is " + Shown(got) + ", model " +
                  (want ? Shown(*want) : "missing"));
    for (int mode = 0; mode <= 2; mode += 2) {
      int32_t a = -1, b = -1;
      const bool x = p.display.root.ScrollEditText(&p, name, mode, a);
      const bool y = root->parent->ScrollField(thread, name, mode, b);
      if (x != y || a != b)
        return Fail(std::string(mode ? "maxscroll of " : "scroll of ") + name + " is " +
                    std::to_string(a) + ", model " + std::to_string(b));
    }
  }
  return true;
}

std::string Case::Text() {
  std::string s;
  for (int n = r.Int(0, 14); n > 0; --n) {
    const int c = r.Chance(15)  ? ' '
                  : r.Chance(5) ? 13
                  : r.Chance(3)
                      ? 10
                      : codes[static_cast<size_t>(r.Int(0, static_cast<int>(codes.size()) - 1))];
    s += static_cast<char>(c & 255 ? c : 1);
  }
  return s;
}

void Case::Key() {
  // The keys of a framed button belong to the buttons; only tab leaves it.
  const bool framed = !player.focus.Get() && !model.TheStage().tabFocus.Empty();
  int key = r.Chance(45) ? r.Int(1, 17) : r.Chance(10) ? 18 : 32;
  if (key == 32) {
    key = r.Chance(75)   ? codes[static_cast<size_t>(r.Int(0, static_cast<int>(codes.size()) - 1))]
          : r.Chance(50) ? (r.Chance(50) ? 32 : 45)
          : r.Chance(80) ? r.Int(33, 126)
                         : r.Int(-96, -1);
  }
  if (framed) key = 18;
  const int modifiers = r.Chance(60) ? 0 : r.Int(0, 3);
  did = "key " + std::to_string(key) + " with " + std::to_string(modifiers);
  const bool is = player.HandleKeyDown(key, modifiers) != 0;
  const bool want = model.HandleKeyDown(key, modifiers);
  if (is != want) did += is ? " taken by the player only" : " taken by the model only";
}

void Case::Mouse() {
  const int kind = r.Int(0, 9);
  if (kind < 8) {
    if (r.Chance(70)) {
      at = {r.Int(0, player.bits.width), r.Int(0, player.bits.height)};
    } else if (r.Chance(50)) {
      at = {r.Int(-30, player.bits.width + 30), r.Int(-30, player.bits.height + 30)};
    } else {
      at.x += r.Int(-6, 6);
      at.y += r.Int(-6, 6);
    }
  } else {
    at = lastPress;
  }
  const vexel::SPOINT pt = {at.x, at.y};
  const std::string where = std::to_string(at.x) + ", " + std::to_string(at.y);
  const int what = pressed ? r.Int(3, 9) : r.Int(0, 4);
  if (what < 4 && !(pressed && what == 3)) {
    did = "press at " + where;
    player.MouseDown(&pt);
    model.MouseDown(at, now);
    lastPress = at;
    pressed = true;
  } else if (what < 7) {
    did = "move to " + where;
    player.MouseMove(&pt, pressed);
    model.MouseMove(at, pressed, now);
  } else {
    did = "release at " + where;
    player.MouseUp(&pt);
    model.MouseUp(at, now);
    pressed = false;
  }
}

void Case::Variable() {
  std::string name = names[static_cast<size_t>(r.Int(0, static_cast<int>(names.size()) - 1))];
  const size_t colon = name.find(':');
  if (colon != std::string::npos) name = name.substr(colon + 1);
  if (name.empty()) return;
  vexel::model::Thread* const thread = model.TheStage().root.firstChild->thread;
  if (r.Chance(60)) {
    const std::string value = Text();
    const bool force = r.Chance(60);
    did = "set " + name + " to " + Shown(value) + (force ? " by force" : "");
    player.SetVariable(&player, name.c_str(), value.c_str(), force);
    thread->SetVariable(name, value, force);
  } else {
    int32_t a = r.Int(-1, 6), b = a;
    did = "scroll " + name + " to " + std::to_string(a);
    player.display.root.ScrollEditText(&player, name.c_str(), 1, a);
    model.TheStage().root.ScrollField(thread, name, 1, b);
    if (a != b) did += " gives " + std::to_string(a) + ", model " + std::to_string(b);
  }
}

void Case::Act() {
  const int kind = r.Int(0, 99);
  const bool busy = player.focus.Get() != nullptr;
  if (kind < (busy ? 55 : 8)) {
    Key();
  } else if (kind < 80) {
    Mouse();
  } else if (kind < 86) {
    Variable();
  } else if (kind < 91) {
    did = "blink";
    player.BlinkCursor();
    model.BlinkCursor();
  } else if (kind < 95) {
    did = "step";
    player.Step(1);
    model.Step();
  } else if (kind < 97) {
    const int frame = r.Int(0, frames - 1);
    did = "seek " + std::to_string(frame);
    player.DrawFrame(frame, true);
    model.Seek(frame);
  } else {
    did = "wait";
    const uint32_t ms = static_cast<uint32_t>(r.Chance(40) ? r.Int(498, 501) : r.Int(1, 700));
    vexel::tools::AdvanceTick(ms);
    now += ms;
  }
}

bool Case::Run(int steps) {
  did = "start";
  player.display.InvalidateRect(&player.display.devViewRect);
  for (step = 0; step <= steps; ++step) {
    if (step > 0) Act();
    if (did.find("model") != std::string::npos) return Fail("");
    if (step == 0 || !r.Chance(20)) {
      player.Redraw();
      model.Redraw();
      if (!SamePicture()) return false;
    }
    if (!SameFields()) return false;
    const vexel::model::Stage& stage = model.TheStage();
    met.focus += stage.focus != nullptr;
    met.selection += stage.focus && stage.focus->field->drawn &&
                     stage.focus->field->anchor != stage.focus->field->cursor;
    met.button += stage.button != nullptr;
    met.frame += !stage.tabFocus.Empty();
  }
  return true;
}

bool Compare(uint64_t seed, int steps) {
  const FieldMovie movie = vexel::model::MakeFieldMovie(seed);
  MovieFile file;
  file.path = "random";
  file.bytes = movie.bytes;
  file.width = movie.width;
  file.height = movie.height;
  ViewOptions view;
  view.width = movie.width;
  view.height = movie.height;
  if (seed % 5 == 3) {
    view.width = 20 + static_cast<int>(seed / 5 % 120);
    view.height = 20 + static_cast<int>(seed / 11 % 90);
  }
  view.highQuality = seed % 2 == 0;
  view.pixelFormat = seed % 7 == 1 ? static_cast<int>(seed / 7 % 9) : vexel::pix32;
  vexel::EditText::m_insertMode = vexel::model::Field::insertMode = true;
  return Case(seed, movie, file, view).Run(steps);
}

}  // namespace

int main(int argc, char** argv) {
  const uint64_t first = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1;
  const uint64_t count = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 200;
  const int steps = argc > 3 ? std::atoi(argv[3]) : 60;
  char* fonts = nullptr;
  const int32_t size = vexel::GetUnixFontData(&fonts);
  if (size > 0) vexel::model::SetBuiltInFonts(std::vector<uint8_t>(fonts, fonts + size));
  delete[] fonts;
  int failures = 0;
  for (uint64_t seed = first; seed < first + count; ++seed) {
    failures += !Compare(seed, steps);
    std::fflush(stdout);
  }
  std::printf(
      "%d of %llu seeds differ; %ld steps with a focused field, %ld with a selection, %ld with a "
      "button, %ld with a framed one\n",
      failures, static_cast<unsigned long long>(count), met.focus, met.selection, met.button,
      met.frame);
  return failures == 0 ? 0 : 1;
}
