// Statements, expressions, and what no author writes.
#include "random_block.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "author/action_builder.h"

namespace vexel::model::script {

namespace {

using author::ActionBuilder;

const char* const kVariables[] = {"a",           "b",        "c",   "n",   "Foo",      "foo",
                                  "x y",         "",         "a.b", "z&=", "a.scroll", "$version",
                                  "m.maxscroll", "long_name"};
const char* const kPaths[] = {
    "",        "/",         "a",         "b",         "/a",         "/a/b",
    "..",      "../b",      "instance1", "instance2", "/instance3", "_level0/a",
    "_level3", "_LEVEL3/a", "_vexel0",   "/a/",       "//",         "../..",
    "nobody",  "A/kid",     "kid",       "../../..",  "_level1",    "_level",
    "/clone",  "clone",     "_level0/",  "ball/../a", "/b b",       "_level99999999999"};
const char* const kTexts[] = {"0",
                              "1",
                              "2",
                              "3",
                              "-1",
                              "0.5",
                              "1e3",
                              "1e15",
                              "7",
                              "0.1",
                              "1e308",
                              "1e-310",
                              "-0",
                              "2147483648",
                              "abc",
                              "1x",
                              "",
                              "+5",
                              ".",
                              "5.",
                              " 1",
                              "12.75",
                              "999999999999999999",
                              "-7.25",
                              "1e-7",
                              "0e999999999",
                              "1e99999",
                              "ABC",
                              "abd",
                              "100",
                              "-2147483649",
                              "4294967297",
                              "3e-5",
                              "hello world",
                              "1e-2147483648",
                              "#ERROR#",
                              "\x80\xff",
                              "16384",
                              "65537",
                              "33.333",
                              "1E2"};
const char* const kFrames[] = {"1",          "2",      "3",    "4",         "one",   "two",
                               "THREE",      "loop",   "/:2",  "/a:1",      "a:one", "0",
                               "-1",         "+3",     "none", "_level3:1", "99",    "2147483648",
                               "4294967298", "b:loop", "",     "..:2",      ":1",    "-2147483648"};
const char* const kUrls[] = {"http://www.host",
                             "http://www.host/",
                             "page.html",
                             "mailto:me@here",
                             " \x01MailTo:x",
                             "http://host/a?b=c",
                             "",
                             "FSCommand:x",
                             "://"};
const char* const kWindows[] = {"_self", "_level0", "_level3", "_level3/a", "/",
                                "a",     "/a",      "/nobody", "..",        "_level2/",
                                "",      "_blank",  "_vexel3"};

template <size_t N>
const char* Any(Lots& lots, const char* const (&list)[N]) {
  return list[lots.Below(static_cast<int>(N))];
}

class Author {
 public:
  Author(Lots& lots, const BlockStyle& style) : m_lots(lots), m_style(style) {}

  Bytes Write() {
    const int statements = 1 + m_lots.Below(m_style.length);
    for (int i = 0; i < statements; ++i) Statement(0);
    Bytes bytes = m_out.Finish();
    if (m_style.odd && m_lots.OneIn(4)) Damage(bytes);
    return bytes;
  }

 private:
  void Op(ActionCode code) { m_out.Op(code); }

  std::string Name() {
    std::string name = Any(m_lots, kVariables);
    if (m_lots.OneIn(5)) name = std::string(Any(m_lots, kPaths)) + ":" + name;
    if (m_lots.OneIn(60))
      name = std::string(static_cast<size_t>(126 + m_lots.Below(4)), 'L') + "/:a";
    return name;
  }

  std::string NumberText() {
    char text[48];
    switch (m_lots.Below(5)) {
      case 0:
        return Any(m_lots, kTexts);
      case 1:
        return std::to_string(m_lots.Between(-10, 40));
      case 2:
        std::snprintf(text, sizeof text, "%d.%02d", m_lots.Between(-300, 300), m_lots.Below(100));
        return text;
      case 3:
        std::snprintf(
            text, sizeof text, "%.*g", 1 + m_lots.Below(18),
            std::ldexp(static_cast<double>(m_lots.Next() >> 11), m_lots.Between(-90, 20)));
        return text;
      default:
        return std::to_string(m_lots.Below(6));
    }
  }

