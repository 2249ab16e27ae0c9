// What a JPEG decode works with. The movie keeps one such state with the tables
// that its bitmaps share; a bitmap with tables of its own makes one for the
// time of its decode. Known to the JPEG sources only.
#pragma once

#include <csetjmp>
#include <cstdint>
#include <cstdio>

#include <jpeglib.h>

#include "movie/fwd.h"

namespace vexel {

// Bytes handed to the library at a time.
inline constexpr int32_t kJPEGInputBytes = 512;

// Progressive images may repeat scans without end; each costs a pass over the
// whole picture.
inline constexpr int32_t kMaxJPEGScans = 500;

struct JPEGPlayState {
  jpeg_decompress_struct cinfo;
  jpeg_error_mgr errors;
  jpeg_source_mgr source;
  jpeg_progress_mgr progress;
  // Where a fatal error goes: the library does not allow its error routine to
  // return. Set by each routine below that calls the library.
  jmp_buf bail;
  SParser* parser;  // feeds the source; not owned
  JSAMPLE* row;     // while an image is decoded: one line of it, owned
  bool noMemory;    // the image failed for memory or a budget, not for its data
  JOCTET input[kJPEGInputBytes];
};

// What the head of a JPEG stream held.
enum class JPEGHeader { kBad, kTables, kImage };

// Sets the state up and reads the stream's head from `parser`. Whatever the
// result, the state must be given to FreeJPEGState.
JPEGHeader ReadJPEGTables(JPEGPlayState* state, SParser* parser);

// Decodes into the character's bits: 32-bit pixels with `withAlpha`, else
// 16-bit. `headerRead` says that ReadJPEGTables has met the image already.
// False when there is no picture to be had, with the bits freed; the tables are
// kept.
bool ReadJPEGImage(JPEGPlayState* state, SCharacter* character, bool withAlpha, bool headerRead);

void FreeJPEGState(JPEGPlayState* state);

}  // namespace vexel
