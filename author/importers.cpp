#include "author/importers.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <new>

#include "author/import_pixels.h"
#include "author/scene.h"
#include "author/svg_builder.h"
#include "author/svg_document.h"

namespace vexel::author {
namespace {

constexpr size_t kMaxFile = size_t{256} << 20;

void ReadSvg(const uint8_t* data, size_t size, Scene* scene, ImportResult* result) {
  std::unique_ptr<SvgDocument> document = SvgDocument::Parse(data, size, &result->error);
  if (!document) return;
  SvgBuilder builder(*document);
  builder.Build(scene);
  result->warnings = builder.warnings();
}

void ReadPng(const uint8_t* data, size_t size, Scene* scene, ImportResult* result) {
  SceneBitmap bitmap;
  if (DecodePng(data, size, &bitmap, &result->error)) *scene = PictureScene(std::move(bitmap));
}

void ReadJpeg(const uint8_t* data, size_t size, Scene* scene, ImportResult* result) {
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
  *scene = PictureScene(std::move(bitmap));
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

ImportResult ImportScene(ArtKind kind, const uint8_t* data, size_t size, Scene* scene) {
  ImportResult result;
  try {
    switch (kind) {
      case ArtKind::kSvg:
        ReadSvg(data, size, scene, &result);
        break;
      case ArtKind::kPng:
        ReadPng(data, size, scene, &result);
        break;
      case ArtKind::kJpeg:
        ReadJpeg(data, size, scene, &result);
        break;
      case ArtKind::kUnknown:
        result.error = "not a kind of picture that can be imported (.svg, .png, .jpg)";
        break;
    }
  } catch (const std::bad_alloc&) {
    result.error = "out of memory";
  }
  result.ok = result.error.empty();
  return result;
}

ImportResult ImportArt(ArtKind kind, const uint8_t* data, size_t size) {
  Scene scene;
  ImportResult result = ImportScene(kind, data, size, &scene);
  if (!result.ok) return result;
  try {
    result.movie = WriteSceneMovie(scene);
  } catch (const std::exception& e) {
    // The writer throws for what no field of a movie can hold.
    result.ok = false;
    result.error = std::string("cannot be written as a movie: ") + e.what();
  }
  return result;
}

bool ReadArtFile(const std::string& path, std::vector<uint8_t>* bytes, std::string* error) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) {
    *error = std::strerror(errno);
    return false;
  }
  bytes->clear();
  uint8_t piece[65536];
  size_t got;
  while ((got = std::fread(piece, 1, sizeof piece, file.get())) > 0 && bytes->size() <= kMaxFile)
    bytes->insert(bytes->end(), piece, piece + got);
  if (std::ferror(file.get()))
    *error = std::strerror(errno);
  else if (bytes->size() > kMaxFile)
    *error = "too large";
  return error->empty();
}

ImportResult ImportArtFile(const std::string& path) {
  ImportResult result;
  std::vector<uint8_t> bytes;
  if (!ReadArtFile(path, &bytes, &result.error)) return result;
  return ImportArt(ArtKindOfName(path), bytes.data(), bytes.size());
}

}  // namespace vexel::author
