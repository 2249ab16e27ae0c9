// Messages: requests and responses, their headers and content, and how each
// writes itself.
#pragma once

#include "base/cqk_string.h"
#include "base/simple_list.h"
#include "http/mime_header.h"

namespace vexel {

// What tag() answers.
enum HTTPTag {
  HTTP_TAG_UNKNOWN = 0,
  HTTP_TAG_RESPONSE = 1,
  HTTP_TAG_GET = 2,
  HTTP_TAG_POST = 3,
  HTTP_TAG_HEAD = 4,
};

// Owns its headers.
class HTTPMessage {
 public:
  HTTPMessage();
  virtual ~HTTPMessage();
  virtual int tag() const = 0;
  virtual const char* tagStr() const = 0;
  // The whole message, without a terminator, into `out`, which has room for it;
  // `length` becomes its length. A null `out` gives the length only.
  virtual void asString(char* out, int& length) const = 0;
  HTTPMessage(const HTTPMessage&) = delete;
  HTTPMessage& operator=(const HTTPMessage&) = delete;

  // Takes `header` over; null is nothing. Without memory it is dropped.
  void addHeader(MIMEHeader* header);
  void addHeader(const char* name, const char* value);
  // The first header of this name, whatever the case, or null.
  MIMEHeader* getHeader(const char* name) const;
  // The text of its first value, or an empty text.
  CQKString getHeaderValue(const char* name) const;
  // The same as a decimal number; false if the text is empty.
  bool getHeaderValue(const char* name, UINT32& number) const;
  // Null behind the last.
  MIMEHeader* getFirstHeader();
  MIMEHeader* getNextHeader();
  void clearHeaderList();

  void setContent(const char* bytes, UINT32 length);
  void setContent(const char* text) { m_content = text; }
  const CQKString& getContent() const { return m_content; }
  UINT32 contentLength() const { return static_cast<UINT32>(m_content.GetLength()); }

  void setVersion(INT32 major, INT32 minor);
  INT32 majorVersion() const { return m_majorVersion; }
  INT32 minorVersion() const { return m_minorVersion; }

  // Carried along, without a meaning here.
  void setCloakedMsgFlag(bool cloaked) { m_cloaked = cloaked; }
  bool isCloakedMsg() const { return m_cloaked; }

 protected:
  // Appends "name: values", line by line.
  void AppendHeaders(CQKString& text) const;
  static void CopyOut(const CQKString& text, char* out, int& length);

 private:
  INT32 m_majorVersion;  // 1.0 at first
  INT32 m_minorVersion;
  CQKString m_content;
  CQKSimpleList m_headers;
  void* m_cursor;
  bool m_cloaked;
};

class HTTPRequestMessage : public HTTPMessage {
 public:
  void asString(char* out, int& length) const override;

  void setURL(const CQKString& url) { m_url = url; }
  const CQKString& url() const { return m_url; }

 private:
  CQKString m_url;
};

// A request of any other method, whose name is not kept.
class HTTPUnknownMessage : public HTTPRequestMessage {
 public:
  int tag() const override { return HTTP_TAG_UNKNOWN; }
  const char* tagStr() const override { return "UNKNOWN"; }
};

class HTTPGetMessage : public HTTPRequestMessage {
 public:
  int tag() const override { return HTTP_TAG_GET; }
  const char* tagStr() const override { return "GET"; }
};

class HTTPPostMessage : public HTTPRequestMessage {
 public:
  int tag() const override { return HTTP_TAG_POST; }
  const char* tagStr() const override { return "POST"; }
};

class HTTPHeadMessage : public HTTPRequestMessage {
 public:
  int tag() const override { return HTTP_TAG_HEAD; }
  const char* tagStr() const override { return "HEAD"; }
};

class HTTPResponseMessage : public HTTPMessage {
 public:
  int tag() const override { return HTTP_TAG_RESPONSE; }
  const char* tagStr() const override { return ""; }
  void asString(char* out, int& length) const override;

  void setErrorCode(const CQKString& code) { m_errorCode = code; }
  const CQKString& errorCode() const { return m_errorCode; }
  void setErrorMsg(const CQKString& text) { m_errorMsg = text; }
  const CQKString& errorMsg() const { return m_errorMsg; }

 private:
  CQKString m_errorCode;
  CQKString m_errorMsg;
};

}  // namespace vexel
