// Shapes: paints, pens, outlines, and the records of the file where they are
// said one by one.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "author/language/maker.h"
#include "author/svg_values.h"

namespace vexel::author {

namespace {

// Outlines lie within this many units of the origin: a long edge is cut into
// pieces of 65535, and so a short text makes few records.
constexpr int32_t kFar = 1 << 20;
// Where the pen may get by single records.
constexpr int64_t kPenFar = int64_t{1} << 30;
constexpr size_t kMaxRecords = 1'000'000;
constexpr size_t kMaxStyles = 65535;
constexpr size_t kMaxFigureNumbers = 100'000;

// A gradient lies on a square of 32768 units: the stored scale of 1/65536 that
// maps it onto a length is twice the length.
constexpr int32_t kGradientFactor = 2;
// The middle of the square to its side: half of that length.
constexpr int32_t kRadiusFactor = 4;

const std::initializer_list<std::string_view> kTableParts = {"fills", "lines", "longfills",
                                                             "longlines", "bounds"};

bool IsFlag(int part) {
  return part != kAuto && part != 0;
}

}  // namespace

StyleTables Maker::EmptyTables(const Clauses& clauses) {
  clauses.CheckParts(kTableParts);
  StyleTables tables;
  tables.fillBits = clauses.Part("fills");
  tables.lineBits = clauses.Part("lines");
  tables.longFillCount = IsFlag(clauses.Part("longfills"));
  tables.longLineCount = IsFlag(clauses.Part("longlines"));
  return tables;
}

// Runs the block of an outline; what surrounds it is put aside meanwhile.
void Maker::DrawIn(ShapeState& state) {
  ShapeState* const outer = shape_;
  shape_ = &state;
  RunBlock(kInShape);
  shape_ = outer;
}

void Maker::Shape() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  constexpr int kCodes[] = {kTagDefineShape, kTagDefineShape2, kTagDefineShape3};
  const int code = kCodes[clauses.StoredOr(Field::kForm, 3) - 1];
  ShapeState state;
  state.alpha = code == kTagDefineShape3;
  state.builder.mutableStyles() = EmptyTables(clauses);
  DrawIn(state);
  const Rect bounds =
      clauses.Has(Field::kBounds) ? clauses.ToRect(Field::kBounds) : state.builder.Bounds();
  BitWriter body;
  body.U16(id);
  WriteRect(body, bounds, clauses.Part("bounds"));
  WriteShape(body, state.builder.styles(), state.builder.records(), state.alpha);
  Emit(code, body, clauses);
}

FillStyle Maker::ToFillStyle(const Clauses& clauses) {
  FillStyle fill;
  clauses.CheckParts({"scale", "scalebits", "rotate", "rotatebits", "movebits"});
  fill.matrixForm = clauses.ToMatrixForm();
  const bool picture = clauses.Has(Field::kPicture);
  const bool radial = clauses.Has(Field::kRadial) || clauses.Has(Field::kCenter);
  const bool gradient = radial || clauses.Has(Field::kLinear) || clauses.Has(Field::kAlong);
  if (picture && gradient) clauses.Fail(Field::kPicture, "a paint is a gradient or a picture");
  if (picture) fill.type = clauses.Has(Field::kClipped) ? kFillBitmapClipped : kFillBitmapTiled;
  if (gradient) fill.type = radial ? kFillRadial : kFillLinear;
  if (clauses.Has(Field::kType)) fill.type = static_cast<uint8_t>(clauses.Stored(Field::kType));

  if (fill.type & 0x10) {
    GradientOf(clauses, &fill);
  } else if (fill.type & 0x40) {
    // The matrix maps pixels to units, and a picture's own size is a pixel each.
    fill.matrix = clauses.ToMatrix(double(kOne) * kPixel);
    fill.bitmap = static_cast<uint16_t>(clauses.StoredOr(Field::kPicture, 0));
  } else if (clauses.Has(Field::kColor)) {
    fill.color = clauses.Get(Field::kColor).color;
  }
  return fill;
}

