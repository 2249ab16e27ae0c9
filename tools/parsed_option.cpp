#include "parsed_option.h"

#include <CLI/CLI.hpp>

#include "parsed_text.h"

namespace vexel::tools {

CLI::Option* AddParsed(CLI::App* verb, const std::string& name, const std::string& type,
                       const std::string& form, const std::string& help,
                       std::function<bool(const std::string&)> take) {
  return verb
      ->add_option_function<std::string>(
          name,
          [=](const std::string& text) {
            if (!take(text)) throw CLI::ValidationError(name, "'" + text + "' is not " + form);
          },
          help)
      ->type_name(type);
}

CLI::Option* AddNumberOption(CLI::App* verb, const std::string& name, const std::string& type,
                             int64_t min, int64_t max, int64_t* out, const std::string& help) {
  return AddParsed(verb, name, type,
                   "a number from " + std::to_string(min) + " to " + std::to_string(max), help,
                   [=](const std::string& text) { return ParseNumber(text, min, max, out); });
}

}  // namespace vexel::tools
