// The client's file system, in memory: what a test puts into `files` can be
// loaded. Answers wait until the test asks for them, or come at once.
#pragma once

#include <deque>

#include "host/fake_host.h"

namespace vexel::test {

class FakeRequest final : public Fake<IZEMRequest> {
 public:
  FakeRequest() : Fake(IID_IZEMRequest) {}
  INT32 SetRequestHeaders(IZEMValues* values) override;
  INT32 GetRequestHeaders(IZEMValues*& values) override;
  INT32 SetResponseHeaders(IZEMValues*) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 GetResponseHeaders(IZEMValues*&) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 SetURL(const char* newURL) override;
  INT32 GetURL(const char*& out) override;

  std::string url;
  Ptr<IZEMValues> headers;
};

// What all objects of one file system share.
struct FakeFileSystem {
  // Puts managers and requests into the factory.
  void Install(FakeFactory& factory);
  // Gives the answers that wait, and those that they lead to. At most `count`
  // of them, -1 for all.
  void Answer(int count = -1);
  // Answers now or later, as `atOnce` says.
  void Later(std::function<void()> answer);

  std::map<std::string, Bytes> files;  // by URL
  bool atOnce = false;                 // answers come inside the calls
  std::string failAt;                  // the call of this name is answered by a failure
  std::string refuse;                  // the call of this name fails itself
  std::vector<std::string> calls;  // "Init", "GetFileObject url", "Open 5", "Read 2048", "Close"
  std::string contentLength;       // header of the last request, "none" without one
  std::deque<std::function<void()>> waiting;

  INT32 Called(const std::string& call);
  INT32 StatusOf(const std::string& call) const;
};

class FakeFile final : public Fake<IZEMFileObject> {
 public:
  FakeFile(FakeFileSystem& system, const Bytes& bytes)
      : Fake(IID_IZEMFileObject), m_system(system), m_bytes(bytes) {}
  INT32 Init(UINT32 flags, IZEMFileResponse* response) override;
  INT32 GetName(const char*&) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 Close() override;
  INT32 Read(UINT32 count) override;
  INT32 Write(IZEMBuffer* buffer) override;
  INT32 Seek(UINT32, INT32) override { return ZEM_NOT_IMPLEMENTED; }

 private:
  FakeFileSystem& m_system;
  Bytes m_bytes;
  size_t m_place = 0;
  Ptr<IZEMFileResponse> m_response;
};

class FakeFileManager final : public Fake<IZEMFileSystemManager> {
 public:
  explicit FakeFileManager(FakeFileSystem& system)
      : Fake(IID_IZEMFileSystemManager), m_system(system) {}
  INT32 Init(IZEMFileSystemManagerResponse* response) override;
  INT32 Cancel() override;
  INT32 GetFileObject(IZEMRequest* request, IUnknown* unused) override;
  INT32 GetDirObject(IZEMRequest*) override { return ZEM_NOT_IMPLEMENTED; }

 private:
  FakeFileSystem& m_system;
  Ptr<IZEMFileSystemManagerResponse> m_response;
};

}  // namespace vexel::test
