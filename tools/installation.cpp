#include "installation.h"

#include <filesystem>
#include <initializer_list>

namespace vexel::tools {

namespace {

// Where this program is; the root where the system does not say, for a program
// of that name in the working folder may be anybody's.
std::filesystem::path SelfFolder() {
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? "/" : self.parent_path();
}

// The first of the places that holds something, else the first of all. Places
// are told from this program's folder.
std::string FirstOf(std::initializer_list<std::string> places) {
  const std::filesystem::path folder = SelfFolder();
  std::error_code error;
  const auto path = [&](const std::string& place) { return (folder / place).lexically_normal(); };
  for (const std::string& place : places) {
    if (std::filesystem::exists(path(place), error)) return path(place).string();
  }
  return path(*places.begin()).string();
}

}  // namespace

std::string ProgramPath(const std::string& name) {
  return FirstOf({name, "../libexec/vexel/" + name, "../../bin/" + name});
}

std::string PluginPath() {
  return FirstOf({"../lib/vexel.so", "../lib/vexel/vexel.so", "../../lib/vexel/vexel.so"});
}

}  // namespace vexel::tools
