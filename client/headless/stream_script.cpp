// The commands are rows of a table: a name, the form of its arguments, and
// whether the client has to be started for it.
#include "client/headless/stream_script.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "tools/escapes.h"
#include "tools/out_file.h"
#include "tools/parsed_text.h"
#include "tools/picture_kind.h"

namespace vexel::client {

namespace {

using Stage = StreamScript::Stage;
using tools::BadLine;
using tools::Escaped;
using tools::ScriptArguments;

constexpr int64_t kMaxSide = 8191;  // pixels

// Keys by the names that the player has for them. It knows a few more, which no
// key of a keyboard reaches.
struct NamedKey {
  const char* name;
  unsigned long keysym;
};
constexpr NamedKey kKeys[] = {
    {"left", XK_Left},     {"right", XK_Right},         {"home", XK_Home},     {"end", XK_End},
    {"delete", XK_Delete}, {"backspace", XK_BackSpace}, {"return", XK_Return}, {"up", XK_Up},
    {"down", XK_Down},     {"top", XK_Prior},           {"bottom", XK_Next},   {"tab", XK_Tab},
};

// The key that makes a byte; a byte that no key makes is refused.
unsigned long KeyOfByte(int64_t byte) {
  if (byte == '\n') return XK_Linefeed;
  if (byte == '\r') return XK_Return;
  if (byte == '\x1b') return XK_Escape;
  if ((byte >= XK_space && byte <= XK_asciitilde) ||
      (byte >= XK_nobreakspace && byte <= XK_ydiaeresis))
    return static_cast<unsigned long>(byte);
  throw BadLine{"no key makes the byte " + std::to_string(byte)};
}

bool SendKey(const Stage& stage, unsigned long keysym, bool shift, bool control) {
  return stage.client->Send(ZEM_EVENT_X_KEY_PRESS, stage.events->Key(keysym, shift, control));
}

void RunClock(const Stage& stage, const ScriptArguments& args) {
  stage.client->ClockTo(args.Ms(0));
}
void RunWait(const Stage& stage, const ScriptArguments& args) {
  stage.client->Wait(args.Ms(0));
}
void RunServe(const Stage& stage, const ScriptArguments& args) {
  stage.client->Serve(args.Ms(0));
}
void RunBegin(const Stage& stage, const ScriptArguments&) {
  stage.client->Begin();
}
void RunPause(const Stage& stage, const ScriptArguments&) {
  stage.client->Pause();
}
void RunSeek(const Stage& stage, const ScriptArguments& args) {
  stage.client->Seek(args.Ms(0));
}

void RunDown(const Stage& stage, const ScriptArguments& args) {
  stage.client->Send(ZEM_EVENT_X_BUTTON_PRESS,
                     stage.events->Button(true, args.Int(0), args.Int(1)));
}
void RunUp(const Stage& stage, const ScriptArguments& args) {
  stage.client->Send(ZEM_EVENT_X_BUTTON_RELEASE,
                     stage.events->Button(false, args.Int(0), args.Int(1)));
}
void RunMove(const Stage& stage, const ScriptArguments& args) {
  stage.client->Send(ZEM_EVENT_X_MOTION, stage.events->Motion(args.Int(0), args.Int(1)));
}

void RunKey(const Stage& stage, const ScriptArguments& args) {
  const std::string name = args.Word(0);
  const auto found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                  [&name](const NamedKey& key) { return name == key.name; });
  unsigned long keysym;
  int64_t byte;
  if (found != std::end(kKeys)) {
    keysym = found->keysym;
  } else if (tools::ParseNumber(name, 0, 255, &byte)) {
    keysym = KeyOfByte(byte);
  } else {
    throw BadLine{"'" + Escaped(name) + "' is no key of a keyboard"};
  }
  bool shift = false, control = false;
  for (size_t i = 1; i < args.count(); i++) {
    const std::string word = args.Word(i);
    if (word != "shift" && word != "control")
      throw BadLine{"'" + Escaped(word) + "' is neither shift nor control"};
    (word == "shift" ? shift : control) = true;
  }
  std::printf("key %d\n", SendKey(stage, keysym, shift, control) ? 1 : 0);
}

void RunType(const Stage& stage, const ScriptArguments& args) {
  const std::string text = args.Text(0);
  for (const char c : text) KeyOfByte(static_cast<unsigned char>(c));
  for (const char c : text) SendKey(stage, KeyOfByte(static_cast<unsigned char>(c)), false, false);
}

void RunResize(const Stage& stage, const ScriptArguments& args) {
  int32_t width, height;
  if (!tools::ParseSize(args.Word(0), 1, kMaxSide, &width, &height))
    throw BadLine{"'" + Escaped(args.Word(0)) + "' is not WxH, each from 1 to 8191"};
  stage.client->Resize(width, height);
}

void RunMenu(const Stage& stage, const ScriptArguments& args) {
  if (args.count() == 0) {
    const ContextMenu& menu = stage.client->menu();
    std::printf("menu title %s\n", Escaped(menu.title()).c_str());
    for (const ContextMenu::Item& item : menu.items()) {
      if (item.separator) {
        std::printf("menu separator\n");
      } else {
        std::printf("menu %d %s\n", item.id, Escaped(item.text).c_str());
      }
    }
    return;
  }
  const auto id = static_cast<uint16_t>(args.Number(0, 0, 65535));
  std::printf("menu %d\n", stage.client->Choose(id) ? 1 : 0);
}

void RunPrefs(const Stage& stage, const ScriptArguments& args) {
  const std::string& line = args.line();
  const size_t equal = line.find('=');
  if (equal == std::string::npos ||
      !stage.client->preferences().Set(line.substr(0, equal),
                                       tools::TextOf(line.substr(equal + 1))))
    throw BadLine{"'prefs' takes KEY=VALUE"};
}

void RunStats(const Stage& stage, const ScriptArguments&) {
  const DeliveryStats stats = stage.client->stats();
  std::printf(
      "stats sent=%u lost=%u doubles=%u reported=%u late=%u requests=%u repeats=%u resent=%u "
      "resent-lost=%u dummy-bytes=%llu late-writes=%u\n",
      stats.sent, stats.lost, stats.doubles, stats.reported, stats.late, stats.requests,
      stats.repeats, stats.resent, stats.resentLost,
      static_cast<unsigned long long>(stats.dummyBytes), stats.lateWrites);
}

void RunShot(const Stage& stage, const ScriptArguments& args) {
  const std::string& file = args.line();
  const tools::PictureKind kind = tools::PictureKindOf(file);
  if (kind == tools::PictureKind::kNone)
    throw BadLine{"'" + Escaped(file) + "' must end in .png or .raw"};
  const MemorySurface& surface = stage.client->surface();
  const std::vector<uint32_t>& pixels = surface.pixels();
  tools::OutFile out(file);
  if (kind == tools::PictureKind::kRaw) {
    std::fwrite(pixels.data(), sizeof pixels[0], pixels.size(), out.stream());
  } else {
    std::vector<uint8_t> rgb;
    rgb.reserve(pixels.size() * 3);
    for (const uint32_t pixel : pixels) {
      for (int shift = 16; shift >= 0; shift -= 8)
        rgb.push_back(static_cast<uint8_t>(pixel >> shift));
    }
    tools::WriteRgbPng(surface.width(), surface.height(), rgb.data(), file, out.stream());
  }
  out.Commit();
}

struct Command {
  const char* name;
  const char* form;  // of the arguments, for messages
  size_t minWords;
  size_t maxWords;  // kText: the rest of the line is one argument
  bool starts;      // nothing to do before the client runs
  void (*run)(const Stage& stage, const ScriptArguments& args);
};

constexpr size_t kText = SIZE_MAX;

// clang-format off
constexpr Command kCommands[] = {
    {"clock",   "MS",                     1, 1,     true,  RunClock},
    {"wait",    "MS",                     1, 1,     true,  RunWait},
    {"serve",   "MS",                     1, 1,     true,  RunServe},
    {"begin",   "",                       0, 0,     true,  RunBegin},
    {"pause",   "",                       0, 0,     true,  RunPause},
    {"seek",    "MS",                     1, 1,     true,  RunSeek},
    {"down",    "X Y",                    2, 2,     true,  RunDown},
    {"move",    "X Y",                    2, 2,     true,  RunMove},
    {"up",      "X Y",                    2, 2,     true,  RunUp},
    {"key",     "NAME [shift] [control]", 1, 3,     true,  RunKey},
    {"type",    "TEXT",                   1, kText, true,  RunType},
    {"resize",  "WxH",                    1, 1,     true,  RunResize},
    {"menu",    "[ID]",                   0, 1,     true,  RunMenu},
    {"prefs",   "KEY=VALUE",              1, kText, false, RunPrefs},
    {"stats",   "",                       0, 0,     true,  RunStats},
    {"shot",    "FILE",                   1, kText, true,  RunShot},
};
// clang-format on

void Run(const Stage& stage, const std::string& name, const ScriptArguments& args) {
  for (const Command& command : kCommands) {
    if (name != command.name) continue;
    tools::CheckWords(name, args, command.form, command.minWords, command.maxWords);
    if (command.starts && !stage.client->started()) stage.client->Start();
    command.run(stage, args);
    return;
  }
  throw BadLine{"unknown command '" + Escaped(name) + "'"};
}

}  // namespace

bool StreamScript::RunNext(std::istream* in) {
  return lines_.RunNext(in, [this](const std::string& name, const ScriptArguments& args) {
    Run({client_, &events_}, name, args);
  });
}

}  // namespace vexel::client
