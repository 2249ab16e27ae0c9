// Target paths, and what is found by them: timelines, their variables and their
// frames. A path walks the tree of placed objects by name, every time anew:
// scripts name few things, and any action can move or remove what was found.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "movie/budget.h"
#include "movie/character.h"
#include "player/convert.h"
#include "player/splayer.h"
#include "player/text.h"
#include "stage/object.h"

namespace vexel {

namespace {

// Required: a longer name in a path counts as several names of this length.
constexpr size_t kMaxSegment = 127;

// What a path shows for an object without a name.
constexpr char kNoName[] = "?";

// Endings of a field's variable that speak of its scroll position.
constexpr char kScroll[] = ".scroll";
constexpr char kMaxScroll[] = ".maxscroll";

// "_level" and a layer's number of 16 bits.
constexpr size_t kMaxLevelName = 12;

// The outermost object of the layer that `object` stands in.
SObject* LayerTop(SObject* object) {
  while (object && object->parent && object->parent->parent) object = object->parent;
  return object;
}

bool HasTimeline(const SObject* object) {
  return object->character &&
         (object->character->type == charSprite || object->character->type == charLoadedMovie);
}

SObject* FindChild(const SObject* parent, const char* name) {
  SObject* child = parent->firstChild;
  while (child && !(HasTimeline(child) && StrEqual(child->name, name))) child = child->next;
  return child;
}

// A path ends below the root object of a layer.
bool InPath(const SObject* object) {
  return object && object->character && object->character->type != charRoot;
}

const char* PathName(const SObject* object) {
  return object->name ? object->name : kNoName;
}

// The ScrollMode that reads what the ending of a name asks for; -1 for none.
int32_t ReadMode(const char* ending) {
  if (strcmp(ending, kScroll) == 0) return kScrollGet;
  if (strcmp(ending, kMaxScroll) == 0) return kScrollGetMax;
  return -1;
}

// ScrollEditText of the field whose variable stands before `ending` in `name`;
// false if there is none.
bool ScrollField(DisplayList* stage, ScriptThread* thread, const char* name, const char* ending,
                 int32_t mode, int32_t* line) {
  char* field = CreateStr(name, static_cast<int32_t>(ending - name));
  const bool found = field && stage->root.ScrollEditText(thread, field, mode, *line);
  FreeStr(field);
  return found;
}

// Copies the next name of a path, and returns what follows it and its slash.
const char* NextSegment(const char* path, char (&segment)[kMaxSegment + 1]) {
  const size_t length = strcspn(path, "/");
  const size_t taken = length < kMaxSegment ? length : kMaxSegment;
  memcpy(segment, path, taken);
  segment[taken] = '\0';
  path += taken;
  return *path == '/' ? path + 1 : path;
}

}  // namespace

ScriptThread* SPlayer::FindTarget(SObject* start, const char* path) {
  if (!path) return nullptr;
  SObject* at = start;
  bool mayNameLayer = true;
  if (*path == '/') {
    at = LayerTop(start);
    ++path;
    mayNameLayer = false;
  }
  while (*path) {
    char segment[kMaxSegment + 1];
    path = NextSegment(path, segment);
    const int32_t layer = mayNameLayer ? LayerNum(segment) : -1;
    mayNameLayer = false;
    if (layer >= 0) {
      const ScriptPlayer* found = FindLayer(this, layer);
      at = found ? found->rootObject : nullptr;
    } else if (at) {
      at = strcmp(segment, "..") == 0 ? at->parent : FindChild(at, segment);
    }
    if (!at) return nullptr;
  }
  return at ? at->thread : nullptr;
}

// Two walks up the chain: the first adds up the length, the second writes the
// names from the end of the text to its start.
char* SPlayer::GetTargetPath(SObject* object) {
  char level[kMaxLevelName] = "";
  int64_t length = 0;
  const SObject* top = object;
  int32_t names = 0;
  for (; names < kMaxNesting && InPath(top); top = top->parent, ++names) {
    length += 1 + static_cast<int64_t>(strlen(PathName(top)));
  }
  const ScriptPlayer* movie = top && top->character ? top->character->player : nullptr;
  if (movie && movie->layerDepth != 0) {
    snprintf(level, sizeof level, "_level%u", unsigned{movie->layerDepth});
  }
  const int64_t levelLength = static_cast<int64_t>(strlen(level));
  length += levelLength;
  if (length == 0) return CreateStr("/");
  if (length > kMaxValueText) return nullptr;

  char* path = static_cast<char*>(malloc(static_cast<size_t>(length) + 1));
  if (!path) return nullptr;
  memcpy(path, level, static_cast<size_t>(levelLength));
  char* end = path + length;
  *end = '\0';
  for (const SObject* at = object; names > 0; at = at->parent, --names) {
    const size_t size = strlen(PathName(at));
    end -= size;
    memcpy(end, PathName(at), size);
    *--end = '/';
  }
  return path;
}

ScriptThread* SPlayer::ResolveVariable(const char* text, ScriptThread* thread, const char** name) {
  ScriptThread* from = thread ? thread : this;
  *name = text;
  const char* colon = text ? strchr(text, ':') : nullptr;
  if (!colon) return from;
  *name = colon + 1;
  char* path = CreateStr(text, static_cast<int32_t>(colon - text));
  ScriptThread* found = FindTarget(from->rootObject, path);
  FreeStr(path);
  return found;
}

ScriptThread* SPlayer::ResolveFrameNum(const char* text, ScriptThread* thread, int32_t* frame) {
  const char* name;
  ScriptThread* found = ResolveVariable(text, thread, &name);
  if (!found) return nullptr;
  int32_t number;
  if (!ConvertStringToInteger(name, &number)) {
    number = found->FindLabel(name);
  } else if (number > 0) {
    --number;  // scripts count frames from 1
  } else {
    return nullptr;
  }
  if (number < 0) return nullptr;
  *frame = number;
  return found;
}

// A name with a dot speaks of a text field, never of a variable.
char* SPlayer::GetVariable(ScriptThread* thread, const char* text) {
  const char* name;
  ScriptThread* found = ResolveVariable(text, thread, &name);
  if (!found || !name) return nullptr;
  if (const char* ending = strchr(name, '.')) {
    int32_t line = 0;
    const int32_t mode = ReadMode(ending);
    const bool hasField = mode >= 0 && ScrollField(&display, found, name, ending, mode, &line);
    return hasField ? ConvertIntegerToString(line) : nullptr;
  }
  ScriptVariable* variable = found->FindVariable(name);
  return variable ? CreateStr(variable->Text()) : nullptr;
}

void SPlayer::SetVariable(ScriptThread* thread, const char* text, const char* value,
                          bool updateFocus) {
  const char* name;
  ScriptThread* found = ResolveVariable(text, thread, &name);
  if (!found || !name) return;
  if (const char* ending = strchr(name, '.')) {
    int32_t line;
    if (strcmp(ending, kScroll) == 0 && ConvertStringToInteger(value, &line)) {
      ScrollField(&display, found, name, ending, kScrollSet, &line);
    }
    return;
  }
  found->SetVariable(name, value, updateFocus);
}

}  // namespace vexel
