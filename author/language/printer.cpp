// Numbers are tried from the shortest on until one is read back as it was.
#include "author/language/printer.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

#include "author/language/clauses.h"
#include "author/script/cursor.h"

namespace vexel::author {

namespace {

constexpr size_t kHexLine = 48;  // bytes
constexpr int kMostDigits = 17;

std::string Decimal(double value, int digits) {
  char buffer[400];
  std::snprintf(buffer, sizeof buffer, "%.*f", digits, value);
  std::string text = buffer;
  return text == "-0" ? "0" : text;
}

// Scale and turn in few digits that give the matrix, if there are such.
bool PlainTurn(const Matrix& m, double unit, std::string* scale, std::string* turn) {
  const double sx = std::hypot(double(m.a), double(m.b)) / unit;
  double sy = std::hypot(double(m.c), double(m.d)) / unit;
  if (double(m.a) * m.d - double(m.b) * m.c < 0) sy = -sy;
  if (sx == 0 || sy == 0) return false;
  const double degrees = std::atan2(double(m.b), double(m.a)) * 180 / std::numbers::pi;
  for (int angleDigits = 0; angleDigits <= 4; ++angleDigits) {
    const std::string angle = Decimal(degrees, angleDigits);
    const double read = std::strtod(angle.c_str(), nullptr);
    if (std::fabs(read - degrees) > 0.01) continue;
    for (int digits = 0; digits <= 5; ++digits) {
      const std::string x = Decimal(sx, digits), y = Decimal(sy, digits);
      const double rx = std::strtod(x.c_str(), nullptr), ry = std::strtod(y.c_str(), nullptr);
      const Matrix made = MatrixOf(rx, ry, read, 0, 0, unit);
      if (made.a != m.a || made.b != m.b || made.c != m.c || made.d != m.d) continue;
      *turn = angle;
      *scale = x == y ? x : x + ", " + y;
      return true;
    }
  }
  return false;
}

}  // namespace

std::string ScaledText(int64_t stored, double unit) {
  if (unit == 1) return std::to_string(stored);
  for (int digits = 0;; ++digits) {
    const std::string text = Decimal(double(stored) / unit, digits);
    if (digits == kMostDigits || std::llround(std::strtod(text.c_str(), nullptr) * unit) == stored)
      return text;
  }
}

std::string PercentText(int64_t stored, double unit) {
  for (int digits = 0;; ++digits) {
    const std::string text = Decimal(double(stored) / unit * 100, digits);
    if (digits == kMostDigits ||
        std::llround(std::strtod(text.c_str(), nullptr) / 100 * unit) == stored)
      return text + "%";
  }
}

std::string ColorText(Color color) {
  char buffer[16];
  if (color.alpha == 255)
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", color.red, color.green, color.blue);
  else
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x%02x", color.red, color.green, color.blue,
                  color.alpha);
  return buffer;
}

std::string HexText(std::span<const uint8_t> bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2 + bytes.size() / kHexLine * 5 + 3);
  const bool many = bytes.size() > kHexLine;
  text += many ? "\n  \"" : "\"";
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0 && i % kHexLine == 0) text += "\"\n  \"";
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  return text += '"';
}

StatementText& StatementText::Word(std::string_view word) {
  if (!word.starts_with('\n')) text_ += ' ';
  text_ += word;
  return *this;
}

StatementText& StatementText::Flag(Field field) {
  return Word(InfoOf(field).word);
}

StatementText& StatementText::Stored(Field field, std::initializer_list<int64_t> numbers) {
  const FieldInfo& info = InfoOf(field);
  const bool percent =
      field == Field::kMultiply || field == Field::kRatio || field == Field::kAlpha;
  Word(info.word);
  bool first = true;
  for (int64_t number : numbers) {
    text_ += first ? " " : ", ";
    text_ += percent ? PercentText(number, info.unit) : ScaledText(number, info.unit);
    first = false;
  }
  return *this;
}

StatementText& StatementText::Character(Field field, const std::string& reference) {
  return Word(InfoOf(field).word).Word(reference);
}

StatementText& StatementText::Colored(Field field, Color color, bool alpha) {
  if (!alpha) color.alpha = 255;
  return Word(InfoOf(field).word).Word(ColorText(color));
}

StatementText& StatementText::Text(Field field, std::string_view text) {
  return Word(InfoOf(field).word).Word(QuoteText(text));
}

StatementText& StatementText::Hex(Field field, std::span<const uint8_t> bytes) {
  return Word(InfoOf(field).word).Word(HexText(bytes));
}

StatementText& StatementText::Part(std::string_view word, int number) {
  if (number == kAuto) return *this;
  parts_ += parts_.empty() ? "" : ", ";
  parts_ += word;
  parts_ += ' ';
  parts_ += std::to_string(number);
  return *this;
}

StatementText& StatementText::AddMatrix(const Matrix& m, const MatrixForm& form, bool always,
                                        double unit) {
  bool printed = false;
  if (m.tx != 0 || m.ty != 0) {
    Stored(Field::kAt, {m.tx, m.ty});
    printed = true;
  }
  std::string scale, turn;
  if (m.b == 0 && m.c == 0) {
    if (double(m.a) != unit || double(m.d) != unit) {
      const std::string x = ScaledText(m.a, unit), y = ScaledText(m.d, unit);
      Word("scale").Word(m.a == m.d ? x : x + ", " + y);
      printed = true;
    }
  } else if (PlainTurn(m, unit, &scale, &turn)) {
    if (scale != "1") Word("scale").Word(scale);
    Word("rotate").Word(turn);
    printed = true;
  } else {
    Word("matrix").Word(ScaledText(m.a, unit) + ", " + ScaledText(m.b, unit) + ", " +
                        ScaledText(m.c, unit) + ", " + ScaledText(m.d, unit));
    printed = true;
  }
  if (!printed && always) Stored(Field::kAt, {0, 0});
  return Part("scale", form.scale)
      .Part("scalebits", form.scaleBits)
      .Part("rotate", form.rotate)
      .Part("rotatebits", form.rotateBits)
      .Part("movebits", form.translateBits);
}

StatementText& StatementText::AddCxform(const Cxform& c, const CxformForm& form, bool always) {
  const bool colors = c.redMul != 256 || c.greenMul != 256 || c.blueMul != 256;
  const bool adds = c.redAdd != 0 || c.greenAdd != 0 || c.blueAdd != 0 || c.alphaAdd != 0;
  if (colors || (always && !adds && c.alphaMul == 256))
    Stored(Field::kMultiply, {c.redMul, c.greenMul, c.blueMul});
  if (c.alphaMul != 256) Stored(Field::kAlpha, {c.alphaMul});
  if (adds && c.alphaAdd != 0)
    Stored(Field::kAdd, {c.redAdd, c.greenAdd, c.blueAdd, c.alphaAdd});
  else if (adds)
    Stored(Field::kAdd, {c.redAdd, c.greenAdd, c.blueAdd});
  return Part("colorflags", form.flags).Part("colorbits", form.bits);
}

StatementText& StatementText::AddRect(Field field, const Rect& rect) {
  return Stored(field, {rect.xmin, rect.ymin, rect.xmax, rect.ymax});
}

std::string StatementText::Take() const {
  return parts_.empty() ? text_ : text_ + " packed(" + parts_ + ")";
}

}  // namespace vexel::author
