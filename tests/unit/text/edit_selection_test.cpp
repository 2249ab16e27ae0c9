#include "edit_fixture.h"

namespace vexel::test {
namespace {

using author::kEditNoSelect;
using author::kEditPassword;
using author::kEditReadOnly;

class Selecting : public EditFixture {
 protected:
  std::string Forward(bool word, bool extend) {
    text->atLineEnd = true;
    text->Forward(word, extend);
    EXPECT_FALSE(text->atLineEnd);
    return State();
  }
  std::string Backward(bool word, bool extend) {
    text->atLineEnd = true;
    text->Backward(word, extend);
    EXPECT_FALSE(text->atLineEnd);
    return State();
  }
  int32_t Commands() const {
    int32_t commands = -1;
    text->GetEnabledCommands(commands);
    return commands;
  }
};

TEST_F(Selecting, ForwardByWordsEndsOnTheBreakBehindTheWord) {
  Make("ab  cd-ef");
  EXPECT_EQ(Forward(true, false), "ab|  cd-ef");
  EXPECT_EQ(Forward(true, false), "ab  cd|-ef");
  EXPECT_EQ(Forward(true, true), "ab  cd<-ef|");
  EXPECT_EQ(Forward(true, false), "ab  cd-ef|");
}

TEST_F(Selecting, BackwardByWordsEndsBehindTheBreakInFront) {
  Make("ab  cd-ef");
  At(9);
  EXPECT_EQ(Backward(true, false), "ab  cd-|ef");
  EXPECT_EQ(Backward(true, false), "ab  |cd-ef");
  EXPECT_EQ(Backward(true, true), "|ab  <cd-ef");
  EXPECT_EQ(Backward(true, false), "|ab  cd-ef");
}

TEST_F(Selecting, LineEndsAreNoEndOfAWord) {
  Make("ab\rcd ef");
  EXPECT_EQ(Forward(true, false), "ab\rcd| ef");
}

TEST_F(Selecting, SingleStepsTakeTheAnchorAlongUnlessTheyExtend) {
  Make("abc");
  EXPECT_EQ(Forward(false, true), "<a|bc");
  EXPECT_EQ(Forward(false, false), "ab|c");
  EXPECT_EQ(Backward(false, true), "a|b<c");
  EXPECT_EQ(Backward(false, false), "|abc");
}

TEST_F(Selecting, DeletingAndBackspaceAtTheEndsChangeNothing) {
  Make("ab");
  text->Backspace();
  EXPECT_EQ(State(), "|ab");
  At(2);
  text->Delete();
  EXPECT_EQ(State(), "ab|");
}

TEST_F(Selecting, TakingCharactersOutKeepsTheMemory) {
  Make("abcdef");
  const uint16_t* before = text->buffer;
  Select(1, 5);
  text->Delete();
  At(2);
  text->Backspace();
  EXPECT_EQ(Text(), "a");
  EXPECT_EQ(text->buffer, before);
  EXPECT_EQ(text->length, 1);
}

TEST_F(Selecting, DeletingASelectionPutsBothEndsAtItsStart) {
  Make("abcdef");
  text->atLineEnd = true;
  text->DeleteSelection();
  EXPECT_EQ(State(), "|abcdef");
  EXPECT_TRUE(text->atLineEnd) << "without a selection nothing happens";
  Select(5, 2);
  text->DeleteSelection();
  EXPECT_EQ(State(), "ab|f");
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Selecting, ClearingTheSelectionLeavesTheCursorAtTheStart) {
  Make("abc");
  Select(1, 3);
  text->ClearSelection();
  EXPECT_EQ(State(), "|abc");
}

TEST_F(Selecting, TheClipboardGetsLineFeedsAndBytes) {
  Make("a");
  const uint16_t wide[] = {'x', '\r', 0x8140, '\n', 'y', 0};
  delete[] text->buffer;
  text->buffer = new uint16_t[6];
  EditText::WideStrCopy(text->buffer, wide);
  text->length = 5;
  Select(5, 0);
  text->CopyToClipboard();
  EXPECT_EQ(Calls(), "set 'x\n\x81@\ny' ");
  Select(1, 2);
  text->CopyToClipboard();
  EXPECT_EQ(Calls(), "set '\n' ");
  EXPECT_EQ(text->buffer[1], '\r');
  text->SetBuffer("a");
}

TEST_F(Selecting, APlatformPastesByInserting) {
  Make("ad");
  At(1);
  ClipboardPlatform platform;
  platform.startPaste = [](SPlayer* asked) { asked->focus->editText->Insert("bc", 2); };
  SetClipboardPlatform(platform);
  Focus();
  text->atLineEnd = true;
  text->PasteFromClipboard();
  EXPECT_EQ(State(), "abc|d");
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Selecting, WithoutAPlatformTheClipboardDoesNothing) {
  SetClipboardPlatform({});
  Make("abcd");
  Select(1, 3);
  Key(kKeyCopy);
  EXPECT_EQ(State(), "a<bc|d");
  Key(kKeyPaste);
  EXPECT_EQ(State(), "a|d");
}

TEST_F(Selecting, AMenuOffersWhatTheFieldAllows) {
  Make("abc");
  EXPECT_EQ(Commands(), kEditSelectAll | kEditPaste);
  Select(0, 2);
  EXPECT_EQ(Commands(), kEditSelectAll | kEditPaste | kEditCopy | kEditCut | kEditClear);
  text->flags = kEditReadOnly;
  EXPECT_EQ(Commands(), kEditSelectAll | kEditCopy);
  text->flags = kEditNoSelect;
  EXPECT_EQ(Commands(), 0);
}

TEST_F(Selecting, CopyInAPasswordIsNeverOffered) {
  Make("abc", kEditPassword);
  EXPECT_EQ(Commands(), kEditSelectAll | kEditPaste);
  Select(0, 2);
  EXPECT_EQ(Commands(), kEditSelectAll | kEditPaste | kEditClear);
  text->flags |= kEditReadOnly;
  EXPECT_EQ(Commands(), kEditSelectAll);
}

}  // namespace
}  // namespace vexel::test
