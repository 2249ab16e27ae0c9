// `vexel-font FILE OUT [chars TEXT | range A B]`, OUT empty for standard output, and `vexel-font
// built-in`: the work of `vexel font`. A program of its own, since reading fonts takes a library
// that playing movies does not.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "author/font_list.h"
#include "author/fonts/codes.h"
#include "author/fonts/embed.h"
#include "author/fonts/specimen.h"
#include "author/language/dump.h"
#include "out_file.h"
#include "status.h"
#include "text/built_in_fonts.h"

namespace vexel::tools {

namespace {

namespace author = vexel::author;

// Some that are missing are named, the others counted.
constexpr size_t kNamed = 8;

std::string NameOf(uint32_t character) {
  char name[16];
  std::snprintf(name, sizeof name, "U+%04X", character);
  return name;
}

std::string NamesOf(const std::vector<uint32_t>& characters) {
  std::string names;
  for (size_t i = 0; i < characters.size() && i < kNamed; ++i)
    names += (i == 0 ? "" : ", ") + NameOf(characters[i]);
  if (characters.size() > kNamed)
    names += " and " + std::to_string(characters.size() - kNamed) + " more";
  return names;
}

// The characters asked for one by one. Those that no record can list are a mistake.
std::vector<author::WantedGlyph> Listed(const std::string& text) {
  std::vector<uint32_t> characters;
  if (!author::DecodeUtf8(text, &characters))
    throw Failure(kMisused, "font", "--chars takes UTF-8");
  std::vector<author::WantedGlyph> wanted;
  for (uint32_t character : characters) {
    const uint32_t code = author::CodeOfCharacter(character);
    if (code == author::kNoCode)
      throw Failure(kMisused, "font", "--chars: " + NameOf(character) + " has no code in movies");
    wanted.push_back({character, static_cast<uint16_t>(code)});
  }
  return wanted;
}

// The characters of a range that the font has.
std::vector<author::WantedGlyph> InRange(const author::FontFile& file, uint32_t first,
                                         uint32_t last) {
  std::vector<author::WantedGlyph> wanted;
  for (uint32_t character = first; character <= last; ++character) {
    const uint32_t code = author::CodeOfCharacter(character);
    if (code != author::kNoCode && file.GlyphOf(character) != 0)
      wanted.push_back({character, static_cast<uint16_t>(code)});
  }
  return wanted;
}

// What a field can show without wide codes.
std::vector<author::WantedGlyph> OfBytes(const author::FontFile& file) {
  std::vector<author::WantedGlyph> wanted;
  for (uint32_t byte = ' '; byte <= 0xFF; ++byte) {
    const uint32_t character = author::CharacterOfByte(static_cast<uint8_t>(byte));
    if (character != author::kNoCode && file.GlyphOf(character) != 0)
      wanted.push_back({character, static_cast<uint16_t>(byte)});
  }
  return wanted;
}

bool EndsIn(const std::string& name, const char* ending) {
  const size_t length = std::strlen(ending);
  return name.size() >= length && name.compare(name.size() - length, length, ending) == 0;
}

void Embed(const std::string& path, const std::string& out, int argc, char** argv) {
  std::vector<author::WantedGlyph> wanted;
  const bool listed = argc == 2 && std::strcmp(argv[0], "chars") == 0;
  if (listed) wanted = Listed(argv[1]);
  const author::FontFile file(author::ReadFontFile(path));
  if (argc == 3 && std::strcmp(argv[0], "range") == 0) {
    wanted = InRange(file, static_cast<uint32_t>(std::strtoul(argv[1], nullptr, 10)),
                     static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 10)));
  } else if (!listed) {
    wanted = OfBytes(file);
  }
  const author::Embedded made = author::EmbedFont(file, wanted);
  if (made.font.glyphs.empty()) throw Failure(kFailed, path, "has none of the characters");
  if (!made.missing.empty()) Warn(path, "lacks " + NamesOf(made.missing));
  if (made.holed != 0)
    Warn(path, "overlapping outlines stay so (" + std::to_string(made.holed) + " glyphs)");
  const author::Bytes movie = author::SpecimenMovie(made.font);
  if (!out.empty() && !EndsIn(out, ".vxt")) {
    WriteWholeFile(out, movie.data(), movie.size());
    return;
  }
  const std::string text = author::DumpMovie(movie);
  if (out.empty()) {
    std::fwrite(text.data(), 1, text.size(), stdout);
  } else {
    WriteWholeFile(out, text.data(), text.size());
  }
}

void ListBuiltIn() {
  char* data = nullptr;
  const int32_t size = GetUnixFontData(&data);
  if (size < 0) throw Failure(kFailed, "the built-in fonts", "cannot be unpacked");
  const std::unique_ptr<char[]> owner(data);
  std::vector<author::ListedFont> fonts;
  const std::span bytes(reinterpret_cast<const uint8_t*>(data), static_cast<size_t>(size));
  if (!author::ListFonts(bytes, &fonts))
    throw Failure(kFailed, "the built-in fonts", "are damaged");
  std::printf("%2s  %-17s %5s  %6s %7s %7s  %6s  %5s\n", "id", "name", "flags", "ascent", "descent",
              "leading", "glyphs", "blank");
  for (const author::ListedFont& listed : fonts) {
    const author::Font& font = listed.font;
    std::printf("%2d  %-17s  0x%02x  %6d %7d %7d  %6zu  %5d\n", listed.id,
                ('"' + font.name + '"').c_str(), static_cast<unsigned>(font.flags), font.ascent,
                font.descent, font.leading, font.glyphs.size(), listed.BlankAdvance());
  }
}

}  // namespace

}  // namespace vexel::tools

int main(int argc, char** argv) {
  using namespace vexel::tools;
  try {
    if (argc == 2 && std::strcmp(argv[1], "built-in") == 0) {
      ListBuiltIn();
    } else if (argc >= 3) {
      try {
        Embed(argv[1], argv[2], argc - 3, argv + 3);
      } catch (const vexel::author::FontError& error) {
        throw Failure(kFailed, argv[1], error.what());
      }
    } else {
      throw Failure(kMisused, "vexel-font", "takes FILE and OUT, or built-in");
    }
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return failure.status();
  } catch (const std::bad_alloc&) {
    Warn("memory", "not enough");
    return kFailed;
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    Warn("standard output", "cannot be written: " + SystemError());
    return kFailed;
  }
  return kDone;
}