  void PushNumber() {
    if (m_lots.OneIn(8)) {
      u32 word = static_cast<u32>(m_lots.Next());
      if (m_lots.OneIn(2)) word = 0x3F000000u + (word & 0x03FFFFFF);
      float value;
      std::memcpy(&value, &word, sizeof value);
      m_out.PushFloat(value);
    } else {
      m_out.Push(NumberText());
    }
  }

  // Leaves one value.
  void Expression(int depth) {
    static const ActionCode kTwo[] = {kActionAdd,        kActionSubtract, kActionMultiply,
                                      kActionDivide,     kActionEquals,   kActionLess,
                                      kActionAnd,        kActionOr,       kActionStringEquals,
                                      kActionStringLess, kActionConcat};
    static const ActionCode kOne[] = {
        kActionNot,        kActionStringLength,   kActionToInteger,
        kActionCharCode,   kActionCharFromCode,   kActionStringLengthMB,
        kActionCharCodeMB, kActionCharFromCodeMB, kActionRandom};
    const int kind = depth > 3 ? 0 : m_lots.Below(12);
    switch (kind) {
      case 0:
      case 1:
        PushNumber();
        break;
      case 2:
        m_out.Push(m_lots.OneIn(3) ? Any(m_lots, kPaths) : Any(m_lots, kTexts));
        break;
      case 3:
      case 4:
        m_out.Push(Name());
        Op(kActionGetVariable);
        break;
      case 5:
      case 6:
      case 7:
        Expression(depth + 1);
        Expression(depth + 1);
        Op(kTwo[m_lots.Below(11)]);
        break;
      case 8:
      case 9:
        Expression(depth + 1);
        Op(kOne[m_lots.Below(9)]);
        break;
      case 10:
        if (m_lots.OneIn(4)) {
          Op(kActionGetTime);
          break;
        }
        Expression(depth + 1);
        PushNumber();
        PushNumber();
        Op(m_lots.OneIn(2) ? kActionSubstring : kActionSubstringMB);
        break;
      default:
        m_out.Push(Any(m_lots, kPaths));
        m_out.Push(std::to_string(m_lots.Between(-1, 20)));
        Op(kActionGetProperty);
        break;
    }
  }

  void SetProperty() {
    static const int kWritten[] = {0,  1, 2, 3, 6, 7, 10, 13, 16, 17,
                                   18, 0, 1, 4, 5, 8, 11, 14, 19, -1};
    m_out.Push(Any(m_lots, kPaths));
    const int index = kWritten[m_lots.Below(20)];
    m_out.Push(std::to_string(index));
    if (index == 13) {
      m_out.Push(m_lots.OneIn(3) ? "" : Any(m_lots, kVariables));
    } else if (m_lots.OneIn(3)) {
      Expression(2);
    } else {
      m_out.Push(std::to_string(m_lots.Between(-400, 400)));
    }
    Op(kActionSetProperty);
  }

  void Sprite() {
    if (m_lots.OneIn(3)) {
      m_out.Push(m_lots.OneIn(2) ? "clone" : Any(m_lots, kPaths));
      Op(kActionRemoveSprite);
      return;
    }
    m_out.Push(Any(m_lots, kPaths));
    m_out.Push(m_lots.OneIn(2) ? "clone" : Any(m_lots, kVariables));
    if (m_lots.OneIn(4)) {
      PushNumber();
    } else {
      m_out.Push(std::to_string(m_lots.OneIn(2) ? m_lots.Between(16380, 16390) : m_lots.Below(6)));
    }
    Op(kActionCloneSprite);
  }

