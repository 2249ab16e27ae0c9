#include "client/desktop/settings.h"

#include <cstdio>
#include <cstring>
#include <iterator>

namespace vexel::client {

namespace {

constexpr char kBar[] = "Window.Bar";
constexpr char kSize[] = "Window.Size";
constexpr char kOn[] = "yes";
constexpr char kOff[] = "no";
// A site's name behind it makes the preference's.
constexpr char kPages[] = "Pages.";
constexpr char kAllowed[] = "open";

constexpr int kMostPixels = 16384;

// By BarPlace.
constexpr const char* kBarPlaces[] = {"hides", "hides in full screen", "stays"};

}  // namespace

bool Settings::Switch(const char* key, bool otherwise) const {
  const auto text = kept_->Get(key);
  return otherwise ? text != kOff : text == kOn;
}

void Settings::SetSwitch(const char* key, bool on) {
  kept_->Set(key, on ? kOn : kOff);
}

BarPlace Settings::barPlace() const {
  const auto text = kept_->Get(kBar);
  for (size_t i = 0; i < std::size(kBarPlaces); i++) {
    if (text == kBarPlaces[i]) return static_cast<BarPlace>(i);
  }
  return BarPlace::kHides;
}

void Settings::SetBarPlace(BarPlace place) {
  kept_->Set(kBar, kBarPlaces[static_cast<size_t>(place)]);
}

std::optional<std::pair<int, int>> Settings::size() const {
  const auto text = kept_->Get(kSize);
  int width = 0, height = 0;
  if (!text || std::sscanf(text->c_str(), "%5dx%5d", &width, &height) != 2) return {};
  if (width < 1 || width > kMostPixels || height < 1 || height > kMostPixels) return {};
  return std::pair(width, height);
}

void Settings::SetSize(int width, int height) {
  kept_->Set(kSize, std::to_string(width) + "x" + std::to_string(height));
}

std::vector<std::string> Settings::allowedSites() const {
  std::vector<std::string> sites;
  for (const std::string& key : kept_->Keys(kPages)) {
    if (kept_->Get(key) == kAllowed) sites.push_back(key.substr(std::strlen(kPages)));
  }
  return sites;
}

bool Settings::Allows(const std::string& site) const {
  return kept_->Get(kPages + site) == kAllowed;
}

void Settings::Allow(const std::string& site) {
  kept_->Set(kPages + site, kAllowed);
}

void Settings::Forget(const std::string& site) {
  kept_->Remove(kPages + site);
}

}  // namespace vexel::client
