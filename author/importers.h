// Importers: pictures in, movie bytes out.
//
// A picture becomes a movie of one frame whose frame rectangle is the picture's
// own size in pixels. Vector art stays vector art: paths, strokes, gradients and
// clips become shapes, and only what the movie format has no record for (blurs,
// masks, patterns) is drawn once by the importer and stored as a bitmap.
// What could be neither expressed nor drawn is counted and handed back, so that
// the caller can tell the author of the picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexel::author {

// Something of the picture that the movie shows differently or not at all.
struct ImportWarning {
  std::string what;  // a phrase for a person, one line, no file name
  size_t count;      // how many times it was met, at least 1
};

struct ImportResult {
  bool ok = false;
  std::string error;                    // cause, one line, if not `ok`; "line 12: ..." for XML
  std::vector<uint8_t> movie;           // the whole movie, empty if not `ok`
  std::vector<ImportWarning> warnings;  // in the order first met, each `what` once
};

struct Scene;  // author/scene.h

enum class ArtKind { kUnknown, kSvg, kPng, kJpeg };

// The kind that a file name's ending tells: .svg, .png, .jpg or .jpeg, in any case.
ArtKind ArtKindOfName(const std::string& name);

// Imports a picture from memory; `data` stays the caller's. Never reads files or
// the network, whatever the picture refers to. Bounded in time and memory: a picture
// that asks for too much is refused or imported in part, with a warning.
ImportResult ImportArt(ArtKind kind, const uint8_t* data, size_t size);

// The same up to the scene that the movie is written from. `movie` stays empty.
ImportResult ImportScene(ArtKind kind, const uint8_t* data, size_t size, Scene* scene);

// Reads a whole file; false with a cause in `error`.
bool ReadArtFile(const std::string& path, std::vector<uint8_t>* bytes, std::string* error);

// Reads the file and imports it by the ending of its name.
ImportResult ImportArtFile(const std::string& path);

}  // namespace vexel::author
