// How much of the processor the user grants to drawing.
#pragma once

#include "zem/zem_services.h"

namespace vexel {

// The decimal number that the user set for `key`, 0 for a text that is none,
// and `otherwise` if there is no text. Negative ones wrap.
UINT32 ReadNumber(IZEMPreferences* preferences, const char* key, UINT32 otherwise);

// Percent, from the preferences that `context` answers for: between the least
// and the most that are set (30 and 70 if they are not), by the quality from 0
// to 4 (4). 70 without preferences. Any number may come out, even 0.
UINT32 GetPerformancePercentage(IUnknown* context);

}  // namespace vexel
