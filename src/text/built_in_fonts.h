// The fonts that the player brings along, so that a field without outlines of
// its own looks the same on every machine: a small movie of twelve fonts, kept
// compressed until a text field is first drawn.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vexel {

// The font movie as zlib made it (font_movie.cpp, generated when the project
// is built), and its size as a movie.
extern const unsigned char UnixFontData[];
extern const size_t kUnixFontDataSize;    // bytes of UnixFontData
extern const int32_t kUnixFontMovieSize;  // bytes of the movie

// Puts the movie's bytes into `*data`, an array for delete[]; returns their
// count, or -1, with `*data` untouched, without memory or if the data is
// damaged.
int32_t GetUnixFontData(char** data);

// Ids of the regular faces; bold is 2 above, italic 2 above.
inline constexpr uint16_t kSerifFontId = 1;
inline constexpr uint16_t kSansFontId = 9;
inline constexpr uint16_t kTypewriterFontId = 17;

// Where a platform with fonts of its own finds a movie's generic font: copies
// the platform's name of `src` to `dst`, which has room for 256 bytes, and
// returns `dst`. Names that are not generic go through unchanged.
char* ResolveFontName(char* dst, const char* src);
// Whether the platform has the font; this one has none.
bool PlayerIsFontAvailable(const char* name);

}  // namespace vexel
