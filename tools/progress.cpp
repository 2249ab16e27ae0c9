#include "progress.h"

#include <unistd.h>

#include <cstdio>

namespace vexel::tools {

Progress::Progress(const char* what, int64_t total)
    : what_(what), total_(total), shown_(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (shown_) std::fprintf(stderr, "\r\033[K");
}

void Progress::Show(int64_t index) const {
  if (!shown_) return;
  std::fprintf(stderr, "\r%s %lld of %lld", what_, static_cast<long long>(index + 1),
               static_cast<long long>(total_));
}

}  // namespace vexel::tools
