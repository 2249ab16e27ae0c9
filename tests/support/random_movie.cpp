// Draws lots for every choice that a movie offers: first a cast of characters,
// later ones using earlier ones, then timelines that place, move, change, mask
// and remove them. Timelines keep a list of what stands at which depth, so that
// what is moved exists and what is a morph gets ratios.
#include "support/random_movie.h"

#include <algorithm>
#include <map>
#include <random>

#include "author/writer.h"

namespace vexel::author {

namespace {

// Lots that do not depend on the standard library's distributions.
class Lots {
 public:
  explicit Lots(uint32_t seed) : engine_(seed) {}

  // Both ends included.
  int Between(int low, int high) {
    return low + static_cast<int>(engine_() % static_cast<uint32_t>(high - low + 1));
  }
  bool OneIn(int n) { return Between(1, n) == 1; }
  double Fraction() { return Between(0, 1 << 20) / double(1 << 20); }
  double Between(double low, double high) { return low + Fraction() * (high - low); }
  template <typename T>
  const T& Of(const std::vector<T>& values) {
    return values[static_cast<size_t>(Between(0, static_cast<int>(values.size()) - 1))];
  }

 private:
  std::mt19937 engine_;
};

std::string Numbered(const char* stem, int number) {
  std::string name = stem;
  name += std::to_string(number);
  return name;
}

enum class Kind { kShape, kMorph, kText, kSprite, kButton, kField };

struct Actor {
  uint16_t id;
  Kind kind;
};

class Generator {
 public:
  Generator(uint32_t seed, const RandomMovieOptions& options)
      : lots_(seed),
        options_(options),
        width_(lots_.Between(60, 240)),
        height_(lots_.Between(40, 160)),
        movie_(width_, height_, lots_.Between(1, 30)) {}

  Bytes Make() {
    movie_.BackgroundColor(Opaque());
    for (int n = lots_.Between(0, 3); n > 0; --n) Bitmap();
    for (int n = lots_.Between(2, 5); n > 0; --n) Shape();
    for (int n = lots_.Between(0, 2); n > 0; --n) Morph();
    if (options_.text || options_.fields) Fonts();
    for (int n = options_.text ? lots_.Between(0, 2) : 0; n > 0; --n) Text();
    for (int n = options_.fields ? lots_.Between(0, 2) : 0; n > 0; --n) Field();
    for (int n = options_.buttons ? lots_.Between(0, 1) : 0; n > 0; --n) Button();
    for (int n = lots_.Between(0, 3); n > 0; --n) Sprite();
    Timeline(movie_, lots_.Between(1, options_.maxFrames), lots_.Between(2, 6));
    return movie_.Finish();
  }

 private:
  uint16_t NewId() { return nextId_++; }

  Color Opaque() {
    return {static_cast<uint8_t>(lots_.Between(0, 255)),
            static_cast<uint8_t>(lots_.Between(0, 255)),
            static_cast<uint8_t>(lots_.Between(0, 255)), 255};
  }

  Color Any() {
    Color color = Opaque();
    if (lots_.OneIn(3)) color.alpha = static_cast<uint8_t>(lots_.Between(0, 255));
    return color;
  }

  Point Near(Point center, int reach) {
    return {center.x + lots_.Between(-reach, reach), center.y + lots_.Between(-reach, reach)};
  }

  Matrix AnyMatrix(int reachX, int reachY) {
    const int tx = lots_.Between(0, reachX);
    const int ty = lots_.Between(0, reachY);
    switch (lots_.Between(0, 4)) {
      case 0:
        return Matrix::Translate(tx, ty);
      case 1:
        return Matrix::Scale(lots_.Between(0.2, 2.0), lots_.Between(0.2, 2.0), tx, ty);
      case 2:
        return Matrix::Scale(lots_.Between(-1.5, 1.5), lots_.Between(-1.5, 1.5), tx, ty);
      case 3:
        return Matrix::Rotate(lots_.Between(0, 359), lots_.Between(0.3, 1.5),
                              lots_.Between(0.3, 1.5), tx, ty);
      default: {
        Matrix matrix = Matrix::Scale(lots_.Between(0.3, 1.5), lots_.Between(0.3, 1.5), tx, ty);
        matrix.b = lots_.Between(-40000, 40000);
        matrix.c = lots_.Between(-40000, 40000);
        return matrix;
      }
    }
  }

