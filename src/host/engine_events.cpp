// Keys and the mouse, as the events of X11 that the site brings.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include "base/ref.h"
#include "host/vexel_engine.h"
#include "player/key_codes.h"

namespace vexel {

namespace {

// Bits of the modifiers of HandleKeyDown.
constexpr int32_t kShift = 1;
constexpr int32_t kControl = 2;

// Bytes of one key's text.
constexpr int kTextSize = 7;

struct KeyRow {
  KeySym keysym;
  KeyCode code;
};

constexpr KeyRow kKeys[] = {
    {XK_Left, kKeyLeft},     {XK_Right, kKeyRight},   {XK_Home, kKeyHome},
    {XK_End, kKeyEnd},       {XK_Delete, kKeyDelete}, {XK_BackSpace, kKeyBackspace},
    {XK_Return, kKeyReturn}, {XK_Up, kKeyUp},         {XK_Down, kKeyDown},
    {XK_Prior, kKeyPageUp},  {XK_Next, kKeyPageDown}, {XK_Tab, kKeyTab},
};

}  // namespace

INT32 CVexelEngine::HandleEvent(_QKxEvent* event) {
  if (!event) return ZEM_BAD_ARGUMENT;
  event->result = 0;
  event->handled = 0;
  auto* x = static_cast<XEvent*>(event->param2);
  if (!x) return ZEM_OK;
  const ScopedRef<IZEMRenderer> self(this);
  switch (event->event) {
    case ZEM_EVENT_X_KEY_PRESS:
      if (KeyPressed(x)) event->handled = 1;
      break;
    case ZEM_EVENT_X_BUTTON_PRESS:
      if (x->xbutton.button == Button1) {
        const SPOINT pt = {x->xbutton.x, x->xbutton.y};
        MouseDown(&pt);
        m_bMouseDown = true;
      }
      break;
    case ZEM_EVENT_X_BUTTON_RELEASE:
      if (x->xbutton.button == Button1) {
        const SPOINT pt = {x->xbutton.x, x->xbutton.y};
        MouseUp(&pt);
        m_bMouseDown = false;
      }
      break;
    case ZEM_EVENT_X_MOTION: {
      const SPOINT pt = {x->xmotion.x, x->xmotion.y};
      MouseMove(&pt, m_bMouseDown);
      event->handled = 1;
      break;
    }
    default:
      break;
  }
  return ZEM_OK;
}

// True if the key means anything, whatever the movie makes of it.
bool CVexelEngine::KeyPressed(XEvent* event) {
  if (!event->xkey.display) return false;
  int32_t modifiers = 0;
  if (event->xkey.state & ShiftMask) modifiers |= kShift;
  if (event->xkey.state & ControlMask) modifiers |= kControl;
  char text[kTextSize] = {};
  KeySym keysym = NoSymbol;
  const int count = XLookupString(&event->xkey, text, kTextSize, &keysym, nullptr);
  for (const KeyRow& row : kKeys) {
    if (row.keysym != keysym) continue;
    HandleKeyDown(row.code, modifiers);
    return true;
  }
  for (int i = 0; i < count && i < kTextSize; ++i) {
    HandleKeyDown(static_cast<signed char>(text[i]), modifiers);
  }
  return count > 0;
}

}  // namespace vexel
