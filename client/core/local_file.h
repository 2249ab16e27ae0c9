// A file of this machine, for reading.
#pragma once

#include <string>

#include "client/core/answers.h"
#include "client/core/file_system.h"
#include "client/core/object.h"

namespace vexel::client {

class LocalFile : public Object<IZEMFileObject> {
 public:
  LocalFile(FileAccess* access, std::string path);

  INT32 Init(UINT32 flags, IZEMFileResponse* response) override;
  INT32 GetName(const char*& name) override;
  INT32 Close() override;
  INT32 Read(UINT32 count) override;
  INT32 Write(IZEMBuffer* buffer) override;  // answered with a failure
  INT32 Seek(UINT32 offset, INT32 relative) override;

 protected:
  ~LocalFile() override;

 private:
  bool Open();
  void ReadNow(UINT32 count);
  // Gives an answer later; `tell` gets the response, held for the call.
  void Later(std::function<void(IZEMFileResponse*)> tell);

  std::string path_;
  int descriptor_ = -1;
  Ref<IZEMFileResponse> response_;
  Answers answers_;
};

}  // namespace vexel::client
