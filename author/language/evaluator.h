// Reads tokens of a running source: the place it stands at, the names that are
// known there, expressions, and how much work has been done.
//
// A source is run, not kept as a tree: a loop sets the cursor back to the
// start of its block. What that costs is counted, so that no text takes more
// than bounded time and memory.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "author/language/lexer.h"

namespace vexel::author {

// A source with its tokens; both stay as long as a maker may point at them.
struct SourceUnit {
  SourceUnit(std::string name, std::string text)
      : source(std::move(name), std::move(text)), tokens(Tokenize(source)) {}
  SourceText source;
  std::vector<Token> tokens;
};

enum class ValueKind : uint8_t { kNumber, kColor, kText };

struct Value {
  ValueKind kind = ValueKind::kNumber;
  double number = 0;
  Color color;
  std::string text;

  static Value Of(double number);
  static Value Of(Color color);
  static Value Of(std::string text);
};

class Evaluator {
 public:
  struct Cursor {
    const SourceUnit* unit = nullptr;
    size_t index = 0;
  };

  Cursor cursor() const { return at_; }
  void MoveTo(const Cursor& cursor) { at_ = cursor; }

  // The token at the cursor, or one behind it.
  const Token& Peek(size_t ahead = 0) const;
  SourcePlace Place() const { return PlaceOf(Peek()); }
  SourcePlace PlaceOf(const Token& token) const { return {&at_.unit->source, token.begin}; }
  SourcePlace PlaceAt(size_t index) const { return PlaceOf(at_.unit->tokens[index]); }
  SourceSlice SliceOf(const Token& token) const {
    return {&at_.unit->source, token.begin, token.end};
  }
  // Takes the token; each counts as work.
  const Token& Take();
  bool AtWord(std::string_view word) const;
  bool AtSign(std::string_view sign) const;
  bool AtBlock() const { return AtSign("{"); }
  bool TakeWord(std::string_view word);
  bool TakeSign(std::string_view sign);
  void NeedSign(std::string_view sign);
  // A word as a name; `what` says of what.
  const Token& NeedName(const char* what);
  std::string NeedText(const char* what);
  [[noreturn]] void Fail(const std::string& what) const { throw SourceError(Place(), what); }
  // What stands at the cursor, for messages.
  std::string Here() const;

  Value Expression();
  double Number(const char* what);
  Color ColorValue(const char* what);
  // A whole number within a range.
  int64_t Whole(const char* what, int64_t low, int64_t high);

  // Names of values. A block sees what is around it; its own names end with it.
  void OpenScope() { scopes_.emplace_back(); }
  void CloseScope() { scopes_.pop_back(); }
  size_t ScopeCount() const { return scopes_.size(); }
  void CutScopes(size_t count) { scopes_.resize(count); }
  void Define(const std::string& name, Value value);
  const Value* Find(const std::string& name) const;

  // What names stand for that no `let` defined, by number; -1 for nothing.
  void SetOtherNames(std::function<int32_t(const std::string&)> find) { other_ = std::move(find); }

  // Counts work; throws when there has been too much.
  void Work(size_t steps);
  // Tokens of the sources, for Used.
  void Count(size_t tokens) { tokens_ += tokens; }
  // How much of all that is allowed was used: 1 is all.
  double Used() const;

 private:
  friend class ExpressionParser;
  Cursor at_;
  std::vector<std::map<std::string, Value>> scopes_{1};
  std::function<int32_t(const std::string&)> other_;
  size_t work_ = 0;
  size_t tokens_ = 0;
  uint32_t random_ = 1;
};

// A number without trailing zeros, in the language's notation.
std::string NumberText(double number);

}  // namespace vexel::author
