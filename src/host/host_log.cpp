#include "host/host_log.h"

#include <stdarg.h>
#include <stdio.h>

namespace vexel {
namespace {

constexpr UINT8 kSeverity = 7;  // information
constexpr size_t kTextSize = 2048;

}  // namespace

void LogReport(IZEMErrorMessages* log, UINT32 userCode, const char* format, ...) {
  if (!log) return;
  char text[kTextSize];
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  if (length < 0) text[0] = 0;
  log->Report(kSeverity, 0, userCode, text, nullptr);
}

}  // namespace vexel
