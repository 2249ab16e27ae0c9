// The reader of movie bytes: bits, little-endian numbers, the packed records
// that many tags share, and the framing of tags.
//
// A parser trusts nothing that the data says about itself. It knows the end of
// the memory it stands on; reads past that end give zeros and texts stop
// there, so callers need no tests of their own. Zeros end every record walk of
// the format.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "geometry/color.h"
#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "raster/color_transform.h"

namespace vexel {

// `tagEnd` of a parser over data that was not framed by GetTag: larger than any
// real offset.
inline constexpr int32_t kNoTagEnd = 0x20000000;

// The limit for GetTag over character data, whose end only the block knows.
inline constexpr int32_t kNoTagLimit = 0x1FFFFFFF;

// The 8 bytes at `at` as one number, the first byte highest.
inline uint64_t BigEndian64(const uint8_t* at) {
  uint64_t word;
  memcpy(&word, at, sizeof word);
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  return word;
}

class SParser {
 public:
  SParser() = default;
  // Over `size` bytes at `bytes` (not owned), reading from offset `start`.
  SParser(const uint8_t* bytes, int32_t size, int32_t start = 0)
      : script(bytes), pos(start), tagEnd(kNoTagEnd), dataEnd(size) {}

  // Starts a bit-packed structure on a byte boundary.
  void InitBits() {
    bitPos = 0;
    bitBuf = 0;
  }
  // `n` bits, most significant first; 0 bits give 0. Bits beyond 32 are read
  // and lost.
  uint32_t GetBits(int32_t n) {
    const int32_t missing = n - bitPos;
    if (missing <= 0) {
      bitPos -= n;
      const uint32_t result = bitBuf >> bitPos;
      bitBuf &= (1u << bitPos) - 1;
      return result;
    }
    if (n > 32 || !HasBytes(8)) return GetBitsSlowly(n);
    // All that can be missing lies in the next 8 bytes.
    const uint64_t ahead = BigEndian64(script + pos);
    const int32_t bytes = (missing + 7) >> 3;
    const uint64_t result = uint64_t{bitBuf} << missing | ahead >> (64 - missing);
    pos += bytes;
    bitPos = bytes * 8 - missing;
    bitBuf = script[pos - 1] & ((1u << bitPos) - 1);
    return static_cast<uint32_t>(result);
  }
  // The same, sign-extended from bit n - 1.
  int32_t GetSBits(int32_t n) {
    const uint32_t bits = GetBits(n);
    if (n <= 0 || n >= 32) return static_cast<int32_t>(bits);
    return static_cast<int32_t>(bits << (32 - n)) >> (32 - n);
  }

  uint8_t GetByte() { return HasBytes(1) ? script[pos++] : 0; }
  uint16_t GetWord() {
    const uint32_t low = GetByte();
    return static_cast<uint16_t>(low | uint32_t{GetByte()} << 8);
  }
  uint32_t GetDWord() {
    const uint32_t low = GetWord();
    return low | uint32_t{GetWord()} << 16;
  }

  // Copies at most `n` bytes, never past `tagEnd` or the data's end; returns
  // how many.
  int32_t GetData(void* dst, int32_t n);

  // The NUL-terminated text at `pos`, inside the data and not owned; `pos`
  // moves behind its NUL. A text without a NUL before the data's end reads as
  // the empty text, and `pos` moves to the end.
  const char* GetStringP();
  // The same text as a copy for FreeStr; one without a NUL is cut at the end.
  char* GetString();

  // Red, green, blue and, if `alpha`, an alpha byte (else 255).
  void GetColor(RGBI* out, bool alpha);
  SRGB GetColor(bool alpha);
  void GetRect(SRECT* out);
  void GetMatrix(MATRIX* out);
  void GetColorTransform(ColorTransform* out, bool alpha);

  // Frames the tag at `pos`, of which all must lie before `limit` and inside
  // the data: returns its code with `pos` at its body, or -1 with `pos`
  // unchanged, so that the same call succeeds when more has arrived. The
  // caller sets `pos` to `tagEnd` when it is done. With `cut`, a body that is
  // longer than that ends there.
  int32_t GetTag(int32_t limit, bool cut = false);

  const uint8_t* script = nullptr;  // start of the data, not owned
  int32_t pos = 0;                  // read position, an offset from `script`
  uint32_t bitBuf = 0;              // unread bits of the current byte
  int32_t bitPos = 0;               // how many, 0 to 8
  int32_t tagPos = 0;               // offset of the header of the last tag framed
  int32_t tagEnd = 0;               // offset just behind its body
  int32_t tagCode = 0;              // its code
  int32_t dataEnd = 0;              // offset behind the last byte that may be read

 private:
  bool HasBytes(int32_t n) const { return pos >= 0 && dataEnd - int64_t{pos} >= n; }
  // Byte by byte: near the data's end, and for more than 32 bits.
  uint32_t GetBitsSlowly(int32_t n);
};

}  // namespace vexel