void Maker::GradientOf(const Clauses& clauses, FillStyle* fill) {
  if (clauses.Has(Field::kAlong)) {
    const Rect line = clauses.ToRect(Field::kAlong);  // from xmin, ymin to xmax, ymax
    const int32_t dx = line.xmax - line.xmin, dy = line.ymax - line.ymin;
    fill->matrix = {kGradientFactor * dx,
                    kGradientFactor * dy,
                    -kGradientFactor * dy,
                    kGradientFactor * dx,
                    line.xmin + (dx - (dx & 1)) / 2,
                    line.ymin + (dy - (dy & 1)) / 2};
  } else if (clauses.Has(Field::kCenter)) {
    if (!clauses.Has(Field::kRadius)) clauses.Fail(Field::kCenter, "a radius is missing");
    const auto rx = static_cast<int32_t>(clauses.Stored(Field::kRadius, 0));
    const auto ry = clauses.CountOf(Field::kRadius) == 2
                        ? static_cast<int32_t>(clauses.Stored(Field::kRadius, 1))
                        : rx;
    fill->matrix = {kRadiusFactor * rx,
                    0,
                    0,
                    kRadiusFactor * ry,
                    static_cast<int32_t>(clauses.Stored(Field::kCenter, 0)),
                    static_cast<int32_t>(clauses.Stored(Field::kCenter, 1))};
  } else {
    fill->matrix = clauses.ToMatrix();
  }
  if (!clauses.Has(Field::kStops)) in_.Fail("a gradient takes stops");
  const std::vector<Clause::Stop>& stops = clauses.Get(Field::kStops).stops;
  for (size_t i = 0; i < stops.size(); ++i) {
    const double even = stops.size() == 1 ? 0 : double(i) / double(stops.size() - 1);
    const double position = stops[i].position.value_or(even);
    fill->stops.push_back({static_cast<uint8_t>(std::lround(position * 255)), stops[i].color});
  }
}

LineStyle Maker::ToLineStyle(const Clauses& clauses) {
  LineStyle line;
  line.width = static_cast<uint16_t>(clauses.StoredOr(Field::kWidth, kPixel));
  if (clauses.Has(Field::kColor)) line.color = clauses.Get(Field::kColor).color;
  return line;
}

void Maker::CheckAlpha(Color color) const {
  if (shape_ && !shape_->alpha && color.alpha != 255)
    throw SourceError(statementPlace_, "this form of a shape holds no alpha");
}

// The fields of a paint or a pen, a colour without its word among them.
Clauses Maker::StyleClauses(bool bareColor, std::optional<Color>* bare) {
  const bool value =
      in_.Peek().kind == TokenKind::kColor ||
      (in_.Peek().kind == TokenKind::kWord && !in_.AtWord("to") &&
       !FindField(*statement_, in_.Peek().text) &&
       (in_.Find(in_.Peek().text) || IsColorWord(in_.Peek().text) || in_.Peek(1).text == "("));
  if (bareColor && value) *bare = in_.ColorValue("a paint");
  return ReadClauses();
}

bool Maker::IsColorWord(const std::string& word) {
  SvgColor color;
  return ParseColor(word, &color);
}

void Maker::Paint() {
  const std::string name = in_.NeedName("a paint").text;
  PaintDef def;
  const auto read = [&] {
    std::optional<Color> bare;
    const Clauses clauses = StyleClauses(true, &bare);
    FillStyle fill = ToFillStyle(clauses);
    if (bare) fill.color = *bare;
    CheckAlpha(fill.color);
    for (const GradientStop& stop : fill.stops) CheckAlpha(stop.color);
    return fill;
  };
  def.start = read();
  if (in_.TakeWord("to")) def.end = read();
  if (shape_ && !shape_->styles) in_.Fail("paints of a morph stand before its halves");
  if (shape_) {
    shape_->paints[name] = AddFill(def.start);
  } else if (morph_) {
    if (morph_->fills.size() == kMaxStyles) in_.Fail("more than 65535 paints");
    morph_->fills.push_back(def);
    morph_->paints[name] = static_cast<uint32_t>(morph_->fills.size());
  } else {
    paints_[name] = def;
  }
}

