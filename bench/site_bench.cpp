// The plug-in as its client sees it: how long until a movie's first frame stands
// on the site, and what a redraw costs beside a plain copy of the same bytes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "author/writer.h"
#include "host/session.h"

namespace vexel {
namespace {

using test::Ptr;
using test::Session;

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr size_t kPictureBytes = size_t{kWidth} * kHeight * 4;

// A client's part of a redraw: the picture goes into its own memory once.
class CopySurface final : public test::Fake<IZEMVideoSurface> {
 public:
  CopySurface() : Fake(IID_IZEMVideoSurface), m_memory(kPictureBytes) {}
  INT32 CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect&,
                   const _QKxRect&) override {
    const size_t bytes = static_cast<size_t>(info->width) * static_cast<size_t>(info->height) * 4;
    memcpy(m_memory.data(), pixels, std::min(bytes, m_memory.size()));
    benchmark::DoNotOptimize(m_memory.data());
    return ZEM_OK;
  }

 private:
  std::vector<UINT8> m_memory;
};

// About a megabyte, most of it a bitmap that the first frame shows.
test::Bytes BigMovie() {
  author::Picture picture(700, 500);
  UINT32 noise = 1;
  for (author::Color& color : picture.pixels) {
    noise = noise * 1664525 + 1013904223;
    color = {static_cast<uint8_t>(noise >> 8), static_cast<uint8_t>(noise >> 16),
             static_cast<uint8_t>(noise >> 24)};
  }
  author::MovieWriter movie(kWidth, kHeight);
  movie.DefineLossless(1, picture, false);
  author::ShapeBuilder shape;
  shape
      .Style(shape.AddFill(author::FillStyle::Bitmap(1, author::Matrix::Scale(20 * 1.8, 20 * 1.4))))
      .Rectangle(author::Rect::Pixels(0, 0, 1260, 700));
  movie.DefineShape(2, shape).PlaceObject(2, 1).FrameEnd().End();
  return movie.Finish();
}

void Play(Session& session, const test::Bytes& movie) {
  session.Init();
  session.Start();
  const test::FramedFile file = test::FramesOf(movie);
  session.Header(true, test::Bytes(movie.begin(), movie.begin() + file.bounds[0]));
  session.Attach();
  // As a source cuts it: 8 KiB a packet.
  for (UINT32 at = file.bounds[0]; at < file.bounds.back();) {
    const UINT32 end = std::min(at + 8192, file.bounds.back());
    session.Put(file.Cut(at, end));
    at = end;
  }
  session.renderer->OnEndofPackets();
  session.renderer->OnTimeSync(0);
}

void ToFirstFrame(benchmark::State& state) {
  const test::Bytes movie = BigMovie();
  const Ptr<CopySurface> surface = test::New<CopySurface>();
  for (auto _ : state) {
    Session session;
    session.host.site->onRedraw = [&] {
      _QKxEvent event = {ZEM_EVENT_DRAW, nullptr, surface.get(), nullptr, 0, 0};
      session.siteUser->HandleEvent(&event);
      if (!event.handled) state.SkipWithError("no picture");
    };
    Play(session, movie);
    if (session.host.site->redraws == 0) state.SkipWithError("no redraw");
    session.Detach();
  }
  state.counters["bytes"] = static_cast<double>(movie.size());
}
BENCHMARK(ToFirstFrame)->Name("site/first_frame")->Unit(benchmark::kMillisecond);

void Redraw(benchmark::State& state) {
  Session session;
  Play(session, test::SlidingBox(2, kWidth, kHeight));
  const Ptr<CopySurface> surface = test::New<CopySurface>();
  _QKxEvent event = {ZEM_EVENT_DRAW, nullptr, surface.get(), nullptr, 0, 0};
  for (auto _ : state) {
    session.siteUser->HandleEvent(&event);
    if (!event.handled) state.SkipWithError("no picture");
  }
  session.Detach();
}
BENCHMARK(Redraw)->Name("site/redraw")->Unit(benchmark::kMicrosecond);

void Copy(benchmark::State& state) {
  std::vector<UINT8> from(kPictureBytes, 1), to(kPictureBytes, 2);
  for (auto _ : state) {
    memcpy(to.data(), from.data(), kPictureBytes);
    benchmark::DoNotOptimize(to.data());
  }
}
BENCHMARK(Copy)->Name("site/copy")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vexel
