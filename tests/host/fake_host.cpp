#include "host/fake_host.h"

#include <algorithm>

#include "base/cqk_buffer.h"
#include "base/cqk_header.h"
#include "base/cqk_packet.h"

namespace vexel::test {

Ptr<IZEMBuffer> MakeBuffer(const Bytes& bytes) {
  Ptr<IZEMBuffer> buffer(new CQKBuffer);
  buffer->Set(bytes.data(), static_cast<UINT32>(bytes.size()));
  return buffer;
}

Ptr<IZEMPacket> MakePacket(const Bytes& bytes, UINT32 time, UINT16 stream) {
  Ptr<IZEMPacket> packet(new CQKPacket);
  packet->Set(MakeBuffer(bytes).get(), time, stream, 0, 0);
  return packet;
}

Ptr<IZEMPacket> MakeLostPacket() {
  Ptr<IZEMPacket> packet(new CQKPacket);
  packet->SetAsLost();
  return packet;
}

Ptr<IZEMValues> MakeValues() {
  return Ptr<IZEMValues>(new CQKHeader);
}

Bytes BytesOf(IZEMBuffer* buffer) {
  if (!buffer || buffer->GetSize() == 0) return {};
  return Bytes(buffer->GetBuffer(), buffer->GetBuffer() + buffer->GetSize());
}

Bytes BytesOf(IZEMPacket* packet) {
  return BytesOf(Ptr<IZEMBuffer>::Adopt(packet->GetBuffer()).get());
}

INT32 FakeErrorLog::Report(UINT8 severity, UINT32 result, UINT32 userCode, const char* text,
                           const char* moreInfo) {
  Inside();
  lines.push_back(std::to_string(userCode) + " " + text);
  if (severity != 7 || result != 0 || moreInfo) ++odd;
  return ZEM_OK;
}

INT32 FakePreferences::ReadPref(const char* key, IZEMBuffer*& value) {
  Inside();
  value = nullptr;
  const auto found = values.find(key);
  if (found == values.end()) return missingIsNull ? ZEM_OK : ZEM_FAILED;
  const std::string& text = found->second;
  const UINT32 size = static_cast<UINT32>(text.size()) + terminated;
  Ptr<CQKBuffer> buffer(new CQKBuffer);
  buffer->Set(reinterpret_cast<const UINT8*>(text.c_str()), size);
  buffer->AddRef();
  value = buffer.get();
  return ZEM_OK;
}

INT32 FakePreferences::WritePref(const char* key, IZEMBuffer* value) {
  Inside();
  values[key] = reinterpret_cast<const char*>(value->GetBuffer());
  return ZEM_OK;
}

INT32 FakeFactory::CreateInstance(const ZEMID& wanted, void** out) {
  Inside();
  *out = nullptr;
  if (failAfter == 0) return ZEM_OUT_OF_MEMORY;
  Ptr<IUnknown> object;
  if (const auto found = makers.find(wanted); found != makers.end()) {
    object = found->second();
  } else if (ZEMIsEqualID(wanted, IID_IZEMBuffer)) {
    object = new CQKBuffer;
  } else if (ZEMIsEqualID(wanted, IID_IZEMPacket)) {
    object = new CQKPacket;
  } else if (ZEMIsEqualID(wanted, IID_IZEMValues)) {
    object = new CQKHeader;
  } else if (ZEMIsEqualID(wanted, IID_IZEMMultiInstanceSiteUserSupplier)) {
    object = new FakeSupplier;
  }
  if (!object) return ZEM_NO_INTERFACE;
  if (failAfter > 0) --failAfter;
  ++made;
  return object->QueryInterface(wanted, out);
}

INT32 FakeUserSupplier::QueryInterface(const ZEMID& id, void** out) {
  return m_whole.QueryInterface(id, out);
}
UINT32 FakeUserSupplier::AddRef() {
  return m_whole.AddRef();
}
UINT32 FakeUserSupplier::Release() {
  return m_whole.Release();
}

INT32 FakeUserSupplier::GetSiteCount(UINT32& count) {
  count = 1;
  return ZEM_OK;
}

INT32 FakeUserSupplier::CreateSiteUser(IZEMSiteUser*& user) {
  user = m_whole.user.get();
  if (!user) return ZEM_UNEXPECTED;
  user->AddRef();
  return ZEM_OK;
}

INT32 FakeUserSupplier::DestroySiteUser(IZEMSiteUser*) {
  return ZEM_OK;
}

INT32 FakeSupplier::QueryInterface(const ZEMID& id, void** out) {
  if (out && ZEMIsEqualID(id, IID_IZEMSiteUserSupplier)) {
    AddRef();
    *out = static_cast<IZEMSiteUserSupplier*>(&m_users);
    return ZEM_OK;
  }
  return Fake::QueryInterface(id, out);
}

INT32 FakeSupplier::SetSingleSiteUser(IZEMSiteUser* singleUser) {
  Inside();
  user = singleUser;
  return ZEM_OK;
}

INT32 FakeSupplier::ReleaseSingleSiteUser() {
  Inside();
  user = {};
  return ZEM_OK;
}

INT32 FakeSurface::CopyBitmap(const UINT8* bits, const QKBitmapInfo* bitmap, const _QKxRect& dest,
                              const _QKxRect& source) {
  Inside();
  ++copies;
  info = *bitmap;
  lastDest = dest;
  lastSource = source;
  pixels.resize(static_cast<size_t>(info.width) * static_cast<size_t>(info.height));
  if (!pixels.empty()) memcpy(pixels.data(), bits, pixels.size() * 4);
  for (UINT32& pixel : pixels) pixel &= 0xFFFFFF;
  return ZEM_OK;
}

INT32 FakeSite::AttachUser(IZEMSiteUser* newUser) {
  user = newUser;
  return newUser->AttachSite(this);
}

INT32 FakeSite::DetachUser() {
  IZEMSiteUser* old = std::exchange(user, nullptr);
  return old ? old->DetachSite() : ZEM_UNEXPECTED;
}

INT32 FakeSite::GetUser(IZEMSiteUser*& out) {
  out = user;
  if (out) out->AddRef();
  return ZEM_OK;
}

INT32 FakeSite::GetPosition(INT32& x, INT32& y) {
  Inside();
  x = y = 0;
  return ZEM_OK;
}

INT32 FakeSite::SetSize(_QKxSize wish) {
  Inside();
  wishes.push_back(wish);
  if (takesSize) size = wish;
  if (onSize) onSize();
  return ZEM_OK;
}

INT32 FakeSite::GetSize(_QKxSize& out) {
  Inside();
  out = size;
  return ZEM_OK;
}

INT32 FakeSite::DamageRect(_QKxRect rect) {
  Inside();
  damage.push_back(rect);
  return ZEM_OK;
}

INT32 FakeSite::ForceRedraw() {
  Inside();
  ++redraws;
  if (onRedraw) {
    const std::function<void()> call = onRedraw;  // which may set another
    call();
    return ZEM_OK;
  }
  _QKxEvent event = {};
  return user ? Draw(event) : ZEM_OK;
}

INT32 FakeSite::Draw(_QKxEvent& event) {
  event = {ZEM_EVENT_DRAW, nullptr, surface.get(), nullptr, 1, 1};
  return user->HandleEvent(&event);
}

INT32 FakeHyperNavigate::GoToURL(const char* url, const char* target) {
  Inside();
  visits.push_back(std::string(url) + " " + (target ? target : ""));
  return ZEM_OK;
}

INT32 FakePlayer::GetContext(IUnknown*& out) {
  Inside();
  out = context;
  if (out) out->AddRef();
  return ZEM_OK;
}

INT32 FakePlayer::OpenURL(const char* url) {
  Inside();
  calls.push_back(std::string("OpenURL ") + url);
  return ZEM_OK;
}

INT32 FakePlayer::Begin() {
  Inside();
  calls.push_back("Begin");
  return ZEM_OK;
}

INT32 FakePlayer::Stop() {
  Inside();
  calls.push_back("Stop");
  return ZEM_OK;
}

INT32 FakePlayer::Pause() {
  Inside();
  calls.push_back("Pause");
  return ZEM_OK;
}

INT32 FakePlayer::Seek(UINT32 ms) {
  Inside();
  calls.push_back("Seek " + std::to_string(ms));
  return ZEM_OK;
}

INT32 FakePlayer::AddAdviseSink(IZEMClientAdviseSink* sink) {
  Inside();
  if (addResult < 0) return addResult;
  sinks.emplace_back(sink);
  return ZEM_OK;
}

INT32 FakePlayer::RemoveAdviseSink(IZEMClientAdviseSink* sink) {
  Inside();
  const auto found = std::find_if(sinks.begin(), sinks.end(),
                                  [sink](const auto& known) { return known.get() == sink; });
  if (found == sinks.end()) return ZEM_FAILED;
  const Ptr<IZEMClientAdviseSink> last = *found;  // goes after the list is in order
  sinks.erase(found);
  return ZEM_OK;
}

void* FakeScheduler::ScheduleRelative(IZEMCallback* callback, UINT32 ms) {
  Inside();
  void* handle = reinterpret_cast<void*>(++m_lastHandle);
  timers.push_back({callback, nowMs + ms, handle});
  return handle;
}

void* FakeScheduler::ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) {
  Inside();
  const uint64_t due = uint64_t{time.seconds} * 1000 + (time.microseconds + 500) / 1000;
  return ScheduleRelative(callback, due > nowMs ? static_cast<UINT32>(due - nowMs) : 0);
}

