// Expressions of scripts: read into trees, then written as actions that leave
// one value on the stack.
#pragma once

#include <memory>
#include <vector>

#include "author/script/code_emitter.h"
#include "author/script/script_lexer.h"

namespace vexel::author {

// A constant, or an action on the values of its arguments.
struct Expression {
  size_t at = 0;  // its place in the slice
  bool isConstant = false;
  bool isNumber = false;  // a constant that was written as a number
  bool isTruth = false;   // its value is "0" or "1"
  std::string text;       // of a constant
  ActionCode code = kActionEnd;
  std::vector<std::unique_ptr<Expression>> arguments;  // pushed in this order
  int depth = 1;

  // Whether a constant is a whole number of at most nine digits, and which.
  bool IsInteger(int64_t* value) const;
};

using ExpressionPtr = std::unique_ptr<Expression>;

ExpressionPtr Constant(size_t at, std::string text, bool isNumber = false);

class ExpressionParser {
 public:
  explicit ExpressionParser(ScriptLexer& lexer) : in_(lexer) {}

  // Up to the first word that does not belong to it. Outside of parentheses an
  // expression goes on behind a line end only if an operator stands before it.
  ExpressionPtr Parse();
  // In parentheses, the first of which is the next token.
  ExpressionPtr InParentheses();
  // Between parentheses, divided by commas; the opening one is the next token.
  std::vector<ExpressionPtr> Arguments();
  // The value of a function by its name, whose parenthesis is the next token.
  ExpressionPtr Call(const ScriptToken& name);
  // Between parentheses: a path, the name of a property, and with `more` a
  // value. The property is left as its number.
  std::vector<ExpressionPtr> PropertyArguments(bool more);

  // An action on values. Throws if the tree grows too deep.
  ExpressionPtr Apply(size_t at, ActionCode code, ExpressionPtr first,
                      ExpressionPtr second = nullptr, ExpressionPtr third = nullptr) const;
  // The same value as "0" or "1".
  ExpressionPtr Truth(ExpressionPtr value) const;
  // Two values with an operator between them; what follows from constants
  // alone is worked out here.
  ExpressionPtr Binary(size_t at, ActionCode code, ExpressionPtr left, ExpressionPtr right) const;

 private:
  ExpressionPtr ParseLevel(int level);
  ExpressionPtr ParseUnary();
  ExpressionPtr ParseOne();
  ExpressionPtr RestOfParentheses();
  ExpressionPtr Combine(const ScriptToken& sign, ExpressionPtr left, ExpressionPtr right,
                        bool negate);
  void NoWord(const Expression& side) const;

  ScriptLexer& in_;
  int nesting_ = 0;
  int parentheses_ = 0;
};

// Whether a word is one of the language's own, and so no variable.
bool IsReserved(std::string_view word);

// The actions of an expression.
void EmitExpression(const Expression& value, const ScriptLexer& lexer, CodeEmitter& out);

}  // namespace vexel::author