void Maker::Pen() {
  const std::string name = in_.NeedName("a pen").text;
  PenDef def;
  const auto read = [&] {
    const LineStyle line = ToLineStyle(ReadClauses());
    CheckAlpha(line.color);
    return line;
  };
  def.start = read();
  if (in_.TakeWord("to")) def.end = read();
  if (shape_ && !shape_->styles) in_.Fail("pens of a morph stand before its halves");
  if (shape_) {
    shape_->pens[name] = AddLine(def.start);
  } else if (morph_) {
    if (morph_->lines.size() == kMaxStyles) in_.Fail("more than 65535 pens");
    morph_->lines.push_back(def);
    morph_->pens[name] = static_cast<uint32_t>(morph_->lines.size());
  } else {
    pens_[name] = def;
  }
}

uint32_t Maker::AddFill(const FillStyle& fill) {
  in_.Work(2 + fill.stops.size());
  const uint32_t number = shape_->builder.AddFill(fill);
  if (number > kMaxStyles) in_.Fail("more than 65535 paints");
  return number;
}

uint32_t Maker::AddLine(const LineStyle& line) {
  in_.Work(2);
  const uint32_t number = shape_->builder.AddLine(line.width, line.color);
  if (number > kMaxStyles) in_.Fail("more than 65535 pens");
  return number;
}

// A paint by name or number, a colour, or none.
uint32_t Maker::ResolveFill() {
  if (in_.TakeWord("none")) return 0;
  ShapeState& shape = Drawing();
  if (in_.Peek().kind == TokenKind::kWord) {
    const std::string& name = in_.Peek().text;
    const auto own = shape.paints.find(name);
    if (own != shape.paints.end()) {
      in_.Take();
      return own->second;
    }
    const auto common = paints_.find(name);
    if (common != paints_.end() && shape.styles) {
      for (const GradientStop& stop : common->second.start.stops) CheckAlpha(stop.color);
      CheckAlpha(common->second.start.color);
      in_.Take();
      return shape.paints[common->first] = AddFill(common->second.start);
    }
  }
  const SourcePlace place = in_.Place();
  const Value value = in_.Expression();
  if (value.kind == ValueKind::kNumber) return Index(value.number, place);
  if (value.kind == ValueKind::kText) throw SourceError(place, "a paint is no text");
  if (!shape.styles) throw SourceError(place, "a paint of this outline is a name or a number");
  CheckAlpha(value.color);
  // The same colour is one paint.
  const std::string key = ColorKey(value.color);
  const auto known = shape.paints.find(key);
  if (known != shape.paints.end()) return known->second;
  return shape.paints[key] = AddFill(FillStyle::Solid(value.color));
}

// No name of the language has such a form.
std::string Maker::ColorKey(Color color) {
  return std::to_string(color.red) + "," + std::to_string(color.green) + "," +
         std::to_string(color.blue) + "," + std::to_string(color.alpha);
}

uint32_t Maker::Index(double number, const SourcePlace& place) const {
  if (!(number >= 0 && number <= double(kMaxStyles)) || number != std::floor(number))
    throw SourceError(place, "the number of a paint or a pen is 0 to 65535");
  return static_cast<uint32_t>(number);
}

uint32_t Maker::ResolvePen() {
  if (in_.TakeWord("none")) return 0;
  ShapeState& shape = Drawing();
  if (in_.Peek().kind == TokenKind::kWord) {
    const std::string& name = in_.Peek().text;
    const auto own = shape.pens.find(name);
    if (own != shape.pens.end()) {
      in_.Take();
      return own->second;
    }
    const auto common = pens_.find(name);
    if (common != pens_.end() && shape.styles) {
      CheckAlpha(common->second.start.color);
      in_.Take();
      return shape.pens[common->first] = AddLine(common->second.start);
    }
  }
  const SourcePlace place = in_.Place();
  const Value value = in_.Expression();
  if (value.kind == ValueKind::kNumber) return Index(value.number, place);
  if (value.kind == ValueKind::kText) throw SourceError(place, "a pen is no text");
  if (!shape.styles) throw SourceError(place, "a pen of this outline is a name or a number");
  CheckAlpha(value.color);
  LineStyle line;
  line.color = value.color;
  if (std::string_view(statement_->word) == "stroke") line.width = ToLineStyle(ReadClauses()).width;
  const std::string key = ColorKey(value.color) + " " + std::to_string(line.width);
  const auto known = shape.pens.find(key);
  if (known != shape.pens.end()) return known->second;
  return shape.pens[key] = AddLine(line);
}

