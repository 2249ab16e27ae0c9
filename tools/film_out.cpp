#include "film_out.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>

#include "out_file.h"
#include "png_out.h"
#include "progress.h"
#include "status.h"
#include "worker.h"

namespace vexel::tools {

namespace {

constexpr std::array<std::string_view, 4> kEndings = {".gif", ".apng", ".webm", ".mp4"};
constexpr int32_t kWholeRate = 8;  // bits behind the point of a movie's rate

// The ending without its full stop; empty if it is not that of a film.
std::string_view KindOf(const std::string& path) {
  for (const std::string_view ending : kEndings) {
    if (path.ends_with(ending)) return ending.substr(1);
  }
  return {};
}

// Which frames make the film.
struct Film {
  bool stepped;  // one frame for each step; otherwise by the clock
  FrameRate rate;
  int64_t first;   // of a stepped film: frames before it are passed over
  int64_t fromMs;  // of a film by the clock
  int32_t clockRate;
  int64_t count;
  bool progress;  // is told in any case
};

Film PlanFilm(const MovieFile& movie, const FilmOptions& options) {
  if (movie.rate == 0) throw Failure(kFailed, movie.path, "its rate is 0, so it has no time");
  Film film = {};
  const FrameRate own = FrameRateOfMovie(movie.rate);
  film.rate = options.rate.value_or(own);
  film.stepped = film.rate == own;
  film.clockRate = static_cast<int32_t>(movie.rate >> kWholeRate);
  film.fromMs = options.fromMs;
  film.progress = options.progress;
  const int64_t frames = std::max(movie.frames, 1);
  if (film.stepped) {
    film.first = FramesBefore(film.rate, options.fromMs);
    film.count = (options.toMs ? FramesBefore(film.rate, *options.toMs) : frames) - film.first;
  } else {
    if (film.clockRate == 0)
      throw Failure(kFailed, movie.path,
                    "its rate is below 1, where the player's clock stands still; leave out --fps");
    // The clock counts whole frames a second.
    const int64_t endMs = options.toMs.value_or(FrameStartMs({film.clockRate, 1}, frames));
    film.count = FramesBefore(film.rate, endMs - options.fromMs);
  }
  if (film.count < 1) throw Failure(kMisused, "render", "no frame begins between --from and --to");
  return film;
}

// Brings a player to one frame of a film after the other. The tick clock goes
// along, for movies that look at the time.
void MoveTo(HeadlessPlayer* player, const Film& film, int64_t frame) {
  if (film.stepped) {
    int64_t step = frame == 0 ? 1 : film.first + frame;
    for (; step <= film.first + frame; step++) {
      SetTick(kFirstTick + static_cast<uint32_t>(FrameStartMs(film.rate, step)));
      player->Step(1);
    }
  } else {
    SetTick(kFirstTick + static_cast<uint32_t>(film.fromMs + FrameStartMs(film.rate, frame)));
    const int64_t ms = ClockMs(film.rate, frame, film.fromMs, film.clockRate);
    if (ms >= 0) player->DoPlay(static_cast<uint32_t>(ms));
  }
}

// Plays a film from its beginning; `show` gets each frame, and returns false to
// end the film there.
void PlayFilm(const MovieFile& movie, const ViewOptions& view, const Film& film, const char* what,
              const std::function<bool(const std::vector<uint8_t>&)>& show) {
  HeadlessPlayer player(movie, view);
  const Progress progress(what, film.count, film.progress);
  for (int64_t frame = 0; frame < film.count; frame++) {
    progress.Show(frame);
    MoveTo(&player, film, frame);
    player.Redraw();
    if (!show(RgbOf(&player.bits))) return;
  }
}

}  // namespace

bool IsFilmName(const std::string& path) {
  return !KindOf(path).empty();
}

void WriteFilm(const MovieFile& movie, const ViewOptions& view, const FilmOptions& options,
               const std::string& path) {
  const Film film = PlanFilm(movie, options);
  OutFile out(path);
  const std::string kind(KindOf(path));
  const int32_t width = view.width ? view.width : movie.width;
  const int32_t height = view.width ? view.height : movie.height;
  FedChild child(
      "vexel-export",
      {kind, path, std::to_string(width), std::to_string(height), std::to_string(film.rate.num),
       std::to_string(film.rate.den), std::to_string(film.count)},
      out.stream());
  const auto feed = [&](const std::vector<uint8_t>& rgb) {
    return child.Feed(rgb.data(), rgb.size());
  };
  // One palette serves the whole film, so all colours are looked at before the
  // first frame is packed. Playing twice gives the same pictures twice, and is
  // cheaper than keeping them.
  if (kind == "gif") PlayFilm(movie, view, film, "colours of frame", feed);
  PlayFilm(movie, view, film, "frame", feed);
  const int status = child.Finish();
  if (status != kDone) throw Failure(static_cast<Status>(status));
  out.Commit();
}

}  // namespace vexel::tools
