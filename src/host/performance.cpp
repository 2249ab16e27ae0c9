#include "host/performance.h"

#include <stdlib.h>
#include <string.h>

#include "base/ref.h"
#include "host/held.h"

namespace vexel {
namespace {

constexpr UINT32 kMost = 70, kLeast = 30, kQuality = 4;

// Longer texts are no numbers of use.
constexpr UINT32 kTextSize = 32;

}  // namespace

UINT32 ReadNumber(IZEMPreferences* preferences, const char* key, UINT32 otherwise) {
  Held<IZEMBuffer> value;
  if (preferences->ReadPref(key, value.Out()) < 0 || !value) return otherwise;
  UINT8* data = nullptr;
  UINT32 size = 0;
  if (value->Get(data, size) < 0 || !data) return otherwise;
  char text[kTextSize];
  if (size > kTextSize - 1) size = kTextSize - 1;
  memcpy(text, data, size);
  text[size] = 0;  // the buffer may lack its own
  return static_cast<UINT32>(strtol(text, nullptr, 10));
}

UINT32 GetPerformancePercentage(IUnknown* context) {
  Held<IZEMPreferences> preferences;
  if (QueryAndReplace(context, IID_IZEMPreferences, preferences.Out()) < 0) return kMost;
  const UINT32 most = ReadNumber(preferences.Get(), "KestVexelDrawingMax", kMost);
  const UINT32 least = ReadNumber(preferences.Get(), "KestVexelDrawingMin", kLeast);
  const UINT32 quality = ReadNumber(preferences.Get(), "Quality", kQuality);
  return least + (((most - least) * quality) >> 2);
}

}  // namespace vexel
