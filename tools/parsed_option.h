// Options whose values are read here, with one way to refuse a wrong one.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>

namespace vexel::tools {

// A whole decimal number with an optional minus sign, nothing else around it.
bool ParseNumber(const std::string& text, int64_t min, int64_t max, int64_t* out);
// "640x480", both from `min` to `max`.
bool ParseSize(const std::string& text, int64_t min, int64_t max, int32_t* width, int32_t* height);

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

// Adds an option that takes a number from `min` to `max`, which the help calls
// `type`.
CLI::Option* AddNumberOption(CLI::App* verb, const std::string& name, const std::string& type,
                             int64_t min, int64_t max, int64_t* out, const std::string& help);

}  // namespace vexel::tools
