#include "http/mime_input_stream.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <cstring>

namespace vexel {

namespace {

constexpr char kSplitting[] = "\r\n\t :,;=";
// The byte that reads as the end has a bit too.
constexpr UINT16 kEndBit = 1;
constexpr UINT16 kLineEndBits = 2 | 4;
// And those that stop a word share one.
constexpr char kStoppingWords[] = " \t=:;,-\\\x7F\xFF";
constexpr UINT16 kWordBit = MIMEInputStream::kWordStops;
static_assert(kWordBit == kEndBit << sizeof kSplitting);

struct CharBits {
  constexpr CharBits() : of() {
    of[0xFF] = kEndBit;
    for (int i = 0; kSplitting[i]; i++) {
      of[static_cast<UINT8>(kSplitting[i])] = static_cast<UINT16>(kEndBit << (i + 1));
    }
    for (int i = 0; i < 0x20; i++) of[i] |= kWordBit;
    for (int i = 0; kStoppingWords[i]; i++) of[static_cast<UINT8>(kStoppingWords[i])] |= kWordBit;
  }
  UINT16 of[256];
};
constexpr CharBits kBits;

// The set of a whole line, which most characters are read with.
constexpr UINT32 kLineStops = kEndBit | kLineEndBits;

// Behind all blocks of 16 characters without one of that set, or at the first
// such character.
const UINT8* PastPlainBlocks(const UINT8* p, const UINT8* end) {
#if defined(__SSE2__)
  const __m128i feed = _mm_set1_epi8('\n');
  const __m128i carriage = _mm_set1_epi8('\r');
  const __m128i last = _mm_set1_epi8(MIMEInputStream::kEnd);
  for (; end - p >= 16; p += 16) {
    __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    __m128i ends = _mm_or_si128(_mm_cmpeq_epi8(c, feed), _mm_cmpeq_epi8(c, carriage));
    int stops = _mm_movemask_epi8(_mm_or_si128(ends, _mm_cmpeq_epi8(c, last)));
    if (stops != 0) return p + __builtin_ctz(static_cast<unsigned>(stops));
  }
#else
  static_cast<void>(end);
#endif
  return p;
}

}  // namespace

MIMEInputStream::MIMEInputStream(const char* text, UINT32 count)
    : m_size(0), m_position(0), m_pushed(false), m_pushedBack(kEnd) {
  // Just as large as it is: a text that is only read needs no room to grow.
  char* room = m_text.GetBufferSetLength(static_cast<int>(count));
  if (!room) return;
  memcpy(room, text, count);
  m_size = count;
}

MIMEInputStream::MIMEInputStream(const CQKString& text)
    : m_text(text),
      m_size(static_cast<UINT32>(m_text.GetLength())),
      m_position(0),
      m_pushed(false),
      m_pushedBack(kEnd) {}

UINT32 MIMEInputStream::read(char* out, UINT32 count) {
  UINT32 got = 0;
  if (m_pushed && count > 0) out[got++] = static_cast<char>(read());
  UINT32 here = count - got < available() ? count - got : available();
  const void* end = memchr(rest(), kEnd & 0xFF, here);
  if (end) here = static_cast<UINT32>(static_cast<const char*>(end) - rest());
  memcpy(out + got, rest(), here);
  m_position += here;
  return got + here;
}

void MIMEInputStream::pushBack(int c) {
  m_pushed = c != kEnd;
  m_pushedBack = c;
}

UINT32 MIMEInputStream::max_distance_to(const char* set) const {
  UINT32 count = 0;
  if (m_pushed) {
    if (m_pushedBack != 0 && strchr(set, m_pushedBack)) return 0;
    count++;
  }
  for (UINT32 i = 0; i < available(); i++, count++) {
    char c = rest()[i];
    if (static_cast<signed char>(c) == kEnd || (c != 0 && strchr(set, c))) break;
  }
  return count;
}

UINT32 MIMEInputStream::BitsOf(const char* set) {
  UINT32 bits = kEndBit | kLineEndBits;
  for (; *set; set++) {
    UINT32 bit = kBits.of[static_cast<UINT8>(*set)] & ~kWordBit;
    // A carriage return as a delimiter would be taken for a line end.
    if (bit == 0 || *set == '\r') return 0;
    bits |= bit;
  }
  return bits;
}

bool MIMEInputStream::IsOneOf(UINT32 bits, int c) {
  return (kBits.of[static_cast<UINT8>(c)] & bits) != 0;
}

void MIMEInputStream::readPlain(UINT32 stops, CQKString& out) {
  if (m_pushed) return;
  const UINT8* from = reinterpret_cast<const UINT8*>(rest());
  const UINT8* end = from + available();
  const UINT8* p = stops == kLineStops ? PastPlainBlocks(from, end) : from;
  // Four at a time: their look-ups don't wait for each other.
  while (end - p >= 4 &&
         ((kBits.of[p[0]] | kBits.of[p[1]] | kBits.of[p[2]] | kBits.of[p[3]]) & stops) == 0) {
    p += 4;
  }
  while (p < end && (kBits.of[*p] & stops) == 0) p++;
  INT32 count = static_cast<INT32>(p - from);
  // Most tokens are one such piece, and are not written to any more; some are
  // the whole text.
  if (out.IsEmpty() && m_position == 0 && p == end) {
    out = m_text;
  } else {
    if (out.IsEmpty()) out.SetMinBufSize(count);
    out.Append(rest(), count);
  }
  m_position += static_cast<UINT32>(p - from);
}

}  // namespace vexel
