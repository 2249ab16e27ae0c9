// What a plug-in is given at its start: one object that answers for all of the
// client's services. What is not offered here is not there for the plug-in.
#pragma once

#include <vector>

#include "client/core/object.h"

namespace vexel::client {

class Context : public Object<IUnknown> {
 public:
  // The context holds the service. The first one offered for an interface wins.
  template <class Interface>
  void Offer(Interface* service) {
    services_.push_back({IdOf<Interface>(), Ref<IUnknown>(service)});
  }
  // Lets all services go: those that know the plug-in break their cycles so.
  void Clear() { services_.clear(); }

  INT32 QueryInterface(const ZEMID& id, void** out) override;

 private:
  struct Service {
    ZEMID id;
    Ref<IUnknown> object;
  };
  std::vector<Service> services_;
};

}  // namespace vexel::client
