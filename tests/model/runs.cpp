// Turning the recorded runs of four sub-scanlines into pixels, and composing.
#include "raster.h"

namespace vexel::model {

static void Add(Rgbi& acc, const Rgbi& c, u32 times) {
  acc.Set(acc.Low() + c.Low() * times, acc.High() + c.High() * times);
}

static Rgbi Shifted(const Rgbi& c, int n) {
  Rgbi r;
  r.Set((c.Low() >> n) & 0xFF00FF, (c.High() >> n) & 0xFF00FF);
  return r;
}

void Raster::FetchColor(RColor* c, int x) {
  const u32 key = static_cast<u32>(bitY) << 16 | (static_cast<u32>(x) & 0xFFFF);
  if (c->cacheKey == key) return;
  if (c->type != kSolid) c->CalcPixel(x);
  c->cacheKey = key;
}

void Raster::CalcColor(const Run& r, int x, Rgbi& out) {
  out = Rgbi{};
  for (int k = r.nStacks - 1; k >= 0; --k) {
    Rgbi value;
    if (!r.transparent) {
      RColor* c = r.stacks[k][0];
      FetchColor(c, x);
      if (c->type != kSolid) c->rgb.alpha = 255;
      value = c->rgb;
    } else {
      for (int i = r.stackN[k] - 1; i >= 0; --i) {
        RColor* c = r.stacks[k][i];
        FetchColor(c, x);
        value = i == r.stackN[k] - 1 ? c->rgb : Over(c->rgb, value);
      }
    }
    if (r.isPure) {
      Add(out, value, static_cast<u32>(r.nStacks));
      return;
    }
    Add(out, value, 1);
  }
}

void Raster::Flush(i32 p) {
  if (accX == p) return;
  if (acc.alpha != 0) {
    const Rgbi c = Shifted(acc, 4);
    if (c.alpha == 255) {
      DrawSlab(accX, accX + 1, &c);
    } else {
      DrawRGBASlab(accX, accX + 1, &c);
    }
  }
  acc = Rgbi{};
  accX = p;
}

void Raster::PaintAARuns() {
  const i32 py = y >> 2;
  SetYCoord(py);
  acc = Rgbi{};
  accX = -32000;
  std::list<Run> list;
  list.swap(runs);
  haveRun = false;
  for (const Run& r : list) {
    if (r.nStacks == 0) continue;
    i32 px1 = r.xmin >> 2;
    const i32 px2 = r.xmax >> 2;
    const u32 f1 = r.xmin & 3, f2 = r.xmax & 3;
    Rgbi c;
    if (px1 == px2) {
      CalcColor(r, px2, c);
      Flush(px2);
      Add(acc, c, f2 - f1);
      continue;
    }
    bool valid = false;
    if (f1 != 0) {
      CalcColor(r, px1, c);
      valid = true;
      Flush(px1);
      Add(acc, c, 4 - f1);
      ++px1;
    }
    if (px1 < px2) {
      if (r.isPure && r.nStacks == 4) {
        if (r.transparent) {
          CompositeSlab(px1, px2, r.stacks[0], r.stackN[0]);
        } else {
          r.stacks[0][0]->Draw(px1, px2);
        }
      } else {
        for (i32 x = px1; x < px2; x += 256) {
          const i32 end = x + 256 < px2 ? x + 256 : px2;
          Rgbi buf[256];
          for (i32 i = x; i < end; ++i) {
            if (r.typeMask != 0) {
              Rgbi v;
              CalcColor(r, i, v);
              buf[i - x] = Shifted(v, 2);
            } else {
              if (!valid) CalcColor(r, i, c);
              valid = true;
              buf[i - x] = Shifted(c, 2);
            }
          }
          if (r.nStacks != 4 || r.transparent) {
            DrawRGBASlab(x, end, buf);
          } else {
            DrawSlab(x, end, buf);
          }
        }
      }
    }
    if (f2 != 0) {
      if (r.typeMask != 0 || !valid) CalcColor(r, px2, c);
      Flush(px2);
      Add(acc, c, f2);
    }
  }
  Flush(-32001);
  acc = Rgbi{};
}

void Raster::Background(int x1, int x2, Rgbi* out) const {
  // Nothing on this road reads the buffer back: the background is white.
  for (int x = x1; x < x2; ++x) {
    out->blue = out->green = out->red = 255;
    out->alpha = 0;
    ++out;
  }
}

void Raster::DrawRGBASlab(int x1, int x2, const Rgbi* pixels) {
  std::vector<Rgbi> buf(static_cast<size_t>(x2 - x1));
  Background(x1, x2, buf.data());
  for (int x = x1; x < x2; ++x) buf[x - x1] = Over(pixels[x - x1], buf[x - x1]);
  DrawSlab(x1, x2, buf.data());
}

void Raster::CompositeSlab(int x1, int x2, RColor* const* colors, int n) {
  Rgbi buf[256];
  for (; x1 < x2; x1 += 256) {
    const int end = x1 + 256 < x2 ? x1 + 256 : x2;
    int remaining = n;
    RColor* b = colors[n - 1];
    if (b->transparent) {
      Background(x1, end, buf);
    } else if (b->type == kSolid) {
      Rgbi constant = b->rgb;
      --remaining;
      while (remaining > 0 && colors[remaining - 1]->type == kSolid) {
        constant = Over(colors[remaining - 1]->rgb, constant);
        --remaining;
      }
      for (int x = x1; x < end; ++x) buf[x - x1] = constant;
    }
    while (remaining > 0) colors[--remaining]->Composite(x1, end, buf);
    DrawSlab(x1, end, buf);
  }
}

}  // namespace vexel::model
