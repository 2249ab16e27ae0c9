#include "author/importers.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>

#include "author/import_pixels.h"
#include "author/scene.h"
#include "author/svg_builder.h"
#include "author/svg_document.h"

namespace vexel::author {
namespace {

constexpr size_t kMaxFile = size_t{256} << 20;

void ImportSvg(const uint8_t* data, size_t size, ImportResult* result) {
  std::unique_ptr<SvgDocument> document = SvgDocument::Parse(data, size, &result->error);
  if (!document) return;
  Scene scene;
  SvgBuilder builder(*document);
  builder.Build(&scene);
  result->warnings = builder.warnings();
  result->movie = WriteSceneMovie(scene);
}

void ImportPng(const uint8_t* data, size_t size, ImportResult* result) {
  SceneBitmap bitmap;
  if (DecodePng(data, size, &bitmap, &result->error))
    result->movie = WriteSceneMovie(PictureScene(std::move(bitmap)));
}

void ImportJpeg(const uint8_t* data, size_t size, ImportResult* result) {
  JpegFacts facts;
  if (!ReadJpegFacts(data, size, &facts, &result->error)) return;
  if (facts.channels > 3) {
    result->error = "a JPEG picture of four colour components cannot be shown";
    return;
  }
  SceneBitmap bitmap;
  bitmap.width = facts.width;
  bitmap.height = facts.height;
  bitmap.opaque = true;
  bitmap.jpeg.assign(data, data + size);
  result->movie = WriteSceneMovie(PictureScene(std::move(bitmap)));
}

}  // namespace

ArtKind ArtKindOfName(const std::string& name) {
  std::string ending = name.substr(std::min(name.size(), name.rfind('.')));
  for (char& c : ending)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  if (ending == ".svg") return ArtKind::kSvg;
  if (ending == ".png") return ArtKind::kPng;
  if (ending == ".jpg" || ending == ".jpeg") return ArtKind::kJpeg;
  return ArtKind::kUnknown;
}

ImportResult ImportArt(ArtKind kind, const uint8_t* data, size_t size) {
  ImportResult result;
  // The writer throws for what no field of a movie can hold; allocation may fail.
  try {
    switch (kind) {
      case ArtKind::kSvg:
        ImportSvg(data, size, &result);
        break;
      case ArtKind::kPng:
        ImportPng(data, size, &result);
        break;
      case ArtKind::kJpeg:
        ImportJpeg(data, size, &result);
        break;
      case ArtKind::kUnknown:
        result.error = "not a kind of picture that can be imported (.svg, .png, .jpg)";
        break;
    }
  } catch (const std::bad_alloc&) {
    result.movie.clear();
    result.error = "out of memory";
  } catch (const std::exception& e) {
    result.movie.clear();
    result.error = std::string("cannot be written as a movie: ") + e.what();
  }
  result.ok = result.error.empty();
  return result;
}

ImportResult ImportArtFile(const std::string& path) {
  ImportResult result;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) {
    result.error = std::strerror(errno);
    return result;
  }
  std::vector<uint8_t> bytes;
  uint8_t piece[65536];
  size_t got;
  while ((got = std::fread(piece, 1, sizeof piece, file.get())) > 0 && bytes.size() <= kMaxFile)
    bytes.insert(bytes.end(), piece, piece + got);
  if (std::ferror(file.get()))
    result.error = std::strerror(errno);
  else if (bytes.size() > kMaxFile)
    result.error = "too large";
  if (!result.error.empty()) return result;
  return ImportArt(ArtKindOfName(path), bytes.data(), bytes.size());
}

}  // namespace vexel::author
