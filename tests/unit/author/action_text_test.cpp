// Actions as text: every form, and any bytes there and back.
#include "author/script/action_text.h"

#include <gtest/gtest.h>

#include <random>

#include "author/action_builder.h"
#include "author/script/float_text.h"
#include "author/script/mnemonics.h"

namespace vexel::author {
namespace {

Bytes Assemble(const std::string& text) {
  const SourceText source("block", text);
  return AssembleActions(WholeSource(source));
}

std::string ErrorOf(const std::string& text) {
  try {
    Assemble(text);
  } catch (const SourceError& error) {
    return error.what();
  }
  return "none";
}

std::string Text(const Bytes& bytes) {
  return DisassembleActions(bytes, 0);
}

void ExpectRoundTrip(const Bytes& bytes) {
  const std::string text = Text(bytes);
  ASSERT_EQ(Assemble(text), bytes) << text;
}

TEST(ActionText, EmptyBlockIsItsEndByte) {
  EXPECT_EQ(Assemble(""), Bytes{0});
  EXPECT_EQ(Text({0}), "");
}

TEST(ActionText, BlockWithoutEndByteSaysSo) {
  EXPECT_EQ(Text({}), "noend\n");
  EXPECT_EQ(Assemble("noend"), Bytes{});
  EXPECT_EQ(Text({kActionPlay}), "play\nnoend\n");
  EXPECT_EQ(Assemble("play\nnoend\n"), Bytes{kActionPlay});
}

TEST(ActionText, EveryActionHasAMnemonicOfItsOwn) {
  for (const ActionInfo& info : kActionInfos) {
    EXPECT_EQ(FindMnemonic(Mnemonic(info)), &info);
  }
  EXPECT_EQ(FindMnemonic("nonsense"), nullptr);
}

TEST(ActionText, FormsReadAsTheBuilderWritesThem) {
  ActionBuilder b;
  const ActionBuilder::Label loop = b.NewLabel();
  const ActionBuilder::Label done = b.NewLabel();
  b.Bind(loop).Push("a\"b\\\n\x80").PushFloat(0.1f).If(done).Jump(loop).Bind(done);
  b.GotoFrame(700).GotoLabel("intro").GotoExpr(1).GotoExpr(0).WaitForFrame(3, 2);
  b.WaitForFrameExpr(9).SetTarget("/clip").GetURL("page.html", "_blank");
  b.GetURLExpr(0).GetURLExpr(0x41).GetURLExpr(0xC2).GetURLExpr(0x05).Op(kActionCall);
  const std::string text =
      "L1:\n"
      "push \"a\\\"b\\\\\\n\\x80\"\n"
      "push 0.1\n"
      "if L2\n"
      "jump L1\n"
      "L2:\n"
      "gotoFrame 700\n"
      "gotoLabel \"intro\"\n"
      "gotoExpr play\n"
      "gotoExpr stop\n"
      "waitForFrame 3 skip 2\n"
      "waitForFrameExpr skip 9\n"
      "setTarget \"/clip\"\n"
      "getURL \"page.html\" \"_blank\"\n"
      "getURLExpr none\n"
      "getURLExpr get target\n"
      "getURLExpr post target variables\n"
      "getURLExpr get 0x04\n"
      "call\n";
  EXPECT_EQ(Text(b.Finish()), text);
  EXPECT_EQ(Assemble(text), b.Finish());
}

TEST(ActionText, LinesAreIndented) {
  EXPECT_EQ(DisassembleActions(Bytes{kActionPlay, kActionStop, 0}, 4), "    play\n    stop\n");
}

TEST(ActionText, SemicolonsCommentsAndBlanksDivideActions) {
  EXPECT_EQ(Assemble("play; stop // both\r\n\n // nothing\n\tnextFrame;;"),
            (Bytes{kActionPlay, kActionStop, kActionNextFrame, 0}));
}

TEST(ActionText, CommentsMayStandInsideALine) {
  EXPECT_EQ(Assemble("gotoFrame /* the\nfirst */ 1"), (Bytes{kActionGotoFrame, 2, 0, 1, 0, 0}));
}

TEST(ActionText, FloatsKeepEveryBit) {
  EXPECT_EQ(FloatText(0x80000000), "-0");
  EXPECT_EQ(FloatText(0x7F800000), "bits 0x7f800000");
  EXPECT_EQ(FloatText(0x7FC00001), "bits 0x7fc00001");
  EXPECT_EQ(FloatText(0xFF800001), "bits 0xff800001");
  std::mt19937 random(1);
  for (int i = 0; i < 20000; ++i) {
    const uint32_t bits = i < 4000 ? uint32_t(i) : uint32_t(random());
    ExpectRoundTrip({kActionPush, 5, 0, 1, uint8_t(bits), uint8_t(bits >> 8), uint8_t(bits >> 16),
                     uint8_t(bits >> 24), 0});
  }
}

TEST(ActionText, NumbersThatAreNoneAreRefused) {
  for (const char* text :
       {"inf", "nan", "-inf", "-nan", "1x", "", "-", "1e99", "--1", "infinity"}) {
    EXPECT_EQ(ParseFloat(text), std::nullopt) << text;
  }
  EXPECT_EQ(ParseFloat("-.5"), 0xBF000000u);
}

TEST(ActionText, UnknownCodesKeepTheirOperands) {
  EXPECT_EQ(Text({0x03, 0xA0, 0, 0, 0xA1, 2, 0, 1, 0xFF, 0}),
            "action 0x03\naction 0xa0\naction 0xa1 01ff\n");
  EXPECT_EQ(Assemble("action 3\naction 0xA1 01 FF"), (Bytes{0x03, 0xA1, 2, 0, 1, 0xFF, 0}));
}

TEST(ActionText, SurplusOperandBytesStay) {
  EXPECT_EQ(Text({kActionCall, 1, 0, 7, kActionPush, 5, 0, 0, 'a', 0, 1, 2, 0}),
            "call surplus 07\npush \"a\" surplus 0102\n");
  ExpectRoundTrip({kActionCall, 1, 0, 7, kActionGotoExpr, 2, 0, 1, 0, 0});
}

TEST(ActionText, JumpWithSurplusCountsFromBehindIt) {
  const Bytes block = {kActionJump, 4, 0, 0xF9, 0xFF, 9, 9, 0};
  EXPECT_EQ(Text(block), "L1:\njump L1 surplus 0909\n");
  ExpectRoundTrip(block);
}

TEST(ActionText, OperandsWithoutTheirFormArePrintedRaw) {
  EXPECT_EQ(Text({kActionPush, 2, 0, 7, 1, kActionPush, 0, 0, kActionSetTarget, 1, 0, 'a', 0}),
            "push raw 0701\npush raw\nsetTarget raw 61\n");
  ExpectRoundTrip({kActionJump, 1, 0, 5, kActionPush, 3, 0, 1, 0, 0, 0});
}

TEST(ActionText, JumpsWithoutALabelTellWhereTheyLead) {
  EXPECT_EQ(Text({kActionJump, 2, 0, 0xFC, 0xFF, 0}),
            "jump by -4  // into the midst of an action\n");
  EXPECT_EQ(Text({kActionJump, 2, 0, 0, 0x80, 0}), "jump by -32768  // before the block\n");
  EXPECT_EQ(Text({kActionIf, 2, 0, 1, 0, 0}), "if by 1  // beyond the block\n");
  ExpectRoundTrip({kActionJump, 2, 0, 0xFC, 0xFF, 0});
}

TEST(ActionText, JumpToTheEndHasALabelAtTheEnd) {
  EXPECT_EQ(Text({kActionJump, 2, 0, 0, 0, 0}), "jump L1\nL1:\n");
  ExpectRoundTrip({kActionJump, 2, 0, 0, 0, 0});
  ExpectRoundTrip({kActionJump, 2, 0, 0, 0});
}

TEST(ActionText, LengthBeyondTheBlockLeavesBytes) {
  EXPECT_EQ(Text({kActionPlay, kActionPush, 0xFF, 0xFF, 0, 0}), "play\nbytes 96ffff0000\nnoend\n");
  EXPECT_EQ(Text({kActionPush, 1}), "bytes 9601\nnoend\n");
}

TEST(ActionText, BytesAfterTheEndStayBytes) {
  EXPECT_EQ(Text({kActionPlay, 0, 'a', 'b', 0}), "play\nend\nbytes 616200\nnoend\n");
  ExpectRoundTrip({0, 0});
  ExpectRoundTrip({0, 0, 0});
}

TEST(ActionText, ActionsBehindAnEndByteThatAJumpReachesArePrintedAsActions) {
  const Bytes block = {kActionIf, 2, 0, 1, 0, 0, kActionPlay, 0};
  EXPECT_EQ(Text(block), "if L1\nend\nL1:\nplay\n");
  ExpectRoundTrip(block);
}

TEST(ActionText, TwoEndBytesInTheReachOfAJumpAreTwoEnds) {
  const Bytes block = {kActionIf, 2, 0, 1, 0, 0, 0x6D, 0, 0x6D, 0, 0};
  ExpectRoundTrip(block);
  const Bytes reached = {kActionIf, 2, 0, 3, 0, 0, 0x6D, 0, 0};
  EXPECT_EQ(Text(reached), "if L1\nend\naction 0x6d\nend\nL1:\n");
  ExpectRoundTrip(reached);
  const Bytes behind = {kActionIf, 2, 0, 2, 0, 0, 0x6D, 0, 0};
  EXPECT_EQ(Text(behind), "if L1\nend\naction 0x6d\nL1:\nend\nbytes 00\nnoend\n");
  ExpectRoundTrip(behind);
}

TEST(ActionText, BlockMayCloseWithAnEndOfItsOwn) {
  EXPECT_EQ(Assemble("play\nend"), (Bytes{kActionPlay, 0}));
  EXPECT_EQ(Assemble("jump on\nend\non:"), (Bytes{kActionJump, 2, 0, 1, 0, 0, 0}));
}

TEST(ActionText, AnyBytesComeBackTheSame) {
  std::mt19937 random(2);
  for (int i = 0; i < 20000; ++i) {
    Bytes block(random() % 60);
    for (uint8_t& byte : block) {
      // Half of the bytes small, half codes, so that lengths often fit.
      const ActionInfo& info = kActionInfos[random() % std::size(kActionInfos)];
      const uint32_t kind = random() % 8;
      byte = static_cast<uint8_t>(kind < 3 ? random() % 6 : kind < 6 ? info.code : random());
    }
    ExpectRoundTrip(block);
  }
}

TEST(ActionText, LongBlocksTakeLittleTime) {
  ExpectRoundTrip(Bytes(300000, kActionPlay));
  ExpectRoundTrip(Bytes(300000, kActionPush));
  Bytes jumps;
  for (int i = 0; i < 50000; ++i) jumps.insert(jumps.end(), {kActionJump, 2, 0, 0xFB, 0xFF});
  ExpectRoundTrip(jumps);
}

TEST(ActionTextErrors, TellPlaceAndHint) {
  EXPECT_EQ(ErrorOf("play\n  gotFrame 3"),
            "block:2:3: unknown action gotFrame; did you mean gotoFrame?\n"
            "  gotFrame 3\n"
            "  ^");
  EXPECT_EQ(ErrorOf("loop: jump lop"),
            "block:1:12: there is no label lop; did you mean loop?\n"
            "loop: jump lop\n"
            "           ^");
}

TEST(ActionTextErrors, EachMistakeHasItsWords) {
  const auto expect = [](const std::string& text, const std::string& part) {
    EXPECT_NE(ErrorOf(text).find(part), std::string::npos) << text << "\n" << ErrorOf(text);
  };
  expect("play /* and", "this comment is never closed");
  expect("3", "here stands an action");
  expect("a: a:", "the label a stands here a second time");
  expect("play stop", "one stands on a line");
  expect("gotoFrame 65536", "a frame, a whole number from 0 to 65535");
  expect("gotoFrame -1", "from 0 to 65535");
  expect("gotoFrame 99999999999999999999", "from 0 to 65535");
  expect("gotoFrame", "from 0 to 65535");
  expect("waitForFrame 3", "skip");
  expect("waitForFrame 3 skip 256", "from 0 to 255");
  expect("push", "a text in double quotes or a number");
  expect("push \"a", "no closing quote");
  expect("push \"\\q\"", "unknown escape");
  expect("push \"\\x0\"", "two hexadecimal digits");
  expect("push \"\\x00\"", "first zero byte");
  expect("push 1e99", "a text in double quotes or a number");
  expect("push bits 0x100000000", "from 0 to 4294967295");
  expect("setTarget clip", "a text in double quotes");
  expect("getURLExpr", "here stand flags: get, post, target, variables, none");
  expect("getURLExpr send", "unknown flag send");
  expect("jump", "here stands a label");
  expect("jump by 32768", "an offset");
  expect("action 0", "a code");
  expect("action 3 00", "codes below 0x80 have no operands");
  expect("bytes", "here stand bytes");
  expect("bytes 0", "here stand bytes");
  expect("call surplus", "here stand bytes");
  expect("noend\nplay", "noend is the last line");
}

TEST(ActionTextErrors, OperandsAndJumpsHaveRoomForSixteenBits) {
  EXPECT_EQ(Assemble("push \"" + std::string(65533, 'a') + "\"").size(), 3u + 65535 + 1);
  EXPECT_NE(ErrorOf("push \"" + std::string(65534, 'a') + "\"").find("room for 65535"),
            std::string::npos);
  const std::string far = "jump on\npush \"" + std::string(32762, 'a') + "\"\n";
  EXPECT_EQ(ErrorOf(far + "on:"), "none");
  EXPECT_NE(ErrorOf(far + "play\non:").find("lies 32768 bytes away"), std::string::npos);
}

}  // namespace
}  // namespace vexel::author
