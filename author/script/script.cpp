// Statements are written as actions while they are read; only expressions are
// kept as trees, and only until their place has come.
#include "author/script/script.h"

#include <optional>
#include <span>
#include <utility>

#include "author/script/expression.h"
#include "author/script/mnemonics.h"
#include "author/script/nearest.h"
#include "author/script/properties.h"

namespace vexel::author {

namespace {

constexpr int kMaxNesting = 200;
constexpr size_t kMaxBlock = 16 << 20;  // no player runs more than a part of this

// Depths below this belong to the timeline, and what stands there cannot be
// removed by a script.
constexpr int64_t kScriptDepth = 16384;
constexpr int64_t kMaxDepth = 65535 - kScriptDepth;

constexpr int64_t kMaxFrame = 65536;  // counted from 1

class ScriptCompiler {
 public:
  explicit ScriptCompiler(const SourceSlice& slice) : in_(slice), expressions_(in_) {}

  Bytes Run() {
    Statements();
    const ScriptToken& rest = in_.PeekValue();
    if (rest.kind != ScriptTokenKind::kEnd)
      in_.FailAt(rest.at, "no block is open that this could close");
    return out_.Finish();
  }

 private:
  using Label = CodeEmitter::Label;
  using Arguments = std::vector<ExpressionPtr>;

  // A loop around the statements at hand.
  struct Loop {
    Label next;
    Label done;
    size_t targets;  // how many blocks of with were open where it began
  };

  // A function that is a statement, with the values it takes.
  struct StatementFunction {
    const char* name;
    size_t least;
    size_t most;
    void (ScriptCompiler::*emit)(const ScriptToken&, Arguments&);
    ActionCode code;  // where there is no more to it than an action
  };
  static std::span<const StatementFunction> StatementFunctions();

  // Up to the brace that closes the block, or the end.
  void Statements() {
    for (;;) {
      const ScriptToken& next = in_.PeekValue();
      if (next.kind == ScriptTokenKind::kEnd || next.Is("}")) return;
      if (next.Is(";")) {
        in_.Take();
        continue;
      }
      Statement();
    }
  }

  // A block in braces or a single statement.
  void Body(size_t owner) {
    const ScriptToken& next = in_.PeekValue();
    if (!next.Is("{")) {
      if (next.kind == ScriptTokenKind::kEnd || next.Is(";") || next.Is("}")) {
        in_.FailAt(next.at, "here stands a statement, or several in braces");
      }
      Statement();
      return;
    }
    in_.Take();
    Statements();
    if (!in_.PeekValue().Is("}")) in_.FailAt(owner, "the block that begins here is never closed");
    in_.Take();
  }

  void Statement() {
    const size_t begin = in_.PeekValue().at;
    if (++nesting_ > kMaxNesting) in_.FailAt(begin, "blocks are nested too deep; 200 are the most");
    if (out_.size() > kMaxBlock) in_.FailAt(begin, "the script is too large; 16 MiB are the most");
    const ScriptToken first = in_.Take();
    if (first.Is("if")) {
      If(first);
    } else if (first.Is("ifLoaded")) {
      IfLoaded(first);
    } else if (first.Is("while")) {
      While(first);
    } else if (first.Is("with")) {
      With(first);
    } else {
      Simple(first);
      EndOfStatement();
    }
    --nesting_;
  }

  // A semicolon, a line end, or the end of the block.
  void EndOfStatement() {
    const ScriptToken& next = in_.PeekOperator();
    if (next.Is(";")) {
      in_.Take();
    } else if (!next.firstOnLine && !next.Is("}") && !next.Is("else") &&
               next.kind != ScriptTokenKind::kEnd) {
      in_.FailAt(next.at, "the statement is complete before this; a semicolon divides two of them");
    }
  }

