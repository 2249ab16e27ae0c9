// Lossless bodies through zlib, JPEG streams through libjpeg.
#include "author/bitmap.h"

#include <cstdio>
#include <stdexcept>

#include <jpeglib.h>
#include <zlib.h>

namespace vexel::author {

namespace {

constexpr int kBitsPerPixel[] = {1, 2, 4, 8, 16, 32};

// libjpeg reports errors by a call that must not return; all memory belongs to
// its own pools and the vector, so an exception may pass through it.
[[noreturn]] void JpegFailed(j_common_ptr info) {
  char message[JMSG_LENGTH_MAX];
  info->err->format_message(info, message);
  throw std::runtime_error(message);
}

// Collects what libjpeg writes.
struct VectorDestination {
  jpeg_destination_mgr manager = {};  // first: libjpeg hands back its address
  Bytes bytes;
  JOCTET block[4096];

  VectorDestination() {
    manager.init_destination = [](j_compress_ptr info) { Of(info)->Rewind(); };
    manager.empty_output_buffer = [](j_compress_ptr info) -> boolean {
      Of(info)->Keep(sizeof(block));
      Of(info)->Rewind();
      return TRUE;
    };
    manager.term_destination = [](j_compress_ptr info) {
      Of(info)->Keep(sizeof(block) - Of(info)->manager.free_in_buffer);
    };
  }

  static VectorDestination* Of(j_compress_ptr info) {
    return reinterpret_cast<VectorDestination*>(info->dest);
  }
  void Rewind() {
    manager.next_output_byte = block;
    manager.free_in_buffer = sizeof(block);
  }
  void Keep(size_t count) { bytes.insert(bytes.end(), block, block + count); }
};

Bytes Compress(const Picture& picture, int quality, JpegParts parts, bool grey) {
  jpeg_compress_struct info = {};
  jpeg_error_mgr errors = {};
  info.err = jpeg_std_error(&errors);
  errors.error_exit = JpegFailed;
  jpeg_create_compress(&info);
  VectorDestination destination;
  info.dest = &destination.manager;
  try {
    info.image_width = picture.width;
    info.image_height = picture.height;
    info.input_components = grey ? 1 : 3;
    info.in_color_space = grey ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    if (parts == JpegParts::kTablesOnly) {
      jpeg_write_tables(&info);
    } else {
      if (parts == JpegParts::kImageOnly) jpeg_suppress_tables(&info, TRUE);
      jpeg_start_compress(&info, parts == JpegParts::kAll);
      Bytes row;
      for (int y = 0; y < picture.height; ++y) {
        row.clear();
        for (int x = 0; x < picture.width; ++x) {
          const Color& color = picture.At(x, y);
          if (grey) {
            row.push_back(
                static_cast<uint8_t>((77 * color.red + 150 * color.green + 29 * color.blue) >> 8));
          } else {
            row.insert(row.end(), {color.red, color.green, color.blue});
          }
        }
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&info, rows, 1);
      }
      jpeg_finish_compress(&info);
    }
  } catch (...) {
    jpeg_destroy_compress(&info);
    throw;
  }
  jpeg_destroy_compress(&info);
  return std::move(destination.bytes);
}

}  // namespace

Picture::Picture(uint16_t width, uint16_t height, Color color)
    : width(width), height(height), pixels(size_t(width) * height, color) {}

size_t BitmapRowBytes(int format, int width) {
  return (size_t(width) * static_cast<size_t>(kBitsPerPixel[format]) + 31) / 32 * 4;
}

Bytes EncodeLossless(const LosslessBody& body, bool alpha) {
  BitWriter out;
  out.U8(body.format);
  out.U16(body.width);
  out.U16(body.height);
  BitWriter plain;
  if (body.format < kBitmap16) {
    const int count =
        body.tableCount == kAuto ? static_cast<int>(body.table.size()) - 1 : body.tableCount;
    out.U8(static_cast<uint32_t>(count));
    for (const Color& color : body.table) WriteColor(plain, color, alpha);
  }
  plain.Append(body.rows);
  out.Append(Deflate(plain.bytes()));
  return out.Take();
}

LosslessBody LosslessFromPicture(const Picture& picture, bool alpha) {
  LosslessBody body;
  body.width = picture.width;
  body.height = picture.height;
  body.rows.reserve(picture.pixels.size() * 4);
  for (const Color& color : picture.pixels) {
    const uint8_t a = alpha ? color.alpha : 255;
    const auto premultiplied = [a](uint8_t channel) {
      return static_cast<uint8_t>(a == 255 ? channel : channel * (a + 1) >> 8);
    };
    // The most significant byte of a pixel comes first.
    body.rows.insert(body.rows.end(), {a, premultiplied(color.red), premultiplied(color.green),
                                       premultiplied(color.blue)});
  }
  return body;
}

LosslessBody LosslessFromIndexes(int format, uint16_t width, uint16_t height,
                                 const std::vector<uint8_t>& indexes, std::vector<Color> table) {
  if (format < kBitmap1 || format > kBitmap8) {
    throw std::range_error("indexes go into formats 0 to 3");
  }
  LosslessBody body;
  body.format = static_cast<uint8_t>(format);
  body.width = width;
  body.height = height;
  body.table = std::move(table);
  BitWriter rows;
  const size_t rowBytes = BitmapRowBytes(format, width);
  for (size_t y = 0; y < height; ++y) {
    for (size_t x = 0; x < width; ++x) rows.Bits(indexes[y * width + x], kBitsPerPixel[format]);
    rows.Align();
    while (rows.size() < (y + 1) * rowBytes) rows.U8(0);
  }
  body.rows = rows.Take();
  return body;
}

Bytes EncodeJpeg(const Picture& picture, int quality, JpegParts parts) {
  return Compress(picture, quality, parts, false);
}

Bytes EncodeGreyJpeg(const Picture& picture, int quality) {
  return Compress(picture, quality, JpegParts::kAll, true);
}

Bytes EncodeJpegAlpha(const Bytes& jpeg, std::span<const uint8_t> alpha) {
  BitWriter out;
  out.U32(static_cast<uint32_t>(jpeg.size()));
  out.Append(jpeg);
  out.Append(Deflate(alpha));
  return out.Take();
}

Bytes Deflate(std::span<const uint8_t> data) {
  uLongf size = compressBound(static_cast<uLong>(data.size()));
  Bytes out(size);
  if (compress2(out.data(), &size, data.data(), static_cast<uLong>(data.size()), 9) != Z_OK) {
    throw std::runtime_error("zlib refused the data");
  }
  out.resize(size);
  return out;
}

}  // namespace vexel::author
