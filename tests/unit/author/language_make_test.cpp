#include "author/language/make.h"

#include <gtest/gtest.h>

#include <functional>

#include "author/language/dump.h"
#include "author/language/table.h"
#include "author/writer.h"

namespace vexel::author {

namespace {

class OneFile : public NoFiles {
 public:
  bool Read(const std::string& path, size_t, std::string* bytes, std::string* error) override {
    if (path != "folder/part.vxt") {
      *error = "not there: " + path;
      return false;
    }
    *bytes = "place 7 depth 3";
    return true;
  }
};

Bytes Made(const std::string& text) {
  NoFiles files;
  return MakeMovie("a.vxt", text, files).bytes;
}

std::string Mistake(const std::string& text) {
  try {
    Made(text);
  } catch (const SourceError& error) {
    return error.what();
  }
  return "";
}

bool Says(const std::string& message, const std::string& part) {
  return message.find(part) != std::string::npos;
}

Bytes Written(const std::function<void(MovieWriter&)>& write) {
  MovieWriter movie(60, 40, 24);
  write(movie);
  return movie.Finish();
}

TEST(LanguageMake, WritesWhatTheWriterWrites) {
  const Bytes expected = Written([](MovieWriter& movie) {
    ShapeBuilder star;
    star.Fill1(star.AddFill(Color{255, 204, 0})).Rectangle(Rect::Pixels(1, 2, 11, 22));
    movie.DefineShape(1, star).Place(1, 1, Matrix::Translate(201, 80)).FrameEnd().End();
  });
  EXPECT_EQ(Made("movie size 60, 40 rate 24 shape star { fill #fc0 rect 1, 2, 10, 20 }"
                 "frame { place star at 10.05, 4 }"),
            expected);
}

TEST(LanguageMake, LoopsConditionsAndBlocksByNameComeToTheSame) {
  EXPECT_EQ(Made("define p(x, c) { if c { place 1 at x, 0 } else { remove x } }"
                 "repeat 3 as i { use p(5*i, i < 2) }"),
            Made("place 1 at 0, 0 place 1 at 5, 0 remove 10"));
}

TEST(LanguageMake, FramesCanBeFilledLater) {
  EXPECT_EQ(Made("frame { place 1 } frame frame { remove 1 } at frame 1 { move 1 at 3, 3 }"),
            Made("frame { place 1 } frame { move 1 at 3, 3 } frame { remove 1 }"));
}

TEST(LanguageMake, ATweenGoesFromZeroToOne) {
  EXPECT_EQ(Made("tween 3 as t { move 1 at 10*t, 0 }"),
            Made("frame { move 1 at 0, 0 } frame { move 1 at 5, 0 } frame { move 1 at 10, 0 }"));
}

TEST(LanguageMake, FilesLieBesideTheText) {
  OneFile files;
  EXPECT_EQ(MakeMovie("folder/a.vxt", "include \"part.vxt\"", files).bytes,
            Made("place 7 depth 3"));
}

TEST(LanguageMake, NumbersOutOfRangeAreNamedWithTheirRange) {
  EXPECT_EQ(Mistake("frame\nmovie rate 300"),
            "a.vxt:2:12: rate is 0 to 255.99609375, not 300\nmovie rate 300\n           ^");
  EXPECT_TRUE(Says(Mistake("place 1 depth 65536"), "depth is 0 to 65535, not 65536"));
  EXPECT_TRUE(Says(Mistake("place 1 depth 1.5"), "depth is a whole number"));
  EXPECT_TRUE(Says(Mistake("place 1 clip 1 name \"a\""), "do not go together"));
}

TEST(LanguageMake, WorkAndDepthAreBounded) {
  EXPECT_TRUE(Says(Mistake("repeat 9999999 { repeat 9999999 { frame } }"), "too much work"));
  EXPECT_TRUE(Says(Mistake("define f() { use f() } use f()"), "200 blocks"));
  EXPECT_TRUE(Says(Mistake(std::string(5000, '{')), "a statement") ||
              Says(Mistake(std::string(5000, '{')), "100 blocks"));
  EXPECT_TRUE(Says(Mistake("let a = " + std::string(5000, '(')), "100 parentheses"));
  EXPECT_TRUE(Says(Mistake("let a = " + std::string(5000, '-') + "1"), "100 parentheses"));
  EXPECT_TRUE(Says(Mistake("let a = \"xxxxxxxxxxxxxxxx\" repeat 90 { let b = a + a let a = b }"
                           "let c = \"x\" define g(t) { use h(t + t) } define h(t) { use g(t + t) }"
                           "use g(\"xxxxxxxx\")"),
                   "a.vxt:1:"));
}

TEST(LanguageMake, BothHalvesOfAMorphHaveAsManyEdges) {
  EXPECT_TRUE(Says(Mistake("morph m { start { rect 0,0,9,9 } end { circle 0,0,9 } }"),
                   "has 4 edges, its end 8"));
}

TEST(LanguageMake, AWordThatIsFieldAndStatementIsToldByWhatFollows) {
  EXPECT_EQ(Made("edit e bounds 0,0,9,9 font f blocks name \"x\""),
            Made("edit e bounds 0,0,9,9\nfont f blocks name \"x\""));
  EXPECT_NE(Made("font f blocks name \"x\" edit e bounds 0,0,9,9 font f"),
            Made("font f blocks name \"x\" edit e bounds 0,0,9,9"));
  EXPECT_EQ(Made("movie background red background blue"),
            Made("movie rate 12 tag 9 bytes \"ff0000\" tag 9 bytes \"0000ff\""));
  EXPECT_EQ(Made("place 1 at max(1, 2), 3"), Made("place 1 at 2, 3"));
}

TEST(LanguageTable, EveryExampleOfATimelineIsRead) {
  // Examples name characters of their own; what is wanted is that all words
  // are known, so that the only mistakes are names and files.
  for (const StatementInfo& statement : Statements()) {
    if (!(statement.places & kInMovie)) continue;
    const std::string message =
        Mistake("font f blocks name \"x\"\n" + std::string(statement.example));
    EXPECT_FALSE(Says(message, "is no statement")) << statement.example << "\n" << message;
    EXPECT_FALSE(Says(message, "is wanted here")) << statement.example << "\n" << message;
  }
}

TEST(LanguageDump, KeepsWhatIsNotTheWritersChoice) {
  const Bytes movie = Written([](MovieWriter& out) {
    Placement place;
    place.depth = 2;
    place.character = 5;
    place.matrix = Matrix::Rotate(30, 1.5, 1.5, 100, 7);
    place.matrixForm.scaleBits = 25;
    place.matrixForm.translateBits = 20;
    place.cxform = Cxform::Alpha(0.5);
    place.cxformForm = {3, 15};
    place.extraFlags = 0x80;
    out.Place(place).Tag(kTagFrameEnd, {}, TagForm::kLong).End().FrameLabel("behind");
    out.Raw(Bytes{0x43});
  });
  const std::string text = DumpMovie(movie);
  EXPECT_TRUE(Says(text,
                   "place 5 depth 2 at 5, 0.35 scale 1.5 rotate 30 alpha 50% flags 128 "
                   "packed(scalebits 25, movebits 20, colorflags 3, colorbits 15)"))
      << text;
  EXPECT_EQ(Made(text), movie);
}

TEST(LanguageDump, IsExactForMoviesCutAnywhere) {
  const Bytes movie = Made(
      "shape s { fill red circle 9, 9, 5 } sprite w { frame { place s } }"
      "frame \"a\" { place w actions { stop } }");
  for (size_t size = 8; size <= movie.size(); ++size) {
    const Bytes cut(movie.begin(), movie.begin() + static_cast<ptrdiff_t>(size));
    EXPECT_EQ(Made(DumpMovie(cut)), cut) << size;
  }
}

TEST(LanguageDump, HasNoTextForWhatIsNoMovie) {
  EXPECT_EQ(DumpMovie(Bytes{'V', 'X', 'F', 4, 0, 0, 0}), "");
  EXPECT_EQ(DumpMovie(Bytes(20, 'A')), "");
}

}  // namespace

}  // namespace vexel::author
