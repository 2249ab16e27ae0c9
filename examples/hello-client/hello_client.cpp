// The smallest client: loads the plug-in, plays a movie up to some time, and
// saves what it drew as a PNG.
//
//     hello-client vexel.so movie.vxf picture.png [milliseconds]
// docs/writing-a-client.md walks through it.
#include <dlfcn.h>
#include <png.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

#include "zem/zem.h"

namespace {

using Bytes = std::vector<UINT8>;

// An object with one interface. Its maker holds the first reference; it goes
// with the last one, which an object on the stack never sees.
template <class Interface, const ZEMID& kId>
class Object : public Interface {
 public:
  INT32 QueryInterface(const ZEMID& id, void** out) override {
    *out = ZEMIsEqualID(id, kId) || ZEMIsEqualID(id, IID_IUnknown) ? this : nullptr;
    if (*out) AddRef();
    return *out ? ZEM_OK : ZEM_NO_INTERFACE;
  }
  UINT32 AddRef() override { return ++references_; }
  UINT32 Release() override {
    const UINT32 left = --references_;
    if (left == 0) delete this;
    return left;
  }
  virtual ~Object() = default;

 private:
  UINT32 references_ = 1;
};

class Buffer final : public Object<IZEMBuffer, IID_IZEMBuffer> {
 public:
  INT32 Get(UINT8*& data, UINT32& size) override {
    return data = bytes_.data(), size = GetSize(), ZEM_OK;
  }
  INT32 Set(const UINT8* data, UINT32 size) override {
    return bytes_.assign(data, data + size), ZEM_OK;
  }
  INT32 SetSize(UINT32 size) override { return bytes_.resize(size), ZEM_OK; }
  UINT32 GetSize() override { return static_cast<UINT32>(bytes_.size()); }
  UINT8* GetBuffer() override { return bytes_.data(); }

 private:
  Bytes bytes_;
};

// A packet with a buffer, due at once.
class Packet final : public Object<IZEMPacket, IID_IZEMPacket> {
 public:
  ~Packet() override {
    if (buffer_) buffer_->Release();
  }
  INT32 Set(IZEMBuffer* buffer, UINT32, UINT16, UINT8, UINT16) override {
    return (buffer_ = buffer)->AddRef(), ZEM_OK;
  }
  IZEMBuffer* GetBuffer() override { return buffer_->AddRef(), buffer_; }
  INT32 Get(IZEMBuffer*& buffer, UINT32& time, UINT16& stream, UINT8& qrs, UINT16& rule) override {
    buffer = GetBuffer();
    time = stream = qrs = rule = 0;
    return ZEM_OK;
  }
  UINT32 GetTime() override { return 0; }
  UINT16 GetStreamNumber() override { return 0; }
  UINT8 GetQRSFlags() override { return 0; }
  UINT16 GetQRSRuleNumber() override { return 0; }
  INT32 IsLost() override { return 0; }
  INT32 SetAsLost() override { return ZEM_FAILED; }
  UINT32 GetRTPTime() override { return 0xFFFFFFFF; }
  // clang-format off
  INT32 GetRTP(IZEMBuffer*&, UINT32&, UINT32&, UINT16&, UINT8&, UINT16&) override { return ZEM_FAILED; }
  INT32 SetRTP(IZEMBuffer*, UINT32, UINT32, UINT16, UINT8, UINT16) override { return ZEM_FAILED; }
  // clang-format on

 private:
  IZEMBuffer* buffer_ = nullptr;
};

// The header of the stream: its flags say that it is the file's bytes in their
// order, and the movie's head comes with it.
class Header final : public Object<IZEMValues, IID_IZEMValues> {
 public:
  IZEMBuffer* head = nullptr;

