// Reading by the table: ranges and units are its, and so are the messages.
#include "author/language/clauses.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "author/script/cursor.h"

namespace vexel::author {

namespace {

// A number in the language's units, as the range of a field is told.
std::string Bound(double stored, const FieldInfo& field) {
  return NumberText(field.kind == FieldKind::kScaled ? stored / field.unit : stored);
}

double CheckedNumber(Evaluator& in, const FieldInfo& field) {
  const SourcePlace place = in.Place();
  const double number = in.Number(field.word);
  double held = number;
  if (field.kind == FieldKind::kScaled) {
    held = std::round(number * field.unit);
    if (field.unit == 1 && std::fabs(held - number) > 1e-6)
      throw SourceError(place,
                        std::string(field.word) + " is a whole number, not " + NumberText(number));
  }
  if (!(held >= field.low && held <= field.high)) {
    throw SourceError(place, std::string(field.word) + " is " + Bound(field.low, field) + " to " +
                                 Bound(field.high, field) + ", not " + NumberText(number));
  }
  return number;
}

void ReadNumbers(Evaluator& in, const FieldInfo& field, Clause* clause) {
  do {
    if (clause->numbers.size() == field.most)
      in.Fail(std::string(field.word) + " takes " + std::to_string(field.most) + " numbers");
    clause->numbers.push_back(CheckedNumber(in, field));
  } while (in.TakeSign(","));
  if (clause->numbers.size() < field.fewest) {
    throw SourceError(clause->place, std::string(field.word) + " takes " +
                                         std::to_string(field.fewest) + " numbers with commas");
  }
}

void ReadStops(Evaluator& in, const FieldInfo& field, Clause* clause) {
  if (in.TakeWord("none")) return;
  do {
    if (clause->stops.size() == field.most) in.Fail("a gradient has at most 255 stops");
    Clause::Stop stop;
    const SourcePlace place = in.Place();
    Value value = in.Expression();
    if (value.kind == ValueKind::kNumber) {
      if (!(value.number >= 0 && value.number <= 1))
        throw SourceError(place, "the position of a stop is 0% to 100%");
      stop.position = value.number;
      stop.color = in.ColorValue("a stop");
    } else if (value.kind == ValueKind::kColor) {
      stop.color = value.color;
    } else {
      throw SourceError(place, "a stop is a colour, with a position before it");
    }
    clause->stops.push_back(stop);
  } while (in.TakeSign(","));
}

void ReadParts(Evaluator& in, const FieldInfo& field, Clause* clause) {
  in.NeedSign("(");
  do {
    if (clause->parts.size() == field.most) in.Fail("too many parts");
    const std::string& word = in.NeedName("a part").text;
    const bool more = !in.AtSign(",") && !in.AtSign(")");
    const auto high = static_cast<int64_t>(field.high);
    clause->parts.emplace_back(word, more ? in.Whole(word.c_str(), 0, high) : 1);
  } while (in.TakeSign(","));
  in.NeedSign(")");
}

void ReadWords(Evaluator& in, Clause* clause) {
  static constexpr std::array<std::string_view, 4> kStates = {"up", "over", "down", "hit"};
  const auto atState = [&] {
    return in.Peek().kind == TokenKind::kWord &&
           std::find(kStates.begin(), kStates.end(), in.Peek().text) != kStates.end();
  };
  if (!atState()) in.Fail("the states of a button are up, over, down and hit");
  while (atState()) {
    clause->parts.emplace_back(in.Take().text, 0);
    in.TakeSign(",");
  }
}

void ReadValue(Evaluator& in, const FieldInfo& field, const CharacterNames& names, Clause* clause) {
  switch (field.kind) {
    case FieldKind::kFlag:
      break;
    case FieldKind::kScaled:
    case FieldKind::kReal:
      ReadNumbers(in, field, clause);
      break;
    case FieldKind::kColor:
      clause->color = in.ColorValue(field.word);
      break;
    case FieldKind::kText:
      clause->text = in.NeedText(field.word);
      break;
    case FieldKind::kBytes: {
      const SourcePlace place = in.Place();
      const std::string text = in.NeedText(field.word);
      if (!ParseHex(text, &clause->text))
        throw SourceError(place, std::string(field.word) + " takes pairs of hexadecimal digits");
      break;
    }
    case FieldKind::kCharacter: {
      int32_t id = -1;
      if (in.Peek().kind == TokenKind::kWord) id = names.FindCharacter(in.Peek().text);
      if (id >= 0)
        in.Take();
      else
        id = static_cast<int32_t>(CheckedNumber(in, field));
      clause->numbers.push_back(id);
      break;
    }
    case FieldKind::kStops:
      ReadStops(in, field, clause);
      break;
    case FieldKind::kWords:
      ReadWords(in, clause);
      break;
    case FieldKind::kParts:
      ReadParts(in, field, clause);
      break;
  }
}

int32_t Fixed(double value, double unit) {
  return static_cast<int32_t>(std::clamp(std::round(value * unit), -2147483648.0, 2147483647.0));
}

}  // namespace

Matrix MatrixOf(double sx, double sy, double turn, double skewX, double skewY, double unit) {
  // Without an angle nothing is left to the sine.
  if (turn == 0 && skewX == 0 && skewY == 0) return {Fixed(sx, unit), 0, 0, Fixed(sy, unit), 0, 0};
  // The two axes turn by angles of their own.
  const double alongX = std::fmod(turn + skewY, 360) * std::numbers::pi / 180;
  const double alongY = std::fmod(turn - skewX, 360) * std::numbers::pi / 180;
  return {Fixed(sx * std::cos(alongX), unit),
          Fixed(sx * std::sin(alongX), unit),
          Fixed(-sy * std::sin(alongY), unit),
          Fixed(sy * std::cos(alongY), unit),
          0,
          0};
}

bool ParseHex(std::string_view text, std::string* bytes) {
  bytes->clear();
  bytes->reserve(text.size() / 2);
  int high = -1;
  for (char c : text) {
    if (c == ' ' || c == '\n' || c == '\t' || c == '\r') continue;
    const int digit = HexDigit(c);
    if (digit < 0) return false;
    if (high < 0) {
      high = digit;
    } else {
      *bytes += static_cast<char>(high * 16 + digit);
      high = -1;
    }
  }
  return high < 0;
}

namespace {

// Some words are fields and begin statements too: `font` of a text field, and a
// font. Behind a statement's word stands a name that is still free, or `=`.
bool BeginsStatement(const Evaluator& in, const FieldInfo& field, const CharacterNames& names,
                     uint8_t place) {
  if (field.kind == FieldKind::kColor || !FindStatement(field.word, place)) return false;
  const Token& next = in.Peek(1);
  if (next.kind == TokenKind::kSign) return next.text == "=";
  const Token& behind = in.Peek(2);
  const bool call = behind.kind == TokenKind::kSign && behind.text == "(";
  return next.kind == TokenKind::kWord && !call && next.text != "pi" && !in.Find(next.text) &&
         names.FindCharacter(next.text) < 0;
}

}  // namespace

void Clauses::Read(Evaluator& in, const StatementInfo& statement, const CharacterNames& names,
                   uint8_t place) {
  while (in.Peek().kind == TokenKind::kWord) {
    const FieldInfo* field = FindField(statement, in.Peek().text);
    if (!field || BeginsStatement(in, *field, names, place)) return;
    if (Has(field->field) && FindStatement(field->word, place)) return;
    Clause clause;
    clause.place = in.Place();
    in.Take();
    ReadValue(in, *field, names, &clause);
    const SourcePlace place = clause.place;
    if (!clauses_.emplace(field->field, std::move(clause)).second)
      throw SourceError(place, std::string(field->word) + " is said twice");
  }
}

int64_t Clauses::Stored(Field field, size_t index) const {
  return std::llround(Real(field, index) * InfoOf(field).unit);
}

Bytes Clauses::BytesOf(Field field) const {
  const std::string& text = TextOf(field);
  return Bytes(text.begin(), text.end());
}

int Clauses::Part(std::string_view word) const {
  if (!Has(Field::kPacked)) return kAuto;
  for (const auto& [part, number] : Get(Field::kPacked).parts) {
    if (part == word) return static_cast<int>(number);
  }
  return kAuto;
}

void Clauses::CheckParts(std::initializer_list<std::string_view> known) const {
  if (!Has(Field::kPacked)) return;
  for (const auto& part : Get(Field::kPacked).parts) {
    if (std::find(known.begin(), known.end(), part.first) == known.end())
      Fail(Field::kPacked, "'" + part.first + "' is nothing that is packed here");
  }
}

bool Clauses::HasMatrix() const {
  return Has(Field::kAt) || Has(Field::kScale) || Has(Field::kRotate) || Has(Field::kSkew) ||
         Has(Field::kMatrix);
}

Matrix Clauses::ToMatrix(double unit) const {
  Matrix matrix{Fixed(1, unit), 0, 0, Fixed(1, unit), 0, 0};
  if (Has(Field::kMatrix)) {
    if (Has(Field::kScale) || Has(Field::kRotate) || Has(Field::kSkew))
      Fail(Field::kMatrix, "matrix takes the place of scale, rotate and skew");
    matrix = {Fixed(Real(Field::kMatrix, 0), unit),
              Fixed(Real(Field::kMatrix, 1), unit),
              Fixed(Real(Field::kMatrix, 2), unit),
              Fixed(Real(Field::kMatrix, 3), unit),
              0,
              0};
  } else {
    double sx = 1, sy = 1;
    if (Has(Field::kScale)) {
      sx = Real(Field::kScale, 0);
      sy = CountOf(Field::kScale) == 2 ? Real(Field::kScale, 1) : sx;
    }
    const double turn = Has(Field::kRotate) ? Real(Field::kRotate) : 0;
    const double skewX = Has(Field::kSkew) ? Real(Field::kSkew, 0) : 0;
    const double skewY = Has(Field::kSkew) ? Real(Field::kSkew, 1) : 0;
    matrix = MatrixOf(sx, sy, turn, skewX, skewY, unit);
  }
  if (Has(Field::kAt)) {
    matrix.tx = static_cast<int32_t>(Stored(Field::kAt, 0));
    matrix.ty = static_cast<int32_t>(Stored(Field::kAt, 1));
  }
  return matrix;
}

MatrixForm Clauses::ToMatrixForm() const {
  MatrixForm form;
  form.scale = Part("scale");
  form.scaleBits = Part("scalebits");
  form.rotate = Part("rotate");
  form.rotateBits = Part("rotatebits");
  form.translateBits = Part("movebits");
  return form;
}

bool Clauses::HasCxform() const {
  return Has(Field::kAlpha) || Has(Field::kTint) || Has(Field::kMultiply) || Has(Field::kAdd);
}

Cxform Clauses::ToCxform() const {
  Cxform cxform;
  if (Has(Field::kTint)) {
    if (Has(Field::kMultiply) || Has(Field::kAdd))
      Fail(Field::kTint, "tint takes the place of multiply and add");
    cxform = Cxform::Tint(Get(Field::kTint).color, Has(Field::kBy) ? Real(Field::kBy) : 0.5);
  } else if (Has(Field::kBy)) {
    Fail(Field::kBy, "by goes with tint");
  }
  const auto channels = [&](Field field, std::array<int32_t*, 4> into) {
    if (!Has(field)) return;
    for (size_t i = 0; i < CountOf(field); ++i) *into[i] = static_cast<int32_t>(Stored(field, i));
  };
  channels(Field::kMultiply, {&cxform.redMul, &cxform.greenMul, &cxform.blueMul, &cxform.alphaMul});
  channels(Field::kAdd, {&cxform.redAdd, &cxform.greenAdd, &cxform.blueAdd, &cxform.alphaAdd});
  if (Has(Field::kAlpha)) {
    if (Has(Field::kMultiply) && CountOf(Field::kMultiply) == 4)
      Fail(Field::kAlpha, "alpha is the fourth number of multiply already");
    cxform.alphaMul = static_cast<int32_t>(Stored(Field::kAlpha));
  }
  return cxform;
}

CxformForm Clauses::ToCxformForm() const {
  return {Part("colorflags"), Part("colorbits")};
}

Rect Clauses::ToRect(Field field) const {
  const auto at = [&](size_t index) { return static_cast<int32_t>(Stored(field, index)); };
  return {at(0), at(2), at(1), at(3)};
}

}  // namespace vexel::author
