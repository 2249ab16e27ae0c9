// The commands are rows of a table: a name, the form of its arguments, and
// whether a redraw follows.
#include "run_script.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "escapes.h"
#include "parsed_text.h"
#include "picture_out.h"
#include "player/properties.h"
#include "player/text.h"
#include "script_arguments.h"

namespace vexel::tools {

namespace {

// Keys by name: the first has code 1, and so on.
constexpr const char* kKeyNames[] = {"left",   "right",     "home", "end",  "insert", "delete",
                                     "clear",  "backspace", "cut",  "copy", "paste",  "selectall",
                                     "return", "up",        "down", "top",  "bottom", "tab"};

// Bits of a key's modifiers.
constexpr int32_t kShift = 1;
constexpr int32_t kControl = 2;

// What a command works on.
struct Stage {
  HeadlessPlayer* player;
  const Results* results;
  bool* mouseIsDown;
};

// A text that the player hands out.
std::optional<std::string> Taken(char* text) {
  if (!text) return {};
  const std::string copy = text;
  FreeStr(text);
  return copy;
}

void RunClock(const Stage& stage, const ScriptArguments& args) {
  const uint32_t ms = args.Ms(0);
  SetTick(kFirstTick + ms);
  stage.player->DoPlay(ms);
}

void RunWait(const Stage&, const ScriptArguments& args) {
  AdvanceTick(args.Ms(0));
}

void RunStep(const Stage& stage, const ScriptArguments& args) {
  stage.player->Step(args.count() ? args.Number(0, 1, kInt32Max) : 1);
}

SPOINT PointOf(const ScriptArguments& args) {
  return {args.Int(0), args.Int(1)};
}

void RunDown(const Stage& stage, const ScriptArguments& args) {
  const SPOINT pt = PointOf(args);
  *stage.mouseIsDown = true;
  stage.player->MouseDown(&pt);
}
void RunMove(const Stage& stage, const ScriptArguments& args) {
  const SPOINT pt = PointOf(args);
  stage.player->MouseMove(&pt, *stage.mouseIsDown);
}
void RunUp(const Stage& stage, const ScriptArguments& args) {
  const SPOINT pt = PointOf(args);
  *stage.mouseIsDown = false;
  stage.player->MouseUp(&pt);
}

void RunKey(const Stage& stage, const ScriptArguments& args) {
  const std::string name = args.Word(0);
  const auto found = std::find(std::begin(kKeyNames), std::end(kKeyNames), name);
  int64_t code = found - std::begin(kKeyNames) + 1;
  if (found == std::end(kKeyNames) && !ParseNumber(name, kInt32Min, kInt32Max, &code))
    throw BadLine{"'" + Escaped(name) + "' is neither a key nor a code"};
  int32_t modifiers = 0;
  for (size_t i = 1; i < args.count(); i++) {
    const std::string word = args.Word(i);
    const int32_t bit = word == "shift" ? kShift : word == "control" ? kControl : 0;
    if (bit == 0) throw BadLine{"'" + Escaped(word) + "' is neither shift nor control"};
    modifiers |= bit;
  }
  stage.results->Key(stage.player->HandleKeyDown(static_cast<int32_t>(code), modifiers));
}

void RunType(const Stage& stage, const ScriptArguments& args) {
  for (const char c : args.Text(0)) {
    stage.player->HandleKeyDown(static_cast<unsigned char>(c), 0);
  }
}

void RunPaste(const Stage& stage, const ScriptArguments& args) {
  stage.results->Paste(stage.player->Paste(args.Text(0)));
}

void RunBlink(const Stage& stage, const ScriptArguments&) {
  stage.player->BlinkCursor();
}

void RunGet(const Stage& stage, const ScriptArguments& args) {
  const std::string name = args.Text(0);
  stage.results->Variable(name, Taken(stage.player->GetVariable(stage.player, name.c_str())));
}

// The first equal sign divides, as it is written, so that a name may hold one.
void RunSet(const Stage& stage, const ScriptArguments& args) {
  const std::string& line = args.line();
  const size_t equal = line.find('=');
  if (equal == std::string::npos) throw BadLine{"'set' takes NAME=TEXT"};
  const std::string name = TextOf(line.substr(0, equal));
  const std::string value = TextOf(line.substr(equal + 1));
  stage.player->SetVariable(stage.player, name.c_str(), value.c_str());
}

ScriptThread* Timeline(const Stage& stage, const std::string& path) {
  return stage.player->FindTarget(stage.player->rootObject, path.c_str());
}

void RunProp(const Stage& stage, const ScriptArguments& args) {
  const std::string path = args.TextWord(0);
  const int32_t index = args.Int(1);
  char* value = stage.player->GetPropertyStr(Timeline(stage, path), index);
  stage.results->Property(path, index, Taken(value));
}

void RunSetProp(const Stage& stage, const ScriptArguments& args) {
  const std::string path = args.TextWord(0);
  const int32_t index = args.Int(1);
  const std::string value = args.Text(2);
  stage.player->SetPropertyStr(Timeline(stage, path), index, value.c_str());
}

void RunFrame(const Stage& stage, const ScriptArguments& args) {
  const std::string path = args.Text(0);
  stage.results->Frame(path, Timeline(stage, path));
}

void RunSeek(const Stage& stage, const ScriptArguments& args) {
  stage.player->GotoFrame(args.Int(0));
}
void RunPlay(const Stage& stage, const ScriptArguments&) {
  stage.player->Play(false);
}
void RunStop(const Stage& stage, const ScriptArguments&) {
  stage.player->StopPlay();
}
void RunZoom(const Stage& stage, const ScriptArguments& args) {
  stage.player->Zoom(args.Int(0));
}
void RunHome(const Stage& stage, const ScriptArguments&) {
  stage.player->Home();
}

void RunPan(const Stage& stage, const ScriptArguments& args) {
  stage.player->Pan(args.Int(0), args.Int(1), kPanPixels);
}

void RunQuality(const Stage& stage, const ScriptArguments& args) {
  bool high;
  if (!ParseQuality(args.Word(0), &high))
    throw BadLine{"'" + Escaped(args.Word(0)) + "' is neither low nor high"};
  stage.player->SetProperty(stage.player, kPropQuality, high ? 1 : 0);
}

void RunHit(const Stage& stage, const ScriptArguments& args) {
  const SPOINT pt = PointOf(args);
  stage.results->Hit(stage.player->display.HitTest(&pt));
}

void RunTree(const Stage& stage, const ScriptArguments&) {
  stage.results->Tree(stage.player->display);
}

void RunDirty(const Stage& stage, const ScriptArguments&) {
  stage.results->Dirty(stage.player->painted());
}

void RunShot(const Stage& stage, const ScriptArguments& args) {
  const std::string& file = args.line();
  if (PictureKindOf(file) == PictureKind::kNone)
    throw BadLine{"'" + Escaped(file) + "' must end in .png or .raw"};
  WritePicture(&stage.player->bits, file);
}

struct Command {
  const char* name;
  const char* form;  // of the arguments, for messages
  size_t minWords;
  size_t maxWords;  // kText: the rest of the line is one argument
  bool redraws;
  void (*run)(const Stage& stage, const ScriptArguments& args);
};

constexpr size_t kText = SIZE_MAX;

// clang-format off
constexpr Command kCommands[] = {
    {"clock",   "MS",                     1, 1,     true,  RunClock},
    {"wait",    "MS",                     1, 1,     false, RunWait},
    {"step",    "[N]",                    0, 1,     true,  RunStep},
    {"down",    "X Y",                    2, 2,     true,  RunDown},
    {"move",    "X Y",                    2, 2,     true,  RunMove},
    {"up",      "X Y",                    2, 2,     true,  RunUp},
    {"key",     "NAME [shift] [control]", 1, 3,     true,  RunKey},
    {"type",    "TEXT",                   1, kText, true,  RunType},
    {"paste",   "TEXT",                   1, kText, true,  RunPaste},
    {"blink",   "",                       0, 0,     true,  RunBlink},
    {"get",     "NAME",                   1, kText, false, RunGet},
    {"set",     "NAME=TEXT",              1, kText, true,  RunSet},
    {"prop",    "PATH INDEX",             2, 2,     false, RunProp},
    {"setprop", "PATH INDEX TEXT",        2, kText, true,  RunSetProp},
    {"frame",   "PATH",                   1, kText, false, RunFrame},
    {"seek",    "N",                      1, 1,     true,  RunSeek},
    {"play",    "",                       0, 0,     true,  RunPlay},
    {"stop",    "",                       0, 0,     true,  RunStop},
    {"zoom",    "PERCENT",                1, 1,     true,  RunZoom},
    {"home",    "",                       0, 0,     true,  RunHome},
    {"pan",     "DX DY",                  2, 2,     true,  RunPan},
    {"quality", "low or high",            1, 1,     true,  RunQuality},
    {"hit",     "X Y",                    2, 2,     false, RunHit},
    {"tree",    "",                       0, 0,     false, RunTree},
    {"dirty",   "",                       0, 0,     false, RunDirty},
    {"shot",    "FILE",                   1, kText, false, RunShot},
};
// clang-format on

void Run(const Stage& stage, const std::string& name, const ScriptArguments& args) {
  for (const Command& command : kCommands) {
    if (name != command.name) continue;
    CheckWords(name, args, command.form, command.minWords, command.maxWords);
    stage.player->display.ResetTagBudget();
    command.run(stage, args);
    if (command.redraws) stage.player->Redraw();
    return;
  }
  throw BadLine{"unknown command '" + Escaped(name) + "'"};
}

}  // namespace

bool RunScript::RunNext(std::istream* in) {
  return lines_.RunNext(in, [this](const std::string& name, const ScriptArguments& args) {
    Run({player_, results_, &mouseIsDown_}, name, args);
  });
}

}  // namespace vexel::tools
