// A reference that came out of a call, for as long as a block needs it.
#pragma once

namespace vexel {

// Takes over the reference that `Out()` or the constructor brings, and gives it
// back at the end of the block.
template <class T>
class Held {
 public:
  explicit Held(T* object = nullptr) : m_object(object) {}
  ~Held() {
    if (m_object) m_object->Release();
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  // For an operation that hands out an object; to be used once.
  T*& Out() { return m_object; }
  T* Get() const { return m_object; }
  // Hands the reference on.
  T* Detach() {
    T* object = m_object;
    m_object = nullptr;
    return object;
  }
  T* operator->() const { return m_object; }
  explicit operator bool() const { return m_object != nullptr; }

 private:
  T* m_object;
};

}  // namespace vexel
