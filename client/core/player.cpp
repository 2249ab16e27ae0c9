#include "client/core/player.h"

#include <algorithm>
#include <utility>

namespace vexel::client {

Player::Player(EventLoop* loop, IUnknown* context, std::function<uint64_t()> now)
    : loop_(loop), context_(context), now_(std::move(now)) {}

INT32 Player::GetContext(IUnknown*& context) {
  context = context_.Share();
  return context ? ZEM_OK : ZEM_UNEXPECTED;
}

UINT32 Player::GetPosition() {
  const uint64_t position = position_ + (running_ ? now_() - startedAt_ : 0);
  return static_cast<UINT32>(std::min<uint64_t>(position, UINT32_MAX));
}

// Each sink that was there at the beginning and still is.
template <class Tell>
void Player::TellSinks(Tell tell) {
  const Ref<Player> self(this);
  const std::vector<Ref<IZEMClientAdviseSink>> sinks = sinks_;
  for (const Ref<IZEMClientAdviseSink>& sink : sinks) {
    const bool there = std::any_of(sinks_.begin(), sinks_.end(),
                                   [&](const auto& one) { return one.get() == sink.get(); });
    if (there) tell(sink.get());
  }
}

INT32 Player::OpenURL(const char* url) {
  if (!url) return ZEM_BAD_ARGUMENT;
  nextUrl_ = url;
  return ZEM_OK;
}

INT32 Player::Begin() {
  const Ref<Player> self(this);
  if (!nextUrl_.empty()) {
    // Not in this call: it comes from the plug-in that is to be replaced.
    open_ = loop_->Soon([this, url = std::exchange(nextUrl_, {})] {
      const Ref<Player> held(this);
      if (listener_) listener_->OnOpenURL(url);
    });
    return ZEM_OK;
  }
  if (running_) return ZEM_OK;
  running_ = true;
  startedAt_ = now_();
  const UINT32 time = GetPosition();
  if (listener_) listener_->OnBegin(time);
  TellSinks([time](IZEMClientAdviseSink* sink) { sink->OnBegin(time); });
  return ZEM_OK;
}

void Player::Stand() {
  position_ = GetPosition();
  running_ = false;
}

INT32 Player::Stop() {
  const Ref<Player> self(this);
  running_ = false;
  position_ = 0;
  if (listener_) listener_->OnStop();
  TellSinks([](IZEMClientAdviseSink* sink) { sink->OnStop(); });
  return ZEM_OK;
}

INT32 Player::Pause() {
  const Ref<Player> self(this);
  if (!running_) return ZEM_OK;
  Stand();
  const UINT32 time = GetPosition();
  if (listener_) listener_->OnPause(time);
  TellSinks([time](IZEMClientAdviseSink* sink) { sink->OnPause(time); });
  return ZEM_OK;
}

INT32 Player::Seek(UINT32 ms) {
  const Ref<Player> self(this);
  const UINT32 old = GetPosition();
  TellSinks([=](IZEMClientAdviseSink* sink) { sink->OnPreSeek(old, ms); });
  SetPosition(ms);
  if (listener_) listener_->OnSeek(old, ms);
  TellSinks([=](IZEMClientAdviseSink* sink) { sink->OnPostSeek(old, ms); });
  return ZEM_OK;
}

INT32 Player::AddAdviseSink(IZEMClientAdviseSink* sink) {
  if (!sink) return ZEM_BAD_ARGUMENT;
  for (const auto& one : sinks_) {
    if (one.get() == sink) return ZEM_UNEXPECTED;
  }
  sinks_.push_back(sink);
  return ZEM_OK;
}

INT32 Player::RemoveAdviseSink(IZEMClientAdviseSink* sink) {
  const auto found = std::find_if(sinks_.begin(), sinks_.end(),
                                  [sink](const auto& one) { return one.get() == sink; });
  if (found == sinks_.end()) return ZEM_UNEXPECTED;
  const Ref<IZEMClientAdviseSink> held = std::move(*found);
  sinks_.erase(found);
  return ZEM_OK;
}

INT32 Player::GoToURL(const char* url, const char* target) {
  const Ref<IZEMHyperNavigate> service = Query<IZEMHyperNavigate>(context_.get());
  return service ? service->GoToURL(url, target) : ZEM_UNEXPECTED;
}

void Player::SetPosition(uint32_t ms) {
  position_ = ms;
  startedAt_ = now_();
}

void Player::Reset() {
  running_ = false;
  position_ = 0;
  length_ = 0;
}

void Player::TellPosition() {
  const UINT32 position = GetPosition();
  TellSinks([=, this](IZEMClientAdviseSink* sink) { sink->OnPosLength(position, length_); });
}

void Player::Close() {
  listener_ = nullptr;
  open_.Cancel();
  const auto sinks = std::exchange(sinks_, {});
  context_ = nullptr;
}

}  // namespace vexel::client
