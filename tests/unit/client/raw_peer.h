// A connection to this machine on the system's own calls, for what a socket of
// the client's never does to its peer.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <utility>

namespace vexel::client {

class RawPeer {
 public:
  explicit RawPeer(uint16_t port) : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(port);
    at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // The listener's queue takes the connection; nobody needs to accept it yet.
    if (connect(descriptor_, reinterpret_cast<sockaddr*>(&at), sizeof at) != 0) Close();
  }
  RawPeer(RawPeer&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  ~RawPeer() { Close(); }

  bool Send(const std::string& text) const {
    return send(descriptor_, text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
  }
  void EndSending() const { shutdown(descriptor_, SHUT_WR); }
  // What is there, without waiting.
  std::string Receive() {
    std::string all;
    char bytes[4096];
    for (;;) {
      const ssize_t count = recv(descriptor_, bytes, sizeof bytes, MSG_DONTWAIT);
      if (count > 0) {
        all.append(bytes, static_cast<size_t>(count));
        continue;
      }
      ended_ = count == 0;
      broken_ = count < 0 && errno != EAGAIN;
      return all;
    }
  }
  // As the last Receive found it: the other side has said that nothing follows,
  // or has broken the connection.
  bool ended() const { return ended_; }
  bool broken() const { return broken_; }

 private:
  void Close() {
    if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
  }

  int descriptor_;
  bool ended_ = false;
  bool broken_ = false;
};

}  // namespace vexel::client
