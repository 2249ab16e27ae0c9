#include "progress.h"

#include <unistd.h>

#include <cstdio>

namespace vexel::tools {

Progress::Progress(const char* what, int64_t total, bool always)
    : what_(what),
      total_(total),
      terminal_(isatty(STDERR_FILENO) != 0),
      lines_(always && !terminal_) {}

Progress::~Progress() {
  if (terminal_) std::fprintf(stderr, "\r\033[K");
}

void Progress::Show(int64_t index) const {
  if (!terminal_ && !lines_) return;
  std::fprintf(stderr, lines_ ? "%s %lld of %lld\n" : "\r%s %lld of %lld", what_,
               static_cast<long long>(index + 1), static_cast<long long>(total_));
}

}  // namespace vexel::tools
