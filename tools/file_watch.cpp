#include "file_watch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "status.h"

namespace vexel::tools {

namespace {

// Programs write a file in several steps; a change counts when nothing has
// followed it for so long.
constexpr int kRestMs = 40;

constexpr uint32_t kChanges = IN_CLOSE_WRITE | IN_MOVED_TO | IN_CREATE | IN_DELETE | IN_MOVED_FROM;

}  // namespace

FileWatch::FileWatch() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGINT);
  sigaddset(&ends, SIGTERM);
  sigprocmask(SIG_BLOCK, &ends, nullptr);
  notify_ = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  signals_ = signalfd(-1, &ends, SFD_CLOEXEC);
  if (notify_ < 0 || signals_ < 0)
    throw Failure(kFailed, "watch", "files cannot be watched: " + SystemError());
}

FileWatch::~FileWatch() {
  if (notify_ >= 0) close(notify_);
  if (signals_ >= 0) close(signals_);
}

void FileWatch::Watch(const std::set<std::string>& files) {
  std::map<std::string, int> folders;
  names_.clear();
  const auto watch = [&](const std::filesystem::path& path) {
    const std::string parent = path.parent_path().string();
    const std::string folder = parent.empty() ? std::string(1, '.') : parent;
    // Again for a folder that is watched gives the same number.
    const int id = inotify_add_watch(notify_, folder.c_str(), kChanges | IN_ONLYDIR);
    if (id < 0 && errno == ENOSPC)
      throw Failure(kFailed, folder, "cannot be watched: " + SystemError());
    if (id < 0) return;  // there is no such folder, and no file in it
    folders[folder] = id;
    names_.emplace(id, path.filename().string());
  };
  for (const std::string& file : files) {
    watch(file);
    // Behind a link the file itself changes.
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(file, error);
    if (!error) watch(real);
  }
  std::set<int> kept;
  for (const auto& [folder, id] : folders) kept.insert(id);
  for (const auto& [folder, id] : folders_) {
    if (kept.count(id) == 0) inotify_rm_watch(notify_, id);
  }
  folders_ = std::move(folders);
}

// Whether any of the events that are there is about a watched file.
bool FileWatch::ReadEvents() {
  alignas(inotify_event) char buffer[16384];
  bool changed = false;
  for (;;) {
    const ssize_t size = read(notify_, buffer, sizeof(buffer));
    if (size <= 0) return changed;
    for (const char* at = buffer; at < buffer + size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(at);
      at += sizeof(*event) + event->len;
      // After lost events, anything may have changed.
      if (event->mask & IN_Q_OVERFLOW) changed = true;
      if (event->len > 0 && names_.count({event->wd, event->name})) changed = true;
    }
  }
}

bool FileWatch::Wait() {
  bool changed = false;
  for (;;) {
    pollfd fds[] = {{notify_, POLLIN, 0}, {signals_, POLLIN, 0}};
    const int ready = poll(fds, 2, changed ? kRestMs : -1);
    if (ready < 0 && errno != EINTR) throw Failure(kFailed, "watch", SystemError());
    if (ready <= 0) {
      if (ready == 0) return true;
      continue;
    }
    if (fds[1].revents) return false;
    if (ReadEvents()) changed = true;
  }
}

}  // namespace vexel::tools
