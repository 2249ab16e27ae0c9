// What the library exports.
#include <new>

#include "base/dll_access_path.h"
#include "base/ref.h"
#include "host/vexel_renderer.h"
#include "zem/zem.h"

#define ZEM_EXPORT __attribute__((visibility("default")))

namespace vexel {
namespace {

// Where the client's libraries lie: one for the library, made and destroyed with
// it.
DLLAccessPath* GetDLLAccessPath() {
  static DLLAccessPath paths;
  return &paths;
}

}  // namespace
}  // namespace vexel

extern "C" ZEM_EXPORT INT32 ZEMCreateInstance(IUnknown** out) {
  if (!out) return ZEM_BAD_ARGUMENT;
  *out = nullptr;
  vexel::CVexelRenderer* renderer = new (std::nothrow) vexel::CVexelRenderer;
  if (!renderer) return ZEM_OUT_OF_MEMORY;
  void* unknown = nullptr;
  const INT32 result = renderer->QueryInterface(IID_IUnknown, &unknown);
  *out = static_cast<IZEMPlugin*>(unknown);
  return result;
}

extern "C" ZEM_EXPORT INT32 SetDLLAccessPath(const char* entries) {
  return vexel::GetDLLAccessPath()->SetAccessPaths(entries);
}
