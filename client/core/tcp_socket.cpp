#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "client/core/loopback.h"
#include "client/core/network_services.h"
#include "client/core/values.h"

namespace vexel::client {

TcpSocket::TcpSocket(EventLoop* loop, int connected) : loop_(loop) {
  Attach(connected);
}

TcpSocket::~TcpSocket() {
  if (connecting_ >= 0) close(connecting_);
  if (connection_) connection_->Finish();
}

void TcpSocket::Attach(int descriptor) {
  // Replies are written whole; waiting for more of them only costs time.
  const int yes = 1;
  setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
  connection_ = std::make_shared<TcpConnection>(loop_, descriptor);
  connection_->onRead = [this](std::vector<uint8_t> bytes) {
    const Ref<TcpSocket> self(this);
    const Ref<IZEMTCPResponse> response = response_;
    if (response) response->ReadDone(ZEM_OK, NewBuffer(bytes).get());
  };
  connection_->onWritable = [this](bool ok) {
    const Ref<TcpSocket> self(this);
    const Ref<IZEMTCPResponse> response = response_;
    if (response) response->WriteReady(ok ? ZEM_OK : ZEM_FAILED);
  };
  connection_->onClosed = [this](bool ok) {
    const Ref<TcpSocket> self(this);
    const Ref<IZEMTCPResponse> response = std::exchange(response_, {});
    if (response) response->Closed(ok ? ZEM_OK : ZEM_FAILED);
  };
}

INT32 TcpSocket::Init(IZEMTCPResponse* response) {
  if (!response) return ZEM_BAD_ARGUMENT;
  response_ = response;
  return ZEM_OK;
}

INT32 TcpSocket::Bind(UINT32 address, UINT16 port) {
  if (connection_ || connecting_ >= 0) return ZEM_UNEXPECTED;
  if (!IsLoopback(address)) return ZEM_FAILED;
  connecting_ = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  const sockaddr_in at = SocketAddress(address, port);
  if (connecting_ >= 0 && bind(connecting_, reinterpret_cast<const sockaddr*>(&at), sizeof at) == 0)
    return ZEM_OK;
  if (connecting_ >= 0) close(std::exchange(connecting_, -1));
  return ZEM_FAILED;
}

INT32 TcpSocket::Connect(const char* host, UINT16 port) {
  if (!host) return ZEM_BAD_ARGUMENT;
  if (!response_ || connection_ || connectWatch_.active()) return ZEM_UNEXPECTED;
  in_addr address{};
  const char* text = strcmp(host, "localhost") == 0 ? "127.0.0.1" : host;
  bool ok = inet_pton(AF_INET, text, &address) == 1 && IsLoopback(ntohl(address.s_addr));
  if (ok && connecting_ < 0)
    connecting_ = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (ok) {
    const sockaddr_in at = SocketAddress(ntohl(address.s_addr), port);
    ok = connecting_ >= 0 &&
         (connect(connecting_, reinterpret_cast<const sockaddr*>(&at), sizeof at) == 0 ||
          errno == EINPROGRESS);
  }
  if (ok) {
    connectWatch_ = loop_->When(connecting_, kWritable, [this](unsigned) { FinishConnect(); });
  } else {
    connectWatch_ = loop_->Soon([this] { ConnectDone(ZEM_FAILED); });
  }
  return ZEM_OK;
}

void TcpSocket::FinishConnect() {
  int error = 0;
  socklen_t size = sizeof error;
  getsockopt(connecting_, SOL_SOCKET, SO_ERROR, &error, &size);
  if (error == 0) Attach(std::exchange(connecting_, -1));
  ConnectDone(error == 0 ? ZEM_OK : ZEM_FAILED);
}

void TcpSocket::ConnectDone(INT32 status) {
  const Ref<TcpSocket> self(this);
  connectWatch_.Cancel();
  if (status < 0 && connecting_ >= 0) close(std::exchange(connecting_, -1));
  const Ref<IZEMTCPResponse> response = response_;
  response->ConnectDone(status);
}

INT32 TcpSocket::WantWrite() {
  if (!connection_) return ZEM_UNEXPECTED;
  connection_->WantWrite();
  return ZEM_OK;
}

INT32 TcpSocket::Read(UINT32 count) {
  if (!connection_) return ZEM_UNEXPECTED;
  connection_->Read(count);
  return ZEM_OK;
}

INT32 TcpSocket::Write(IZEMBuffer* buffer) {
  if (!buffer) return ZEM_BAD_ARGUMENT;
  if (!connection_) return ZEM_UNEXPECTED;
  const std::span<const uint8_t> bytes = BytesOf(buffer);
  return connection_->Write(bytes.data(), bytes.size()) ? ZEM_OK : ZEM_FAILED;
}

}  // namespace vexel::client
