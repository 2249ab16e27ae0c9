// The colour of a run at one pixel.
#include "raster/run.h"

#include "raster/composite.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/slabs.h"

namespace vexel {
namespace {

// Makes c->rgb the colour's value at the pixel `key`; a colour is asked once a
// pixel although up to four stacks hold it.
void Fetch(RColor* c, int32_t x, uint32_t key) {
  if (c->cacheKey == key) return;
  if (c->colorType != colorSolid) calcPixelProcs[c->colorType & 3](c, x, &c->rgb);
  c->cacheKey = key;
}

RGBIWords OpaqueStack(const RRun* run, int32_t k, int32_t x, uint32_t key) {
  RColor* c = run->stacks[k][0];
  Fetch(c, x, key);
  // Required: the alpha goes into the colour's kept value itself.
  if (c->colorType != colorSolid) c->rgb.alpha = 255;
  return LoadWords(&c->rgb);
}

RGBIWords TransparentStack(const RRun* run, int32_t k, int32_t x, uint32_t key) {
  int32_t i = run->stackN[k] - 1;
  Fetch(run->stacks[k][i], x, key);
  RGBIWords acc = LoadWords(&run->stacks[k][i]->rgb);
  while (--i >= 0) {
    Fetch(run->stacks[k][i], x, key);
    acc = CompositeWords(LoadWords(&run->stacks[k][i]->rgb), acc);
  }
  return acc;
}

}  // namespace

void RRun::CalcColor(int32_t x, int32_t y, RGBI* out) {
  const uint32_t key = static_cast<uint32_t>(y) << 16 | (static_cast<uint32_t>(x) & 0xFFFF);
  const auto stack = transparent ? TransparentStack : OpaqueStack;
  RGBIWords sum = {0, 0};
  for (int32_t k = nStacks - 1; k >= 0; k--) {
    if (isPure) {
      AddWords(&sum, stack(this, k, x, key), static_cast<uint32_t>(nStacks));
      break;
    }
    AddWords(&sum, stack(this, k, x, key), 1);
  }
  StoreWords(sum, out);
}

}  // namespace vexel
