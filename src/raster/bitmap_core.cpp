// The memory of a bitmap: sizes, allocation, byte order.
#include "raster/bitmap_core.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "raster/color_table.h"

namespace vexel {

namespace {

// The far edge in 16.16 form must fit 32 bits.
constexpr int32_t kMaxBitmapSide = 32767;

constexpr int32_t kBitsPerPixel[] = {1, 2, 4, 8, 16, 32};
static_assert(sizeof kBitsPerPixel / sizeof *kBitsPerPixel == kBitmapFormatCount);

constexpr bool IsBitmapFormat(int32_t format) {
  return format >= 0 && format < kBitmapFormatCount;
}

constexpr bool IsBitmapSide(int32_t side) {
  return side >= 1 && side <= kMaxBitmapSide;
}

}  // namespace

int32_t SBitmapBitsPerPixel(int32_t format) {
  return IsBitmapFormat(format) ? kBitsPerPixel[format] : 0;
}

int32_t SBitmapCalcRowbytes(int32_t format, int32_t width) {
  switch (format) {
    case bm1Bit:
      return WrapShl(Asr(WrapAdd(width, 31), 5), 2);
    case bm2Bit:
      return WrapShl(Asr(WrapAdd(width, 15), 4), 2);
    case bm4Bit:
      return WrapShl(Asr(WrapAdd(width, 7), 3), 2);
    case bm8Bit:
      return WrapAdd(width, 3) & ~3;
    case bm16Bit:
      return WrapAdd(WrapShl(width, 1), 3) & ~3;
    case bm32Bit:
      return WrapShl(width, 2);
    default:
      return 0;
  }
}

bool HasTransparent(const SColorTable* table) {
  if (table == nullptr) return false;
  for (int32_t i = 0; i < table->n; i++) {
    if (AlphaOf(table->colors[i]) < 255) return true;
  }
  return false;
}

void SBitmapSwapBits(void* data, int32_t size, int32_t format) {
  auto* group = static_cast<uint8_t*>(data);
  // The place each byte of a group comes from.
  static constexpr uint8_t kSwap16[4] = {1, 0, 3, 2};
  static constexpr uint8_t kSwap32[4] = {3, 2, 1, 0};
  const uint8_t* from = format == bm16Bit ? kSwap16 : format == bm32Bit ? kSwap32 : nullptr;
  if (from == nullptr) return;
  for (int32_t n = size / 4; n > 0; n--, group += 4) {
    const uint8_t b[4] = {group[from[0]], group[from[1]], group[from[2]], group[from[3]]};
    std::memcpy(group, b, 4);
  }
}

void SBitmapCore::PIInit() {
  baseAddr = nullptr;
  cTab = nullptr;
  useCount = 0;
  transparent = false;
}

bool SBitmapCore::PICreate(int32_t format, int32_t w, int32_t h, const SColorTable* table,
                           int32_t /*transparent*/) {
  baseAddr = nullptr;
  cTab = nullptr;
  useCount = 0;
  transparent = HasTransparent(table);
  bmFormat = format;
  width = w;
  height = h;
  rowBytes = SBitmapCalcRowbytes(format, w);
  if (!IsBitmapFormat(format) || !IsBitmapSide(w) || !IsBitmapSide(h)) return false;
  if (format < bm16Bit) {
    cTab = new (std::nothrow) SColorTable;
    if (cTab == nullptr) return false;
    if (table != nullptr) ColorTableCopy(table, cTab);
  }
  const int64_t size = int64_t{rowBytes} * h;
  if (size > kInt32Max) return false;
  baseAddr = static_cast<uint8_t*>(std::calloc(1, static_cast<size_t>(size)));
  return baseAddr != nullptr;
}

void SBitmapCore::PIFree() {
  delete cTab;
  cTab = nullptr;
  std::free(baseAddr);
  baseAddr = nullptr;
}

}  // namespace vexel
