// The commands are rows of a table: a name, the form of its arguments, and
// whether a redraw follows.
#include "run_script.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "options.h"
#include "picture_out.h"
#include "status.h"
#include "target_path.h"
#include "tree_text.h"

namespace vexel::tools {

namespace {

// A line that cannot be understood; RunLine adds where it stands.
struct BadLine {
  std::string what;
};

// The words behind a command, and their meanings.
class Arguments {
 public:
  explicit Arguments(const std::string& rest) : rest_(rest) {
    for (size_t at = 0; (at = rest.find_first_not_of(kBlanks, at)) != std::string::npos;) {
      const size_t end = std::min(rest.find_first_of(kBlanks, at), rest.size());
      words_.push_back(rest.substr(at, end - at));
      at = end;
    }
  }

  size_t count() const { return words_.size(); }
  // All of them as one text.
  const std::string& rest() const { return rest_; }
  const std::string& Word(size_t i) const { return words_[i]; }

  int64_t Number(size_t i, int64_t min, int64_t max) const {
    int64_t value;
    if (!ParseNumber(words_[i], min, max, &value))
      throw BadLine{"'" + words_[i] + "' is not a number from " + std::to_string(min) + " to " +
                    std::to_string(max)};
    return value;
  }
  int32_t Int(size_t i) const { return static_cast<int32_t>(Number(i, kInt32Min, kInt32Max)); }
  uint32_t Ms(size_t i) const { return static_cast<uint32_t>(Number(i, 0, 0xFFFFFFFF)); }

  static constexpr const char* kBlanks = " \t";

 private:
  std::string rest_;
  std::vector<std::string> words_;
};

void RunClock(HeadlessPlayer* player, const Arguments& args) {
  const uint32_t ms = args.Ms(0);
  SetTick(kFirstTick + ms);
  player->DoPlay(ms);
}

void RunWait(HeadlessPlayer*, const Arguments& args) {
  AdvanceTick(args.Ms(0));
}

void RunStep(HeadlessPlayer* player, const Arguments& args) {
  player->Step(args.count() ? args.Number(0, 1, kInt32Max) : 1);
}

void RunFrame(HeadlessPlayer* player, const Arguments& args) {
  const std::string& path = args.rest();
  const ScriptThread* thread = FindTimeline(player, path);
  if (thread) {
    std::printf("frame %s = %d %d %d\n", path.c_str(), thread->curFrame, thread->numFrames,
                thread->playing ? 1 : 0);
  } else {
    std::printf("frame %s undefined\n", path.c_str());
  }
}

void RunSeek(HeadlessPlayer* player, const Arguments& args) {
  player->GotoFrame(args.Int(0));
}
void RunPlay(HeadlessPlayer* player, const Arguments&) {
  player->Play(false);
}
void RunStop(HeadlessPlayer* player, const Arguments&) {
  player->StopPlay();
}
void RunZoom(HeadlessPlayer* player, const Arguments& args) {
  player->Zoom(args.Int(0));
}
void RunHome(HeadlessPlayer* player, const Arguments&) {
  player->Home();
}

void RunPan(HeadlessPlayer* player, const Arguments& args) {
  player->Pan(args.Int(0), args.Int(1), kPanPixels);
}

void RunQuality(HeadlessPlayer* player, const Arguments& args) {
  bool high;
  if (!ParseQuality(args.Word(0), &high))
    throw BadLine{"'" + args.Word(0) + "' is neither low nor high"};
  player->SetQuality(high);
}

void RunTree(HeadlessPlayer* player, const Arguments&) {
  std::fputs(TreeText(player->display).c_str(), stdout);
}

void RunDirty(HeadlessPlayer* player, const Arguments&) {
  for (const SRECT& r : player->painted())
    std::printf("dirty %d %d %d %d\n", r.xmin, r.ymin, r.xmax, r.ymax);
  if (player->painted().empty()) std::puts("dirty nothing");
}

void RunShot(HeadlessPlayer* player, const Arguments& args) {
  if (PictureKindOf(args.rest()) == PictureKind::kNone)
    throw BadLine{"'" + args.rest() + "' must end in .png or .raw"};
  WritePicture(&player->bits, args.rest());
}

struct Command {
  const char* name;
  const char* form;  // of the arguments, for messages
  size_t minWords;
  size_t maxWords;  // kText: the rest of the line is one argument
  bool redraws;
  void (*run)(HeadlessPlayer* player, const Arguments& args);
};

constexpr size_t kText = SIZE_MAX;

// clang-format off
constexpr Command kCommands[] = {
    {"clock",   "MS",          1, 1,     true,  RunClock},
    {"wait",    "MS",          1, 1,     false, RunWait},
    {"step",    "[N]",         0, 1,     true,  RunStep},
    {"frame",   "PATH",        1, kText, false, RunFrame},
    {"seek",    "N",           1, 1,     true,  RunSeek},
    {"play",    "",            0, 0,     true,  RunPlay},
    {"stop",    "",            0, 0,     true,  RunStop},
    {"zoom",    "PERCENT",     1, 1,     true,  RunZoom},
    {"home",    "",            0, 0,     true,  RunHome},
    {"pan",     "DX DY",       2, 2,     true,  RunPan},
    {"quality", "low or high", 1, 1,     true,  RunQuality},
    {"tree",    "",            0, 0,     false, RunTree},
    {"dirty",   "",            0, 0,     false, RunDirty},
    {"shot",    "FILE",        1, kText, false, RunShot},
};
// clang-format on

void Run(HeadlessPlayer* player, const std::string& name, const Arguments& args) {
  for (const Command& command : kCommands) {
    if (name != command.name) continue;
    if (args.count() < command.minWords || args.count() > command.maxWords)
      throw BadLine{"'" + name + "' takes " + (*command.form ? command.form : "no argument")};
    command.run(player, args);
    if (command.redraws) player->Redraw();
    return;
  }
  throw BadLine{"unknown command '" + name + "'"};
}

}  // namespace

void RunScript::RunLine(const std::string& line) {
  lineNumber_++;
  if (line.starts_with('#')) return;
  const size_t start = line.find_first_not_of(Arguments::kBlanks);
  if (start == std::string::npos) return;
  const size_t end = std::min(line.find_first_of(Arguments::kBlanks, start), line.size());
  const size_t rest = std::min(line.find_first_not_of(Arguments::kBlanks, end), line.size());
  try {
    Run(player_, line.substr(start, end - start), Arguments(line.substr(rest)));
  } catch (const BadLine& bad) {
    throw Failure(kMisused, name_, "line " + std::to_string(lineNumber_) + ": " + bad.what);
  }
}

}  // namespace vexel::tools
