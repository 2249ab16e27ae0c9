#include "http/mime_input_stream.h"

#include <cstring>

namespace vexel {

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
  while (got < count && peek() != kEnd) out[got++] = static_cast<char>(read());
  return got;
}

void MIMEInputStream::pushBack(int c) {
  m_pushed = c != kEnd;
  m_pushedBack = c;
}

UINT32 MIMEInputStream::max_distance_to(const char* set) const {
  UINT32 count = 0;
  if (m_pushed) {
    if (m_pushedBack == kEnd || strchr(set, m_pushedBack)) return 0;
    count++;
  }
  for (const char* p = rest(); p < rest() + available(); p++, count++) {
    if (static_cast<signed char>(*p) == kEnd || (*p && strchr(set, *p))) break;
  }
  return count;
}

}  // namespace vexel
