// Makes the movie of the built-in fonts from the Liberation fonts, and writes
// it as C++ source: the player carries it compressed among its constants, so
// that a text field looks the same on every machine.
//
//   make_fonts FOLDER OUT.cpp
//
// The three families have the advances of the ones that movies name, which is why
// text made elsewhere keeps its lines. The same fonts give the same source, byte for byte.
#include <zlib.h>

#include <cstdio>
#include <exception>
#include <string>

#include "author/codes.h"
#include "author/font_list.h"
#include "author/fonts/embed.h"
#include "author/movie_writer.h"

namespace vexel::author {

namespace {

// A family as movies name it. Lengths are in units of the square of 1024; they
// are part of the movie's contract with the player's fields, which lay out
// lines by them, so the record holds these and not what a new edition of a font file says.
struct Family {
  const char* name;
  const char* file;  // up to the hyphen
  uint16_t firstId;
  int16_t ascent;
  int16_t descent;
  int16_t leading;
  int16_t blank;  // advance
  bool fixed;     // all glyphs are as wide as the blank
};

constexpr Family kFamilies[] = {
    {"Times New Roman", "LiberationSerif", 1, 912, 222, 110, 256, false},
    {"Arial", "LiberationSans", 9, 927, 217, 120, 285, false},
    {"Courier New", "LiberationMono", 17, 852, 308, 136, 615, true},
};

struct Face {
  const char* file;  // behind the hyphen
  uint16_t flags;
};

// In the order of their ids, which are 2 apart.
constexpr Face kFaces[] = {
    {"Regular", 0},
    {"Bold", kFontBold},
    {"Italic", kFontItalic},
    {"BoldItalic", kFontBold | kFontItalic},
};
constexpr uint16_t kIdStep = 2;
constexpr size_t kFontCount = std::size(kFamilies) * std::size(kFaces);

constexpr uint32_t kFirstCode = 32;
constexpr uint32_t kLastCode = 255;
constexpr size_t kGlyphCount = kLastCode - kFirstCode + 1;
constexpr size_t kBehindLimit = 2100;  // bytes of bounds and kerning, which nobody reads

// The stage that the movie declares; nothing is ever placed on it.
constexpr Rect kFrame = {0, 6000, 0, 10000};
constexpr uint16_t kRate = 12 << 8;
constexpr Color kWhite = {255, 255, 255, 255};

class MakeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string PathOf(const std::string& folder, const Family& family, const Face& face) {
  return folder + "/" + family.file + "-" + face.file + ".ttf";
}

// The font files round to what the table says, give or take the half unit that the
// table was rounded by.
void CheckMeasure(const char* what, int measured, int listed) {
  if (std::abs(measured - listed) > 1)
    throw MakeError(std::string("has ") + what + " " + std::to_string(measured) + ", not " +
                    std::to_string(listed));
}

Font MakeFont(const std::string& path, const Family& family, const Face& face) {
  const FontFile file(ReadFontFile(path));
  std::vector<WantedGlyph> wanted;
  for (uint32_t code = kFirstCode; code <= kLastCode; ++code) {
    wanted.push_back({CharacterOfByte(static_cast<uint8_t>(code)), static_cast<uint16_t>(code)});
  }
  EmbedOptions options;
  options.keepMissing = true;
  options.maxBehind = kBehindLimit - 1;
  Embedded made = EmbedFont(file, wanted, options);
  if (made.holed != 0) throw MakeError("has outlines that are too intricate");
  CheckMeasure("an ascent of", made.font.ascent, family.ascent);
  CheckMeasure("a descent of", made.font.descent, family.descent);
  Font font = std::move(made.font);
  font.name = family.name;
  font.flags = kFontAnsi | kFontHasLayout | face.flags;
  font.ascent = family.ascent;
  font.descent = family.descent;
  font.leading = family.leading;
  return font;
}

Bytes MakeMovie(const std::string& folder) {
  MovieWriter movie(kFrame, kRate);
  movie.BackgroundColor(kWhite);
  for (const Family& family : kFamilies) {
    uint16_t id = family.firstId;
    for (const Face& face : kFaces) {
      const std::string path = PathOf(folder, family, face);
      try {
        movie.DefineFont2(id, MakeFont(path, family, face));
      } catch (const std::exception& error) {
        throw MakeError(path + ": " + error.what());
      }
      id += kIdStep;
    }
  }
  movie.FrameEnd().End();
  return movie.Finish();
}

// Reads the movie back and holds each font against the table.
void CheckFont(const ListedFont& listed, const Family& family, const Face& face, int id) {
  const Font& font = listed.font;
  const auto need = [&](bool holds, const char* what) {
    if (!holds) throw MakeError("font " + std::to_string(id) + ": " + what);
  };
  need(listed.id == id, "the id is another");
  need(listed.exact, "offsets or outlines lie elsewhere");
  need(font.name == family.name, "the name is another");
  need(font.flags == (kFontAnsi | kFontHasLayout | face.flags), "the flags are others");
  need(font.ascent == family.ascent && font.descent == family.descent &&
           font.leading == family.leading,
       "ascent, descent or leading are others");
  need(font.glyphs.size() == kGlyphCount, "not as many glyphs as codes");
  need(listed.BlankAdvance() == family.blank, "the blank has another width");
  need(font.behind.size() < kBehindLimit, "bounds and kerning are too large");
  uint32_t code = kFirstCode;
  size_t drawn = 0;
  for (const Glyph& glyph : font.glyphs) {
    need(glyph.code == code++, "the codes are others");
    need(!family.fixed || glyph.advance == family.blank, "a glyph has another width");
    drawn += glyph.outline.empty() ? 0 : 1;
  }
  // All but blanks and the six codes without a character.
  constexpr size_t kUndrawn = 8;
  need(drawn == kGlyphCount - kUndrawn, "letters are missing");
}

void CheckMovie(const Bytes& movie) {
  std::vector<ListedFont> fonts;
  if (!ListFonts(movie, &fonts) || fonts.size() != kFontCount)
    throw MakeError("the movie has not twelve whole fonts");
  auto font = fonts.begin();
  for (const Family& family : kFamilies) {
    int id = family.firstId;
    for (const Face& face : kFaces) {
      CheckFont(*font++, family, face, id);
      id += kIdStep;
    }
  }
}

Bytes Compressed(const Bytes& movie) {
  uLongf size = compressBound(movie.size());
  Bytes packed(size);
  if (compress2(packed.data(), &size, movie.data(), movie.size(), Z_BEST_COMPRESSION) != Z_OK)
    throw MakeError("no memory to compress the movie");
  packed.resize(size);
  return packed;
}

std::string Source(const Bytes& packed, size_t movieSize) {
  std::string text =
      "// Made by fonts/make_fonts.cpp from the Liberation fonts; fonts/README.md has\n"
      "// their licence.\n"
      "#include \"text/built_in_fonts.h\"\n\nnamespace vexel {\n\n"
      "const size_t kUnixFontDataSize = " +
      std::to_string(packed.size()) +
      ";\nconst int32_t kUnixFontMovieSize = " + std::to_string(movieSize) +
      ";\n\nconst unsigned char UnixFontData[] = {";
  constexpr size_t kInRow = 20;
  for (size_t i = 0; i < packed.size(); ++i) {
    text += i % kInRow == 0 ? "\n    " : " ";
    text += std::to_string(packed[i]) + ",";
  }
  return text + "\n};\n\n}  // namespace vexel\n";
}

}  // namespace

}  // namespace vexel::author

int main(int argc, char** argv) {
  using namespace vexel::author;
  if (argc != 3) {
    std::fprintf(stderr, "use: make_fonts FOLDER OUT.cpp\n");
    return 2;
  }
  try {
    const Bytes movie = MakeMovie(argv[1]);
    CheckMovie(movie);
    const std::string text = Source(Compressed(movie), movie.size());
    const std::span bytes(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    if (!WriteFile(argv[2], bytes)) {
      std::perror(argv[2]);
      return 1;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_fonts: %s\n", error.what());
    return 1;
  }
}
