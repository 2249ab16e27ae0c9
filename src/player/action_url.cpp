// Navigation: requests wait until all scripts have finished.
#include <cstring>

#include "movie/script_player.h"
#include "player/action_run.h"
#include "player/text.h"
#include "player/url_builder.h"
#include "stage/object.h"

namespace vexel {

namespace {

// Bits of the flags of ActionGetURLExpr. The low bits say how the target's
// variables go along; values besides these two mean not at all.
constexpr int32_t kSendMask = 0x3F;
constexpr int32_t kSendInUrl = 1;
constexpr int32_t kSendAsPost = 2;
constexpr int32_t kIntoTarget = 0x40;  // the window is the path of a timeline
constexpr char kBottomLayer[] = "_level0";

// True for a colon behind "mailto", with blanks and control characters before.
bool IsMailtoURL(const char* text) {
  if (!text) return false;
  while (*text >= 1 && *text <= 32) ++text;
  const char* rest = StripPrefix(text, "mailto");
  return rest && *rest == ':';
}

// True if a machine's name is all that the URL has: nothing separates it from
// a query.
bool IsMachineNameURL(const char* text) {
  const char* name = strstr(text, "://");
  return name && !strchr(name + 3, '/');
}

// A layer's name and no path inside of the layer.
bool IsWholeLayer(const char* path) {
  if (LayerNum(path) < 0) return false;
  const char* slash = strchr(path, '/');
  return !slash || !slash[1];
}

// Finds what `path` names, from the target. Gives the window text for the
// request, new, and clears kIntoTarget in `*flags` when that is a whole layer,
// which is loaded and not navigated to. False if the request is void.
bool ResolveWindow(const ActionRun& run, const char* path, char** window, int32_t* flags) {
  const ScriptThread* thread = run.player->FindTarget(run.TargetRoot(), path);
  if (IsWholeLayer(path)) {
    *flags &= ~kIntoTarget;
    *window = CreateStr(path);
    return true;
  }
  if (strcmp(path, "/") == 0) {
    *flags &= ~kIntoTarget;
    *window = thread && thread->layerDepth != 0 ? run.player->GetTargetPath(thread->rootObject)
                                                : CreateStr(kBottomLayer);
    return true;
  }
  if (!thread) return false;
  char* full = run.player->GetTargetPath(thread->rootObject);
  if (!full) {
    *window = CreateStr(path);
    return true;
  }
  if (strcmp(full, "/") == 0) {
    *flags &= ~kIntoTarget;
    FreeStr(full);
    full = CreateStr(kBottomLayer);
  } else if (IsWholeLayer(full)) {
    *flags &= ~kIntoTarget;
  }
  *window = full;
  return true;
}

}  // namespace

void ActionGetURL(ActionRun& run) {
  const TextView url = run.Text(0);
  const TextView window = run.Text(url.length + 1);
  run.AddPending(CreateStr(url.bytes, url.length), CreateStr(window.bytes, window.length), nullptr,
                 0);
}

void ActionGetURLExpr(ActionRun& run) {
  const PoppedText windowText(run.stack.Pop());
  const PoppedText urlText(run.stack.Pop());
  int32_t flags = run.Byte(0);
  const int32_t mode = flags;

  char* window;
  if ((mode & kIntoTarget) == 0) {
    window = CreateStr(windowText.Text());
  } else if (!ResolveWindow(run, windowText.Text(), &window, &flags)) {
    return;
  }

  // Required: the variables are those of the target, wherever the answer goes.
  const ScriptThread* target = run.Target();
  ScriptVariable* variables = target ? target->firstVariable : nullptr;
  URLBuilder url = {};
  URLBuilder postData = {};
  url.AppendString(urlText.Text());
  if ((mode & kSendMask) == kSendInUrl && variables) {
    if (IsMachineNameURL(urlText.Text())) url.AppendChar('/');
    url.AppendChar('?');
    url.EncodeVariables(variables);
  } else if ((mode & kSendMask) == kSendAsPost && variables) {
    postData.EncodeVariables(variables);
  }
  if (IsMailtoURL(url.buffer)) {
    FreeStr(postData.buffer);
    postData.buffer = nullptr;
  }
  run.AddPending(url.buffer ? url.buffer : CreateStr(""), window, postData.buffer, flags);
}

}  // namespace vexel
