// Construction and end of a stage, its pools and their budgets, and its
// background.
#include "stage/display_list.h"

#include <cstring>

#include "movie/budget.h"
#include "movie/script_thread.h"
#include "raster/edge.h"
#include "raster/rcolor.h"

namespace vexel {

namespace {

// Items to a block, and the marks that tell blocks apart in a memory dump.
constexpr int kEdgesPerBlock = 600;
constexpr int kObjectsPerBlock = 32;
constexpr int kColorsPerBlock = 64;
constexpr uint32_t kEdgePattern = 0x22222222;
constexpr uint32_t kObjectPattern = 0x55555555;
constexpr uint32_t kColorPattern = 0x44444444;

constexpr SRGB kNoColorYet = {0xFF, 0xFF, 0xFF, 0xFF};  // and so paints white

// A background with a priority above this outlives Reset.
constexpr int32_t kMoviePriority = 1;

}  // namespace

DisplayList::DisplayList()
    : backgroundColor(kNoColorYet),
      edgeAlloc(sizeof(REdge), kEdgesPerBlock, true, kEdgePattern),
      objectAlloc(sizeof(SObject), kObjectsPerBlock, true, kObjectPattern),
      colorAlloc(sizeof(RColor), kColorsPerBlock, true, kColorPattern) {
  MatrixIdentity(&camera.mat);
  camera.cxform.Clear();
  root.display = this;
  MatrixIdentity(&root.mat);
  root.cxform.Clear();
  RectSetEmpty(&root.devBounds);
  RectSetEmpty(&screenDirtyRect);
  RectSetEmpty(&devDirtyUnion);
  RectSetEmpty(&tabFocusRect);
  UpdateDevViewRect();
}

DisplayList::~DisplayList() {
  root.FreeChildren();
  while (ScriptThread* thread = threads) {
    RemoveThread(thread);
    thread->display = nullptr;
  }
}

void DisplayList::SetBackgroundColor(SRGB color, int32_t priority) {
  if (priority <= backgroundPriority) return;
  if (memcmp(&color, &backgroundColor, sizeof color) != 0) {
    InvalidateRect(&devViewRect);
    backgroundColor = color;
  }
  backgroundPriority = priority;
}

void DisplayList::Reset() {
  if (backgroundPriority > kMoviePriority) return;
  backgroundColor = kNoColorYet;
  backgroundPriority = 0;
  InvalidateRect(&devViewRect);
}

void DisplayList::FreeCache() {
  root.FreeTreeCache();
  edgeAlloc.FreeEmpties();
  objectAlloc.FreeEmpties();
  colorAlloc.FreeEmpties();
  raster.FreeEmpties();
}

void DisplayList::FreeEdges(REdge** list) {
  while (REdge* edge = *list) {
    *list = edge->next;
    FreeEdge(edge);
  }
}

RColor* DisplayList::NewColor() {
  if (colorCount >= kMaxStageColors) return nullptr;
  auto* color = static_cast<RColor*>(colorAlloc.Alloc());
  if (color) ++colorCount;
  return color;
}

void DisplayList::FreeColor(RColor* color) {
  color->FreeCache();
  colorAlloc.Free(color);
  --colorCount;
}

}  // namespace vexel
