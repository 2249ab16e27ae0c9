// Makes the objects that the plug-in asks the client for.
#pragma once

#include <functional>
#include <vector>

#include "client/core/object.h"

namespace vexel::client {

class ClassFactory : public Object<IZEMCommonClassFactory> {
 public:
  // Knows buffers, packets and lists of values.
  ClassFactory();

  // `make` makes objects of the interface, as Ref<Interface>.
  template <class Interface, class MakeOne>
  void Add(MakeOne make) {
    makers_.push_back({IdOf<Interface>(), [make]() -> void* {
                         const Ref<Interface> made = make();
                         return made.Share();
                       }});
  }

  INT32 CreateInstance(const ZEMID& wanted, void** out) override;

 private:
  struct Maker {
    ZEMID id;
    std::function<void*()> make;  // the interface, with a reference
  };
  std::vector<Maker> makers_;
};

}  // namespace vexel::client
