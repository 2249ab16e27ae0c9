#include "client/core/request.h"

namespace vexel::client {

INT32 Request::SetRequestHeaders(IZEMValues* headers) {
  request_ = headers;
  return ZEM_OK;
}

INT32 Request::GetRequestHeaders(IZEMValues*& headers) {
  headers = request_.Share();
  return ZEM_OK;
}

INT32 Request::SetResponseHeaders(IZEMValues* headers) {
  response_ = headers;
  return ZEM_OK;
}

INT32 Request::GetResponseHeaders(IZEMValues*& headers) {
  headers = response_.Share();
  return ZEM_OK;
}

INT32 Request::SetURL(const char* url) {
  if (!url) return ZEM_BAD_ARGUMENT;
  url_ = url;
  return ZEM_OK;
}

INT32 Request::GetURL(const char*& url) {
  url = url_.c_str();
  return ZEM_OK;
}

}  // namespace vexel::client
