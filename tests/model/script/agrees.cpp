// script_agrees [FIRST COUNT]
// Random movies full of action blocks, played by the player and by the model:
// after every step the trees, all variables and properties, the value stack and
// what the platform was asked must be the same. The first difference of a seed
// is printed with the program.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "dump.h"
#include "player.h"
#include "player/random.h"
#include "programs.h"
#include "scene_file.h"
#include "support/test_player.h"

namespace vexel::model::script {

namespace {

// Writes down what it is asked, with all that it is given.
class Recorder : public test::TestPlayer {
 public:
  Recorder() : TestPlayer(0, 0) { url = CreateStr(kUrl); }
  void GetURL(const char* to, const char* window, const char* post, int32_t flags) override {
    calls += std::string("GetURL(") + to + "|" + window + "|" + (post ? post : "(null)") + "|" +
             std::to_string(flags) + ") ";
  }
  void XSeek(int32_t frame) override { calls += "XSeek(" + std::to_string(frame) + ") "; }

  static constexpr const char* kUrl = "http://host/movie.vxf";
};

enum class Outcome { kSame, kDiffers, kBeyond };

// The first line that differs.
std::string FirstDifference(const std::string& a, const std::string& b) {
  size_t from = 0, i = 0;
  for (; i < a.size() && i < b.size() && a[i] == b[i]; ++i) {
    if (a[i] == '\n') from = i + 1;
  }
  const auto line = [from](const std::string& text) {
    return from >= text.size() ? "(nothing)" : text.substr(from, text.find('\n', from) - from);
  };
  return "  player " + line(a) + "\n  model  " + line(b) + "\n";
}

class Pair {
 public:
  explicit Pair(const Program& program) : m_program(program) {
    gRandomFast = {};
    m_player.hostStopped = m_model.hostStopped = program.hostStopped;
    m_model.clock = m_model.startTime = m_player.startTime;
    m_model.layers.front().movie.url = Recorder::kUrl;
    if (program.hasLayer) {
      const Bytes file = SceneFile(program.layerScene);
      m_player.OpenLayer(program.layer, false)
          ->PushDataBuf(file.data(), static_cast<int32_t>(file.size()));
      m_model.AddLayer(program.layer, program.layerScene);
    }
  }

  Outcome Run(std::string* report) {
    m_player.Push(SceneFile(m_program.scene));
    m_model.Load(m_program.scene);
    for (size_t i = 0;; ++i) {
      if (m_model.excess.text || m_model.excess.objects) return Outcome::kBeyond;
      const std::string player = Dump(m_player), model = Dump(m_model);
      if (player != model) {
        *report = "after " + std::to_string(i) + " steps\n" + FirstDifference(player, model);
        return Outcome::kDiffers;
      }
      if (i == m_program.steps.size()) return Outcome::kSame;
      Do(m_program.steps[i]);
    }
  }

 private:
  void Do(const Step& step) {
    test::TestClock::tick = m_model.clock = step.clock;
    switch (step.kind) {
      case StepKind::kStep:
        m_player.StepThreads();
        m_model.Step();
        break;
      case StepKind::kGotoFrame:
        m_player.GotoFrame(step.frame);
        m_model.GotoFrame(step.frame);
        break;
      case StepKind::kCallFrame:
        m_player.CallFrame(&m_player, step.frame);
        m_model.CallFrame(m_model.MainThread(), step.frame);
        break;
    }
  }

  const Program& m_program;
  Recorder m_player;
  Player m_model;
};

}  // namespace

}  // namespace vexel::model::script

int main(int argc, char** argv) {
  using namespace vexel::model::script;
  const unsigned long first = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1;
  const unsigned long count = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 600;
  unsigned long failures = 0, beyond = 0;
  for (unsigned long seed = first; seed < first + count; ++seed) {
    const Program program = RandomProgram(seed);
    std::string report;
    const Outcome outcome = Pair(program).Run(&report);
    beyond += outcome == Outcome::kBeyond;
    if (outcome != Outcome::kDiffers) continue;
    if (++failures <= 5) {
      std::printf("seed %lu, %s%s\n", seed, report.c_str(), Listing(program).c_str());
    } else {
      std::printf("seed %lu, %s", seed, report.c_str());
    }
    std::fflush(stdout);
  }
  std::printf("%lu programs, %lu differences, %lu beyond what is compared\n", count, failures,
              beyond);
  return failures == 0 ? 0 : 1;
}
