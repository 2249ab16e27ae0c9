#include "author/script/script_lexer.h"

#include <algorithm>
#include <utility>

#include "author/script/nearest.h"
#include "author/script/properties.h"

namespace vexel::author {

namespace {

// Longer ones first.
constexpr std::string_view kSigns[] = {
    "==", "!=", "<=", ">=", "+=", "-=", "*=", "/=", "&=", "+", "-", "*",
    "/",  "&",  "=",  "<",  ">",  "(",  ")",  "{",  "}",  ",", ";",
};

bool IsPathChar(int c) {
  return IsNameChar(c) || c == '/' || c == '.';
}

// A path as the player takes it: its first word may stand for a place.
std::string WholePath(std::string_view path) {
  const size_t slash = path.find('/');
  const char* word = PathWord(path.substr(0, slash));
  if (!word) return std::string(path);
  std::string whole(word);
  if (slash == std::string_view::npos) return whole;
  const std::string_view rest = path.substr(slash + 1);
  if (!whole.empty() && whole.back() != '/') whole += '/';
  return whole += rest;
}

// Without needless zeros, so that 007 and 1.50 are the texts of their values.
std::string NumberText(std::string_view number) {
  const size_t exponent = number.find_first_of("eE");
  std::string text(number.substr(0, exponent));
  text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
  if (text.find('.') != std::string::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  if (text.empty() || text[0] == '.') text.insert(text.begin(), '0');
  if (exponent != std::string_view::npos && text != "0") text += number.substr(exponent);
  return text;
}

}  // namespace

const char* PathWord(std::string_view word) {
  if (word == "this") return "";
  if (word == "root") return "/";
  if (word == "parent") return "..";
  return nullptr;
}

const ScriptToken& ScriptLexer::Peek(bool value) {
  const auto wanted = value ? kAsValue : kAsOperator;
  if (read_ == wanted) return token_;
  if (read_ == kNone) {
    before_ = in_.offset();
  } else {
    in_.MoveTo(before_);
  }
  token_ = ScriptToken();
  token_.firstOnLine = in_.SkipBlanks(true);
  token_.at = in_.offset();
  if (in_.AtEnd()) {
    token_.kind = ScriptTokenKind::kEnd;
  } else if (value) {
    ReadValue();
  } else {
    ReadSign();
  }
  token_.text = in_.From(token_.at);
  read_ = wanted;
  return token_;
}

ScriptToken ScriptLexer::Take() {
  read_ = kNone;
  return std::move(token_);
}

bool ScriptLexer::TakeIf(std::string_view word) {
  if (!PeekOperator().Is(word)) return false;
  Take();
  return true;
}

void ScriptLexer::Expect(std::string_view sign, const char* what) {
  if (!TakeIf(sign)) FailAt(token_.at, "here stands " + std::string(sign) + " " + what);
}

void ScriptLexer::ReadValue() {
  const int c = in_.Peek();
  if (c == '"') {
    const size_t at = in_.offset();
    token_.kind = ScriptTokenKind::kText;
    token_.value = in_.Quoted();
    if (token_.value.find('\0') != std::string::npos) {
      FailAt(at, "texts of scripts end at a zero byte, so there can be none inside");
    }
  } else if (IsDigit(c) || (c == '.' && IsDigit(in_.Peek(1)))) {
    ReadNumber();
  } else if (!ReadReference()) {
    ReadSign();
  }
}

void ScriptLexer::ReadSign() {
  if (!in_.Name().empty()) {
    token_.kind = ScriptTokenKind::kName;
    return;
  }
  token_.kind = ScriptTokenKind::kSign;
  for (const std::string_view sign : kSigns) {
    size_t i = 0;
    while (i < sign.size() && in_.Peek(i) == sign[i]) ++i;
    if (i < sign.size()) continue;
    in_.MoveTo(in_.offset() + i);
    return;
  }
  in_.Step();  // no sign of scripts; whoever looks for one will not take it
}

void ScriptLexer::ReadNumber() {
  const size_t at = in_.offset();
  while (IsDigit(in_.Peek())) in_.Step();
  if (in_.Peek() == '.') in_.Step();
  while (IsDigit(in_.Peek())) in_.Step();
  if (in_.Peek() == 'e' || in_.Peek() == 'E') {
    in_.Step();
    if (in_.Peek() == '-' || in_.Peek() == '+') in_.Step();
    const size_t exponent = in_.offset();
    while (IsDigit(in_.Peek())) in_.Step();
    if (in_.offset() == exponent || in_.offset() - exponent > 4) {
      FailAt(exponent, "one to four digits follow the e of a number");
    }
  }
  if (IsNameChar(in_.Peek()) || in_.Peek() == '.') {
    FailAt(at, "this is no number, and names begin with a letter");
  }
  token_.kind = ScriptTokenKind::kNumber;
  token_.value = NumberText(in_.From(at));
}

// A name, or with a path and a colon a variable, or with a path and a point a
// property. A run such as a/b is a division unless a colon or a property's
// point shows that it is a path.
bool ScriptLexer::ReadReference() {
  const size_t at = in_.offset();
  const int first = in_.Peek();
  if (!IsNameStart(first) && first != '/' && first != '.') return false;
  while (IsPathChar(in_.Peek())) in_.Step();
  const std::string_view run = in_.From(at);

  if (in_.Peek() == ':' && IsNameStart(in_.Peek(1))) {
    in_.Step();
    std::string_view name = in_.Name();
    const size_t nameEnd = in_.offset();
    token_.kind = ScriptTokenKind::kVariable;
    token_.value = WholePath(run) + ":" + std::string(name);
    if (in_.Peek() != '.') return true;
    in_.Step();
    const std::string_view detail = in_.Name();
    if (detail != "scroll" && detail != "maxscroll") {
      FailAt(nameEnd, "behind a variable only .scroll and .maxscroll can stand");
    }
    token_.value.append(".").append(detail);
    return true;
  }

  const size_t point = run.rfind('.');
  const std::string_view last =
      point == std::string_view::npos ? std::string_view() : run.substr(point + 1);
  if (!last.empty() && last.find('/') == std::string_view::npos) {
    const std::string_view path = run.substr(0, point);
    if ((last == "scroll" || last == "maxscroll") && path.find_first_of("/.") == path.npos) {
      token_.kind = ScriptTokenKind::kVariable;
      token_.value = run;
      return true;
    }
    const int property = FindProperty(last);
    if (property < 0) {
      Nearest nearest(last);
      for (const PropertyName& known : kPropertyNames) nearest.Offer(known.name);
      FailAt(at + point + 1, "there is no property " + std::string(last) + nearest.Hint());
    }
    token_.kind = ScriptTokenKind::kProperty;
    token_.value = WholePath(path);
    token_.property = property;
    return true;
  }

  in_.MoveTo(at);
  if (in_.Name().empty()) {
    FailAt(at, "a path is followed by :VARIABLE or .PROPERTY; as a text it stands in quotes");
  }
  token_.kind = ScriptTokenKind::kName;
  return true;
}

}  // namespace vexel::author
