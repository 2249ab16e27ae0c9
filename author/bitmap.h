// Bodies of bitmap characters behind their id.
#pragma once

#include "author/records.h"

namespace vexel::author {

// Pixel formats of lossless bitmaps: 0 to 3 are 1, 2, 4 and 8 bits into a
// colour table, 4 is 16 bits (0RRRRRGG GGGBBBBB), 5 is 32 bits.
enum BitmapFormat : uint8_t {
  kBitmap1 = 0,
  kBitmap2 = 1,
  kBitmap4 = 2,
  kBitmap8 = 3,
  kBitmap16 = 4,
  kBitmap32 = 5,
};

// A picture of RGBA pixels, not premultiplied, rows from the top, no padding.
struct Picture {
  uint16_t width = 0;
  uint16_t height = 0;
  std::vector<Color> pixels;

  Picture() = default;
  Picture(uint16_t width, uint16_t height, Color color = {});
  Color& At(int x, int y) { return pixels[size_t(y) * width + size_t(x)]; }
  const Color& At(int x, int y) const { return pixels[size_t(y) * width + size_t(x)]; }
};

// Bytes of a row in a lossless bitmap: rows are padded to 32 bits.
size_t BitmapRowBytes(int format, int width);

// A lossless body of any content. `table` holds the entries of formats below
// 4, 1 to 256; `rows` the packed rows, as long as the caller likes. With alpha
// the table entries get their fourth byte. `count` and the like can lie.
struct LosslessBody {
  uint8_t format = kBitmap32;
  uint16_t width = 0;
  uint16_t height = 0;
  std::vector<Color> table;
  int tableCount = kAuto;  // the byte in the file, entries minus 1
  Bytes rows;
};
Bytes EncodeLossless(const LosslessBody& body, bool alpha);

// 32-bit pixels. With alpha, colours are premultiplied on the way in; without,
// alpha is stored as 255.
LosslessBody LosslessFromPicture(const Picture& picture, bool alpha);
// Indexes, one byte each, packed into the bits of a format below 4.
LosslessBody LosslessFromIndexes(int format, uint16_t width, uint16_t height,
                                 const std::vector<uint8_t>& indexes, std::vector<Color> table);

// A JPEG stream of a picture, alpha left out, quality 1 to 100.
enum class JpegParts {
  kAll,         // one complete stream
  kTablesOnly,  // the quantization and Huffman tables
  kImageOnly,   // the image that goes with those tables
};
Bytes EncodeJpeg(const Picture& picture, int quality, JpegParts parts = JpegParts::kAll);
// The same of the grey of the colours, with a single component.
Bytes EncodeGreyJpeg(const Picture& picture, int quality);

// A JPEG stream and an alpha plane: 32-bit length, stream, compressed alpha.
Bytes EncodeJpegAlpha(const Bytes& jpeg, std::span<const uint8_t> alpha);

// A zlib stream.
Bytes Deflate(std::span<const uint8_t> data);

}  // namespace vexel::author
