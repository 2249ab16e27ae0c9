// The window's own preferences, in the file that keeps the plug-in's, too.
#pragma once

#include "client/core/preferences.h"

namespace vexel::client {

// Where the transport bar is.
enum class BarPlace {
  kHides,              // over the movie, and gone while nobody needs it
  kHidesInFullScreen,  // there as above, else below the movie
  kStays,              // below the movie
};

class Settings {
 public:
  explicit Settings(Ref<Preferences> kept) : kept_(std::move(kept)) {}

  Preferences* kept() const { return kept_.get(); }

  BarPlace barPlace() const;
  void SetBarPlace(BarPlace place);

 private:
  Ref<Preferences> kept_;
};

}  // namespace vexel::client
