#include "fuzz_player.h"

#include "player/text.h"
#include "raster/color_table.h"

namespace vexel::fuzz {

namespace {

constexpr uint32_t kFirstTick = 1000;
uint32_t g_tick = kFirstTick;

uint32_t Tick() {
  return g_tick;
}

}  // namespace

FuzzPlayer::FuzzPlayer(int32_t format) {
  g_tick = kFirstTick;
  SetTickClock(Tick);
  SColorInfo* palette = nullptr;
  if (format <= pix8) {
    SColorTable table;
    SetStandardColors(&table);
    palette = GetColorInfo(&table);
  }
  if (!bits.CreateBits(format, palette, kViewWidth, kViewHeight)) __builtin_trap();
  ReleaseColorInfo(palette);
  SetCamera(kCameraOnly);
  display.ModifyCamera();
}

FuzzPlayer::~FuzzPlayer() = default;

void FuzzPlayer::Redraw(bool all) {
  if (all) display.InvalidateRect(&display.devViewRect);
  display.Update();
}

void FuzzPlayer::SetQuality(bool high) {
  highQuality = high;
  SetCamera(kCameraShowSoon);
}

void FuzzPlayer::PlayTo(uint32_t ms) {
  g_tick = kFirstTick + ms;
  display.ResetTagBudget();
  DoPlay(ms);
}

}  // namespace vexel::fuzz
