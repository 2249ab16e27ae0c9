// Sockets for the plug-in: real ones, non-blocking, on the loopback only. A
// movie has no business on the network beyond this machine; pages and files
// from there come by the browser and the file system.
#pragma once

#include <deque>
#include <memory>
#include <string>

#include "client/core/event_loop.h"
#include "client/core/object.h"
#include "client/core/tcp_connection.h"

namespace vexel::client {

class NetworkServices : public Object<IZEMNetworkServices> {
 public:
  // The loop must live as long as all sockets.
  explicit NetworkServices(EventLoop* loop) : loop_(loop) {}

  INT32 CreateTCPSocket(IZEMTCPSocket*& socket) override;
  INT32 CreateUDPSocket(IUnknown*& socket) override;  // ZEM_NOT_IMPLEMENTED
  INT32 CreateListenSocket(IZEMListenSocket*& socket) override;

 private:
  EventLoop* loop_;
};

class ListenSocket : public Object<IZEMListenSocket> {
 public:
  explicit ListenSocket(EventLoop* loop) : loop_(loop) {}
  // ZEM_FAILED for an address beyond 127.0.0.0/8. Port 0 takes a free one.
  INT32 Listen(UINT32 address, UINT16 port, IZEMListenResponse* response) override;
  // The port that it listens on, 0 for none.
  UINT16 port() const { return port_; }

  // Replies go on being sent when the plug-in has let their sockets go. Peers
  // that don't take them keep descriptors and memory, so of these connections
  // the oldest are cut off when all together are so many or keep so much.
  static constexpr size_t kMaxConnections = 256;
  static constexpr size_t kMaxQueued = 64 << 20;  // bytes

 protected:
  ~ListenSocket() override;

 private:
  void WatchIt();
  void Accept();
  void CutOffOldest();

  EventLoop* loop_;
  int descriptor_ = -1;
  UINT16 port_ = 0;
  Ref<IZEMListenResponse> response_;
  Watch watch_;
  std::deque<std::weak_ptr<TcpConnection>> accepted_;  // in their order
};

class TcpSocket : public Object<IZEMTCPSocket> {
 public:
  explicit TcpSocket(EventLoop* loop) : loop_(loop) {}
  // Around a descriptor that is connected.
  TcpSocket(EventLoop* loop, int connected);

  INT32 Init(IZEMTCPResponse* response) override;
  INT32 Bind(UINT32 address, UINT16 port) override;
  // "localhost" or an address of 127.0.0.0/8; others are told that it failed.
  INT32 Connect(const char* host, UINT16 port) override;
  INT32 WantWrite() override;
  INT32 Read(UINT32 count) override;
  INT32 Write(IZEMBuffer* buffer) override;

  const std::shared_ptr<TcpConnection>& connection() const { return connection_; }

 protected:
  ~TcpSocket() override;

 private:
  void Attach(int descriptor);
  void FinishConnect();
  void ConnectDone(INT32 status);

  EventLoop* loop_;
  int connecting_ = -1;  // descriptor on its way to be connected, or just bound
  Watch connectWatch_;
  std::shared_ptr<TcpConnection> connection_;
  Ref<IZEMTCPResponse> response_;
};

}  // namespace vexel::client
