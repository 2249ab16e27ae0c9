// What all objects of the host in memory share: a count of references, answers
// to queries, and a count of all that are alive, so that a test can ask whether
// everything was let go.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "zem/zem.h"

namespace vexel::test {

// Objects of this host that are alive, in the whole process.
inline int g_alive = 0;

// What the client does inside each operation that the plug-in asks for, if
// anything: one that calls back before it returns.
inline std::function<void()> g_inside;
inline void Inside() {
  const std::function<void()> call = g_inside;  // which may set another
  if (call) call();
}

// Holds a reference.
template <class T>
class Ptr {
 public:
  Ptr() = default;
  Ptr(T* object) : m_object(object) {
    if (m_object) m_object->AddRef();
  }
  Ptr(const Ptr& other) : Ptr(other.m_object) {}
  Ptr(Ptr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  Ptr& operator=(Ptr other) {
    std::swap(m_object, other.m_object);
    return *this;
  }
  ~Ptr() {
    if (m_object) m_object->Release();
  }
  // Takes over a reference that came out of a call.
  static Ptr Adopt(T* object) {
    Ptr ptr;
    ptr.m_object = object;
    return ptr;
  }
  // For an operation that hands an object out.
  T*& Out() {
    *this = Ptr();
    return m_object;
  }
  T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  explicit operator bool() const { return m_object != nullptr; }

 private:
  T* m_object = nullptr;
};

template <class T, class... Arguments>
Ptr<T> New(Arguments&&... arguments) {
  return Ptr<T>(new T(std::forward<Arguments>(arguments)...));
}

// `object` asked for an interface; empty if it has none.
template <class T>
Ptr<T> Query(IUnknown* object, const ZEMID& id) {
  void* out = nullptr;
  if (!object || object->QueryInterface(id, &out) < 0) return {};
  return Ptr<T>::Adopt(static_cast<T*>(out));
}

struct IdLess {
  bool operator()(const ZEMID& a, const ZEMID& b) const { return memcmp(&a, &b, sizeof a) < 0; }
};

// An object with one interface of its own. Others that it answers for stand in
// `others`, each with a reference.
template <class Interface>
class Fake : public Interface {
 public:
  explicit Fake(const ZEMID& id) : m_id(id) { ++g_alive; }
  Fake(const Fake&) = delete;
  Fake& operator=(const Fake&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override {
    if (!out) return ZEM_BAD_ARGUMENT;
    Inside();
    *out = nullptr;
    if (ZEMIsEqualID(id, m_id) || ZEMIsEqualID(id, IID_IUnknown)) {
      *out = static_cast<Interface*>(this);
      this->AddRef();
      return ZEM_OK;
    }
    const auto found = others.find(id);
    return found == others.end() ? ZEM_NO_INTERFACE : found->second->QueryInterface(id, out);
  }
  UINT32 AddRef() override { return ++m_refs; }
  UINT32 Release() override {
    const UINT32 left = --m_refs;
    if (left == 0) delete this;
    return left;
  }
  UINT32 refs() const { return m_refs; }

  std::map<ZEMID, Ptr<IUnknown>, IdLess> others;

 protected:
  virtual ~Fake() { --g_alive; }

 private:
  ZEMID m_id;
  UINT32 m_refs = 0;
};

}  // namespace vexel::test
