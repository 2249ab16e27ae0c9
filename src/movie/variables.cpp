// The named texts of a timeline: a list in order of creation, searched from
// the head. Movies keep a handful, so nothing faster is worth its code.
#include <new>

#include "movie/budget.h"
#include "movie/script_thread.h"
#include "player/text.h"

namespace vexel {

ScriptVariable* ScriptThread::FindVariable(const char* name) {
  ScriptVariable* variable = firstVariable;
  while (variable && !StrEqual(variable->name, name)) variable = variable->next;
  return variable;
}

void ScriptThread::SetVariable(const char* name, const char* value) {
  if (!name || !*name) return;
  ScriptVariable* variable = FindVariable(name);
  if (!variable) {
    if (variableCount >= kMaxVariables) return;
    variable = new (std::nothrow) ScriptVariable{nullptr, CreateStr(name), nullptr};
    if (!variable) return;
    if (!variable->name) {
      delete variable;
      return;
    }
    (lastVariable ? lastVariable->next : firstVariable) = variable;
    lastVariable = variable;
    ++variableCount;
  }
  // The new value may be the old one, or a part of it.
  char* copy = CreateStr(value);
  FreeStr(variable->value);
  variable->value = copy;
}

void ScriptThread::ClearVariables() {
  while (ScriptVariable* variable = firstVariable) {
    firstVariable = variable->next;
    FreeStr(variable->name);
    FreeStr(variable->value);
    delete variable;
  }
  lastVariable = nullptr;
  variableCount = 0;
}

}  // namespace vexel
