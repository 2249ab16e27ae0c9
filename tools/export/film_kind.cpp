#include "film_kind.h"

namespace vexel::tools {

namespace {

// Drawn areas show every ring and block of a low rate, so quality goes before
// size. Films repeat for ever where the kind can tell.
const FilmKind kKinds[] = {
    {"gif", "gif", "gif", "GIF", AV_PIX_FMT_PAL8, false, false, {}, {{"loop", "0"}}},
    {"apng", "apng", "apng", "APNG", AV_PIX_FMT_RGB24, false, false, {}, {{"plays", "0"}}},
    {"webm",
     "webm",
     "libvpx-vp9",
     "VP9",
     AV_PIX_FMT_YUV420P,
     false,
     false,
     {{"crf", "24"}, {"b", "0"}, {"deadline", "good"}, {"cpu-used", "2"}, {"row-mt", "1"}},
     {}},
    {"mp4",
     "mp4",
     "libx264",
     "H.264",
     AV_PIX_FMT_YUV420P,
     true,
     true,
     {{"crf", "18"}, {"preset", "medium"}, {"tune", "animation"}},
     // What players need first stands first.
     {{"movflags", "+faststart"}}},
};

}  // namespace

const FilmKind* FindFilmKind(const std::string& name) {
  for (const FilmKind& kind : kKinds) {
    if (name == kind.name) return &kind;
  }
  return nullptr;
}

}  // namespace vexel::tools
