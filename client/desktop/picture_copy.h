// A picture's way into memory of another size and of a display's own layout.
#pragma once

#include <cstdint>

#include "zem/zem_types.h"

namespace vexel::client {

// How a display keeps a pixel: the bits of each colour in a word of the host.
struct PixelLayout {
  int bitsPerPixel;
  uint32_t red, green, blue;
};

// The plug-in's: 0xAARRGGBB, alpha ignored.
inline constexpr PixelLayout kPictureLayout{32, 0xFF0000, 0xFF00, 0xFF};

// A picture somewhere in memory, which is not owned. Rows go from the top and
// begin at whole words of 32 bits.
struct PictureMemory {
  void* pixels;
  int width, height;  // above 0
  int rowBytes;
  PixelLayout layout;
};

// Whether CopyPicture knows the layout. It knows none with a palette.
bool KnowsLayout(const PixelLayout& layout);

bool IsEmpty(const _QKxRect& rect);
bool AreEqual(const _QKxRect& one, const _QKxRect& other);
_QKxRect Intersection(const _QKxRect& one, const _QKxRect& other);
// Of one that is empty: the other.
_QKxRect Union(const _QKxRect& one, const _QKxRect& other);

// What of `dest` changes with the pixels `changed` of the source, if `source`
// is copied onto `dest`. Neither is empty.
_QKxRect PartOf(const _QKxRect& dest, const _QKxRect& source, const _QKxRect& changed);

// Copies the part `source` of `from` onto `dest` of `to`, and writes nothing
// but what of that lies in `part`: the same pixels as with a larger part. Equal
// sizes go pixel by pixel, smaller ones are enlarged linearly between the
// centres of pixels, larger ones become means. False without memory or for an
// unknown layout.
bool CopyPicture(const PictureMemory& from, const _QKxRect& source, const PictureMemory& to,
                 const _QKxRect& dest, const _QKxRect& part);

}  // namespace vexel::client
