// The built-in fonts as characters. They are defined as any movie defines its
// characters, by the tags of a movie of their own, which stands beside the
// layers and places nothing.
#include "player/splayer.h"
#include "text/built_in_fonts.h"

namespace vexel {

namespace {

// Below no layer that a movie can name in a timeline.
constexpr uint16_t kFontLayer = 16000;

// Runs the tags of the first frame of `fonts`. They are the player's own, so
// the movie's allowance of tags doesn't pay for them, and no tool sees them
// among the movie's.
void RunFontTags(DisplayList* display, ScriptPlayer* fonts) {
  const int32_t tagsLeft = display->tagsLeft;
  PlayObserver* observer = display->observer;
  display->ResetTagBudget();
  display->observer = nullptr;
  fonts->DoTags(0);
  display->observer = observer;
  display->tagsLeft = tagsLeft;
}

}  // namespace

bool SPlayer::LoadBuiltInFonts() {
  if (fontState != FontState::kNotTried) return fontState == FontState::kLoaded;
  char* movie = nullptr;
  const int32_t size = GetUnixFontData(&movie);
  if (size < 0) {
    fontState = FontState::kFailed;
    return false;
  }
  fontPlayer.display = &display;
  display.AddThread(&fontPlayer);
  fontPlayer.splayer = this;
  fontPlayer.layerDepth = kFontLayer;
  fontPlayer.PushDataBuf(reinterpret_cast<const uint8_t*>(movie), size);
  fontPlayer.PushDataComplete();
  RunFontTags(&display, &fontPlayer);
  // The run loop steps every listed timeline, and would give this one a root
  // object.
  fontPlayer.StopPlay();
  delete[] movie;
  fontState = FontState::kLoaded;
  return true;
}

}  // namespace vexel
