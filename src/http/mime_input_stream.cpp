#include "http/mime_input_stream.h"

#include <cstring>

namespace vexel {

namespace {

// The characters that messages are split at, a bit each, so that a set of them
// takes one test a character. The byte that reads as the end has a bit too.
constexpr char kSplitting[] = "\r\n\t :,;=";
constexpr UINT16 kEndBit = 1;

struct CharBits {
  constexpr CharBits() : of() {
    of[0xFF] = kEndBit;
    for (int i = 0; kSplitting[i]; i++) {
      of[static_cast<UINT8>(kSplitting[i])] = static_cast<UINT16>(kEndBit << (i + 1));
    }
  }
  UINT16 of[256];
};
constexpr CharBits kBits;

// The bits of the characters in `set`; 0 if one of them has none.
UINT16 BitsOf(const char* set) {
  UINT16 bits = kEndBit;
  for (; *set; set++) {
    UINT16 bit = kBits.of[static_cast<UINT8>(*set)];
    if (bit == 0) return 0;
    bits |= bit;
  }
  return bits;
}

}  // namespace

MIMEInputStream::MIMEInputStream(const char* text, UINT32 count)
    : MIMEInputStream(CQKString(text, static_cast<int>(count))) {}

MIMEInputStream::MIMEInputStream(const CQKString& text)
    : m_text(text),
      m_size(static_cast<UINT32>(m_text.GetLength())),
      m_position(0),
      m_pushed(false),
      m_pushedBack(kEnd) {}

int MIMEInputStream::read() {
  int c = peek();
  if (m_pushed) {
    m_pushed = false;
    m_pushedBack = kEnd;
  } else if (c != kEnd) {
    m_position++;
  }
  return c;
}

int MIMEInputStream::peek() const {
  if (m_pushed) return m_pushedBack;
  return m_position < m_size ? static_cast<signed char>(*rest()) : kEnd;
}

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
  const UINT8* p = reinterpret_cast<const UINT8*>(rest());
  const UINT8* end = p + available();
  UINT16 bits = BitsOf(set);
  const UINT8* from = p;
  if (bits != 0) {
    while (p < end && (kBits.of[*p] & bits) == 0) p++;
  } else {
    while (p < end && *p != 0xFF && (*p == 0 || !strchr(set, *p))) p++;
  }
  return count + static_cast<UINT32>(p - from);
}

}  // namespace vexel
