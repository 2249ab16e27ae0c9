// Reading movie bytes. The bounds live here and nowhere else: `pos` never moves
// behind the data's end, and what lies there reads as zero.
#include "movie/sparser.h"

#include <cstring>

#include "geometry/intmath.h"
#include "player/text.h"

namespace vexel {

namespace {

// A tag header: 10 bits of code, 6 bits of length. The greatest short length
// says that a 32-bit length follows.
constexpr int32_t kTagCodeShift = 6;
constexpr int32_t kLongTagLength = 63;

// How many bytes lie between the two, which may be in any order.
int64_t Room(int64_t from, int64_t to) {
  return to > from ? to - from : 0;
}

}  // namespace

uint32_t SParser::GetBitsSlowly(int32_t n) {
  uint32_t result = 0;
  int32_t missing = n - bitPos;
  while (missing > 0) {
    if (missing < 32) result |= bitBuf << missing;
    n = missing;
    bitBuf = GetByte();
    bitPos = 8;
    missing = n - bitPos;
  }
  result |= bitBuf >> (bitPos - n);
  bitPos -= n;
  bitBuf &= (1u << bitPos) - 1;
  return result;
}

int32_t SParser::GetData(void* dst, int32_t n) {
  int64_t count = Room(pos, tagEnd < dataEnd ? tagEnd : dataEnd);
  if (count > n) count = n;
  if (count <= 0) return 0;
  memcpy(dst, script + pos, static_cast<size_t>(count));
  pos += static_cast<int32_t>(count);
  return static_cast<int32_t>(count);
}

const char* SParser::GetStringP() {
  const int64_t room = Room(pos, dataEnd);
  const void* nul = room > 0 ? memchr(script + pos, 0, static_cast<size_t>(room)) : nullptr;
  if (!nul) {
    if (room > 0) pos = dataEnd;
    return "";
  }
  const char* text = reinterpret_cast<const char*>(script + pos);
  pos = static_cast<int32_t>(static_cast<const uint8_t*>(nul) - script) + 1;
  return text;
}

char* SParser::GetString() {
  const int32_t start = pos;
  const char* text = GetStringP();
  if (*text != 0 || pos <= start) return CreateStr(text);
  // Empty, or cut off by the data's end.
  const char* first = reinterpret_cast<const char*>(script + start);
  return CreateStr(first, static_cast<int32_t>(strnlen(first, static_cast<size_t>(pos - start))));
}

void SParser::GetColor(RGBI* out, bool alpha) {
  const SRGB color = GetColor(alpha);
  *out = {color.blue, color.green, color.red, color.alpha};
}

SRGB SParser::GetColor(bool alpha) {
  SRGB color;
  color.red = GetByte();
  color.green = GetByte();
  color.blue = GetByte();
  color.alpha = alpha ? GetByte() : 255;
  return color;
}

void SParser::GetRect(SRECT* out) {
  InitBits();
  const int32_t bits = static_cast<int32_t>(GetBits(5));
  out->xmin = GetSBits(bits);
  out->xmax = GetSBits(bits);
  out->ymin = GetSBits(bits);
  out->ymax = GetSBits(bits);
}

void SParser::GetMatrix(MATRIX* out) {
  MatrixIdentity(out);
  InitBits();
  if (GetBits(1)) {
    const int32_t bits = static_cast<int32_t>(GetBits(5));
    out->a = GetSBits(bits);
    out->d = GetSBits(bits);
  }
  if (GetBits(1)) {
    const int32_t bits = static_cast<int32_t>(GetBits(5));
    out->b = GetSBits(bits);
    out->c = GetSBits(bits);
  }
  const int32_t bits = static_cast<int32_t>(GetBits(5));
  out->tx = GetSBits(bits);
  out->ty = GetSBits(bits);
}

void SParser::GetColorTransform(ColorTransform* out, bool alpha) {
  out->Clear();
  InitBits();
  out->flags = static_cast<int32_t>(GetBits(2));
  const int32_t bits = static_cast<int32_t>(GetBits(4));
  if (out->flags & ColorTransform::kHasMul) {
    out->ra = static_cast<int16_t>(GetSBits(bits));
    out->ga = static_cast<int16_t>(GetSBits(bits));
    out->ba = static_cast<int16_t>(GetSBits(bits));
    if (alpha) out->aa = static_cast<int16_t>(GetSBits(bits));
  }
  if (out->flags & ColorTransform::kHasAdd) {
    out->rb = static_cast<int16_t>(GetSBits(bits));
    out->gb = static_cast<int16_t>(GetSBits(bits));
    out->bb = static_cast<int16_t>(GetSBits(bits));
    if (alpha) out->ab = static_cast<int16_t>(GetSBits(bits));
  }
}

int32_t SParser::GetTag(int32_t limit, bool cut) {
  tagPos = pos;
  const int32_t end = limit < dataEnd ? limit : dataEnd;
  if (Room(pos, end) < 2) return -1;
  tagCode = GetWord();
  int64_t length = tagCode & kLongTagLength;
  if (length == kLongTagLength) {
    if (Room(pos, end) < 4) {
      pos = tagPos;
      return -1;
    }
    length = GetDWord();
  }
  if (pos + length > end) {
    if (!cut) {
      pos = tagPos;
      return -1;
    }
    length = end - pos;
  }
  tagEnd = static_cast<int32_t>(pos + length);
  tagCode >>= kTagCodeShift;
  return tagCode;
}

}  // namespace vexel
