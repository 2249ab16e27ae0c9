// The window's own preferences, in the file that keeps the plug-in's, too.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

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

  // Movies begin again at their end, unless the user says otherwise in the bar.
  bool loops() const { return Switch("Window.Loop", true); }
  void SetLoops(bool on) { SetSwitch("Window.Loop", on); }

  // Movies that are opened are listed for the user.
  bool listsRecent() const { return Switch("Window.Recent", true); }
  void SetListsRecent(bool on) { SetSwitch("Window.Recent", on); }

  // The window keeps its size, and has it again the next time, instead of
  // taking each movie's.
  bool keepsSize() const { return Switch("Window.KeepSize", false); }
  void SetKeepsSize(bool on) { SetSwitch("Window.KeepSize", on); }
  std::optional<std::pair<int, int>> size() const;  // width, height, units of the window's
  void SetSize(int width, int height);

  // Sites whose pages a movie may open without a question.
  std::vector<std::string> allowedSites() const;
  bool Allows(const std::string& site) const;
  void Allow(const std::string& site);
  void Forget(const std::string& site);

 private:
  bool Switch(const char* key, bool otherwise) const;
  void SetSwitch(const char* key, bool on);

  Ref<Preferences> kept_;
};

}  // namespace vexel::client
