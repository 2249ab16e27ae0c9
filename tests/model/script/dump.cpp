// Both states in one form.
#include "dump.h"

#include <cstdarg>
#include <cstdio>

#include "movie/character.h"
#include "movie/script_value.h"
#include "stage/object.h"

namespace vexel::model::script {

namespace {

struct Lines {
  std::string out;

  __attribute__((format(printf, 3, 4))) void Add(int indent, const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    out.append(static_cast<size_t>(indent) * 2, ' ');
    out += text;
    out += '\n';
  }
  void AddText(int indent, const char* what, const std::string& text) {
    out.append(static_cast<size_t>(indent) * 2, ' ');
    out += what;
    for (const char c : text) {
      if (c >= 32 && c < 127) {
        out += c;
      } else {
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned char>(c));
        out += code;
      }
    }
    out += '\n';
  }
};

// The same lines from the player's objects and from the model's, whose fields
// differ in name here and there.
void AddObject(Lines& lines, int indent, const SObject& o) {
  lines.Add(indent, "object at %d, character %d of type %d", o.depth, o.character->id,
            o.character->type);
  lines.AddText(indent + 1, "name ", o.name ? '"' + std::string(o.name) + '"' : "none");
  const MATRIX& m = o.mat;
  lines.Add(indent + 1, "matrix %d %d %d %d %d %d", m.a, m.b, m.c, m.d, m.tx, m.ty);
  lines.Add(indent + 1, "alpha %d flags %d visible %d controlled %d ratio %d", o.cxform.aa,
            o.cxform.flags, o.visible, o.scriptControlled, o.ratio);
  const SRECT& r = o.dragConstraint;
  lines.Add(indent + 1, "drag %d, %d %d %d %d", o.dragCenter, r.xmin, r.xmax, r.ymin, r.ymax);
  if (o.thread && o.thread->rootObject == &o) {
    ScriptThread& t = *o.thread;
    lines.Add(indent + 1, "frame %d of %d, playing %d, at end %d", t.curFrame, t.numFrames,
              t.playing, t.atEnd);
    for (ScriptVariable* v = t.firstVariable; v; v = v->next) {
      lines.AddText(indent + 1, "variable ",
                    std::string(v->name) + " = " + (v->Text() ? v->Text() : "none"));
    }
  }
  for (const SObject* child = o.firstChild; child; child = child->next) {
    AddObject(lines, indent + 1, *child);
  }
}

void AddObject(Lines& lines, int indent, const Object& o) {
  lines.Add(indent, "object at %d, character %d of type %d", o.depth, o.character->id,
            o.character->type);
  lines.AddText(indent + 1, "name ", o.hasName ? '"' + o.name + '"' : "none");
  const Matrix& m = o.mat;
  lines.Add(indent + 1, "matrix %d %d %d %d %d %d", m.a, m.b, m.c, m.d, m.tx, m.ty);
  lines.Add(indent + 1, "alpha %d flags %u visible %d controlled %d ratio %d", o.cxform.aa,
            o.cxform.flags, o.visible, o.scriptControlled, o.ratio);
  const Rect& r = o.dragConstraint;
  lines.Add(indent + 1, "drag %d, %d %d %d %d", o.dragCenter, r.xmin, r.xmax, r.ymin, r.ymax);
  if (o.thread && o.thread->root == &o) {
    const Thread& t = *o.thread;
    lines.Add(indent + 1, "frame %d of %d, playing %d, at end %d", t.curFrame, t.numFrames,
              t.playing, t.atEnd);
    for (const Variable& v : t.variables) {
      lines.AddText(indent + 1, "variable ", v.name + " = " + v.value);
    }
  }
  for (const Object* child = o.firstChild; child; child = child->next) {
    AddObject(lines, indent + 1, *child);
  }
}

}  // namespace

std::string Dump(test::TestPlayer& player) {
  Lines lines;
  lines.AddText(0, "calls ", player.TakeCalls());
  lines.Add(0, "halted %d, %d names, %d objects", player.actionsHalted,
            player.display.instanceNameCount, player.display.objectCount);
  lines.Add(0, "quality %d %d, focus %d, buffer %d", player.highQuality, player.bestQuality,
            player.display.useFocusRect, player.bufferTime);
  const SObject* drag = player.dragObject.Get();
  lines.Add(0, "dragging %d", drag && player.dragging);
  if (drag) {
    char* path = player.GetTargetPath(player.dragObject.Get());
    lines.AddText(1, "at ", path);
    FreeStr(path);
  }
  for (int32_t i = 0; i < player.stack.Count(); ++i) {
    char scratch[kValueScratchSize];
    const TextView text = player.stack.At(i).View(scratch);
    lines.AddText(0, "stack ", std::string(text.bytes, static_cast<size_t>(text.length)));
  }
  for (const SObject* child = player.display.root.firstChild; child; child = child->next) {
    AddObject(lines, 0, *child);
  }
  return lines.out;
}

std::string Dump(Player& player) {
  Lines lines;
  lines.AddText(0, "calls ", player.calls);
  player.calls.clear();
  lines.Add(0, "halted %d, %d names, %d objects", player.halted, player.stage.instanceNames,
            player.stage.objects);
  lines.Add(0, "quality %d %d, focus %d, buffer %d", player.highQuality, player.bestQuality,
            player.useFocusRect, player.bufferTime);
  lines.Add(0, "dragging %d", player.stage.dragObject && player.stage.dragging);
  if (player.stage.dragObject) {
    lines.AddText(1, "at ", player.TargetPath(player.stage.dragObject));
  }
  for (const Text& value : player.stack) lines.AddText(0, "stack ", value);
  for (const Object* child = player.stage.root.firstChild; child; child = child->next) {
    AddObject(lines, 0, *child);
  }
  return lines.out;
}

}  // namespace vexel::model::script
