// `vexel-export KIND NAME WIDTH HEIGHT NUM DEN COUNT`: packs COUNT pictures from
// standard input as a film of NUM/DEN frames a second, on standard output; a
// GIF's pictures come twice. The work of `vexel render` for films. A program of
// its own, so that FFmpeg's licence stays here.
#include <csignal>
#include <cstdio>
#include <new>

#include "export/film_encoder.h"
#include "export/film_pictures.h"
#include "export/gif_palette.h"
#include "export/gif_times.h"
#include "parsed_text.h"
#include "status.h"

namespace vexel::tools {

namespace {

constexpr int64_t kMaxSide = 8191;

struct Job {
  const FilmKind* kind;
  std::string name;
  int32_t width;
  int32_t height;
  FrameRate rate;
  int64_t count;
};

Job ReadJob(int argc, char** argv) {
  int64_t width, height, num, den, count;
  if (argc != 8 || !ParseNumber(argv[3], 1, kMaxSide, &width) ||
      !ParseNumber(argv[4], 1, kMaxSide, &height) || !ParseNumber(argv[5], 1, kMaxRateTerm, &num) ||
      !ParseNumber(argv[6], 1, kMaxRateTerm, &den) || !ParseNumber(argv[7], 1, INT64_MAX, &count))
    throw Failure(kMisused, "vexel-export", "takes KIND NAME WIDTH HEIGHT NUM DEN COUNT");
  const FilmKind* kind = FindFilmKind(argv[1]);
  if (!kind) throw Failure(kMisused, argv[1], "is no kind of film");
  return {kind,
          argv[2],
          static_cast<int32_t>(width),
          static_cast<int32_t>(height),
          {static_cast<int32_t>(num), static_cast<int32_t>(den)},
          count};
}

// The pictures as they come in.
class Input {
 public:
  explicit Input(const Job& job)
      : pixels_(static_cast<size_t>(job.width) * static_cast<size_t>(job.height)),
        rgb_(3 * pixels_) {}

  const uint8_t* Next() {
    // Who feeds us tells why it stopped.
    if (std::fread(rgb_.data(), 1, rgb_.size(), stdin) != rgb_.size()) throw Failure(kFailed);
    return rgb_.data();
  }
  size_t pixels() const { return pixels_; }

 private:
  size_t pixels_;
  std::vector<uint8_t> rgb_;
};

void PackGif(const Job& job) {
  Input input(job);
  FilmPictures pictures(*job.kind, job.width, job.height);
  GifTimes times(job.rate, job.count);
  FilmEncoder encoder(*job.kind, {job.name, job.width, job.height, job.rate, {1, 100}});
  ColorCount colors;
  for (int64_t i = 0; i < job.count; i++) colors.Add(input.Next(), input.pixels());
  pictures.SetPalette(colors.Choose());
  for (int64_t i = 0; i < job.count; i++) {
    const uint8_t* rgb = input.Next();
    if (const std::optional<GifTime> time = times.Next())
      encoder.Add(pictures.Take(rgb), time->start, time->length);
  }
  encoder.Finish();
}

void Pack(const Job& job) {
  Input input(job);
  FilmPictures pictures(*job.kind, job.width, job.height);
  FilmEncoder encoder(*job.kind,
                      {job.name, pictures.width(), pictures.height(), job.rate, {1, job.rate.num}});
  for (int64_t i = 0; i < job.count; i++)
    encoder.Add(pictures.Take(input.Next()), i * job.rate.den, job.rate.den);
  encoder.Finish();
}

}  // namespace

}  // namespace vexel::tools

int main(int argc, char** argv) {
  using namespace vexel::tools;
  // A file that grows too large is an error of writing like others.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    const Job job = ReadJob(argc, argv);
    if (job.kind->format == AV_PIX_FMT_PAL8) {
      PackGif(job);
    } else {
      Pack(job);
    }
  } catch (const Failure& failure) {
    if (*failure.what() != 0) std::fprintf(stderr, "%s\n", failure.what());
    return failure.status();
  } catch (const std::bad_alloc&) {
    Warn("memory", "not enough");
    return kFailed;
  }
  return kDone;
}
