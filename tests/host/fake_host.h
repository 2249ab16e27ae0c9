// A whole host in memory: what a client provides, recorded and steered by tests.
// Everything is plain; a service that a test wants missing is taken out of
// `context->others`.
#pragma once

#include <functional>

#include "host/fake_object.h"

namespace vexel::test {

using Bytes = std::vector<UINT8>;

// A buffer, a packet and a lost packet, with a reference.
Ptr<IZEMBuffer> MakeBuffer(const Bytes& bytes);
Ptr<IZEMPacket> MakePacket(const Bytes& bytes, UINT32 time = 0, UINT16 stream = 0);
Ptr<IZEMPacket> MakeLostPacket();
Ptr<IZEMValues> MakeValues();
// Copies of what they hold.
Bytes BytesOf(IZEMBuffer* buffer);
Bytes BytesOf(IZEMPacket* packet);

class FakeErrorLog final : public Fake<IZEMErrorMessages> {
 public:
  FakeErrorLog() : Fake(IID_IZEMErrorMessages) {}
  INT32 Report(UINT8 severity, UINT32 result, UINT32 userCode, const char* text,
               const char* moreInfo) override;

  // "14 StartStream()": user code and text.
  std::vector<std::string> lines;
  // Reports with another severity than 7, a result, or more information.
  int odd = 0;
};

class FakePreferences final : public Fake<IZEMPreferences> {
 public:
  FakePreferences() : Fake(IID_IZEMPreferences) {}
  INT32 ReadPref(const char* key, IZEMBuffer*& value) override;
  INT32 WritePref(const char* key, IZEMBuffer* value) override;

  std::map<std::string, std::string> values;
  bool terminated = true;      // whether values have their zero
  bool missingIsNull = false;  // a missing key is a success without a buffer
};

// Makes buffers, packets, values and suppliers; `makers` adds what a test needs.
class FakeFactory final : public Fake<IZEMCommonClassFactory> {
 public:
  FakeFactory() : Fake(IID_IZEMCommonClassFactory) {}
  INT32 CreateInstance(const ZEMID& wanted, void** out) override;

  std::map<ZEMID, std::function<Ptr<IUnknown>()>, IdLess> makers;
  int failAfter = -1;  // so many objects more, then ZEM_OUT_OF_MEMORY; -1: never
  int made = 0;
};

class FakeSupplier;

// The supplier's other interface, a part of it.
class FakeUserSupplier final : public IZEMSiteUserSupplier {
 public:
  explicit FakeUserSupplier(FakeSupplier& whole) : m_whole(whole) {}
  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;
  INT32 GetSiteCount(UINT32& count) override;
  INT32 CreateSiteUser(IZEMSiteUser*& user) override;
  INT32 DestroySiteUser(IZEMSiteUser* user) override;

 private:
  FakeSupplier& m_whole;
};

class FakeSupplier final : public Fake<IZEMMultiInstanceSiteUserSupplier> {
 public:
  FakeSupplier() : Fake(IID_IZEMMultiInstanceSiteUserSupplier) {}
  INT32 QueryInterface(const ZEMID& id, void** out) override;
  INT32 SetSingleSiteUser(IZEMSiteUser* singleUser) override;
  INT32 ReleaseSingleSiteUser() override;

  Ptr<IZEMSiteUser> user;

 private:
  FakeUserSupplier m_users{*this};
};

class FakeSurface final : public Fake<IZEMVideoSurface> {
 public:
  FakeSurface() : Fake(IID_IZEMVideoSurface) {}
  INT32 CopyBitmap(const UINT8* bits, const QKBitmapInfo* bitmap, const _QKxRect& dest,
                   const _QKxRect& source) override;

  int copies = 0;
  QKBitmapInfo info = {};
  _QKxRect lastDest = {}, lastSource = {};
  std::vector<UINT32> pixels;  // a copy of the last picture, alpha cleared
};

class FakeSite final : public Fake<IZEMSite> {
 public:
  FakeSite() : Fake(IID_IZEMSite) {}
  INT32 AttachUser(IZEMSiteUser* newUser) override;
  INT32 DetachUser() override;
  INT32 GetUser(IZEMSiteUser*& out) override;
  INT32 CreateChild(IZEMSite*&) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 DestroyChild(IZEMSite*) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 SetPosition(INT32, INT32) override { return ZEM_OK; }
  INT32 GetPosition(INT32& x, INT32& y) override;
  INT32 SetVisible(INT32) override { return ZEM_OK; }
  INT32 IsVisible() override { return 1; }
  INT32 SetSize(_QKxSize wish) override;
  INT32 GetSize(_QKxSize& out) override;
  INT32 DamageRect(_QKxRect rect) override;
  INT32 DamageAll() override { return ZEM_OK; }
  INT32 ForceRedraw() override;

  // Sends the drawing event to the user; what the user answered.
  INT32 Draw(_QKxEvent& event);

  // Borrowed: who gets events. Set by the test, or by AttachUser.
  IZEMSiteUser* user = nullptr;
  Ptr<FakeSurface> surface = New<FakeSurface>();
  _QKxSize size = {0, 0};
  bool takesSize = true;  // whether a wish is granted
  std::vector<_QKxSize> wishes;
  std::vector<_QKxRect> damage;
  int redraws = 0;
  std::function<void()> onRedraw;  // called instead of Draw
  std::function<void()> onSize;    // called inside SetSize
};

class FakeHyperNavigate final : public Fake<IZEMHyperNavigate> {
 public:
  FakeHyperNavigate() : Fake(IID_IZEMHyperNavigate) {}
  INT32 GoToURL(const char* url, const char* target) override;

