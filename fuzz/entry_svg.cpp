// The importer on vector art, as the command calls it. What it accepts must be
// a movie of its declared length that a player can show.
#include "author/importers.h"
#include "entries.h"
#include "fuzz_player.h"

namespace vexel::fuzz {

void FuzzSvg(const uint8_t* data, size_t size) {
  if (size > (1 << 16)) return;
  const author::ImportResult result = author::ImportArt(author::ArtKind::kSvg, data, size);
  if (!result.ok) {
    if (result.error.empty() || !result.movie.empty()) __builtin_trap();
    return;
  }
  FuzzPlayer player;
  player.PushDataBuf(result.movie.data(), static_cast<int32_t>(result.movie.size()));
  player.PushDataComplete();
  if (!player.IsComplete() || player.scriptLen != static_cast<int32_t>(result.movie.size())) {
    __builtin_trap();
  }
  player.Redraw(true);
}

}  // namespace vexel::fuzz
