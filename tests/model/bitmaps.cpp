// Decoding of bitmap characters: JPEG with shared or own tables, with an alpha
// plane, and lossless.
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>
#include <zlib.h>

#include "movie.h"

namespace vexel::model {

namespace {

struct Source {
  jpeg_source_mgr base;
  const u8* data;
  size_t left;
};

const u8 kEndMarker[2] = {0xFF, 0xD9};

void Nothing(j_decompress_ptr) {}
boolean Fill(j_decompress_ptr c) {
  Source* s = reinterpret_cast<Source*>(c->src);
  if (s->left == 0) {
    s->base.next_input_byte = kEndMarker;
    s->base.bytes_in_buffer = 2;
  } else {
    s->base.next_input_byte = s->data;
    s->base.bytes_in_buffer = s->left;
    s->left = 0;
  }
  return TRUE;
}
void Skip(j_decompress_ptr c, long n) {
  while (n > 0) {
    if (c->src->bytes_in_buffer == 0) Fill(c);
    size_t step = c->src->bytes_in_buffer;
    if (step > static_cast<size_t>(n)) step = static_cast<size_t>(n);
    c->src->next_input_byte += step;
    c->src->bytes_in_buffer -= step;
    n -= static_cast<long>(step);
    if (reinterpret_cast<Source*>(c->src)->left == 0 && c->src->next_input_byte == kEndMarker + 2)
      break;
  }
}

struct Errors {
  jpeg_error_mgr base;
  jmp_buf out;
};
void Exit(j_common_ptr c) {
  longjmp(reinterpret_cast<Errors*>(c->err)->out, 1);
}
void Silent(j_common_ptr) {}
void SilentLevel(j_common_ptr, int) {}

struct Decoder {
  jpeg_decompress_struct c;
  Errors errors;
  Source source;
};

void Feed(Decoder& d, const u8* data, size_t size) {
  std::memset(&d.source, 0, sizeof d.source);
  d.source.base.init_source = Nothing;
  d.source.base.fill_input_buffer = Fill;
  d.source.base.skip_input_data = Skip;
  d.source.base.resync_to_restart = jpeg_resync_to_restart;
  d.source.base.term_source = Nothing;
  d.source.data = data;
  d.source.left = size;
  d.c.src = &d.source.base;
}

void Open(Decoder& d) {
  std::memset(&d.c, 0, sizeof d.c);
  d.c.err = jpeg_std_error(&d.errors.base);
  d.errors.base.error_exit = Exit;
  d.errors.base.output_message = Silent;
  d.errors.base.emit_message = SilentLevel;
  jpeg_create_decompress(&d.c);
}

// Tables first if there are any, then the image. False leaves no pixels.
bool Decode(const u8* tables, size_t tablesSize, const u8* data, size_t size, bool withAlpha,
            Bitmap& out) {
  auto d = std::make_unique<Decoder>();
  Open(*d);
  bool ok = false;
  if (tables) {
    if (setjmp(d->errors.out) == 0) {
      Feed(*d, tables, tablesSize);
      jpeg_read_header(&d->c, FALSE);
    }
    jpeg_abort_decompress(&d->c);
  }
  std::vector<u8> row;
  if (setjmp(d->errors.out) == 0) {
    Feed(*d, data, size);
    int r = jpeg_read_header(&d->c, FALSE);
    if (r == JPEG_HEADER_TABLES_ONLY) r = jpeg_read_header(&d->c, TRUE);
    d->c.out_color_space = JCS_RGB;
    if (r == JPEG_HEADER_OK && (d->c.num_components == 1 || d->c.num_components == 3)) {
      jpeg_start_decompress(&d->c);
      const int w = static_cast<int>(d->c.output_width), h = static_cast<int>(d->c.output_height);
      if (out.Create(withAlpha ? 5 : 4, w, h, {})) {
        row.resize(static_cast<size_t>(w) * 3);
        while (d->c.output_scanline < d->c.output_height) {
          const int y = static_cast<int>(d->c.output_scanline);
          JSAMPROW line = row.data();
          jpeg_read_scanlines(&d->c, &line, 1);
          for (int x = 0; x < w; ++x) {
            const u32 red = row[3 * x], green = row[3 * x + 1], blue = row[3 * x + 2];
            u8* p = out.bytes.data() + static_cast<size_t>(out.rowBytes) * y;
            if (withAlpha) {
              const u32 v = 0xFF000000 + (red << 16) + (green << 8) + blue;
              std::memcpy(p + 4 * x, &v, 4);
            } else {
              const u16 v = static_cast<u16>((red & 248) << 7 | (green & 248) << 2 | blue >> 3);
              std::memcpy(p + 2 * x, &v, 2);
            }
          }
        }
        jpeg_finish_decompress(&d->c);
        ok = true;
      }
    }
  } else {
    out.Free();
  }
  jpeg_destroy_decompress(&d->c);
  return ok;
}

// Everything a zlib stream gives, up to a most, whatever ends it.
std::vector<u8> Inflate(const u8* data, size_t size, size_t most) {
  std::vector<u8> out(most, 0);
  z_stream z;
  std::memset(&z, 0, sizeof z);
  if (inflateInit(&z) != Z_OK) return {};
  z.next_in = const_cast<u8*>(data);
  z.avail_in = static_cast<uInt>(size);
  z.next_out = out.data();
  z.avail_out = static_cast<uInt>(most);
  while (z.avail_out > 0 && inflate(&z, Z_NO_FLUSH) == Z_OK) {
  }
  out.resize(most - z.avail_out);
  inflateEnd(&z);
  return out;
}

}  // namespace

static void BuildJpeg(Character& c, Parser& p, int code) {
  i64 end = p.tagEnd;
  if (code == 35) {
    const i64 length = p.GetDWord();
    end = p.pos + length < p.tagEnd ? p.pos + length : p.tagEnd;
  }
  const u8* data = p.script->data() + p.pos;
  const size_t size = end > p.pos ? static_cast<size_t>(end - p.pos) : 0;
  if (code == 6) {
    const Bytes& tables = c.movie->jpegTables;
    if (tables) Decode(tables->data(), tables->size(), data, size, false, *c.bits);
    return;
  }
  Decode(nullptr, 0, data, size, code == 35, *c.bits);
  if (code != 35 || !c.bits->valid) return;
  Bitmap& b = *c.bits;
  b.transparent = true;
  const size_t count = static_cast<size_t>(b.width) * static_cast<size_t>(b.height);
  const std::vector<u8> alpha =
      Inflate(p.script->data() + end, static_cast<size_t>(p.tagEnd - end), count);
  for (size_t i = 0; i < alpha.size(); ++i) {
    u8* pixel = b.bytes.data() + 4 * i;
    for (int k = 0; k < 3; ++k) {
      if (pixel[k] > alpha[i]) pixel[k] = alpha[i];
    }
    pixel[3] = alpha[i];
  }
}

static void BuildLossless(Character& c, Parser& p, int code) {
  const int format = static_cast<int>(p.GetByte());
  const int width = static_cast<int>(p.GetWord()), height = static_cast<int>(p.GetWord());
  const int colors = format < 4 ? static_cast<int>(p.GetByte()) + 1 : 0;
  const size_t entry = code == 36 ? 4 : 3;
  const size_t tableSize = entry * static_cast<size_t>(colors);
  Bitmap shape;
  if (p.pos > p.tagEnd) return;
  const bool good = shape.Create(format, width, height, {});
  const std::vector<u8> bytes =
      Inflate(p.script->data() + p.pos, static_cast<size_t>(p.tagEnd - p.pos),
              tableSize + (good ? shape.bytes.size() : 0));
  // Entries that the data does not wholly reach are 0, alpha too.
  std::vector<u32> table(static_cast<size_t>(colors), 0);
  for (size_t i = 0; i < table.size() && entry * (i + 1) <= bytes.size(); ++i) {
    const u8* e = bytes.data() + entry * i;
    const u32 alpha = entry == 4 ? e[3] : 255;
    table[i] = alpha << 24 | u32{e[0]} << 16 | u32{e[1]} << 8 | u32{e[2]};
  }
  c.bits->Create(format, width, height, table);
  if (code == 36) c.bits->transparent = true;
  if (!c.bits->valid) return;
  for (size_t i = tableSize; i < bytes.size(); ++i) c.bits->bytes[i - tableSize] = bytes[i];
  c.bits->SwapBits();
}

void BuildBits(Character& c) {
  if (c.bits->valid) return;
  Parser p;
  p.script = c.data;
  const int code = p.GetTag(p.Size());
  if (code < 6 || code > 36) return;
  p.pos += 2;
  if (code == 6 || code == 21 || code == 35) BuildJpeg(c, p, code);
  if (code == 20 || code == 36) BuildLossless(c, p, code);
}

}  // namespace vexel::model
