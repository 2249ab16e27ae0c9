#include "http/mime_scanner.h"

#include <cstring>

namespace vexel {

namespace {

constexpr int kEnd = MIMEInputStream::kEnd;

// Line ends and delimiters that are looked for in one piece.
constexpr size_t kMaxStops = 15;

bool IsBlank(int c) {
  return c == ' ' || c == '\t';
}

bool EndsWord(int c) {
  return (c >= 0 && c < 0x20) || c == 0x7F || (c > 0 && strchr(" \t=:;,-", c));
}

}  // namespace

void MIMEScanner::skipWS() {
  int c = m_stream.read();
  while (IsBlank(c)) c = m_stream.read();
  m_stream.pushBack(c);
}

MIMEToken MIMEScanner::nextToken(const char* delimiters) {
  skipWS();
  return delimiters ? DelimitedToken(delimiters) : WordToken();
}

// Behind `first`, a carriage return or line feed: whether the line ends there.
// If it goes on, the blanks that say so have been read.
bool MIMEScanner::EndsLine(int first, bool textIsEmpty) {
  int other = first == '\r' ? '\n' : '\r';
  int c = m_stream.read();
  if (c == other) {
    c = m_stream.read();
    if (IsBlank(c) && textIsEmpty) {
      m_stream.pushBack(c);
      return true;
    }
  }
  if (!IsBlank(c)) {
    m_stream.pushBack(c);
    return true;
  }
  skipWS();
  return false;
}

// Adds what comes before the next delimiter, line end, or end, in one piece;
// false without memory.
bool MIMEScanner::AddPlain(const char* delimiters, CQKString& text) {
  char stops[kMaxStops + 1] = "\r\n";
  strncat(stops, delimiters, kMaxStops - 2);
  UINT32 count = m_stream.max_distance_to(stops);
  if (count == 0) return true;
  INT32 length = text.GetLength();
  char* room = text.GetBufferSetLength(length + static_cast<INT32>(count));
  if (room) m_stream.read(room + length, count);
  return room != nullptr;
}

MIMEToken MIMEScanner::DelimitedToken(const char* delimiters) {
  MIMEToken token;
  bool canAddPlain = strlen(delimiters) <= kMaxStops - 2;
  for (;;) {
    if (canAddPlain && !AddPlain(delimiters, token.text)) return token;
    int c = m_stream.read();
    if (c == '\r' || c == '\n') {
      if (c != '\n' && strchr(delimiters, c)) {
        token.end = c;
        return token;
      }
      if (!EndsLine(c, token.IsBlank())) continue;
      token.end = '\n';
      return token;
    }
    if (c == kEnd || (c != 0 && strchr(delimiters, c))) {
      token.end = c;
      return token;
    }
    token.text += static_cast<char>(c);
  }
}

MIMEToken MIMEScanner::WordToken() {
  MIMEToken token;
  int c = m_stream.read();
  if (c == kEnd) return token;
  if (c == '\r' || c == '\n') {
    int next = m_stream.read();
    if (next != (c == '\r' ? '\n' : '\r')) m_stream.pushBack(next);
    token.end = '\n';
    return token;
  }
  bool quoted = c == '"';
  if (quoted) c = m_stream.read();
  while (c != kEnd) {
    if (!quoted && EndsWord(c)) break;
    if (quoted && c == '"') {
      c = m_stream.read();
      break;
    }
    if (c == '\\') {
      // Required: only a quote is taken out of the stream, so a backslash before
      // any other character doubles that character.
      c = m_stream.peek();
      if (c == kEnd) break;
      if (c == '"') m_stream.read();
    }
    token.text += static_cast<char>(c);
    c = m_stream.read();
  }
  m_stream.pushBack(c);
  token.end = c;
  return token;
}

}  // namespace vexel
