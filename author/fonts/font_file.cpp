#include "author/fonts/font_file.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <map>

#include "author/importers.h"

namespace vexel::author {

namespace {

// Symbol fonts keep their characters in the private area, by their byte.
constexpr uint32_t kSymbolArea = 0xF000;
constexpr uint32_t kLastByte = 0xFF;

constexpr FT_Int32 kLoad = FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;

// Composite glyphs of real fonts have a handful of parts, two or three levels deep.
constexpr uint32_t kMostLoads = 1000;
constexpr int kDeepest = 16;

// Goes through an outline and writes down its path.
struct PathSink {
  VectorPath path;
  double scale;

  Vec2 At(const FT_Vector* p) const {
    return {static_cast<double>(p->x) * scale, static_cast<double>(-p->y) * scale};
  }
  static PathSink& Of(void* user) { return *static_cast<PathSink*>(user); }
  void EndContour() {
    if (!path.IsEmpty()) path.Close();
  }

  static int MoveTo(const FT_Vector* to, void* user) {
    Of(user).EndContour();
    Of(user).path.MoveTo(Of(user).At(to));
    return 0;
  }
  static int LineTo(const FT_Vector* to, void* user) {
    Of(user).path.LineTo(Of(user).At(to));
    return 0;
  }
  static int QuadTo(const FT_Vector* control, const FT_Vector* to, void* user) {
    Of(user).path.QuadTo(Of(user).At(control), Of(user).At(to));
    return 0;
  }
  static int CubicTo(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to,
                     void* user) {
    Of(user).path.CubicTo(Of(user).At(control1), Of(user).At(control2), Of(user).At(to));
    return 0;
  }
};

}  // namespace

struct FontFile::Face {
  ~Face() {
    if (face) FT_Done_Face(face);
    if (library) FT_Done_FreeType(library);
  }

  // A length in the font's units on the square of 1024, halves upward.
  int16_t OnSquare(int64_t length) const {
    const int64_t em = face->units_per_EM;
    const int64_t twice = 2 * length * kGlyphEm + em;
    int64_t rounded = twice / (2 * em);
    if (twice % (2 * em) < 0) --rounded;
    return static_cast<int16_t>(std::clamp<int64_t>(rounded, INT16_MIN, INT16_MAX));
  }
  void Load(uint32_t glyph) {
    if (Loads(glyph, 0) > kMostLoads) throw FontError("a glyph is made of too many others");
    if (FT_Load_Glyph(face, glyph, kLoad) != 0) throw FontError("a glyph is damaged");
  }
  // How many glyphs FreeType reads for this one, itself included: a few that
  // are each made of the one before, twice, would take it forever. More than
  // kMostLoads if they are too many, too deep, or made of themselves.
  uint32_t Loads(uint32_t glyph, int depth);

  Bytes bytes;  // FreeType reads them as long as the face stands
  FT_Library library = nullptr;
  FT_Face face = nullptr;
  std::string family;
  std::map<uint32_t, uint32_t> loads;  // of glyphs that were asked for
};

uint32_t FontFile::Face::Loads(uint32_t glyph, int depth) {
  if (const auto found = loads.find(glyph); found != loads.end()) return found->second;
  loads[glyph] = kMostLoads + 1;
  if (depth > kDeepest) return kMostLoads + 1;
  if (FT_Load_Glyph(face, glyph, kLoad | FT_LOAD_NO_RECURSE) != 0)
    throw FontError("a glyph is damaged");
  std::vector<uint32_t> parts;
  if (face->glyph->format == FT_GLYPH_FORMAT_COMPOSITE) {
    for (FT_UInt i = 0; i < face->glyph->num_subglyphs; ++i) {
      FT_Int part, x, y;
      FT_UInt flags;
      FT_Matrix matrix;
      if (FT_Get_SubGlyph_Info(face->glyph, i, &part, &flags, &x, &y, &matrix) == 0)
        parts.push_back(static_cast<uint32_t>(part));
    }
  }
  uint32_t sum = 1;
  for (size_t i = 0; i < parts.size() && sum <= kMostLoads; ++i) sum += Loads(parts[i], depth + 1);
  return loads[glyph] = sum;
}

FontFile::FontFile(Bytes bytes) : face_(std::make_unique<Face>()) {
  Face& f = *face_;
  f.bytes = std::move(bytes);
  if (FT_Init_FreeType(&f.library) != 0) throw FontError("no memory to read fonts");
  if (FT_New_Memory_Face(f.library, f.bytes.data(), static_cast<FT_Long>(f.bytes.size()), 0,
                         &f.face) != 0)
    throw FontError("is no font");
  if (!FT_IS_SFNT(f.face) || !FT_IS_SCALABLE(f.face) || f.face->units_per_EM == 0)
    throw FontError("has no TrueType or OpenType outlines");
  if (!f.face->charmap && f.face->num_charmaps > 0) FT_Set_Charmap(f.face, f.face->charmaps[0]);
  if (f.face->family_name) f.family = f.face->family_name;
}

FontFile::~FontFile() = default;

const std::string& FontFile::family() const {
  return face_->family;
}

bool FontFile::bold() const {
  return face_->face->style_flags & FT_STYLE_FLAG_BOLD;
}

bool FontFile::italic() const {
  return face_->face->style_flags & FT_STYLE_FLAG_ITALIC;
}

int16_t FontFile::ascent() const {
  return face_->OnSquare(face_->face->ascender);
}

int16_t FontFile::descent() const {
  return face_->OnSquare(-int64_t{face_->face->descender});
}

int16_t FontFile::leading() const {
  const FT_Face face = face_->face;
  const int64_t gap = int64_t{face->height} - face->ascender + face->descender;
  return face_->OnSquare(std::max<int64_t>(gap, 0));
}

uint32_t FontFile::GlyphOf(uint32_t character) const {
  const FT_Face face = face_->face;
  uint32_t glyph = FT_Get_Char_Index(face, character);
  if (glyph == 0 && character <= kLastByte && face->charmap &&
      face->charmap->encoding == FT_ENCODING_MS_SYMBOL)
    glyph = FT_Get_Char_Index(face, kSymbolArea + character);
  return glyph;
}

int16_t FontFile::Advance(uint32_t glyph) const {
  face_->Load(glyph);
  return face_->OnSquare(face_->face->glyph->metrics.horiAdvance);
}

VectorPath FontFile::Outline(uint32_t glyph) const {
  face_->Load(glyph);
  const FT_GlyphSlot slot = face_->face->glyph;
  if (slot->format != FT_GLYPH_FORMAT_OUTLINE) throw FontError("a glyph has no outline");
  PathSink sink{{}, static_cast<double>(kGlyphEm) / face_->face->units_per_EM};
  constexpr FT_Outline_Funcs kSink = {
      PathSink::MoveTo, PathSink::LineTo, PathSink::QuadTo, PathSink::CubicTo, 0, 0};
  if (FT_Outline_Decompose(&slot->outline, &kSink, &sink) != 0)
    throw FontError("a glyph is damaged");
  sink.EndContour();
  return std::move(sink.path);
}

int16_t FontFile::Kerning(uint32_t left, uint32_t right) const {
  FT_Vector by;
  if (!FT_HAS_KERNING(face_->face) ||
      FT_Get_Kerning(face_->face, left, right, FT_KERNING_UNSCALED, &by) != 0)
    return 0;
  return face_->OnSquare(by.x);
}

Bytes ReadFontFile(const std::string& path) {
  Bytes bytes;
  std::string error;
  if (!ReadArtFile(path, &bytes, &error)) throw FontError("cannot be read: " + error);
  return bytes;
}

}  // namespace vexel::author
