// The client's player: it owns the presentation's clock, and the plug-in asks
// it to go on, stop, jump, or show something else.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "client/core/event_loop.h"
#include "client/core/object.h"

namespace vexel::client {

// Who carries out what the player decides. Times are milliseconds of the
// presentation.
class PlayerListener {
 public:
  virtual void OnBegin(uint32_t time) = 0;
  virtual void OnPause(uint32_t time) = 0;
  virtual void OnSeek(uint32_t oldTime, uint32_t newTime) = 0;
  virtual void OnStop() = 0;
  // The presentation is to be replaced. Called from the loop, when no call of
  // the plug-in is under way.
  virtual void OnOpenURL(const std::string& url) = 0;

 protected:
  ~PlayerListener() = default;
};

class Player : public Object<IZEMPlayer, IZEMHyperNavigate> {
 public:
  // `now` is a clock in milliseconds that never goes back. The context is held;
  // the rest must live until Close.
  Player(EventLoop* loop, IUnknown* context, std::function<uint64_t()> now);

  INT32 GetContext(IUnknown*& context) override;
  UINT32 GetPosition() override;
  UINT32 GetLength() override { return length_; }
  INT32 IsRunning() override { return running_; }
  INT32 OpenURL(const char* url) override;
  INT32 Begin() override;
  INT32 Stop() override;
  INT32 Pause() override;
  INT32 Seek(UINT32 ms) override;
  INT32 AddAdviseSink(IZEMClientAdviseSink* sink) override;
  INT32 RemoveAdviseSink(IZEMClientAdviseSink* sink) override;
  // Answers as the context's service; ZEM_UNEXPECTED without one.
  INT32 GoToURL(const char* url, const char* target) override;

  void SetListener(PlayerListener* listener) { listener_ = listener; }
  // Puts the clock right without telling anyone.
  void SetPosition(uint32_t ms);
  void SetLength(uint32_t ms) { length_ = ms; }
  // A new presentation: its clock stands at 0.
  void Reset();
  // Tells all sinks where the clock is.
  void TellPosition();
  // Lets go of everything.
  void Close();

 private:
  template <class Tell>
  void TellSinks(Tell tell);
  void Stand();

  EventLoop* loop_;
  Ref<IUnknown> context_;
  std::function<uint64_t()> now_;
  PlayerListener* listener_ = nullptr;
  std::vector<Ref<IZEMClientAdviseSink>> sinks_;
  uint32_t length_ = 0;
  bool running_ = false;
  uint64_t startedAt_ = 0;  // the clock then stood at position_
  uint64_t position_ = 0;
  std::string nextUrl_;  // opened at Begin
  Watch open_;
};

}  // namespace vexel::client
