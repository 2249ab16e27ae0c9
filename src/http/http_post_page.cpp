// The page that a browser posts from: data to fields, fields to a form.
#include <cstring>
#include <new>

#include "base/buffer_text.h"
#include "base/ref.h"
#include "http/http_post_server.h"

namespace vexel {

namespace {

constexpr INT32 kUnclosedQuote = static_cast<INT32>(0x8004000Cu);
// Zeros behind each value.
constexpr UINT32 kValueSurplus = 12;

const char kPageHead[] =
    "HTTP/1.0 200 OK\r\nContent-type: text/html\r\n\r\n"
    "<html>\n"
    "    <head>\n"
    "    </head>\n"
    "    <body onload=\"document.theform.submit()\">\n"
    "        <form name=\"theform\" method=\"post\" action=\"";
const char kFormBegin[] = "\">\n";
const char kFieldName[] = "            <input type=\"hidden\" name=\"";
const char kFieldValue[] = "\" value=\"";
const char kFieldEnd[] = "\">\n";
const char kPageEnd[] =
    "        </form>\n"
    "    </body>\n"
    "</html>\n";

// Required: neither names nor values are escaped, so a quote breaks the markup.
void AppendField(CQKString& page, const char* name, IZEMBuffer* value) {
  page += kFieldName;
  page += name;
  page += kFieldValue;
  page += BufferText(value);
  page += kFieldEnd;
}

}  // namespace

INT32 HTTPPostServer::GetPostData(const char* url, const char* data, UINT32, CQKString*& page) {
  page = nullptr;
  if (!url || !data) return ZEM_BAD_ARGUMENT;
  void* made = nullptr;
  if (!m_pClassFactory || m_pClassFactory->CreateInstance(IID_IZEMValues, &made) < 0 || !made) {
    return ZEM_OUT_OF_MEMORY;
  }
  IZEMValues* values = static_cast<IZEMValues*>(made);
  INT32 result = CollectOptions(data, values);
  page = new (std::nothrow) CQKString;
  if (!page && result >= 0) result = ZEM_OUT_OF_MEMORY;
  if (result >= 0) {
    *page += kPageHead;
    *page += url;
    *page += kFormBegin;
    const char* name = nullptr;
    IZEMBuffer* value = nullptr;
    for (INT32 more = values->GetFirstPropertyCString(name, value); more >= 0 && value;
         more = values->GetNextPropertyCString(name, value)) {
      AppendField(*page, name, value);
      ReleaseAndClear(value);
    }
    *page += kPageEnd;
  }
  values->Release();
  return result;
}

void HTTPPostServer::TrimOffSpaces(char*& text) {
  if (!text) return;
  while (*text == ' ') text++;
  size_t length = strlen(text);
  while (length > 0 && text[length - 1] == ' ') length--;
  if (*text) text[length] = 0;
}

// The text is cut up, so this works on a copy; positions are offsets into it.
INT32 HTTPPostServer::CollectOptions(const char* data, IZEMValues* values) {
  CQKString copy(data);
  size_t end = static_cast<size_t>(copy.GetLength());
  if (data[0] == 0) return ZEM_OK;
  char* text = copy.GetBuffer(copy.GetLength());
  if (!text || end == 0) return ZEM_OUT_OF_MEMORY;
  size_t p = 0;
  for (;;) {
    char* name = text + p;
    char* value = strchr(name, '=');
    if (!value) return ZEM_FAILED;
    *value++ = 0;
    while (*value == ' ') value++;
    char* behind = value;
    if (*value == '"') {
      value++;
      behind = strchr(value, '"');
      if (!behind) return kUnclosedQuote;
      *behind++ = 0;
    }
    char* next = strchr(behind, '&');
    if (next) {
      *next = 0;
      p = static_cast<size_t>(next + 1 - text);
    } else {
      p = static_cast<size_t>(behind - text) + strlen(value);
    }
    TrimOffSpaces(name);
    TrimOffSpaces(value);
    INT32 result = StoreOption(values, name, value);
    if (result == ZEM_OUT_OF_MEMORY || p >= end) return result;
  }
}

// Stores `value` with its surplus of zeros; the result is that of setting it.
INT32 HTTPPostServer::StoreOption(IZEMValues* values, const char* name, const char* value) {
  void* made = nullptr;
  if (!m_pClassFactory || m_pClassFactory->CreateInstance(IID_IZEMBuffer, &made) < 0 || !made) {
    return ZEM_OUT_OF_MEMORY;
  }
  IZEMBuffer* buffer = static_cast<IZEMBuffer*>(made);
  UINT32 length = static_cast<UINT32>(strlen(value));
  CQKString padded(value, static_cast<int>(length));
  padded.Append("\0\0\0\0\0\0\0\0\0\0\0", kValueSurplus);
  UINT32 size = length + kValueSurplus;
  INT32 result = ZEM_OUT_OF_MEMORY;
  if (static_cast<UINT32>(padded.GetLength()) == size) {
    result = buffer->Set(reinterpret_cast<const UINT8*>(static_cast<const char*>(padded)), size);
    values->SetPropertyCString(name, buffer);
  }
  buffer->Release();
  return result;
}

}  // namespace vexel
