// Unpacking the built-in fonts, and the table of generic font names.
#include "text/built_in_fonts.h"

#include <zlib.h>

#include <cstring>
#include <new>

namespace vexel {

namespace {

// A generic name of the movie format and the platform's font for it. Japanese
// names are bytes of Shift-JIS here as in movies.
struct FontName {
  const char* generic;
  const char* platform;
};

constexpr FontName kFontNames[] = {
    {"_sans", "Arial"},
    {"_serif", "Times New Roman"},
    {"_typewriter", "Courier New"},
    // Gothic, fixed and Mincho.
    {"_\x83\x53\x83\x56\x83\x62\x83\x4E",
     "\x82\x6C\x82\x72\x20\x82\x6F\x83\x53\x83\x56\x83\x62\x83\x4E"},
    {"_\x93\x99\x95\x9D", "\x82\x6C\x82\x72\x20\x83\x53\x83\x56\x83\x62\x83\x4E"},
    {"_\x96\xBE\x92\xA9", "\x82\x6C\x82\x72\x20\x82\x6F\x96\xBE\x92\xA9"},
};

// Preferred to the table's Gothic where the platform has it.
constexpr const char* kGothic = kFontNames[3].generic;
constexpr const char* kPreferredGothic = "MS UI Gothic";

constexpr size_t kNameRoom = 256;

const char* PlatformName(const char* name) {
  if (strcmp(name, kGothic) == 0 && PlayerIsFontAvailable(kPreferredGothic))
    return kPreferredGothic;
  for (const FontName& font : kFontNames)
    if (strcmp(name, font.generic) == 0) return font.platform;
  return name;
}

}  // namespace

int32_t GetUnixFontData(char** data) {
  auto* movie = new (std::nothrow) char[static_cast<size_t>(kUnixFontMovieSize)];
  if (!movie) return -1;
  uLongf size = static_cast<uLongf>(kUnixFontMovieSize);
  const int result =
      uncompress(reinterpret_cast<Bytef*>(movie), &size, UnixFontData, kUnixFontDataSize);
  if (result != Z_OK || size != static_cast<uLongf>(kUnixFontMovieSize)) {
    delete[] movie;
    return -1;
  }
  *data = movie;
  return kUnixFontMovieSize;
}

char* ResolveFontName(char* dst, const char* src) {
  const char* name = PlatformName(src);
  const size_t length = strnlen(name, kNameRoom - 1);
  memcpy(dst, name, length);
  dst[length] = 0;
  return dst;
}

bool PlayerIsFontAvailable(const char*) {
  return false;
}

}  // namespace vexel