  void Drag() {
    if (m_lots.OneIn(4)) {
      Op(kActionStopDrag);
      return;
    }
    const bool constrain = m_lots.OneIn(2);
    if (constrain) {
      for (int i = 0; i < 4; ++i) PushNumber();
    }
    m_out.Push(constrain ? "1" : NumberText());
    m_out.Push(m_lots.OneIn(2) ? "1" : NumberText());
    m_out.Push(Any(m_lots, kPaths));
    Op(kActionStartDrag);
  }

  void Url() {
    if (m_lots.OneIn(2)) {
      m_out.GetURL(Any(m_lots, kUrls), Any(m_lots, kWindows));
      return;
    }
    m_out.Push(Any(m_lots, kUrls));
    m_out.Push(Any(m_lots, kWindows));
    static const uint8_t kFlags[] = {0, 1, 2, 0x40, 0x41, 0x42, 0x80, 0x81, 0xC0, 0xC1, 3, 0x82};
    m_out.GetURLExpr(m_lots.OneIn(8) ? static_cast<uint8_t>(m_lots.Next())
                                     : kFlags[m_lots.Below(12)]);
  }

  void Timeline() {
    switch (m_lots.Below(9)) {
      case 0:
        Op(kActionNextFrame);
        break;
      case 1:
        Op(kActionPrevFrame);
        break;
      case 2:
        Op(kActionPlay);
        break;
      case 3:
        Op(kActionStop);
        break;
      case 4:
        m_out.GotoFrame(
            static_cast<uint16_t>(m_lots.OneIn(12) ? m_lots.Next() : m_lots.Next() % 5));
        break;
      case 5:
        m_out.GotoLabel(Any(m_lots, kFrames));
        break;
      case 6:
        m_out.Push(Any(m_lots, kFrames));
        m_out.GotoExpr(static_cast<uint8_t>(m_lots.Below(3)));
        break;
      case 7:
        m_out.Push(Any(m_lots, kFrames));
        m_out.WaitForFrameExpr(static_cast<uint8_t>(m_lots.Below(5)));
        break;
      default:
        m_out.WaitForFrame(static_cast<uint16_t>(m_lots.OneIn(2) ? 16001 : m_lots.Below(5)),
                           static_cast<uint8_t>(m_lots.Below(5)));
        break;
    }
  }

  void Loop(int depth) {
    // A counter at the top of the layer, so that the body may change the target.
    const std::string counter = "/:k" + std::to_string(m_loops++);
    m_out.Push(counter);
    m_out.Push("0");
    Op(kActionSetVariable);
    const ActionBuilder::Label top = m_out.NewLabel();
    m_out.Bind(top);
    for (int n = 1 + m_lots.Below(3); n > 0; --n) Statement(depth + 1);
    m_out.Push(counter);
    m_out.Push(counter);
    Op(kActionGetVariable);
    m_out.Push("1");
    Op(kActionAdd);
    Op(kActionSetVariable);
    m_out.Push(counter);
    Op(kActionGetVariable);
    m_out.Push(std::to_string(1 + m_lots.Below(m_lots.OneIn(10) ? 40 : 5)));
    Op(kActionLess);
    m_out.If(top);
  }

  void Choice(int depth) {
    const ActionBuilder::Label other = m_out.NewLabel(), end = m_out.NewLabel();
    Expression(1);
    m_out.If(other);
    Statement(depth + 1);
    m_out.Jump(end);
    m_out.Bind(other);
    Statement(depth + 1);
    m_out.Bind(end);
  }

