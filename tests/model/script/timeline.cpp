// Timelines, tag by tag.
#include "stage.h"

namespace vexel::model::script {

int Thread::DoTag() {
  if (atEnd) return 2;
  if (pos >= tags->size()) return 1;
  const Tag& tag = (*tags)[pos];
  switch (tag.kind) {
    case TagKind::kEnd:
      atEnd = true;
      break;
    case TagKind::kFrameEnd:
      ++curFrame;
      break;
    case TagKind::kLabel:
      break;
    case TagKind::kActions:
      if (!seeking) stage->actionList.Push(tag.block, this);
      break;
    case TagKind::kPlace:
    case TagKind::kMove:
      Place(tag);
      break;
    case TagKind::kRemove:
      stage->RemoveObject(root, tag.depth);
      break;
  }
  ++pos;
  return 0;
}

void Thread::Place(const Tag& tag) {
  PlaceInfo info;
  info.depth = tag.depth;
  if (tag.character >= 0) {
    info.flags |= 2;
    const auto found = movie->scene.characters.find(tag.character);
    if (found == movie->scene.characters.end()) return;
    info.character = &found->second;
  }
  if (tag.matrix) {
    info.flags |= 4;
    info.mat = *tag.matrix;
  }
  if (tag.alpha) {
    info.flags |= 8;
    info.cxform.aa = static_cast<i16>(*tag.alpha);
    info.cxform.CalcFlags();
  }
  if (tag.name) {
    info.flags |= 0x20;
    info.hasName = true;
    info.name = *tag.name;
  }
  if (tag.kind == TagKind::kMove) {
    stage->MoveObject(root, info);
  } else if (info.character) {
    stage->PlaceObject(root, info, movie);
  }
}

int Thread::DoTags(int frame) {
  int result = 0;
  while (curFrame < frame) {
    result = DoTag();
    if (result != 0) break;
  }
  return result;
}

int Thread::DrawFrame(int frame, bool seek) {
  if (!root) {
    PlaceInfo info;
    info.flags = 2;
    info.depth = layerDepth;
    info.character = &movie->rootCharacter;
    root = stage->PlaceObject(&stage->root, info, movie);
    root->thread = this;
  }
  if (!seek) return DoTags(frame);
  const bool back = curFrame > frame;
  if (back) {
    pos = 0;
    curFrame = -1;
    atEnd = false;
    stage->BeginHold(root);
  }
  seeking = true;
  DoTags(frame - 1);
  seeking = false;
  const int result = DoTags(frame);
  if (back) stage->FinishHold();
  return result;
}

void Thread::DoFrame(int delta) {
  if (!playing) return;
  int target = curFrame + delta;
  if (isMain && target > movie->numFramesComplete) target = movie->numFramesComplete;
  const int result = DrawFrame(target, false);
  if (result == 2) {
    if (loop && curFrame != 0) {
      DrawFrame(0, true);
    } else {
      playing = false;
    }
  } else if (result < 0) {
    playing = false;
  }
}

void Thread::Seek(int frame) {
  playing = false;
  DrawFrame(frame < 0 ? 0 : frame, true);
}

void Thread::Play(bool rewind) {
  if (rewind && !loop && curFrame >= numFrames - 1) Seek(0);
  playing = true;
}

int Thread::FindLabel(const Text& label) const {
  int frame = 0;
  for (const Tag& tag : *tags) {
    if (tag.kind == TagKind::kFrameEnd) ++frame;
    if (tag.kind == TagKind::kLabel && SameName(tag.label, label)) return frame;
  }
  return -1;
}

Variable* Thread::Find(const Text& name) {
  for (Variable& variable : variables) {
    if (SameName(variable.name, name)) return &variable;
  }
  return nullptr;
}

void Thread::Set(const Text& name, const Text& value) {
  if (name.empty()) return;
  if (Variable* variable = Find(name)) {
    variable->value = value;
  } else {
    variables.push_back({name, value});
  }
}

}  // namespace vexel::model::script
