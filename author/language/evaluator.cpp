// Expressions by descent, one function a level of binding.
#include "author/language/evaluator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

#include "author/svg_values.h"

namespace vexel::author {

namespace {

// Tokens taken, loop rounds, bytes of texts put together, records drawn. A
// second or two of a plain machine.
constexpr size_t kMaxWork = 40'000'000;
constexpr int kMaxExpressionDepth = 100;
constexpr size_t kMaxText = size_t{16} << 20;

double Radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

// Exact at the quarters, so that what is meant to be straight is.
double Sine(double degrees) {
  const double turn = std::fmod(degrees, 360);
  if (std::fmod(turn, 180) == 0) return 0;
  if (turn == 90 || turn == -270) return 1;
  if (turn == -90 || turn == 270) return -1;
  return std::sin(Radians(turn));
}

double Smooth(double t) {
  t = std::clamp(t, 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

uint8_t Channel(double value) {
  return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

}  // namespace

Value Value::Of(double number) {
  Value value;
  value.number = number;
  return value;
}

Value Value::Of(Color color) {
  Value value;
  value.kind = ValueKind::kColor;
  value.color = color;
  return value;
}

Value Value::Of(std::string text) {
  Value value;
  value.kind = ValueKind::kText;
  value.text = std::move(text);
  return value;
}

std::string NumberText(double number) {
  char buffer[512];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed);
  return std::string(buffer, result.ptr);
}

// One expression; friend of the evaluator for the sake of its random numbers.
class ExpressionParser {
 public:
  explicit ExpressionParser(Evaluator& in) : in_(in) {}

  Value Run() { return Compare(); }

 private:
  [[noreturn]] void Fail(const Token& token, const std::string& what) const {
    throw SourceError(in_.PlaceOf(token), what);
  }

  double NumberOf(const Value& value, const Token& at) const {
    if (value.kind != ValueKind::kNumber) Fail(at, "a number is wanted here");
    return value.number;
  }
  Value Checked(double number, const Token& at) const {
    if (!std::isfinite(number)) Fail(at, "this has no finite value");
    return Value::Of(number);
  }

  // The sign at the cursor, if it is one of those listed.
  bool TakeOneOf(std::initializer_list<std::string_view> signs, const Token** taken) {
    for (std::string_view sign : signs) {
      if (!in_.AtSign(sign)) continue;
      *taken = &in_.Take();
      return true;
    }
    return false;
  }

  Value Compare() {
    const Depth depth(*this);
    Value left = Sum();
    const Token* sign;
    while (TakeOneOf({"<", "<=", ">", ">=", "==", "!="}, &sign)) {
      const Value right = Sum();
      const std::string& s = sign->text;
      if (left.kind != right.kind) Fail(*sign, "these two are of different kinds");
      if (s == "==" || s == "!=") {
        const bool same =
            left.number == right.number && left.color == right.color && left.text == right.text;
        left = Value::Of(same == (s == "==") ? 1.0 : 0.0);
        continue;
      }
      const double p = NumberOf(left, *sign), q = NumberOf(right, *sign);
      const bool yes = s == "<" ? p < q : s == "<=" ? p <= q : s == ">" ? p > q : p >= q;
      left = Value::Of(yes ? 1.0 : 0.0);
    }
    return left;
  }

  Value Sum() {
    Value left = Product();
    const Token* sign;
    while (TakeOneOf({"+", "-"}, &sign)) {
      Value right = Product();
      if (sign->text == "+" && (left.kind == ValueKind::kText || right.kind == ValueKind::kText)) {
        std::string text = TextOf(left, *sign) + TextOf(right, *sign);
        if (text.size() > kMaxText) Fail(*sign, "a text of over 16 MiB");
        in_.Work(text.size());
        left = Value::Of(std::move(text));
        continue;
      }
      const double p = NumberOf(left, *sign), q = NumberOf(right, *sign);
      left = Checked(sign->text == "+" ? p + q : p - q, *sign);
    }
    return left;
  }

  std::string TextOf(const Value& value, const Token& at) const {
    if (value.kind == ValueKind::kText) return value.text;
    return NumberText(NumberOf(value, at));
  }

  Value Product() {
    Value left = Unary();
    const Token* sign;
    while (TakeOneOf({"*", "/"}, &sign)) {
      const Value right = Unary();
      const double p = NumberOf(left, *sign), q = NumberOf(right, *sign);
      if (sign->text == "/" && q == 0) Fail(*sign, "division by zero");
      left = Checked(sign->text == "*" ? p * q : p / q, *sign);
    }
    return left;
  }

  Value Unary() {
    const Depth depth(*this);
    if (in_.AtSign("-")) {
      const Token& sign = in_.Take();
      return Value::Of(-NumberOf(Unary(), sign));
    }
    Value value = Primary();
    while (in_.AtSign("%")) value = Value::Of(NumberOf(value, in_.Take()) / 100);
    return value;
  }

  Value Primary() {
    const Token& token = in_.Take();
    switch (token.kind) {
      case TokenKind::kNumber:
        return Value::Of(token.number);
      case TokenKind::kColor:
        return Value::Of(token.color);
      case TokenKind::kText:
        in_.Work(token.text.size() / 16);
        return Value::Of(token.text);
      case TokenKind::kWord:
        return in_.AtSign("(") ? Call(token) : Name(token);
      default:
        break;
    }
    if (token.text == "(" && token.kind == TokenKind::kSign) {
      Value value = Compare();
      in_.NeedSign(")");
      return value;
    }
    Fail(token, "a value is wanted here");
  }

  Value Name(const Token& token) {
    if (const Value* value = in_.Find(token.text)) {
      in_.Work(value->text.size() / 16);
      return *value;
    }
    if (in_.other_) {
      const int32_t number = in_.other_(token.text);
      if (number >= 0) return Value::Of(double(number));
    }
    if (token.text == "pi") return Value::Of(std::numbers::pi);
    SvgColor color;
    if (ParseColor(token.text, &color))
      return Value::Of(Color{color.red, color.green, color.blue, Channel(color.alpha * 255)});
    Fail(token, "'" + token.text + "' is no value known here, and no colour");
  }

  Value Call(const Token& name) {
    in_.NeedSign("(");
    std::vector<Value> given;
    if (!in_.AtSign(")")) {
      do {
        if (given.size() == 8) Fail(name, "a function takes at most 8 values");
        given.push_back(Compare());
      } while (in_.TakeSign(","));
    }
    in_.NeedSign(")");
    return Apply(name, given);
  }

  Value Apply(const Token& name, const std::vector<Value>& given) {
    const std::string& f = name.text;
    const size_t count = given.size();
    const auto takes = [&](size_t least, size_t most) {
      if (count >= least && count <= most) return;
      Fail(name, f + " takes " + std::to_string(least) +
                     (most == least ? "" : " to " + std::to_string(most)) +
                     (most == 1 ? " value" : " values"));
    };
    const auto n = [&](size_t i) { return NumberOf(given[i], name); };
    const auto one = [&](auto&& function) {
      takes(1, 1);
      return Checked(function(n(0)), name);
    };
    if (f == "sin") return one(Sine);
    if (f == "cos") return one([](double v) { return Sine(v + 90); });
    if (f == "tan") return one([](double v) { return std::tan(Radians(v)); });
    if (f == "sqrt") return one([](double v) { return std::sqrt(v); });
    if (f == "abs") return one([](double v) { return std::fabs(v); });
    if (f == "floor") return one([](double v) { return std::floor(v); });
    if (f == "ceil") return one([](double v) { return std::ceil(v); });
    if (f == "round") return one([](double v) { return std::round(v); });
    if (f == "ease") return one(Smooth);
    if (f == "easein") return one([](double t) { return t * t; });
    if (f == "easeout") return one([](double t) { return t * (2 - t); });
    if (f == "angle") {
      takes(2, 2);
      return Checked(std::atan2(n(1), n(0)) * 180 / std::numbers::pi, name);
    }
    if (f == "mod") {
      takes(2, 2);
      if (n(1) == 0) Fail(name, "division by zero");
      return Checked(n(0) - n(1) * std::floor(n(0) / n(1)), name);
    }
    if (f == "power") {
      takes(2, 2);
      return Checked(std::pow(n(0), n(1)), name);
    }
    if (f == "min" || f == "max") {
      takes(1, 8);
      double best = n(0);
      for (size_t i = 1; i < count; ++i)
        best = f == "min" ? std::min(best, n(i)) : std::max(best, n(i));
      return Value::Of(best);
    }
    if (f == "clamp") {
      takes(3, 3);
      return Value::Of(std::max(n(1), std::min(n(0), n(2))));
    }
    if (f == "choose") {
      takes(3, 3);
      return n(0) != 0 ? given[1] : given[2];
    }
    if (f == "random") {
      takes(2, 2);
      return Checked(n(0) + (n(1) - n(0)) * Random(), name);
    }
    if (f == "mix") {
      takes(3, 3);
      return Mix(given, name);
    }
    if (f == "rgb") {
      takes(3, 4);
      return Value::Of(Color{Channel(n(0)), Channel(n(1)), Channel(n(2)),
                             Channel(count == 4 ? n(3) * 255 : 255)});
    }
    if (f == "fade") {
      takes(2, 2);
      if (given[0].kind != ValueKind::kColor) Fail(name, "fade takes a colour and an opacity");
      Color color = given[0].color;
      color.alpha = Channel(color.alpha * n(1));
      return Value::Of(color);
    }
    Fail(name, "'" + f + "' is no function");
  }

  Value Mix(const std::vector<Value>& given, const Token& name) const {
    const double t = NumberOf(given[2], name);
    if (given[0].kind == ValueKind::kColor && given[1].kind == ValueKind::kColor) {
      const Color p = given[0].color, q = given[1].color;
      const auto mix = [&](uint8_t from, uint8_t to) { return Channel(from + (to - from) * t); };
      return Value::Of(Color{mix(p.red, q.red), mix(p.green, q.green), mix(p.blue, q.blue),
                             mix(p.alpha, q.alpha)});
    }
    const double p = NumberOf(given[0], name), q = NumberOf(given[1], name);
    return Checked(p + (q - p) * t, name);
  }

  // 0 to below 1; the same numbers each time a source is made.
  double Random() {
    in_.random_ = in_.random_ * 1664525u + 1013904223u;
    return (in_.random_ >> 8) / 16777216.0;
  }

  struct Depth {
    explicit Depth(ExpressionParser& parser) : parser(parser) {
      if (++parser.depth_ > kMaxExpressionDepth)
        parser.in_.Fail("more than 100 parentheses or signs in each other");
    }
    ~Depth() { --parser.depth_; }
    ExpressionParser& parser;
  };

  Evaluator& in_;
  int depth_ = 0;
};

const Token& Evaluator::Peek(size_t ahead) const {
  const std::vector<Token>& tokens = at_.unit->tokens;
  return tokens[std::min(at_.index + ahead, tokens.size() - 1)];
}

const Token& Evaluator::Take() {
  Work(1);
  const Token& token = Peek();
  if (at_.index + 1 < at_.unit->tokens.size()) ++at_.index;
  return token;
}

bool Evaluator::AtWord(std::string_view word) const {
  return Peek().kind == TokenKind::kWord && Peek().text == word;
}

bool Evaluator::AtSign(std::string_view sign) const {
  return Peek().kind == TokenKind::kSign && Peek().text == sign;
}

bool Evaluator::TakeWord(std::string_view word) {
  if (!AtWord(word)) return false;
  Take();
  return true;
}

bool Evaluator::TakeSign(std::string_view sign) {
  if (!AtSign(sign)) return false;
  Take();
  return true;
}

void Evaluator::NeedSign(std::string_view sign) {
  if (!TakeSign(sign)) Fail(std::string(sign) + " is wanted here, not " + Here());
}

const Token& Evaluator::NeedName(const char* what) {
  if (Peek().kind != TokenKind::kWord)
    Fail("the name of " + std::string(what) + " is wanted here, not " + Here());
  return Take();
}

std::string Evaluator::NeedText(const char* what) {
  const SourcePlace place = Place();
  Value value = Expression();
  if (value.kind != ValueKind::kText)
    throw SourceError(place, std::string(what) + " is a text in quotes");
  return std::move(value.text);
}

std::string Evaluator::Here() const {
  const Token& token = Peek();
  switch (token.kind) {
    case TokenKind::kEnd:
      return "the end of the text";
    case TokenKind::kText:
      return "a text";
    case TokenKind::kCode:
      return "a block";
    default:
      break;
  }
  std::string text(SliceOf(token).text());
  if (text.size() > 40) text.replace(40, std::string::npos, "...");
  text.insert(text.begin(), '\'');
  return text += '\'';
}

Value Evaluator::Expression() {
  return ExpressionParser(*this).Run();
}

double Evaluator::Number(const char* what) {
  const SourcePlace place = Place();
  const Value value = Expression();
  if (value.kind != ValueKind::kNumber)
    throw SourceError(place, std::string(what) + " is a number");
  return value.number;
}

Color Evaluator::ColorValue(const char* what) {
  const SourcePlace place = Place();
  const Value value = Expression();
  if (value.kind != ValueKind::kColor) throw SourceError(place, std::string(what) + " is a colour");
  return value.color;
}

int64_t Evaluator::Whole(const char* what, int64_t low, int64_t high) {
  const SourcePlace place = Place();
  const double number = Number(what);
  if (!(std::fabs(number - std::round(number)) < 1e-6))
    throw SourceError(place, std::string(what) + " is a whole number, not " + NumberText(number));
  if (number < double(low) - 0.5 || number > double(high) + 0.5)
    throw SourceError(place, std::string(what) + " is " + std::to_string(low) + " to " +
                                 std::to_string(high) + ", not " + NumberText(std::round(number)));
  return static_cast<int64_t>(std::llround(number));
}

void Evaluator::Define(const std::string& name, Value value) {
  scopes_.back()[name] = std::move(value);
}

const Value* Evaluator::Find(const std::string& name) const {
  for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
    const auto found = scope->find(name);
    if (found != scope->end()) return &found->second;
  }
  return nullptr;
}

double Evaluator::Used() const {
  return std::max(double(work_) / kMaxWork, double(tokens_) / kMaxTokens);
}

void Evaluator::Work(size_t steps) {
  work_ += std::min(steps, kMaxWork);
  if (work_ > kMaxWork) Fail("this text asks for too much work: it is stopped here");
}

}  // namespace vexel::author
