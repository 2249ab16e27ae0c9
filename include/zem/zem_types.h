// Types that cross the border between a client and a plug-in: fixed widths,
// natural alignment, nothing of either side's own.
#pragma once

#include <stdint.h>
#include <string.h>

typedef int32_t INT32;
typedef uint32_t UINT32;
typedef uint16_t UINT16;
typedef uint8_t UINT8;

// Results of operations: negative is failure.
static const INT32 ZEM_OK = 0;
static const INT32 ZEM_NOT_IMPLEMENTED = (INT32)0x80004001u;
static const INT32 ZEM_NO_INTERFACE = (INT32)0x80004002u;
static const INT32 ZEM_FAILED = (INT32)0x80004005u;
static const INT32 ZEM_OUT_OF_MEMORY = (INT32)0x8007000Eu;
static const INT32 ZEM_BAD_ARGUMENT = (INT32)0x80070057u;
// What the operation needs is not there, or not in this state.
static const INT32 ZEM_UNEXPECTED = (INT32)0x80040009u;

// Names an interface; compared byte by byte.
struct ZEMID {
  UINT32 a;
  UINT16 b, c;
  UINT8 d[8];
};

static inline bool ZEMIsEqualID(const ZEMID& x, const ZEMID& y) {
  return memcmp(&x, &y, sizeof(ZEMID)) == 0;
}

// Pixels; right and bottom lie one beyond the last column and row.
struct _QKxRect {
  INT32 left, top, right, bottom;
};

struct _QKxSize {
  INT32 width, height;
};

// Codes of _QKxEvent: those of X11 as they are, and our own from 0x2000 up.
static const UINT32 ZEM_EVENT_X_KEY_PRESS = 2;
static const UINT32 ZEM_EVENT_X_BUTTON_PRESS = 4;
static const UINT32 ZEM_EVENT_X_BUTTON_RELEASE = 5;
static const UINT32 ZEM_EVENT_X_MOTION = 6;
static const UINT32 ZEM_EVENT_X_EXPOSE = 12;  // answered by the client itself
static const UINT32 ZEM_EVENT_DRAW = 0x2001;  // draw into a surface

// What happened on a site. The structure is the caller's, borrowed for the
// call; the site user writes `result` and `handled`.
struct _QKxEvent {
  UINT32 event;
  void* window;  // X11 events: the window's number, as a pointer
  void* param1;  // ZEM_EVENT_DRAW: an IZEMVideoSurface*
  void* param2;  // X11 events: an XEvent* with its live Display
  UINT32 result;
  INT32 handled;  // not 0: nobody else needs to look at the event
};

// The scheduler's clock; microseconds are below 1,000,000.
struct _ZEMTimeval {
  UINT32 seconds, microseconds;
};

// Describes a picture for IZEMVideoSurface::CopyBitmap. Its pixels are native
// words 0xAARRGGBB whose alpha is to be ignored, rows from the top and
// `width` * 4 bytes apart.
struct QKBitmapInfo {
  UINT32 headerSize;  // 52
  INT32 width, height;
  UINT16 planes;        // 1
  UINT16 bitsPerPixel;  // 32
  UINT32 zero[6];
  UINT8 pad[12];
};
