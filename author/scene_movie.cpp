// A scene as a movie of one frame.
//
// Shapes are drawn on a grid finer than the movie's twentieths of a pixel and placed
// with a matrix that scales them down by the same power of two, so that an icon of 48
// pixels still has true curves when it fills a screen. All that is drawn between two
// changes of clipping is one shape: its styles lie above each other in the order they
// are added, and a line above all fills of its table, so a fill that comes after a line
// opens new tables.
#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <unordered_map>

#include "author/scene.h"
#include "author/writer.h"

namespace vexel::author {
namespace {

// The longer side of a frame, on the fine grid, stays below this: a shape's edges
// then fit one record, and the products of the player's matrices keep their precision.
constexpr double kGridSide = 32768;
constexpr int kMaxFineness = 64;

// Half the side of the square that gradients are defined on.
constexpr double kGradientHalf = 16384;

// Styles per table; players hold tables of up to 254 without allocating.
constexpr size_t kMaxStyles = 254;

// The farthest a coordinate may lie, in grid units. What is drawn there is far
// outside the frame, and an edge is cut into pieces of 65535.
constexpr double kFar = 1 << 21;

// Depths and character ids are 16-bit numbers.
constexpr int kMaxObjects = 60000;

int32_t ToUnit(double v) {
  return static_cast<int32_t>(std::lround(std::clamp(v, -kFar, kFar)));
}

int32_t ToFixed(double v) {
  return static_cast<int32_t>(std::clamp(std::round(v * kOne), -2147483647.0, 2147483647.0));
}

Matrix ToMatrix(const Affine& m) {
  auto move = [](double v) { return static_cast<int32_t>(std::clamp(std::round(v), -1e9, 1e9)); };
  return {ToFixed(m.a), ToFixed(m.b), ToFixed(m.c), ToFixed(m.d), move(m.e), move(m.f)};
}

Color ToColor(const SceneColor& c) {
  double alpha = std::clamp(c.alpha, 0.0, 1.0);
  return {c.red, c.green, c.blue, static_cast<uint8_t>(std::lround(alpha * 255))};
}

class SceneMovie {
 public:
  // What is placed refers to what is defined, so that the two may be one stream.
  SceneMovie(const Scene& scene, uint16_t firstId, TagStream* definitions, TagStream* stage)
      : scene_(scene), definitions_(*definitions), stage_(*stage), nextId_(firstId) {
    double side = std::max(scene.width, scene.height) * kPixel;
    while (fineness_ < kMaxFineness && side * fineness_ * 2 <= kGridSide) fineness_ *= 2;
    bitmapIds_.resize(scene.bitmaps.size(), 0);
  }

  // The first id that is still free.
  uint16_t Write() {
    for (const SceneItem& item : scene_.items) {
      if (nextId_ >= kMaxObjects) break;
      switch (item.op) {
        case SceneOp::kFill:
          Fill(item);
          break;
        case SceneOp::kStroke:
          Stroke(item);
          break;
        case SceneOp::kBeginClip:
          BeginClip(item);
          break;
        case SceneOp::kEndClip:
          EndShape();
          if (!clips_.empty()) {
            PlaceClip(clips_.back());
            clips_.pop_back();
          }
          break;
      }
    }
    EndShape();
    while (!clips_.empty()) {
      PlaceClip(clips_.back());
      clips_.pop_back();
    }
    return nextId_;
  }

 private:
  struct OpenClip {
    uint16_t id, depth;
  };

  void Fill(const SceneItem& item) {
    const Paint& paint = item.paint;
    bool faded = paint.kind == PaintKind::kBitmap && paint.alpha < 1;
    // The opacity of a bitmap is a matter of placing it, and so of its own object.
    if (faded) EndShape();
    uint32_t style = AddFill(FillOf(paint));
    shape_->Style(style, 0);
    Draw(item.path, true);
    if (faded) EndShape(Cxform::Alpha(paint.alpha));
  }

  void Stroke(const SceneItem& item) {
    double width = item.width * Scale();
    Color color = ToColor(item.paint.color);
    if (!shape_ || lines_ >= kMaxStyles) NewTables();
    uint32_t line =
        shape_->AddLine(static_cast<uint16_t>(std::clamp(std::lround(width), 1L, 65535L)), color);
    lines_++;
    alpha_ = alpha_ || color.alpha < 255;
    shape_->Style(0, line);
    Draw(item.path, false);
  }

