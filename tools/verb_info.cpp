// `vexel info`: what a movie says about itself, and what it is made of.
#include <cstdio>
#include <memory>

#include "movie/tags.h"
#include "movie_file.h"
#include "options.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

// 8.8 fixed point as a decimal number: exact, without zeros at its end.
std::string RateText(uint32_t rate) {
  std::string text = std::to_string(rate >> 8);
  uint32_t fraction = rate & 255;
  if (fraction != 0) text += '.';
  for (; fraction != 0; fraction = fraction * 10 & 255) text += std::to_string(fraction * 10 >> 8);
  return text;
}

void PrintInfo(const std::string& path) {
  const MovieFile movie = LoadMovie(path);
  std::printf("version: %d\n", movie.version);
  std::printf("length: %u\n", movie.length);
  std::printf("width: %d\n", movie.width);
  std::printf("height: %d\n", movie.height);
  std::printf("rate: %s\n", RateText(movie.rate).c_str());
  std::printf("frames: %d\n", movie.frames);
  std::printf("tags: %u\n", movie.tagCount);
  for (const auto& [code, count] : movie.tagCounts) {
    const char* name = TagName(code);
    std::printf("tag %d %s %u\n", code, name ? name : "Unknown", count);
  }
  WarnIfEndsEarly(movie);
}

}  // namespace

void AddInfoVerb(CLI::App* app) {
  const auto path = std::make_shared<std::string>();
  CLI::App* verb = app->add_subcommand("info", "print a movie's header and count its tags");
  AddMovieArgument(verb, path.get());
  verb->footer("Example: vexel info clock.vxf");
  verb->callback([=] { PrintInfo(*path); });
}

}  // namespace vexel::tools
