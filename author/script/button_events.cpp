#include "author/script/button_events.h"

#include <iterator>

#include "author/script/cursor.h"
#include "author/script/nearest.h"

namespace vexel::author {

namespace {

// Events take the bits below the key's.
static_assert(std::size(kButtonEventNames) == kKeyShift);

std::string KeyText(int code) {
  for (const KeyName& key : kKeyNames) {
    if (key.code == code) return key.name;
  }
  if (code > ' ' && code < 0x7F) return QuoteText(std::string(1, static_cast<char>(code)));
  return std::to_string(code);
}

int ParseKeyCode(SourceCursor& in) {
  const size_t begin = in.offset();
  int code = 0;
  for (; IsDigit(in.Peek()); in.Step()) {
    if (code <= kLastKeyCode) code = code * 10 + in.Peek() - '0';
  }
  if (code < 1 || code > kLastKeyCode) in.FailAt(begin, "the code of a key is 1 to 127");
  return code;
}

int ParseKey(SourceCursor& in) {
  in.SkipBlanks(true);
  const size_t begin = in.offset();
  if (IsDigit(in.Peek())) return ParseKeyCode(in);
  if (in.Peek() == '"') {
    const std::string text = in.Quoted();
    const int code = text.size() == 1 ? static_cast<uint8_t>(text[0]) : 0;
    if (code < 1 || code > kLastKeyCode) in.FailAt(begin, "a key is one character of ASCII");
    return code;
  }
  const std::string_view name = in.Name();
  Nearest nearest(name);
  for (const KeyName& key : kKeyNames) {
    if (name == key.name) return key.code;
    nearest.Offer(key.name);
  }
  in.FailAt(begin, "here stands a key: a name such as left, a character such as \"a\", or a code" +
                       nearest.Hint());
}

int ParseEvent(SourceCursor& in, size_t begin, std::string_view name) {
  Nearest nearest(name);
  for (const ButtonEventName& event : kButtonEventNames) {
    if (name == event.name) return 1 << event.event;
    nearest.Offer(event.name);
  }
  in.FailAt(begin,
            "here stands an event of a button, such as press, or key with a key" + nearest.Hint());
}

}  // namespace

std::string ConditionText(uint16_t conditions) {
  if (conditions == 0) return "never";
  std::string text;
  for (const ButtonEventName& event : kButtonEventNames) {
    if (!(conditions >> event.event & 1)) continue;
    if (!text.empty()) text += ", ";
    text += event.name;
  }
  const int key = conditions >> kKeyShift;
  if (key == 0) return text;
  if (!text.empty()) text += ", ";
  return text + "key " + KeyText(key);
}

uint16_t ParseConditions(const SourceSlice& slice) {
  SourceCursor in(slice);
  int conditions = 0;
  for (;;) {
    in.SkipBlanks(true);
    const size_t begin = in.offset();
    const std::string_view name = in.Name();
    if (name == "key") {
      if (conditions >> kKeyShift != 0) in.FailAt(begin, "actions answer to one key at most");
      conditions |= ParseKey(in) << kKeyShift;
    } else if (name != "never") {
      conditions |= ParseEvent(in, begin, name);
    }
    in.SkipBlanks(true);
    if (in.AtEnd()) return static_cast<uint16_t>(conditions);
    if (in.Peek() != ',') in.Fail("a comma divides events");
    in.Step();
  }
}

}  // namespace vexel::author
