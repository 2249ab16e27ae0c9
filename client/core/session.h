// One presentation in the plug-in: a renderer made, started, fed, clocked,
// drawn and ended, in the order that it expects.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "client/core/object.h"
#include "client/core/player.h"
#include "client/core/plugin_library.h"
#include "client/core/site.h"
#include "client/core/stream_source.h"

namespace vexel::client {

class Session final : private PlayerListener {
 public:
  // The last three arguments are held. Throws std::runtime_error if the plug-in
  // refuses to start.
  Session(const PluginLibrary& library, IUnknown* context, Player* player, Site* site);
  ~Session() { Close(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // The presentation is to be replaced by another one; called from the loop.
  std::function<void(const std::string& url)> onOpenURL;
  // The clock runs, after the renderer was told.
  std::function<void()> onBegin;
  // The clock has jumped: the source goes on from there. Called between the
  // two calls that tell the renderer.
  std::function<void(uint32_t newTime)> onSeek;

  // A stream begins. Throws std::runtime_error if it can't be played.
  void Open(IZEMStream* stream, IZEMValues* header);

  // What the renderer answers; ZEM_UNEXPECTED behind Close.
  INT32 Packet(IZEMPacket* packet);
  INT32 TimeSync(uint32_t time);
  INT32 EndOfPackets();
  INT32 Buffering(uint32_t reason, uint16_t percent);

  // Ends the stream, detaches the site, and lets the plug-in go.
  void Close();

  // How often it wants to know the time, milliseconds.
  uint32_t granularity() const { return granularity_; }

 private:
  void OnBegin(uint32_t time) override;
  void OnPause(uint32_t time) override;
  void OnSeek(uint32_t oldTime, uint32_t newTime) override;
  void OnStop() override;
  void OnOpenURL(const std::string& url) override;

  Ref<Player> player_;
  Ref<Site> site_;
  Ref<IZEMPlugin> plugin_;
  Ref<IZEMRenderer> renderer_;
  uint32_t granularity_ = 100;
  bool attached_ = false;
};

}  // namespace vexel::client