  void Simple(const ScriptToken& first) {
    if (first.Is("break") || first.Is("continue")) {
      LeaveLoop(first);
      return;
    }
    const bool isName = first.kind == ScriptTokenKind::kName;
    if (isName && !IsReserved(first.text) && in_.PeekOperator().Is("(")) {
      Function(first);
      return;
    }
    const bool isPlace = isName ? !IsReserved(first.text)
                                : first.kind == ScriptTokenKind::kVariable ||
                                      first.kind == ScriptTokenKind::kProperty;
    if (!isPlace) {
      in_.FailAt(first.at,
                 "here stands a statement: an assignment such as x = 1, a function such as "
                 "stop(), if, while or with");
    }
    Assignment(first);
  }

  void Assignment(const ScriptToken& place) {
    const bool isProperty = place.kind == ScriptTokenKind::kProperty;
    const ScriptToken& next = in_.PeekOperator();
    const std::optional<ActionCode> code = AssignmentCode(next);
    if (!code) {
      in_.FailAt(next.at, "behind " + std::string(place.text) +
                              " stands = with a value, or ( if it "
                              "is a function");
    }
    if (isProperty && kPropertyNames[place.property].readOnly) {
      in_.FailAt(place.at, std::string("the property ") + kPropertyNames[place.property].name +
                               " can only be read");
    }
    const size_t at = in_.Take().at;
    PushPlace(place);
    ExpressionPtr value = expressions_.Parse();
    if (*code != kActionEnd) {
      ExpressionPtr before =
          isProperty ? expressions_.Apply(at, kActionGetProperty, Constant(place.at, place.value),
                                          Constant(place.at, std::to_string(place.property), true))
                     : expressions_.Apply(at, kActionGetVariable, Constant(place.at, Name(place)));
      value = expressions_.Binary(at, *code, std::move(before), std::move(value));
    }
    Emit(*value);
    out_.Op(isProperty ? kActionSetProperty : kActionSetVariable);
  }

  // The action between the old value and the new; the end for a plain =.
  static std::optional<ActionCode> AssignmentCode(const ScriptToken& sign) {
    if (sign.Is("=")) return kActionEnd;
    if (sign.Is("+=")) return kActionAdd;
    if (sign.Is("-=")) return kActionSubtract;
    if (sign.Is("*=")) return kActionMultiply;
    if (sign.Is("/=")) return kActionDivide;
    if (sign.Is("&=")) return kActionConcat;
    return std::nullopt;
  }

  static std::string Name(const ScriptToken& place) {
    return place.kind == ScriptTokenKind::kName ? std::string(place.text) : place.value;
  }

  void PushPlace(const ScriptToken& place) {
    out_.Push(Name(place), in_.PlaceAt(place.at));
    if (place.kind == ScriptTokenKind::kProperty) {
      out_.Push(std::to_string(place.property), in_.PlaceAt(place.at));
    }
  }

  void If(const ScriptToken& first) {
    const Label done = out_.NewLabel();
    size_t at = first.at;
    for (;;) {
      const Label otherwise = out_.NewLabel();
      EmitUnless(*expressions_.InParentheses());
      out_.If(otherwise, in_.PlaceAt(at));
      Body(at);
      if (!in_.PeekValue().Is("else")) {
        out_.Bind(otherwise);
        break;
      }
      at = in_.Take().at;
      out_.Jump(done, in_.PlaceAt(at));
      out_.Bind(otherwise);
      if (!in_.PeekValue().Is("if")) {
        Body(at);
        break;
      }
      in_.Take();
    }
    out_.Bind(done);
  }

  // The player skips one action if the frame has not arrived: the jump to the
  // statements.
  void IfLoaded(const ScriptToken& first) {
    const SourcePlace place = in_.PlaceAt(first.at);
    const ExpressionPtr frame = expressions_.InParentheses();
    const Label loaded = out_.NewLabel();
    const Label otherwise = out_.NewLabel();
    if (const std::optional<uint16_t> number = FrameNumber(*frame)) {
      out_.builder().WaitForFrame(*number, 1);
    } else {
      Emit(*frame);
      out_.builder().WaitForFrameExpr(1);
    }
    out_.Jump(loaded, place);
    out_.Jump(otherwise, place);
    out_.Bind(loaded);
    Body(first.at);
    if (!in_.PeekValue().Is("else")) {
      out_.Bind(otherwise);
      return;
    }
    const size_t at = in_.Take().at;
    const Label done = out_.NewLabel();
    out_.Jump(done, in_.PlaceAt(at));
    out_.Bind(otherwise);
    Body(at);
    out_.Bind(done);
  }

