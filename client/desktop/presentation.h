// One movie played in the window: it is loaded, fed to the plug-in as it comes
// in, and clocked until it is closed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "client/core/event_loop.h"
#include "client/core/http_service.h"
#include "client/core/player.h"
#include "client/core/plugin_library.h"
#include "client/core/services.h"
#include "client/core/session.h"
#include "client/desktop/play_clock.h"
#include "client/desktop/play_statistics.h"
#include "client/desktop/x_site.h"
#include "client/feed/feed.h"
#include "client/stream/delivery.h"
#include "client/stream/growing_movie.h"

namespace vexel::client {

// What all presentations of a window share; all of it outlives them.
struct Stage {
  EventLoop* loop;
  const PluginLibrary* library;
  HttpService* http;
  Preferences* preferences;
  XSite* site;
  std::function<void(const LogReport&)> report;  // null: no log
  // Movies are sent over a network that is made up; else they play as they load.
  std::optional<DeliverySetup> delivery{};
};

// What a presentation tells its window, never inside a call of the window's.
struct PresentationEvents {
  // A text for people. The presentation goes on with what it has, if anything.
  std::function<void(const std::string&)> onProblem;
  // The movie asks for another one in its place.
  std::function<void(const std::string& url)> onOpenURL;
  // The movie asks for a page in a browser. False refuses.
  std::function<bool(const std::string& url)> onPage;
};

class Presentation {
 public:
  // Loading begins at once.
  Presentation(const Stage& stage, const std::string& url, PresentationEvents events);
  ~Presentation();
  Presentation(const Presentation&) = delete;
  Presentation& operator=(const Presentation&) = delete;

  const std::string& url() const { return url_; }
  // Whether there is something to play yet.
  bool started() const { return session_ != nullptr; }
  bool running() const { return started() && player_->IsRunning(); }
  // Milliseconds, position below length but at the end; percent of the file.
  uint32_t position() const;
  uint32_t length() const;
  // Of the file, or of the packets that the beginning or a jump waits for.
  int loadedPercent() const;
  bool loading() const { return transfer_ != nullptr || buffering(); }
  // The movie's file; null as long as it is not here as a whole.
  const std::vector<uint8_t>* wholeFile() const {
    return !transfer_ && movie_.complete() ? &movie_.bytes() : nullptr;
  }
  // The clock stands until more comes in.
  bool buffering() const { return clock_.held(); }

  void PlayOrPause();
  void Seek(uint32_t ms);
  // Stops, and goes so many frames on, or back below 0.
  void StepFrames(int count);
  void SetSpeed(double speed) { clock_.SetSpeed(speed); }
  void SetLoop(bool loop) { loop_ = loop; }
  ContextMenu& menu() const { return services_->menu(); }

 private:
  void LoadFile(const std::string& path);
  void LoadPage(const std::string& url);
  // Takes what has come in, and starts when there is something to start with.
  void Take(std::span<const uint8_t> bytes);
  void Finish(bool whole);
  bool CanStart() const;
  void Start();
  std::shared_ptr<Feed> NewFeed();
  void RunFeed();
  void Tick();
  void GoOn(uint32_t now);
  void TimeSync(uint32_t now);
  void Fail(const std::string& text);
  // Milliseconds of real time.
  uint32_t UntilNextFrame() const;
  void TickIn(uint32_t ms);
  // Ticks from now on, not inside this call.
  void Wake();

  Stage stage_;
  std::string url_;
  PresentationEvents events_;
  PlayClock clock_;
  GrowingMovie movie_;
  bool loop_ = true;
  std::shared_ptr<Feed> feed_;  // with session_
  int buffered_ = 100;          // percent of what the clock waits for, as the plug-in knows it
  bool endTold_ = false;        // it knows that all packets are in
  std::unique_ptr<HttpTransfer> transfer_;
  std::unique_ptr<Services> services_;
  Ref<Player> player_;
  std::unique_ptr<Session> session_;
  Watch tick_;
  uint32_t standingMs_ = 1;  // the next wait while the clock stands
  // When the plug-in last took a time to draw for, and how long it took.
  int64_t burstBeganUs_ = 0, burstUs_ = 0;
  std::optional<PlayStatistics> statistics_;  // with session_
  uint64_t picturesBefore_ = 0;               // of other movies
  Watch soon_;
};

}  // namespace vexel::client
