#include "plain/plain_raster.h"

#include <algorithm>
#include <cstdlib>
#include <list>
#include <vector>

#include "plain/plain_slabs.h"
#include "raster/edge.h"
#include "raster/format_table.h"
#include "raster/rcolor.h"

namespace vexel::plain {
namespace {

struct Active {
  const REdge* edge;
  int32_t x;
  int32_t xl, yl, xStep, yStep, xStepStep, yStepStep, t;

  Active(const REdge* e, int32_t y, bool exact) : edge(e) {
    const int32_t dy = e->anchor2.y - e->anchor1.y;
    xl = WrapShl(e->anchor1.x, 16);
    yl = WrapShl(e->anchor1.y, 16);
    if (e->isLine) {
      xStep = WrapShl(e->anchor2.x - e->anchor1.x, 16) / dy;
      xl = WrapAdd(xl, WrapMul(xStep, y - e->anchor1.y));
      x = WrapAdd(xl, 0x8000) >> 16;
      return;
    }
    t = 2 * dy;
    const int64_t dt = 0x1000000 / t;
    const auto dt2 = static_cast<int32_t>((dt * dt + 0x800000) >> 24);
    const auto step = static_cast<int32_t>(dt);
    xStep = WrapMul(step, 2 * (e->control.x - e->anchor1.x));
    yStep = WrapMul(step, 2 * (e->control.y - e->anchor1.y));
    xStepStep = WrapMul(2 * (e->anchor1.x - 2 * e->control.x + e->anchor2.x), dt2);
    yStepStep = WrapMul(2 * (e->anchor1.y - 2 * e->control.y + e->anchor2.y), dt2);
    x = e->anchor1.x;
    if (y > e->anchor1.y) Step(y, exact);
  }

  void Step(int32_t y, bool exact) {
    if (edge->isLine) {
      xl = WrapAdd(xl, xStep);
      x = WrapAdd(xl, 0x8000) >> 16;
      return;
    }
    const int32_t oldX = xl;
    const int32_t oldY = yl;
    const int32_t target = WrapShl(y, 16);
    while (yl < target && t >= 0) {
      yl = WrapAdd(yl, yStep >> 8);
      yStep = WrapAdd(yStep, yStepStep);
      xl = WrapAdd(xl, xStep >> 8);
      xStep = WrapAdd(xStep, xStepStep);
      t--;
    }
    int32_t at = xl;
    if (exact && yl != oldY) {
      at = WrapAdd(xl,
                   FixedDiv(FixedMul(WrapSub(xl, oldX), WrapSub(target, yl)), WrapSub(yl, oldY)));
    }
    x = WrapAdd(at, 0x8000) >> 16;
  }
};

struct Run {
  int32_t xmin, xmax;
  std::vector<std::vector<RColor*>> stacks;
  int32_t typeMask = 0;
  bool pure = true;
  bool transparent = false;
};

bool Hides(const RColor* c) {
  return !c->transparent && c->clipColor == nullptr;
}

class Painter {
 public:
  explicit Painter(CRaster* raster) : r_(raster) {}

  void Paint() {
    r_->getBackground =
        r_->useBackground ? pixelFormats[r_->pixelFormat].getBackground : GetBackgroundWhite;
    for (y_ = r_->edgeClip.ymin; y_ < r_->edgeClip.ymax; y_++) {
      AddActive();
      // A bubble sort would do; ties keep their order.
      active_.sort([](const Active& a, const Active& b) { return a.x < b.x; });
      PaintScanline();
      if (r_->antialias && (y_ & 3) == 3) PaintRuns();
    }
    std::free(r_->errorBuf);
    r_->errorBuf = nullptr;
  }

 private:
  using ActiveList = std::list<Active>;

  void AddActive() {
    auto last = active_.begin();
    for (REdge* e = r_->yindex[y_ - r_->edgeClip.ymin]; e != nullptr; e = e->nextActive) {
      if (e->anchor2.y <= e->anchor1.y) continue;
      const Active a(e, y_, !r_->antialias);
      if (active_.empty()) {
        active_.push_back(a);
        last = active_.begin();
        continue;
      }
      auto at = last;
      if (at->x < a.x) {
        while (std::next(at) != active_.end() && at->x < a.x) ++at;
      } else if (at->x > a.x) {
        while (at != active_.begin() && at->x > a.x) --at;
      }
      last = active_.insert(std::next(at), a);
    }
  }

