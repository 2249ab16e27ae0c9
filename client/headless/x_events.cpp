// XLookupString asks the event's display for its keyboard map and for nothing
// else. So the display here is a map and no more: no server is connected.
#include "client/headless/x_events.h"

#include <X11/Xlib.h>
#include <X11/Xlibint.h>
#include <X11/keysym.h>
// The names that Xlibint defines in small letters.
#undef min
#undef max

#include <cstdlib>
#include <iterator>
#include <new>
#include <vector>

namespace vexel::client {

namespace {

constexpr int kMinKeycode = 8;
constexpr int kPerKeycode = 2;  // plain and with Shift

constexpr KeySym kNamed[] = {XK_Left,      XK_Right,  XK_Up,     XK_Down,    XK_Home,
                             XK_End,       XK_Delete, XK_Prior,  XK_Next,    XK_Return,
                             XK_BackSpace, XK_Tab,    XK_Escape, XK_Linefeed};

}  // namespace

struct XEvents::State {
  XEvent event;
  bool buttonIsDown = false;
  std::vector<KeySym> keysyms;  // two to a key, the same: no key changes with Shift
  XModifierKeymap modifiers{};
  KeyCode noModifier = 0;
  // Where Xlib keeps the converters of texts, which it sets up at their first
  // use; its own structure is smaller.
  alignas(16) unsigned char converters[4096] = {};
  // Xlib makes such structures by calloc, and reads them so.
  std::unique_ptr<_XDisplay, decltype(&std::free)> display{
      static_cast<_XDisplay*>(std::calloc(1, sizeof(_XDisplay))), std::free};
};

XEvents::XEvents() : state_(std::make_unique<State>()) {
  std::vector<KeySym> keys(std::begin(kNamed), std::end(kNamed));
  for (KeySym symbol = XK_space; symbol <= XK_asciitilde; symbol++) keys.push_back(symbol);
  for (KeySym symbol = XK_nobreakspace; symbol <= XK_ydiaeresis; symbol++) keys.push_back(symbol);
  std::vector<KeySym>* keysyms = &state_->keysyms;
  for (const KeySym symbol : keys) keysyms->insert(keysyms->end(), kPerKeycode, symbol);
  _XDisplay* display = state_->display.get();
  if (!display) throw std::bad_alloc();
  display->flags = XlibDisplayNoXkb;
  display->xkb_info = reinterpret_cast<decltype(display->xkb_info)>(state_->converters);
  display->min_keycode = kMinKeycode;
  display->max_keycode = kMinKeycode + static_cast<int>(keys.size()) - 1;
  display->keysyms_per_keycode = kPerKeycode;
  display->keysyms = keysyms->data();
  state_->modifiers.modifiermap = &state_->noModifier;
  display->modifiermap = &state_->modifiers;
}

XEvents::~XEvents() = default;

void* XEvents::Key(unsigned long keysym, bool shift, bool control) {
  Display* display = reinterpret_cast<Display*>(state_->display.get());
  const KeyCode keycode = XKeysymToKeycode(display, keysym);
  if (keycode == 0) return nullptr;
  XKeyEvent* key = &(state_->event = {}).xkey;
  key->type = KeyPress;
  key->display = display;
  key->state = (shift ? ShiftMask : 0) | (control ? ControlMask : 0);
  key->keycode = keycode;
  return &state_->event;
}

void* XEvents::Button(bool press, int x, int y) {
  XButtonEvent* button = &(state_->event = {}).xbutton;
  button->type = press ? ButtonPress : ButtonRelease;
  button->button = Button1;
  // As it was before this event.
  button->state = press ? 0 : Button1Mask;
  button->x = x;
  button->y = y;
  state_->buttonIsDown = press;
  return &state_->event;
}

void* XEvents::Motion(int x, int y) {
  XMotionEvent* motion = &(state_->event = {}).xmotion;
  motion->type = MotionNotify;
  motion->state = state_->buttonIsDown ? Button1Mask : 0;
  motion->x = x;
  motion->y = y;
  return &state_->event;
}

}  // namespace vexel::client
