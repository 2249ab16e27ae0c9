// Pixels go through pixman, which copies them as they are where sizes and
// formats agree, and else scales and converts.
#include "client/desktop/x_surface.h"

#include <X11/Xutil.h>
#include <gdk/gdkx.h>
#include <pixman.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vexel::client {

namespace {

constexpr int kMaxSide = 16384;

// How the window's pixels lie in memory; 0 for a kind that is not supported.
pixman_format_code_t FormatOf(const XImage* image) {
  if (image->bits_per_pixel == 32) {
    return image->red_mask == 0xFF ? PIXMAN_x8b8g8r8 : PIXMAN_x8r8g8b8;
  }
  if (image->bits_per_pixel == 16)
    return image->green_mask == 0x3E0 ? PIXMAN_x1r5g5b5 : PIXMAN_r5g6b5;
  return static_cast<pixman_format_code_t>(0);
}

pixman_image_t* Wrap(XImage* image) {
  const pixman_format_code_t format = FormatOf(image);
  if (format == 0) return nullptr;
  return pixman_image_create_bits(format, image->width, image->height,
                                  reinterpret_cast<uint32_t*>(image->data), image->bytes_per_line);
}

int HostByteOrder() {
  const uint16_t probe = 1;
  uint8_t first;
  std::memcpy(&first, &probe, 1);
  return first == 1 ? LSBFirst : MSBFirst;
}

}  // namespace

XSurface::XSurface(Display* display, Window window) : display_(display), window_(window) {
  XWindowAttributes attributes;
  XGetWindowAttributes(display_, window_, &attributes);
  visual_ = attributes.visual;
  depth_ = attributes.depth;
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
                        static_cast<unsigned>(width), static_cast<unsigned>(height), 32, 0);
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
  if (width == 0 || height == 0) return;
  if (!MakeShared(width, height)) MakePlain(width, height);
}

INT32 XSurface::CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect& dest,
                           const _QKxRect& source) {
  if (!pixels || !info || info->width <= 0 || info->height <= 0) return ZEM_BAD_ARGUMENT;
  if (!image_) return ZEM_UNEXPECTED;
  const int sourceWidth = source.right - source.left, sourceHeight = source.bottom - source.top;
  const int width = dest.right - dest.left, height = dest.bottom - dest.top;
  if (sourceWidth <= 0 || sourceHeight <= 0 || width <= 0 || height <= 0) return ZEM_OK;
  Finish();
  // Neither is written to.
  auto* words = reinterpret_cast<uint32_t*>(const_cast<UINT8*>(pixels));
  pixman_image_t* from = pixman_image_create_bits_no_clear(PIXMAN_x8r8g8b8, info->width,
                                                           info->height, words, info->width * 4);
  pixman_image_t* to = Wrap(image_);
  INT32 result = ZEM_FAILED;
  if (from && to) {
    int left = source.left, top = source.top;
    if (width != sourceWidth || height != sourceHeight) {
      const double x = static_cast<double>(sourceWidth) / width;
      const double y = static_cast<double>(sourceHeight) / height;
      pixman_transform_t transform;
      pixman_transform_init_scale(&transform, pixman_double_to_fixed(x), pixman_double_to_fixed(y));
      pixman_transform_translate(&transform, nullptr, pixman_int_to_fixed(source.left),
                                 pixman_int_to_fixed(source.top));
      pixman_image_set_transform(from, &transform);
      pixman_image_set_filter(from, PIXMAN_FILTER_BEST, nullptr, 0);
      pixman_image_set_repeat(from, PIXMAN_REPEAT_PAD);
      left = top = 0;
    }
    pixman_image_composite32(PIXMAN_OP_SRC, from, nullptr, to, left, top, 0, 0, dest.left, dest.top,
                             width, height);
    result = ZEM_OK;
  }
  if (from) pixman_image_unref(from);
  if (to) pixman_image_unref(to);
  Show();
  return result;
}

void XSurface::Show() {
  if (!image_) return;
  const auto width = static_cast<unsigned>(image_->width);
  const auto height = static_cast<unsigned>(image_->height);
  if (segment_.shmaddr) {
    XShmPutImage(display_, window_, gc_, image_, 0, 0, 0, 0, width, height, False);
    copying_ = true;
  } else {
    XPutImage(display_, window_, gc_, image_, 0, 0, 0, 0, width, height);
  }
  XFlush(display_);
}

std::vector<uint8_t> XSurface::Rgb() const {
  if (!image_) return {};
  const auto width = static_cast<size_t>(image_->width),
             height = static_cast<size_t>(image_->height);
  std::vector<uint32_t> words(width * height);
  pixman_image_t* from = Wrap(image_);
  pixman_image_t* to = pixman_image_create_bits(PIXMAN_x8r8g8b8, image_->width, image_->height,
                                                words.data(), image_->width * 4);
  if (from && to)
    pixman_image_composite32(PIXMAN_OP_SRC, from, nullptr, to, 0, 0, 0, 0, 0, 0, image_->width,
                             image_->height);
  if (from) pixman_image_unref(from);
  if (to) pixman_image_unref(to);
  std::vector<uint8_t> rgb;
  rgb.reserve(words.size() * 3);
  for (const uint32_t word : words) {
    for (const int shift : {16, 8, 0}) rgb.push_back(static_cast<uint8_t>(word >> shift));
  }
  return rgb;
}

}  // namespace vexel::client
