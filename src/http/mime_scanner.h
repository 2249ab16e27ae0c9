// Splits characters into tokens, in the manner of message headers: line ends
// are LF, CR LF or LF CR, and a line that goes on with a blank is joined.
#pragma once

#include "http/mime_input_stream.h"

namespace vexel {

struct MIMEToken {
  CQKString text;
  int end = MIMEInputStream::kEnd;  // the character that ended it, or the end of the data

  bool IsBlank() const { return text.IsEmpty(); }
};

class MIMEScanner {
 public:
  // `stream` is the caller's and outlives the scanner.
  explicit MIMEScanner(MIMEInputStream& stream) : m_stream(stream) {}

  // The next token. With `delimiters` it goes up to one of them or a line end,
  // which is read; with null it is a word or a quoted text, and what ended it is
  // left in the stream.
  MIMEToken nextToken(const char* delimiters);
  // Reads over spaces and tabs.
  void skipWS();

 private:
  MIMEToken DelimitedToken(const char* delimiters);
  MIMEToken WordToken();
  bool EndsLine(int first, bool textIsEmpty);

  MIMEInputStream& m_stream;
};

}  // namespace vexel
