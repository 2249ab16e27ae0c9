// Plays a movie as a stream through the plug-in, with nothing to see: a source
// that sends packets ahead of their time, a network between, a receiver that
// puts them in order, and a clock that moves when it is told to.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "client/core/event_loop.h"
#include "client/core/player.h"
#include "client/core/plugin_library.h"
#include "client/core/services.h"
#include "client/core/session.h"
#include "client/core/site.h"
#include "client/headless/virtual_scheduler.h"
#include "client/stream/delivery.h"

namespace vexel::client {

struct StreamSetup {
  std::string movie;   // path
  std::string plugin;  // path of the library
  DeliverySetup delivery{};
  std::optional<uint32_t> durationMs{};  // instead of the movie's own
  std::string browser{};                 // command; empty: pages are printed only
  std::function<void(const LogReport&)> report{};
  // A line of what the plug-in asked for.
  std::function<void(const std::string&)> print{};
};

class StreamClient {
 public:
  // Reads the movie. Throws std::runtime_error for one that can't be streamed.
  explicit StreamClient(StreamSetup setup);
  ~StreamClient();
  StreamClient(const StreamClient&) = delete;
  StreamClient& operator=(const StreamClient&) = delete;

  // Whether the movie's file is cut short; what there is is streamed.
  bool endsEarly() const { return delivery_->movie().endsEarly(); }
  // Before Start.
  Preferences& preferences() const { return *preferences_; }
  // Loads the plug-in, opens the stream, fills the buffer and begins. Nothing is
  // drawn before the clock says a time. Throws std::runtime_error.
  void Start();
  bool started() const { return session_ != nullptr; }

  // The presentation's clock reaches a time, and the plug-in is told. While it
  // stands still, so much time passes, and the plug-in is told where it stands.
  void ClockTo(uint32_t ms);
  // Time passes, and no more.
  void Wait(uint32_t ms);
  // So much real time passes for sockets and downloads; the clock stands.
  void Serve(uint32_t ms);
  void Begin();
  void Pause();
  void Seek(uint32_t ms);
  void Resize(int32_t width, int32_t height);
  // Whether there is such an item and the plug-in took it.
  bool Choose(uint16_t menuItem);
  // An X event for the site; whether the plug-in handled it.
  bool Send(uint32_t code, void* xEvent);

  const MemorySurface& surface() const { return site_->surface(); }
  const ContextMenu& menu() const { return services_->menu(); }
  // Of the movie that plays now.
  DeliveryStats stats() const { return delivery_->stats(); }

 private:
  std::unique_ptr<Delivery> NewDelivery(const std::string& path);
  void SetMovie(const std::string& path, std::unique_ptr<Delivery> delivery);
  void OpenSession();
  void OpenURL(const std::string& url);
  void Advance(uint64_t ms);
  void FillBuffer();
  // Everything that is due at this moment. True if anything happened.
  bool RunDue();
  void TimeSync(uint32_t ms);
  void Settle();
  uint64_t networkNow() const;

  StreamSetup setup_;
  EventLoop loop_;
  Ref<Preferences> preferences_;
  Ref<VirtualScheduler> scheduler_;
  std::unique_ptr<PluginLibrary> library_;
  std::unique_ptr<Services> services_;
  Ref<Player> player_;
  Ref<Site> site_;

  // The presentation.
  std::unique_ptr<Delivery> delivery_;
  std::unique_ptr<Session> session_;
  std::string url_;
  uint64_t filled_ = 0;      // network time that passed while the clock stood, ms
  uint32_t standingAt_ = 0;  // the script's clock while the player stands
  bool endTold_ = false;     // the plug-in was told that all packets are in
  bool pastEnd_ = false;     // the plug-in was told of the end of its time
};

}  // namespace vexel::client
