#include "headless_player.h"

#include <algorithm>
#include <string>
#include <utility>

#include "player/random.h"
#include "player/text.h"
#include "raster/color_table.h"
#include "status.h"
#include "text/clipboard.h"

namespace vexel::tools {

namespace {

uint32_t g_tick = kFirstTick;
uint32_t Tick() {
  return g_tick;
}

constexpr bool IsSide(int32_t side) {
  return side >= kMinBufferSide && side <= kMaxBufferSide;
}

// Buffers of up to 8 bits show the standard colours.
bool CreateBuffer(CBitBuffer* bits, int32_t format, int32_t width, int32_t height) {
  SColorInfo* palette = nullptr;
  if (format <= pix8) {
    SColorTable table;
    SetStandardColors(&table);
    palette = GetColorInfo(&table);
  }
  const bool done = bits->CreateBits(format, palette, width, height);
  ReleaseColorInfo(palette);
  return done;
}

}  // namespace

void SetTick(uint32_t tick) {
  g_tick = tick;
}
void AdvanceTick(uint32_t ms) {
  g_tick += ms;
}

StandingClock::StandingClock() {
  SetTick(kFirstTick);
  SetTickClock(Tick);
}

HeadlessPlayer::HeadlessPlayer(const MovieFile& movie, const ViewOptions& view,
                               const PlayOptions& play)
    : calls_(play.calls) {
  const int32_t width = view.width ? view.width : movie.width;
  const int32_t height = view.width ? view.height : movie.height;
  const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  if (!IsSide(width) || !IsSide(height))
    throw Failure(kFailed, movie.path,
                  "its own size is " + size + ", outside 1 to 8191; --size gives another");
  client_ = {0, width, 0, height};
  highQuality = view.highQuality;
  if (!CreateBuffer(&bits, view.pixelFormat, width, height))
    throw Failure(kFailed, movie.path, "not enough memory for " + size);
  gRandomFast = {play.seed, kRandomTaps, 0};
  display.observer = play.observer;
  actionTrace = play.actions;
  SetCamera(kCameraOnly);
  display.ModifyCamera();
  PushDataBuf(movie.bytes.data(), static_cast<int32_t>(movie.bytes.size()));
  if (scriptErr != 0) throw Failure(kFailed, movie.path, "not enough memory to play it");
  PushDataComplete();
  s_copying = this;
  SetClipboardPlatform({SetClipboard, StartPaste, nullptr});
}

// Defined here and not in the class, so that the class's tables exist once, in
// the one source that is built like the core it derives from.
HeadlessPlayer::~HeadlessPlayer() {
  SetClipboardPlatform({});
  s_copying = nullptr;
}

// The stage's list of dirty rectangles is cut and merged while it is painted;
// the same is done here beforehand, on the list itself, which is put back.
void HeadlessPlayer::NotePaint() {
  painted_.clear();
  display.CalcUpdate();
  SRECT rects[kDirtyRects + 1];
  int32_t areas[kDirtyRects + 1];
  const int32_t count = display.dirtyCount;
  std::copy(std::begin(display.dirtyRect), std::end(display.dirtyRect), rects);
  std::copy(std::begin(display.dirtyArea), std::end(display.dirtyArea), areas);
  display.DecomposeDirtyList();
  for (int32_t i = 0; i < display.dirtyCount; i++) {
    SRECT pixels;
    display.CalcBitsDirty(&display.dirtyRect[i], &pixels);
    // Before it had pixels the stage was larger than the buffer may be.
    pixels.xmax = std::min(pixels.xmax, bits.width);
    pixels.ymax = std::min(pixels.ymax, bits.height);
    if (pixels.xmin < pixels.xmax && pixels.ymin < pixels.ymax) painted_.push_back(pixels);
  }
  std::copy(std::begin(rects), std::end(rects), display.dirtyRect);
  std::copy(std::begin(areas), std::end(areas), display.dirtyArea);
  display.dirtyCount = count;
}

void HeadlessPlayer::Redraw() {
  NotePaint();
  display.Update();
}

void HeadlessPlayer::Step(int64_t count) {
  for (; count > 0; count--) {
    display.ResetTagBudget();
    // A step that changes nothing would be followed by equal ones.
    if (!StepThreads()) return;
  }
}

void HeadlessPlayer::SetClipboard(const char* text) {
  s_copying->Tell({.name = "clip", .text = text});
}

void HeadlessPlayer::StartPaste(SPlayer* player) {
  static_cast<HeadlessPlayer*>(player)->pasteWaits_ = true;
}

bool HeadlessPlayer::Paste(const std::string& text) {
  if (!std::exchange(pasteWaits_, false)) return false;
  return PasteText(text.data(), static_cast<int32_t>(text.size()));
}

void HeadlessPlayer::Tell(const PlatformCall& call) {
  if (calls_) calls_->OnCall(call);
}

void HeadlessPlayer::TellOfScreen(const char* name) {
  Tell({.name = name, .ofScreen = true});
}

void HeadlessPlayer::CheckUpdate() {
  TellOfScreen("CheckUpdate");
}
void HeadlessPlayer::UpdateScreen() {
  TellOfScreen("UpdateScreen");
}
bool HeadlessPlayer::StartTimer() {
  TellOfScreen("StartTimer");
  return true;
}
void HeadlessPlayer::StopTimer() {
  TellOfScreen("StopTimer");
}
void HeadlessPlayer::ClientRect(SRECT* out) {
  TellOfScreen("ClientRect");
  *out = client_;
}
void HeadlessPlayer::XSetCapture() {
  TellOfScreen("XSetCapture");
}
void HeadlessPlayer::XReleaseCapture() {
  TellOfScreen("XReleaseCapture");
}
void HeadlessPlayer::GetURL(const char* url, const char* target, const char* postData,
                            int32_t flags) {
  Tell({.name = "GetURL", .url = url, .target = target, .post = postData, .flags = flags});
}
void HeadlessPlayer::ShowStatus(const char*) {
  TellOfScreen("ShowStatus");
}
void HeadlessPlayer::UpdateCursor(int32_t) {
  TellOfScreen("UpdateCursor");
}
void HeadlessPlayer::CloseStream(ScriptPlayer*) {
  TellOfScreen("CloseStream");
}
void HeadlessPlayer::XStopPlay() {
  Tell({.name = "XStopPlay"});
}
void HeadlessPlayer::XPlay() {
  Tell({.name = "XPlay"});
}
void HeadlessPlayer::XSeek(int32_t frame) {
  Tell({.name = "XSeek", .frame = frame});
}

}  // namespace vexel::tools