  Cxform AnyCxform() {
    switch (lots_.Between(0, 3)) {
      case 0:
        return Cxform::Alpha(lots_.Fraction());
      case 1:
        return Cxform::Tint(Opaque(), lots_.Fraction());
      default: {
        const bool muls = lots_.OneIn(2);
        const bool adds = !muls || lots_.OneIn(2);
        Cxform cxform;
        for (int32_t* mul : {&cxform.redMul, &cxform.greenMul, &cxform.blueMul, &cxform.alphaMul}) {
          if (muls) *mul = lots_.Between(0, 320);
        }
        for (int32_t* add : {&cxform.redAdd, &cxform.greenAdd, &cxform.blueAdd, &cxform.alphaAdd}) {
          if (adds) *add = lots_.Between(-255, 255);
        }
        return cxform;
      }
    }
  }

  void Bitmap() {
    const uint16_t id = NewId();
    Picture picture(static_cast<uint16_t>(lots_.Between(2, 40)),
                    static_cast<uint16_t>(lots_.Between(2, 40)));
    const Color first = Any();
    const Color second = Any();
    const int grain = lots_.Between(1, 8);
    for (int y = 0; y < picture.height; ++y) {
      for (int x = 0; x < picture.width; ++x) {
        Color color = ((x / grain) ^ (y / grain)) & 1 ? first : second;
        color.red = static_cast<uint8_t>(color.red + x * 3);
        color.blue = static_cast<uint8_t>(color.blue + y * 5);
        picture.At(x, y) = color;
      }
    }
    const bool alpha = lots_.OneIn(2);
    switch (lots_.Between(0, 6)) {
      case 0:
        Indexed(id, picture, alpha);
        break;
      case 1: {
        LosslessBody body;
        body.format = kBitmap16;
        body.width = picture.width;
        body.height = picture.height;
        body.rows.resize(BitmapRowBytes(kBitmap16, picture.width) * picture.height);
        for (uint8_t& byte : body.rows) byte = static_cast<uint8_t>(lots_.Between(0, 127));
        movie_.DefineBits(id, kTagDefineBitsLossless, EncodeLossless(body, false));
        break;
      }
      case 2:
        movie_.DefineJpeg(id, EncodeJpeg(picture, 70));
        break;
      case 3: {
        Bytes plane;
        for (const Color& color : picture.pixels) plane.push_back(color.alpha);
        movie_.DefineBits(id, kTagDefineBitsJPEGAlpha,
                          EncodeJpegAlpha(EncodeJpeg(picture, 85), plane));
        break;
      }
      case 4:
        if (!haveTables_) {
          movie_.DefineJPEGTables(EncodeJpeg(picture, 60, JpegParts::kTablesOnly));
          haveTables_ = true;
        }
        movie_.DefineBits(id, kTagDefineBits, EncodeJpeg(picture, 60, JpegParts::kImageOnly));
        break;
      default:
        movie_.DefineLossless(id, picture, alpha);
    }
    bitmaps_.push_back({id, picture.width, picture.height});
  }

  void Indexed(uint16_t id, const Picture& picture, bool alpha) {
    const int format = lots_.OneIn(4) ? lots_.Between(kBitmap1, kBitmap4) : int(kBitmap8);
    const int entries = format == kBitmap8 ? lots_.Between(2, 256) : 1 << (1 << format);
    std::vector<Color> table;
    for (int i = 0; i < entries; ++i) {
      Color color = Opaque();
      if (alpha) {
        // Entries are premultiplied.
        color.alpha = static_cast<uint8_t>(lots_.Between(0, 255));
        for (uint8_t* channel : {&color.red, &color.green, &color.blue}) {
          *channel = std::min(*channel, color.alpha);
        }
      }
      table.push_back(color);
    }
    std::vector<uint8_t> indexes(picture.pixels.size());
    for (uint8_t& index : indexes) index = static_cast<uint8_t>(lots_.Between(0, entries - 1));
    movie_.DefineBits(id, alpha ? kTagDefineBitsLosslessAlpha : kTagDefineBitsLossless,
                      EncodeLossless(LosslessFromIndexes(format, picture.width, picture.height,
                                                         indexes, std::move(table)),
                                     alpha));
  }

