// Bitmaps: their compressed data is read to the end.
#include <zlib.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <iterator>

// Needs the standard headers above.
#include <jpeglib.h>

#include "author/bitmap.h"
#include "author/check/checker.h"

namespace vexel::author {

namespace {

constexpr int kDepths[] = {1, 2, 4, 8, 16, 32};  // bits a pixel, by format
// Beyond these a bitmap is not read: it would take too long, or too much
// memory where all of a picture is held at once.
constexpr uint64_t kMaxPixels = 1 << 26;
constexpr uint64_t kMaxHeldPixels = 1 << 24;
constexpr uint64_t kMaxInflated = uint64_t{1} << 30;  // of all bitmaps together

// The library reports by calling; the first words are kept, and what it cannot
// go on from jumps back.
struct JpegErrors {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  char text[JMSG_LENGTH_MAX];
};

void KeepText(j_common_ptr info) {
  auto* errors = reinterpret_cast<JpegErrors*>(info->err);
  if (errors->text[0] == 0) info->err->format_message(info, errors->text);
}

void OnError(j_common_ptr info) {
  KeepText(info);
  std::longjmp(reinterpret_cast<JpegErrors*>(info->err)->jump, 1);
}

void OnMessage(j_common_ptr info, int level) {
  if (level >= 0) return;
  ++info->err->num_warnings;
  KeepText(info);
}

enum class JpegResult { kGood, kBad, kTooLarge, kColors };

// Decodes row by row. Nothing with a destructor may live here.
JpegResult DecodeJpeg(jpeg_decompress_struct* info, JpegErrors* errors,
                      std::span<const uint8_t> tables, std::span<const uint8_t> data, uint8_t* row,
                      size_t rowSize) {
  if (setjmp(errors->jump) != 0) return JpegResult::kBad;
  if (!tables.empty()) {
    jpeg_mem_src(info, tables.data(), static_cast<unsigned long>(tables.size()));
    jpeg_read_header(info, FALSE);
  }
  jpeg_mem_src(info, data.data(), static_cast<unsigned long>(data.size()));
  if (jpeg_read_header(info, FALSE) == JPEG_HEADER_TABLES_ONLY) jpeg_read_header(info, TRUE);
  if (info->num_components != 1 && info->num_components != 3) return JpegResult::kColors;
  const uint64_t pixels = uint64_t{info->image_width} * info->image_height;
  if (pixels > (jpeg_has_multiple_scans(info) ? kMaxHeldPixels : kMaxPixels)) {
    return JpegResult::kTooLarge;
  }
  jpeg_start_decompress(info);
  if (size_t{info->output_width} * static_cast<size_t>(info->output_components) > rowSize) {
    return JpegResult::kTooLarge;
  }
  JSAMPROW rows[1] = {row};
  while (info->output_scanline < info->output_height) jpeg_read_scanlines(info, rows, 1);
  jpeg_finish_decompress(info);
  return info->err->num_warnings > 0 ? JpegResult::kBad : JpegResult::kGood;
}

}  // namespace

bool Checker::Jpeg(const Tag& tag, std::span<const uint8_t> data, bool shared, uint32_t* width,
                   uint32_t* height) {
  if (data.empty() || (shared && jpegTables_->empty())) {
    Damaged(tag, "there is no JPEG data");
    return false;
  }
  constexpr size_t kRow = 65535 * 4;
  std::vector<uint8_t> row(kRow);
  jpeg_decompress_struct info = {};
  JpegErrors errors = {};
  info.err = jpeg_std_error(&errors.base);
  errors.base.error_exit = OnError;
  errors.base.emit_message = OnMessage;
  jpeg_create_decompress(&info);
  const std::span<const uint8_t> tables = shared ? *jpegTables_ : std::span<const uint8_t>();
  const JpegResult result = DecodeJpeg(&info, &errors, tables, data, row.data(), row.size());
  *width = info.image_width;
  *height = info.image_height;
  jpeg_destroy_decompress(&info);
  switch (result) {
    case JpegResult::kGood:
      return true;
    case JpegResult::kBad:
      Damaged(tag, std::string("the JPEG data is damaged: ") + errors.text);
      return false;
    case JpegResult::kTooLarge:
      Add(FindingKind::kUnsupported, tag,
          "a picture of " + std::to_string(*width) + " x " + std::to_string(*height) +
              " pixels is too large to be checked");
      return false;
    case JpegResult::kColors:
      Add(FindingKind::kUnsupported, tag, "players take JPEG data of one or three colours only");
      return false;
  }
  return false;
}

void Checker::Inflate(const Tag& tag, std::span<const uint8_t> data, uint64_t size,
                      const char* what) {
  if (size > kMaxInflated - inflated_) {
    Add(FindingKind::kUnsupported, tag,
        Count(size, "byte") + " of pixels are too many to be checked");
    return;
  }
  z_stream stream = {};
  stream.next_in = const_cast<Bytef*>(data.data());
  stream.avail_in = static_cast<uInt>(data.size());
  if (inflateInit(&stream) != Z_OK) return;
  std::vector<uint8_t> piece(1 << 16);
  uint64_t got = 0;
  int status = Z_OK;
  while (status == Z_OK && got <= size) {
    stream.next_out = piece.data();
    stream.avail_out = static_cast<uInt>(piece.size());
    status = inflate(&stream, Z_NO_FLUSH);
    got += piece.size() - stream.avail_out;
  }
  const std::string message = stream.msg ? stream.msg : "";
  const size_t left = stream.avail_in;
  inflateEnd(&stream);
  inflated_ += std::min(got, size);
  const std::string name(what);
  if (got < size) {
    const std::string why = status == Z_STREAM_END || message.empty() ? "it ends" : message;
    Damaged(tag, "the compressed " + name + " give " + std::to_string(got) + " of " +
                     Count(size, "byte") + ": " + why);
  } else if (got > size) {
    Add(FindingKind::kWasteful, tag,
        "the compressed " + name + " give more than the " + Count(size, "byte") +
            " of the picture");
  } else if (status != Z_STREAM_END && status != Z_OK && status != Z_BUF_ERROR) {
    Damaged(tag, "the compressed " + name + " are damaged behind the last pixel: " + message);
  } else if (left > 0) {
    Add(FindingKind::kWasteful, tag, Count(left, "byte") + " behind the compressed " + name);
  }
}

void Checker::Bitmap(Tag* tag) {
  TagReader& in = tag->body;
  const bool alpha =
      tag->code == kTagDefineBitsJPEGAlpha || tag->code == kTagDefineBitsLosslessAlpha;
  {
    // The same code and bytes are the same picture.
    const size_t from = in.at();
    const std::string_view body(reinterpret_cast<const char*>(movie_.data() + from), in.left());
    const auto [it, isNew] = bitmaps_.emplace(std::pair(tag->code, body), tag->at);
    if (!isNew) {
      Add(FindingKind::kWasteful, *tag,
          "the bitmap is the same as that at byte " + std::to_string(it->second));
    }
  }
  uint32_t width = 0;
  uint32_t height = 0;
  switch (tag->code) {
    case kTagDefineBits:
      if (!jpegTables_) {
        Damaged(*tag, "no JPEG tables stand before it, so it stays empty");
        in.Take(in.left());
      } else {
        Jpeg(*tag, in.Take(in.left()), true, &width, &height);
      }
      return;
    case kTagDefineBitsJPEG:
      Jpeg(*tag, in.Take(in.left()), false, &width, &height);
      return;
    case kTagDefineBitsJPEGAlpha: {
      in.Reading("the length of the JPEG data");
      const uint32_t length = in.U32();
      in.Reading("the JPEG data");
      const bool good = Jpeg(*tag, in.Take(length), false, &width, &height);
      const auto plane = in.Take(in.left());
      if (good) Inflate(*tag, plane, uint64_t{width} * height, "alpha values");
      return;
    }
    default:
      break;
  }
  in.Reading("the format and size");
  const uint32_t format = in.U8();
  width = in.U16();
  height = in.U16();
  if (format >= std::size(kDepths)) {
    Add(FindingKind::kUnknown, *tag, "the pixels have the format " + std::to_string(format));
    in.Take(in.left());
    return;
  }
  if (width == 0 || height == 0) Damaged(*tag, "the bitmap has no pixels");
  in.Reading("the count of colours");
  const uint64_t colors = format <= kBitmap8 ? in.U8() + 1 : 0;
  const uint64_t rowBytes =
      (uint64_t{width} * static_cast<uint64_t>(kDepths[format]) + 31) / 32 * 4;
  Inflate(*tag, in.Take(in.left()), colors * (alpha ? 4 : 3) + rowBytes * height, "pixels");
}

}  // namespace vexel::author
