#include "tree_text.h"

#include <cinttypes>
#include <cstdio>

#include "movie/character.h"

namespace vexel::tools {

namespace {

std::string Numbers(std::initializer_list<int32_t> values) {
  std::string text;
  for (const int32_t v : values) {
    if (!text.empty()) text += ',';
    text += std::to_string(v);
  }
  return text;
}

// Trees are 256 levels deep at most.
void AddObjects(const SObject* first, size_t level, std::string* text) {
  for (const SObject* o = first; o; o = o->next) {
    const MATRIX& m = o->mat;
    const ColorTransform& c = o->cxform;
    *text += std::string(level * 2, ' ') + std::to_string(o->depth);
    *text += " id=" + std::to_string(o->character->id);
    *text += " type=" + std::to_string(o->character->type);
    *text += " name=" + Escaped(o->name ? o->name : "");
    *text += " matrix=" + Numbers({m.a, m.b, m.c, m.d, m.tx, m.ty});
    *text += " cxform=" + Numbers({c.flags, c.aa, c.ab, c.ra, c.rb, c.ga, c.gb, c.ba, c.bb});
    *text += " ratio=" + std::to_string(o->ratio);
    *text += " clip=" + std::to_string(o->clipDepth);
    *text += " visible=" + std::to_string(o->visible ? 1 : 0);
    *text += " button=" + std::to_string(o->buttonState);
    *text += " script=" + std::to_string(o->scriptControlled ? 1 : 0);
    *text += '\n';
    AddObjects(o->firstChild, level + 1, text);
  }
}

}  // namespace

std::string TreeText(const DisplayList& display) {
  std::string text;
  AddObjects(display.root.firstChild, 0, &text);
  return text;
}

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else if (c == '\t') {
      out += "\\t";
    } else if (c == '\\') {
      out += "\\\\";
    } else if (byte < 32 || byte > 126) {
      char hex[5];
      std::snprintf(hex, sizeof hex, "\\x%02x", byte);
      out += hex;
    } else {
      out += c;
    }
  }
  return out;
}

}  // namespace vexel::tools
