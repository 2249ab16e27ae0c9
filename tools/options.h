// The options that several verbs share, and the reading of their values.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "headless_player.h"

namespace vexel::tools {

// The movie, which each verb of it takes first.
void AddMovieArgument(CLI::App* verb, std::string* path);

// --size and --quality.
void AddViewOptions(CLI::App* verb, ViewOptions* view);

// --format.
void AddFormatOption(CLI::App* verb, ViewOptions* view);

// --trace; `kinds` gets bits of TraceKind.
void AddTraceOption(CLI::App* verb, int* kinds);

// A whole decimal number with an optional minus sign, nothing else around it.
bool ParseNumber(const std::string& text, int64_t min, int64_t max, int64_t* out);

// "high" or "low".
bool ParseQuality(const std::string& text, bool* high);

// Adds an option that takes a number from `min` to `max`, which the help calls
// `type`.
CLI::Option* AddNumberOption(CLI::App* verb, const std::string& name, const std::string& type,
                             int64_t min, int64_t max, int64_t* out, const std::string& help);

}  // namespace vexel::tools
