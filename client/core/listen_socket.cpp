#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "client/core/loopback.h"
#include "client/core/network_services.h"

namespace vexel::client {

namespace {

// Who finds this queue full tries again after a second.
constexpr int kBacklog = SOMAXCONN;
// Without a free descriptor the waiting connection would wake the loop again at
// once: it waits so long, in milliseconds.
constexpr uint32_t kOutOfDescriptorsMs = 100;

}  // namespace

ListenSocket::~ListenSocket() {
  if (descriptor_ >= 0) close(descriptor_);
}

INT32 ListenSocket::Listen(UINT32 address, UINT16 port, IZEMListenResponse* response) {
  if (!response) return ZEM_BAD_ARGUMENT;
  if (descriptor_ >= 0) return ZEM_UNEXPECTED;
  if (!IsLoopback(address)) return ZEM_FAILED;
  descriptor_ = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (descriptor_ < 0) return ZEM_FAILED;
  // A port whose last connections are just fading is free all the same.
  const int yes = 1;
  setsockopt(descriptor_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in at = SocketAddress(address, port);
  socklen_t size = sizeof at;
  if (bind(descriptor_, reinterpret_cast<sockaddr*>(&at), size) != 0 ||
      listen(descriptor_, kBacklog) != 0 ||
      getsockname(descriptor_, reinterpret_cast<sockaddr*>(&at), &size) != 0) {
    close(std::exchange(descriptor_, -1));
    return ZEM_FAILED;
  }
  port_ = ntohs(at.sin_port);
  response_ = response;
  WatchIt();
  return ZEM_OK;
}

void ListenSocket::WatchIt() {
  watch_ = loop_->When(descriptor_, kReadable, [this](unsigned) { Accept(); });
}

void ListenSocket::Accept() {
  const Ref<ListenSocket> self(this);
  const int connected = accept4(descriptor_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (connected < 0) {
    if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
      watch_ = loop_->After(kOutOfDescriptorsMs, [this] { WatchIt(); });
    return;
  }
  const Ref<TcpSocket> socket = Make<TcpSocket>(loop_, connected);
  accepted_.push_back(socket->connection());
  CutOffOldest();
  response_->NewConnection(ZEM_OK, socket.get());
}

void ListenSocket::CutOffOldest() {
  std::erase_if(accepted_, [](const auto& connection) { return connection.expired(); });
  size_t count = accepted_.size();
  size_t queued = 0;
  for (const auto& one : accepted_) {
    const auto connection = one.lock();
    if (connection) queued += connection->queued();
  }
  for (const auto& one : accepted_) {
    if (count <= kMaxConnections && queued <= kMaxQueued) return;
    const auto connection = one.lock();
    if (!connection || !connection->finishing()) continue;
    count--;
    queued -= connection->queued();
    connection->CutOff();
  }
}

}  // namespace vexel::client
