#include "out_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "status.h"

namespace vexel::tools {

namespace {

constexpr mode_t kMode = 0666;  // cut by the umask

constexpr std::array kEndSignals = {SIGHUP, SIGINT, SIGTERM};

// What a signal takes away: a handler can ask for no memory. One file at a
// time, as these programs write; a second one goes unguarded.
char g_guarded[PATH_MAX] = "";

void RemoveAndEnd(int signal) {
  unlink(g_guarded);
  // The program ends by the same signal, as soon as the handler returns.
  std::signal(signal, SIG_DFL);
  raise(signal);
}

// Signals that the program passes over or takes itself are left to it.
void SetGuard(void (*from)(int), void (*to)(int)) {
  for (const int signal : kEndSignals) {
    struct sigaction now;
    if (sigaction(signal, nullptr, &now) == 0 && (now.sa_flags & SA_SIGINFO) == 0 &&
        now.sa_handler == from)
      std::signal(signal, to);
  }
}

void Guard(const std::string& path) {
  if (*g_guarded != 0 || path.size() >= sizeof g_guarded) return;
  std::memcpy(g_guarded, path.c_str(), path.size() + 1);
  SetGuard(SIG_DFL, RemoveAndEnd);
}

void Unguard(const std::string& path) {
  if (path != g_guarded) return;
  SetGuard(RemoveAndEnd, SIG_DFL);
  *g_guarded = 0;
}

// Where a link leads, so that the file behind it is replaced and not the link.
std::string ResolveLink(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                         std::free);
  return real ? real.get() : path;
}

}  // namespace

OutFile::OutFile(const std::string& path) : path_(path) {
  struct stat info;
  const bool exists = stat(path.c_str(), &info) == 0;
  int file;
  if (exists && S_ISDIR(info.st_mode)) {
    errno = EISDIR;
    file = -1;
  } else if (exists && !S_ISREG(info.st_mode)) {
    file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  } else if (exists && access(path.c_str(), W_OK) != 0) {
    file = -1;
  } else {
    path_ = ResolveLink(path);
    partPath_ = path_ + "." + std::to_string(getpid()) + ".part";
    file = open(partPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    if (file < 0) {
      partPath_.clear();
    } else {
      Guard(partPath_);
    }
  }
  if (file < 0 || (stream_ = fdopen(file, "wb")) == nullptr) {
    const std::string why = SystemError();
    if (file >= 0) close(file);
    Drop();
    throw Failure(kFailed, path, "cannot be written: " + why);
  }
}

OutFile::~OutFile() {
  Drop();
}

void OutFile::Commit() {
  const bool flushed = std::fflush(stream_) == 0 && std::ferror(stream_) == 0;
  if (!flushed) Fail(SystemError());
  std::FILE* stream = stream_;
  stream_ = nullptr;
  if (std::fclose(stream) != 0) Fail(SystemError());
  if (partPath_.empty()) return;
  if (std::rename(partPath_.c_str(), path_.c_str()) != 0) Fail(SystemError());
  Unguard(partPath_);
  partPath_.clear();
}

void OutFile::Drop() {
  if (stream_) std::fclose(stream_);
  stream_ = nullptr;
  if (partPath_.empty()) return;
  unlink(partPath_.c_str());
  Unguard(partPath_);
  partPath_.clear();
}

void OutFile::Fail(const std::string& what) {
  Drop();
  throw Failure(kFailed, path_, "cannot be written: " + what);
}

void WriteWholeFile(const std::string& path, const void* data, size_t size) {
  OutFile out(path);
  std::fwrite(data, 1, size, out.stream());
  out.Commit();
}

}  // namespace vexel::tools
