// A movie as a film that other programs play: .gif, .apng, .webm or .mp4. The
// frames are drawn here; `vexel-export` packs them.
#pragma once

#include <optional>
#include <string>

#include "film_times.h"
#include "headless_player.h"

namespace vexel::tools {

struct FilmOptions {
  // Left out: the movie's own rate, a frame for each step. Otherwise the
  // pictures that the player's clock shows at these times.
  std::optional<FrameRate> rate;
  int64_t fromMs = 0;
  std::optional<int64_t> toMs;  // exclusive; left out: where the movie's last frame ends
  bool progress = false;        // is told without a terminal, too
};

// Whether the ending of a name is that of a film.
bool IsFilmName(const std::string& path);

// Writes a film. Throws Failure, and leaves no half-written file.
void WriteFilm(const MovieFile& movie, const ViewOptions& view, const FilmOptions& options,
               const std::string& path);

}  // namespace vexel::tools
