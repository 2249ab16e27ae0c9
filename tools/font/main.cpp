// `vexel-font FILE OUT [chars TEXT | range A B]`, OUT empty for standard output, and `vexel-font
// built-in`: the work of `vexel font`. A program of its own, since reading fonts takes a library
// that playing movies does not.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "author/font_list.h"
#include "author/fonts/specimen.h"
#include "author/fonts/wanted.h"
#include "author/language/dump.h"
#include "out_file.h"
#include "status.h"
#include "text/built_in_fonts.h"

namespace vexel::tools {

namespace {

namespace author = vexel::author;

bool EndsIn(const std::string& name, const char* ending) {
  const size_t length = std::strlen(ending);
  return name.size() >= length && name.compare(name.size() - length, length, ending) == 0;
}

author::Font Take(const std::string& path, int argc, char** argv) {
  std::vector<author::WantedGlyph> wanted;
  const bool listed = argc == 2 && std::strcmp(argv[0], "chars") == 0;
  std::string error;
  if (listed && !author::WantedOfText(argv[1], &wanted, &error))
    throw Failure(kMisused, "font", "--chars: " + error);
  const author::FontFile file(author::ReadFontFile(path));
  if (argc == 3 && std::strcmp(argv[0], "range") == 0) {
    wanted = author::WantedOfRange(file, static_cast<uint32_t>(std::strtoul(argv[1], nullptr, 10)),
                                   static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 10)));
  } else if (!listed) {
    wanted = author::WantedOfBytes(file);
  }
  std::vector<std::string> warnings;
  author::Font font = author::TakeGlyphs(file, wanted, &warnings);
  for (const std::string& warning : warnings) Warn(path, warning);
  return font;
}

void Embed(const std::string& path, const std::string& out, int argc, char** argv) {
  const author::Bytes movie = author::SpecimenMovie(Take(path, argc, argv));
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
