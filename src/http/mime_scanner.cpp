#include "http/mime_scanner.h"

#include <cstring>

namespace vexel {

namespace {

constexpr int kEnd = MIMEInputStream::kEnd;

bool IsBlank(int c) {
  return c == ' ' || c == '\t';
}

}  // namespace

void MIMEScanner::skipWS() {
  m_stream.skipBlanks();
}

MIMEToken MIMEScanner::nextToken(const char* delimiters) {
  skipWS();
  return delimiters ? DelimitedToken(delimiters) : WordToken();
}

// Behind `first`, a carriage return or line feed: whether the line ends there.
// If it goes on, the blanks that say so have been read.
bool MIMEScanner::EndsLine(int first, bool textIsEmpty) {
  int other = first == '\r' ? '\n' : '\r';
  if (m_stream.peek() == other) {
    m_stream.read();
    if (textIsEmpty) return true;
  }
  if (!IsBlank(m_stream.peek())) return true;
  skipWS();
  return false;
}

MIMEToken MIMEScanner::DelimitedToken(const char* delimiters) {
  MIMEToken token;
  UINT32 stops = MIMEInputStream::BitsOf(delimiters);
  for (;;) {
    if (stops != 0) m_stream.readPlain(stops, token.text);
    int c = m_stream.read();
    bool lineEnd = c == '\n' || (c == '\r' && (stops != 0 || !strchr(delimiters, c)));
    if (lineEnd) {
      if (!EndsLine(c, token.IsBlank())) continue;
      token.end = '\n';
      return token;
    }
    bool delimiter = stops != 0 ? MIMEInputStream::IsOneOf(stops, c)
                                : c != 0 && strchr(delimiters, c) != nullptr;
    if (c == kEnd || delimiter) {
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
    bool escape = c == '\\';
    if (!quoted && !escape && MIMEInputStream::IsOneOf(MIMEInputStream::kWordStops, c)) break;
    if (quoted && c == '"') {
      c = m_stream.read();
      break;
    }
    if (escape) {
      // Required: only a quote is taken out of the stream, so a backslash before
      // any other character doubles that character.
      c = m_stream.peek();
      if (c == kEnd) break;
      if (c == '"') m_stream.read();
    }
    token.text += static_cast<char>(c);
    if (!quoted) m_stream.readPlain(MIMEInputStream::kWordStops, token.text);
    c = m_stream.read();
  }
  m_stream.pushBack(c);
  token.end = c;
  return token;
}

}  // namespace vexel
