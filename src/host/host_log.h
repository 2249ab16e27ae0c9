// Reports to the client's log.
#pragma once

#include "zem/zem_services.h"

namespace vexel {

// User codes: what changes a state, and what comes at the rate of packets and
// time syncs.
constexpr UINT32 kLogState = 14;
constexpr UINT32 kLogRate = 15;

// Makes the text as printf does, cuts it to 2047 characters and reports it with
// severity 7. Without a log, nothing is done. Numbers of 32 bits are to be cast
// to what the format says.
void LogReport(IZEMErrorMessages* log, UINT32 userCode, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

}  // namespace vexel
