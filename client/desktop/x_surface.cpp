// The server reads shared memory when it comes to it, so each copy waits until
// the one before has been read.
#include "client/desktop/x_surface.h"

#include <X11/Xutil.h>
#include <gdk/gdkx.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace vexel::client {

namespace {

constexpr int kMaxSide = 16384;
constexpr int kRowPad = 32;  // bits, as pictures of an X server have them at most

// Where pictures may go; far from where numbers overflow.
constexpr _QKxRect kPlaces{-kMaxSide, -kMaxSide, 2 * kMaxSide, 2 * kMaxSide};

int HostByteOrder() {
  const uint16_t probe = 1;
  uint8_t first;
  std::memcpy(&first, &probe, 1);
  return first == 1 ? LSBFirst : MSBFirst;
}

bool Covers(const _QKxRect& outer, const _QKxRect& inner) {
  return AreEqual(Intersection(outer, inner), inner);
}

// Rounded down, so that the last pixel stays inside.
int Scaled(int at, int from, int to) {
  return from > 0 ? static_cast<int>(int64_t{at} * to / from) : at;
}

}  // namespace

XSurface::XSurface(Display* display, Window window) : display_(display), window_(window) {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(display_, window_, &attributes))
    throw std::runtime_error("the window has gone");
  visual_ = attributes.visual;
  depth_ = attributes.depth;
  XImage* one = XCreateImage(display_, visual_, static_cast<unsigned>(depth_), ZPixmap, 0, nullptr,
                             1, 1, kRowPad, 0);
  if (!one) throw std::bad_alloc();
  // A palette has no masks.
  layout_ = {one->bits_per_pixel, static_cast<uint32_t>(one->red_mask),
             static_cast<uint32_t>(one->green_mask), static_cast<uint32_t>(one->blue_mask)};
  XDestroyImage(one);
  if (!KnowsLayout(layout_)) {
    throw std::runtime_error("the display's colours (" + std::to_string(depth_) +
                             " bits a pixel) are of a kind that movies cannot be shown in; a "
                             "display with true colours is needed");
  }
  gc_ = XCreateGC(display_, window_, 0, nullptr);
  // Shared memory takes pixels as they are.
  mayShare_ = XShmQueryExtension(display_) && ImageByteOrder(display_) == HostByteOrder();
}

XSurface::~XSurface() {
  Drop();
  XFreeGC(display_, gc_);
}

bool XSurface::MakeShared(int width, int height) {
  if (!mayShare_) return false;
  image_ = XShmCreateImage(display_, visual_, static_cast<unsigned>(depth_), ZPixmap, nullptr,
                           &segment_, static_cast<unsigned>(width), static_cast<unsigned>(height));
  if (!image_) return false;
  const size_t bytes = static_cast<size_t>(image_->bytes_per_line) * static_cast<size_t>(height);
  segment_.shmid = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
  void* memory =
      segment_.shmid < 0 ? reinterpret_cast<void*>(-1) : shmat(segment_.shmid, nullptr, 0);
  bool attached = false;
  if (memory != reinterpret_cast<void*>(-1)) {
    segment_.shmaddr = image_->data = static_cast<char*>(memory);
    segment_.readOnly = True;
    // A server on another machine offers the extension and then refuses.
    GdkDisplay* display = gdk_x11_lookup_xdisplay(display_);
    gdk_x11_display_error_trap_push(display);
    XShmAttach(display_, &segment_);
    XSync(display_, False);
    attached = gdk_x11_display_error_trap_pop(display) == 0;
  }
  // Goes with the last of the two that use it.
  if (segment_.shmid >= 0) shmctl(segment_.shmid, IPC_RMID, nullptr);
  if (attached) return true;
  mayShare_ = false;
  image_->data = nullptr;
  XDestroyImage(image_);
  image_ = nullptr;
  if (segment_.shmaddr) shmdt(segment_.shmaddr);
  segment_ = {};
  return false;
}

void XSurface::MakePlain(int width, int height) {
  image_ = XCreateImage(display_, visual_, static_cast<unsigned>(depth_), ZPixmap, 0, nullptr,
                        static_cast<unsigned>(width), static_cast<unsigned>(height), kRowPad, 0);
  if (!image_) return;
  image_->byte_order = HostByteOrder();  // the library turns it for the server
  image_->data = static_cast<char*>(
      std::calloc(static_cast<size_t>(height), static_cast<size_t>(image_->bytes_per_line)));
  if (image_->data) return;
  XDestroyImage(image_);
  image_ = nullptr;
}

