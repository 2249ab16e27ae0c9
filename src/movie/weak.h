// Registered slots for things that may be freed under the hand that holds
// them. Tags and actions that run inside a call can delete any object or
// timeline; whoever keeps a pointer across such a call keeps it in a WeakSlot,
// which reads null once the target is gone.
//
// The target type has a member `WeakHead<T> weakSlots` and calls
// `weakSlots.ClearAll()` where it is freed.
#pragma once

namespace vexel {

template <class T>
class WeakSlot;

template <class T>
struct WeakHead {
  WeakSlot<T>* first = nullptr;

  // Every slot on this target reads null from now on.
  void ClearAll() {
    while (first) first->Set(nullptr);
  }
};

template <class T>
class WeakSlot {
 public:
  WeakSlot() = default;
  explicit WeakSlot(T* target) { Set(target); }
  ~WeakSlot() { Set(nullptr); }
  WeakSlot(const WeakSlot&) = delete;
  WeakSlot& operator=(const WeakSlot&) = delete;

  T* Get() const { return m_target; }
  explicit operator bool() const { return m_target != nullptr; }
  T* operator->() const { return m_target; }

  void Set(T* target) {
    if (m_target) {
      *m_link = m_next;
      if (m_next) m_next->m_link = m_link;
    }
    m_target = target;
    if (!target) return;
    m_next = target->weakSlots.first;
    m_link = &target->weakSlots.first;
    if (m_next) m_next->m_link = &m_next;
    target->weakSlots.first = this;
  }

 private:
  T* m_target = nullptr;
  WeakSlot* m_next = nullptr;
  WeakSlot** m_link = nullptr;  // what points at this slot
};

}  // namespace vexel
