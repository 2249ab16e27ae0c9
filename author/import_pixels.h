// Picture files of pixels (internal to the importers).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "author/scene.h"

namespace vexel::author {

// The largest picture that is taken in: sides fit the movie's 16 bits, and a player
// of ordinary means can hold the pixels.
inline constexpr int kMaxBitmapSide = 32767;
inline constexpr double kMaxBitmapPixels = 48e6;

// Each returns false with a cause in `error`.
bool DecodePng(const uint8_t* data, size_t size, SceneBitmap* out, std::string* error);
// Takes a JPEG file as it is and reads its size from it. `grey` and `fourChannels`
// tell what decoders make of it.
struct JpegFacts {
  int width = 0, height = 0, channels = 0;
};
bool ReadJpegFacts(const uint8_t* data, size_t size, JpegFacts* out, std::string* error);
// The pixels of a JPEG file.
bool DecodeJpeg(const uint8_t* data, size_t size, SceneBitmap* out, std::string* error);

// A scene of one picture, a pixel to a pixel of the frame.
Scene PictureScene(SceneBitmap bitmap);

}  // namespace vexel::author
