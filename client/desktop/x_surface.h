// An X window's picture, in memory that the X server shares where it can.
#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/XShm.h>

#include <vector>

#include "client/core/object.h"

namespace vexel::client {

class XSurface : public Object<IZEMVideoSurface> {
 public:
  // The display and the window must outlive this object.
  XSurface(Display* display, Window window);

  // The picture's size; it is black after a change.
  void Resize(_QKxSize size);
  // Copies 1:1, or scales smoothly, and shows the picture. ZEM_UNEXPECTED while
  // there is no picture.
  INT32 CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect& dest,
                   const _QKxRect& source) override;
  // Once more, after the window was uncovered.
  void Show();

  int width() const { return image_ ? image_->width : 0; }
  int height() const { return image_ ? image_->height : 0; }
  // The picture as three bytes a pixel, red first, rows from the top without
  // gaps.
  std::vector<uint8_t> Rgb() const;

 protected:
  ~XSurface() override;

 private:
  bool MakeShared(int width, int height);
  void MakePlain(int width, int height);
  void Drop();
  void Finish();

  Display* display_;
  Window window_;
  Visual* visual_;
  int depth_;
  GC gc_;
  bool mayShare_;
  bool copying_ = false;  // the server may still be reading the shared memory
  XImage* image_ = nullptr;
  XShmSegmentInfo segment_{};  // of a shared image; shmaddr null for a plain one
};

}  // namespace vexel::client
