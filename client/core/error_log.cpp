#include "client/core/error_log.h"

#include <cstdio>

namespace vexel::client {

std::string ReportLine(const LogReport& report) {
  std::string line =
      "severity " + std::to_string(report.severity) + ", code " + std::to_string(report.userCode);
  if (report.result != 0) {
    char result[16];
    std::snprintf(result, sizeof result, ", 0x%08X", report.result);
    line += result;
  }
  line += ": " + report.text;
  if (!report.moreInfo.empty()) line += " (" + report.moreInfo + ")";
  // Texts may hold what a movie wrote: one report stays one line.
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = ' ';
  }
  return line;
}

INT32 ErrorLog::Report(UINT8 severity, UINT32 result, UINT32 userCode, const char* text,
                       const char* moreInfo) {
  take_({severity, result, userCode, text ? text : "", moreInfo ? moreInfo : ""});
  return ZEM_OK;
}

}  // namespace vexel::client
