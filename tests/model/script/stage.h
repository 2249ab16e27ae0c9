// The model's stage for scripts: a tree of placed shapes and sprites, the
// timelines that build it, and the queue of their action blocks. Nothing draws.
#pragma once

#include <memory>
#include <vector>

#include "scene.h"
#include "values.h"

namespace vexel::model::script {

struct Object;
struct Stage;
struct Thread;

// The movie of a layer.
struct Movie {
  Scene scene;
  Character rootCharacter{65534, kRootType, {}, {}, 0};
  u16 layer = 0;
  int numFramesComplete = 16000;
  Text url;
};

struct Thread {
  Stage* stage = nullptr;
  Movie* movie = nullptr;
  Object* root = nullptr;
  const Timeline* tags = nullptr;
  size_t pos = 0;
  bool isMain = false;
  bool atEnd = false, seeking = false, playing = true, loop = true;
  int curFrame = -1, numFrames = 0;
  u16 layerDepth = 0;
  std::vector<Variable> variables;

  int DoTag();
  int DoTags(int frame);
  int DrawFrame(int frame, bool seek);
  void DoFrame(int delta);
  void Seek(int frame);
  void Play(bool rewind);
  int FindLabel(const Text& label) const;

  Variable* Find(const Text& name);
  void Set(const Text& name, const Text& value);

 private:
  void Place(const Tag& tag);
};

struct PlaceInfo {
  Matrix mat;
  ColorTransform cxform;
  int flags = 0;
  const Character* character = nullptr;
  u16 depth = 0, ratio = 0;
  bool hasName = false;
  Text name;
  bool scriptControlled = false;
};

struct Object {
  Object* parent = nullptr;
  Object* next = nullptr;
  Object* firstChild = nullptr;
  const Character* character = nullptr;
  Movie* movie = nullptr;  // of the character
  u16 depth = 0, ratio = 0;
  bool hasName = false;
  Text name;
  Thread* thread = nullptr;
  std::unique_ptr<Thread> own;
  Matrix mat;
  ColorTransform cxform;
  bool visible = true, scriptControlled = false;
  bool dragCenter = false;
  Rect dragConstraint;
};

struct Action {
  Block block;  // null for a hole
  i64 resume = 0;
  Thread* thread = nullptr;
};

// A queue; entries before `read` are done.
struct ActionList {
  std::vector<Action> entries;
  size_t read = 0;

  void Push(const Block& block, Thread* thread);
  void RemoveThread(const Thread* thread);
};

struct CallEntry {
  ActionList* list = nullptr;
  Thread* target = nullptr;
  bool hasTarget = false;
};

struct Stage {
  Object root;
  std::vector<Thread*> threads;  // the last one stepped first
  ActionList actionList;
  std::vector<CallEntry> calls;
  Object* holdList = nullptr;
  Object* holdParent = nullptr;
  int instanceNames = 0;
  int objects = 0;
  Object* dragObject = nullptr;
  bool dragging = false;

  Stage() = default;
  ~Stage();

  Object* PlaceObject(Object* parent, const PlaceInfo& info, Movie* movie);
  void MoveObject(Object* parent, const PlaceInfo& info);
  void RemoveObject(Object* parent, u16 depth);
  void BeginHold(Object* parent);
  void FinishHold();
  void StepThreads();
  void RemoveThread(Thread* thread);

  void CloneSprite(Thread* source, const Text& name, i32 depth);
  void RemoveSprite(Thread* target);

 private:
  std::vector<Thread*> round;  // those that a step in progress has still to step
  void DoRemove(Object** link);
  void FreeChildren(Object* object);
  void Free(Object* object);
};

// In twentieths; empty for an object without bounds.
Rect BoundingBox(const Object& object, const Matrix& m);

}  // namespace vexel::model::script
