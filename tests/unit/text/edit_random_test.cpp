// Random editing against a plain string, drawn now and then or never.
#include <random>

#include "edit_fixture.h"

namespace vexel::test {
namespace {

// The text and the selection, edited the plain way.
struct PlainText {
  std::string text;
  int anchor = 0;
  int cursor = 0;
  int maxLength = 0;

  int Size() const { return static_cast<int>(text.size()); }
  bool Breaks(int i) const {
    return text[static_cast<size_t>(i)] == ' ' || text[static_cast<size_t>(i)] == '-';
  }
  void Move(int to, bool extend) {
    cursor = to;
    if (!extend) anchor = to;
  }
  void Erase(int from, int to) {
    text.erase(static_cast<size_t>(from), static_cast<size_t>(to - from));
    Move(from, false);
  }
  bool EraseSelection() {
    if (anchor == cursor) return false;
    Erase(std::min(anchor, cursor), std::max(anchor, cursor));
    return true;
  }
  void Insert(std::string what) {
    std::erase_if(what, [](char c) { return c == '7'; });
    EraseSelection();
    const auto at = static_cast<size_t>(cursor);
    if (EditText::m_insertMode) {
      if (maxLength > 0)
        what.resize(std::min(what.size(), static_cast<size_t>(std::max(maxLength - Size(), 0))));
      text.insert(at, what);
    } else if (at + what.size() <= text.size()) {
      text.replace(at, what.size(), what);
    } else {
      if (maxLength > 0)
        what.resize(std::min(what.size(), static_cast<size_t>(std::max(maxLength - cursor, 0))));
      if (!what.empty()) text.replace(at, std::string::npos, what);
    }
    Move(cursor + static_cast<int>(what.size()), false);
  }
  void Step(int direction, bool word, bool extend) {
    int at = cursor;
    const auto more = [&] { return direction > 0 ? at < Size() : at > 0; };
    const auto breaks = [&] { return Breaks(direction > 0 ? at : at - 1); };
    if (word) {
      while (more() && breaks()) at += direction;
      while (more() && !breaks()) at += direction;
    } else if (more()) {
      at += direction;
    }
    Move(at, extend);
  }
};

class RandomEditing : public EditFixture {
 protected:
  void Run(uint32_t seed, int drawEvery) {
    std::mt19937 random(seed);
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<uint32_t>(n)); };
    PlainText plain;
    plain.maxLength = pick(3) == 0 ? 12 : 0;
    author::EditTextField field = Field(
        static_cast<uint16_t>(author::kEditMultiline | (pick(2) ? author::kEditWordWrap : 0)));
    if (plain.maxLength > 0) field.maxLength = static_cast<uint16_t>(plain.maxLength);
    Place(field);
    ASSERT_TRUE(Draw());
    for (int step = 0; step < 400; ++step) {
      const bool extend = pick(3) == 0;
      const bool word = pick(3) == 0;
      const int32_t modifiers = (extend ? kModifierShift : 0) | (word ? kModifierControl : 0);
      switch (pick(11)) {
        case 0:
          Key(kKeyLeft, modifiers);
          plain.Step(-1, word, extend);
          break;
        case 1:
          Key(kKeyRight, modifiers);
          plain.Step(1, word, extend);
          break;
        case 2:
          Key(kKeyBackspace);
          if (!plain.EraseSelection() && plain.cursor > 0)
            plain.Erase(plain.cursor - 1, plain.cursor);
          break;
        case 3:
          Key(kKeyDelete);
          if (!plain.EraseSelection() && plain.cursor < plain.Size()) {
            plain.Erase(plain.cursor, plain.cursor + 1);
          }
          break;
        case 4:
          if (pick(4) == 0) Key(kKeyInsert);
          break;
        case 5:
          Key(kKeyClear);
          plain.EraseSelection();
          break;
        case 6: {
          const int to = pick(plain.Size() + 1);
          text->selectionCursor = to;
          if (!extend) text->selectionAnchor = to;
          plain.Move(to, extend);
          break;
        }
        default: {
          std::string what;
          for (int n = pick(4) + 1; n > 0; --n) what += "abc -7\rdef"[pick(10)];
          text->Insert(what.c_str(), static_cast<int32_t>(what.size()));
          plain.Insert(what);
          break;
        }
      }
      ASSERT_EQ(Text(), plain.text) << "seed " << seed << " step " << step;
      ASSERT_EQ(text->selectionCursor, plain.cursor) << "seed " << seed << " step " << step;
      ASSERT_EQ(text->selectionAnchor, plain.anchor) << "seed " << seed << " step " << step;
      ASSERT_EQ(text->length, plain.Size());
      if (step % drawEvery == 0) {
        ASSERT_TRUE(Draw()) << "seed " << seed << " step " << step;
      }
    }
  }
};

TEST_F(RandomEditing, DrawnAfterEachKeyIsWhatAPlainTextDoes) {
  for (uint32_t seed = 1; seed <= 20; ++seed) {
    Reset();
    Run(seed, 1);
  }
}

TEST_F(RandomEditing, HardlyEverDrawnToo) {
  for (uint32_t seed = 101; seed <= 160; ++seed) {
    Reset();
    Run(seed, 150);
  }
}

// Positions are not compared here: whatever is pressed, they stay inside.
TEST_F(RandomEditing, AllKeysAndThePointerStayInsideTheText) {
  std::mt19937 random(7);
  const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<uint32_t>(n)); };
  Make("abc def\rabcdefghijabcdefghijabc\rabc", author::kEditMultiline | author::kEditWordWrap);
  for (int step = 0; step < 20000; ++step) {
    if (pick(3) == 0) {
      TestClock::tick += static_cast<uint32_t>(pick(700));
      Mouse(pick(2500) - 200, pick(7000) - 1000, pick(2) == 0);
    } else {
      Key(pick(30) == 0  ? pick(300) - 20
          : pick(3) == 0 ? "abcdefghi "[pick(10)]
                         : pick(17) + 1,
          pick(4));
    }
    if (pick(200) == 0) text->SetBuffer("ab cd\ref");
    if (pick(50) == 0) text->flags ^= author::kEditWordWrap;
    if (pick(10) == 0) {
      ASSERT_TRUE(Draw());
    }
    ASSERT_EQ(text->length, EditText::WideStrLen(text->buffer));
    for (const int32_t end : {text->selectionCursor, text->selectionAnchor}) {
      ASSERT_GE(end, 0) << step;
      ASSERT_LE(end, text->length) << step;
    }
    ASSERT_GE(text->hscroll, 0);
    ASSERT_GE(text->vscroll, 0);
  }
}

}  // namespace
}  // namespace vexel::test
