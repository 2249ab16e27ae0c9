#include "trace.h"

#include <cstdio>

#include "escapes.h"
#include "movie/tags.h"
#include "player/splayer.h"
#include "player/text.h"

namespace vexel::tools {

namespace {

struct KindName {
  TraceKind kind;
  const char* name;
};
constexpr KindName kKindNames[] = {
    {kTraceTags, "tags"}, {kTraceFrames, "frames"}, {kTraceCalls, "calls"}};

// Results go first, so that a terminal shows both in order.
void PutLine(const std::string& line) {
  std::fflush(stdout);
  std::fputs((line + '\n').c_str(), stderr);
}

std::string PathOf(const ScriptThread& thread) {
  SPlayer* player = thread.player ? thread.player->splayer : nullptr;
  char* path = player ? player->GetTargetPath(thread.rootObject) : nullptr;
  const std::string text = Escaped(path);
  FreeStr(path);
  return text;
}

}  // namespace

bool ParseTrace(const std::string& text, int* kinds) {
  *kinds = 0;
  for (size_t at = 0; at <= text.size();) {
    const size_t comma = std::min(text.find(',', at), text.size());
    const std::string word = text.substr(at, comma - at);
    int kind = 0;
    for (const KindName& row : kKindNames) {
      if (word == row.name) kind = row.kind;
    }
    if (kind == 0) return false;
    *kinds |= kind;
    at = comma + 1;
  }
  return true;
}

std::string TraceKindNames() {
  std::string names;
  for (const KindName& row : kKindNames)
    names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

PlayObserver* Trace::Observer() {
  return (kinds_ & ~kTraceCalls) != 0 ? this : nullptr;
}

void Trace::OnCall(const PlatformCall& call) {
  if (kinds_ & kTraceCalls) PutLine("call " + CallText(call));
  next_->OnCall(call);
}

void Trace::OnTag(const ScriptThread& thread) {
  if (!(kinds_ & kTraceTags)) return;
  const TagInfo* info = FindTagInfo(thread.tagCode);
  PutLine("tag " + PathOf(thread) + " +" + std::to_string(thread.tagPos) + ' ' +
          (info ? info->word : "unknown") + ' ' + std::to_string(thread.tagCode) +
          " length=" + std::to_string(thread.tagEnd - thread.pos));
}

void Trace::OnFrame(const ScriptThread& thread) {
  if (!(kinds_ & kTraceFrames)) return;
  PutLine("frame " + PathOf(thread) + ' ' + std::to_string(thread.curFrame) +
          (thread.seeking ? " passed" : ""));
}

}  // namespace vexel::tools
