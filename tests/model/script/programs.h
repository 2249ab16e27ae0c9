// Random movies full of action blocks: mostly sensible programs, with odd ones
// among them.
#pragma once

#include "scene.h"

namespace vexel::model::script {

// What is done with a movie after it was loaded.
enum class StepKind { kStep, kGotoFrame, kCallFrame };

struct Step {
  StepKind kind = StepKind::kStep;
  int frame = 0;
  u32 clock = 0;  // the tick of this step
};

struct Program {
  Scene scene;
  bool hasLayer = false;  // a second movie
  int layer = 0;
  Scene layerScene;
  bool hostStopped = true;
  std::vector<Step> steps;
};

Program RandomProgram(u64 seed);

// The whole program in plain mnemonics.
std::string Listing(const Program& program);

}  // namespace vexel::model::script
