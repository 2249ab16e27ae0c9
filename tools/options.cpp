#include "options.h"

#include <charconv>

#include "raster/format_table.h"
#include "trace.h"

namespace vexel::tools {

namespace {

// "640x480".
bool ParseSize(const std::string& text, ViewOptions* view) {
  const size_t x = text.find('x');
  int64_t width, height;
  if (x == std::string::npos ||
      !ParseNumber(text.substr(0, x), kMinBufferSide, kMaxBufferSide, &width) ||
      !ParseNumber(text.substr(x + 1), kMinBufferSide, kMaxBufferSide, &height))
    return false;
  view->width = static_cast<int32_t>(width);
  view->height = static_cast<int32_t>(height);
  return true;
}

bool ParseFormat(const std::string& text, ViewOptions* view) {
  for (int32_t i = 0; i < kPixelFormatCount; i++) {
    if (text == pixelFormats[i].name) {
      view->pixelFormat = i;
      return true;
    }
  }
  return false;
}

// An option whose value `take` reads; false from it is a wrong command line,
// where a value of the form `form` should stand.
template <class Take>
CLI::Option* AddParsed(CLI::App* verb, const std::string& name, const std::string& type,
                       const std::string& form, const std::string& help, Take take) {
  return verb
      ->add_option_function<std::string>(
          name,
          [=](const std::string& text) {
            if (!take(text)) throw CLI::ValidationError(name, "'" + text + "' is not " + form);
          },
          help)
      ->type_name(type);
}

}  // namespace

bool ParseNumber(const std::string& text, int64_t min, int64_t max, int64_t* out) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, *out);
  return error == std::errc() && stop == end && *out >= min && *out <= max;
}

bool ParseQuality(const std::string& text, bool* high) {
  *high = text == "high";
  return *high || text == "low";
}

void AddMovieArgument(CLI::App* verb, std::string* path) {
  verb->add_option("MOVIE", *path, "the movie's file")->required();
}

void AddViewOptions(CLI::App* verb, ViewOptions* view) {
  AddParsed(verb, "--size", "WxH", "WxH, each from 1 to 8191",
            "client rectangle in pixels (the movie's own size)",
            [=](const std::string& text) { return ParseSize(text, view); });
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

CLI::Option* AddNumberOption(CLI::App* verb, const std::string& name, const std::string& type,
                             int64_t min, int64_t max, int64_t* out, const std::string& help) {
  return AddParsed(verb, name, type,
                   "a number from " + std::to_string(min) + " to " + std::to_string(max), help,
                   [=](const std::string& text) { return ParseNumber(text, min, max, out); });
}

}  // namespace vexel::tools
