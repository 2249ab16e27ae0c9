#include "status.h"

#include <cerrno>
#include <cstdio>
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

}  // namespace vexel::tools
