// Runs action blocks on the timelines of a movie of sprites.
#pragma once

#include <initializer_list>
#include <string>

#include "nested_movie.h"
#include "support/stage_fixture.h"

namespace vexel::test {

using author::ActionBuilder;

class ActionTest : public NestedMovieTest {
 protected:
  void Queue(const ActionBuilder& block, ScriptThread* thread = nullptr) {
    QueueBytes(block.Finish(), thread);
  }
  void QueueBytes(const author::Bytes& bytes, ScriptThread* thread = nullptr) {
    player.display.actionList.PushAction(CopyBytes(bytes), thread ? thread : &player);
  }
  void Run(const ActionBuilder& block, ScriptThread* thread = nullptr) {
    Queue(block, thread);
    player.DoActions();
  }
  void RunBytes(const author::Bytes& bytes) {
    QueueBytes(bytes);
    player.DoActions();
  }
  std::string Pop() { return Take(player.Pop()); }
  // What stands on top of the stack after the action with these values pushed
  // before it, the last one on top.
  std::string Of(ActionCode code, std::initializer_list<const char*> values) {
    for (const char* value : values) player.Push(value);
    Run(ActionBuilder().Op(code));
    return Pop();
  }
  std::string Variable(ScriptThread& thread, const char* name) {
    ScriptVariable* found = thread.FindVariable(name);
    return found && found->Text() ? found->Text() : "(none)";
  }
  std::string Variable(const char* name) { return Variable(player, name); }
};

}  // namespace vexel::test
