#include "export/film_pictures.h"

#include <cstring>
#include <new>

namespace vexel::tools {

namespace {

constexpr int32_t kRgbBytes = 3;

Av<AVFrame> NewFrame(AVPixelFormat format, int32_t width, int32_t height) {
  Av<AVFrame> frame(av_frame_alloc());
  if (!frame) throw std::bad_alloc();
  frame->format = format;
  frame->width = width;
  frame->height = height;
  if (av_frame_get_buffer(frame.get(), 0) < 0) throw std::bad_alloc();
  return frame;
}

// Colours as television has them today, in its narrow range.
Av<SwsContext> NewScaler(int32_t width, int32_t height, AVPixelFormat format) {
  Av<SwsContext> scaler(sws_getContext(width, height, AV_PIX_FMT_RGB24, width, height, format,
                                       SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP, nullptr,
                                       nullptr, nullptr));
  if (!scaler) throw std::bad_alloc();
  constexpr int kFullRange = 1;
  constexpr int kNarrowRange = 0;
  constexpr int kOne = 1 << 16;  // contrast and saturation as they are
  const int* table = sws_getCoefficients(SWS_CS_ITU709);
  sws_setColorspaceDetails(scaler.get(), table, kFullRange, table, kNarrowRange, 0, kOne, kOne);
  return scaler;
}

}  // namespace

FilmPictures::FilmPictures(const FilmKind& kind, int32_t width, int32_t height)
    : pictureWidth_(width),
      pictureHeight_(height),
      width_(kind.evenSides ? width + width % 2 : width),
      height_(kind.evenSides ? height + height % 2 : height),
      frame_(NewFrame(kind.format, width_, height_)),
      dither_({Rgb{}}) {
  if (kind.format != AV_PIX_FMT_YUV420P) return;
  padded_ = NewFrame(AV_PIX_FMT_RGB24, width_, height_);
  scaler_ = NewScaler(width_, height_, kind.format);
}

void FilmPictures::SetPalette(const std::vector<Rgb>& palette) {
  palette_ = palette;
  dither_ = Dither(palette);
}

void FilmPictures::ToPalette(const uint8_t* rgb) {
  for (int32_t y = 0; y < height_; y++)
    dither_.Row(rgb + size_t{3} * width_ * y, width_, y, frame_->data[0] + frame_->linesize[0] * y);
  // Entries that stay 0 are clear: one of them stands for what did not change.
  auto* entries = reinterpret_cast<uint32_t*>(frame_->data[1]);
  std::memset(entries, 0, AVPALETTE_SIZE);
  constexpr uint32_t kOpaque = 0xFF000000;
  for (const Rgb& color : palette_) {
    *entries++ = kOpaque | static_cast<uint32_t>(color.red) << 16 |
                 static_cast<uint32_t>(color.green) << 8 | color.blue;
  }
}

void FilmPictures::ToYuv(const uint8_t* rgb) {
  const size_t rowBytes = size_t{kRgbBytes} * pictureWidth_;
  for (int32_t y = 0; y < height_; y++) {
    const uint8_t* from = rgb + rowBytes * (y < pictureHeight_ ? y : y - 1);
    uint8_t* to = padded_->data[0] + padded_->linesize[0] * y;
    std::memcpy(to, from, rowBytes);
    if (width_ > pictureWidth_) std::memcpy(to + rowBytes, to + rowBytes - kRgbBytes, kRgbBytes);
  }
  sws_scale(scaler_.get(), padded_->data, padded_->linesize, 0, height_, frame_->data,
            frame_->linesize);
}

AVFrame* FilmPictures::Take(const uint8_t* rgb) {
  // A coder may still look at the last frame.
  if (av_frame_make_writable(frame_.get()) < 0) throw std::bad_alloc();
  if (scaler_) {
    ToYuv(rgb);
  } else if (frame_->format == AV_PIX_FMT_PAL8) {
    ToPalette(rgb);
  } else {
    const size_t rowBytes = size_t{kRgbBytes} * width_;
    for (int32_t y = 0; y < height_; y++)
      std::memcpy(frame_->data[0] + frame_->linesize[0] * y, rgb + rowBytes * y, rowBytes);
  }
  return frame_.get();
}

}  // namespace vexel::tools
