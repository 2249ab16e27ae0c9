// An X window's picture, in memory that the X server shares where it can. Only
// what has changed is copied, and sent to the server.
#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/XShm.h>

#include <vector>

#include "client/core/object.h"
#include "client/desktop/picture_copy.h"

namespace vexel::client {

class XSurface : public Object<IZEMVideoSurface> {
 public:
  // The display and the window must outlive this object. Throws
  // std::runtime_error, with a text for people, if the window's colours are of
  // a kind that this object cannot make.
  XSurface(Display* display, Window window);

  // The picture's size; it is black after a change.
  void Resize(_QKxSize size);
  // Pixels of the plug-in's picture that the next copy is to bring: those of
  // the window unless it is larger.
  void Damage(const _QKxRect& rect);
  void DamageAll() { allDamaged_ = true; }
  bool damaged() const { return allDamaged_ || !IsEmpty(damage_); }

  // Copies what was damaged, 1:1 or scaled smoothly, and shows it.
  // ZEM_UNEXPECTED while there is no picture.
  INT32 CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect& dest,
                   const _QKxRect& source) override;
  // A part once more, after the window was uncovered.
  void Show(const _QKxRect& part);

  int width() const { return image_ ? image_->width : 0; }
  int height() const { return image_ ? image_->height : 0; }
  // Pictures that went to the server because they differed.
  uint64_t copies() const { return copies_; }
  // From the window to the plug-in's picture, which may be smaller.
  void ToPicture(int* x, int* y) const;
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
  PictureMemory Memory() const;

  Display* display_;
  Window window_;
  Visual* visual_ = nullptr;
  int depth_ = 0;
  PixelLayout layout_{};
  GC gc_ = nullptr;
  bool mayShare_ = false;
  bool copying_ = false;  // the server may still be reading the shared memory
  XImage* image_ = nullptr;
  XShmSegmentInfo segment_{};  // of a shared image; shmaddr null for a plain one

  bool allDamaged_ = true;
  _QKxRect damage_{0, 0, 0, 0};
  _QKxRect dest_{0, 0, 0, 0}, source_{0, 0, 0, 0};  // of the last copy
  uint64_t copies_ = 0;
};

}  // namespace vexel::client
