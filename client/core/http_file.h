// A file of a web server: downloaded as it is read, with some bytes ahead.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "client/core/answers.h"
#include "client/core/file_system.h"
#include "client/core/http_service.h"
#include "client/core/object.h"

namespace vexel::client {

class HttpFile : public Object<IZEMFileObject> {
 public:
  HttpFile(FileAccess* access, std::string url);

  INT32 Init(UINT32 flags, IZEMFileResponse* response) override;
  INT32 GetName(const char*& name) override;
  INT32 Close() override;
  INT32 Read(UINT32 count) override;
  INT32 Write(IZEMBuffer* buffer) override;            // answered with a failure
  INT32 Seek(UINT32 offset, INT32 relative) override;  // answered with a failure

 protected:
  ~HttpFile() override;

 private:
  enum class Kind { kInit, kRead };
  struct Call {
    Kind kind;
    UINT32 count;
  };
  void Wait(Call call);
  // Answers the calls for which enough has come.
  void Pump();
  void Later(std::function<void(IZEMFileResponse*)> tell);
  void DropCalls();

  FileAccess* access_;
  std::string url_;
  Ref<IZEMFileResponse> response_;
  std::deque<Call> calls_;
  std::vector<uint8_t> ahead_;  // received and not yet read
  bool begun_ = false;
  bool ended_ = false;
  bool failed_ = false;
  bool held_ = false;  // the transfer waits for room
  // Behind what their functions use.
  std::unique_ptr<HttpTransfer> transfer_;
  Answers answers_;
};

}  // namespace vexel::client
