// Random bitmap tags.
#include "nasty_bitmaps.h"

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>
#include <zlib.h>

namespace vexel::model {

static std::vector<uint8_t> Deflate(const std::vector<uint8_t>& in) {
  uLongf size = compressBound(static_cast<uLong>(in.size()));
  std::vector<uint8_t> out(size);
  compress(out.data(), &size, in.data(), static_cast<uLong>(in.size()));
  out.resize(size);
  return out;
}

enum class JpegPart { kAll, kTables, kImage };

static std::vector<uint8_t> Jpeg(Random& r, int w, int h, int components, JpegPart part) {
  jpeg_compress_struct c;
  jpeg_error_mgr errors;
  c.err = jpeg_std_error(&errors);
  jpeg_create_compress(&c);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&c, &data, &size);
  c.image_width = static_cast<JDIMENSION>(w);
  c.image_height = static_cast<JDIMENSION>(h);
  c.input_components = components;
  c.in_color_space = components == 1 ? JCS_GRAYSCALE : JCS_RGB;
  jpeg_set_defaults(&c);
  jpeg_set_quality(&c, part == JpegPart::kAll ? r.Int(20, 100) : 75, TRUE);
  if (part == JpegPart::kTables) {
    jpeg_write_tables(&c);
  } else {
    if (part == JpegPart::kAll && r.Chance(20)) jpeg_simple_progression(&c);
    jpeg_start_compress(&c, part == JpegPart::kAll);
    std::vector<uint8_t> row(static_cast<size_t>(w) * 3);
    const int base = r.Int(0, 255);
    for (int y = 0; y < h; ++y) {
      for (uint8_t& v : row) v = static_cast<uint8_t>(base + r.Int(0, 60) + y * 5);
      JSAMPROW line = row.data();
      jpeg_write_scanlines(&c, &line, 1);
    }
    jpeg_finish_compress(&c);
  }
  jpeg_destroy_compress(&c);
  const std::vector<uint8_t> out(data, data + size);
  std::free(data);
  return out;
}

static void AddJpeg(Random& r, Writer& movie, int id, bool* tablesWritten) {
  const int w = r.Int(1, 40), h = r.Int(1, 40), kind = r.Int(0, 2);
  const int components = r.Chance(20) ? 1 : 3;
  Writer body;
  body.U16(static_cast<uint32_t>(id));
  if (kind == 0) {
    if (!*tablesWritten) {
      movie.Tag(8, Jpeg(r, 8, 8, 3, JpegPart::kTables), r.Chance(50));
      *tablesWritten = true;
    }
    body.Append(Jpeg(r, w, h, components, JpegPart::kImage));
    movie.Tag(6, body.bytes, true);
    return;
  }
  std::vector<uint8_t> stream;
  if (r.Chance(30)) {
    stream = Jpeg(r, 8, 8, 3, JpegPart::kTables);
    const std::vector<uint8_t> image = Jpeg(r, w, h, components, JpegPart::kImage);
    stream.insert(stream.end(), image.begin(), image.end());
  } else {
    stream = Jpeg(r, w, h, components, JpegPart::kAll);
  }
  if (r.Chance(10)) stream.resize(stream.size() * 3 / 4);
  if (kind == 1) {
    body.Append(stream);
    movie.Tag(21, body.bytes, true);
    return;
  }
  body.U32(static_cast<uint32_t>(stream.size()));
  body.Append(stream);
  std::vector<uint8_t> alpha(static_cast<size_t>(w) * static_cast<size_t>(h));
  for (uint8_t& a : alpha) a = static_cast<uint8_t>(r.Chance(30) ? 255 : r.Int(0, 255));
  if (r.Chance(15)) alpha.resize(alpha.size() / 2);
  body.Append(Deflate(alpha));
  movie.Tag(35, body.bytes, true);
}

void AddBitmap(Random& r, Writer& movie, int id, bool* tablesWritten) {
  if (r.Chance(25)) {
    AddJpeg(r, movie, id, tablesWritten);
    return;
  }
  const bool alpha = r.Chance(50);
  const int format = r.Chance(25) ? r.Int(0, 2) : r.Int(3, 5);
  const int w = r.Int(1, r.Chance(10) ? 400 : 40), h = r.Int(1, 40);
  Writer body;
  body.U16(static_cast<uint32_t>(id));
  body.U8(static_cast<uint32_t>(format));
  body.U16(static_cast<uint32_t>(w));
  body.U16(static_cast<uint32_t>(h));
  std::vector<uint8_t> raw;
  auto color = [&](bool bigEndianWord) {
    const int a = alpha ? (r.Chance(40) ? 255 : r.Int(0, 255)) : r.Chance(80) ? 255 : r.Int(0, 255);
    const int most = r.Chance(90) ? a : 255;
    if (bigEndianWord) raw.push_back(static_cast<uint8_t>(a));
    for (int k = 0; k < 3; ++k) raw.push_back(static_cast<uint8_t>(r.Int(0, most)));
    if (!bigEndianWord && alpha) raw.push_back(static_cast<uint8_t>(a));
  };
  if (format < 4) {
    const int n = r.Int(1, format == 3 ? (r.Chance(30) ? 256 : 40) : 1 << (1 << format));
    body.U8(static_cast<uint32_t>(n - 1));
    for (int i = 0; i < n; ++i) color(false);
  }
  if (format == 5) {
    for (int i = 0; i < w * h; ++i) color(true);
  } else {
    static const int bits[5] = {1, 2, 4, 8, 16};
    const int rowBytes = (w * bits[format] + 31) / 32 * 4;
    for (int i = 0; i < rowBytes * h; ++i) raw.push_back(static_cast<uint8_t>(r.Int(0, 255)));
  }
  if (r.Chance(5)) raw.resize(raw.size() * 2 / 3);
  body.Append(Deflate(raw));
  movie.Tag(alpha ? 36 : 20, body.bytes, true);
}

}  // namespace vexel::model