  std::vector<uint8_t> Positions() {
    std::vector<uint8_t> positions(static_cast<size_t>(lots_.Between(1, 8)));
    for (uint8_t& position : positions) position = static_cast<uint8_t>(lots_.Between(0, 255));
    std::sort(positions.begin(), positions.end());
    return positions;
  }

  Matrix GradientMatrix(int reach) {
    const int left = lots_.Between(-reach, reach / 2);
    const int top = lots_.Between(-reach, reach / 2);
    return Matrix::GradientBox({left, left + lots_.Between(reach / 4, 2 * reach), top,
                                top + lots_.Between(reach / 4, 2 * reach)},
                               lots_.Between(0, 359));
  }

  Matrix BitmapMatrix(int reach) {
    const double scale = lots_.Between(5.0, 60.0);
    const int tx = lots_.Between(-reach, reach);
    const int ty = lots_.Between(-reach, reach);
    return lots_.OneIn(2) ? Matrix::Scale(scale, scale, tx, ty)
                          : Matrix::Rotate(lots_.Between(0, 359), scale, scale, tx, ty);
  }

  FillStyle Fill(int reach) {
    const int lot = lots_.Between(0, 5);
    if (lot <= 1) {
      std::vector<GradientStop> stops;
      for (uint8_t position : Positions()) stops.push_back({position, Any()});
      return lot == 0 ? FillStyle::Linear(GradientMatrix(reach), stops)
                      : FillStyle::Radial(GradientMatrix(reach), stops);
    }
    if (lot == 2 && !bitmaps_.empty()) {
      return FillStyle::Bitmap(lots_.Of(bitmaps_).id, BitmapMatrix(reach), lots_.OneIn(2));
    }
    return FillStyle::Solid(Any());
  }

  // A closed path of lines and curves.
  void Path(ShapeBuilder& shape, int reach) {
    const Point center = Near({}, reach / 3);
    switch (lots_.Between(0, 4)) {
      case 0:
        shape.Ellipse(center, lots_.Between(20, reach), lots_.Between(20, reach));
        return;
      case 1: {
        const Point far = Near(center, reach);
        shape.Rectangle({std::min(center.x, far.x), std::max(center.x, far.x),
                         std::min(center.y, far.y), std::max(center.y, far.y)});
        return;
      }
      default: {
        shape.MoveTo(Near(center, reach));
        for (int n = lots_.Between(2, 8); n > 0; --n) {
          if (lots_.OneIn(2)) {
            shape.LineTo(Near(center, reach));
          } else {
            shape.CurveTo(Near(center, reach), Near(center, reach));
          }
        }
        if (!lots_.OneIn(4)) shape.Close();
      }
    }
  }

  void Shape() {
    ShapeBuilder shape;
    const int reach = lots_.Between(100, 1600);
    const int tables = lots_.OneIn(4) ? 2 : 1;
    for (int t = 0; t < tables; ++t) {
      if (t > 0) shape.NewStyles();
      const int fills = lots_.Between(1, 3);
      const int lines = lots_.Between(0, 2);
      for (int i = 0; i < fills; ++i) shape.AddFill(Fill(reach));
      for (int i = 0; i < lines; ++i) {
        shape.AddLine(
            static_cast<uint16_t>(lots_.OneIn(3) ? lots_.Between(0, 20) : lots_.Between(20, 160)),
            Any());
      }
      const auto fill = [&] { return static_cast<uint32_t>(lots_.Between(0, fills)); };
      for (int n = lots_.Between(1, 3); n > 0; --n) {
        shape.Fill0(lots_.OneIn(3) ? fill() : 0).Fill1(fill());
        shape.Line(static_cast<uint32_t>(lots_.Between(0, lines)));
        Path(shape, reach);
      }
    }
    const int code =
        lots_.Of(std::vector<int>{kTagDefineShape, kTagDefineShape2, kTagDefineShape3});
    const uint16_t id = NewId();
    movie_.DefineShape(id, shape, code);
    cast_.push_back({id, Kind::kShape});
  }