void Maker::Fill() {
  Drawing().builder.Fill1(ResolveFill());
}

void Maker::Fill0() {
  Drawing().builder.Fill0(ResolveFill());
}

void Maker::Stroke() {
  Drawing().builder.Line(ResolvePen());
}

void Maker::NewTables(ShapeRecord record, const Clauses& clauses) {
  ShapeState& shape = Drawing();
  if (!shape.styles) in_.Fail("this outline has no paints of its own");
  record.flags |= kChangeStyles;
  record.styles = EmptyTables(clauses);
  CountRecord();
  shape.builder.Record(record);
  shape.paints.clear();
  shape.pens.clear();
  if (in_.AtBlock()) RunBlock(kInShape);
}

// A selection outlives the tables it was made in, so it is taken back.
void Maker::Layer() {
  NewTables({}, ReadClauses());
  Drawing().builder.Fill0(0).Fill1(0).Line(0);
}

void Maker::CountRecord() {
  in_.Work(4);
  if (Drawing().builder.records().size() >= kMaxRecords)
    in_.Fail("an outline of over 1,000,000 edges");
}

Point Maker::ToPoint(Vec2 p) {
  const double unit = Drawing().unit;
  const double x = std::round(p.x * unit), y = std::round(p.y * unit);
  if (!(std::fabs(x) <= kFar && std::fabs(y) <= kFar)) {
    throw SourceError(statementPlace_, "outlines lie within " + NumberText(double(kFar) / unit) +
                                           " of the origin in both directions");
  }
  return {static_cast<int32_t>(x), static_cast<int32_t>(y)};
}

void Maker::Draw(VectorPath path, const Clauses& clauses, bool closed) {
  if (clauses.HasMatrix()) {
    const Matrix m = clauses.ToMatrix();
    path.Transform({double(m.a) / kOne, double(m.b) / kOne, double(m.c) / kOne, double(m.d) / kOne,
                    double(m.tx) / kPixel, double(m.ty) / kPixel});
  }
  ShapeBuilder& builder = Drawing().builder;
  // From a far pen the first edge is cut into many.
  in_.Work(static_cast<size_t>(
      (std::abs(int64_t{builder.pen().x}) + std::abs(int64_t{builder.pen().y})) >> 12));
  for (const PathCommand& command : path.commands) {
    CountRecord();
    switch (command.op) {
      case PathOp::kMove:
        if (closed) builder.Close();
        builder.MoveTo(ToPoint(command.p));
        break;
      case PathOp::kLine:
        builder.LineTo(ToPoint(command.p));
        break;
      case PathOp::kQuad:
        builder.CurveTo(ToPoint(command.c1), ToPoint(command.p));
        break;
      case PathOp::kCubic:
        Cubic(ToPoint(command.c1), ToPoint(command.c2), ToPoint(command.p));
        break;
      case PathOp::kClose:
        builder.Close();
        break;
    }
  }
}

