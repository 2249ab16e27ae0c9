// Makes messages of bytes: first the lines of one message, then the message of
// its lines.
#pragma once

#include "base/simple_list.h"
#include "http/http_message.h"

namespace vexel {

// A list of the lines (CQKString*, owned) of the message that is being parsed.
// Lives for one read, which may hold several messages in a row.
class HTTPParser : public CQKSimpleList {
 public:
  HTTPParser() = default;
  ~HTTPParser() override;
  // The message that `data` begins with, the caller's from now on, and in `size`
  // the bytes that it takes. Null, with `size` 0, as long as it isn't whole.
  //
  // A request without a version is whole without a line end, so a line that has
  // come in part may be taken for one.
  virtual HTTPMessage* parse(const char* data, UINT32& size);
  // Of the lines that parse left; null without any.
  virtual HTTPMessage* parseResponse();
  virtual HTTPMessage* parseRequest();

  // Add to `header` what the text of a value says.
  static void defaultParseHeaderValues(const CQKString& text, MIMEHeader* header);
  static void parseWWWAuthenticateHeaderValues(const CQKString& text, MIMEHeader* header);

 private:
  // A browser's request has no more lines as a rule.
  static constexpr INT32 kKept = 24;

  void clearMessageLines();
  bool AddLine(const CQKString& text);
  UINT32 scanMessageHeader(const char* data, UINT32 size);
  bool IsSimpleRequest() const;
  const CQKString& NextLine(void*& at) const;
  void ParseHeaders(HTTPMessage* message, void* at) const;

  static HTTPMessage* parseRequestLine(const CQKString& line);
  static HTTPMessage* parseResponseLine(const CQKString& line);
  static bool parseProtocolVersion(const CQKString& text, INT32& major, INT32& minor);
  static void SetVersionOf(HTTPMessage* message, const CQKString& protocol);
  static MIMEHeader* parseHeader(const CQKString& line);
  static void parseHeaderLine(const CQKString& line, MIMEHeader* header);
  static void parseHeaderValue(const CQKString& text, MIMEHeader* header);

  CQKString m_kept[kKept];  // the first lines; the others are allocated
};

}  // namespace vexel
