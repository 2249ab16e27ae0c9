#include "http/http_parser.h"

#include <strings.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "http/mime_scanner.h"

namespace vexel {

namespace {

constexpr char kProtocol[] = "HTTP/";
constexpr int kProtocolLength = 5;

bool BeginsWithProtocol(const char* text) {
  return strncasecmp(text, kProtocol, kProtocolLength) == 0;
}

INT32 ToDecimal(const char* text) {
  long number = strtol(text, nullptr, 10);
  if (number > 0x7FFFFFFF) return 0x7FFFFFFF;
  return number < -0x7FFFFFFF ? -0x7FFFFFFF : static_cast<INT32>(number);
}

}  // namespace

HTTPParser::~HTTPParser() {
  clearMessageLines();
}

void HTTPParser::clearMessageLines() {
  while (!IsEmpty()) {
    CQKString* line = static_cast<CQKString*>(RemoveHead());
    if (line >= m_kept && line < m_kept + kKept) {
      line->Empty();
    } else {
      delete line;
    }
  }
}

// Adds a line to those of the message; false without memory.
bool HTTPParser::AddLine(const CQKString& text) {
  bool kept = GetCount() < kKept;
  CQKString* line = kept ? &m_kept[GetCount()] : new (std::nothrow) CQKString;
  if (!line) return false;
  *line = text;
  if (AddTail(line)) return true;
  if (!kept) delete line;
  return false;
}

// The line at `at`, which moves on.
const CQKString& HTTPParser::NextLine(void*& at) const {
  return *static_cast<CQKString*>(GetNext(at));
}

// Collects the lines up to the blank one; the bytes that they take, or 0 if the
// blank line isn't there.
UINT32 HTTPParser::scanMessageHeader(const char* data, UINT32 size) {
  UINT32 lead = 0;
  while (lead < size && data[lead] && strchr("\n\r \t", data[lead])) lead++;
  // Required: blanks in front shorten the stream at its end.
  MIMEInputStream stream(data, size - lead);
  MIMEScanner scanner(stream);
  bool afterLine = false;
  for (;;) {
    MIMEToken token = scanner.nextToken("\n");
    if (!AddLine(token.text) || token.end == MIMEInputStream::kEnd) return 0;
    if (afterLine && token.IsBlank()) break;
    afterLine = true;
  }
  return stream.position() > 0 ? stream.position() + lead : 0;
}

HTTPMessage* HTTPParser::parse(const char* data, UINT32& size) {
  clearMessageLines();
  UINT32 used = scanMessageHeader(data, size);
  HTTPMessage* message = nullptr;
  if (!IsEmpty() && used > 0) {
    const CQKString& first = *static_cast<CQKString*>(GetHead());
    message = BeginsWithProtocol(first) ? parseResponse() : parseRequest();
    if (message) size = used;
  } else if (!IsEmpty() && IsSimpleRequest()) {
    message = parseRequest();
  }
  if (!message) size = 0;
  return message;
}

// A request without a version has no headers, and so no blank line.
bool HTTPParser::IsSimpleRequest() const {
  HTTPMessage* message = parseRequestLine(*static_cast<CQKString*>(GetHead()));
  bool simple = message && message->majorVersion() < 1;
  delete message;
  return simple;
}

HTTPMessage* HTTPParser::parseRequest() {
  void* at = Begin();
  if (!at) return nullptr;
  HTTPMessage* message = parseRequestLine(NextLine(at));
  if (message && message->majorVersion() >= 0) ParseHeaders(message, at);
  return message;
}

HTTPMessage* HTTPParser::parseResponse() {
  void* at = Begin();
  if (!at) return nullptr;
  HTTPMessage* message = parseResponseLine(NextLine(at));
  if (message) ParseHeaders(message, at);
  return message;
}

// Adds the headers of the lines from position `at` on.
void HTTPParser::ParseHeaders(HTTPMessage* message, void* at) const {
  while (at) message->addHeader(parseHeader(NextLine(at)));
}

HTTPMessage* HTTPParser::parseRequestLine(const CQKString& line) {
  MIMEInputStream stream(line);
  MIMEScanner scanner(stream);
  CQKString method = scanner.nextToken(nullptr).text;
  HTTPRequestMessage* message;
  if (strcasecmp(method, "GET") == 0) {
    message = new (std::nothrow) HTTPGetMessage;
  } else if (strcasecmp(method, "HEAD") == 0) {
    message = new (std::nothrow) HTTPHeadMessage;
  } else if (strcasecmp(method, "POST") == 0) {
    message = new (std::nothrow) HTTPPostMessage;
  } else {
    message = new (std::nothrow) HTTPUnknownMessage;
  }
  if (!message) return nullptr;
  message->setURL(scanner.nextToken("\t \n").text);
  SetVersionOf(message, scanner.nextToken(nullptr).text);
  return message;
}

HTTPMessage* HTTPParser::parseResponseLine(const CQKString& line) {
  MIMEInputStream stream(line);
  MIMEScanner scanner(stream);
  HTTPResponseMessage* message = new (std::nothrow) HTTPResponseMessage;
  if (!message) return nullptr;
  SetVersionOf(message, scanner.nextToken(nullptr).text);
  message->setErrorCode(scanner.nextToken(nullptr).text);
  message->setErrorMsg(scanner.nextToken("\n").text);
  return message;
}

void HTTPParser::SetVersionOf(HTTPMessage* message, const CQKString& protocol) {
  INT32 major = 0;
  INT32 minor = 0;
  if (!parseProtocolVersion(protocol, major, minor)) major = minor = 0;
  message->setVersion(major, minor);
}

// Of "HTTP/" and two numbers with a point between; there is a number in front
// of the point.
bool HTTPParser::parseProtocolVersion(const CQKString& text, INT32& major, INT32& minor) {
  int point = text.Find('.');
  if (!BeginsWithProtocol(text) || point <= kProtocolLength) return false;
  major = ToDecimal(static_cast<const char*>(text) + kProtocolLength);
  minor = ToDecimal(static_cast<const char*>(text) + point + 1);
  return true;
}

// Null for a line without a name. No line begins with a blank.
MIMEHeader* HTTPParser::parseHeader(const CQKString& line) {
  if (line.IsEmpty() || line[0] == ':') return nullptr;
  return new (std::nothrow) MIMEHeader(line, parseHeaderLine);
}

// The values of a whole line, which begins with the header's name.
void HTTPParser::parseHeaderLine(const CQKString& line, MIMEHeader* header) {
  MIMEInputStream stream(line);
  MIMEScanner scanner(stream);
  scanner.nextToken(":");
  CQKString text = scanner.nextToken("\n").text;
  if (strcasecmp(header->name(), "WWW-Authenticate") == 0) {
    parseWWWAuthenticateHeaderValues(text, header);
  } else {
    defaultParseHeaderValues(text, header);
  }
}

void HTTPParser::defaultParseHeaderValues(const CQKString& text, MIMEHeader* header) {
  MIMEInputStream stream(text);
  MIMEScanner scanner(stream);
  for (;;) {
    MIMEToken token = scanner.nextToken(",");
    if (!token.IsBlank()) parseHeaderValue(token.text, header);
    if (token.end == '\n' || token.end == MIMEInputStream::kEnd) return;
  }
}

// One value: what stands before the first ";" is an attribute, whatever it is.
void HTTPParser::parseHeaderValue(const CQKString& text, MIMEHeader* header) {
  MIMEInputStream stream(text);
  MIMEScanner scanner(stream);
  MIMEHeaderValue* value = nullptr;
  for (MIMEToken token = scanner.nextToken(";"); !token.IsBlank();
       token = scanner.nextToken("=;")) {
    if (!value) value = new (std::nothrow) MIMEHeaderValue;
    if (!value) return;
    value->addParameter(token.text, token.end == '=' ? scanner.nextToken(";").text : CQKString());
  }
  header->addHeaderValue(value);
}

}  // namespace vexel