  void Statement(int depth) {
    if (m_style.odd && m_lots.OneIn(6)) {
      Odd();
      return;
    }
    if (m_style.loops && depth < 2 && m_lots.OneIn(3)) {
      Loop(depth);
      return;
    }
    if (m_style.endless && m_lots.OneIn(8)) {
      const ActionBuilder::Label top = m_out.NewLabel();
      m_out.Bind(top);
      if (m_lots.OneIn(2)) Statement(depth + 1);
      m_out.Jump(top);
      return;
    }
    switch (depth > 2 ? m_lots.Below(12) : m_lots.Below(15)) {
      case 0:
      case 1:
      case 2:
        m_out.Push(Name());
        Expression(0);
        Op(kActionSetVariable);
        break;
      case 3:
        if (m_lots.OneIn(2)) {
          m_out.SetTarget(Any(m_lots, kPaths));
        } else {
          Expression(3);
          Op(kActionSetTargetExpr);
        }
        break;
      case 4:
        m_out.SetTarget("");
        break;
      case 5:
      case 6:
        Timeline();
        break;
      case 7:
        m_out.Push(Any(m_lots, kFrames));
        Op(kActionCall);
        break;
      case 8:
        SetProperty();
        break;
      case 9:
        Sprite();
        break;
      case 10:
        Url();
        break;
      case 11:
        if (m_lots.OneIn(3)) {
          Op(kActionToggleQuality);
        } else {
          Drag();
        }
        break;
      case 12:
        Expression(0);
        if (m_lots.OneIn(2)) Op(m_lots.OneIn(2) ? kActionPop : kActionDiscard);
        break;
      case 13:
        Loop(depth);
        break;
      default:
        Choice(depth);
        break;
    }
  }

  // Things that no author writes: any action on whatever lies on the stack,
  // codes that don't exist, operands too short or too long, wild jumps.
  void Odd() {
    const size_t actions = sizeof kActionInfos / sizeof kActionInfos[0];
    uint8_t bytes[8];
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(m_lots.OneIn(2) ? 0 : m_lots.Next());
    const std::span<const uint8_t> some(bytes, static_cast<size_t>(m_lots.Below(8)));
    switch (m_lots.Below(6)) {
      case 0:
      case 1: {
        const ActionInfo& info = kActionInfos[m_lots.Below(static_cast<int>(actions))];
        if (info.operands == ActionOperands::kNone) {
          m_out.Op(static_cast<ActionCode>(info.code));
        } else {
          m_out.Raw(info.code, some);
        }
        break;
      }
      case 2: {
        const auto code = static_cast<uint8_t>(1 + m_lots.Below(255));
        if (code < kFirstActionWithLength) {
          m_out.Raw(code, {});
        } else {
          m_out.Raw(code, some);
        }
        break;
      }
      case 3:
        m_out.JumpBy(static_cast<int16_t>(m_lots.OneIn(3) ? m_lots.Between(-32768, 32767)
                                                          : m_lots.Between(0, 12)));
        break;
      case 4:
        m_out.IfBy(static_cast<int16_t>(m_lots.Between(-20, 20)));
        break;
      default:
        Op(m_lots.OneIn(4) ? kActionStopDrag : kActionAdd);
        break;
    }
  }

  void Damage(Bytes& bytes) {
    switch (m_lots.Below(3)) {
      case 0:  // cut, so that the last operands and the end byte are missing
        bytes.resize(1 + static_cast<size_t>(m_lots.Below(static_cast<int>(bytes.size()))));
        break;
      case 1:
        bytes[static_cast<size_t>(m_lots.Below(static_cast<int>(bytes.size())))] =
            static_cast<uint8_t>(m_lots.Next());
        break;
      default:  // something behind the end byte, for jumps to reach
        for (int n = m_lots.Below(12); n > 0; --n) {
          bytes.push_back(static_cast<uint8_t>(m_lots.OneIn(2) ? u64{kActionAdd} : m_lots.Next()));
        }
        break;
    }
  }

  Lots& m_lots;
  const BlockStyle& m_style;
  ActionBuilder m_out;
  int m_loops = 0;
};

}  // namespace

Bytes RandomBlock(Lots& lots, const BlockStyle& style) {
  return Author(lots, style).Write();
}

}  // namespace vexel::model::script
