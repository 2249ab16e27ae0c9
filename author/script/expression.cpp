// Operators by rising strength: or, and, not, comparisons, &, + and -, * and /.
#include "author/script/expression.h"

#include <algorithm>
#include <charconv>

#include "author/script/nearest.h"
#include "author/script/properties.h"

namespace vexel::author {

namespace {

// Trees are walked by calling, so their depth is limited.
constexpr int kMaxNesting = 200;
constexpr int kMaxDepth = 1000;
constexpr int64_t kMaxFolded = 999999999;

struct ValueFunction {
  const char* name;
  ActionCode code;
  size_t arguments;
};

constexpr ValueFunction kValueFunctions[] = {
    {"int", kActionToInteger, 1},
    {"random", kActionRandom, 1},
    {"length", kActionStringLength, 1},
    {"substring", kActionSubstring, 3},
    {"ord", kActionCharCode, 1},
    {"chr", kActionCharFromCode, 1},
    {"getTime", kActionGetTime, 0},
    {"get", kActionGetVariable, 1},
    {"lengthMB", kActionStringLengthMB, 1},
    {"substringMB", kActionSubstringMB, 3},
    {"ordMB", kActionCharCodeMB, 1},
    {"chrMB", kActionCharFromCodeMB, 1},
};

enum Level { kOr = 1, kAnd, kCompare, kJoin, kSum, kProduct };

struct Operator {
  const char* sign;
  int level;
  ActionCode code;
  bool swapped;  // the right side is pushed first
  bool negated;
};

constexpr Operator kOperators[] = {
    {"or", kOr, kActionOr, false, false},
    {"and", kAnd, kActionAnd, false, false},
    {"==", kCompare, kActionEquals, false, false},
    {"!=", kCompare, kActionEquals, false, true},
    {"<", kCompare, kActionLess, false, false},
    {">=", kCompare, kActionLess, false, true},
    {">", kCompare, kActionLess, true, false},
    {"<=", kCompare, kActionLess, true, true},
    {"is", kCompare, kActionStringEquals, false, false},
    {"before", kCompare, kActionStringLess, false, false},
    {"after", kCompare, kActionStringLess, true, false},
    {"&", kJoin, kActionConcat, false, false},
    {"+", kSum, kActionAdd, false, false},
    {"-", kSum, kActionSubtract, false, false},
    {"*", kProduct, kActionMultiply, false, false},
    {"/", kProduct, kActionDivide, false, false},
};

const Operator* FindOperator(const ScriptToken& token) {
  for (const Operator& known : kOperators) {
    if (token.Is(known.sign)) return &known;
  }
  return nullptr;
}

bool IsTruthCode(ActionCode code) {
  switch (code) {
    case kActionEquals:
    case kActionLess:
    case kActionAnd:
    case kActionOr:
    case kActionNot:
    case kActionStringEquals:
    case kActionStringLess:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool IsReserved(std::string_view word) {
  static constexpr std::string_view kWords[] = {
      "and",  "or",    "not",      "is",   "before", "after", "if",   "else",   "while",
      "with", "break", "continue", "true", "false",  "this",  "root", "parent", "ifLoaded"};
  return std::find(std::begin(kWords), std::end(kWords), word) != std::end(kWords);
}

bool Expression::IsInteger(int64_t* value) const {
  if (!isConstant || !isNumber) return false;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, *value);
  return result.ec == std::errc() && result.ptr == end && *value >= -kMaxFolded &&
         *value <= kMaxFolded;
}

ExpressionPtr Constant(size_t at, std::string text, bool isNumber) {
  auto made = std::make_unique<Expression>();
  made->at = at;
  made->isConstant = true;
  made->isNumber = isNumber;
  made->isTruth = text == "0" || text == "1";
  made->text = std::move(text);
  return made;
}

ExpressionPtr ExpressionParser::Apply(size_t at, ActionCode code, ExpressionPtr first,
                                      ExpressionPtr second, ExpressionPtr third) const {
  auto made = std::make_unique<Expression>();
  made->at = at;
  made->code = code;
  made->isTruth = IsTruthCode(code);
  for (ExpressionPtr* part : {&first, &second, &third}) {
    if (!*part) continue;
    made->depth = std::max(made->depth, (*part)->depth + 1);
    made->arguments.push_back(std::move(*part));
  }
  if (made->depth > kMaxDepth) {
    in_.FailAt(at, "this expression is too long; put a part of it into a variable first");
  }
  return made;
}

ExpressionPtr ExpressionParser::Truth(ExpressionPtr value) const {
  if (value->isTruth) return value;
  const size_t at = value->at;
  return Apply(at, kActionNot, Apply(at, kActionNot, std::move(value)));
}

ExpressionPtr ExpressionParser::Binary(size_t at, ActionCode code, ExpressionPtr left,
                                       ExpressionPtr right) const {
  if (code == kActionConcat && left->isConstant && right->isConstant) {
    return Constant(at, left->text + right->text);
  }
  // Whole numbers of nine digits are rendered exactly, so nobody can tell
  // whether the player or this has added them.
  int64_t a;
  int64_t b;
  if (left->IsInteger(&a) && right->IsInteger(&b)) {
    int64_t folded = kMaxFolded + 1;
    if (code == kActionAdd) folded = a + b;
    if (code == kActionSubtract) folded = a - b;
    if (code == kActionMultiply) folded = a * b;
    if (folded >= -kMaxFolded && folded <= kMaxFolded) {
      return Constant(at, std::to_string(folded), true);
    }
  }
  return Apply(at, code, std::move(left), std::move(right));
}

ExpressionPtr ExpressionParser::Parse() {
  if (++nesting_ > kMaxNesting) {
    in_.FailAt(in_.PeekValue().at, "parentheses are nested too deep; 200 are the most");
  }
  ExpressionPtr value = ParseLevel(kOr);
  --nesting_;
  return value;
}

ExpressionPtr ExpressionParser::ParseLevel(int level) {
  if (level > kProduct) return ParseUnary();
  // not binds weaker than comparisons, stronger than and.
  if (level == kCompare && in_.PeekValue().Is("not")) {
    int count = 0;
    size_t at = 0;
    while (in_.PeekValue().Is("not")) {
      at = in_.Take().at;
      ++count;
    }
    ExpressionPtr value = ParseLevel(kCompare);
    // Two of them make a truth of a value, more are no different.
    for (int i = 2 - count % 2; i > 0; --i) value = Apply(at, kActionNot, std::move(value));
    return value;
  }
  ExpressionPtr left = ParseLevel(level + 1);
  for (bool again = false;; again = true) {
    const ScriptToken& next = in_.PeekOperator();
    const Operator* op = FindOperator(next);
    if (!op || op->level != level || (next.firstOnLine && parentheses_ == 0)) return left;
    if (again && level == kCompare) {
      in_.FailAt(next.at, "comparisons cannot be chained; put and between two of them");
    }
    const ScriptToken sign = in_.Take();
    bool negate = op->negated;
    if (sign.Is("is") && in_.PeekValue().Is("not")) {
      in_.Take();
      negate = true;
    }
    left = Combine(sign, std::move(left), ParseLevel(level + 1), negate);
  }
}

// A word cannot be equal to a number; whoever compares one wants "is".
void ExpressionParser::NoWord(const Expression& side) const {
  double number;
  if (!side.isConstant || side.isNumber) return;
  const char* end = side.text.data() + side.text.size();
  const auto result = std::from_chars(side.text.data(), end, number);
  if (result.ec == std::errc() && result.ptr == end) return;
  in_.FailAt(side.at, "numbers are compared here; texts are compared with is, before and after");
}

ExpressionPtr ExpressionParser::Combine(const ScriptToken& sign, ExpressionPtr left,
                                        ExpressionPtr right, bool negate) {
  const Operator& op = *FindOperator(sign);
  if (op.code == kActionEquals || op.code == kActionLess) {
    NoWord(*left);
    NoWord(*right);
  }
  if (op.code == kActionAnd || op.code == kActionOr) {
    left = Truth(std::move(left));
    right = Truth(std::move(right));
  }
  if (op.swapped) std::swap(left, right);
  ExpressionPtr value = Binary(sign.at, op.code, std::move(left), std::move(right));
  if (negate) value = Apply(sign.at, kActionNot, std::move(value));
  return value;
}

ExpressionPtr ExpressionParser::ParseUnary() {
  size_t at = 0;
  int count = 0;
  while (in_.PeekValue().Is("-")) {
    at = in_.Take().at;
    ++count;
  }
  ExpressionPtr value = ParseOne();
  if (count == 0) return value;
  if (value->isConstant && value->isNumber) {
    if (count % 2 == 1 && value->text != "0") value->text.insert(0, 1, '-');
    return value;
  }
  // Two signs make a number of a value, more are no different.
  for (int i = 2 - count % 2; i > 0; --i) {
    value = Binary(at, kActionSubtract, Constant(at, "0", true), std::move(value));
  }
  return value;
}

ExpressionPtr ExpressionParser::ParseOne() {
  in_.PeekValue();
  const ScriptToken token = in_.Take();
  const size_t at = token.at;
  switch (token.kind) {
    case ScriptTokenKind::kNumber:
      return Constant(at, token.value, true);
    case ScriptTokenKind::kText:
      return Constant(at, token.value);
    case ScriptTokenKind::kVariable:
      return Apply(at, kActionGetVariable, Constant(at, token.value));
    case ScriptTokenKind::kProperty:
      return Apply(at, kActionGetProperty, Constant(at, token.value),
                   Constant(at, std::to_string(token.property), true));
    case ScriptTokenKind::kSign:
      if (token.text == "(") return RestOfParentheses();
      break;
    case ScriptTokenKind::kName:
      if (token.text == "true") return Constant(at, "1", true);
      if (token.text == "false") return Constant(at, "0", true);
      if (const char* path = PathWord(token.text)) return Constant(at, path);
      if (IsReserved(token.text)) break;
      if (in_.PeekOperator().Is("(") && !in_.PeekOperator().firstOnLine) return Call(token);
      return Apply(at, kActionGetVariable, Constant(at, std::string(token.text)));
    case ScriptTokenKind::kEnd:
      break;
  }
  in_.FailAt(at, "here stands a value: a number, a text, a variable, a property or a function");
}

ExpressionPtr ExpressionParser::InParentheses() {
  in_.Expect("(", "with a value behind it");
  return RestOfParentheses();
}

ExpressionPtr ExpressionParser::RestOfParentheses() {
  ++parentheses_;
  ExpressionPtr value = Parse();
  in_.Expect(")", "to close the parenthesis");
  --parentheses_;
  return value;
}

std::vector<ExpressionPtr> ExpressionParser::Arguments() {
  in_.Expect("(", "with the function's values behind it");
  ++parentheses_;
  std::vector<ExpressionPtr> arguments;
  if (!in_.PeekValue().Is(")")) {
    do {
      arguments.push_back(Parse());
    } while (in_.TakeIf(","));
  }
  in_.Expect(")", "or a comma behind a function's value");
  --parentheses_;
  return arguments;
}

std::vector<ExpressionPtr> ExpressionParser::PropertyArguments(bool more) {
  std::vector<ExpressionPtr> arguments;
  in_.Expect("(", "with a path and a property's name behind it");
  ++parentheses_;
  arguments.push_back(Parse());
  in_.Expect(",", "and a property's name behind the path");
  in_.PeekValue();
  const ScriptToken name = in_.Take();
  const int property = name.kind == ScriptTokenKind::kName ? FindProperty(name.text) : -1;
  if (property < 0) {
    Nearest nearest(name.text);
    for (const PropertyName& known : kPropertyNames) nearest.Offer(known.name);
    in_.FailAt(name.at, "here stands the name of a property, such as x" + nearest.Hint());
  }
  arguments.push_back(Constant(name.at, std::to_string(property), true));
  if (more) {
    in_.Expect(",", "and a value behind the property's name");
    arguments.push_back(Parse());
  }
  in_.Expect(")", "to close the function's values");
  --parentheses_;
  return arguments;
}

ExpressionPtr ExpressionParser::Call(const ScriptToken& name) {
  if (name.Is("property")) {
    std::vector<ExpressionPtr> arguments = PropertyArguments(false);
    return Apply(name.at, kActionGetProperty, std::move(arguments[0]), std::move(arguments[1]));
  }
  Nearest nearest(name.text);
  for (const ValueFunction& known : kValueFunctions) {
    nearest.Offer(known.name);
    if (!name.Is(known.name)) continue;
    std::vector<ExpressionPtr> arguments = Arguments();
    if (arguments.size() != known.arguments) {
      in_.FailAt(name.at, std::string(known.name) + " takes " + std::to_string(known.arguments) +
                              " values, not " + std::to_string(arguments.size()));
    }
    arguments.resize(3);
    return Apply(name.at, known.code, std::move(arguments[0]), std::move(arguments[1]),
                 std::move(arguments[2]));
  }
  nearest.Offer("property");
  in_.FailAt(name.at, "no function " + std::string(name.text) + " gives a value" + nearest.Hint());
}

void EmitExpression(const Expression& value, const ScriptLexer& lexer, CodeEmitter& out) {
  if (value.isConstant) {
    out.Push(value.text, lexer.PlaceAt(value.at));
    return;
  }
  for (const ExpressionPtr& argument : value.arguments) EmitExpression(*argument, lexer, out);
  out.Op(value.code);
}

}  // namespace vexel::author
