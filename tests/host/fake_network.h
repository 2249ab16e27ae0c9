// Sockets in memory: a listening one whose ports the test takes, and connections
// that record what is written and deliver what the test says has come.
#pragma once

#include <set>

#include "host/fake_host.h"

namespace vexel::test {

class FakeSocket final : public Fake<IZEMTCPSocket> {
 public:
  FakeSocket() : Fake(IID_IZEMTCPSocket) {}
  INT32 Init(IZEMTCPResponse* to) override {
    response = to;
    return initResult;
  }
  INT32 Bind(UINT32, UINT16) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 Connect(const char*, UINT16) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 WantWrite() override { return ZEM_NOT_IMPLEMENTED; }
  INT32 Read(UINT32 count) override {
    wanted = count;
    return ZEM_OK;
  }
  INT32 Write(IZEMBuffer* buffer) override {
    if (writesLeft == 0) return ZEM_FAILED;
    if (writesLeft > 0) --writesLeft;
    const Bytes bytes = BytesOf(buffer);
    writes.emplace_back(bytes.begin(), bytes.end());
    return ZEM_OK;
  }

  // Hands `bytes` over in pieces, none larger than what was asked for, as long
  // as something is asked for; the bytes that were taken.
  size_t Deliver(const std::string& bytes, size_t piece = 1 << 20) {
    size_t at = 0;
    while (at < bytes.size() && wanted > 0) {
      const size_t count = std::min({piece, static_cast<size_t>(wanted), bytes.size() - at});
      wanted = 0;
      const auto first = bytes.begin() + static_cast<ptrdiff_t>(at);
      Ptr<IZEMBuffer> buffer = MakeBuffer(Bytes(first, first + static_cast<ptrdiff_t>(count)));
      lastResult = response->ReadDone(ZEM_OK, buffer.get());
      at += count;
    }
    return at;
  }
  std::string Written() const {
    std::string all;
    for (const std::string& text : writes) all += text;
    return all;
  }
  // As a real one does when its peer has gone.
  void PeerCloses() {
    const Ptr<IZEMTCPResponse> last = response;
    response = nullptr;
    last->Closed(ZEM_OK);
  }

  Ptr<IZEMTCPResponse> response;
  UINT32 wanted = 0;  // what Read asked for and hasn't got
  std::vector<std::string> writes;
  int writesLeft = -1;  // so many more succeed; -1: all
  INT32 initResult = ZEM_OK;
  INT32 lastResult = ZEM_OK;  // of the last ReadDone
};

class FakeListenSocket final : public Fake<IZEMListenSocket> {
 public:
  FakeListenSocket() : Fake(IID_IZEMListenSocket) {}
  INT32 Listen(UINT32 at, UINT16 port, IZEMListenResponse* to) override {
    address = at;
    tried.push_back(port);
    if (refusals > 0) return --refusals, ZEM_FAILED;
    response = to;
    return ZEM_OK;
  }
  // Somebody connects.
  Ptr<FakeSocket> Connection(INT32* result = nullptr) {
    Ptr<FakeSocket> socket = New<FakeSocket>();
    const INT32 status = response->NewConnection(ZEM_OK, socket.get());
    if (result) *result = status;
    return socket;
  }

  UINT32 address = 0;
  std::vector<UINT16> tried;
  int refusals = 0;
  Ptr<IZEMListenResponse> response;
};

class FakeNetwork final : public Fake<IZEMNetworkServices> {
 public:
  FakeNetwork() : Fake(IID_IZEMNetworkServices) {}
  INT32 CreateTCPSocket(IZEMTCPSocket*&) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 CreateUDPSocket(IUnknown*&) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 CreateListenSocket(IZEMListenSocket*& socket) override {
    if (!listener) return ZEM_FAILED;
    listener->AddRef();
    socket = listener.get();
    return ZEM_OK;
  }

  Ptr<FakeListenSocket> listener = New<FakeListenSocket>();
};

}  // namespace vexel::test
