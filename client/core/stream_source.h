// Where a presentation's packets come from, as the plug-in sees it: one source
// with one stream, and a way back to it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "client/core/object.h"

namespace vexel::client {

class StreamSource : public Object<IZEMStreamSource, IZEMBackChannel> {
 public:
  // Gets the bytes of a request. Must not deliver anything before it returns.
  using SendRequest = std::function<void(IZEMBuffer* request)>;

  // Without `send` the source can't resend, and says so.
  StreamSource(std::string url, SendRequest send) : url_(std::move(url)), send_(std::move(send)) {}

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT16 GetStreamCount() override { return 1; }
  INT32 GetStream(UINT16 number, IZEMStream*& stream) override;
  const char* GetURL() override { return url_.c_str(); }
  INT32 Send(IZEMPacket* packet) override;

 private:
  std::string url_;
  SendRequest send_;
};

class Stream : public Object<IZEMStream> {
 public:
  Stream(StreamSource* source, uint16_t number) : source_(source), number_(number) {}
  INT32 GetSource(IUnknown*& source) override;
  UINT32 GetStreamNumber() override { return number_; }

 private:
  Ref<StreamSource> source_;
  uint16_t number_;
};

}  // namespace vexel::client
