// The root of all interfaces, and the rules of references.
//
// 1. An object that is passed in is borrowed for the call. Whoever keeps it
//    takes a reference of its own: of the new one first, then the old one goes.
// 2. An object that comes out carries one reference for the caller.
// 3. A response object is kept by the service, with a reference, until the
//    service is closed, has answered for the last time, or is released.
//    Responder and service so form a cycle, which the responder breaks.
// 4. Objects start at a count of 0: their maker takes the first reference.
// 5. Texts are borrowed, zero-terminated and 8 bits wide. A text that an object
//    hands out lives until the object changes or goes.
//
// Everything happens on one thread: calls, callbacks and responses.
#pragma once

#include "zem_ids.h"
#include "zem_types.h"

// Interfaces have no virtual destructor: objects go by Release alone.
class IUnknown {
 public:
  // Puts the interface `id` of the object into `*out`, with a reference.
  // ZEM_BAD_ARGUMENT for a null `out`; ZEM_NO_INTERFACE, with `*out` cleared.
  virtual INT32 QueryInterface(const ZEMID& id, void** out) = 0;
  // The new count; good for a look in a debugger only.
  virtual UINT32 AddRef() = 0;
  // The same; at 0 the object is gone.
  virtual UINT32 Release() = 0;
};
