// Programs as text, for the report of a difference.
#include <cstdio>

#include "author/script/action_text.h"
#include "programs.h"

namespace vexel::model::script {

static std::string Printable(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    char buffer[8];
    if (c >= 32 && c < 127 && c != '"' && c != '\\') {
      out += c;
    } else {
      std::snprintf(buffer, sizeof buffer, "\\x%02x", static_cast<unsigned char>(c));
      out += buffer;
    }
  }
  return out + '"';
}

static std::string Listing(const Timeline& timeline) {
  std::string out;
  int frame = 0;
  for (const Tag& tag : timeline) {
    switch (tag.kind) {
      case TagKind::kEnd:
        out += "  end\n";
        break;
      case TagKind::kFrameEnd:
        out += "  -- end of frame " + std::to_string(frame++) + "\n";
        break;
      case TagKind::kLabel:
        out += "  label " + Printable(tag.label) + "\n";
        break;
      case TagKind::kActions:
        out += "  actions\n" + author::DisassembleActions(*tag.block, 4);
        break;
      case TagKind::kPlace:
      case TagKind::kMove:
        out += tag.kind == TagKind::kMove ? "  move" : "  place";
        if (tag.character >= 0) out += " character " + std::to_string(tag.character);
        out += " depth " + std::to_string(tag.depth);
        if (tag.name) out += " name " + Printable(*tag.name);
        if (tag.matrix) out += " with a matrix";
        if (tag.alpha) out += " alpha " + std::to_string(*tag.alpha);
        out += '\n';
        break;
      case TagKind::kRemove:
        out += "  remove depth " + std::to_string(tag.depth) + "\n";
        break;
    }
  }
  return out;
}

static std::string Listing(const Scene& scene) {
  std::string out = "version " + std::to_string(scene.version) + "\n";
  for (const auto& [id, character] : scene.characters) {
    if (character.type != kSpriteType) continue;
    out += "sprite " + std::to_string(id) + ", " + std::to_string(character.frameCount) +
           " frames\n" + Listing(character.timeline);
  }
  return out + "main, " + std::to_string(scene.frameCount) + " frames\n" + Listing(scene.main);
}

std::string Listing(const Program& program) {
  std::string out = Listing(program.scene);
  if (program.hasLayer) {
    out += "layer " + std::to_string(program.layer) + ", " + Listing(program.layerScene);
  }
  out += program.hostStopped ? "the clock stands\nsteps:" : "the clock runs\nsteps:";
  for (const Step& step : program.steps) {
    out += step.kind == StepKind::kStep        ? " step"
           : step.kind == StepKind::kGotoFrame ? " goto " + std::to_string(step.frame)
                                               : " call " + std::to_string(step.frame);
    out += " at " + std::to_string(step.clock);
  }
  return out + '\n';
}

}  // namespace vexel::model::script
