// The client's one event loop: a GLib main context of its own, so that a test
// or a headless program can run it without touching the default one, and a
// desktop program can hand in the default one.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

typedef struct _GMainContext GMainContext;
typedef struct _GSource GSource;

namespace vexel::client {

// A timer, a wait or a pending call; it ends with this object. Ending it inside
// its own function is allowed.
class Watch {
 public:
  Watch() = default;
  explicit Watch(GSource* source) : source_(source) {}
  Watch(Watch&& other) noexcept;
  Watch& operator=(Watch&& other) noexcept;
  ~Watch() { Cancel(); }
  void Cancel();
  bool active() const { return source_ != nullptr; }

 private:
  GSource* source_ = nullptr;  // with a reference
};

enum WatchFor : unsigned { kReadable = 1, kWritable = 2 };

class EventLoop {
 public:
  // A null context makes a new one.
  explicit EventLoop(GMainContext* context = nullptr);
  ~EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  // Calls `run` once, in the next turn of the loop. Never inside this call.
  [[nodiscard]] Watch Soon(std::function<void()> run);
  // The same, and nobody needs to hold on to it. What `run` holds is let go
  // with the loop at the latest.
  void Post(std::function<void()> run);
  // Once, not earlier than `ms` from now.
  [[nodiscard]] Watch After(uint32_t ms, std::function<void()> run);
  // Again and again until the watch ends, whenever a file descriptor is ready
  // for one of `events` (bits of WatchFor) or is in trouble.
  [[nodiscard]] Watch When(int descriptor, unsigned events, std::function<void(unsigned)> run);

  // One turn; waits for something to happen if `wait` is set. False if nothing
  // was to be done.
  bool Turn(bool wait);
  // Turns until `done` is true or `ms` have passed. The last value of `done`.
  bool RunUntil(const std::function<bool()>& done, uint32_t ms);

  GMainContext* context() const { return context_; }

 private:
  GMainContext* context_;
};

}  // namespace vexel::client
