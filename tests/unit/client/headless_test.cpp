#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
// X makes macros of words that the test library uses.
#undef None
#undef Bool
#undef Status
#undef Success
#include <gtest/gtest.h>

#include "client/headless/process_clock.h"
#include "client/headless/virtual_scheduler.h"
#include "client/headless/x_events.h"

namespace vexel::client {
namespace {

struct Looked {
  KeySym keysym = 0;
  std::string text;
};

Looked LookUp(void* event) {
  Looked looked;
  char bytes[7];
  const int count = XLookupString(&static_cast<XEvent*>(event)->xkey, bytes, sizeof bytes,
                                  &looked.keysym, nullptr);
  looked.text.assign(bytes, static_cast<size_t>(count));
  return looked;
}

TEST(XEvents, KeysAreUnderstoodWithoutAServer) {
  XEvents events;
  EXPECT_EQ(LookUp(events.Key(XK_Left, false, false)).keysym, KeySym{XK_Left});
  EXPECT_EQ(LookUp(events.Key(XK_Left, true, true)).keysym, KeySym{XK_Left});
  EXPECT_EQ(LookUp(events.Key(XK_Left, false, false)).text, "");
  for (unsigned long symbol = XK_space; symbol <= XK_ydiaeresis; symbol++) {
    if (symbol > XK_asciitilde && symbol < XK_nobreakspace) continue;
    const Looked looked = LookUp(events.Key(symbol, false, false));
    EXPECT_EQ(looked.keysym, symbol);
    EXPECT_EQ(looked.text, std::string(1, static_cast<char>(symbol)));
  }
  EXPECT_EQ(LookUp(events.Key(XK_Linefeed, false, false)).text, "\n");
}

TEST(XEvents, ModifiersAreInTheState) {
  XEvents events;
  EXPECT_EQ(static_cast<XEvent*>(events.Key('a', true, false))->xkey.state, unsigned{ShiftMask});
  EXPECT_EQ(static_cast<XEvent*>(events.Key('a', false, true))->xkey.state, unsigned{ControlMask});
}

TEST(XEvents, AKeyThatIsNotThereIsNone) {
  XEvents events;
  EXPECT_EQ(events.Key(XK_Insert, false, false), nullptr);
}

TEST(XEvents, ThePointerSaysWhetherItsButtonIsDown) {
  XEvents events;
  const auto state = [&](void* event) { return static_cast<XEvent*>(event)->xmotion.state; };
  EXPECT_EQ(state(events.Motion(1, 2)), 0u);
  const auto* press = static_cast<XEvent*>(events.Button(true, 3, 4));
  EXPECT_EQ(press->type, ButtonPress);
  EXPECT_EQ(press->xbutton.button, unsigned{Button1});
  EXPECT_EQ(press->xbutton.x, 3);
  EXPECT_EQ(press->xbutton.y, 4);
  EXPECT_EQ(state(events.Motion(1, 2)), unsigned{Button1Mask});
  events.Button(false, 3, 4);
  EXPECT_EQ(state(events.Motion(1, 2)), 0u);
}

class Callback : public Object<IZEMCallback> {
 public:
  std::function<void()> run;
  INT32 Func() override {
    run();
    return ZEM_OK;
  }
};

class VirtualTime : public testing::Test {
 protected:
  const uint64_t start = ProcessClock();
  Ref<VirtualScheduler> scheduler = Make<VirtualScheduler>();
  std::string calls;

  void* At(char name, UINT32 ms) {
    const auto callback = Make<Callback>();
    callback->run = [this, name] { calls += name; };
    return scheduler->ScheduleRelative(callback.get(), ms);
  }
  void To(uint64_t ms) {
    SetProcessClock(start + ms);
    scheduler->RunDue();
  }
};

TEST_F(VirtualTime, TimersRunWhenTheClockIsMovedOn) {
  At('b', 20);
  At('a', 10);
  EXPECT_EQ(scheduler->NextDue(), start + 10);
  To(9);
  EXPECT_EQ(calls, "");
  To(10);
  EXPECT_EQ(calls, "a");
  To(25);
  EXPECT_EQ(calls, "ab");
  EXPECT_EQ(scheduler->NextDue(), VirtualScheduler::kNever);
}

TEST_F(VirtualTime, ATimerThatSetsItselfAgainWaitsForTheClock) {
  const auto callback = Make<Callback>();
  callback->run = [&] {
    calls += 'x';
    scheduler->ScheduleRelative(callback.get(), 0);
  };
  scheduler->ScheduleRelative(callback.get(), 0);
  EXPECT_EQ(calls, "");
  To(5);
  EXPECT_EQ(calls, "x");
  callback->run = [] {};
  To(6);
}

TEST_F(VirtualTime, RemovedTimersDoNotCome) {
  void* handle = At('a', 1);
  scheduler->Remove(handle);
  scheduler->Remove(handle);
  To(5);
  EXPECT_EQ(calls, "");
}

}  // namespace
}  // namespace vexel::client
