// What the running block has met before: the constants that it pushes, and the
// variables that their names mean. Loops are made of these two.
//
// An entry is good for one running of one block only, which a stamp tells:
// while a block runs, its bytes stay as they are.
#pragma once

#include <cstdint>

#include "movie/script_thread.h"
#include "movie/script_value.h"

namespace vexel {

class ActionCache {
 public:
  // Before a block runs, or goes on.
  void NextBlock() { ++m_stamp; }

  // The constant pushed by the operands at `at`, or null. Found from the third
  // push on: the first only marks the place, since most blocks push a constant
  // once, and the second looks at it closely.
  const ScriptValue* Constant(const uint8_t* at) const {
    const ConstantSlot& slot = m_constants[Place(at)];
    return slot.at == at && slot.known == m_stamp ? &slot.value : nullptr;
  }
  void NoteConstant(const uint8_t* at, const ScriptValue& constant) {
    ConstantSlot& slot = m_constants[Place(at)];
    if (slot.at == at && slot.seen == m_stamp) {
      slot.value = constant.AsConstant();
      slot.known = m_stamp;
      return;
    }
    // Another constant of the same block may have stood here.
    slot.at = at;
    slot.seen = m_stamp;
    slot.known = 0;
  }

  // The variable that the borrowed `name` was found to mean for `thread`, or
  // null.
  ScriptVariable* Variable(const char* name, const ScriptThread* thread) const {
    const VariableSlot& slot = m_variables[Place(name)];
    return slot.name == name && slot.thread == thread && slot.stamp == m_stamp &&
                   slot.epoch == ScriptThread::VariableEpoch()
               ? slot.variable
               : nullptr;
  }
  void NoteVariable(const char* name, const ScriptThread* thread, ScriptVariable* variable) {
    m_variables[Place(name)] = {name, thread, variable, m_stamp, ScriptThread::VariableEpoch()};
  }

 private:
  static constexpr uintptr_t kPlaces = 128;
  static uintptr_t Place(const void* at) {
    const uintptr_t address = reinterpret_cast<uintptr_t>(at);
    return (address ^ address >> 7) & (kPlaces - 1);
  }

  struct ConstantSlot {
    const uint8_t* at = nullptr;
    uint64_t seen = 0;   // the stamp of the last push that asked in vain
    uint64_t known = 0;  // the stamp for which `value` is good
    ScriptValue value;   // a number or a borrowed text
  };
  struct VariableSlot {
    const char* name = nullptr;
    const ScriptThread* thread = nullptr;
    ScriptVariable* variable = nullptr;
    uint64_t stamp = 0;
    uint64_t epoch = 0;
  };

  uint64_t m_stamp = 0;
  ConstantSlot m_constants[kPlaces];
  VariableSlot m_variables[kPlaces];
};

}  // namespace vexel
