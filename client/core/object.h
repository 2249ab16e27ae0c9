// Objects with counted references, and the pointers that count.
//
// Object<IZEMSite> implements QueryInterface, AddRef and Release once for all
// interfaces that it names; a class derives from it and adds the operations.
// Objects start at 0 references: whoever makes one puts it into a Ref.
#pragma once

#include <utility>

#include "zem/zem.h"

namespace vexel::client {

// The identifier of an interface, by its type.
template <class Interface>
const ZEMID& IdOf();

#define VEXEL_CLIENT_ID(Interface)        \
  template <>                             \
  inline const ZEMID& IdOf<Interface>() { \
    return IID_##Interface;               \
  }
VEXEL_CLIENT_ID(IUnknown)
VEXEL_CLIENT_ID(IZEMPlugin)
VEXEL_CLIENT_ID(IZEMRenderer)
VEXEL_CLIENT_ID(IZEMSiteUser)
VEXEL_CLIENT_ID(IZEMSiteUserSupplier)
VEXEL_CLIENT_ID(IZEMMultiInstanceSiteUserSupplier)
VEXEL_CLIENT_ID(IZEMClientAdviseSink)
VEXEL_CLIENT_ID(IZEMCommonClassFactory)
VEXEL_CLIENT_ID(IZEMErrorMessages)
VEXEL_CLIENT_ID(IZEMPreferences)
VEXEL_CLIENT_ID(IZEMBackChannel)
VEXEL_CLIENT_ID(IZEMContextMenu)
VEXEL_CLIENT_ID(IZEMContextMenuResponse)
VEXEL_CLIENT_ID(IZEMHyperNavigate)
VEXEL_CLIENT_ID(IZEMUpgradeCollection)
VEXEL_CLIENT_ID(IZEMFileSystemManager)
VEXEL_CLIENT_ID(IZEMFileObject)
VEXEL_CLIENT_ID(IZEMRequest)
VEXEL_CLIENT_ID(IZEMNetworkServices)
VEXEL_CLIENT_ID(IZEMListenResponse)
VEXEL_CLIENT_ID(IZEMTCPResponse)
VEXEL_CLIENT_ID(IZEMScheduler)
VEXEL_CLIENT_ID(IZEMCallback)
VEXEL_CLIENT_ID(IZEMValues)
VEXEL_CLIENT_ID(IZEMBuffer)
VEXEL_CLIENT_ID(IZEMPacket)
VEXEL_CLIENT_ID(IZEMSite)
VEXEL_CLIENT_ID(IZEMVideoSurface)
VEXEL_CLIENT_ID(IZEMPlayer)
VEXEL_CLIENT_ID(IZEMStream)
VEXEL_CLIENT_ID(IZEMStreamSource)
VEXEL_CLIENT_ID(IZEMFileSystemManagerResponse)
VEXEL_CLIENT_ID(IZEMFileResponse)
VEXEL_CLIENT_ID(IZEMListenSocket)
VEXEL_CLIENT_ID(IZEMTCPSocket)
#undef VEXEL_CLIENT_ID

// A pointer with a reference.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(T* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  Ref(const Ref& other) : Ref(other.object_) {}
  template <class Derived>
  Ref(const Ref<Derived>& other) : Ref(static_cast<T*>(other.get())) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~Ref() {
    if (object_) object_->Release();
  }
  // By value: the new reference is there before the old one goes, and whatever
  // the old object does at its end finds this pointer in its new state.
  Ref& operator=(Ref other) {
    std::swap(object_, other.object_);
    return *this;
  }

  T* get() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

  // A place for an operation that hands out an object with a reference.
  T*& Out() {
    *this = nullptr;
    return object_;
  }
  // The object with a reference for somebody else; this pointer keeps its own.
  T* Share() const {
    if (object_) object_->AddRef();
    return object_;
  }

 private:
  T* object_ = nullptr;
};

// What `object` answers for an interface, or null.
template <class Interface>
Ref<Interface> Query(IUnknown* object) {
  Ref<Interface> found;
  void* out = nullptr;
  if (object && object->QueryInterface(IdOf<Interface>(), &out) >= 0)
    found.Out() = static_cast<Interface*>(out);
  return found;
}

template <class First, class... Rest>
class Object : public First, public Rest... {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override {
    if (!out) return ZEM_BAD_ARGUMENT;
    *out = nullptr;
    if (ZEMIsEqualID(id, IID_IUnknown)) {
      *out = static_cast<First*>(this);
    } else {
      Offer<First>(id, out);
      (Offer<Rest>(id, out), ...);
    }
    if (!*out) return ZEM_NO_INTERFACE;
    AddRef();
    return ZEM_OK;
  }
  UINT32 AddRef() override { return ++references_; }
  UINT32 Release() override {
    const UINT32 left = --references_;
    if (left == 0) {
      // Held through its own end, in which it may be passed around once more.
      references_ = 1;
      delete this;
    }
    return left;
  }

 protected:
  virtual ~Object() = default;

 private:
  template <class Interface>
  void Offer(const ZEMID& id, void** out) {
    if (ZEMIsEqualID(id, IdOf<Interface>())) *out = static_cast<Interface*>(this);
  }

  UINT32 references_ = 0;
};

template <class T, class... Arguments>
Ref<T> Make(Arguments&&... arguments) {
  return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace vexel::client
