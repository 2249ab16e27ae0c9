// Taking a movie in as it arrives, in pieces of any size. The whole movie lies
// in one block of the declared length, allocated once, so positions stay valid
// while more comes in; the frames that are complete are counted by tag headers
// alone, and each header is looked at once.
#include <cstring>

#include "movie/budget.h"
#include "movie/script_player.h"
#include "movie/tags.h"
#include "player/splayer.h"

namespace vexel {

namespace {

// Nothing behind the file header is read before this many bytes are there.
constexpr int32_t kStageHeaderBytes = 19;

// Milliseconds per frame of a movie that declares no rate.
constexpr int32_t kStillFrameDelay = 1000;

// 1000 milliseconds in 16.16.
constexpr int32_t kSecondFixed = 1000 << 16;

// Room beyond what is needed when the buffer of a loaded text grows.
constexpr int32_t kTextSlack = 2049;

int32_t LittleDWord(const uint8_t* bytes) {
  return static_cast<int32_t>(uint32_t{bytes[0]} | uint32_t{bytes[1]} << 8 |
                              uint32_t{bytes[2]} << 16 | uint32_t{bytes[3]} << 24);
}

}  // namespace

void ScriptPlayer::PushDataBuf(const uint8_t* data, int32_t n) {
  if (scriptErr != 0 || n <= 0) return;
  if (variableLoader) {
    TakeText(data, n);
    return;
  }
  if (scriptLen < 0 && !TakeHeader(&data, &n)) return;

  const int32_t room = scriptLen - len;
  if (n > room) n = room;
  if (n > 0) {
    memcpy(scriptBlock.Bytes() + len, data, static_cast<size_t>(n));
    len += n;
  }
  if (!gotHeader && !ReadStageHeader()) return;
  if (len >= scriptLen) {
    numFramesComplete = kAllFramesComplete;
    return;
  }
  CountFrames();
}

// The text ends in a zero: the block is one byte longer than `scriptLen` says.
// Doubling keeps the copying in proportion to the text.
void ScriptPlayer::TakeText(const uint8_t* data, int32_t n) {
  if (n > kMaxLoadedText - len) n = kMaxLoadedText - len;
  if (n <= 0) return;
  if (len + n > scriptLen) {
    int32_t room = len + n + kTextSlack;
    if (room < 2 * len) room = 2 * len;
    DataRef grown = DataRef::Adopt(DataBlock::Create(room + 1));
    if (!grown) {
      scriptErr = kScriptNoMemory;
      return;
    }
    if (len > 0) memcpy(grown.Bytes(), scriptBlock.Bytes(), static_cast<size_t>(len));
    scriptBlock = grown;
    script = grown.Bytes();
    scriptLen = room;
  }
  memcpy(scriptBlock.Bytes() + len, data, static_cast<size_t>(n));
  len += n;
  dataEnd = len;
}

// Collects the 8 bytes of the file header, and allocates the movie by them.
// False while they are not all there, and for a bad header.
bool ScriptPlayer::TakeHeader(const uint8_t** data, int32_t* n) {
  int32_t taken = kMovieHeaderBytes - headerBytes;
  if (taken > *n) taken = *n;
  memcpy(headerBuf + headerBytes, *data, static_cast<size_t>(taken));
  headerBytes += taken;
  *data += taken;
  *n -= taken;
  if (headerBytes < kMovieHeaderBytes) return false;

  // A signed number, so a length from 2 GB on is a bad one.
  const int32_t declared = LittleDWord(headerBuf + 4);
  if (memcmp(headerBuf, kMovieSignature, sizeof kMovieSignature) != 0 ||
      declared < kMovieHeaderBytes) {
    scriptErr = kScriptBadHeader;
    return false;
  }
  DataRef block;
  if (declared <= kMaxMovieBytes) block = DataRef::Adopt(DataBlock::Create(declared));
  if (!block) {
    scriptErr = kScriptNoMemory;
    return false;
  }
  version = headerBuf[3];
  scriptLen = declared;
  memcpy(block.Bytes(), headerBuf, kMovieHeaderBytes);
  AttachScript({block, block.Bytes(), scriptLen});
  len = kMovieHeaderBytes;
  pos = kMovieHeaderBytes;
  return true;
}

void ScriptPlayer::ReadStage() {
  GetRect(&frame);
  frameRate = GetWord() << 8;
  frameDelay = frameRate > 0 ? kSecondFixed / frameRate : kStillFrameDelay;
  numFrames = GetWord();
}

// The rectangle's size is in its own first bits, and it may be longer than what
// is in so far; only a movie that is wholly in is read as it is, with zeros
// behind its end.
bool ScriptPlayer::ReadStageHeader() {
  if (len < kStageHeaderBytes) return false;
  const int32_t coordBits = script[kMovieHeaderBytes] >> 3;
  const int32_t rectBytes = (5 + 4 * coordBits + 7) / 8;
  if (len < scriptLen && len < kMovieHeaderBytes + rectBytes + 4) return false;

  ReadStage();
  startPos = pos;
  scanPos = pos;
  curFrame = -1;
  currentLabel = nullptr;
  gotHeader = true;
  return true;
}

void ScriptPlayer::CountFrames() {
  SParser scan(script, len, scanPos);
  int32_t code;
  while ((code = scan.GetTag(len)) >= 0) {
    scan.pos = scan.tagEnd;
    scanPos = scan.tagEnd;
    if (code == kTagFrameEnd) ++numFramesComplete;
  }
}

void ScriptPlayer::PushDataComplete() {
  if (!splayer || static_cast<ScriptPlayer*>(splayer) != this || splayer->loaded) return;
  splayer->display.ResetTagBudget();
  const int32_t result = DrawFrame(0, true);
  if (result == kScriptOk || (script && IsComplete())) {
    splayer->loaded = true;
    if (numFrames < 2 && splayer->autoQuality) splayer->highQuality = true;
    splayer->Run();
    splayer->DoActions();
  }
  splayer->SetCamera(kCameraShowSoon);
}

}  // namespace vexel
