// What only the whole movie tells: uses of characters that are not there,
// characters and labels that nothing leads to.
#include <algorithm>

#include "author/check/checker.h"

namespace vexel::author {

namespace {

bool IsFontTag(int32_t code) {
  return code == kTagDefineFont || code == kTagDefineFont2;
}

}  // namespace

void Checker::JudgeUses() {
  for (const struct Use& use : uses_) {
    const auto damaged = [&](const std::string& reason) {
      Add(FindingKind::kDamaged, use.at, use.code, reason);
    };
    const std::string name = "character " + std::to_string(use.id);
    const auto found = characters_.find(use.id);
    if (found == characters_.end()) {
      damaged(name + (use.kind == UseKind::kPlace ? " is placed and never defined"
                                                  : " is used and never defined"));
      continue;
    }
    const Character& character = found->second;
    switch (use.kind) {
      case UseKind::kPlace:
        if (use.owner == kRoot && character.firstAt > use.at) {
          damaged(name + " is placed before it is defined");
        } else if (IsBitmapTag(character.code) || IsFontTag(character.code)) {
          damaged(name + " is placed and shows nothing: it is a " +
                  (IsFontTag(character.code) ? "font" : "bitmap"));
        }
        break;
      case UseKind::kFill:
        if (!IsBitmapTag(character.code)) damaged(name + " fills a shape and is no bitmap");
        break;
      case UseKind::kFont:
        if (!IsFontTag(character.code)) {
          damaged(name + " is used as a font and is none");
        } else if (use.glyph >= character.glyphs && use.glyph >= 0) {
          damaged("glyph " + std::to_string(use.glyph) + " of font " + std::to_string(use.id) +
                  " is used, it has " + std::to_string(character.glyphs));
        }
        break;
      case UseKind::kButtonExtra:
        if (character.code != kTagDefineButton) {
          damaged(name + " gets colours of a button and is none of the first form");
        }
        break;
      case UseKind::kFontInfo:
        if (!IsFontTag(character.code)) damaged(name + " gets a font's name and is none");
        break;
    }
  }
}

void Checker::JudgeReach() {
  std::vector<std::pair<int32_t, uint16_t>> shows;
  for (const struct Use& use : uses_) {
    if (use.kind == UseKind::kPlace || use.kind == UseKind::kFill || use.kind == UseKind::kFont) {
      shows.emplace_back(use.owner, use.id);
    }
  }
  std::sort(shows.begin(), shows.end());
  std::vector<int32_t> open = {kRoot};
  while (!open.empty()) {
    const int32_t owner = open.back();
    open.pop_back();
    for (auto it = std::lower_bound(shows.begin(), shows.end(), std::pair(owner, uint16_t{0}));
         it != shows.end() && it->first == owner; ++it) {
      const auto found = characters_.find(it->second);
      if (found == characters_.end() || found->second.reached) continue;
      found->second.reached = true;
      open.push_back(it->second);
    }
  }
  for (const auto& [id, character] : characters_) {
    if (character.reached) continue;
    Add(FindingKind::kUnreachable, character.at, character.code,
        "nothing that is ever placed shows character " + std::to_string(id) + ", " +
            Count(character.bytes, "byte"));
  }
}

// A label is reached by a text that is the label, or a path and the label.
void Checker::JudgeLabels() {
  if (frameNames_.computed) return;
  std::set<std::string, std::less<>> names;
  for (const std::string& text : frameNames_.texts) {
    const size_t colon = text.find(':');
    names.insert(colon == std::string::npos ? text : text.substr(colon + 1));
  }
  for (const Label& label : labels_) {
    if (names.count(label.text)) continue;
    Add(FindingKind::kUnreachable, label.at, kTagFrameLabel, "no action names the label");
  }
}

}  // namespace vexel::author
