// Bitmap characters: pixels are decoded when a fill first needs them, and may
// be dropped at any time while no colour uses them.
#include "movie/budget.h"
#include "movie/script_player.h"
#include "movie/tags.h"
#include "player/splayer.h"

namespace vexel {

// The budget is one for all layers of a player.
int64_t* ScriptPlayer::BitmapBytes() {
  return splayer ? &static_cast<ScriptPlayer*>(splayer)->bitmapBytes : &bitmapBytes;
}

bool ScriptPlayer::CreateBits(SCharacter* character, int32_t format, int32_t width, int32_t height,
                              const SColorTable* table) {
  const int64_t bytes = int64_t{SBitmapCalcRowbytes(format, width)} * height;
  if (int64_t{width} * height > kMaxBitmapPixels) {
    character->damaged = true;
    return false;
  }
  if (*BitmapBytes() + bytes > kMaxBitmapBytes) {
    ReapBitmaps();
    if (*BitmapBytes() + bytes > kMaxBitmapBytes) return false;
  }
  if (!character->bits.PICreate(format, width, height, table, 0)) {
    character->bits.PIFree();
    return false;
  }
  *BitmapBytes() += bytes;
  return true;
}

void ScriptPlayer::FreeBits(SCharacter* character) {
  SBitmapCore* bits = &character->bits;
  if (bits->baseAddr) *BitmapBytes() -= int64_t{bits->rowBytes} * bits->height;
  bits->PIFree();
}

void ScriptPlayer::BuildBits(SCharacter* character) {
  if (character->bits.baseAddr || character->damaged) return;
  character->bits.PIFree();
  SParser parser(character->data.bytes, character->data.length);
  const int32_t code = parser.GetTag(kNoTagLimit);
  parser.GetWord();  // the id
  switch (code) {
    case kTagDefineBits:
    case kTagDefineBitsJPEG:
    case kTagDefineBitsJPEGAlpha:
      BuildJPEG(character, &parser, code);
      break;
    case kTagDefineBitsLossless:
    case kTagDefineBitsLosslessAlpha:
      BuildLossless(character, &parser, code == kTagDefineBitsLosslessAlpha);
      break;
    default:
      break;
  }
}

}  // namespace vexel
