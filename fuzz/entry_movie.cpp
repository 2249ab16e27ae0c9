// One movie through all that a player can be asked. How the bytes are cut and
// which pixel format is drawn follow from the bytes themselves, so that the
// file of a failing input is a plain movie.
#include <algorithm>

#include "entries.h"
#include "fuzz_player.h"

namespace vexel::fuzz {

namespace {

// Longer movies cost time and find nothing new.
constexpr size_t kMaxBytes = 1 << 18;

uint32_t HashBytes(const uint8_t* data, size_t size) {
  uint32_t hash = 2166136261u;
  for (size_t i = 0; i < size; ++i) hash = (hash ^ data[i]) * 16777619u;
  return hash;
}

uint32_t NextLot(uint32_t* state) {
  *state = *state * 1664525u + 1013904223u;
  return *state >> 8;
}

void Push(FuzzPlayer* player, const uint8_t* data, size_t size, uint32_t* lots) {
  // Whole, in a few pieces, or in many small ones.
  const size_t pieces = size_t(1) << (NextLot(lots) % 3 * 4);
  const size_t most = std::max<size_t>(1, 2 * size / pieces);
  while (size > 0) {
    const size_t n = std::min<size_t>(size, 1 + NextLot(lots) % most);
    player->PushDataBuf(data, static_cast<int32_t>(n));
    player->PushDataComplete();
    data += n;
    size -= n;
  }
}

// Sprites that hold themselves fill the budgets, and every step then costs a
// second. One picture of such a movie is enough.
constexpr int32_t kCrowd = 3000;

bool Crowded(const FuzzPlayer& player) {
  return player.display.objectCount > kCrowd || player.display.edgeCount > 10 * kCrowd;
}

}  // namespace

void FuzzMovie(const uint8_t* data, size_t size) {
  if (size > kMaxBytes) return;
  uint32_t lots = HashBytes(data, size);
  const bool odd = NextLot(&lots) % 4 == 0;
  FuzzPlayer player(odd ? static_cast<int32_t>(NextLot(&lots) % (pix32A + 1)) : pix32);
  Push(&player, data, size, &lots);
  player.Redraw(true);
  if (Crowded(player)) return;
  player.PlayTo(120);
  player.Redraw();
  if (Crowded(player)) return;
  player.PlayTo(900);
  player.SetQuality(false);
  player.Redraw(true);
  player.display.ResetTagBudget();
  player.GotoFrame(static_cast<int32_t>(NextLot(&lots) % 8));
  player.Redraw();
  player.display.ResetTagBudget();
  player.GotoFrame(0);
  player.Run();
  player.SetQuality(true);
  player.Zoom(50);
  player.FreeCache();
  player.Redraw();
  player.PlayTo(1400);
  player.Redraw();
}

}  // namespace vexel::fuzz
