// The options that several verbs share, and the reading of their values.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "headless_player.h"
#include "parsed_option.h"

namespace vexel::tools {

// The movie, which each verb of it takes first.
void AddMovieArgument(CLI::App* verb, std::string* path);

// --size and --quality.
void AddViewOptions(CLI::App* verb, ViewOptions* view);

// --format.
void AddFormatOption(CLI::App* verb, ViewOptions* view);

// --trace; `kinds` gets bits of TraceKind.
void AddTraceOption(CLI::App* verb, int* kinds);

// "high" or "low".
bool ParseQuality(const std::string& text, bool* high);

}  // namespace vexel::tools