INT32 FakeScheduler::Remove(void* handle) {
  Inside();
  std::erase_if(timers, [handle](const Timer& timer) { return timer.handle == handle; });
  return ZEM_OK;
}

INT32 FakeScheduler::GetTime(_ZEMTimeval& time) {
  Inside();
  time = {static_cast<UINT32>(nowMs / 1000), static_cast<UINT32>(nowMs % 1000 * 1000)};
  return ZEM_OK;
}

void FakeScheduler::Advance(UINT32 ms) {
  const uint64_t end = nowMs + ms;
  for (;;) {
    const auto next =
        std::min_element(timers.begin(), timers.end(),
                         [](const Timer& a, const Timer& b) { return a.dueMs < b.dueMs; });
    if (next == timers.end() || next->dueMs > end) break;
    const Timer timer = *next;
    timers.erase(next);
    nowMs = std::max(nowMs, timer.dueMs);
    timer.callback->Func();
  }
  nowMs = end;
}

INT32 FakeBackChannel::Send(IZEMPacket* packet) {
  Inside();
  sent.emplace_back(packet);
  return ZEM_OK;
}

INT32 FakeStream::GetSource(IUnknown*& out) {
  Inside();
  out = source.get();
  if (!out) return ZEM_FAILED;
  out->AddRef();
  return ZEM_OK;
}