  // The condition stands behind the statements, which saves two actions a turn.
  void While(const ScriptToken& first) {
    const SourcePlace place = in_.PlaceAt(first.at);
    const ExpressionPtr condition = expressions_.InParentheses();
    const Label again = out_.NewLabel();
    const Loop loop = {out_.NewLabel(), out_.NewLabel(), targets_.size()};
    const bool always = condition->isConstant && condition->isNumber && condition->text == "1";
    if (!always) out_.Jump(loop.next, place);
    out_.Bind(again);
    std::optional<Loop> outer = std::exchange(loop_, loop);
    Body(first.at);
    loop_ = outer;
    out_.Bind(loop.next);
    if (always) {
      out_.Jump(again, place);
    } else {
      Emit(*condition);
      out_.If(again, place);
    }
    out_.Bind(loop.done);
  }

  void LeaveLoop(const ScriptToken& word) {
    if (!loop_) in_.FailAt(word.at, std::string(word.text) + " stands in no loop");
    if (targets_.size() > loop_->targets) RestoreTarget(loop_->targets, word.at);
    out_.Jump(word.Is("break") ? loop_->done : loop_->next, in_.PlaceAt(word.at));
  }

  // A path is always taken from the timeline that the script stands on, so
  // leaving an inner block means setting the outer one's path again.
  void With(const ScriptToken& first) {
    if (!targets_.empty() && !targets_.back()) {
      in_.FailAt(first.at, "inside a with whose path is worked out there can be no other with");
    }
    const ExpressionPtr path =
        in_.PeekValue().Is("(") ? expressions_.InParentheses() : expressions_.Parse();
    if (path->isConstant) {
      targets_.push_back(path->text);
      out_.SetTarget(path->text, in_.PlaceAt(path->at));
    } else {
      targets_.push_back(std::nullopt);
      Emit(*path);
      out_.Op(kActionSetTargetExpr);
    }
    if (!in_.PeekValue().Is("{")) {
      in_.FailAt(in_.PeekValue().at, "behind the path of a with stand its statements in braces");
    }
    Body(first.at);
    targets_.pop_back();
    RestoreTarget(targets_.size(), first.at);
  }

  // Makes the first `count` paths of with be in force.
  void RestoreTarget(size_t count, size_t at) {
    out_.SetTarget(count == 0 ? std::string() : *targets_[count - 1], in_.PlaceAt(at));
  }

  void Function(const ScriptToken& name) {
    Nearest nearest(name.text);
    for (const StatementFunction& known : StatementFunctions()) {
      nearest.Offer(known.name);
      if (!name.Is(known.name)) continue;
      Arguments arguments = known.emit == &ScriptCompiler::SetPropertyOf
                                ? expressions_.PropertyArguments(true)
                                : expressions_.Arguments();
      if (arguments.size() < known.least || arguments.size() > known.most) {
        const std::string most =
            known.most > known.least ? " to " + std::to_string(known.most) : std::string();
        in_.FailAt(name.at, std::string(known.name) + " takes " + std::to_string(known.least) +
                                most + " values, not " + std::to_string(arguments.size()));
      }
      if (known.emit) {
        (this->*known.emit)(name, arguments);
      } else {
        for (const ExpressionPtr& argument : arguments) Emit(*argument);
        out_.Op(known.code);
      }
      return;
    }
    in_.FailAt(name.at, "no statement is called " + std::string(name.text) + nearest.Hint());
  }

