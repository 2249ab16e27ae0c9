// The player on the desktop's message bus, as MPRIS 2 has it: media keys,
// panels and remote controls find it there, see what plays, and direct it.
//
// The first player of a session is org.mpris.MediaPlayer2.vexel, any other one
// has its process's number behind that. There is no sound, so there is no
// volume; there is one movie, so there is nothing before or behind it.
#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace vexel::client {

class Mpris {
 public:
  // What the bus asks of the window. None is called before the constructor's end.
  struct Actions {
    std::function<void()> raise;
    std::function<void()> quit;
    std::function<void(bool on)> setFullScreen;
    std::function<void(const std::string& uri)> open;
    std::function<void()> playOrPause;
    std::function<void(uint32_t ms)> seek;
    std::function<void(double speed)> setSpeed;
    std::function<void(bool loop)> setLoop;
  };
  struct State {
    uint32_t movie = 0;  // counts the movies that were opened; 0: none yet
    std::string uri;     // its address; of a file, too
    std::string title;   // for people
    bool playable = false, running = false;
    bool buffering = false;             // running, but the clock stands
    bool seekable = false;              // it has places to go to
    uint32_t position = 0, length = 0;  // milliseconds
    double speed = 1;
    bool loops = false;
    bool fullScreen = false;
  };

  // Looks for the session's bus; where there is none, nothing else happens.
  // `state` tells how things are whenever it is asked.
  Mpris(Actions actions, std::function<State()> state);
  // What was answered is still sent.
  ~Mpris();
  Mpris(const Mpris&) = delete;
  Mpris& operator=(const Mpris&) = delete;

  // Tells the bus what has changed since the last time. To be called some times
  // a second.
  void Tell();

 private:
  // Methods and properties by name, and the calls of the bus that look there.
  struct Tables;

  // Plays, if it doesn't, or stops, if it plays.
  void Run(bool run);
  // To a place, or the nearest that there is.
  void Go(int64_t ms);
  void TellChanges(const State& now);
  void TellPlace(const State& now);

  Actions actions_;
  std::function<State()> state_;
  GDBusNodeInfo* interfaces_;
  GDBusConnection* bus_ = nullptr;  // null until there is one
  unsigned objects_[2] = {};        // as they are registered on it
  unsigned name_ = 0, otherName_ = 0;

  // What the bus was told last, and when (microseconds of the monotonic clock):
  // from these, others know the position without asking.
  std::optional<State> told_;
  uint32_t placeTold_ = 0;
  int64_t placeToldAt_ = 0;
  bool went_ = false;  // the bus has moved the movie, however little
};

}  // namespace vexel::client
