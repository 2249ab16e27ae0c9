// Buttons: what they show in which state, and what they do.
#include <algorithm>

#include "author/language/maker.h"
#include "author/script/button_events.h"

namespace vexel::author {

namespace {

const std::initializer_list<std::string_view> kRecordParts = {
    "scale", "scalebits", "rotate", "rotatebits", "movebits", "colorflags", "colorbits"};

uint32_t StatesOf(const Clauses& clauses) {
  if (clauses.Has(Field::kState)) return static_cast<uint32_t>(clauses.Stored(Field::kState));
  uint32_t states = 0;
  for (const auto& word : clauses.Get(Field::kIn).parts) {
    states |= word.first == "up"     ? kButtonUp
              : word.first == "over" ? kButtonOver
              : word.first == "down" ? kButtonDown
                                     : kButtonHit;
  }
  return states;
}

}  // namespace

void Maker::Button() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  ButtonState state;
  state.form = clauses.StoredOr(Field::kForm, 2) == 1 ? 1 : 2;
  ButtonState* const outer = button_;
  button_ = &state;
  RunBlock(kInButton);
  button_ = outer;

  BitWriter body;
  body.U16(id);
  if (state.form == 1) {
    body.Append(state.records.bytes());
    body.U8(0);
    body.Append(state.block);
    Emit(kTagDefineButton, body, clauses);
    return;
  }
  body.U8(static_cast<uint32_t>(clauses.StoredOr(Field::kMenu, 0)));
  // Each offset counts from its own position; 0 says that nothing follows.
  size_t offsetAt = body.size();
  body.U16(0);
  body.Append(state.records.bytes());
  body.U8(0);
  for (const Bytes& action : state.actions) {
    body.Patch16(offsetAt, static_cast<uint32_t>(body.size() - offsetAt));
    offsetAt = body.size();
    body.U16(0);
    body.Append(action);
  }
  Emit(kTagDefineButton2, body, clauses);
}

void Maker::Show() {
  const uint16_t character = CharacterRef("a character");
  const Clauses clauses = ReadClauses();
  clauses.CheckParts(kRecordParts);
  if (!clauses.Has(Field::kIn) && !clauses.Has(Field::kState))
    in_.Fail("show takes `in` and the states: up, over, down, hit");
  ButtonState& button = *button_;
  const uint32_t states = StatesOf(clauses);
  if (states == 0) in_.Fail("the byte of the states is 1 to 255");
  const int64_t depth = clauses.StoredOr(Field::kDepth, button.highest + 1);
  if (depth > 65535) in_.Fail("depth is 0 to 65535, and all above are taken");
  button.highest = std::max(button.highest, static_cast<uint32_t>(depth));
  BitWriter record;
  record.U8(states);
  record.U16(character);
  record.U16(static_cast<uint32_t>(depth));
  WriteMatrix(record, clauses.ToMatrix(), clauses.ToMatrixForm());
  if (button.form == 2) {
    WriteCxform(record, clauses.ToCxform(), true, clauses.ToCxformForm());
  } else if (clauses.HasCxform()) {
    in_.Fail("a button of form 1 takes its colours from `buttoncolors`");
  }
  CountOutput(record.size());
  button.records.Append(record.bytes());
}

void Maker::On() {
  if (button_->form == 1) in_.Fail("a button of form 1 takes actions alone, done on release");
  // The events stand before the word of the block, and are read elsewhere.
  const SourceSlice first = in_.SliceOf(in_.Peek());
  SourceSlice events{first.source, first.begin, first.begin};
  while (in_.Peek(1).kind != TokenKind::kCode) {
    if (in_.Peek().kind == TokenKind::kEnd || in_.AtSign("{") || in_.AtSign("}"))
      in_.Fail("'on' takes events, then actions { ... } or script { ... }");
    events.end = in_.SliceOf(in_.Take()).end;
  }
  const bool script = in_.AtWord("script");
  in_.Take();
  BitWriter action;
  action.U16(ParseConditions(events));
  action.Append(CodeBlock(script));
  CountOutput(action.size());
  button_->actions.push_back(action.Take());
}

void Maker::ButtonBlock(const Bytes& block) {
  if (button_->form != 1) in_.Fail("say when: on release actions { ... }");
  if (button_->hasBlock) in_.Fail("a button of form 1 has one block of actions");
  button_->hasBlock = true;
  button_->block = block;
}

void Maker::ButtonColors() {
  BitWriter body;
  body.U16(CharacterRef("a button"));
  const Clauses clauses = ReadClauses();
  BitWriter* const outer = colors_;
  colors_ = &body;
  RunBlock(kInColors);
  colors_ = outer;
  Emit(kTagDefineButtonExtra, body, clauses);
}

void Maker::ColorEntry() {
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"colorflags", "colorbits"});
  CountOutput(8);
  WriteCxform(*colors_, clauses.ToCxform(), false, clauses.ToCxformForm());
}

}  // namespace vexel::author
