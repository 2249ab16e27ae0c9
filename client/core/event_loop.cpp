// Thin: a std::function beside each GSource. A source keeps its function alive
// while it runs, so a function may end its own watch.
#include "client/core/event_loop.h"

#include <glib-unix.h>
#include <glib.h>

#include <utility>

namespace vexel::client {

namespace {

template <class Function>
void Drop(void* function) {
  delete static_cast<Function*>(function);
}

using Run = std::function<void()>;
using RunReady = std::function<void(unsigned)>;

gboolean RunOnce(void* run) {
  (*static_cast<Run*>(run))();
  return G_SOURCE_REMOVE;
}

gboolean RunWhenReady(int, GIOCondition condition, void* run) {
  unsigned events = 0;
  // Trouble shows in whatever is tried next, so both sides are told.
  if (condition & (G_IO_IN | G_IO_HUP | G_IO_ERR | G_IO_NVAL)) events |= kReadable;
  if (condition & (G_IO_OUT | G_IO_HUP | G_IO_ERR | G_IO_NVAL)) events |= kWritable;
  (*static_cast<RunReady*>(run))(events);
  return G_SOURCE_CONTINUE;
}

void Start(GSource* source, GMainContext* context, int priority) {
  g_source_set_priority(source, priority);
  g_source_attach(source, context);
}

GSource* Later(GSource* source, GMainContext* context, Run run) {
  g_source_set_callback(source, RunOnce, new Run(std::move(run)), Drop<Run>);
  Start(source, context, G_PRIORITY_DEFAULT);
  return source;
}

}  // namespace

Watch::Watch(Watch&& other) noexcept : source_(std::exchange(other.source_, nullptr)) {}

Watch& Watch::operator=(Watch&& other) noexcept {
  if (this != &other) {
    Cancel();
    source_ = std::exchange(other.source_, nullptr);
  }
  return *this;
}

void Watch::Cancel() {
  if (GSource* source = std::exchange(source_, nullptr)) {
    g_source_destroy(source);
    g_source_unref(source);
  }
}

EventLoop::EventLoop(GMainContext* context)
    : context_(context ? g_main_context_ref(context) : g_main_context_new()) {}

EventLoop::~EventLoop() {
  g_main_context_unref(context_);
}

Watch EventLoop::Soon(std::function<void()> run) {
  return Watch(Later(g_timeout_source_new(0), context_, std::move(run)));
}

void EventLoop::Post(std::function<void()> run) {
  g_source_unref(Later(g_timeout_source_new(0), context_, std::move(run)));
}

Watch EventLoop::After(uint32_t ms, std::function<void()> run) {
  return Watch(Later(g_timeout_source_new(ms), context_, std::move(run)));
}

Watch EventLoop::When(int descriptor, unsigned events, std::function<void(unsigned)> run) {
  unsigned condition = 0;
  if (events & kReadable) condition |= G_IO_IN;
  if (events & kWritable) condition |= G_IO_OUT;
  GSource* source = g_unix_fd_source_new(descriptor, static_cast<GIOCondition>(condition));
  g_source_set_callback(source, G_SOURCE_FUNC(RunWhenReady), new RunReady(std::move(run)),
                        Drop<RunReady>);
  Start(source, context_, G_PRIORITY_DEFAULT);
  return Watch(source);
}

bool EventLoop::Turn(bool wait) {
  return g_main_context_iteration(context_, wait);
}

bool EventLoop::RunUntil(const std::function<bool()>& done, uint32_t ms) {
  bool late = false;
  const Watch limit = After(ms, [&late] { late = true; });
  while (!done()) {
    if (late) return false;
    Turn(true);
  }
  return true;
}

}  // namespace vexel::client
