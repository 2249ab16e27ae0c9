// Options whose values are read here, with one way to refuse a wrong one.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// Its header is large, and those who only add options do without.
namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace vexel::tools {

// An option whose value `take` reads; false from it is a wrong command line,
// where a value of the form `form` should stand.
CLI::Option* AddParsed(CLI::App* verb, const std::string& name, const std::string& type,
                       const std::string& form, const std::string& help,
                       std::function<bool(const std::string&)> take);

// Adds an option that takes a number from `min` to `max`, which the help calls
// `type`.
CLI::Option* AddNumberOption(CLI::App* verb, const std::string& name, const std::string& type,
                             int64_t min, int64_t max, int64_t* out, const std::string& help);

}  // namespace vexel::tools
