// Characters of a header or of a part of one, with one that can be pushed back.
#pragma once

#include "base/cqk_string.h"

namespace vexel {

class MIMEInputStream {
 public:
  // The end of the data. Required: a byte 0xFF reads as the same, and the stream
  // never gets past it.
  static constexpr int kEnd = -1;

  // Keep a copy of the text.
  MIMEInputStream(const char* text, UINT32 count);
  explicit MIMEInputStream(const CQKString& text);

  // The next character as a signed byte, or kEnd.
  int read() {
    int c = peek();
    if (m_pushed) {
      m_pushed = false;
      m_pushedBack = kEnd;
    } else if (c != kEnd) {
      m_position++;
    }
    return c;
  }
  int peek() const {
    if (m_pushed) return m_pushedBack;
    return m_position < m_size ? static_cast<signed char>(*rest()) : kEnd;
  }
  // Reads up to `count` characters; how many it got.
  UINT32 read(char* out, UINT32 count);
  // The next character to read, again; only one waits. kEnd pushes nothing.
  void pushBack(int c);
  // Bytes behind the position, without the one that was pushed back.
  UINT32 available() const { return m_size - m_position; }
  // Of the next character to read.
  UINT32 position() const { return m_pushed ? m_position - 1 : m_position; }
  // Characters up to the first one of `set`, or to the end.
  UINT32 max_distance_to(const char* set) const;

  // The characters that messages are split at have a bit each. What a set of
  // them has, and the line ends; 0 if one of it is none of those.
  static UINT32 BitsOf(const char* set);
  // What a word runs up to: its ends, controls, and the backslash in it.
  static constexpr UINT32 kWordStops = 0x200;
  // Whether `c`, which is not the end, is one of a set.
  static bool IsOneOf(UINT32 bits, int c);
  // Appends to `out` what comes before the next character of the set `stops`,
  // line end, or end, and reads over it. Nothing while a character is pushed
  // back.
  void readPlain(UINT32 stops, CQKString& out);
  // Reads over spaces and tabs.
  void skipBlanks() {
    if (m_pushed) {
      if (m_pushedBack != ' ' && m_pushedBack != '\t') return;
      read();
    }
    while (m_position < m_size && (*rest() == ' ' || *rest() == '\t')) m_position++;
  }

 private:
  const char* rest() const { return static_cast<const char*>(m_text) + m_position; }

  CQKString m_text;
  UINT32 m_size;
  UINT32 m_position;
  bool m_pushed;
  int m_pushedBack;  // kEnd: none
};

}  // namespace vexel
