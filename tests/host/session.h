// A session with the plug-in, as a client leads it.
#pragma once

#include <chrono>
#include <thread>

#include "author/writer.h"
#include "host/stream_packets.h"

namespace vexel::test {

// A movie of 100 by 80 pixels with `frames` frames: a red box of 10 by 10 moves
// to the right by 10 pixels a frame, from the third one on.
inline Bytes SlidingBox(int frames, int width = 100, int height = 80) {
  author::MovieWriter movie(width, height, 10);
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
  movie.DefineShape(1, box);
  movie.PlaceObject(1, 1);
  for (int i = 0; i < frames; ++i) {
    if (i > 1) movie.Move(1, author::Matrix::Translate((i - 1) * 200, 0));
    movie.FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

// A movie's frames: bounds behind each tag of code 1.
inline FramedFile FramesOf(const Bytes& movie) {
  FramedFile file;
  file.bytes = movie;
  size_t at = 8 + (5 + 4 * (movie[8] >> 3) + 7) / 8 + 4;
  file.bounds.push_back(static_cast<UINT32>(at));
  while (at + 2 <= movie.size()) {
    const unsigned head = movie[at] | movie[at + 1] << 8;
    at += 2;
    size_t length = head & 63;
    if (length == 63) {
      length = movie[at] | movie[at + 1] << 8 | movie[at + 2] << 16;
      at += 4;
    }
    at += length;
    if (head >> 6 == 1) file.bounds.push_back(static_cast<UINT32>(at));
  }
  // The end tag belongs to the last frame.
  file.bounds.back() = static_cast<UINT32>(movie.size());
  return file;
}

// A client with its host: makes the plug-in's object by `create`.
struct Session {
  explicit Session(ZEMCreateInstanceFunction create = ZEMCreateInstance) {
    create(&unknown.Out());
    plugin = Query<IZEMPlugin>(unknown.get(), IID_IZEMPlugin);
    renderer = Query<IZEMRenderer>(unknown.get(), IID_IZEMRenderer);
    siteUser = Query<IZEMSiteUser>(unknown.get(), IID_IZEMSiteUser);
  }

  INT32 Init() { return plugin->InitPlugin(host.context.get()); }
  INT32 Start() { return renderer->StartStream(host.stream.get(), host.player.get()); }
  INT32 Header(bool nonLinear, const Bytes& head, UINT32 duration = 10000) {
    const Ptr<IZEMValues> values = MakeValues();
    values->SetPropertyULONG32("StreamVersion", 0);
    values->SetPropertyULONG32("Duration", duration);
    values->SetPropertyULONG32("RendererFlags", nonLinear);
    if (nonLinear) values->SetPropertyULONG32("NumPackets", 1);
    values->SetPropertyBuffer("OpaqueData", MakeBuffer(head).get());
    return renderer->OnHeader(values.get());
  }
  INT32 Attach() {
    const INT32 result = siteUser->AttachSite(host.site.get());
    host.site->user = siteUser.get();
    return result;
  }
  void Detach() {
    host.site->user = nullptr;
    siteUser->DetachSite();
  }
  // All of it, up to the first packet.
  void Open(bool nonLinear, const Bytes& head, UINT32 duration = 10000) {
    Init();
    Start();
    Header(nonLinear, head, duration);
    Attach();
  }
  // A non-linear stream of this movie; no packet has come.
  void OpenFile(const FramedFile& file, UINT32 duration = 10000) {
    Open(true, Bytes(file.bytes.begin(), file.bytes.begin() + file.bounds[0]), duration);
  }
  INT32 Put(const Bytes& bytes, UINT32 time = 0) {
    return renderer->OnPacket(MakePacket(bytes, time).get(), 0);
  }
  // A time sync that the throttle lets through: the last one's length blocks the
  // next ones for less than twice as long, and a second at most.
  INT32 Sync(UINT32 time) {
    Wait();
    const auto start = Clock::now();
    const INT32 result = renderer->OnTimeSync(time);
    const Clock::duration length = Clock::now() - start;
    next = start + std::min<Clock::duration>(2 * length, std::chrono::seconds(1)) +
           std::chrono::milliseconds(3);
    return result;
  }
  void Wait() const { std::this_thread::sleep_until(next); }
  // Lets all references go but `unknown`.
  void LetGo() {
    plugin = {};
    renderer = {};
    siteUser = {};
  }
  UINT32 Pixel(int x, int y) const {
    const FakeSurface& surface = *host.site->surface;
    const size_t at = static_cast<size_t>(y * surface.info.width + x);
    return at < surface.pixels.size() ? surface.pixels[at] : 0xDEAD;
  }

  using Clock = std::chrono::steady_clock;
  Clock::time_point next = Clock::now();

  FakeHost host;
  Ptr<IUnknown> unknown;
  Ptr<IZEMPlugin> plugin;
  Ptr<IZEMRenderer> renderer;
  Ptr<IZEMSiteUser> siteUser;
};

}  // namespace vexel::test
