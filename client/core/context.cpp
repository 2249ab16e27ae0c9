#include "client/core/context.h"

namespace vexel::client {

INT32 Context::QueryInterface(const ZEMID& id, void** out) {
  if (out) {
    for (const Service& service : services_) {
      if (ZEMIsEqualID(service.id, id)) return service.object->QueryInterface(id, out);
    }
  }
  return Object::QueryInterface(id, out);
}

}  // namespace vexel::client
