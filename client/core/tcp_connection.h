// One connected TCP socket with its bytes still to be sent. It belongs to the
// socket object that the plug-in knows, and outlives it for as long as it takes
// to send what was written: then it closes in order.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "client/core/event_loop.h"

namespace vexel::client {

class TcpConnection : public std::enable_shared_from_this<TcpConnection> {
 public:
  // Takes the descriptor, which must not block.
  TcpConnection(EventLoop* loop, int descriptor) : loop_(loop), descriptor_(descriptor) {}
  ~TcpConnection();
  TcpConnection(const TcpConnection&) = delete;
  TcpConnection& operator=(const TcpConnection&) = delete;

  // Told in the loop; the owner unsets them before it goes.
  std::function<void(std::vector<uint8_t>)> onRead;
  std::function<void(bool ok)> onWritable;  // asked for by WantWrite
  std::function<void(bool ok)> onClosed;    // once; the connection is then dead

  // One answer by onRead, with at most `count` bytes, as soon as some are there.
  void Read(uint32_t count);
  void WantWrite();
  // False if no more can be queued: the connection is closed, or its peer
  // reads so slowly that kMaxQueue is full.
  bool Write(const uint8_t* data, size_t size);
  // Nobody listens any more: sends what is queued, then closes. A peer that
  // does not take it within kLingerMs is cut off, one that was never written to
  // at once.
  void Finish();
  // Between Finish and the end.
  bool finishing() const { return finishing_ && descriptor_ >= 0; }
  // Ends it now, whatever is queued. Only while finishing.
  void CutOff();
  // Bytes that are kept until the last of them is sent.
  size_t queued() const { return queue_.size(); }

  static constexpr size_t kMaxQueue = 16 << 20;  // bytes
  static constexpr uint32_t kLingerMs = 20000;

 private:
  void Watch_();
  void Ready(unsigned events);
  void ReadSome();
  void WriteSome();
  void Drain();
  void CloseNow();
  void Fail(bool ok);

  EventLoop* loop_;
  int descriptor_;
  uint32_t readCount_ = 0;  // 0: nobody asked
  bool readAsked_ = false;
  bool wantWrite_ = false;
  bool wrote_ = false;  // something, ever
  bool finishing_ = false;
  bool shut_ = false;  // our side has said that nothing follows
  std::vector<uint8_t> queue_;
  size_t sent_ = 0;  // of the queue
  unsigned watched_ = 0;
  Watch watch_;
  Watch limit_;  // while finishing; holds this object
};

}  // namespace vexel::client