  // A frame counted from 1 that is known by now, as the player counts it.
  std::optional<uint16_t> FrameNumber(const Expression& frame) const {
    int64_t number;
    if (!frame.IsInteger(&number)) return std::nullopt;
    if (number < 1 || number > kMaxFrame) {
      in_.FailAt(frame.at, "frames are counted from 1 to 65536");
    }
    return static_cast<uint16_t>(number - 1);
  }

  // Whether the player takes a text for a label and nothing else.
  static bool IsLabel(const Expression& frame) {
    return frame.isConstant && !frame.isNumber && !frame.text.empty() &&
           frame.text.find(':') == std::string::npos && !IsDigit(frame.text[0]) &&
           frame.text[0] != '-' && frame.text[0] != '+';
  }

  void GotoAndStop(const ScriptToken&, Arguments& arguments) {
    const Expression& frame = *arguments[0];
    if (const std::optional<uint16_t> number = FrameNumber(frame)) {
      out_.builder().GotoFrame(*number);
    } else if (IsLabel(frame) && frame.text.size() < 0xFFFF) {
      out_.builder().GotoLabel(frame.text);
    } else {
      Emit(frame);
      out_.builder().GotoExpr(0);
    }
  }

  void GotoAndPlay(const ScriptToken&, Arguments& arguments) {
    const Expression& frame = *arguments[0];
    if (const std::optional<uint16_t> number = FrameNumber(frame)) {
      out_.builder().GotoFrame(*number).Op(kActionPlay);
    } else {
      Emit(frame);
      out_.builder().GotoExpr(1);
    }
  }

  void SetPropertyOf(const ScriptToken&, Arguments& arguments) {
    const PropertyName& property = kPropertyNames[std::stoi(arguments[1]->text)];
    if (property.readOnly) {
      in_.FailAt(arguments[1]->at,
                 std::string("the property ") + property.name + " can only be read");
    }
    for (const ExpressionPtr& argument : arguments) Emit(*argument);
    out_.Op(kActionSetProperty);
  }

  // Sprites made by scripts stand above all that the timeline places.
  void CloneSprite(const ScriptToken&, Arguments& arguments) {
    ExpressionPtr& depth = arguments[2];
    int64_t number;
    if (depth->IsInteger(&number) && (number < 0 || number > kMaxDepth)) {
      in_.FailAt(depth->at, "depths of sprites made by scripts are 0 to 49151");
    }
    const size_t at = depth->at;
    depth = expressions_.Binary(at, kActionAdd, std::move(depth),
                                Constant(at, std::to_string(kScriptDepth), true));
    for (const ExpressionPtr& argument : arguments) Emit(*argument);
    out_.Op(kActionCloneSprite);
  }

  // The player takes the values from the last to the first: path, whether the
  // sprite's centre goes to the pointer, whether there are limits, the limits.
  void StartDrag(const ScriptToken& name, Arguments& arguments) {
    const bool limits = arguments.size() == 6;
    if (arguments.size() > 2 && !limits) {
      in_.FailAt(name.at, "the limits of a drag are four: left, top, right and bottom");
    }
    for (size_t i = 2; i < arguments.size(); ++i) Emit(*arguments[i]);
    out_.Push(limits ? "1" : "0", in_.PlaceAt(name.at));
    if (arguments.size() > 1) {
      Emit(*expressions_.Truth(std::move(arguments[1])));
    } else {
      out_.Push("0", in_.PlaceAt(name.at));
    }
    Emit(*arguments[0]);
    out_.Op(kActionStartDrag);
  }

  void GetURL(const ScriptToken& name, Arguments& arguments) {
    const size_t count = arguments.size();
    const bool isKnown = arguments[0]->isConstant && (count < 2 || arguments[1]->isConstant);
    const std::string window = count > 1 ? arguments[1]->text : std::string();
    if (count < 3 && isKnown && arguments[0]->text.size() + window.size() + 2 <= 0xFFFF) {
      out_.builder().GetURL(arguments[0]->text, window);
      return;
    }
    Request(name, arguments, 0);
  }

