// The growing text and its form encoding.
#include "player/url_builder.h"

#include <gtest/gtest.h>

#include <string>

#include "movie/script_player.h"
#include "player/text.h"

namespace vexel::test {
namespace {

struct Builder : URLBuilder {
  Builder() : URLBuilder{} {}
  ~Builder() { FreeStr(buffer); }
  std::string Text() const { return buffer ? buffer : ""; }
};

TEST(URLBuilderTest, IsEmptyWithoutABuffer) {
  Builder text;
  text.AppendString("");
  text.AppendInt(-3);
  EXPECT_EQ(text.buffer, nullptr);
  EXPECT_EQ(text.capacity, 0);
}

TEST(URLBuilderTest, GrowsByTwoHundredFiftySix) {
  Builder text;
  for (int i = 0; i < 255; ++i) text.AppendChar('x');
  EXPECT_EQ(text.capacity, 256);
  text.AppendChar('y');
  EXPECT_EQ(text.capacity, 512);
  EXPECT_EQ(text.Text(), std::string(255, 'x') + "y");
  EXPECT_EQ(text.length, 256);
}

TEST(URLBuilderTest, TakesMegabytes) {
  Builder text;
  for (int i = 0; i < 3000000; ++i) text.AppendChar('x');
  EXPECT_EQ(text.length, 3000000);
  EXPECT_EQ(text.capacity % 256, 0);
}

TEST(URLBuilderTest, WritesIntegersThatAreNotNegative) {
  Builder text;
  text.AppendInt(0);
  text.AppendInt(-7);
  text.AppendInt(2147483647);
  EXPECT_EQ(text.Text(), "02147483647");
}

TEST(URLBuilderTest, EncodesSpacesAndSigns) {
  Builder text;
  text.EncodeString("a+b c");
  EXPECT_EQ(text.Text(), "a%2Bb+c");
}

TEST(URLBuilderTest, EncodesEveryByteThatIsNoLetterDigitOrSpace) {
  Builder text;
  text.EncodeString("Az09_-.\xE9\x01");
  EXPECT_EQ(text.Text(), "Az09%5F%2D%2E%E9%01");
}

TEST(URLBuilderTest, EncodesVariablesInOrder) {
  ScriptPlayer movie;
  movie.SetVariable("first name", "a&b");
  movie.SetVariable("gone", nullptr);
  movie.SetVariable("n", "");
  Builder text;
  text.EncodeVariables(movie.firstVariable);
  EXPECT_EQ(text.Text(), "first+name=a%26b&n=");
}

TEST(URLBuilderTest, StartsWithTheSeparatorWhenTheFirstVariableHasNoValue) {
  ScriptPlayer movie;
  movie.SetVariable("a", nullptr);
  movie.SetVariable("b", "1");
  Builder text;
  text.EncodeVariables(movie.firstVariable);
  EXPECT_EQ(text.Text(), "&b=1");
}

TEST(HexCharTest, ReadsBothCasesAndWritesCapitals) {
  EXPECT_EQ(HexChar(0), '0');
  EXPECT_EQ(HexChar(10), 'A');
  EXPECT_EQ(ParseHexChar('f'), 15);
  EXPECT_EQ(ParseHexChar('F'), 15);
  EXPECT_EQ(ParseHexChar('g'), -1);
  EXPECT_EQ(ParseHexChar('\0'), -1);
}

std::string Decoded(const char* text) {
  Builder out;
  while (*text) text = ExtractCharacter(text, &out);
  return out.Text();
}

TEST(ExtractCharacterTest, DecodesSpacesAndBytes) {
  EXPECT_EQ(Decoded("a+b%2bc%2B"), "a b+c+");
}

TEST(ExtractCharacterTest, DropsBrokenEscapes) {
  EXPECT_EQ(Decoded("a%xyb"), "ayb");
  EXPECT_EQ(Decoded("a%4xb"), "ab");
}

TEST(ExtractCharacterTest, NeverConsumesTheEnd) {
  EXPECT_EQ(Decoded("a%"), "a");
  EXPECT_EQ(Decoded("a%4"), "a");
  Builder out;
  const char* end = "";
  EXPECT_EQ(ExtractCharacter(end, &out), end);
  EXPECT_EQ(out.length, 0);
}

TEST(ExtractCharacterTest, CutsTheTextAtAnEncodedNul) {
  EXPECT_EQ(Decoded("ab%00cd"), "ab");
}

}  // namespace
}  // namespace vexel::test
