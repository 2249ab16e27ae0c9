// The named values of a timeline: a list in order of creation, where the first
// of that name is meant. Names are unique, so an index by hash finds the same
// one; it is built when a search of the list stops being cheap.
#include <cstring>
#include <new>

#include "movie/budget.h"
#include "movie/script_thread.h"
#include "player/text.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// So many variables are searched one by one.
constexpr int32_t kUnindexed = 8;

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

uint32_t NameHash(TextView name) {
  uint32_t hash = 2166136261;
  for (int32_t i = 0; i < name.length; ++i) {
    hash = (hash ^ static_cast<uint8_t>(LowerAscii(name.bytes[i]))) * 16777619;
  }
  return hash;
}

bool IsNamed(const ScriptVariable* variable, TextView name) {
  const char* own = variable->name;
  for (int32_t i = 0; i < name.length; ++i) {
    // The end of a shorter name differs from every byte of the other.
    if (LowerAscii(own[i]) != LowerAscii(name.bytes[i])) return false;
  }
  return own[name.length] == '\0';
}

TextView ViewOf(const char* text) {
  const size_t length = strnlen(text, size_t{kMaxValueText} + 1);
  return {text, static_cast<int32_t>(length)};
}

int64_t ChargeOf(const ScriptVariable* variable) {
  return int64_t{sizeof *variable} + static_cast<int64_t>(strlen(variable->name)) + 1;
}

}  // namespace

ScriptVariable* ScriptThread::FindVariable(TextView name) {
  if (!variableIndex) {
    ScriptVariable* variable = firstVariable;
    while (variable && !IsNamed(variable, name)) variable = variable->next;
    return variable;
  }
  const uint32_t mask = static_cast<uint32_t>(indexSize) - 1;
  const uint32_t hash = NameHash(name);
  uint32_t place = hash & mask;
  while (ScriptVariable* variable = variableIndex[place]) {
    if (variable->hash == hash && IsNamed(variable, name)) return variable;
    place = (place + 1) & mask;
  }
  return nullptr;
}

ScriptVariable* ScriptThread::FindVariable(const char* name) {
  return name ? FindVariable(ViewOf(name)) : nullptr;
}

// At most half of the places are taken. Without memory for the index the list
// is searched.
void ScriptThread::IndexVariable(ScriptVariable* variable) {
  if (variableCount <= kUnindexed) return;
  if (variableCount * 2 > indexSize) {
    delete[] variableIndex;
    indexSize = variableCount * 4;
    while (indexSize & (indexSize - 1)) indexSize &= indexSize - 1;
    variableIndex = new (std::nothrow) ScriptVariable* [static_cast<size_t>(indexSize)] {};
    if (!variableIndex) {
      indexSize = 0;
      return;
    }
    variable = firstVariable;
  }
  const uint32_t mask = static_cast<uint32_t>(indexSize) - 1;
  for (; variable; variable = variable->next) {
    uint32_t place = variable->hash & mask;
    while (variableIndex[place]) place = (place + 1) & mask;
    variableIndex[place] = variable;
  }
}

ScriptVariable* ScriptThread::MakeVariable(TextView name) {
  if (name.length == 0) return nullptr;
  if (ScriptVariable* found = FindVariable(name)) return found;
  if (variableCount >= kMaxVariables || name.length > kMaxValueText) return nullptr;
  const int64_t charge = int64_t{sizeof(ScriptVariable)} + name.length + 1;
  if (!ChargeScriptText(charge)) return nullptr;
  auto* variable = new (std::nothrow)
      ScriptVariable{nullptr, CreateStr(name.bytes, name.length), ScriptValue(), NameHash(name)};
  if (!variable || !variable->name) {
    delete variable;
    ChargeScriptText(-charge);
    return nullptr;
  }
  (lastVariable ? lastVariable->next : firstVariable) = variable;
  lastVariable = variable;
  ++variableCount;
  IndexVariable(variable);
  return variable;
}

void ScriptThread::StoreVariable(ScriptVariable* variable, ScriptValue value, bool updateFocus) {
  value.Own();
  variable->value = std::move(value);
  if (!display || !display->texts) return;
  // Showing a number leaves it one.
  char scratch[kValueScratchSize];
  const char* text =
      variable->value.IsNumber() ? variable->value.View(scratch).bytes : variable->Text();
  display->root.UpdateEditText(this, variable->name, text, updateFocus);
}

void ScriptThread::SetVariable(TextView name, ScriptValue value, bool updateFocus) {
  ScriptVariable* variable = MakeVariable(name);
  if (variable) StoreVariable(variable, std::move(value), updateFocus);
}

void ScriptThread::SetVariable(const char* name, const char* value, bool updateFocus) {
  if (name) SetVariable(ViewOf(name), ScriptValue::Copy(value), updateFocus);
}

void ScriptThread::ClearVariables() {
  if (firstVariable) ++s_variableEpoch;
  while (ScriptVariable* variable = firstVariable) {
    firstVariable = variable->next;
    ChargeScriptText(-ChargeOf(variable));
    FreeStr(variable->name);
    delete variable;
  }
  lastVariable = nullptr;
  variableCount = 0;
  delete[] variableIndex;
  variableIndex = nullptr;
  indexSize = 0;
}

}  // namespace vexel