void XSurface::Drop() {
  if (!image_) return;
  Finish();
  if (segment_.shmaddr) {
    XShmDetach(display_, &segment_);
    XSync(display_, False);
    image_->data = nullptr;
    shmdt(segment_.shmaddr);
  }
  XDestroyImage(image_);  // and its plain memory
  image_ = nullptr;
  segment_ = {};
}

// Waits until the server has read what it was shown.
void XSurface::Finish() {
  if (copying_) XSync(display_, False);
  copying_ = false;
}

void XSurface::Resize(_QKxSize size) {
  const int width = std::clamp(size.width, 0, kMaxSide);
  const int height = std::clamp(size.height, 0, kMaxSide);
  if (image_ && width == image_->width && height == image_->height) return;
  Drop();
  DamageAll();
  if (width == 0 || height == 0) return;
  if (!MakeShared(width, height)) MakePlain(width, height);
}

void XSurface::Damage(const _QKxRect& rect) {
  if (!IsEmpty(rect)) damage_ = Union(damage_, rect);
}

PictureMemory XSurface::Memory() const {
  return {image_->data, image_->width, image_->height, image_->bytes_per_line, layout_};
}

INT32 XSurface::CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect& dest,
                           const _QKxRect& source) {
  if (!pixels || !info || info->bitsPerPixel != kPictureLayout.bitsPerPixel || info->width <= 0 ||
      info->height <= 0)
    return ZEM_BAD_ARGUMENT;
  const _QKxRect picture{0, 0, info->width, info->height};
  if (!Covers(picture, source) || !Covers(kPlaces, dest)) return ZEM_BAD_ARGUMENT;
  if (!image_) return ZEM_UNEXPECTED;
  if (IsEmpty(dest) || IsEmpty(source)) return ZEM_OK;
  if (!AreEqual(dest, dest_) || !AreEqual(source, source_)) DamageAll();
  dest_ = dest;
  source_ = source;
  const _QKxRect all{0, 0, image_->width, image_->height};
  const _QKxRect part = Intersection(all, allDamaged_ ? dest : PartOf(dest, source, damage_));
  allDamaged_ = false;
  damage_ = {0, 0, 0, 0};
  if (IsEmpty(part)) return ZEM_OK;
  Finish();
  // Not written to.
  const PictureMemory from{const_cast<UINT8*>(pixels), info->width, info->height, info->width * 4,
                           kPictureLayout};
  if (!CopyPicture(from, source, Memory(), dest, part)) return ZEM_OUT_OF_MEMORY;
  copies_++;
  Show(part);
  return ZEM_OK;
}

void XSurface::Show(const _QKxRect& part) {
  const _QKxRect shown = Intersection(part, {0, 0, width(), height()});
  if (IsEmpty(shown)) return;
  const auto across = static_cast<unsigned>(shown.right - shown.left);
  const auto down = static_cast<unsigned>(shown.bottom - shown.top);
  if (segment_.shmaddr) {
    XShmPutImage(display_, window_, gc_, image_, shown.left, shown.top, shown.left, shown.top,
                 across, down, False);
    copying_ = true;
  } else {
    XPutImage(display_, window_, gc_, image_, shown.left, shown.top, shown.left, shown.top, across,
              down);
  }
  XFlush(display_);
}

void XSurface::ToPicture(int* x, int* y) const {
  *x = Scaled(*x - dest_.left, dest_.right - dest_.left, source_.right - source_.left);
  *y = Scaled(*y - dest_.top, dest_.bottom - dest_.top, source_.bottom - source_.top);
}

std::vector<uint8_t> XSurface::Rgb() const {
  if (!image_) return {};
  const _QKxRect all{0, 0, image_->width, image_->height};
  std::vector<uint32_t> words(static_cast<size_t>(all.right) * static_cast<size_t>(all.bottom));
  const PictureMemory to{words.data(), all.right, all.bottom, all.right * 4, kPictureLayout};
  CopyPicture(Memory(), all, to, all, all);
  std::vector<uint8_t> rgb;
  rgb.reserve(words.size() * 3);
  for (const uint32_t word : words) {
    for (const int shift : {16, 8, 0}) rgb.push_back(static_cast<uint8_t>(word >> shift));
  }
  return rgb;
}

}  // namespace vexel::client
