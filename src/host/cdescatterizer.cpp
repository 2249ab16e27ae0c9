#include "host/cdescatterizer.h"

#include <new>

#include "base/ref.h"
#include "host/held.h"
#include "host/wire.h"

namespace vexel {
namespace {

// A character is asked for again after this time, in milliseconds.
constexpr UINT32 kRequestInterval = 10000;

// A request for a range: position, length and a third number.
constexpr UINT32 kRangeRequest = 12;

// On each packet that goes back.
constexpr UINT8 kRequestFlags = 1;

}  // namespace

// Keeps the object, if it is retired, to the end of the outermost call.
class CDeScatterizer::Call {
 public:
  explicit Call(CDeScatterizer* owner) : m_owner(owner) { ++m_owner->m_nCalls; }
  ~Call() {
    if (--m_owner->m_nCalls == 0 && m_owner->m_bRetired) delete m_owner;
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

 private:
  CDeScatterizer* m_owner;
};

CDeScatterizer::CDeScatterizer(IZEMCommonClassFactory* factory, IOnPacketHandler* handler)
    : m_pHandler(handler) {
  ReplaceRef(m_pClassFactory, factory);
}

CDeScatterizer::~CDeScatterizer() {
  ReleaseAndClear(m_pClassFactory);
}

void CDeScatterizer::Retire() {
  const Call call(this);
  m_bRetired = true;
}

void CDeScatterizer::SetStream(IZEMStream* stream, IZEMBackChannel* backChannel) {
  m_pStream = stream;
  m_pBackChannel = backChannel;
}

void CDeScatterizer::StartHeader(bool nonLinear, UINT32 numPackets) {
  m_bNonLinear = nonLinear;
  m_ulNumPackets = numPackets;
  m_Fragments.RemoveAll();
  m_Requests.RemoveAll();
  m_unTransientId = 0;
  m_ulLostCount = 0;
  m_ulNextFrame = 0;
  SetFileStart(0, 0);
}

void CDeScatterizer::SetFileStart(UINT32 headLength, UINT32 movieLength) {
  m_ulSentPosition = headLength;
  m_ulExpectedPosition = headLength;
  m_ulMovieLength = movieLength;
}

INT32 CDeScatterizer::OnPacket(IZEMPacket* packet, INT32 timeOffset) {
  if (!packet) return ZEM_BAD_ARGUMENT;
  if (m_bBusy) return ZEM_UNEXPECTED;
  const Call call(this);
  Gap gap;
  EnterCritical();
  const INT32 result = m_bNonLinear ? OnPacketNonLinear(packet, timeOffset, gap)
                                    : OnPacketLinear(packet, timeOffset);
  LeaveCritical();
  if (gap.found) RequestLostFileRange(gap.position, gap.length, 0);
  return result;
}

template <class T>
INT32 CDeScatterizer::Make(const ZEMID& id, T*& out) {
  out = nullptr;
  if (!m_pClassFactory) return ZEM_UNEXPECTED;
  void* made = nullptr;
  const INT32 result = m_pClassFactory->CreateInstance(id, &made);
  if (result < 0) return result;
  out = static_cast<T*>(made);
  return out ? result : ZEM_OUT_OF_MEMORY;
}

CDeScatterPacket* CDeScatterizer::FindOrAdd(UINT16 id, UINT32 filePosition) {
  if (CDeScatterPacket* packet = m_Fragments.Find(id)) return packet;
  CDeScatterPacket* packet = new (std::nothrow) CDeScatterPacket(m_pClassFactory, id);
  if (!packet) return nullptr;
  packet->m_ulFilePosition = filePosition;
  if (!m_Fragments.Add(id, packet)) {
    delete packet;
    return nullptr;
  }
  return packet;
}

// Destroys a message that never took a byte, so that no stream can fill the map
// with empty ones; false then.
bool CDeScatterizer::TakeFragment(CDeScatterPacket* packet, const UINT8* data, UINT32 offset,
                                  UINT32 size, bool isLast) {
  const uint64_t end = uint64_t{offset} + size;
  if (end <= CDeScatterPacket::kMaxLength) {
    const UINT32 growth = packet->GrowthFor(static_cast<UINT32>(end));
    if (growth == 0 || m_Fragments.MakeRoom(growth, packet)) {
      packet->SetFragment(data, offset, size, isLast);
    }
  }
  if (packet->m_pData) return true;
  Destroy(packet);
  return false;
}

void CDeScatterizer::Destroy(CDeScatterPacket* packet) {
  m_Fragments.Remove(packet->m_unId);
  delete packet;
}

INT32 CDeScatterizer::SendBuffer(IZEMBuffer* buffer, UINT32 time) {
  Held<IZEMPacket> packet;
  INT32 result = Make(IID_IZEMPacket, packet.Out());
  if (result < 0) return result;
  result = packet->Set(buffer, time, 0, 0, 0);
  if (result < 0) return result;
  return m_pHandler->OnPacket(packet.Get(), 0);
}

INT32 CDeScatterizer::SendOnPacket(const UINT8* data, UINT32 size, UINT32 time) {
  Held<IZEMBuffer> buffer;
  INT32 result = Make(IID_IZEMBuffer, buffer.Out());
  if (result < 0) return result;
  result = buffer->Set(data, size);
  if (result < 0) return result;
  return SendBuffer(buffer.Get(), time);
}

void CDeScatterizer::SendRequest(IZEMPacket* packet, IZEMBuffer* request) {
  // The stream may have ended while they were made.
  if (!CanRequest()) return;
  IZEMStream* stream = m_pStream;
  IZEMBackChannel* backChannel = m_pBackChannel;
  const ScopedRef<IZEMStream> streamHold(stream);
  const ScopedRef<IZEMBackChannel> backChannelHold(backChannel);
  const UINT16 number = static_cast<UINT16>(stream->GetStreamNumber());
  if (packet->Set(request, 0, number, kRequestFlags, 0) < 0) return;
  backChannel->Send(packet);
}

void CDeScatterizer::RequestLostCharacter(UINT16 id, UINT32 now) {
  if (m_bNonLinear || m_bBusy || !CanRequest()) return;
  const UINT32 when = m_Requests.When(id);
  // A request from the future, as after a seek back, does not count.
  const bool asked = when != CRequestDictionary::kNever && when <= now;
  if (asked && now - when <= kRequestInterval) return;
  m_Requests.ReStore(id, now);
  const Call call(this);
  Held<IZEMPacket> packet;
  if (Make(IID_IZEMPacket, packet.Out()) < 0) return;
  Held<IZEMBuffer> request;
  EnterCritical();
  if (CDeScatterPacket* message = m_Fragments.Find(id)) {
    message->GetResendRequest(request.Out());
  } else {
    // Its one open hole asks for the whole message.
    CDeScatterPacket whole(m_pClassFactory, id);
    whole.GetResendRequest(request.Out());
  }
  LeaveCritical();
  if (request) SendRequest(packet.Get(), request.Get());
}

void CDeScatterizer::RequestLostFileRange(UINT32 position, UINT32 length, UINT32 third) {
  if (!CanRequest()) return;
  const Call call(this);
  Held<IZEMPacket> packet;
  if (Make(IID_IZEMPacket, packet.Out()) < 0) return;
  Held<IZEMBuffer> request;
  if (Make(IID_IZEMBuffer, request.Out()) < 0) return;
  UINT8 bytes[kRangeRequest];
  WriteBig32(WriteBig32(WriteBig32(bytes, position), length), third);
  if (request->Set(bytes, kRangeRequest) < 0) return;
  SendRequest(packet.Get(), request.Get());
}

}  // namespace vexel
