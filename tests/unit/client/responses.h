// The plug-in's side of asynchronous services: notes what it is told.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "client/core/event_loop.h"
#include "client/core/object.h"
#include "client/core/values.h"

namespace vexel::client {

constexpr uint32_t kTestMs = 10000;  // what takes longer is not coming

inline std::string TextBytes(IZEMBuffer* buffer) {
  const auto bytes = BytesOf(buffer);
  return {bytes.begin(), bytes.end()};
}

inline Ref<IZEMBuffer> BufferOf(const std::string& text) {
  return NewBuffer({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

class FileResponse : public Object<IZEMFileResponse> {
 public:
  std::vector<std::string> told;
  std::string body;
  std::function<void()> onInit, onRead;
  INT32 lastStatus = ZEM_OK;

  INT32 InitDone(INT32 status) override {
    Note("init", status);
    if (onInit) onInit();
    return ZEM_OK;
  }
  INT32 CloseDone(INT32 status) override { return Note("close", status); }
  INT32 ReadDone(INT32 status, IZEMBuffer* buffer) override {
    Note("read " + std::to_string(BytesOf(buffer).size()), status);
    body += TextBytes(buffer);
    if (onRead) onRead();
    return ZEM_OK;
  }
  INT32 WriteDone(INT32 status) override { return Note("write", status); }
  INT32 SeekDone(INT32 status) override { return Note("seek", status); }

 private:
  INT32 Note(const std::string& what, INT32 status) {
    told.push_back(what + (status < 0 ? " failed" : ""));
    lastStatus = status;
    return ZEM_OK;
  }
};

class ManagerResponse : public Object<IZEMFileSystemManagerResponse> {
 public:
  std::vector<std::string> told;
  Ref<IZEMFileObject> file;

  INT32 InitDone(INT32 status) override { return Note("init", status); }
  INT32 FileObjectReady(INT32 status, IUnknown* object) override {
    file = Query<IZEMFileObject>(object);
    return Note("file", status);
  }
  INT32 DirObjectReady(INT32 status, IUnknown*) override { return Note("folder", status); }

 private:
  INT32 Note(const std::string& what, INT32 status) {
    told.push_back(what + (status < 0 ? " failed" : ""));
    return ZEM_OK;
  }
};

class TcpResponse : public Object<IZEMTCPResponse> {
 public:
  Ref<IZEMTCPSocket> socket;
  std::string received;
  int connected = 0, refused = 0, closed = 0, writable = 0;
  std::function<void()> onRead;

  INT32 ConnectDone(INT32 status) override {
    ++(status < 0 ? refused : connected);
    return ZEM_OK;
  }
  INT32 ReadDone(INT32, IZEMBuffer* buffer) override {
    received += TextBytes(buffer);
    if (onRead) onRead();
    return ZEM_OK;
  }
  INT32 WriteReady(INT32) override {
    writable++;
    return ZEM_OK;
  }
  INT32 Closed(INT32) override {
    closed++;
    return ZEM_OK;
  }
};

class ListenResponse : public Object<IZEMListenResponse> {
 public:
  std::function<void(IZEMTCPSocket*)> onConnection;
  INT32 NewConnection(INT32, IZEMTCPSocket* socket) override {
    onConnection(socket);
    return ZEM_OK;
  }
};

}  // namespace vexel::client
