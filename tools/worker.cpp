#include "worker.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include "installation.h"
#include "status.h"

namespace vexel::tools {

namespace {

// A program of ours, and its words as exec takes them.
class Command {
 public:
  Command(const std::string& name, const std::vector<std::string>& arguments)
      : path_(ProgramPath(name)), words_{name}, argv_() {
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

// Starts a program; of the two descriptors those that are not negative become
// its standard input and output.
pid_t Start(Command* command, int input, int output) {
  std::fflush(stdout);
  // Signals that this program holds back or passes over for itself end the
  // child as usual.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  sigaddset(&signals, SIGPIPE);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (input >= 0) posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  if (output >= 0) posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  pid_t child = 0;
  errno =
      posix_spawn(&child, command->path().c_str(), &actions, &attributes, command->argv(), environ);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  if (errno != 0) throw Failure(kFailed, command->path(), "cannot be run: " + SystemError());
  return child;
}

int WaitFor(const std::string& name, pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw Failure(kFailed, name, SystemError());
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  Warn(name, "ended by signal " + std::to_string(WTERMSIG(status)));
  return kFailed;
}

}  // namespace

void RunWorker(const std::string& name, const std::vector<std::string>& arguments) {
  Command command(name, arguments);
  std::fflush(stdout);
  execv(command.path().c_str(), command.argv());
  throw Failure(kFailed, command.path(), "cannot be run: " + SystemError());
}

int RunChild(const std::string& name, const std::vector<std::string>& arguments) {
  Command command(name, arguments);
  return WaitFor(name, Start(&command, -1, -1));
}

FedChild::FedChild(const std::string& name, const std::vector<std::string>& arguments,
                   std::FILE* output)
    : name_(name) {
  // A program that has ended early is told of by its status.
  std::signal(SIGPIPE, SIG_IGN);
  Command command(name, arguments);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw Failure(kFailed, name, "cannot be run: " + SystemError());
  input_ = ends[1];
  try {
    child_ = Start(&command, ends[0], fileno(output));
  } catch (const Failure&) {
    close(ends[0]);
    close(ends[1]);
    throw;
  }
  close(ends[0]);
}

FedChild::~FedChild() {
  if (child_ == 0) return;
  close(input_);
  while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) continue;
}

bool FedChild::Feed(const void* data, size_t size) {
  const char* at = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t done = write(input_, at, size);
    if (done < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    at += done;
    size -= static_cast<size_t>(done);
  }
  return true;
}

int FedChild::Finish() {
  close(input_);
  return WaitFor(name_, std::exchange(child_, 0));
}

}  // namespace vexel::tools
