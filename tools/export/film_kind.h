// The kinds of films: which container, which encoder, how it is set.
#pragma once

#include <string>
#include <vector>

extern "C" {
#include <libavutil/pixfmt.h>
}

namespace vexel::tools {

struct FilmSetting {
  const char* name;
  const char* value;
};

struct FilmKind {
  const char* name;     // the ending of the file's name
  const char* muxer;    // as FFmpeg calls it
  const char* encoder;  // as FFmpeg calls it
  const char* codec;    // for messages
  AVPixelFormat format;
  bool evenSides;  // wants an even width and height
  bool seeks;      // goes back in the file at its end
  std::vector<FilmSetting> encoderSettings;
  std::vector<FilmSetting> muxerSettings;
};

// Null for a name that is none.
const FilmKind* FindFilmKind(const std::string& name);

}  // namespace vexel::tools
