// Plays a movie as a stream through the plug-in, with nothing to see: a source
// that sends packets ahead of their time, a network between, a receiver that
// puts them in order, and a clock that moves when it is told to.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/core/event_loop.h"
#include "client/core/player.h"
#include "client/core/plugin_library.h"
#include "client/core/services.h"
#include "client/core/session.h"
#include "client/core/site.h"
#include "client/headless/virtual_scheduler.h"
#include "client/stream/jitter_buffer.h"
#include "client/stream/lossy_network.h"
#include "client/stream/packetizer.h"
#include "client/stream/resend_gate.h"

namespace vexel::client {

struct StreamSetup {
  std::string movie;   // path
  std::string plugin;  // path of the library
  bool linear = false;
  size_t packetBytes = 1400;
  uint32_t keyEveryMs = 2000;  // linear; 0 for none
  uint32_t leadMs = 5000;      // packets are sent so long before they are due
  uint32_t jitterMs = 200;     // a missing packet is waited for so long
  bool resends = true;
  std::optional<uint32_t> durationMs{};  // instead of the movie's own
  NetworkSetup network{};
  std::string browser{};  // command; empty: pages are printed only
  std::function<void(const LogReport&)> report{};
  // A line of what the plug-in asked for.
  std::function<void(const std::string&)> print{};
};

struct StreamStats {
  uint32_t sent = 0;        // packets, without answers and repeats
  uint32_t lost = 0;        // of them, on the way
  uint32_t doubles = 0;     // dropped by the receiver
  uint32_t reported = 0;    // handed to the plug-in as lost
  uint32_t late = 0;        // handed over as resends, since they came too late
  uint32_t requests = 0;    // of the plug-in
  uint32_t repeats = 0;     // packets at the stream's end that the receiver asked for
  uint32_t resent = 0;      // packets that answered either
  uint32_t resentLost = 0;  // of them, on the way
  uint64_t dummyBytes = 0;  // of the file, filled in since they were missing
  uint32_t lateWrites = 0;  // answers and late packets handed to the plug-in
};

class StreamClient {
 public:
  // Reads the movie. Throws std::runtime_error for one that can't be streamed.
  explicit StreamClient(StreamSetup setup);
  ~StreamClient();
  StreamClient(const StreamClient&) = delete;
  StreamClient& operator=(const StreamClient&) = delete;

  // Whether the movie's file is cut short; what there is is streamed.
  bool endsEarly() const { return movie_->endsEarly(); }
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
  StreamStats stats() const;

 private:
  void OpenMovie(const std::string& path);
  void OpenSession();
  void OpenURL(const std::string& url);
  void Advance(uint64_t ms);
  void FillBuffer();
  // Everything that is due at this moment. True if anything happened.
  bool RunDue();
  uint64_t NextEvent() const;  // milliseconds of the network's clock
  void SendDue();
  void SendNumbered(const StreamPacket& packet);
  void Deliver(JitterBuffer::Output output);
  void HandOver(const NetworkPacket& packet);
  void HandOverResent();
  void TakeRequest(IZEMBuffer* request);
  void AnswerRequests();
  void EndIfAllIn();
  void TimeSync(uint32_t ms);
  void JumpTo(uint32_t time);
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
  std::unique_ptr<MovieIndex> movie_;
  std::unique_ptr<Packetizer> packetizer_;
  std::unique_ptr<LossyNetwork> network_;
  std::unique_ptr<JitterBuffer> jitter_;
  ResendGate gate_;
  std::unique_ptr<Session> session_;
  std::string url_;
  size_t nextPacket_ = 0;                                   // of the packetizer's
  std::vector<StreamPacket> numbered_;                      // sent, by number
  std::multimap<uint64_t, std::vector<uint8_t>> requests_;  // by their arrival at the source
  uint64_t filled_ = 0;      // network time that passed while the clock stood, ms
  uint32_t standingAt_ = 0;  // the script's clock while the player stands
  bool repeatsAsked_ = false;
  bool ended_ = false;    // all packets are delivered or given up
  bool endTold_ = false;  // the plug-in was told so
  bool pastEnd_ = false;  // the plug-in was told of the end of its time
  StreamStats stats_;
};

}  // namespace vexel::client
