#include "client/core/class_factory.h"

#include "client/core/values.h"

namespace vexel::client {

ClassFactory::ClassFactory() {
  Add<IZEMBuffer>([] { return NewBuffer({}); });
  Add<IZEMPacket>([] { return NewEmptyPacket(); });
  Add<IZEMValues>([] { return NewValues(); });
}

INT32 ClassFactory::CreateInstance(const ZEMID& wanted, void** out) {
  if (!out) return ZEM_BAD_ARGUMENT;
  *out = nullptr;
  for (const Maker& maker : makers_) {
    if (!ZEMIsEqualID(maker.id, wanted)) continue;
    *out = maker.make();
    return *out ? ZEM_OK : ZEM_OUT_OF_MEMORY;
  }
  return ZEM_NO_INTERFACE;
}

}  // namespace vexel::client
