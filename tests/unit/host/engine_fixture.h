// An engine with all that it meets but the shell: the damage manager on a site,
// and the reassembler. Streams are played into it directly.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "author/writer.h"
#include "host/cdescatterizer.h"
#include "host/damage_manager.h"
#include "host/fake_host.h"
#include "host/vexel_engine.h"
#include "player/text.h"

namespace vexel::test {

inline constexpr UINT32 kNonLinear = 1;

// The first bytes of a movie: up to its first tag.
inline Bytes HeadOf(const Bytes& movie) {
  const int coordBits = movie[8] >> 3;
  return Bytes(movie.begin(), movie.begin() + 8 + (5 + 4 * coordBits + 7) / 8 + 4);
}

inline Bytes Joined(const Bytes& head, const Bytes& tail) {
  Bytes all(head.size() + tail.size());
  std::copy(head.begin(), head.end(), all.begin());
  std::copy(tail.begin(), tail.end(), all.begin() + static_cast<long>(head.size()));
  return all;
}

// A movie of 100 by 80 pixels: each frame has its own background, and the red
// box of character 1 stands at depth 1 from the first frame on.
inline Bytes BoxMovie(int frames, int rate = 12) {
  author::MovieWriter movie(100, 80, rate);
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
  movie.DefineShape(1, box);
  movie.PlaceObject(1, 1);
  for (int i = 0; i < frames; ++i) {
    if (i > 0) movie.Move(1, author::Matrix::Translate(i * 200, 0));
    movie.FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

class EngineFixture : public ::testing::Test {
 protected:
  EngineFixture() {
    engine->SetDamageManager(&damage);
    engine->SetDeScatterizer(&reassembler);
    damage.m_pSite = host.site.get();
  }
  ~EngineFixture() override {
    damage.m_pSite = nullptr;
    engine->Shutdown();
    engine->DetachSite();
    EXPECT_EQ(host.log->odd, 0);
  }

  // What a client does before it has a stream.
  void Init() {
    EXPECT_EQ(engine->InitPlugin(host.context.get()), ZEM_OK);
    EXPECT_EQ(engine->StartStream(host.stream.get(), host.player.get()), ZEM_OK);
  }
  static Ptr<IZEMValues> Header(UINT32 flags, const Bytes& head, UINT32 duration = 10000) {
    Ptr<IZEMValues> values = MakeValues();
    values->SetPropertyULONG32("StreamVersion", 0);
    values->SetPropertyULONG32("Duration", duration);
    values->SetPropertyULONG32("RendererFlags", flags);
    values->SetPropertyULONG32("NumPackets", 1);
    values->SetPropertyBuffer("OpaqueData", MakeBuffer(head).get());
    return values;
  }
  // A stream of the layout, whose header brings `head`, on an attached site.
  void Open(UINT32 flags, const Bytes& head, UINT32 duration = 10000) {
    Init();
    EXPECT_EQ(engine->OnHeader(Header(flags, head, duration).get()), ZEM_OK);
    Attach();
  }
  void Attach() {
    damage.SetupDoubleBuffer(engine->GetMediaSize());
    EXPECT_EQ(engine->AttachSite(host.site.get()), ZEM_OK);
  }
  // A whole movie as a non-linear stream.
  void Play(const Bytes& movie, UINT32 duration = 10000) {
    const Bytes head = HeadOf(movie);
    Open(kNonLinear, head, duration);
    Packet(Bytes(movie.begin() + static_cast<long>(head.size()), movie.end()));
  }
  void OpenLinear() { Open(0, author::MovieWriter(100, 80, 12).Finish()); }

  INT32 Packet(const Bytes& bytes, UINT32 time = 0) {
    return engine->OnPacket(MakePacket(bytes, time).get(), 0);
  }
  // Messages of a linear stream.
  INT32 Message(UINT8 head, const author::TagStream& tags, UINT32 time = 0) {
    return Packet(Joined({head}, tags.bytes()), time);
  }
  INT32 Frame(int sequence, UINT8 flags = 0, UINT32 time = 0, const author::TagStream& tags = {}) {
    return Message(static_cast<UINT8>(1 | flags | sequence << 4), tags, time);
  }

  // 0xRRGGBB of the picture.
  UINT32 Pixel(int x, int y) {
    UINT32 word = 0;
    memcpy(&word, damage.UseDoubleBuffer() + (y * damage.m_lWidth + x) * 4, sizeof word);
    return word & 0xFFFFFF;
  }
  bool Logged(const std::string& line) const {
    const std::vector<std::string>& lines = host.log->lines;
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }

  FakeHost host;
  CDamageManager damage;
  struct NoHandler : IOnPacketHandler {
    INT32 OnPacket(IZEMPacket*, INT32) override { return ZEM_OK; }
    INT32 AddLateWriteBuffer(IZEMBuffer*) override { return ZEM_OK; }
  } noHandler;
  CDeScatterizer reassembler{host.factory.get(), &noHandler};
  Ptr<CVexelEngine> engine{new CVexelEngine};
};

}  // namespace vexel::test
