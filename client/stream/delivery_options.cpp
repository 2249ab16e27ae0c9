#include "client/stream/delivery_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <set>

#include "tools/parsed_option.h"
#include "tools/parsed_text.h"

namespace vexel::client {

namespace {

constexpr int64_t kMaxMs = 24 * 3600 * 1000;

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

}  // namespace

void DeliveryOptions::AddTo(CLI::App* app) {
  const auto number = [&](const char* name, const char* type, int64_t min, int64_t max,
                          int64_t* out, const char* help) {
    options_.push_back(tools::AddNumberOption(app, name, type, min, max, out, help));
  };
  const auto share = [&](const char* name, double* out, const char* help) {
    options_.push_back(
        tools::AddParsed(app, name, "PERCENT", "a number from 0 to 100", help,
                         [out](const std::string& text) { return ParseShare(text, out); }));
  };
  options_.push_back(app->add_option("--mode", mode_, "linear or nonlinear (nonlinear)")
                         ->check(CLI::IsMember({"linear", "nonlinear"}))
                         ->type_name("MODE"));
  number("--packet", "BYTES", kMinPacket, kMaxPacket, &packet_, "largest packet (1400)");
  number("--key", "MS", 0, kMaxMs, &key_, "linear: a key frame so often, 0 for none (2000)");
  number("--lead", "MS", 0, kMaxMs, &lead_, "send packets so long before they are due (5000)");
  number("--jitter", "MS", 0, kMaxMs, &jitter_, "wait so long for a missing packet (200)");
  share("--loss", &network_.loss, "packets that are lost (0)");
  options_.push_back(tools::AddParsed(
      app, "--drop", "LIST", "a list of numbers and ranges such as 3,7,10-12",
      "packets that are lost for sure, by number",
      [this](const std::string& text) { return ParseNumbers(text, &network_.drop); }));
  share("--reorder", &network_.reorder, "packets that others overtake (0)");
  share("--duplicate", &network_.duplicate, "packets that arrive twice (0)");
  share("--answer-loss", &network_.answerLoss, "resent packets that are lost (0)");
  number("--delay", "MS", 0, kMaxMs, &delay_, "time from end to end, each way (0)");
  number("--seed", "N", 0, 0xFFFFFFFF, &seed_, "which packets it hits (1)");
  options_.push_back(app->add_flag("--no-resends", noResends_, "a source without a way back"));
}

bool DeliveryOptions::given() const {
  return std::any_of(options_.begin(), options_.end(),
                     [](const CLI::Option* option) { return option->count() > 0; });
}

DeliverySetup DeliveryOptions::Setup() const {
  DeliverySetup setup;
  setup.linear = mode_ == "linear";
  setup.packetBytes = static_cast<size_t>(packet_);
  setup.keyEveryMs = static_cast<uint32_t>(key_);
  setup.leadMs = static_cast<uint32_t>(lead_);
  setup.jitterMs = static_cast<uint32_t>(jitter_);
  setup.resends = !noResends_;
  setup.network = network_;
  setup.network.delayMs = static_cast<uint32_t>(delay_);
  setup.network.seed = static_cast<uint64_t>(seed_);
  return setup;
}

}  // namespace vexel::client
