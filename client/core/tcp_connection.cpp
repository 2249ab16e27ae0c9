// Closing in order: after the last byte our side is shut, and what the peer
// still sends is read away until it closes, too. A close with unread bytes
// would make the system reset the connection and lose the reply under way.
#include "client/core/tcp_connection.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace vexel::client {

namespace {

constexpr size_t kMaxRead = 64 << 10;  // bytes, whatever was asked for
// Read away in one turn of the loop, in bytes: a peer that sends without end
// must not have the loop for itself.
constexpr size_t kWasteBytes = 4096;
constexpr int kWasteReads = 16;

bool MustWait() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

TcpConnection::~TcpConnection() {
  CloseNow();
}

void TcpConnection::Read(uint32_t count) {
  readAsked_ = true;
  readCount_ = count;
  Watch_();
}

void TcpConnection::WantWrite() {
  wantWrite_ = true;
  Watch_();
}

bool TcpConnection::Write(const uint8_t* data, size_t size) {
  if (descriptor_ < 0 || size > kMaxQueue - (queue_.size() - sent_)) return false;
  if (sent_ == queue_.size()) {
    queue_.clear();
    sent_ = 0;
  }
  queue_.insert(queue_.end(), data, data + size);
  wrote_ = true;
  Watch_();
  return true;
}

void TcpConnection::Finish() {
  onRead = nullptr;
  onWritable = nullptr;
  onClosed = nullptr;
  if (descriptor_ < 0) return;
  finishing_ = true;
  readAsked_ = wantWrite_ = false;
  if (!wrote_) return CloseNow();
  limit_ = loop_->After(kLingerMs, [self = shared_from_this()] { self->CloseNow(); });
  WriteSome();
}

// Waits for what is asked for, and for nothing else: a closed peer would make
// the loop spin.
void TcpConnection::Watch_() {
  unsigned events = 0;
  if (descriptor_ >= 0) {
    if (readAsked_ || shut_) events |= kReadable;
    if (wantWrite_ || sent_ < queue_.size()) events |= kWritable;
  }
  if (events == watched_) return;
  watched_ = events;
  watch_.Cancel();
  if (events == 0) return;
  watch_ = loop_->When(descriptor_, events, [this](unsigned ready) { Ready(ready); });
}

void TcpConnection::Ready(unsigned events) {
  const auto self = shared_from_this();
  if (events & kWritable) {
    if (sent_ < queue_.size()) WriteSome();
    const auto writable = onWritable;
    if (std::exchange(wantWrite_, false) && writable) writable(descriptor_ >= 0);
  }
  if (descriptor_ >= 0 && (events & kReadable)) {
    if (shut_) {
      Drain();
    } else if (readAsked_) {
      ReadSome();
    }
  }
  Watch_();
}

void TcpConnection::ReadSome() {
  std::vector<uint8_t> bytes(std::min<size_t>(readCount_, kMaxRead));
  if (!bytes.empty()) {
    const ssize_t count = recv(descriptor_, bytes.data(), bytes.size(), 0);
    if (count < 0 && MustWait()) return;
    if (count <= 0) return Fail(count == 0);
    bytes.resize(static_cast<size_t>(count));
  }
  readAsked_ = false;
  // A copy: the owner may go inside the call, and takes the functions along.
  if (const auto read = onRead) read(std::move(bytes));
}

void TcpConnection::WriteSome() {
  const auto self = shared_from_this();
  while (descriptor_ >= 0 && sent_ < queue_.size()) {
    const ssize_t count =
        send(descriptor_, queue_.data() + sent_, queue_.size() - sent_, MSG_NOSIGNAL);
    if (count < 0 && MustWait()) break;
    if (count < 0) return Fail(false);
    sent_ += static_cast<size_t>(count);
  }
  if (finishing_ && descriptor_ >= 0 && sent_ == queue_.size() && !shut_) {
    shut_ = true;
    queue_ = {};
    sent_ = 0;
    shutdown(descriptor_, SHUT_WR);
    Drain();
  }
  Watch_();
}

// Reads away what nobody wants to know, up to the peer's end.
void TcpConnection::Drain() {
  uint8_t waste[kWasteBytes];
  for (int reads = 0; reads < kWasteReads; reads++) {
    const ssize_t count = recv(descriptor_, waste, sizeof waste, 0);
    if (count > 0) continue;
    if (count == 0 || !MustWait()) CloseNow();
    return;
  }
}

void TcpConnection::CutOff() {
  const auto self = shared_from_this();
  CloseNow();
}

void TcpConnection::Fail(bool ok) {
  const auto closed = std::exchange(onClosed, nullptr);
  CloseNow();
  if (closed) closed(ok);
}

void TcpConnection::CloseNow() {
  // The limit may be the last hold on this object; none is left in the
  // destructor.
  const auto self = weak_from_this().lock();
  watch_.Cancel();
  watched_ = 0;
  limit_.Cancel();
  if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}

}  // namespace vexel::client
