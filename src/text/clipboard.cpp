// The clipboard seam: the platform's functions where it has some.
#include "text/clipboard.h"

namespace vexel {

static ClipboardPlatform s_platform;

void SetClipboardPlatform(const ClipboardPlatform& platform) {
  s_platform = platform;
}

void PlayerSetClipboardData(const char* text) {
  if (s_platform.setData) s_platform.setData(text);
}

void PlayerStartPaste(SPlayer* player) {
  if (s_platform.startPaste) s_platform.startPaste(player);
}

void PlayerOwnSelection(SPlayer* player, bool own) {
  if (s_platform.ownSelection) s_platform.ownSelection(player, own);
}

}  // namespace vexel