void Maker::Cubic(Point control1, Point control2, Point anchor) {
  ShapeBuilder& builder = Drawing().builder;
  const int pieces = Drawing().cubicPieces;
  if (pieces == 0) {
    builder.CubicTo(control1, control2, anchor);
    return;
  }
  // A fixed count, so that both halves of a morph have as many edges. A piece's
  // control point lies where the tangents of its ends meet for a quadratic.
  const auto vec = [](Point p) { return Vec2{double(p.x), double(p.y)}; };
  const Vec2 p0 = vec(builder.pen()), p1 = vec(control1), p2 = vec(control2), p3 = vec(anchor);
  const auto at = [&](double t) {
    return Mix(Mix(Mix(p0, p1, t), Mix(p1, p2, t), t), Mix(Mix(p1, p2, t), Mix(p2, p3, t), t), t);
  };
  const auto slope = [&](double t) {
    return 3.0 * Mix(Mix(p1 - p0, p2 - p1, t), Mix(p2 - p1, p3 - p2, t), t);
  };
  const auto point = [](Vec2 p) {
    return Point{static_cast<int32_t>(std::lround(p.x)), static_cast<int32_t>(std::lround(p.y))};
  };
  const double step = 1.0 / pieces;
  for (int i = 0; i < pieces; ++i) {
    const double t = i * step, next = t + step;
    const Vec2 control = Mix(at(t), at(next), 0.5) + (step / 4) * (slope(t) - slope(next));
    builder.CurveTo(point(control), i + 1 == pieces ? anchor : point(at(next)));
  }
}

void Maker::Path() {
  const SourcePlace place = in_.Place();
  std::string data = in_.NeedText("path data");
  const Clauses clauses = ReadClauses();
  in_.Work(data.size());
  // Without a first move the outline goes on from the pen.
  const size_t first = data.find_first_not_of(" \t\r\n,");
  const bool goesOn = first != std::string::npos && data[first] != 'M' && data[first] != 'm';
  if (goesOn) {
    const Point pen = Drawing().builder.pen();
    const double unit = Drawing().unit;
    data = "M " + NumberText(pen.x / unit) + " " + NumberText(pen.y / unit) + " " + data;
  }
  VectorPath path;
  const bool good = ParsePathData(data, &path);
  if (!good) {
    throw SourceError(place, "the path data go wrong after " +
                                 std::to_string(path.commands.size() - (goesOn ? 1 : 0)) +
                                 " commands");
  }
  if (goesOn && !path.commands.empty()) path.commands.erase(path.commands.begin());
  Draw(std::move(path), clauses, false);
}

std::vector<double> Maker::FigureNumbers(const char* what, size_t fewest, size_t most) {
  const SourcePlace place = in_.Place();
  std::vector<double> numbers;
  do {
    if (numbers.size() == most) in_.Fail(std::string(what) + " takes fewer numbers");
    numbers.push_back(in_.Number(what));
  } while (in_.TakeSign(","));
  if (numbers.size() < fewest)
    throw SourceError(place, std::string(what) + " takes " + std::to_string(fewest) + " numbers");
  return numbers;
}

void Maker::RectFigure() {
  const std::vector<double> n = FigureNumbers("rect", 4, 4);
  const Clauses clauses = ReadClauses();
  const double round = clauses.Has(Field::kRound) ? clauses.Real(Field::kRound) : 0;
  if (clauses.HasMatrix()) {
    VectorPath path;
    if (round > 0)
      path.AddRoundRect(n[0], n[1], n[2], n[3], round, round);
    else
      path.AddRect(n[0], n[1], n[2], n[3]);
    Draw(std::move(path), clauses, true);
    return;
  }
  CountRecord();
  const Point p = ToPoint({n[0], n[1]}), q = ToPoint({n[0] + n[2], n[1] + n[3]});
  const Rect rect{std::min(p.x, q.x), std::max(p.x, q.x), std::min(p.y, q.y), std::max(p.y, q.y)};
  if (round > 0)
    Drawing().builder.RoundRectangle(rect, ToPoint({round, 0}).x);
  else
    Drawing().builder.Rectangle(rect);
}

void Maker::EllipseAt(double x, double y, double rx, double ry, const Clauses& clauses) {
  if (clauses.HasMatrix()) {
    VectorPath path;
    path.AddEllipse({x, y}, rx, ry);
    Draw(std::move(path), clauses, true);
    return;
  }
  CountRecord();
  const Point radii = ToPoint({rx, ry});
  Drawing().builder.Ellipse(ToPoint({x, y}), radii.x, radii.y);
}