  INT32 GetPropertyULONG32(const char* key, UINT32& value) override {
    value = strcmp(key, "Duration") == 0 ? 0xFFFFFFFF : strcmp(key, "RendererFlags") == 0;
    return ZEM_OK;
  }
  INT32 GetPropertyBuffer(const char* key, IZEMBuffer*& value) override {
    if (strcmp(key, "OpaqueData") != 0) return ZEM_FAILED;
    head->AddRef();
    value = head;
    return ZEM_OK;
  }
  INT32 SetPropertyULONG32(const char*, UINT32) override { return ZEM_FAILED; }
  INT32 GetFirstPropertyULONG32(const char*&, UINT32&) override { return ZEM_FAILED; }
  INT32 GetNextPropertyULONG32(const char*&, UINT32&) override { return ZEM_FAILED; }
  INT32 SetPropertyBuffer(const char*, IZEMBuffer*) override { return ZEM_FAILED; }
  INT32 GetFirstPropertyBuffer(const char*&, IZEMBuffer*&) override { return ZEM_FAILED; }
  INT32 GetNextPropertyBuffer(const char*&, IZEMBuffer*&) override { return ZEM_FAILED; }
  INT32 SetPropertyCString(const char*, IZEMBuffer*) override { return ZEM_FAILED; }
  INT32 GetPropertyCString(const char*, IZEMBuffer*&) override { return ZEM_FAILED; }
  INT32 GetFirstPropertyCString(const char*&, IZEMBuffer*&) override { return ZEM_FAILED; }
  INT32 GetNextPropertyCString(const char*&, IZEMBuffer*&) override { return ZEM_FAILED; }
};

class Supplier final
    : public Object<IZEMMultiInstanceSiteUserSupplier, IID_IZEMMultiInstanceSiteUserSupplier> {
 public:
  INT32 SetSingleSiteUser(IZEMSiteUser*) override { return ZEM_OK; }
  INT32 ReleaseSingleSiteUser() override { return ZEM_OK; }
};

// The context, too: it offers the one service without which no plug-in starts.
class Factory final : public Object<IZEMCommonClassFactory, IID_IZEMCommonClassFactory> {
 public:
  INT32 CreateInstance(const ZEMID& wanted, void** out) override {
    IUnknown* made = nullptr;
    if (ZEMIsEqualID(wanted, IID_IZEMBuffer)) made = new Buffer;
    if (ZEMIsEqualID(wanted, IID_IZEMPacket)) made = new Packet;
    if (ZEMIsEqualID(wanted, IID_IZEMMultiInstanceSiteUserSupplier)) made = new Supplier;
    *out = made;
    return made ? ZEM_OK : ZEM_NO_INTERFACE;
  }
};

class Source final : public Object<IZEMStreamSource, IID_IZEMStreamSource> {
 public:
  UINT16 GetStreamCount() override { return 1; }
  INT32 GetStream(UINT16, IZEMStream*&) override { return ZEM_NOT_IMPLEMENTED; }
  const char* GetURL() override { return "movie.vxf"; }
};

class Stream final : public Object<IZEMStream, IID_IZEMStream> {
 public:
  INT32 GetSource(IUnknown*& source) override { return (source = &source_)->AddRef(), ZEM_OK; }
  UINT32 GetStreamNumber() override { return 0; }

 private:
  Source source_;
};

// A player whose clock the program moves by hand; it obeys nobody.
class Player final : public Object<IZEMPlayer, IID_IZEMPlayer> {
 public:
  // clang-format off
  INT32 GetContext(IUnknown*&) override { return ZEM_FAILED; }
  INT32 OpenURL(const char*) override { return ZEM_FAILED; }
  INT32 AddAdviseSink(IZEMClientAdviseSink*) override { return ZEM_OK; }
  INT32 RemoveAdviseSink(IZEMClientAdviseSink*) override { return ZEM_OK; }
  UINT32 GetPosition() override { return 0; }  UINT32 GetLength() override { return 0; }
  INT32 IsRunning() override { return 1; }     INT32 Seek(UINT32) override { return ZEM_OK; }
  INT32 Begin() override { return ZEM_OK; }    INT32 Pause() override { return ZEM_OK; }
  INT32 Stop() override { return ZEM_OK; }
  // clang-format on
};

class Surface final : public Object<IZEMVideoSurface, IID_IZEMVideoSurface> {
 public:
  png_image image = {};
  Bytes rgb;

  // The site has the movie's size, so nothing has to be scaled.
  INT32 CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect&,
                   const _QKxRect&) override {
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(info->width);
    image.height = static_cast<png_uint_32>(info->height);
    image.format = PNG_FORMAT_RGB;
    image.flags = PNG_IMAGE_FLAG_FAST;
    rgb.clear();
    for (png_uint_32 i = 0; i < image.width * image.height; i++, pixels += 4) {
      UINT32 pixel;  // 0xAARRGGBB
      memcpy(&pixel, pixels, 4);
      for (int shift = 16; shift >= 0; shift -= 8) rgb.push_back(UINT8(pixel >> shift));
    }
    return ZEM_OK;
  }
};

class Site final : public Object<IZEMSite, IID_IZEMSite> {
 public:
  IZEMSiteUser* user = nullptr;
  Surface surface;

