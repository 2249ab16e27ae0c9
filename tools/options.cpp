#include "options.h"

#include <CLI/CLI.hpp>

#include "parsed_option.h"
#include "parsed_text.h"
#include "raster/format_table.h"
#include "trace.h"
#include "worker.h"

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

CLI::App* AddVerb(CLI::App* app, const std::string& name, const std::string& help) {
  return app->add_subcommand(name, help);
}

void SetFooter(CLI::App* verb, const std::string& text) {
  verb->footer(text);
}

void SetRun(CLI::App* verb, std::function<void()> run) {
  verb->callback(std::move(run));
}

void AddProgramVerb(CLI::App* app, const std::string& name, const std::string& help,
                    const std::string& program) {
  CLI::App* verb = AddVerb(app, name, help);
  verb->prefix_command();
  verb->set_help_flag();
  verb->callback([=] { RunWorker(program, verb->remaining()); });
}

CLI::Option* AddText(CLI::App* verb, const std::string& name, const std::string& type,
                     std::string* text, const std::string& help) {
  CLI::Option* option = verb->add_option(name, *text, help);
  return type.empty() ? option : option->type_name(type);
}

CLI::Option* AddNeededText(CLI::App* verb, const std::string& name, const std::string& type,
                           std::string* text, const std::string& help) {
  return AddText(verb, name, type, text, help)->required();
}

CLI::Option* AddFlag(CLI::App* verb, const std::string& name, bool* flag, const std::string& help) {
  return verb->add_flag(name, *flag, help);
}

void Exclude(CLI::Option* option, std::initializer_list<CLI::Option*> others) {
  for (CLI::Option* other : others) option->excludes(other);
}

bool IsGiven(const CLI::Option* option) {
  return option->count() > 0;
}

std::string NameOf(const CLI::Option* option) {
  return option->get_name();
}

void AddFolderOption(CLI::App* verb, std::vector<std::string>* folders) {
  verb->add_option("-I", *folders, "look for files here too, after the text's own folder")
      ->type_name("FOLDER")
      ->allow_extra_args(false);
}

void AddMovieArgument(CLI::App* verb, std::string* path) {
  AddNeededText(verb, "MOVIE", "", path, "the movie's file");
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