void Maker::Circle() {
  const std::vector<double> n = FigureNumbers("circle", 3, 3);
  EllipseAt(n[0], n[1], n[2], n[2], ReadClauses());
}

void Maker::Ellipse() {
  const std::vector<double> n = FigureNumbers("ellipse", 4, 4);
  EllipseAt(n[0], n[1], n[2], n[3], ReadClauses());
}

void Maker::PointList(const char* what, bool closed) {
  const std::vector<double> n = FigureNumbers(what, 4, kMaxFigureNumbers);
  if (n.size() % 2 != 0) in_.Fail("an x without its y");
  VectorPath path;
  for (size_t i = 0; i < n.size(); i += 2) {
    if (i == 0)
      path.MoveTo({n[0], n[1]});
    else
      path.LineTo({n[i], n[i + 1]});
  }
  if (closed) path.Close();
  Draw(std::move(path), ReadClauses(), false);
}

void Maker::Polygon() {
  PointList("polygon", true);
}

void Maker::OpenLine() {
  PointList("line", false);
}

// Records keep the pen where the bounds of a shape can still be told.
void Maker::CheckPen(Point delta) {
  const Point pen = Drawing().builder.pen();
  if (std::abs(int64_t{pen.x} + delta.x) > kPenFar || std::abs(int64_t{pen.y} + delta.y) > kPenFar)
    throw SourceError(statementPlace_, "the pen goes too far");
}

void Maker::Change() {
  ShapeRecord record;
  Clauses clauses;
  const StatementInfo* const statement = statement_;
  for (;;) {
    clauses.Read(in_, *statement, *this, place_);
    if (in_.TakeWord("fill0")) {
      record.fill0 = ResolveFill();
      record.flags |= kChangeFill0;
    } else if (in_.TakeWord("fill")) {
      record.fill1 = ResolveFill();
      record.flags |= kChangeFill1;
    } else if (in_.TakeWord("stroke")) {
      record.line = ResolvePen();
      record.flags |= kChangeLine;
    } else {
      break;
    }
  }
  record.bits = static_cast<int>(clauses.StoredOr(Field::kBits, kAuto));
  if (clauses.Has(Field::kTo)) {
    record.flags |= kChangeMove;
    const double unit = Drawing().unit;
    record.move = {static_cast<int32_t>(std::lround(clauses.Real(Field::kTo, 0) * unit)),
                   static_cast<int32_t>(std::lround(clauses.Real(Field::kTo, 1) * unit))};
  }
  Drawing().handmade = true;
  if (in_.AtBlock()) {
    NewTables(record, clauses);
    return;
  }
  if (record.flags == 0) in_.Fail("a change takes to, fill0, fill, stroke or a block");
  CountRecord();
  Drawing().builder.Record(record);
}

void Maker::Edge() {
  const std::vector<double> n = FigureNumbers("edge", 2, 2);
  const Clauses clauses = ReadClauses();
  ShapeRecord record = ShapeRecord::LineBy(ToPoint({n[0], n[1]}));
  record.bits = static_cast<int>(clauses.StoredOr(Field::kBits, kAuto));
  if (clauses.Has(Field::kBoth)) record.lineForm = LineForm::kBoth;
  if (clauses.Has(Field::kVertical)) record.lineForm = LineForm::kVertical;
  if (clauses.Has(Field::kHorizontal)) record.lineForm = LineForm::kHorizontal;
  CheckPen(record.anchor);
  CountRecord();
  Drawing().handmade = true;
  Drawing().builder.Record(record);
}

void Maker::Curve() {
  const std::vector<double> n = FigureNumbers("curve", 4, 4);
  const Clauses clauses = ReadClauses();
  ShapeRecord record = ShapeRecord::CurveBy(ToPoint({n[0], n[1]}), ToPoint({n[2], n[3]}));
  record.bits = static_cast<int>(clauses.StoredOr(Field::kBits, kAuto));
  CheckPen(record.control);
  CheckPen(record.control + record.anchor);
  CountRecord();
  Drawing().handmade = true;
  Drawing().builder.Record(record);
}

}  // namespace vexel::author
