// Lossless bitmaps, and the alpha planes of JPEG ones: both lie in zlib
// streams. Data that ends early leaves the rest as it was, and what comes
// behind the last pixel is passed over.
#include <zlib.h>

#include <cstring>

#include "movie/script_player.h"
#include "raster/color_table.h"

namespace vexel {

namespace {

// Alpha is inflated into a buffer of this size on the stack.
constexpr int32_t kAlphaPiece = 2048;

// A stream from a parser's position to the end of its tag.
class Inflater {
 public:
  explicit Inflater(SParser* parser) {
    const int32_t end = parser->tagEnd < parser->dataEnd ? parser->tagEnd : parser->dataEnd;
    m_stream.next_in = const_cast<Bytef*>(parser->script + parser->pos);
    m_stream.avail_in = end > parser->pos ? static_cast<uInt>(end - parser->pos) : 0;
    m_ended = inflateInit(&m_stream) != Z_OK;
  }
  ~Inflater() { inflateEnd(&m_stream); }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  // Fills `out` as far as the stream goes; returns how many bytes.
  int32_t Read(uint8_t* out, int32_t n) {
    m_stream.next_out = out;
    m_stream.avail_out = static_cast<uInt>(n);
    while (!m_ended && m_stream.avail_out > 0) m_ended = inflate(&m_stream, Z_NO_FLUSH) != Z_OK;
    return n - static_cast<int32_t>(m_stream.avail_out);
  }

 private:
  z_stream m_stream = {};
  bool m_ended;
};

// Entries that the stream does not wholly reach stay 0, without even alpha.
void ReadPalette(Inflater* inflater, int32_t count, bool alpha, SColorTable* table) {
  uint8_t bytes[4 * kMaxColors];
  const int32_t entryBytes = alpha ? 4 : 3;
  const int32_t got = inflater->Read(bytes, count * entryBytes) / entryBytes;
  table->n = count;
  for (int32_t i = 0; i < got; ++i) {
    const uint8_t* entry = bytes + i * entryBytes;
    const uint32_t a = alpha ? entry[3] : 255;
    table->colors[i] =
        a << 24 | uint32_t{entry[0]} << 16 | uint32_t{entry[1]} << 8 | uint32_t{entry[2]};
  }
}

}  // namespace

void ScriptPlayer::BuildLossless(SCharacter* character, SParser* parser, bool alpha) {
  const int32_t format = parser->GetByte();
  const int32_t width = parser->GetWord();
  const int32_t height = parser->GetWord();
  if (format >= kBitmapFormatCount) return;
  const bool indexed = format < bm16Bit;
  const int32_t count = indexed ? parser->GetByte() + 1 : 0;

  Inflater inflater(parser);
  SColorTable table;
  if (indexed) ReadPalette(&inflater, count, alpha, &table);
  if (!CreateBits(character, format, width, height, indexed ? &table : nullptr)) return;
  SBitmapCore* bits = &character->bits;
  if (alpha) bits->transparent = true;
  const int32_t size = bits->rowBytes * bits->height;
  inflater.Read(bits->baseAddr, size);
  SBitmapSwapBits(bits->baseAddr, size, format);
}

// Required: a colour above its alpha is lowered to it instead of being
// multiplied by it.
void ScriptPlayer::BuildAlpha(SCharacter* character, SParser* parser) {
  SBitmapCore* bits = &character->bits;
  Inflater inflater(parser);
  bits->transparent = true;
  uint8_t alphas[kAlphaPiece];
  uint8_t* pixel = bits->baseAddr;
  int32_t left = bits->width * bits->height;
  while (left > 0) {
    const int32_t got = inflater.Read(alphas, left < kAlphaPiece ? left : kAlphaPiece);
    if (got == 0) break;
    for (int32_t i = 0; i < got; ++i, pixel += 4) {
      uint32_t word;
      memcpy(&word, pixel, 4);
      const uint32_t a = alphas[i];
      const uint32_t r = word >> 16 & 255;
      const uint32_t g = word >> 8 & 255;
      const uint32_t b = word & 255;
      word = a << 24 | (r > a ? a : r) << 16 | (g > a ? a : g) << 8 | (b > a ? a : b);
      memcpy(pixel, &word, 4);
    }
    left -= got;
  }
}

}  // namespace vexel
