// The value stack.
#include "player/script_stack.h"

#include <new>

#include "geometry/intmath.h"

namespace vexel {

namespace {

constexpr int32_t kFirstCapacity = 128;

}  // namespace

bool ScriptStack::Grow() {
  if (m_capacity >= kMaxStackValues) return false;
  const int32_t capacity = m_capacity == 0 ? kFirstCapacity : m_capacity * 2;
  auto* values = new (std::nothrow) ScriptValue[static_cast<size_t>(capacity)];
  if (!values) return false;
  for (int32_t i = 0; i < m_count; ++i) values[i] = std::move(m_values[i]);
  delete[] m_values;
  m_values = values;
  m_capacity = capacity;
  return true;
}

int32_t ScriptStack::PopInteger() {
  return ToInt32(PopNumber());
}

// A text for which there is no memory becomes the empty one: its place on the
// stack is counted on.
void ScriptStack::OwnTexts() {
  for (int32_t i = m_firstBorrowed; i < m_count; ++i) {
    m_values[i].Own();
    if (m_values[i].IsNone()) m_values[i] = ScriptValue::Empty();
  }
  m_firstBorrowed = kMaxStackValues;
}

PoppedText::PoppedText(ScriptValue value) : m_value(std::move(value)) {
  m_text = m_value.IsNumber() ? m_value.View(m_scratch).bytes : m_value.Text();
}

}  // namespace vexel
