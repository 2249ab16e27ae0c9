// Fonts taken in from files, and text set in them.
#include <gtest/gtest.h>

#include "author/font_list.h"
#include "author/language/make.h"
#include "author/writer.h"

namespace vexel::author {
namespace {

// Reads any file as the font of squares, with one wide code, and notes what it
// was asked for.
class FontFiles : public NoFiles {
 public:
  bool Read(const std::string& path, size_t, std::string* bytes, std::string*) override {
    *bytes = path;
    return true;
  }
  bool ReadFont(const std::string& bytes, const std::string& text, Font* font,
                std::vector<std::string>* warnings, std::string* error) override {
    asked = bytes + ": " + text;
    if (bytes == "bad.ttf") {
      *error = "is no font";
      return false;
    }
    *font = BlockFont("Squares");
    font->flags |= kFontItalic | kFontWideCodes;
    Glyph accented, cyrillic;
    accented.code = 0xE9;
    cyrillic.code = 0x416;
    cyrillic.advance = 512;
    font->glyphs.push_back(accented);
    font->glyphs.push_back(cyrillic);
    warnings->push_back("lacks a letter");
    return true;
  }
  std::string asked;
};

Font Taken(const std::string& text) {
  FontFiles files;
  std::vector<ListedFont> fonts;
  EXPECT_TRUE(ListFonts(MakeMovie("a.vxt", text, files).bytes, &fonts));
  return fonts.at(0).font;
}

std::string Mistake(const std::string& text, MovieFiles& files) {
  try {
    MakeMovie("a.vxt", text, files);
  } catch (const SourceError& error) {
    const std::string message = error.what();
    return message.substr(0, message.find('\n'));
  }
  return "";
}

std::string Mistake(const std::string& text) {
  FontFiles files;
  return Mistake(text, files);
}

TEST(LanguageFont, AFileGivesOutlinesNameStyleAndMeasures) {
  const Font font = Taken("font f file \"a.ttf\"");
  EXPECT_EQ(font.name, "Squares");
  EXPECT_EQ(font.flags, kFontAnsi | kFontHasLayout | kFontItalic | kFontWideCodes);
  EXPECT_EQ(font.ascent, 800);
  EXPECT_EQ(font.glyphs.back().code, 0x416);
}

TEST(LanguageFont, FieldsOverrideWhatTheFileSays) {
  const Font font = Taken("font f file \"a.ttf\" name \"Mine\" bold ascent 7 leading -3");
  EXPECT_EQ(font.name, "Mine");
  EXPECT_EQ(font.ascent, 7);
  EXPECT_EQ(font.descent, 200);
  EXPECT_EQ(font.leading, -3);
  EXPECT_TRUE(font.flags & kFontBold);
  EXPECT_TRUE(font.flags & kFontItalic);
}

TEST(LanguageFont, TheReaderIsToldTheCharacters) {
  FontFiles files;
  const MadeMovie made = MakeMovie("x/a.vxt", "font f file \"a.ttf\" chars \"Hi\"", files);
  EXPECT_EQ(files.asked, "x/a.ttf: Hi");
  EXPECT_EQ(made.warnings, (std::vector<std::string>{"x/a.ttf: lacks a letter"}));
  EXPECT_TRUE(made.files.count("x/a.ttf"));
}

TEST(LanguageFont, MistakesAreTold) {
  EXPECT_EQ(Mistake("font f file \"bad.ttf\""), "a.vxt:1:8: bad.ttf: is no font");
  EXPECT_EQ(Mistake("font f blocks chars \"a\""), "a.vxt:1:15: chars goes with file");
  EXPECT_EQ(Mistake("font f blocks file \"a\""), "a.vxt:1:8: a file or blocks, not both");
  EXPECT_NE(Mistake("font f file \"a\" { glyph \"A\" }").find("has its glyphs already"),
            std::string::npos);
}

TEST(LanguageFont, WithoutAReaderNoFontIsTaken) {
  class OnlyFiles : public NoFiles {
   public:
    bool Read(const std::string&, size_t, std::string*, std::string*) override { return true; }
  } files;
  EXPECT_EQ(Mistake("font f file \"a.ttf\"", files), "a.vxt:1:8: a.ttf: no fonts are read here");
}

Bytes Text(const std::string& letters) {
  FontFiles files;
  return MakeMovie(
             "a.vxt",
             "font f file \"a\" text t bounds 0,0,9,9 { run font f height 20 " + letters + "}",
             files)
      .bytes;
}

TEST(LanguageFont, TextsAreUtf8OrBytes) {
  const int accented = BlockFont("").glyphs.size();
  const std::string glyphs = "glyphs " + std::to_string(accented) + ", 0";
  EXPECT_EQ(Text("text \"\xC3\xA9\""), Text(glyphs));
  EXPECT_EQ(Text("text \"\\xE9\""), Text(glyphs));
  EXPECT_EQ(Text("text \"\xD0\x96\""), Text("glyphs " + std::to_string(accented + 1) + ", 10"));
}

TEST(LanguageFont, ALetterThatTheFontLacksIsNamed) {
  const std::string start = "font f file \"a\" text t { run font f height 20 ";
  EXPECT_NE(Mistake(start + "text \"~\" }").find("the font has no \"~\""), std::string::npos);
  EXPECT_NE(Mistake(start + "text \"\xC3\xA8\" }").find("the font has no U+00E8"),
            std::string::npos);
}

TEST(LanguageFont, ARunBeginsAtXOrEndsThereOrHasItInTheMiddle) {
  const std::string letters = " glyphs 1, 10, 2, 20";
  EXPECT_EQ(Text("x 50 align 0" + letters), Text("x 50" + letters));
  EXPECT_EQ(Text("x 50 align 1" + letters), Text("x 20" + letters));
  EXPECT_EQ(Text("x 50 align 2" + letters), Text("x 35" + letters));
}

TEST(LanguageFont, TheBoundsOfAnAlignedRunAreWhereItStands) {
  const std::string start = "font f blocks text t { run font f height 20 ";
  NoFiles none;
  const auto movie = [&](const std::string& text) { return MakeMovie("a.vxt", text, none).bytes; };
  EXPECT_EQ(movie(start + "x 50 y 0 align 1 glyphs 1, 30 run glyphs 1, 5 }"),
            movie(start + "x 20 y 0 glyphs 1, 30 run glyphs 1, 5 }"));
}

TEST(LanguageFont, AnAlignedRunNeedsAPlace) {
  const auto mistake = [](const std::string& run) {
    NoFiles none;
    return Mistake("font f blocks text t { run font f height 20 " + run + " }", none);
  };
  EXPECT_NE(mistake("align 1 text \"A\"").find("align goes with x"), std::string::npos);
  EXPECT_NE(mistake("x 9 align 3 text \"A\"").find("align is 0 to 2 here"), std::string::npos);
  EXPECT_NE(mistake("x -1600 align 1 glyphs 1, 90").find("the letters lead too far"),
            std::string::npos);
}

}  // namespace
}  // namespace vexel::author
