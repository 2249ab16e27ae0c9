// What is asked of the file system.
#pragma once

#include <string>

#include "client/core/object.h"

namespace vexel::client {

class Request : public Object<IZEMRequest> {
 public:
  INT32 SetRequestHeaders(IZEMValues* headers) override;
  INT32 GetRequestHeaders(IZEMValues*& headers) override;
  INT32 SetResponseHeaders(IZEMValues* headers) override;
  INT32 GetResponseHeaders(IZEMValues*& headers) override;
  INT32 SetURL(const char* url) override;
  INT32 GetURL(const char*& url) override;

 private:
  std::string url_;
  Ref<IZEMValues> request_;
  Ref<IZEMValues> response_;
};

}  // namespace vexel::client