  std::vector<std::string> visits;  // "url target"
};

class FakePlayer final : public Fake<IZEMPlayer> {
 public:
  FakePlayer() : Fake(IID_IZEMPlayer) {}
  INT32 GetContext(IUnknown*& out) override;
  UINT32 GetPosition() override { return 0; }
  UINT32 GetLength() override { return 0; }
  INT32 IsRunning() override { return 1; }
  INT32 OpenURL(const char* url) override;
  INT32 Begin() override;
  INT32 Stop() override;
  INT32 Pause() override;
  INT32 Seek(UINT32 ms) override;
  INT32 AddAdviseSink(IZEMClientAdviseSink* sink) override;
  INT32 RemoveAdviseSink(IZEMClientAdviseSink* sink) override;

  IUnknown* context = nullptr;     // borrowed
  std::vector<std::string> calls;  // "Seek 500"
  std::vector<Ptr<IZEMClientAdviseSink>> sinks;
  INT32 addResult = ZEM_OK;
};

class FakeScheduler final : public Fake<IZEMScheduler> {
 public:
  FakeScheduler() : Fake(IID_IZEMScheduler) {}
  void* ScheduleRelative(IZEMCallback* callback, UINT32 ms) override;
  void* ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) override;
  INT32 Remove(void* handle) override;
  INT32 GetTime(_ZEMTimeval& time) override;

  // Moves the clock on by `ms` and calls what is due by then, in order.
  void Advance(UINT32 ms);

  struct Timer {
    Ptr<IZEMCallback> callback;
    uint64_t dueMs;
    void* handle;
  };
  std::vector<Timer> timers;
  uint64_t nowMs = 1000;

 private:
  uintptr_t m_lastHandle = 0;
};

class FakeBackChannel final : public Fake<IZEMBackChannel> {
 public:
  FakeBackChannel() : Fake(IID_IZEMBackChannel) {}
  INT32 Send(IZEMPacket* packet) override;

  std::vector<Ptr<IZEMPacket>> sent;
};

class FakeSource final : public Fake<IZEMStreamSource> {
 public:
  FakeSource() : Fake(IID_IZEMStreamSource) {}
  UINT16 GetStreamCount() override { return 1; }
  INT32 GetStream(UINT16, IZEMStream*&) override { return ZEM_NOT_IMPLEMENTED; }
  const char* GetURL() override { return url.empty() ? nullptr : url.c_str(); }

  std::string url = "http://host/folder/movie.vxf";
};

class FakeStream final : public Fake<IZEMStream> {
 public:
  FakeStream() : Fake(IID_IZEMStream) {}
  INT32 GetSource(IUnknown*& out) override;
  UINT32 GetStreamNumber() override { return number; }

  Ptr<FakeSource> source = New<FakeSource>();
  UINT32 number = 0;
};

class FakeMenu final : public Fake<IZEMContextMenu> {
 public:
  FakeMenu() : Fake(IID_IZEMContextMenu) {}
  INT32 SetTitle(const char* text) override;
  INT32 AddItem(UINT16 id, const char* text, UINT32, UINT32, UINT32) override;
  INT32 AddSeparator() override;
  INT32 SetResponse(IZEMContextMenuResponse* newResponse) override;

  std::vector<std::string> entries;             // the title, "id text", "-"
  IZEMContextMenuResponse* response = nullptr;  // not counted
};

class FakeUpgrades final : public Fake<IZEMUpgradeCollection> {
 public:
  FakeUpgrades() : Fake(IID_IZEMUpgradeCollection) {}
  INT32 Add(UINT32 type, IZEMBuffer* name, UINT32, UINT32) override;

  std::vector<std::string> names;
};

// What a plug-in is given at InitPlugin; it answers for the services.
class FakeContext final : public Fake<IUnknown> {
 public:
  FakeContext() : Fake(IID_IUnknown) {}
};

// All of them, wired: the context answers for each service, the player for hyper
// navigation, the source for the back channel.
struct FakeHost {
  FakeHost();
  ~FakeHost();
  // Takes a service out of the context.
  void Without(const ZEMID& id) { context->others.erase(id); }

  Ptr<FakeContext> context = New<FakeContext>();
  Ptr<FakeFactory> factory = New<FakeFactory>();
  Ptr<FakeErrorLog> log = New<FakeErrorLog>();
  Ptr<FakePreferences> preferences = New<FakePreferences>();
  Ptr<FakeScheduler> scheduler = New<FakeScheduler>();
  Ptr<FakeMenu> menu = New<FakeMenu>();
  Ptr<FakeHyperNavigate> navigate = New<FakeHyperNavigate>();
  Ptr<FakeUpgrades> upgrades = New<FakeUpgrades>();
  Ptr<FakePlayer> player = New<FakePlayer>();
  Ptr<FakeStream> stream = New<FakeStream>();
  Ptr<FakeBackChannel> backChannel = New<FakeBackChannel>();
  Ptr<FakeSite> site = New<FakeSite>();
};

}  // namespace vexel::test
