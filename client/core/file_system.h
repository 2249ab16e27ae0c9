// Files for the plug-in, by URL: local ones and those of web servers. Every
// call is answered once, from the loop.
#pragma once

#include <memory>
#include <string>

#include "client/core/answers.h"
#include "client/core/event_loop.h"
#include "client/core/http_service.h"
#include "client/core/object.h"

namespace vexel::client {

// What all file systems of a client share.
struct FileAccess {
  EventLoop* loop = nullptr;
  HttpService* http = nullptr;
  AnswerCount pending = std::make_shared<int>(0);
  // A movie from a web server has no business in this machine's files.
  bool allowLocal = true;
};

// Where a URL leads: "file:" URLs and all that has no scheme name a local path.
struct Location {
  bool http = false;
  std::string path;  // of the local file, or the whole URL
};
// False for a scheme that is neither file, http nor https.
bool Locate(const std::string& url, Location* out);

class FileSystem : public Object<IZEMFileSystemManager> {
 public:
  explicit FileSystem(std::shared_ptr<FileAccess> access);

  INT32 Init(IZEMFileSystemManagerResponse* response) override;
  INT32 Cancel() override;
  // The object is there for any URL that may be read; whether there is such a
  // file shows when it is opened.
  INT32 GetFileObject(IZEMRequest* request, IUnknown* unused) override;
  INT32 GetDirObject(IZEMRequest* request) override;  // fails, but answers

 private:
  std::shared_ptr<FileAccess> access_;
  Ref<IZEMFileSystemManagerResponse> response_;
  Answers answers_;
};

}  // namespace vexel::client
