#include "options.h"

#include "raster/format_table.h"
#include "trace.h"

namespace vexel::tools {

namespace {

bool ParseFormat(const std::string& text, ViewOptions* view) {
  for (int32_t i = 0; i < kPixelFormatCount; i++) {
    if (text == pixelFormats[i].name) {
      view->pixelFormat = i;
      return true;
    }
  }
  return false;
}

}  // namespace

bool ParseQuality(const std::string& text, bool* high) {
  *high = text == "high";
  return *high || text == "low";
}

void AddMovieArgument(CLI::App* verb, std::string* path) {
  verb->add_option("MOVIE", *path, "the movie's file")->required();
}

void AddViewOptions(CLI::App* verb, ViewOptions* view) {
  AddParsed(verb, "--size", "WxH", "WxH, each from 1 to 8191",
            "client rectangle in pixels (the movie's own size)", [=](const std::string& text) {
              return ParseSize(text, kMinBufferSide, kMaxBufferSide, &view->width, &view->height);
            });
  AddParsed(verb, "--quality", "low|high", "low or high", "without or with anti-aliasing (high)",
            [=](const std::string& text) { return ParseQuality(text, &view->highQuality); });
}

void AddFormatOption(CLI::App* verb, ViewOptions* view) {
  std::string names;
  for (const PixelFormatRow& row : pixelFormats) names += std::string(" ") + row.name;
  AddParsed(verb, "--format", "FORMAT", "one of" + names,
            "pixel format of the buffer (pix32):" + names,
            [=](const std::string& text) { return ParseFormat(text, view); });
}

void AddTraceOption(CLI::App* verb, int* kinds) {
  const std::string names = TraceKindNames();
  AddParsed(verb, "--trace", "KINDS", "a list of " + names,
            "tell on standard error of " + names + ", separated by commas",
            [=](const std::string& text) { return ParseTrace(text, kinds); });
}

}  // namespace vexel::tools
