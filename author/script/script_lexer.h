// The words and signs of a script.
//
// Whether / divides or begins a path, and whether a point belongs to a name,
// depends on what may stand at a place. So the parser says what it looks for.
#pragma once

#include <vector>

#include "author/script/cursor.h"

namespace vexel::author {

enum class ScriptTokenKind : uint8_t {
  kEnd,
  kName,      // keywords, functions, variables of the timeline itself
  kNumber,    // value: as the player would write it
  kText,      // value: what stands between the quotes
  kVariable,  // value: a variable behind a path, such as /clip:x
  kProperty,  // value: the path of a timeline; property
  kSign,
};

struct ScriptToken {
  ScriptTokenKind kind = ScriptTokenKind::kEnd;
  size_t at = 0;             // offset in the slice
  bool firstOnLine = false;  // a line end stands before it
  std::string_view text;     // as it stands in the source
  std::string value;
  int property = 0;  // its number

  bool Is(std::string_view word) const {
    return (kind == ScriptTokenKind::kName || kind == ScriptTokenKind::kSign) && text == word;
  }
};

class ScriptLexer {
 public:
  explicit ScriptLexer(const SourceSlice& slice) : in_(slice) {}

  // The next token where a value or a statement may begin: paths, names,
  // numbers, texts, and the signs that may stand there.
  const ScriptToken& PeekValue() { return Peek(true); }
  // The next token behind a value: operators and other signs.
  const ScriptToken& PeekOperator() { return Peek(false); }
  // Passes the token that was looked at last.
  ScriptToken Take();
  // Passes a sign or a word if it stands here.
  bool TakeIf(std::string_view word);
  // Passes a sign that has to stand here.
  void Expect(std::string_view sign, const char* what);

  [[noreturn]] void FailAt(size_t at, const std::string& what) const { in_.FailAt(at, what); }
  SourcePlace PlaceAt(size_t at) const { return in_.PlaceAt(at); }

 private:
  const ScriptToken& Peek(bool value);
  void ReadValue();
  void ReadSign();
  void ReadNumber();
  bool ReadReference();

  SourceCursor in_;
  ScriptToken token_;
  size_t before_ = 0;  // where token_, and the blanks before it, begin
  enum { kNone, kAsValue, kAsOperator } read_ = kNone;
};

// this, root and parent stand for paths; nothing for other words.
const char* PathWord(std::string_view word);

}  // namespace vexel::author