  void Morph() {
    MorphBuilder morph;
    const int reach = lots_.Between(100, 1200);
    const int fills = lots_.Between(1, 2);
    for (int i = 0; i < fills; ++i) morph.AddFill(AnyMorphFill(reach));
    const int lines = lots_.Between(0, 1);
    for (int i = 0; i < lines; ++i) {
      morph.AddLine({static_cast<uint16_t>(lots_.Between(0, 120)),
                     static_cast<uint16_t>(lots_.Between(0, 120)), Any(), Any()});
    }
    for (int n = lots_.Between(1, 2); n > 0; --n) {
      morph.Fill0(0)
          .Fill1(static_cast<uint32_t>(lots_.Between(0, fills)))
          .Line(static_cast<uint32_t>(lots_.Between(0, lines)));
      const Point first = Near({}, reach);
      const Point second = Near({}, reach);
      morph.MoveTo(first, second);
      for (int k = lots_.Between(2, 6); k > 0; --k) {
        if (lots_.OneIn(2)) {
          morph.LineTo(Near({}, reach), Near({}, reach));
        } else {
          morph.CurveTo(Near({}, reach), Near({}, reach), Near({}, reach), Near({}, reach));
        }
      }
      morph.LineTo(first, second);
    }
    const uint16_t id = NewId();
    movie_.DefineMorphShape(id, morph);
    cast_.push_back({id, Kind::kMorph});
  }

  MorphFill AnyMorphFill(int reach) {
    const int lot = lots_.Between(0, 4);
    MorphFill fill;
    if (lot <= 1) {
      fill.type = lot == 0 ? kFillLinear : kFillRadial;
      fill.startMatrix = GradientMatrix(reach);
      fill.endMatrix = GradientMatrix(reach);
      const std::vector<uint8_t> positions = Positions();
      for (uint8_t position : positions) {
        fill.stops.push_back({position, Any(), position, Any()});
      }
    } else if (lot == 2 && !bitmaps_.empty()) {
      fill.type = lots_.OneIn(2) ? kFillBitmapTiled : kFillBitmapClipped;
      fill.bitmap = lots_.Of(bitmaps_).id;
      fill.startMatrix = BitmapMatrix(reach);
      fill.endMatrix = BitmapMatrix(reach);
    } else {
      fill.startColor = Any();
      fill.endColor = Any();
    }
    return fill;
  }

  void Fonts() {
    font_ = BlockFont("Blocks");
    if (lots_.OneIn(2)) font_.flags |= kFontWideOffsets;
    if (lots_.OneIn(2)) font_.flags |= kFontWideCodes;
    fontId_ = NewId();
    movie_.DefineFont2(fontId_, font_);
  }

  std::string Words() {
    std::string text;
    for (int n = lots_.Between(1, 12); n > 0; --n) {
      text.push_back(static_cast<char>(lots_.Of(font_.glyphs).code));
    }
    return text;
  }

  void Text() {
    StaticText text;
    text.matrix = AnyMatrix(200, 200);
    for (int n = lots_.Between(1, 3); n > 0; --n) {
      TextRun run =
          MakeRun(font_, fontId_, static_cast<uint16_t>(lots_.Between(120, 700)), Words());
      if (!text.runs.empty() && lots_.OneIn(3)) run.font.reset();
      if (text.runs.empty() || lots_.OneIn(2)) run.color = Any();
      if (lots_.OneIn(2)) run.x = static_cast<int16_t>(lots_.Between(-200, 400));
      if (text.runs.empty() || lots_.OneIn(2)) {
        run.y = static_cast<int16_t>(lots_.Between(-100, 900));
      }
      text.runs.push_back(std::move(run));
    }
    const uint16_t id = NewId();
    // Bounds that hold the text under any of the matrices above.
    movie_.DefineText(id, {-9000, 9000, -9000, 9000}, text, lots_.OneIn(2));
    cast_.push_back({id, Kind::kText});
  }