  void LoadMovie(const ScriptToken& name, Arguments& arguments) {
    Request(name, arguments, kUrlTarget);
  }

  void LoadVariables(const ScriptToken& name, Arguments& arguments) {
    Request(name, arguments, kUrlTarget | kUrlVariables);
  }

  void UnloadMovie(const ScriptToken& name, Arguments& arguments) {
    arguments.insert(arguments.begin(), Constant(name.at, ""));
    Request(name, arguments, kUrlTarget);
  }

  // An address, a window or path, and how variables are sent along.
  void Request(const ScriptToken& name, const Arguments& arguments, uint8_t flags) {
    if (arguments.size() == 3) {
      const Expression& method = *arguments[2];
      if (method.isConstant && method.text == "get") {
        flags |= kUrlGet;
      } else if (method.isConstant && method.text == "post") {
        flags |= kUrlPost;
      } else {
        in_.FailAt(method.at, "variables are sent by \"get\" or \"post\"");
      }
    }
    Emit(*arguments[0]);
    if (arguments.size() > 1) {
      Emit(*arguments[1]);
    } else {
      out_.Push("", in_.PlaceAt(name.at));
    }
    out_.builder().GetURLExpr(flags);
  }

  void Emit(const Expression& value) { EmitExpression(value, in_, out_); }

  // Leaves a truth on the stack that is the opposite of the condition's.
  void EmitUnless(const Expression& condition) {
    if (condition.code == kActionNot) {
      Emit(*condition.arguments[0]);
      return;
    }
    Emit(condition);
    out_.Op(kActionNot);
  }

  ScriptLexer in_;
  ExpressionParser expressions_;
  CodeEmitter out_;
  int nesting_ = 0;
  std::optional<Loop> loop_;
  // The blocks of with that are open: their paths, nothing for one that is
  // worked out when the script runs.
  std::vector<std::optional<std::string>> targets_;
};

std::span<const ScriptCompiler::StatementFunction> ScriptCompiler::StatementFunctions() {
  static constexpr StatementFunction kFunctions[] = {
      {"play", 0, 0, nullptr, kActionPlay},
      {"stop", 0, 0, nullptr, kActionStop},
      {"nextFrame", 0, 0, nullptr, kActionNextFrame},
      {"prevFrame", 0, 0, nullptr, kActionPrevFrame},
      {"gotoAndPlay", 1, 1, &ScriptCompiler::GotoAndPlay, kActionEnd},
      {"gotoAndStop", 1, 1, &ScriptCompiler::GotoAndStop, kActionEnd},
      {"call", 1, 1, nullptr, kActionCall},
      {"set", 2, 2, nullptr, kActionSetVariable},
      {"setProperty", 3, 3, &ScriptCompiler::SetPropertyOf, kActionEnd},
      {"cloneSprite", 3, 3, &ScriptCompiler::CloneSprite, kActionEnd},
      {"removeSprite", 1, 1, nullptr, kActionRemoveSprite},
      {"startDrag", 1, 6, &ScriptCompiler::StartDrag, kActionEnd},
      {"stopDrag", 0, 0, nullptr, kActionStopDrag},
      {"getURL", 1, 3, &ScriptCompiler::GetURL, kActionEnd},
      {"loadMovie", 2, 3, &ScriptCompiler::LoadMovie, kActionEnd},
      {"unloadMovie", 1, 1, &ScriptCompiler::UnloadMovie, kActionEnd},
      {"loadVariables", 2, 3, &ScriptCompiler::LoadVariables, kActionEnd},
      {"toggleQuality", 0, 0, nullptr, kActionToggleQuality},
  };
  return kFunctions;
}

}  // namespace

Bytes CompileScript(const SourceSlice& slice) {
  return ScriptCompiler(slice).Run();
}

}  // namespace vexel::author