  // A clip covers the depths from its own up to one that is known when it ends.
  // Objects are placed in order of depth all the same: players sort them.
  void BeginClip(const SceneItem& item) {
    EndShape();
    ShapeBuilder mask;
    mask.Style(mask.AddFill(Color{0, 0, 0}), 0);
    shape_ = std::make_unique<ShapeBuilder>(std::move(mask));
    Draw(item.path, true);
    uint16_t id = nextId_++;
    definitions_.DefineShape(id, *shape_, kTagDefineShape2);
    shape_.reset();
    clips_.push_back({id, nextDepth_++});
  }

  void PlaceClip(const OpenClip& clip) {
    Placement place;
    place.depth = clip.depth;
    place.character = clip.id;
    place.matrix = Down();
    place.clipDepth = static_cast<uint16_t>(nextDepth_ - 1);
    stage_.Place(place);
  }

  void EndShape(const std::optional<Cxform>& cxform = {}) {
    if (!shape_) return;
    if (!shape_->records().empty()) {
      uint16_t id = nextId_++;
      definitions_.DefineShape(id, *shape_, alpha_ ? kTagDefineShape3 : kTagDefineShape2);
      Placement place;
      place.depth = nextDepth_++;
      place.character = id;
      place.matrix = Down();
      place.cxform = cxform;
      stage_.Place(place);
    }
    shape_.reset();
    fills_ = lines_ = 0;
    alpha_ = false;
  }

  uint32_t AddFill(const FillStyle& fill) {
    if (!shape_ || lines_ > 0 || fills_ >= kMaxStyles) NewTables();
    fills_++;
    alpha_ = alpha_ || fill.color.alpha < 255;
    for (const GradientStop& stop : fill.stops) alpha_ = alpha_ || stop.color.alpha < 255;
    return shape_->AddFill(fill);
  }

  void NewTables() {
    if (shape_)
      shape_->NewStyles();
    else
      shape_ = std::make_unique<ShapeBuilder>();
    fills_ = lines_ = 0;
  }

  FillStyle FillOf(const Paint& paint) {
    Affine toGrid = Affine::Scale(Scale(), Scale()) * paint.matrix;
    if (paint.kind == PaintKind::kSolid) return FillStyle::Solid(ToColor(paint.color));
    if (paint.kind == PaintKind::kBitmap)
      return FillStyle::Bitmap(BitmapId(paint.bitmap), ToMatrix(toGrid), !paint.tiled);
    std::vector<GradientStop> stops;
    for (const PaintStop& stop : paint.stops) {
      // The ramp has 256 steps over the square; the last position is 255.
      double position = std::clamp(std::round(stop.offset * 256), 0.0, 255.0);
      stops.push_back({static_cast<uint8_t>(position), ToColor(stop.color)});
    }
    double k = 1 / kGradientHalf;
    if (paint.kind == PaintKind::kLinear)
      return FillStyle::Linear(ToMatrix(toGrid * Affine{k / 2, 0, 0, k / 2, 0.5, 0}), stops);
    return FillStyle::Radial(ToMatrix(toGrid * Affine::Scale(k, k)), stops);
  }

  // Defines a bitmap before its first use.
  uint16_t BitmapId(int index) {
    uint16_t& id = bitmapIds_[static_cast<size_t>(index)];
    if (id != 0) return id;
    const SceneBitmap& bitmap = scene_.bitmaps[static_cast<size_t>(index)];
    id = nextId_++;
    if (!bitmap.jpeg.empty())
      definitions_.DefineJpeg(id, bitmap.jpeg);
    else
      definitions_.DefineBits(id,
                              bitmap.opaque ? kTagDefineBitsLossless : kTagDefineBitsLosslessAlpha,
                              EncodeLossless(LosslessFromBitmap(bitmap), !bitmap.opaque));
    return id;
  }

