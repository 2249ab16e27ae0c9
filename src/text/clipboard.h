// Where a platform's clipboard connects. Without one, cut and copy affect the
// field alone.
#pragma once

namespace vexel {

class SPlayer;

// What a platform does; any of them may be null. One for the process, as the
// clipboard is.
struct ClipboardPlatform {
  // `text` is to be the clipboard's, valid during the call only.
  void (*setData)(const char* text) = nullptr;
  // Answer, now or later, with SPlayer::PasteText.
  void (*startPaste)(SPlayer* player) = nullptr;
  // The player has a selection that others may ask for, or gave it up.
  void (*ownSelection)(SPlayer* player, bool own) = nullptr;
};
void SetClipboardPlatform(const ClipboardPlatform& platform);

void PlayerSetClipboardData(const char* text);
void PlayerStartPaste(SPlayer* player);
void PlayerOwnSelection(SPlayer* player, bool own);

}  // namespace vexel