INT32 FakeMenu::SetTitle(const char* text) {
  Inside();
  entries.push_back(text);
  return ZEM_OK;
}

INT32 FakeMenu::AddItem(UINT16 id, const char* text, UINT32, UINT32, UINT32) {
  Inside();
  entries.push_back(std::to_string(id) + " " + text);
  return ZEM_OK;
}

INT32 FakeMenu::AddSeparator() {
  Inside();
  entries.push_back("-");
  return ZEM_OK;
}

INT32 FakeMenu::SetResponse(IZEMContextMenuResponse* newResponse) {
  Inside();
  response = newResponse;
  return ZEM_OK;
}

INT32 FakeUpgrades::Add(UINT32 type, IZEMBuffer* name, UINT32, UINT32) {
  Inside();
  const Bytes bytes = BytesOf(name);
  names.push_back(std::to_string(type) + " " + std::string(bytes.begin(), bytes.end()));
  return ZEM_OK;
}

FakeHost::FakeHost() {
  context->others = {
      {IID_IZEMCommonClassFactory, factory.get()}, {IID_IZEMErrorMessages, log.get()},
      {IID_IZEMPreferences, preferences.get()},    {IID_IZEMScheduler, scheduler.get()},
      {IID_IZEMContextMenu, menu.get()},           {IID_IZEMHyperNavigate, navigate.get()},
      {IID_IZEMUpgradeCollection, upgrades.get()},
  };
  player->others = {{IID_IZEMHyperNavigate, navigate.get()}};
  player->context = context.get();
  stream->source->others = {{IID_IZEMBackChannel, backChannel.get()}};
}

FakeHost::~FakeHost() {
  // Rings of references that a test may have left.
  site->user = nullptr;
  player->context = nullptr;
}

}  // namespace vexel::test
