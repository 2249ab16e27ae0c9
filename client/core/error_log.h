// The plug-in's reports, as lines of a log.
#pragma once

#include <functional>
#include <string>

#include "client/core/object.h"

namespace vexel::client {

struct LogReport {
  int severity;       // 0 the worst, 7 information
  uint32_t result;    // a result of an operation, 0 for none
  uint32_t userCode;  // 14 a change of state, 15 at the rate of packets
  std::string text;
  std::string moreInfo;
};

// "severity 7, code 14: TEXT (MORE)", with the result if there is one.
std::string ReportLine(const LogReport& report);

class ErrorLog : public Object<IZEMErrorMessages> {
 public:
  explicit ErrorLog(std::function<void(const LogReport&)> take) : take_(std::move(take)) {}
  INT32 Report(UINT8 severity, UINT32 result, UINT32 userCode, const char* text,
               const char* moreInfo) override;

 private:
  std::function<void(const LogReport&)> take_;
};

}  // namespace vexel::client
