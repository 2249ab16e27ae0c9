#include "client/core/session.h"

#include <cstdio>
#include <stdexcept>
#include <utility>

namespace vexel::client {

namespace {

void Check(INT32 result, const char* what) {
  if (result >= 0) return;
  char code[16];
  std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
  throw std::runtime_error(std::string(what) + " (" + code + ")");
}

}  // namespace

Session::Session(const PluginLibrary& library, IUnknown* context, Player* player, Site* site)
    : player_(player), site_(site), plugin_(library.Create()) {
  Check(plugin_->InitPlugin(context), "the plug-in does not start");
  renderer_ = Query<IZEMRenderer>(plugin_.get());
  if (!renderer_) throw std::runtime_error("the plug-in has no renderer");
  const char** types = nullptr;
  UINT32 granularity = 0;
  if (renderer_->GetRendererInfo(types, granularity) >= 0 && granularity > 0)
    granularity_ = granularity;
  player_->SetListener(this);
}

void Session::Open(IZEMStream* stream, IZEMValues* header) {
  Check(renderer_->StartStream(stream, player_.get()), "the stream does not start");
  Check(renderer_->OnHeader(header), "the header of the stream is refused");
  UINT32 type = 0;
  Ref<IZEMBuffer> info;
  renderer_->GetDisplayType(type, info.Out());

  const Ref<IZEMSiteUserSupplier> supplier = Query<IZEMSiteUserSupplier>(renderer_.get());
  Ref<IZEMSiteUser> user;
  if (supplier) supplier->CreateSiteUser(user.Out());
  if (!user) user = Query<IZEMSiteUser>(renderer_.get());
  if (!user) throw std::runtime_error("the plug-in draws nothing");
  Check(site_->AttachUser(user.get()), "the site is refused");
  attached_ = true;
}

INT32 Session::Packet(IZEMPacket* packet) {
  const Ref<IZEMRenderer> renderer = renderer_;
  return renderer ? renderer->OnPacket(packet, 0) : ZEM_UNEXPECTED;
}

INT32 Session::TimeSync(uint32_t time) {
  const Ref<IZEMRenderer> renderer = renderer_;
  return renderer ? renderer->OnTimeSync(time) : ZEM_UNEXPECTED;
}

INT32 Session::EndOfPackets() {
  const Ref<IZEMRenderer> renderer = renderer_;
  return renderer ? renderer->OnEndofPackets() : ZEM_UNEXPECTED;
}

INT32 Session::Buffering(uint32_t reason, uint16_t percent) {
  const Ref<IZEMRenderer> renderer = renderer_;
  return renderer ? renderer->OnBuffering(reason, percent) : ZEM_UNEXPECTED;
}

void Session::OnBegin(uint32_t time) {
  if (const Ref<IZEMRenderer> renderer = renderer_) renderer->OnBegin(time);
  if (onBegin) onBegin();
}

void Session::OnPause(uint32_t time) {
  if (const Ref<IZEMRenderer> renderer = renderer_) renderer->OnPause(time);
}

void Session::OnSeek(uint32_t oldTime, uint32_t newTime) {
  const Ref<IZEMRenderer> renderer = renderer_;
  if (!renderer) return;
  renderer->OnPreSeek(oldTime, newTime);
  if (onSeek) onSeek(newTime);
  renderer->OnPostSeek(oldTime, newTime);
}

void Session::OnStop() {
  if (const Ref<IZEMRenderer> renderer = renderer_) renderer->OnPause(0);
}

void Session::OnOpenURL(const std::string& url) {
  // The call may replace this session, its functions along with it.
  if (const auto open = onOpenURL) open(url);
}

void Session::Close() {
  if (!renderer_) return;
  player_->SetListener(nullptr);
  const Ref<IZEMRenderer> renderer = std::exchange(renderer_, {});
  renderer->EndStream();
  if (std::exchange(attached_, false)) site_->DetachUser();
  plugin_ = nullptr;
}

}  // namespace vexel::client
