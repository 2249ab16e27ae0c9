#include "status.h"

#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>

namespace vexel::tools {

void Warn(const std::string& where, const std::string& what) {
  // Results go first, so that a terminal shows both in order.
  std::fflush(stdout);
  std::fprintf(stderr, "vexel: %s: %s\n", where.c_str(), what.c_str());
}

std::string SystemError() {
  return std::generic_category().message(errno);
}

int RunProgram(const std::function<int()>& run) {
  int status = kDone;
  try {
    status = run();
  } catch (const Failure& failure) {
    std::fflush(stdout);
    if (*failure.what() != 0) std::fprintf(stderr, "%s\n", failure.what());
    status = failure.status();
  } catch (const std::bad_alloc&) {
    Warn("memory", "not enough");
    status = kFailed;
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    Warn("standard output", "cannot be written: " + SystemError());
    if (status == kDone) status = kFailed;
  }
  return status;
}

}  // namespace vexel::tools
