#include "client/core/upgrade_collection.h"

#include "client/core/values.h"

namespace vexel::client {

INT32 UpgradeCollection::Add(UINT32, IZEMBuffer* name, UINT32, UINT32) {
  if (!name) return ZEM_BAD_ARGUMENT;
  names_.push_back(TextOf(name));
  return ZEM_OK;
}

}  // namespace vexel::client
