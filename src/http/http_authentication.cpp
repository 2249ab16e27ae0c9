#include "http/http_authentication.h"

#include <strings.h>

#include <new>

#include "base/buffer_text.h"
#include "base/cqk_buffer.h"
#include "base/cqk_header.h"
#include "base/ref.h"
#include "http/http_parser.h"
#include "http/mime_scanner.h"

namespace vexel {

HTTPAuthentication::HTTPAuthentication(const char* text, AuthenticationType type)
    : m_eType(type), m_Nonce(text), m_pValues(nullptr) {}

HTTPAuthentication::HTTPAuthentication(IZEMValues* values)
    : m_eType(AUTHENTICATION_VALUES), m_pValues(nullptr) {
  ReplaceRef(m_pValues, values);
}

HTTPAuthentication::~HTTPAuthentication() {
  ReleaseAndClear(m_pValues);
}

// The list's text under `key`, bounded by its buffer; false if there is none.
bool HTTPAuthentication::GetText(const char* key, CQKString& text) const {
  IZEMBuffer* buffer = nullptr;
  if (m_pValues->GetPropertyCString(key, buffer) < 0 || !buffer) return false;
  text = BufferText(buffer);
  buffer->Release();
  return true;
}

void HTTPAuthentication::asString(CQKString& out) const {
  if (m_eType == AUTHENTICATION_PRIVATE_NONCE) {
    out = CQKString("QKPrivate nonce=\"") + m_Nonce + '"';
    return;
  }
  UINT32 scheme = 0;
  bool known = m_eType == AUTHENTICATION_VALUES && m_pValues &&
               m_pValues->GetPropertyULONG32("AuthType", scheme) >= 0;
  if (known && scheme == AUTHENTICATION_BASIC) {
    BasicAsString(out);
  } else if (known && scheme == AUTHENTICATION_DIGEST) {
    DigestAsString(out);
  } else {
    out.Empty();
  }
}

void HTTPAuthentication::BasicAsString(CQKString& out) const {
  CQKString text, password;
  if (GetText("Realm", text)) {
    out = CQKString("Basic realm=") + text;
  } else if (GetText("Response", text)) {
    out = CQKString("Basic ") + text;
  } else if (GetText("UserName", text) && GetText("Password", password)) {
    // Required: neither a scheme nor an encoding.
    out = text + ':' + password;
  }
}

void HTTPAuthentication::DigestAsString(CQKString& out) const {
  CQKString realm, nonce, opaque;
  if (!GetText("Realm", realm) || !GetText("Nonce", nonce) || !GetText("Opaque", opaque)) return;
  out =
      CQKString("Digest realm=") + realm + ",\r\n    nonce=" + nonce + ",\r\n    opaque=" + opaque;
}

namespace {

void SetText(IZEMValues* values, const char* key, const CQKString& text) {
  IZEMBuffer* buffer = nullptr;
  if (CQKBuffer::FromCharArray(text, &buffer) < 0) return;
  values->SetPropertyCString(key, buffer);
  buffer->Release();
}

// What stands between the first and the last quote, if there are two.
CQKString Unquoted(const CQKString& text) {
  int first = text.Find('"');
  int last = text.ReverseFind('"');
  return first < last ? text.Mid(first + 1, last - first - 1) : text;
}

// What a challenge may name, and where it goes in the list.
struct ChallengeField {
  const char* name;
  const char* key;
  bool basic;  // Basic knows it too
};

constexpr ChallengeField kFields[] = {
    {"nonce", "Nonce", false},
    {"realm", "Realm", true},
    {"opaque", "Opaque", false},
};

}  // namespace

// Required: the value of a name that isn't known is read as a name.
void HTTPParser::parseWWWAuthenticateHeaderValues(const CQKString& text, MIMEHeader* header) {
  MIMEInputStream stream(text);
  MIMEScanner scanner(stream);
  MIMEToken token = scanner.nextToken(" ");
  bool digest = strcasecmp(token.text, "Digest") == 0;
  if (!digest && strcasecmp(token.text, "Basic") != 0) {
    header->addHeaderValue(text);
    return;
  }
  CQKHeader* values = new (std::nothrow) CQKHeader;
  if (!values) return;
  values->AddRef();
  values->SetPropertyULONG32("AuthType", digest ? AUTHENTICATION_DIGEST : AUTHENTICATION_BASIC);
  while (!token.IsBlank()) {
    token = scanner.nextToken("=,");
    for (const ChallengeField& field : kFields) {
      if ((!digest && !field.basic) || strcasecmp(token.text, field.name) != 0) continue;
      token = scanner.nextToken("=,");
      SetText(values, field.key, digest ? token.text : Unquoted(token.text));
      break;
    }
  }
  header->addHeaderValue(new (std::nothrow) HTTPAuthentication(values));
  values->Release();
}

}  // namespace vexel
