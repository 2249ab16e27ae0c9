// The model's player: the layers, the value stack, target paths, variables and
// properties, and the interpreter of action blocks.
#pragma once

#include <deque>

#include "stage.h"

namespace vexel::model::script {

struct Layer {
  Movie movie;
  Thread thread;
};

struct Request {
  Text url, window;
  bool hasPost = false;
  Text post;
  int flags = 0;
};

// Beyond these the player runs out of its allowances in ways of its own, and
// a comparison says nothing.
struct Excess {
  bool text = false;
  bool objects = false;
};

struct Player {
  Stage stage;
  std::deque<Layer> layers;  // the first is layer 0; the others in the order of their making
  std::vector<Text> stack;
  u32 clock = 0, startTime = 0;
  RandomSource random;
  bool loaded = false, halted = false, hostStopped = true;
  bool highQuality = true, bestQuality = false, useFocusRect = true;
  i32 bufferTime = 5;
  std::string calls;  // what the platform was asked, in order
  Excess excess;

  Player();
  Player(const Player&) = delete;
  Layer& AddLayer(int number, Scene scene);

  void Load(Scene scene);  // shows the first frame
  void Step();             // every timeline once, then what they queued
  void GotoFrame(int frame);
  bool CallFrame(Thread* thread, int frame);
  void DoActions();

  Thread* MainThread() { return &layers.front().thread; }
  Thread* FindTarget(Object* start, const Text& path);
  Text TargetPath(const Object* object) const;
  Text GetProperty(Thread* thread, i32 index);
  void SetProperty(Thread* thread, i32 index, const Text& text);

 private:
  int depth = 0;
  // of one run
  int executed = 0;
  std::vector<Request> pending;
  bool xStop = false, xChanged = false, xSeekWanted = false;
  int xSeekFrame = -1;
  bool resumed = false;

  Layer* FindLayer(i64 number);
  Thread* Resolve(const Text& text, Thread* thread, Text* name);
  Thread* ResolveFrame(const Text& text, Thread* thread, int* frame);
  bool GetVariable(Thread* thread, const Text& text, Text* value);
  void SetVariable(Thread* thread, const Text& text, const Text& value);
  double ReadProperty(Thread* thread, i32 index);
  void WriteProperty(Thread* thread, i32 index, double value);
  void WriteScale(Object* o, i32 index, double value);
  void WriteRotation(Object* o, double value);

  void Push(const Text& text);
  Text Pop();
  void PushNumber(double v) { Push(DoubleText(v)); }
  double PopNumber() { return NumberOf(Pop()); }
  i32 PopInt() { return ToInt32(PopNumber()); }

  struct Running;
  enum class Ended { kBlock, kByCall, kByHalt };
  Ended RunBlock(ActionList* list, bool isResumed);
  bool RunAction(Running& at, int code);
  void RunTargetAction(Running& at, int code, Thread* target);
  void RunStackAction(Running& at, int code, Thread* target);
  void PropertyAction(int code, Thread* target);
  void StartDrag(Thread* target);
  Thread* TargetOf(const Text& text, Thread* target);
  bool Call(Running& at, Thread* target);
  void GetURLExpr(Running& at, Thread* target);
  void SetTarget(Running& at, const Text& text);
  void SetCamera();
  void FinishRun();
};

}  // namespace vexel::model::script
