#include "http/mime_input_stream.h"

#include <cstring>

namespace vexel {

namespace {

constexpr char kSplitting[] = "\r\n\t :,;=";
// The byte that reads as the end has a bit too.
constexpr UINT16 kEndBit = 1;
constexpr UINT16 kLineEndBits = 2 | 4;

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
    UINT32 bit = kBits.of[static_cast<UINT8>(*set)];
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
  const UINT8* p = from;
  // Four at a time: their look-ups don't wait for each other.
  while (end - p >= 4 &&
         ((kBits.of[p[0]] | kBits.of[p[1]] | kBits.of[p[2]] | kBits.of[p[3]]) & stops) == 0) {
    p += 4;
  }
  while (p < end && (kBits.of[*p] & stops) == 0) p++;
  out.Append(rest(), static_cast<INT32>(p - from));
  m_position += static_cast<UINT32>(p - from);
}

void MIMEInputStream::skipBlanks() {
  if (m_pushed) {
    if (m_pushedBack != ' ' && m_pushedBack != '\t') return;
    read();
  }
  while (m_position < m_size && (*rest() == ' ' || *rest() == '\t')) m_position++;
}

}  // namespace vexel
