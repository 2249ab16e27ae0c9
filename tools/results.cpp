#include "results.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "escapes.h"
#include "movie/character.h"
#include "movie/script_thread.h"
#include "tree_text.h"

namespace vexel::tools {

namespace {

using Json = nlohmann::ordered_json;

// Each byte as the character of that number, in UTF-8.
std::string Characters(const std::string& bytes) {
  std::string out;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      out += c;
    } else {
      out += static_cast<char>(0xC0 | byte >> 6);
      out += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return out;
}

Json TextOf(const std::optional<std::string>& text) {
  return text ? Json(Characters(*text)) : Json(nullptr);
}
Json TextOf(const char* text) {
  return text ? Json(Characters(text)) : Json(nullptr);
}

void Put(const std::string& line) {
  std::printf("%s\n", line.c_str());
}
void PutJson(const Json& object) {
  Put(object.dump());
}

std::string ValueText(const std::optional<std::string>& value) {
  return value ? " = " + Escaped(*value) : " undefined";
}

Json TreeJson(const TreeRow& row) {
  const SObject* o = row.object;
  const MATRIX& m = o->mat;
  const ColorTransform& c = o->cxform;
  return {{"command", "tree"},
          {"level", row.level},
          {"depth", o->depth},
          {"id", o->character->id},
          {"type", o->character->type},
          {"name", TextOf(o->name)},
          {"matrix", {m.a, m.b, m.c, m.d, m.tx, m.ty}},
          {"cxform", {c.flags, c.aa, c.ab, c.ra, c.rb, c.ga, c.gb, c.ba, c.bb}},
          {"ratio", o->ratio},
          {"clip", o->clipDepth},
          {"visible", o->visible},
          {"button", o->buttonState},
          {"script", o->scriptControlled}};
}

}  // namespace

void Results::Key(bool wanted) const {
  if (json_) return PutJson(Json{{"command", "key"}, {"wanted", wanted}});
  Put(wanted ? "key 1" : "key 0");
}

void Results::Paste(bool taken) const {
  if (json_) return PutJson(Json{{"command", "paste"}, {"taken", taken}});
  Put(taken ? "paste 1" : "paste 0");
}

void Results::Variable(const std::string& name, const std::optional<std::string>& value) const {
  if (json_)
    return PutJson(Json{{"command", "get"}, {"name", TextOf(name)}, {"value", TextOf(value)}});
  Put("get " + Escaped(name) + ValueText(value));
}

void Results::Property(const std::string& path, int32_t index,
                       const std::optional<std::string>& value) const {
  if (json_)
    return PutJson(Json{
        {"command", "prop"}, {"path", TextOf(path)}, {"index", index}, {"value", TextOf(value)}});
  Put("prop " + Escaped(path) + ' ' + std::to_string(index) + ValueText(value));
}

void Results::Frame(const std::string& path, const ScriptThread* thread) const {
  if (json_) {
    Json object{{"command", "frame"}, {"path", TextOf(path)}, {"frame", nullptr}};
    if (thread) {
      object["frame"] = thread->curFrame;
      object["frames"] = thread->numFrames;
      object["playing"] = thread->playing;
    }
    return PutJson(object);
  }
  std::string value = " undefined";
  if (thread) {
    value = " = " + std::to_string(thread->curFrame) + ' ' + std::to_string(thread->numFrames) +
            ' ' + (thread->playing ? '1' : '0');
  }
  Put("frame " + Escaped(path) + value);
}

void Results::Hit(const SObject* object) const {
  const std::vector<int32_t> depths = DepthChain(object);
  if (json_)
    return PutJson(Json{{"command", "hit"}, {"depths", object ? Json(depths) : Json(nullptr)}});
  std::string text;
  for (const int32_t depth : depths) {
    if (!text.empty()) text += '.';
    text += std::to_string(depth);
  }
  Put("hit " + (object ? text : "nothing"));
}

void Results::Tree(const DisplayList& display) const {
  for (const TreeRow& row : TreeRows(display)) {
    if (json_) {
      PutJson(TreeJson(row));
    } else {
      Put(TreeText(row));
    }
  }
}

void Results::Dirty(const std::vector<SRECT>& rects) const {
  for (const SRECT& r : rects) {
    if (json_) {
      PutJson(Json{{"command", "dirty"}, {"rect", {r.xmin, r.ymin, r.xmax, r.ymax}}});
    } else {
      std::printf("dirty %d %d %d %d\n", r.xmin, r.ymin, r.xmax, r.ymax);
    }
  }
  if (!rects.empty()) return;
  if (json_) return PutJson(Json{{"command", "dirty"}, {"rect", nullptr}});
  Put("dirty nothing");
}

void Results::OnCall(const PlatformCall& call) {
  if (call.ofScreen) return;
  if (!json_) return Put(CallText(call));
  Json object{{"call", call.name}};
  if (call.url) {
    object["url"] = TextOf(call.url);
    object["target"] = TextOf(call.target);
    object["post"] = TextOf(call.post);
    object["flags"] = call.flags;
  }
  if (call.frame) object["frame"] = *call.frame;
  if (call.text) object["text"] = TextOf(call.text);
  PutJson(object);
}

}  // namespace vexel::tools