  void Field() {
    EditTextField field;
    field.flags = static_cast<uint16_t>(
        (lots_.OneIn(6) ? 0 : kEditOutlines) | (lots_.OneIn(2) ? kEditBorder : 0) |
        (lots_.OneIn(2) ? kEditMultiline | kEditWordWrap : 0) |
        (lots_.OneIn(5) ? kEditPassword : 0) | (lots_.OneIn(6) ? kEditReadOnly : 0) |
        (lots_.OneIn(8) ? kEditNoSelect : 0));
    if (!lots_.OneIn(8)) field.font = fontId_;
    field.height = static_cast<uint16_t>(lots_.Between(160, 500));
    if (lots_.OneIn(4)) field.maxLength = static_cast<uint16_t>(lots_.Between(0, 20));
    if (lots_.OneIn(2)) field.color = Any();
    if (lots_.OneIn(2)) {
      field.layout = EditTextLayout{
          static_cast<uint8_t>(lots_.Between(0, 2)), static_cast<uint16_t>(lots_.Between(0, 80)),
          static_cast<uint16_t>(lots_.Between(0, 80)), static_cast<uint16_t>(lots_.Between(0, 80)),
          static_cast<int16_t>(lots_.Between(-20, 60))};
    }
    // "v" is what the actions write.
    field.variable = lots_.Of(std::vector<std::string>{"", "v", "w", "/:v", "s1:v", "nowhere:v"});
    if (!lots_.OneIn(4)) field.initialText = Words() + (lots_.OneIn(2) ? "\r" : " ") + Words();
    const uint16_t id = NewId();
    movie_.DefineEditText(id, {0, lots_.Between(800, 3000), 0, lots_.Between(400, 1500)}, field);
    cast_.push_back({id, Kind::kField});
  }

  void Button() {
    std::vector<ButtonRecord> records;
    for (int n = lots_.Between(1, 3); n > 0; --n) {
      ButtonRecord record;
      record.states = static_cast<uint8_t>(lots_.Between(1, 15));
      record.character = cast_.front().id;
      record.depth = static_cast<uint16_t>(n);
      record.matrix = AnyMatrix(400, 400);
      if (lots_.OneIn(2)) record.cxform = AnyCxform();
      records.push_back(record);
    }
    const uint16_t id = NewId();
    if (lots_.OneIn(2)) {
      movie_.DefineButton(id, records, ActionBuilder().Finish());
      if (lots_.OneIn(2)) {
        std::vector<Cxform> cxforms;
        for (const ButtonRecord& record : records) cxforms.push_back(record.cxform);
        movie_.DefineButtonExtra(id, cxforms);
      }
    } else {
      movie_.DefineButton2(id, lots_.OneIn(2), records, {});
    }
    cast_.push_back({id, Kind::kButton});
  }

  void Sprite() {
    TagStream sprite;
    Timeline(sprite, lots_.Between(1, 4), lots_.Between(1, 3));
    const uint16_t id = NewId();
    movie_.DefineSprite(id, sprite);
    cast_.push_back({id, Kind::kSprite});
  }

  void Timeline(TagStream& tags, int frames, int crowd) {
    std::map<uint16_t, Kind> stage;
    const int depths = crowd * 2;
    for (int frame = 0; frame < frames; ++frame) {
      if (lots_.OneIn(4)) tags.FrameLabel(Numbered("frame", frame));
      const int changes = frame == 0 ? crowd : lots_.Between(0, crowd);
      for (int n = 0; n < changes; ++n) {
        const auto depth = static_cast<uint16_t>(lots_.Between(1, depths));
        const auto there = stage.find(depth);
        if (there == stage.end()) {
          stage[depth] = PlaceNew(tags, depth);
        } else if (lots_.OneIn(4)) {
          tags.RemoveObject(depth);
          stage.erase(there);
        } else {
          there->second = Change(tags, depth, there->second);
        }
      }
      if (options_.actions && lots_.OneIn(3)) tags.FrameActions(Actions(frames));
      tags.FrameEnd();
    }
    tags.End();
  }

