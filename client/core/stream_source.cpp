#include "client/core/stream_source.h"

namespace vexel::client {

INT32 StreamSource::QueryInterface(const ZEMID& id, void** out) {
  if (out && !send_ && ZEMIsEqualID(id, IID_IZEMBackChannel)) {
    *out = nullptr;
    return ZEM_NO_INTERFACE;
  }
  return Object::QueryInterface(id, out);
}

INT32 StreamSource::GetStream(UINT16 number, IZEMStream*& stream) {
  stream = nullptr;
  if (number >= GetStreamCount()) return ZEM_BAD_ARGUMENT;
  stream = Make<Stream>(this, number).Share();
  return ZEM_OK;
}

INT32 StreamSource::Send(IZEMPacket* packet) {
  if (!packet) return ZEM_BAD_ARGUMENT;
  if (!send_) return ZEM_UNEXPECTED;
  Ref<IZEMBuffer> request;
  request.Out() = packet->GetBuffer();
  if (!request) return ZEM_BAD_ARGUMENT;
  send_(request.get());
  return ZEM_OK;
}

INT32 Stream::GetSource(IUnknown*& source) {
  source = static_cast<IZEMStreamSource*>(source_.Share());
  return ZEM_OK;
}

}  // namespace vexel::client