  // Contours of a fill are closed; a stroke ends where its path does.
  void Draw(const VectorPath& path, bool close) {
    Point start;
    bool open = false;
    auto end = [&] {
      if (open && close) Line(start);
      open = false;
    };
    for (const PathCommand& c : path.commands) {
      switch (c.op) {
        case PathOp::kMove:
          end();
          start = ToPoint(c.p);
          shape_->MoveTo(start);
          open = true;
          break;
        case PathOp::kLine:
          Line(ToPoint(c.p));
          break;
        case PathOp::kQuad:
          Curve(ToPoint(c.c1), ToPoint(c.p));
          break;
        case PathOp::kCubic:
          break;  // scenes hold none
        case PathOp::kClose:
          Line(start);
          break;
      }
    }
    end();
  }

  void Line(Point to) {
    if (!(to == shape_->pen())) shape_->LineTo(to);
  }
  void Curve(Point control, Point to) {
    Point from = shape_->pen();
    if (control == from || control == to)
      Line(to);
    else
      shape_->CurveTo(control, to);
  }

  Point ToPoint(Vec2 p) const { return {ToUnit(p.x * Scale()), ToUnit(p.y * Scale())}; }
  double Scale() const { return kPixel * fineness_; }
  Matrix Down() const { return Matrix{kOne / fineness_, 0, 0, kOne / fineness_, 0, 0}; }

  const Scene& scene_;
  TagStream& definitions_;
  TagStream& stage_;
  int fineness_ = 1;
  std::unique_ptr<ShapeBuilder> shape_;  // what is drawn since the last change of clipping
  size_t fills_ = 0, lines_ = 0;         // in the tables in use
  bool alpha_ = false;
  uint16_t nextId_, nextDepth_ = 1;
  std::vector<uint16_t> bitmapIds_;
  std::vector<OpenClip> clips_;
};

}  // namespace

bool Paint::IsOpaque() const {
  if (kind == PaintKind::kBitmap) return false;
  if (kind == PaintKind::kSolid) return color.alpha >= 1;
  return std::all_of(stops.begin(), stops.end(),
                     [](const PaintStop& stop) { return stop.color.alpha >= 1; });
}

void FadePaint(double opacity, Paint* paint) {
  paint->color.alpha *= opacity;
  for (PaintStop& stop : paint->stops) stop.color.alpha *= opacity;
  paint->alpha *= opacity;
}

LosslessBody LosslessFromBitmap(const SceneBitmap& bitmap) {
  if (bitmap.opaque) {
    std::unordered_map<uint32_t, uint8_t> numbers;
    std::vector<Color> table;
    std::vector<uint8_t> indexes;
    indexes.reserve(bitmap.pixels.size());
    for (uint32_t p : bitmap.pixels) {
      auto [place, isNew] = numbers.try_emplace(p, static_cast<uint8_t>(table.size()));
      if (isNew) {
        if (table.size() == 256) break;
        table.push_back(
            {static_cast<uint8_t>(p >> 16), static_cast<uint8_t>(p >> 8), static_cast<uint8_t>(p)});
      }
      indexes.push_back(place->second);
    }
    if (indexes.size() == bitmap.pixels.size())
      return LosslessFromIndexes(kBitmap8, static_cast<uint16_t>(bitmap.width),
                                 static_cast<uint16_t>(bitmap.height), indexes, table);
  }
  LosslessBody body;
  body.format = kBitmap32;
  body.width = static_cast<uint16_t>(bitmap.width);
  body.height = static_cast<uint16_t>(bitmap.height);
  body.rows.reserve(bitmap.pixels.size() * 4);
  for (uint32_t p : bitmap.pixels)
    for (int shift = 24; shift >= 0; shift -= 8)
      body.rows.push_back(static_cast<uint8_t>(p >> shift));
  return body;
}

uint16_t WriteSceneSprite(const Scene& scene, uint32_t firstId, TagStream* definitions,
                          TagStream* stage) {
  if (firstId >= kMaxObjects) throw std::range_error("too many characters for another drawing");
  return SceneMovie(scene, static_cast<uint16_t>(firstId), definitions, stage).Write();
}

Bytes WriteSceneMovie(const Scene& scene) {
  MovieWriter movie(Rect{0, static_cast<int32_t>(std::lround(scene.width * kPixel)), 0,
                         static_cast<int32_t>(std::lround(scene.height * kPixel))},
                    12 << 8);
  movie.BackgroundColor({255, 255, 255});
  WriteSceneSprite(scene, 1, &movie, &movie);
  movie.FrameEnd().End();
  return movie.Finish();
}

}  // namespace vexel::author