  void PaintScanline() {
    if (r_->antialias) {
      if (runs_.empty()) runs_.push_back({r_->edgeClip.xmin, r_->edgeClip.xmax, {}});
      curRun_ = runs_.begin();
    } else {
      r_->SetYCoord(y_);
    }
    for (RColor* c : on_) c->visible = 0;
    on_.clear();
    for (auto a = active_.begin(); a != active_.end();) {
      Apply(*a);
      if (a->edge->anchor2.y <= y_ + 1) {
        a = active_.erase(a);
      } else {
        a->Step(y_ + 1, !r_->antialias);
        ++a;
      }
    }
  }

  void Apply(const Active& a) {
    RColor* c1 = a.edge->color1;
    if (a.edge->fillRule == ruleWinding) {
      if (c1 == nullptr) return;
      if (c1->visible == 0) {
        Insert(c1, a.x);
        c1->visible = a.edge->dir;
      } else {
        const auto count = static_cast<int8_t>(c1->visible + a.edge->dir);
        if (count == 0) Remove(c1, a.x);
        c1->visible = count;
      }
      return;
    }
    Toggle(c1, a.x);
    if (a.edge->fillRule == ruleEdgeEdge) Toggle(a.edge->color2, a.x);
  }

  void Toggle(RColor* c, int32_t x) {
    if (c == nullptr) return;
    if (c->visible == 0) {
      Insert(c, x);
    } else {
      Remove(c, x);
    }
    c->visible = c->visible == 0;
  }

  void Insert(RColor* c, int32_t x) {
    auto at = on_.begin();
    while (at != on_.end() && (*at)->order >= c->order) ++at;
    const auto i = at - on_.begin();
    if (std::none_of(on_.begin(), at, Hides)) EndSpan(x);
    on_.insert(on_.begin() + i, c);
  }

  void Remove(RColor* c, int32_t x) {
    const auto at = std::find(on_.begin(), on_.end(), c);
    if (at == on_.end()) return;
    if (std::none_of(on_.begin(), at, Hides)) EndSpan(x);
    on_.erase(at);
  }

  static bool Shown(const RColor* c) {
    if (c->colorType == colorClip) return false;
    for (const RColor* k = c->clipColor; IsClipColor(k); k = k->clipColor) {
      if (k->visible == 0) return false;
    }
    return true;
  }

  void EndSpan(int32_t x) {
    int32_t x1 = paintX_;
    paintX_ = x;
    if (on_.empty()) return;
    if (r_->antialias) {
      Record(x1, x);
      return;
    }
    x1 = std::max(x1, r_->bitClip.xmin);
    x = std::min(x, r_->bitClip.xmax);
    if (x <= x1) return;
    std::vector<RColor*> shown;
    for (RColor* c : on_) {
      if (!Shown(c)) continue;
      if (shown.size() == 255) shown.pop_back();
      shown.push_back(c);
      if (!c->transparent) break;
    }
    if (shown.empty()) return;
    if (shown[0]->transparent) {
      CompositeSlab(r_, x1, x, shown);
    } else {
      DrawSlab(shown[0], x1, x);
    }
  }

  using RunList = std::list<Run>;

  // Splits the run at x and returns the right part. Either may be empty.
  RunList::iterator Split(RunList::iterator run, int32_t x) {
    Run right = *run;
    right.xmin = x;
    run->xmax = x;
    return runs_.insert(std::next(run), right);
  }

  void Record(int32_t x1, int32_t x2) {
    auto run = curRun_;
    if (run == runs_.end() || run->xmin >= x2) return;
    while (run != runs_.end() && run->xmax < x1) ++run;
    if (run != runs_.end() && run->xmin < x1) run = Split(run, x1);
    while (run != runs_.end() && run->xmin < x2) {
      if (run->xmax > x2) Split(run, x2);
      Fill(&*run);
      ++run;
    }
    curRun_ = run;
  }

  void Fill(Run* run) {
    std::vector<RColor*> stack;
    for (RColor* c : on_) {
      if (!Shown(c)) continue;
      if (stack.size() == 12) stack.pop_back();
      const size_t i = stack.size();
      stack.push_back(c);
      if (!run->stacks.empty() && (i >= run->stacks[0].size() || run->stacks[0][i] != c)) {
        run->pure = false;
      }
      run->typeMask |= c->colorType;
      if (!c->transparent) break;
      run->transparent = true;
    }
    if (stack.empty()) return;
    if (!run->stacks.empty() && run->stacks[0].size() != stack.size()) run->pure = false;
    run->stacks.push_back(stack);
  }

