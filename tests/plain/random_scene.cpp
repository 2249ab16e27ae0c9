#include "plain/random_scene.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "raster/pixel_format.h"

namespace vexel::plain {
namespace {

int16_t To16(int32_t v) {
  return static_cast<int16_t>(std::clamp(v, -32768, 32767));
}

}  // namespace

RandomScene::RandomScene(uint32_t seed) : state_(seed * 0x9E3779B97F4A7C15u + 1) {
  MakeTarget();
  const int32_t n = 1 + Below(Chance(10) ? 30 : 7);
  for (int32_t i = 0; i < n; i++) {
    if (Chance(15)) {
      MakeMask(OutermostClip(), 0);
    } else {
      MakeLayer(Chance(3) ? OutermostClip() : nullptr);
    }
  }
}

RandomScene::~RandomScene() {
  for (RColor& c : colors_) c.FreeCache();
  for (SBitmapCore& b : bitmaps_) b.PIFree();
}

int32_t RandomScene::Below(int32_t n) {
  state_ = state_ * 6364136223846793005u + 1442695040888963407u;
  return static_cast<int32_t>((state_ >> 33) % static_cast<uint64_t>(n));
}

int32_t RandomScene::Between(int32_t low, int32_t high) {
  return low + Below(high - low + 1);
}

int32_t RandomScene::X() {
  const int32_t side = buffer.width * scale_;
  if (Chance(5)) return Between(-30000, 30000);
  if (Chance(15)) return Between(0, buffer.width) * scale_;
  return Between(-20, side + 20);
}

int32_t RandomScene::Y() {
  const int32_t side = buffer.height * scale_;
  if (Chance(3)) return Between(-30000, 30000);
  if (Chance(15)) return Between(0, buffer.height) * scale_;
  return Between(-20, side + 20);
}

void RandomScene::MakeTarget() {
  const int32_t format = Chance(70) ? pix32 : Below(kPixelFormatCount);
  const int32_t width = Chance(20) ? Between(200, 700) : Between(1, 60);
  const int32_t height = Between(1, 24);
  SColorTable table;
  SetStandardColors(&table);
  SColorInfo* info = CreateColorInfo(&table);
  if (!buffer.CreateBits(format, info, width, height)) std::abort();
  ReleaseColorInfo(info);
  const int32_t size = buffer.rowBytes * buffer.height;
  for (int32_t i = 0; i < size; i++) buffer.baseAddr[i] = static_cast<uint8_t>(Below(216));
  buffer.inverted = Chance(10);
  if (Chance(10) && width > 8) {
    buffer.xOffset = Between(1, 7);
    buffer.width -= buffer.xOffset;
  }
  raster.ditherKind = Below(kDitherKindCount);
  raster.solidDither = Chance(90) ? 1 : Chance(50) ? 0 : 2;
  raster.patXOrg = Below(4);
  raster.patYOrg = Below(4);
  const bool antialias = Chance(80);
  scale_ = antialias ? 4 : 1;
  SRECT clip = {Between(-5, buffer.width), 0, Between(-5, buffer.height), 0};
  clip.xmax = Between(clip.xmin, buffer.width + 5);
  clip.ymax = Between(clip.ymin, buffer.height + 5);
  raster.Attach(&buffer, Chance(40) ? &clip : nullptr, antialias);
  if (Chance(10)) raster.UseAlphaChannel();
  raster.useBackground = Chance(50);
}

SBitmapCore* RandomScene::MakeBitmap() {
  SBitmapCore* b = &bitmaps_.emplace_back();
  b->PIInit();
  SColorTable table;
  table.n = Chance(70) ? 256 : Between(1, 255);
  const bool opaque = Chance(50);
  for (RGB8& c : table.colors) {
    c = static_cast<uint32_t>(Below(0x1000000)) | static_cast<uint32_t>(opaque ? 255 : Below(256))
                                                      << 24;
  }
  const int32_t format = Chance(8) ? Below(3) : Between(bm8Bit, bm32Bit);
  const int32_t width = Chance(20) ? Between(200, 400) : Between(1, 12);
  if (!b->PICreate(format, width, Between(1, 9), &table, 0)) std::abort();
  const bool wellFormed = Chance(60);
  for (int32_t i = 0; i < b->rowBytes * b->height; i++) {
    b->baseAddr[i] = static_cast<uint8_t>(Below(256));
    if (wellFormed && format == bm32Bit && i % 4 == 3) b->baseAddr[i] = 255;
  }
  return b;
}

MATRIX RandomScene::MakeMatrix(int shift) {
  const int32_t one = 1 << shift;
  MATRIX m = {one, 0, 0, one, 0, 0};
  switch (Below(6)) {
    case 0:
      break;
    case 1:
      m.a = m.d = one + Between(-300, 300);
      break;
    case 2:
      m = {Between(-2 * one, 2 * one), 0, 0, Between(-2 * one, 2 * one), 0, 0};
      break;
    case 3:
      m = {one / 3, 0, 0, one / 3, 0, 0};
      break;
    default:
      m = {Between(-2 * one, 2 * one),
           Between(-one, one),
           Between(-one, one),
           Between(-2 * one, 2 * one),
           0,
           0};
      break;
  }
  if (Chance(2)) m.a = Between(-0x3FFFFFFF, 0x3FFFFFFF) * 2;
  const int32_t reach = 40 << std::min(shift, 24);
  m.tx = Between(-reach, reach);
  m.ty = Between(-reach, reach);
  return m;
}

void RandomScene::FillSolid(RColor* c) {
  const int32_t alpha = Chance(50) ? 255 : Chance(15) ? 0 : Below(256);
  const auto channel = [&] {
    return static_cast<uint16_t>(Chance(97) ? Below(alpha + 1) : Below(256));
  };
  c->rgb = {channel(), channel(), channel(), static_cast<uint16_t>(alpha)};
  c->transparent = alpha != 255 && !Chance(3);
  if (Chance(3)) c->transparent = true;
  if (Chance(2)) c->pattern = static_cast<uint32_t>(Between(1, 3));
}

void RandomScene::FillGradient(RColor* c) {
  c->grad.fillStyle = Chance(50) ? kRadialFill : 16;
  c->grad.ramp = {};
  c->grad.ramp.nColors = static_cast<uint8_t>(Between(1, 8));
  const bool opaque = Chance(60);
  int32_t ratio = 0;
  for (int32_t i = 0; i < c->grad.ramp.nColors; i++) {
    ratio = Chance(5) ? Below(256) : std::min(255, ratio + Below(80));
    c->grad.ramp.colorRatio[i] = static_cast<uint8_t>(ratio);
    const auto byte = [&] { return static_cast<uint8_t>(Below(256)); };
    c->grad.ramp.color[i] = {byte(), byte(), byte(),
                             opaque       ? uint8_t{255}
                             : Chance(30) ? uint8_t{0}
                                          : byte()};
  }
  // The gradient's square is 2^23 wide and a pixel 2^8.
  c->grad.invGradMat = MakeMatrix(Between(25, 28));
  c->grad.invGradMat.tx = Between(-0x400000, 0x400000);
  c->grad.invGradMat.ty = Between(-0x400000, 0x400000);
  if (Chance(30)) {  // whole numbers of squares meet exactly
    c->grad.invGradMat = {1 << 27, 0, 0, 1 << 27, -(Below(60) << 19), -(Below(20) << 19)};
  }
  c->transparent = !opaque && !Chance(3);
}

void RandomScene::FillBitmap(RColor* c) {
  c->bm.bitmap = Chance(97) ? MakeBitmap() : nullptr;
  c->bm.fillStyle = Chance(50) ? 64 : 65;
  c->bm.invMat = MakeMatrix(16);
  c->bm.cxform.Clear();
  c->rgb = {0, 0, 255, 255};
  c->transparent = Chance(40);
  if (Chance(30)) {
    c->bm.cxform.ra = static_cast<int16_t>(Below(400));
    c->bm.cxform.gb = static_cast<int16_t>(Between(-255, 255));
    if (Chance(50)) c->bm.cxform.aa = static_cast<int16_t>(Below(300));
    c->bm.cxform.CalcFlags();
  }
  if (Chance(2)) c->pattern = static_cast<uint32_t>(Between(1, 3));
}

RColor* RandomScene::MakeColor() {
  RColor* c = &colors_.emplace_back();
  c->SetUp(&raster);
  c->order = static_cast<uint32_t>(Chance(4) ? 7 : colors_.size());
  const int32_t kind = Below(100);
  c->colorType = kind < 60 ? colorSolid : kind < 85 ? colorGradient : colorBitmap;
  if (c->colorType == colorSolid) FillSolid(c);
  if (c->colorType == colorGradient) FillGradient(c);
  if (c->colorType == colorBitmap) FillBitmap(c);
  c->BuildCache();
  return c;
}

RColor* RandomScene::MakeClip() {
  RColor* c = &colors_.emplace_back();
  c->SetUp(&raster);
  c->order = static_cast<uint32_t>(colors_.size());
  c->colorType = colorClip;
  c->transparent = true;
  c->rgb = {};
  c->BuildCache();
  return c;
}

void RandomScene::AddEdge(Layer* layer, uint8_t rule, RColor* c1, RColor* c2, int32_t x1,
                          int32_t y1, int32_t x2, int32_t y2) {
  if (y1 == y2) return;
  const int8_t dir = y1 < y2 ? 1 : -1;
  if (y1 > y2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  layer->edges.push_back(edges_.size());
  edges_.push_back({nullptr,
                    nullptr,
                    c1,
                    c2,
                    {To16(x1), To16(y1)},
                    {To16(x1), To16(y1)},
                    {To16(x2), To16(y2)},
                    true,
                    rule,
                    dir});
}

void RandomScene::AddCurve(Layer* layer, uint8_t rule, RColor* c1, RColor* c2, int32_t x1,
                           int32_t y1, int32_t x2, int32_t y2) {
  if (y1 == y2) return;
  AddEdge(layer, rule, c1, c2, x1, y1, x2, y2);
  REdge* e = &edges_.back();
  e->isLine = false;
  e->control.x = To16(Chance(3) ? Between(-32768, 32767) : X());
  e->control.y = Chance(2) ? To16(Y()) : To16(Between(std::min(y1, y2), std::max(y1, y2)));
}

void RandomScene::AddBox(Layer* layer, uint8_t rule, RColor* c) {
  const int32_t x1 = X();
  const int32_t x2 = X();
  const int32_t y1 = Y();
  const int32_t y2 = Y();
  AddEdge(layer, rule, c, nullptr, x1, y1, x1, y2);
  AddEdge(layer, rule, c, nullptr, x2, y2, x2, y1);
}

void RandomScene::AddPolygon(Layer* layer, uint8_t rule, RColor* c, bool curved) {
  const int32_t n = Between(3, Chance(20) ? 40 : 8);
  const int32_t x0 = X();
  const int32_t y0 = Y();
  const int32_t reach = Chance(50) ? 12 : 10000;
  int32_t x1 = x0;
  int32_t y1 = y0;
  for (int32_t i = 0; i < n; i++) {
    const int32_t x2 = i == n - 1 ? x0 : std::clamp(X(), x1 - reach, x1 + reach);
    const int32_t y2 = i == n - 1 ? y0 : std::clamp(Y(), y1 - reach, y1 + reach);
    if (curved && Chance(60)) {
      AddCurve(layer, rule, c, nullptr, x1, y1, x2, y2);
    } else {
      AddEdge(layer, rule, c, nullptr, x1, y1, x2, y2);
    }
    x1 = x2;
    y1 = y2;
  }
}

// Strips side by side, with seams between equal and different colours.
void RandomScene::AddStrips(Layer* layer) {
  const int32_t y1 = Y();
  const int32_t y2 = Y();
  std::vector<RColor*> palette;
  for (int32_t i = Between(1, 3); i > 0; i--) palette.push_back(MakeColor());
  layer->colors.insert(layer->colors.end(), palette.begin(), palette.end());
  RColor* left = nullptr;
  int32_t x = X();
  for (int32_t i = Between(2, 8); i > 0; i--) {
    RColor* right = i == 1
                        ? nullptr
                        : palette[static_cast<size_t>(Below(static_cast<int32_t>(palette.size())))];
    AddEdge(layer, ruleEdgeEdge, left, right, x, y1, x + Between(-9, 9), y2);
    left = right;
    x += Between(0, 60);
  }
}

// Edges that close nothing.
void RandomScene::AddNoise(Layer* layer) {
  RColor* c = layer->colors.empty() ? nullptr : layer->colors[0];
  for (int32_t i = Between(1, 4); i > 0; i--) {
    AddEdge(layer, static_cast<uint8_t>(Below(kFillRuleCount)), c, Chance(30) ? c : nullptr, X(),
            Y(), X(), Y());
  }
}

void RandomScene::MakeLayer(RColor* clipper) {
  Layer layer;
  layer.clipper = clipper;
  if (Chance(20)) {
    AddStrips(&layer);
  } else {
    for (int32_t i = Chance(20) ? 4 : 1; i > 0; i--) {
      RColor* c = MakeColor();
      layer.colors.push_back(c);
      const auto rule = static_cast<uint8_t>(Below(kFillRuleCount));
      if (Chance(40)) {
        AddBox(&layer, rule, c);
      } else {
        AddPolygon(&layer, rule, c, Chance(50));
      }
      if (Chance(3)) AddBox(&layer, static_cast<uint8_t>(Below(kFillRuleCount)), c);
    }
  }
  if (Chance(4)) AddNoise(&layer);
  layers_.push_back(layer);
}

void RandomScene::MakeMask(RColor* outer, int depth) {
  RColor* mask = MakeClip();
  for (int32_t i = Between(1, 3); i > 0; i--) {
    if (depth < 3 && Chance(30)) {
      MakeMask(mask, depth + 1);
    } else {
      MakeLayer(mask);
    }
  }
  Layer layer;
  layer.clipper = outer;
  layer.colors.push_back(mask);
  if (Chance(50)) {
    AddBox(&layer, ruleEvenOdd, mask);
  } else {
    AddPolygon(&layer, static_cast<uint8_t>(Between(1, 2)), mask, Chance(50));
  }
  layers_.push_back(layer);
}

void RandomScene::Add(int32_t dx, int32_t dy) {
  raster.BeginPaint();
  moved_ = edges_;
  for (REdge& e : moved_) {
    for (REdgePoint* p : {&e.anchor1, &e.control, &e.anchor2}) {
      p->x = To16(p->x + dx);
      p->y = To16(p->y + dy);
    }
  }
  for (const Layer& layer : layers_) {
    REdge* head = nullptr;
    for (size_t i : layer.edges) {
      moved_[i].next = head;
      head = &moved_[i];
    }
    RColor* colors = nullptr;
    for (RColor* c : layer.colors) {
      c->next = colors;
      colors = c;
    }
    raster.AddEdges(head, colors, layer.clipper);
  }
}

const std::vector<uint8_t> RandomScene::Pixels() const {
  const auto size = static_cast<size_t>(buffer.rowBytes) * static_cast<size_t>(buffer.height);
  return {buffer.baseAddr, buffer.baseAddr + size};
}

}  // namespace vexel::plain
