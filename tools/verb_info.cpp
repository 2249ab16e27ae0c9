// `vexel info`: what a movie says about itself, and what it is made of.
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

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

const char* NameOf(int32_t code) {
  const char* name = TagName(code);
  return name ? name : "Unknown";
}

void PrintJson(const MovieFile& movie) {
  nlohmann::ordered_json info = {
      {"version", movie.version},   {"length", movie.length},
      {"width", movie.width},       {"height", movie.height},
      {"rate", movie.rate / 256.0}, {"frames", movie.frames},
      {"tags", movie.tagCount},     {"counts", nlohmann::ordered_json::array()},
  };
  for (const auto& [code, count] : movie.tagCounts) {
    info["counts"].push_back({{"code", code}, {"name", NameOf(code)}, {"count", count}});
  }
  std::printf("%s\n", info.dump().c_str());
}

void PrintText(const MovieFile& movie) {
  std::printf("version: %d\n", movie.version);
  std::printf("length: %u\n", movie.length);
  std::printf("width: %d\n", movie.width);
  std::printf("height: %d\n", movie.height);
  std::printf("rate: %s\n", RateText(movie.rate).c_str());
  std::printf("frames: %d\n", movie.frames);
  std::printf("tags: %u\n", movie.tagCount);
  for (const auto& [code, count] : movie.tagCounts) {
    std::printf("tag %d %s %u\n", code, NameOf(code), count);
  }
}

void PrintInfo(const std::string& path, bool json) {
  const MovieFile movie = LoadMovie(path);
  if (json) {
    PrintJson(movie);
  } else {
    PrintText(movie);
  }
  WarnIfEndsEarly(movie);
}

}  // namespace

void AddInfoVerb(CLI::App* app) {
  const auto path = std::make_shared<std::string>();
  CLI::App* verb = AddVerb(app, "info", "print a movie's header and count its tags");
  const auto json = std::make_shared<bool>(false);
  AddMovieArgument(verb, path.get());
  AddFlag(verb, "--json", json.get(), "print one object of JSON");
  SetFooter(verb, "Example: vexel info clock.vxf");
  SetRun(verb, [=] { PrintInfo(*path, *json); });
}

}  // namespace vexel::tools