  void Fetch(RColor* c, int32_t x) {
    const uint32_t key =
        static_cast<uint32_t>(r_->bitY) << 16 | (static_cast<uint32_t>(x) & 0xFFFF);
    if (c->cacheKey != key) CalcPixel(c, x);
    c->cacheKey = key;
  }

  static void Add(RGBI* sum, RGBI c, int32_t n) {
    sum->blue = static_cast<uint16_t>(sum->blue + c.blue * n);
    sum->green = static_cast<uint16_t>(sum->green + c.green * n);
    sum->red = static_cast<uint16_t>(sum->red + c.red * n);
    sum->alpha = static_cast<uint16_t>(sum->alpha + c.alpha * n);
  }

  RGBI StackColor(const Run& run, const std::vector<RColor*>& stack, int32_t x) {
    if (!run.transparent) {
      Fetch(stack[0], x);
      if (stack[0]->colorType != colorSolid) stack[0]->rgb.alpha = 255;
      return stack[0]->rgb;
    }
    Fetch(stack.back(), x);
    RGBI acc = stack.back()->rgb;
    for (size_t i = stack.size() - 1; i-- > 0;) {
      Fetch(stack[i], x);
      acc = Over(stack[i]->rgb, acc);
    }
    return acc;
  }

  RGBI RunColor(const Run& run, int32_t x) {
    RGBI sum = {};
    for (size_t k = run.stacks.size(); k-- > 0;) {
      const RGBI c = StackColor(run, run.stacks[k], x);
      if (run.pure) {
        Add(&sum, c, static_cast<int32_t>(run.stacks.size()));
        break;
      }
      Add(&sum, c, 1);
    }
    return sum;
  }

  void FlushPixel() {
    if (sum_.alpha != 0) {
      RGBI c = Mean(sum_, 4);
      if (c.alpha != 255) {
        RGBI back;
        r_->getBackground(r_, sumX_, sumX_ + 1, &back);
        c = Over(c, back);
      }
      r_->drawRGBSlab(r_, sumX_, sumX_ + 1, &c);
    }
    sum_ = {};
  }

  void AddToPixel(int32_t x, RGBI c, int32_t quarters) {
    if (x != sumX_) FlushPixel();
    sumX_ = x;
    Add(&sum_, c, quarters);
  }

  void PaintRuns() {
    r_->SetYCoord(y_ >> 2);
    sum_ = {};
    for (const Run& run : runs_) {
      if (!run.stacks.empty()) PaintRun(run);
    }
    FlushPixel();
    runs_.clear();
  }

  void PaintRun(const Run& run) {
    int32_t px1 = run.xmin >> 2;
    const int32_t px2 = run.xmax >> 2;
    const int32_t f1 = run.xmin & 3;
    const int32_t f2 = run.xmax & 3;
    if (px1 == px2) {
      AddToPixel(px2, RunColor(run, px2), f2 - f1);
      return;
    }
    if (f1 != 0) {
      AddToPixel(px1, RunColor(run, px1), 4 - f1);
      px1++;
    }
    const bool full = run.stacks.size() == 4;
    if (px1 < px2 && run.pure && full) {
      if (run.transparent) {
        CompositeSlab(r_, px1, px2, run.stacks[0]);
      } else {
        DrawSlab(run.stacks[0][0], px1, px2);
      }
      px1 = px2;
    }
    for (; px1 < px2; px1++) {
      RGBI c = Mean(RunColor(run, px1), 2);
      if (!full || run.transparent) {
        RGBI back;
        r_->getBackground(r_, px1, px1 + 1, &back);
        c = Over(c, back);
      }
      r_->drawRGBSlab(r_, px1, px1 + 1, &c);
    }
    if (f2 != 0) AddToPixel(px2, RunColor(run, px2), f2);
  }

  CRaster* r_;
  int32_t y_ = 0;
  ActiveList active_;
  std::vector<RColor*> on_;  // topmost first
  int32_t paintX_ = 0;
  RunList runs_;
  RunList::iterator curRun_ = runs_.end();  // where the next span goes
  RGBI sum_ = {};
  int32_t sumX_ = -32000;
};

}  // namespace

void PaintBits(CRaster* raster) {
  if (!raster->BitsValid() || raster->nScanlines == 0 || raster->yindex == nullptr) return;
  Painter(raster).Paint();
}

}  // namespace vexel::plain
