// The program behind `vexel stream`: a client without a window.
#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <new>
#include <stdexcept>

#include "client/headless/stream_script.h"
#include "tools/escapes.h"
#include "tools/installation.h"
#include "tools/parsed_option.h"
#include "tools/status.h"

namespace vexel::client {

namespace {

using tools::AddNumberOption;
using tools::AddParsed;
using tools::Failure;
using tools::kFailed;
using tools::kMisused;

constexpr int64_t kMaxMs = 24 * 3600 * 1000;

struct Options {
  std::string script;
  std::string mode = "nonlinear";
  int64_t packet = 1400, key = 2000, lead = 5000, jitter = 200, delay = 0, seed = 1;
  int64_t duration = -1;
  bool noResends = false;
  bool log = false;
  StreamSetup setup;
};

// A share in percent.
bool ParseShare(const std::string& text, double* share) {
  double percent;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, percent);
  if (error != std::errc() || stop != end || !(percent >= 0 && percent <= 100)) return false;
  *share = percent / 100;
  return true;
}

// "3,7,10-12".
bool ParseNumbers(const std::string& text, std::set<uint32_t>* numbers) {
  constexpr int64_t kMaxNumber = 1 << 20;
  for (size_t at = 0; at <= text.size();) {
    const size_t end = std::min(text.find(',', at), text.size());
    const std::string part = text.substr(at, end - at);
    const size_t dash = part.find('-');
    int64_t first, last;
    if (!tools::ParseNumber(part.substr(0, dash), 0, kMaxNumber, &first)) return false;
    last = first;
    if (dash != std::string::npos &&
        !tools::ParseNumber(part.substr(dash + 1), first, kMaxNumber, &last))
      return false;
    for (int64_t number = first; number <= last; number++)
      numbers->insert(static_cast<uint32_t>(number));
    at = end + 1;
  }
  return true;
}

void AddShareOption(CLI::App* app, const std::string& name, double* share,
                    const std::string& help) {
  AddParsed(app, name, "PERCENT", "a number from 0 to 100", help,
            [share](const std::string& text) { return ParseShare(text, share); });
}

void AddOptions(CLI::App* app, Options* options) {
  StreamSetup* setup = &options->setup;
  NetworkSetup* network = &setup->network;
  app->add_option("MOVIE", setup->movie, "the movie's file")->required();
  app->add_option("SCRIPT", options->script, "one command a line; - reads standard input")
      ->required();
  app->add_option("--mode", options->mode, "linear or nonlinear (nonlinear)")
      ->check(CLI::IsMember({"linear", "nonlinear"}))
      ->type_name("MODE");
  AddNumberOption(app, "--packet", "BYTES", kMinPacket, kMaxPacket, &options->packet,
                  "largest packet (1400)");
  AddNumberOption(app, "--key", "MS", 0, kMaxMs, &options->key,
                  "linear: a key frame so often, 0 for none (2000)");
  AddNumberOption(app, "--lead", "MS", 0, kMaxMs, &options->lead,
                  "send packets so long before they are due (5000)");
  AddNumberOption(app, "--jitter", "MS", 0, kMaxMs, &options->jitter,
                  "wait so long for a missing packet (200)");
  AddShareOption(app, "--loss", &network->loss, "packets that are lost (0)");
  AddParsed(app, "--drop", "LIST", "a list of numbers and ranges such as 3,7,10-12",
            "packets that are lost for sure, by number",
            [network](const std::string& text) { return ParseNumbers(text, &network->drop); });
  AddShareOption(app, "--reorder", &network->reorder, "packets that others overtake (0)");
  AddShareOption(app, "--duplicate", &network->duplicate, "packets that arrive twice (0)");
  AddShareOption(app, "--answer-loss", &network->answerLoss, "resent packets that are lost (0)");
  AddNumberOption(app, "--delay", "MS", 0, kMaxMs, &options->delay,
                  "time from end to end, each way (0)");
  AddNumberOption(app, "--seed", "N", 0, 0xFFFFFFFF, &options->seed, "which packets it hits (1)");
  app->add_flag("--no-resends", options->noResends, "a source without a way back");
  AddNumberOption(app, "--duration", "MS", 1, 0xFFFFFFFF, &options->duration,
                  "what the stream says of its length (the movie's own)");
  app->add_option("--browser", setup->browser, "command that opens pages, besides printing them")
      ->type_name("COMMAND");
  app->add_option("--plugin", setup->plugin, "the plug-in (vexel.so of this installation)")
      ->type_name("FILE");
  app->add_flag("--log", options->log, "the plug-in's reports on standard error");
  app->footer(
      "Commands of a script: clock MS, wait MS, serve MS, begin, pause, seek MS, down X Y,\n"
      "move X Y, up X Y, key NAME, type TEXT, resize WxH, menu [ID], prefs KEY=VALUE, stats,\n"
      "shot FILE.\n"
      "Example: printf 'clock 500\\nshot half.png\\nstats\\n' | vexel stream --loss 5 clock.vxf -");
}

void Play(Options options) {
  std::ifstream file;
  const bool fromInput = options.script == "-";
  if (!fromInput) {
    file.open(options.script);
    if (!file) throw Failure(kFailed, options.script, "cannot be opened: " + tools::SystemError());
  }
  std::istream& script = fromInput ? std::cin : file;

  StreamSetup& setup = options.setup;
  setup.linear = options.mode == "linear";
  setup.packetBytes = static_cast<size_t>(options.packet);
  setup.keyEveryMs = static_cast<uint32_t>(options.key);
  setup.leadMs = static_cast<uint32_t>(options.lead);
  setup.jitterMs = static_cast<uint32_t>(options.jitter);
  setup.resends = !options.noResends;
  setup.network.delayMs = static_cast<uint32_t>(options.delay);
  setup.network.seed = static_cast<uint64_t>(options.seed);
  if (options.duration > 0) setup.durationMs = static_cast<uint32_t>(options.duration);
  if (setup.plugin.empty()) setup.plugin = tools::PluginPath();
  setup.print = [](const std::string& line) { std::printf("%s\n", tools::Escaped(line).c_str()); };
  if (options.log)
    setup.report = [](const LogReport& report) { tools::Warn("plug-in", ReportLine(report)); };

  const std::string movie = setup.movie;
  const std::string plugin = setup.plugin;
  std::unique_ptr<StreamClient> client;
  try {
    client = std::make_unique<StreamClient>(std::move(setup));
  } catch (const std::runtime_error& error) {
    throw Failure(kFailed, movie, error.what());
  }
  if (client->endsEarly()) tools::Warn(movie, "ends early; it is streamed as far as it came");
  try {
    StreamScript commands(client.get(), fromInput ? "standard input" : options.script);
    while (commands.RunNext(&script)) {
      if (fromInput) std::fflush(stdout);
    }
    if (!client->started()) client->Start();
  } catch (const std::runtime_error& error) {
    throw Failure(kFailed, plugin, error.what());
  }
  if (script.bad()) throw Failure(kFailed, options.script, "cannot be read");
}

void Main(int argc, char** argv) {
  CLI::App app("stream a movie through the plug-in, without a window", "vexel stream");
  Options options;
  AddOptions(&app, &options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw Failure(kMisused, "stream", error.what());
    app.exit(error);
    return;
  }
  Play(std::move(options));
}

}  // namespace

}  // namespace vexel::client

int main(int argc, char** argv) {
  using namespace vexel::tools;
  int status = kDone;
  try {
    vexel::client::Main(argc, argv);
  } catch (const Failure& failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", failure.what());
    status = failure.status();
  } catch (const std::bad_alloc&) {
    Warn("memory", "not enough");
    status = kFailed;
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    Warn("standard output", "cannot be written: " + SystemError());
    if (status == kDone) status = kFailed;
  }
  return status;
}