  Kind PlaceNew(TagStream& tags, uint16_t depth) {
    const Actor actor = lots_.Of(cast_);
    const Matrix matrix = AnyMatrix(width_ * kPixel, height_ * kPixel);
    if (lots_.OneIn(5)) {
      tags.PlaceObject(actor.id, depth, matrix,
                       lots_.OneIn(2) ? std::optional(AnyCxform()) : std::nullopt);
      return actor.kind;
    }
    Placement placement;
    placement.depth = depth;
    placement.character = actor.id;
    if (!lots_.OneIn(10)) placement.matrix = matrix;
    if (lots_.OneIn(3)) placement.cxform = AnyCxform();
    if (actor.kind == Kind::kMorph || lots_.OneIn(10)) {
      placement.ratio = static_cast<uint16_t>(lots_.Between(0, 65535));
    }
    if ((actor.kind == Kind::kShape || actor.kind == Kind::kMorph) && lots_.OneIn(4)) {
      placement.clipDepth = static_cast<uint16_t>(depth + lots_.Between(1, 4));
    } else if (actor.kind == Kind::kSprite && lots_.OneIn(2)) {
      placement.name = Numbered("s", depth);
    }
    tags.Place(placement);
    return actor.kind;
  }

  // Moves what stands at a depth, and sometimes gives it another character.
  Kind Change(TagStream& tags, uint16_t depth, Kind kind) {
    Placement placement;
    placement.move = true;
    placement.depth = depth;
    if (lots_.OneIn(4)) {
      const Actor actor = lots_.Of(cast_);
      placement.character = actor.id;
      kind = actor.kind;
    }
    if (!lots_.OneIn(4)) placement.matrix = AnyMatrix(width_ * kPixel, height_ * kPixel);
    if (lots_.OneIn(3)) placement.cxform = AnyCxform();
    if (kind == Kind::kMorph) placement.ratio = static_cast<uint16_t>(lots_.Between(0, 65535));
    tags.Place(placement);
    return kind;
  }

  Bytes Actions(int frames) {
    ActionBuilder actions;
    for (int n = lots_.Between(1, 4); n > 0; --n) {
      switch (lots_.Between(0, 5)) {
        case 0:
          actions.GotoFrame(static_cast<uint16_t>(lots_.Between(0, frames)));
          if (lots_.OneIn(2)) actions.Op(kActionPlay);
          break;
        case 1:
          actions.Op(lots_.OneIn(2) ? kActionPlay : kActionStop);
          break;
        case 2:
          actions.SetVariable("v", Words());
          break;
        case 3:
          actions.SetTarget(Numbered("s", lots_.Between(1, 6)));
          actions.Op(lots_.OneIn(2) ? kActionNextFrame : kActionPrevFrame).SetTarget("");
          break;
        case 4:
          // A property by its number: place, scale, opacity, visibility, turn.
          actions.Push(Numbered("s", lots_.Between(1, 6)))
              .PushFloat(static_cast<float>(lots_.Of(std::vector<int>{0, 1, 2, 3, 6, 7, 10})))
              .PushFloat(static_cast<float>(lots_.Between(-50, 150)))
              .Op(kActionSetProperty);
          break;
        default:
          actions.GetVariable("n").PushFloat(1).Op(kActionAdd).Op(kActionPop);
      }
    }
    return actions.Finish();
  }

  struct BitmapActor {
    uint16_t id;
    uint16_t width;
    uint16_t height;
  };

  Lots lots_;
  RandomMovieOptions options_;
  int width_;
  int height_;
  MovieWriter movie_;
  uint16_t nextId_ = 1;
  bool haveTables_ = false;
  std::vector<BitmapActor> bitmaps_;
  std::vector<Actor> cast_;
  Font font_;
  uint16_t fontId_ = 0;
};

}  // namespace

Bytes RandomMovie(uint32_t seed, const RandomMovieOptions& options) {
  return Generator(seed, options).Make();
}

}  // namespace vexel::author
