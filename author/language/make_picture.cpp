// Bitmaps from files or from what their tags hold, and drawings of other
// programs.
#include "author/import_pixels.h"
#include "author/importers.h"
#include "author/language/maker.h"
#include "author/scene.h"

namespace vexel::author {

namespace {

std::span<const uint8_t> BytesOf(const std::string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

SceneBitmap DecodeFile(const std::string& path, const std::string& data, const SourcePlace& place) {
  const auto bytes = BytesOf(data);
  SceneBitmap bitmap;
  std::string error;
  bool good = false;
  if (ArtKindOfName(path) == ArtKind::kPng) {
    good = DecodePng(bytes.data(), bytes.size(), &bitmap, &error);
  } else if (ArtKindOfName(path) == ArtKind::kJpeg) {
    good = DecodeJpeg(bytes.data(), bytes.size(), &bitmap, &error);
  } else {
    error = "a picture ends in .png, .jpg or .jpeg";
  }
  if (!good) throw SourceError(place, path + ": " + error);
  return bitmap;
}

// The first colour of a table without the alpha a stream of it may have.
std::vector<Color> TableOf(const Bytes& bytes, bool alpha) {
  const size_t size = alpha ? 4 : 3;
  if (bytes.size() % size != 0 || bytes.size() > 256 * size)
    throw std::range_error("a colour table holds up to 256 colours of 3 bytes, 4 with alpha");
  std::vector<Color> table;
  for (size_t i = 0; i < bytes.size(); i += size) {
    table.push_back({bytes[i], bytes[i + 1], bytes[i + 2], alpha ? bytes[i + 3] : uint8_t{255}});
  }
  return table;
}

}  // namespace

void Maker::Picture() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"count"});
  BitWriter body;
  body.U16(id);
  if (clauses.Has(Field::kFile)) {
    PictureFile(clauses, body);
    return;
  }
  if (clauses.Has(Field::kBytes)) {
    in_.Fail("a picture takes file, jpeg or format; other tags are `tag CODE bytes`");
  }
  if (clauses.Has(Field::kJpeg)) {
    const Bytes jpeg = clauses.BytesOf(Field::kJpeg);
    int code = clauses.Has(Field::kTables) ? kTagDefineBits : kTagDefineBitsJPEG;
    if (clauses.Has(Field::kPlane) || clauses.Has(Field::kPacket)) {
      code = kTagDefineBitsJPEGAlpha;
      body.U32(static_cast<uint32_t>(jpeg.size()));
      body.Append(jpeg);
      body.Append(clauses.Has(Field::kPlane) ? Deflate(clauses.BytesOf(Field::kPlane))
                                             : clauses.BytesOf(Field::kPacket));
    } else {
      body.Append(jpeg);
    }
    Emit(code, body, clauses);
    return;
  }
  if (!clauses.Has(Field::kFormat) || !clauses.Has(Field::kPixels))
    in_.Fail("a picture takes file, or jpeg, or format and pixels");
  const bool alpha = !clauses.Has(Field::kOpaque);
  const auto format = static_cast<uint32_t>(clauses.Stored(Field::kFormat));
  const int code = alpha ? kTagDefineBitsLosslessAlpha : kTagDefineBitsLossless;
  if (clauses.Has(Field::kRows)) {
    LosslessBody lossless;
    lossless.format = static_cast<uint8_t>(format);
    lossless.width = static_cast<uint16_t>(clauses.Stored(Field::kPixels, 0));
    lossless.height = static_cast<uint16_t>(clauses.Stored(Field::kPixels, 1));
    if (clauses.Has(Field::kTable)) lossless.table = TableOf(clauses.BytesOf(Field::kTable), alpha);
    lossless.tableCount = clauses.Part("count");
    lossless.rows = clauses.BytesOf(Field::kRows);
    if (format < 4 && lossless.table.empty()) in_.Fail("formats 0 to 3 take a table");
    body.Append(EncodeLossless(lossless, alpha));
  } else {
    body.U8(format);
    body.U16(static_cast<uint32_t>(clauses.Stored(Field::kPixels, 0)));
    body.U16(static_cast<uint32_t>(clauses.Stored(Field::kPixels, 1)));
    if (format < 4) body.U8(static_cast<uint32_t>(std::max(clauses.Part("count"), 0)));
    if (clauses.Has(Field::kPacket)) body.Append(clauses.BytesOf(Field::kPacket));
  }
  Emit(code, body, clauses);
}

