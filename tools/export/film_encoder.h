// Packs frames and writes them to standard output, by FFmpeg.
#pragma once

#include <string>

#include "export/av.h"
#include "export/film_kind.h"
#include "film_times.h"

namespace vexel::tools {

struct FilmForm {
  std::string name;  // of the film, for messages
  int32_t width;     // pixels, of what is packed
  int32_t height;
  FrameRate rate;
  AVRational tick;  // of all times given, seconds
};

class FilmEncoder {
 public:
  // `kind` must outlive this. Throws Failure, as all of these do.
  FilmEncoder(const FilmKind& kind, const FilmForm& form);

  // A frame of the kind's format and the form's size. `start` and `length` in
  // ticks; a coder that holds frames back wants the same length for all.
  void Add(AVFrame* frame, int64_t start, int64_t length);

  // Writes what was held back, and the end.
  void Finish();

 private:
  void OpenCoder(const FilmForm& form);
  void OpenFile();
  void Send(const AVFrame* frame);
  void Check(int result) const;
  [[noreturn]] void FailFor(const char* what, const char* name, const char* library,
                            unsigned version) const;

  const FilmKind& kind_;
  std::string name_;
  Av<AVCodecContext> coder_;
  Av<AVFormatContext> file_;
  Av<AVPacket> packet_;
  AVStream* stream_ = nullptr;  // the file's
  int64_t length_ = 0;
};

}  // namespace vexel::tools
