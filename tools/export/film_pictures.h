// The frames of a film as coders take them, made from rows of 8-bit red, green
// and blue without gaps.
#pragma once

#include <cstdint>

#include "export/av.h"
#include "export/film_kind.h"
#include "export/gif_dither.h"

namespace vexel::tools {

class FilmPictures {
 public:
  // `width` and `height` of the pictures that come in, pixels. Throws
  // std::bad_alloc.
  FilmPictures(const FilmKind& kind, int32_t width, int32_t height);

  // Of the frames, at least that of the pictures. Where sides must be even, the
  // last column or row stands twice: a film that is a pixel larger loses
  // nothing, and nothing of it is scaled.
  int32_t width() const { return width_; }
  int32_t height() const { return height_; }

  // The palette, for a kind that has one.
  void SetPalette(const std::vector<Rgb>& palette);

  // The frame of a picture, good until the next call.
  AVFrame* Take(const uint8_t* rgb);

 private:
  void ToPalette(const uint8_t* rgb);
  void ToYuv(const uint8_t* rgb);

  int32_t pictureWidth_;
  int32_t pictureHeight_;
  int32_t width_;
  int32_t height_;
  Av<AVFrame> frame_;
  Av<AVFrame> padded_;  // RGB of the frame's size
  Av<SwsContext> scaler_;
  std::vector<Rgb> palette_;
  Dither dither_;
};

}  // namespace vexel::tools