void Maker::PictureFile(const Clauses& clauses, BitWriter& body) {
  const SourcePlace place = clauses.Get(Field::kFile).place;
  const std::string path = Beside(clauses.TextOf(Field::kFile));
  const std::string data = ReadFile(path, place);
  if (ArtKindOfName(path) != ArtKind::kJpeg) {
    if (clauses.Has(Field::kMask)) clauses.Fail(Field::kMask, "a mask goes with a JPEG picture");
    const SceneBitmap bitmap = DecodeFile(path, data, place);
    body.Append(EncodeLossless(LosslessFromBitmap(bitmap), !bitmap.opaque));
    Emit(bitmap.opaque ? kTagDefineBitsLossless : kTagDefineBitsLosslessAlpha, body, clauses);
    return;
  }
  JpegFacts facts;
  std::string error;
  const auto jpeg = BytesOf(data);
  if (!ReadJpegFacts(jpeg.data(), jpeg.size(), &facts, &error))
    throw SourceError(place, path + ": " + error);
  if (facts.channels > 3)
    throw SourceError(place, path + ": four colour components cannot be shown");
  if (!clauses.Has(Field::kMask)) {
    body.Append(jpeg);
    Emit(kTagDefineBitsJPEG, body, clauses);
    return;
  }
  const SourcePlace maskPlace = clauses.Get(Field::kMask).place;
  const std::string maskPath = Beside(clauses.TextOf(Field::kMask));
  const SceneBitmap mask = DecodeFile(maskPath, ReadFile(maskPath, maskPlace), maskPlace);
  if (mask.width != facts.width || mask.height != facts.height)
    throw SourceError(maskPlace, maskPath + " is not of the size of " + path);
  Bytes plane;
  plane.reserve(mask.pixels.size());
  // Green stands for grey: they are the same in a grey picture.
  for (uint32_t pixel : mask.pixels) plane.push_back(static_cast<uint8_t>(pixel >> 8));
  body.U32(static_cast<uint32_t>(jpeg.size()));
  body.Append(jpeg);
  body.Append(Deflate(plane));
  Emit(kTagDefineBitsJPEGAlpha, body, clauses);
}

void Maker::JpegTables() {
  const Clauses clauses = ReadClauses();
  if (!clauses.Has(Field::kJpeg)) in_.Fail("jpegtables takes jpeg");
  Emit(kTagDefineJPEGTables, clauses.BytesOf(Field::kJpeg), clauses);
}

// The characters of the drawing are written where the statement stands, and
// then the sprite that shows them.
void Maker::Art() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  if (!clauses.Has(Field::kFile)) in_.Fail("art takes file");
  const SourcePlace place = clauses.Get(Field::kFile).place;
  const std::string path = Beside(clauses.TextOf(Field::kFile));
  const std::string data = ReadFile(path, place);
  const auto bytes = BytesOf(data);
  Scene scene;
  const ImportResult result = ImportScene(ArtKindOfName(path), bytes.data(), bytes.size(), &scene);
  if (!result.ok) throw SourceError(place, path + ": " + result.error);
  for (const ImportWarning& warning : result.warnings) {
    made_.warnings.push_back(
        path + ": " + warning.what +
        (warning.count == 1 ? "" : " (" + std::to_string(warning.count) + " times)"));
  }
  TagStream definitions, stage;
  characters_.Use(WriteSceneSprite(scene, characters_.highest() + 1, &definitions, &stage) - 1u);
  stage.FrameEnd().End();
  CountOutput(definitions.bytes().size());
  Tags().Raw(definitions.bytes());
  BitWriter body;
  body.U16(id);
  body.U16(1);
  body.Append(stage.bytes());
  Emit(kTagDefineSprite, body, clauses);
}

}  // namespace vexel::author
