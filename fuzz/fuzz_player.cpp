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

// Kept from input to input: its inverse table is the slowest part of a run.
SColorInfo* StandardPalette() {
  static SColorInfo* const palette = [] {
    SColorTable table;
    SetStandardColors(&table);
    return GetColorInfo(&table);
  }();
  return palette;
}

}  // namespace

FuzzPlayer::FuzzPlayer(int32_t format) {
  g_tick = kFirstTick;
  SetTickClock(Tick);
  SColorInfo* palette = format <= pix8 ? StandardPalette() : nullptr;
  if (!bits.CreateBits(format, palette, kViewWidth, kViewHeight)) __builtin_trap();
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
