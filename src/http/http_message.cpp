#include "http/http_message.h"

#include <strings.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace vexel {

HTTPMessage::HTTPMessage()
    : m_majorVersion(1), m_minorVersion(0), m_cursor(nullptr), m_cloaked(false) {}

HTTPMessage::~HTTPMessage() {
  clearHeaderList();
}

void HTTPMessage::addHeader(MIMEHeader* header) {
  if (header && !m_headers.AddTail(header)) delete header;
}

void HTTPMessage::addHeader(const char* name, const char* value) {
  MIMEHeader* header = new (std::nothrow) MIMEHeader(name);
  if (header) header->addHeaderValue(value);
  addHeader(header);
}

MIMEHeader* HTTPMessage::getHeader(const char* name) const {
  for (void* at = m_headers.Begin(); at;) {
    MIMEHeader* header = static_cast<MIMEHeader*>(m_headers.GetNext(at));
    if (strcasecmp(header->name(), name) == 0) return header;
  }
  return nullptr;
}

CQKString HTTPMessage::getHeaderValue(const char* name) const {
  MIMEHeader* header = getHeader(name);
  MIMEHeaderValue* value = header ? header->getFirstHeaderValue() : nullptr;
  return value ? value->value() : CQKString();
}

bool HTTPMessage::getHeaderValue(const char* name, UINT32& number) const {
  CQKString text = getHeaderValue(name);
  if (text.IsEmpty()) return false;
  number = static_cast<UINT32>(strtoul(text, nullptr, 10));
  return true;
}

MIMEHeader* HTTPMessage::getFirstHeader() {
  m_cursor = m_headers.Begin();
  return getNextHeader();
}

MIMEHeader* HTTPMessage::getNextHeader() {
  return static_cast<MIMEHeader*>(m_headers.GetNext(m_cursor));
}

void HTTPMessage::clearHeaderList() {
  m_cursor = nullptr;
  while (!m_headers.IsEmpty()) delete static_cast<MIMEHeader*>(m_headers.RemoveHead());
}

void HTTPMessage::setContent(const char* bytes, UINT32 length) {
  m_content = CQKString(bytes, static_cast<int>(length));
}

void HTTPMessage::setVersion(INT32 major, INT32 minor) {
  m_majorVersion = major;
  m_minorVersion = minor;
}

void HTTPMessage::AppendHeaders(CQKString& text) const {
  for (void* at = m_headers.Begin(); at;) {
    MIMEHeader* header = static_cast<MIMEHeader*>(m_headers.GetNext(at));
    text += header->name();
    text += ": ";
    header->asString(text);
  }
}

void HTTPMessage::CopyOut(const CQKString& text, char* out, int& length) {
  length = text.GetLength();
  if (out) memcpy(out, text, static_cast<size_t>(length));
}

void HTTPRequestMessage::asString(char* out, int& length) const {
  CQKString text;
  text.Format("%s %s HTTP/%d.%d\r\n", tagStr(), static_cast<const char*>(m_url), majorVersion(),
              minorVersion());
  AppendHeaders(text);
  text += "\r\n";
  text += getContent();
  CopyOut(text, out, length);
}

// Required: the blank line stands behind the content, unlike in a request.
void HTTPResponseMessage::asString(char* out, int& length) const {
  CQKString text;
  text.Format("HTTP/%d.%d %s %s\r\n", majorVersion(), minorVersion(),
              static_cast<const char*>(m_errorCode), static_cast<const char*>(m_errorMsg));
  AppendHeaders(text);
  text += getContent();
  text += "\r\n";
  CopyOut(text, out, length);
}

}  // namespace vexel
