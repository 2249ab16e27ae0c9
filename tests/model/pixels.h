// The buffer in nine pixel formats, its palette with the inverse table, and the
// writing of single pixels and spans with their dithers.
#pragma once

#include <vector>

#include "color.h"

namespace vexel::model {

enum PixelFormat { pix1, pix2, pix4, pix8, pix16, pix16A, pix24, pix32, pix32A };

struct Palette {
  std::vector<u32> colors;  // 256 words 0xAARRGGBB, the unused ones 0
  int n = 0;
  std::vector<u8> itab;  // 4096 entries, 4 bits a channel
};

Palette StandardPalette();

struct Buffer {
  int format = pix32, depth = 32, width = 0, height = 0, rowBytes = 0;
  Palette palette;
  std::vector<u8> bytes;

  void Create(int format, int width, int height);
  // Stores the low bits of a value as the pixel's bits.
  void Put(int x, int y, u32 value);
};

u32 Pack16(const Rgbi& c);
u32 Pack16A(const Rgbi& c);
u32 Pack32(const Rgbi& c);
int OrderedIndex(const Rgbi& c, int x, int y);
int PlainIndex(const Rgbi& c);

// Dithers and writes pixels of one paint.
struct SpanWriter {
  Buffer* bits = nullptr;
  int ditherKind = 1;
  std::vector<i32> errorThis, errorNext;  // rows of 3 errors, a margin pixel at both ends
  bool haveErrors = false;

  void NextRow();
  void EndPaint();
  void Write(int x1, int x2, int y, const Rgbi* pixels);

 private:
  int Diffuse(int x, int y, const Rgbi& c);
};

}  // namespace vexel::model