  INT32 SetSize(_QKxSize size) override { return size_ = size, ZEM_OK; }
  INT32 GetSize(_QKxSize& size) override { return size = size_, ZEM_OK; }
  INT32 ForceRedraw() override {
    _QKxEvent event = {ZEM_EVENT_DRAW, nullptr, &surface, nullptr, 0, 0};
    return user->HandleEvent(&event);
  }
  // clang-format off
  INT32 DamageRect(_QKxRect) override { return ZEM_OK; }  INT32 DamageAll() override { return 0; }
  INT32 AttachUser(IZEMSiteUser*) override { return ZEM_FAILED; }
  INT32 DetachUser() override { return ZEM_FAILED; }
  INT32 GetUser(IZEMSiteUser*&) override { return ZEM_FAILED; }
  INT32 CreateChild(IZEMSite*&) override { return ZEM_FAILED; }
  INT32 DestroyChild(IZEMSite*) override { return ZEM_FAILED; }
  INT32 SetPosition(INT32, INT32) override { return ZEM_OK; }
  INT32 GetPosition(INT32&, INT32&) override { return ZEM_FAILED; }
  INT32 SetVisible(INT32) override { return ZEM_OK; }  INT32 IsVisible() override { return 1; }
  // clang-format on

 private:
  _QKxSize size_ = {0, 0};
};

int Fail(const char* what) {
  std::fprintf(stderr, "hello-client: %s\n", what);
  return 1;
}

Buffer* BufferOf(const Bytes& bytes) {
  Buffer* buffer = new Buffer;
  buffer->Set(bytes.data(), static_cast<UINT32>(bytes.size()));
  return buffer;
}

int Play(IZEMPlugin* plugin, const Bytes& movie, UINT32 ms, const char* png) {
  // These outlive the plug-in, whatever goes wrong.
  static Factory factory;
  static Stream stream;
  static Player player;
  static Site site;
  static Header header;
  // Eight bytes, a rectangle of four fields of so many bits, rate, frame count.
  const size_t head = 8 + (5 + 4 * (movie[8] >> 3) + 7) / 8 + 4;
  header.head = BufferOf(Bytes(movie.begin(), movie.begin() + head));

  void* out = nullptr;
  if (plugin->InitPlugin(&factory) < 0 || plugin->QueryInterface(IID_IZEMRenderer, &out) < 0)
    return Fail("the plug-in does not start");
  IZEMRenderer* renderer = static_cast<IZEMRenderer*>(out);
  renderer->StartStream(&stream, &player);
  if (renderer->OnHeader(&header) < 0) return Fail("this is no movie");
  renderer->QueryInterface(IID_IZEMSiteUser, &out);
  site.user = static_cast<IZEMSiteUser*>(out);
  site.user->AttachSite(&site);

  const int last = std::max((movie[head - 2] | movie[head - 1] << 8) - 1, 0);
  Bytes bytes(16);  // the head of a packet: where it begins, its first and last frame
  for (int i = 0; i < 4; i++) bytes[i] = static_cast<UINT8>(head >> (24 - 8 * i));
  bytes[6] = static_cast<UINT8>(last >> 8);
  bytes[7] = static_cast<UINT8>(last);
  bytes.insert(bytes.end(), movie.begin() + head, movie.end());
  IZEMBuffer* buffer = BufferOf(bytes);
  IZEMPacket* packet = new Packet;
  packet->Set(buffer, 0, 0, 0, 0);
  renderer->OnPacket(packet, 0);
  renderer->OnBegin(0);
  renderer->OnTimeSync(ms);
  renderer->OnEndofPackets();

  renderer->EndStream();
  site.user->DetachSite();
  site.user->Release();
  renderer->Release();
  packet->Release();
  buffer->Release();
  header.head->Release();

  Surface* drawn = &site.surface;
  if (png_image_write_to_file(&drawn->image, png, 0, drawn->rgb.data(), 0, nullptr)) return 0;
  return Fail("the picture cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return Fail("usage: hello-client vexel.so movie.vxf picture.png [milliseconds]");
  std::ifstream file(argv[2], std::ios::binary);
  const Bytes movie(std::istreambuf_iterator<char>(file), {});
  if (movie.size() < 32) return Fail("this is no movie");
  void* library = dlopen(argv[1], RTLD_NOW);
  if (!library) return Fail(dlerror());
  const auto create =
      reinterpret_cast<ZEMCreateInstanceFunction>(dlsym(library, "ZEMCreateInstance"));
  IUnknown* made = nullptr;
  void* plugin = nullptr;
  if (!create || create(&made) < 0 || made->QueryInterface(IID_IZEMPlugin, &plugin) < 0)
    return Fail("this is no plug-in");
  const UINT32 ms = argc > 4 ? static_cast<UINT32>(std::strtoul(argv[4], nullptr, 10)) : 0;
  const int status = Play(static_cast<IZEMPlugin*>(plugin), movie, ms, argv[3]);
  static_cast<IZEMPlugin*>(plugin)->Release();
  made->Release();
  return status;
}
