#include "client/desktop/settings.h"

#include <iterator>

namespace vexel::client {

namespace {

constexpr char kBar[] = "Window.Bar";

// By BarPlace.
constexpr const char* kBarPlaces[] = {"hides", "hides in full screen", "stays"};

}  // namespace

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

}  // namespace vexel::client
