// The value stack of a player. It outlives the runs of actions: what a script
// leaves, the next one finds.
#pragma once

#include <cstdint>

#include "movie/budget.h"
#include "movie/script_value.h"

namespace vexel {

class ScriptStack {
 public:
  ScriptStack() = default;
  ~ScriptStack() { delete[] m_values; }
  ScriptStack(const ScriptStack&) = delete;
  ScriptStack& operator=(const ScriptStack&) = delete;

  int32_t Count() const { return m_count; }
  // From the bottom, which is 0.
  const ScriptValue& At(int32_t index) const { return m_values[index]; }

  // Pushing no value does nothing; a value for which there is no room is lost.
  void Push(ScriptValue value) {
    if (value.IsNone() || (m_count == m_capacity && !Grow())) return;
    if (value.IsBorrowed() && m_count < m_firstBorrowed) m_firstBorrowed = m_count;
    m_values[m_count++] = std::move(value);
  }
  // The same for a value that owns no text.
  void PushUnowned(const ScriptValue& value) {
    if (m_count == m_capacity && !Grow()) return;
    if (value.IsBorrowed() && m_count < m_firstBorrowed) m_firstBorrowed = m_count;
    m_values[m_count++].AssignUnowned(value);
  }
  void PushNumber(double v) { Push(ScriptValue::Number(v)); }
  void PushTruth(bool v) { Push(ScriptValue::Truth(v)); }

  // The value on top, to be read or replaced in place (by no borrowed text);
  // null if the stack is empty.
  ScriptValue* Top() { return m_count > 0 ? &m_values[m_count - 1] : nullptr; }

  // The empty text, and so 0, from an empty stack.
  ScriptValue Pop() {
    if (m_count == 0) return ScriptValue::Empty();
    return std::move(m_values[--m_count]);
  }
  double PopNumber() {
    if (m_count == 0) return 0;
    ScriptValue& top = m_values[--m_count];
    const double v = top.ToNumber();
    top.Clear();
    return v;
  }
  // Truncated toward zero; out of range gives -2147483648.
  int32_t PopInteger();
  void Drop() {
    if (m_count > 0) m_values[--m_count].Clear();
  }

  // Replaces the two values on top, or as many as there are, by the number
  // `combine(below, top)`.
  template <class Combine>
  void CombineNumbers(Combine combine) {
    const double top = PopNumber();
    if (m_count == 0) {
      PushNumber(combine(0.0, top));
      return;
    }
    ScriptValue& below = m_values[m_count - 1];
    below = ScriptValue::Number(combine(below.ToNumber(), top));
    if (below.IsNone()) --m_count;  // without memory
  }

  // Copies the borrowed texts: before the movie's bytes may go.
  void OwnTexts();

 private:
  bool Grow();

  ScriptValue* m_values = nullptr;  // m_capacity of them; those from m_count up are none
  int32_t m_count = 0;
  int32_t m_capacity = 0;
  int32_t m_firstBorrowed = kMaxStackValues;  // no borrowed value below
};

// A value that was popped to be read as a text closed by a NUL.
class PoppedText {
 public:
  explicit PoppedText(ScriptValue value);
  PoppedText(const PoppedText&) = delete;
  PoppedText& operator=(const PoppedText&) = delete;

  const char* Text() const { return m_text; }
  bool IsEmpty() const { return !*m_text; }

 private:
  ScriptValue m_value;
  char m_scratch[kValueScratchSize];
  const char* m_text;
};

}  // namespace vexel
