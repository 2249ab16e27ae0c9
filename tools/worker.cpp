#include "worker.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "status.h"

namespace vexel::tools {

namespace {

// A program beside this one, and its words as exec takes them.
class Command {
 public:
  Command(const std::string& name, const std::vector<std::string>& arguments)
      : words_{name}, argv_() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    path_ = (self.parent_path() / name).string();
    words_.insert(words_.end(), arguments.begin(), arguments.end());
    for (std::string& word : words_) argv_.push_back(word.data());
    argv_.push_back(nullptr);
  }
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  const std::string& path() const { return path_; }
  char* const* argv() { return argv_.data(); }

 private:
  std::string path_;
  std::vector<std::string> words_;
  std::vector<char*> argv_;
};

}  // namespace

void RunWorker(const std::string& name, const std::vector<std::string>& arguments) {
  Command command(name, arguments);
  std::fflush(stdout);
  execv(command.path().c_str(), command.argv());
  throw Failure(kFailed, command.path(), "cannot be run: " + SystemError());
}

int RunChild(const std::string& name, const std::vector<std::string>& arguments) {
  Command command(name, arguments);
  std::fflush(stdout);
  // Signals that this program holds back for itself end the child as usual.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t child = 0;
  errno =
      posix_spawn(&child, command.path().c_str(), nullptr, &attributes, command.argv(), environ);
  posix_spawnattr_destroy(&attributes);
  if (errno != 0) throw Failure(kFailed, command.path(), "cannot be run: " + SystemError());
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw Failure(kFailed, command.path(), SystemError());
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  Warn(name, "ended by signal " + std::to_string(WTERMSIG(status)));
  return kFailed;
}

}  // namespace vexel::tools
