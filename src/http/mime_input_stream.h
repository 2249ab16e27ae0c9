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
  int read();
  int peek() const;
  // Reads up to `count` characters; how many it got.
  UINT32 read(char* out, UINT32 count);
  // The next character to read, again; only one waits. kEnd pushes nothing.
  void pushBack(int c);
  bool hasPushedBack() const { return m_pushed; }
  // Bytes behind the position, without the one that was pushed back.
  UINT32 available() const { return m_size - m_position; }
  UINT32 position() const { return m_position; }
  // Characters up to the first one of `set`, or to the end.
  UINT32 max_distance_to(const char* set) const;

 private:
  const char* rest() const { return static_cast<const char*>(m_text) + m_position; }

  CQKString m_text;
  UINT32 m_size;
  UINT32 m_position;
  bool m_pushed;
  int m_pushedBack;  // kEnd: none
};

}  // namespace vexel
