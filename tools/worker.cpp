#include "worker.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "status.h"

namespace vexel::tools {

void RunWorker(const std::string& name, const std::vector<std::string>& arguments) {
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  std::string worker = (self.parent_path() / name).string();
  std::string shown = name;
  std::vector<std::string> words = arguments;
  std::vector<char*> argv = {shown.data()};
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  std::fflush(stdout);
  execv(worker.c_str(), argv.data());
  throw Failure(kFailed, worker, "cannot be run: " + SystemError());
}

}  // namespace vexel::tools
