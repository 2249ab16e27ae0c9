// A header value that is a challenge to authenticate, or the answer to one.
#pragma once

#include "http/mime_header.h"
#include "zem/zem_values.h"

namespace vexel {

enum AuthenticationType {
  AUTHENTICATION_VALUES = 1,         // Basic or Digest, in a list of values
  AUTHENTICATION_PRIVATE_NONCE = 2,  // a nonce of our own kind
};

// What the value "AuthType" of the list says.
enum AuthenticationScheme : UINT32 {
  AUTHENTICATION_BASIC = 1,
  AUTHENTICATION_DIGEST = 2,
};

// The list's texts are "Realm", "Nonce", "Opaque", "Response" (a finished Basic
// answer), "UserName" and "Password".
class HTTPAuthentication : public MIMEHeaderValue {
 public:
  HTTPAuthentication(const char* text, AuthenticationType type);
  // Holds `values` with a reference.
  explicit HTTPAuthentication(IZEMValues* values);
  ~HTTPAuthentication() override;
  // Sets `out` to the challenge or answer; where a text of the list is missing,
  // `out` stays as it was, and without a known scheme it becomes empty.
  void asString(CQKString& out) const override;
  CQKString asString() const { return value(); }

 private:
  bool GetText(const char* key, CQKString& text) const;
  void BasicAsString(CQKString& out) const;
  void DigestAsString(CQKString& out) const;

  AuthenticationType m_eType;
  CQKString m_Nonce;
  IZEMValues* m_pValues;  // one reference, or null
};

}  // namespace vexel
