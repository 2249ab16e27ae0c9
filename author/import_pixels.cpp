// PNG becomes a lossless bitmap, JPEG data goes into the movie as it is.
#include "author/import_pixels.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>  // for jpeglib.h
#include <cstring>

#include <jpeglib.h>

namespace vexel::author {
namespace {

bool FitsMovie(double width, double height, std::string* error) {
  if (width >= 1 && height >= 1 && width <= kMaxBitmapSide && height <= kMaxBitmapSide &&
      width * height <= kMaxBitmapPixels)
    return true;
  *error = "a picture of " + std::to_string(static_cast<long>(width)) + "x" +
           std::to_string(static_cast<long>(height)) + " pixels is too large";
  return false;
}

// The player's way to premultiply, so that its own arithmetic gets round values.
uint32_t Premultiplied(const uint8_t* rgba) {
  uint32_t a = rgba[3];
  auto channel = [a](uint32_t c) { return (c * a + 127) / 255; };
  return a << 24 | channel(rgba[0]) << 16 | channel(rgba[1]) << 8 | channel(rgba[2]);
}

// libjpeg leaves through here; nothing with a destructor lives on its way.
struct JpegErrors {
  jpeg_error_mgr manager;
  std::jmp_buf leave;
  char text[JMSG_LENGTH_MAX];
};

void LeaveJpeg(j_common_ptr info) {
  auto* errors = reinterpret_cast<JpegErrors*>(info->err);
  info->err->format_message(info, errors->text);
  std::longjmp(errors->leave, 1);
}

void StartJpeg(jpeg_decompress_struct* info, JpegErrors* errors) {
  info->err = jpeg_std_error(&errors->manager);
  errors->manager.error_exit = LeaveJpeg;
  errors->manager.emit_message = [](j_common_ptr, int) {};
}

// Decodes rows into `pixels`, or only reads the header if that is null. What is missing
// at the end of a file stays as the library fills it.
bool RunJpeg(const uint8_t* data, size_t size, JpegFacts* facts, uint32_t* pixels, uint8_t* row,
             std::string* error) {
  jpeg_decompress_struct info{};
  JpegErrors errors;
  errors.text[0] = 0;
  StartJpeg(&info, &errors);
  if (setjmp(errors.leave)) {
    jpeg_destroy_decompress(&info);
    *error = errors.text;
    return false;
  }
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, data, static_cast<unsigned long>(size));
  jpeg_read_header(&info, TRUE);
  facts->width = static_cast<int>(info.image_width);
  facts->height = static_cast<int>(info.image_height);
  facts->channels = info.num_components;
  if (pixels) {
    info.out_color_space = JCS_RGB;
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height) {
      uint32_t* line = pixels + size_t{info.output_scanline} * info.output_width;
      JSAMPROW rows[1] = {row};
      jpeg_read_scanlines(&info, rows, 1);
      for (unsigned x = 0; x < info.output_width; x++)
        line[x] = 0xFF000000u | uint32_t{row[3 * x]} << 16 | uint32_t{row[3 * x + 1]} << 8 |
                  row[3 * x + 2];
    }
    jpeg_finish_decompress(&info);
  }
  jpeg_destroy_decompress(&info);
  return true;
}

}  // namespace

bool DecodePng(const uint8_t* data, size_t size, SceneBitmap* out, std::string* error) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&image, data, size)) {
    *error = std::string("not a PNG picture: ") + image.message;
    return false;
  }
  if (!FitsMovie(image.width, image.height, error)) {
    png_image_free(&image);
    return false;
  }
  image.format = PNG_FORMAT_RGBA;
  std::vector<uint8_t> rgba(size_t{image.width} * image.height * 4);
  if (!png_image_finish_read(&image, nullptr, rgba.data(), 0, nullptr)) {
    *error = std::string("damaged PNG picture: ") + image.message;
    png_image_free(&image);
    return false;
  }
  out->width = static_cast<int>(image.width);
  out->height = static_cast<int>(image.height);
  out->opaque = true;
  out->pixels.resize(rgba.size() / 4);
  for (size_t i = 0; i < out->pixels.size(); i++) {
    out->pixels[i] = Premultiplied(&rgba[i * 4]);
    out->opaque = out->opaque && rgba[i * 4 + 3] == 255;
  }
  return true;
}

bool ReadJpegFacts(const uint8_t* data, size_t size, JpegFacts* out, std::string* error) {
  if (!RunJpeg(data, size, out, nullptr, nullptr, error)) {
    *error = "not a JPEG picture: " + *error;
    return false;
  }
  return FitsMovie(out->width, out->height, error);
}

bool DecodeJpeg(const uint8_t* data, size_t size, SceneBitmap* out, std::string* error) {
  JpegFacts facts;
  if (!ReadJpegFacts(data, size, &facts, error)) return false;
  std::vector<uint32_t> pixels(size_t(facts.width) * size_t(facts.height));
  std::vector<uint8_t> row(size_t(facts.width) * 3);
  if (!RunJpeg(data, size, &facts, pixels.data(), row.data(), error)) return false;
  out->width = facts.width;
  out->height = facts.height;
  out->pixels = std::move(pixels);
  out->opaque = true;
  return true;
}

Scene PictureScene(SceneBitmap bitmap) {
  Scene scene;
  scene.width = bitmap.width;
  scene.height = bitmap.height;
  SceneItem item;
  item.path.AddRect(0, 0, scene.width, scene.height);
  item.bounds = item.path.Bounds();
  item.paint.kind = PaintKind::kBitmap;
  item.paint.bitmap = 0;
  scene.items.push_back(std::move(item));
  scene.bitmaps.push_back(std::move(bitmap));
  return scene;
}

}  // namespace vexel::author
