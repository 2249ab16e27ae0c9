// Every kind of finding, each in a movie made for it; and that movies of the
// writer have no damage, and damaged ones are survived.
#include "author/check/check.h"

#include <gtest/gtest.h>

#include <random>

#include "author/writer.h"
#include "support/random_movie.h"

namespace vexel::author {
namespace {

// The findings of one kind, a line each: offset, code, reason.
std::string Found(const Bytes& movie, FindingKind kind) {
  std::string text;
  for (const Finding& finding : CheckMovie(movie).findings) {
    if (finding.kind == kind) text += finding.reason + "\n";
  }
  return text;
}
std::string Damage(const Bytes& movie) {
  return Found(movie, FindingKind::kDamaged);
}
std::string Unreachable(const Bytes& movie) {
  return Found(movie, FindingKind::kUnreachable);
}
std::string Waste(const Bytes& movie) {
  return Found(movie, FindingKind::kWasteful);
}

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

ShapeBuilder Square() {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(Color{1, 2, 3}), 0).Rectangle(Rect::Pixels(0, 0, 10, 10));
  return shape;
}

// A movie of one frame around some tags.
template <class Fill>
Bytes Movie(Fill fill) {
  MovieWriter movie(40, 30);
  fill(movie);
  movie.FrameEnd().End();
  return movie.Finish();
}

Bytes ActionsMovie(const Bytes& block) {
  return Movie([&](MovieWriter& movie) { movie.FrameActions(block); });
}

Picture SmallPicture() {
  Picture picture(8, 8);
  for (size_t i = 0; i < picture.pixels.size(); ++i) {
    picture.pixels[i] = {static_cast<uint8_t>(i * 3), static_cast<uint8_t>(i), 7, 255};
  }
  return picture;
}

// A movie whose only shape is filled with bitmap 1.
template <class Fill>
Bytes BitmapMovie(Fill define) {
  return Movie([&](MovieWriter& movie) {
    define(movie);
    ShapeBuilder shape;
    shape.Style(shape.AddFill(FillStyle::Bitmap(1, Matrix{})), 0)
        .Rectangle(Rect::Pixels(0, 0, 10, 10));
    movie.DefineShape(2, shape).Place(2, 1);
  });
}

TEST(Check, MoviesOfTheWriterHaveNoDamage) {
  for (uint32_t seed = 0; seed < 300; ++seed) {
    RandomMovieOptions options;
    options.fields = seed % 2 == 0;
    options.actions = seed % 3 == 0;
    const Bytes movie = RandomMovie(seed, options);
    EXPECT_EQ(Damage(movie), "") << seed;
    EXPECT_EQ(Found(movie, FindingKind::kUnknown), "") << seed;
    EXPECT_EQ(Found(movie, FindingKind::kUnsupported), "") << seed;
  }
}

TEST(Check, DamagedMoviesAreSurvived) {
  std::mt19937 random(5);
  for (uint32_t seed = 0; seed < 60; ++seed) {
    const Bytes good = RandomMovie(seed, {});
    for (int round = 0; round < 20; ++round) {
      Bytes bad = good;
      for (int i = 0; i < 8; ++i) bad[random() % bad.size()] = static_cast<uint8_t>(random());
      if (round % 4 == 0) bad.resize(random() % bad.size());
      CheckMovie(bad);
    }
  }
}

TEST(Check, FindingsStandInTheOrderOfTheirOffsets) {
  const Bytes movie = RandomMovie(7, {});
  const std::vector<Finding> findings = CheckMovie(movie).findings;
  for (size_t i = 1; i < findings.size(); ++i) {
    EXPECT_LE(findings[i - 1].offset, findings[i].offset);
  }
}

TEST(CheckFraming, HeadersThatAreNone) {
  EXPECT_EQ(Damage({}), "the header of 8 bytes is cut short\n");
  EXPECT_EQ(Damage({'V', 'X', 'G', 4, 8, 0, 0, 0}), "it does not begin with VXF\n");
  EXPECT_EQ(Damage({'V', 'X', 'F', 4, 7, 0, 0, 0}), "the length it declares is below 8\n");
  EXPECT_TRUE(Has(Damage({'V', 'X', 'F', 4, 8, 0, 0, 0}), "fewer than 19 bytes"));
}

TEST(CheckFraming, DeclaredLengthAndFileDiffer) {
  Bytes movie = Movie([](MovieWriter&) {});
  movie.push_back(9);
  EXPECT_EQ(Unreachable(movie), "1 byte behind the length that the header declares\n");
  movie.resize(movie.size() - 2);
  EXPECT_TRUE(Has(Damage(movie), "it declares"));
}

TEST(CheckFraming, TagsThatOverrunOrHaveNoEnd) {
  MovieWriter movie(40, 30);
  movie.FrameEnd();
  EXPECT_EQ(Damage(movie.Finish()), "the tags end without an end tag\n");
  movie.Raw(Bytes{1});
  EXPECT_EQ(Damage(movie.Finish()), "the tags end inside the header of a tag\n");
  MovieWriter lying(40, 30);
  lying.FrameEnd().LyingTag(kTagFrameLabel, 99, Bytes{'a', 0});
  EXPECT_EQ(Damage(lying.Finish()), "the tag declares 99 bytes, 2 are left\n");
}

TEST(CheckFraming, FrameCountThatLies) {
  MovieWriter movie(40, 30);
  movie.header().frameCount = 7;
  movie.FrameEnd().End();
  EXPECT_EQ(Damage(movie.Finish()), "the frame count says 7, the tags make 1 frame\n");
}

TEST(CheckFraming, WhatStandsBehindTheEndTag) {
  MovieWriter tags(40, 30);
  tags.FrameEnd().End().BackgroundColor({1, 2, 3}).End();
  tags.header().frameCount = 1;
  EXPECT_EQ(Unreachable(tags.Finish()), "2 tags of 7 bytes behind the end tag\n");
  MovieWriter bytes(40, 30);
  bytes.FrameEnd().End().Raw(Bytes{9, 9, 9});
  EXPECT_EQ(Unreachable(bytes.Finish()), "3 bytes behind the end tag\n");
}

TEST(CheckFraming, UnknownAndUnsupportedTags) {
  const Bytes movie = Movie([](MovieWriter& m) { m.Tag(777, Bytes{1}).SyncFrame().FreeAll(); });
  EXPECT_EQ(Found(movie, FindingKind::kUnknown), "players step over the code 777\n");
  EXPECT_EQ(CheckMovie(movie).Count(FindingKind::kUnsupported), 2u);
}

TEST(CheckFraming, HeadersAreLongWithoutNeed) {
  const Bytes movie = Movie([](MovieWriter& m) {
    m.Tag(kTagBackgroundColor, Bytes{1, 2, 3}, TagForm::kLong);
  });
  EXPECT_EQ(Waste(movie), "the header has the long form for a body of 3 bytes\n");
}

TEST(CheckFraming, RecordsCutShortAndTooLong) {
  const Bytes cut = Movie([](MovieWriter& m) { m.Tag(kTagBackgroundColor, Bytes{1, 2}); });
  EXPECT_TRUE(Has(Damage(cut), "the tag ends in the record"));
  const Bytes label = Movie([](MovieWriter& m) { m.Tag(kTagFrameLabel, Bytes{'a'}); });
  EXPECT_TRUE(Has(Damage(label), "the tag ends in the text of a label"));
  const Bytes longer = Movie([](MovieWriter& m) { m.Tag(kTagBackgroundColor, Bytes{1, 2, 3, 4}); });
  EXPECT_EQ(Waste(longer), "1 byte behind the record\n");
}

TEST(CheckCharacters, DefinedTwiceOrNever) {
  const Bytes twice = Movie(
      [](MovieWriter& m) { m.DefineShape(1, Square()).DefineShape(1, Square()).Place(1, 1); });
  EXPECT_TRUE(Has(Damage(twice), "character 1 is defined a second time"));
  const Bytes never = Movie([](MovieWriter& m) { m.Place(5, 1); });
  EXPECT_EQ(Damage(never), "character 5 is placed and never defined\n");
  const Bytes late = Movie([](MovieWriter& m) { m.Place(1, 1).DefineShape(1, Square()); });
  EXPECT_EQ(Damage(late), "character 1 is placed before it is defined\n");
  const Bytes system =
      Movie([](MovieWriter& m) { m.DefineShape(65533, Square()).Place(65533, 1); });
  EXPECT_EQ(Damage(system), "the id 65533 belongs to the player\n");
}

TEST(CheckCharacters, FreedOnes) {
  const Bytes freed = Movie([](MovieWriter& m) {
    m.DefineShape(1, Square()).FreeCharacter(1).Place(1, 1).FreeCharacter(2);
  });
  EXPECT_EQ(Damage(freed),
            "character 1 is placed after it was freed\n"
            "character 2 is freed and was never defined\n");
  const Bytes again = Movie([](MovieWriter& m) {
    m.DefineShape(1, Square()).Place(1, 1).RemoveObject(1).FreeCharacter(1);
    m.DefineShape(1, Square()).Place(1, 1);
  });
  EXPECT_EQ(Damage(again), "");
}

TEST(CheckCharacters, NothingShowsThem) {
  const Bytes movie = Movie([](MovieWriter& m) {
    TagStream sprite;
    sprite.Place(1, 1).FrameEnd().End();
    m.DefineShape(1, Square()).DefineSprite(2, sprite);
  });
  // The shape stands in a sprite that stands nowhere.
  EXPECT_TRUE(Has(Unreachable(movie), "shows character 1"));
  EXPECT_TRUE(Has(Unreachable(movie), "shows character 2"));
}

TEST(CheckCharacters, UsedForWhatTheyAreNot) {
  const Bytes movie = Movie([](MovieWriter& m) {
    m.DefineLossless(1, SmallPicture(), false).Place(1, 1);
    ShapeBuilder shape;
    shape.Style(shape.AddFill(FillStyle::Bitmap(3, Matrix{})), 0)
        .Rectangle(Rect::Pixels(0, 0, 1, 1));
    m.DefineShape(2, shape).DefineShape(3, Square()).Place(2, 2);
    m.DefineButtonExtra(3, {}).DefineFontInfo(3, Font(), 0, false);
  });
  EXPECT_EQ(Damage(movie),
            "character 1 is placed and shows nothing: it is a bitmap\n"
            "character 3 fills a shape and is no bitmap\n"
            "character 3 gets colours of a button and is none of the first form\n"
            "character 3 gets a font's name and is none\n");
}

TEST(CheckPlaces, ClipDepthBehindANameIsReadFromTheName) {
  const Bytes movie = Movie([](MovieWriter& m) {
    m.DefineShape(1, Square()).Tag(kTagPlaceObject2, Bytes{0x62, 1, 0, 1, 0, 'a', 0, 9, 0});
  });
  EXPECT_EQ(Damage(movie), "");
  EXPECT_TRUE(Has(Found(movie, FindingKind::kUnsupported), "first bytes of the name"));
}

TEST(CheckShapes, StylesThatAreNotThere) {
  ShapeBuilder shape = Square();
  BitWriter body;
  body.U16(1);
  WriteRect(body, Rect::Pixels(0, 0, 1, 1));
  body.U8(1);
  body.U8(kFillSolid);
  for (int i = 0; i < 3; ++i) body.U8(9);
  body.U8(0);
  body.Bits(2, 4);
  body.Bits(0, 4);
  body.Bits(kChangeFill0, 6);
  body.Bits(3, 2);
  body.Bits(0, 6);
  const Bytes movie =
      Movie([&](MovieWriter& m) { m.Tag(kTagDefineShape, body.bytes()).Place(1, 1); });
  EXPECT_EQ(Damage(movie), "fill style 3 is used, there are 1\n");
}

TEST(CheckShapes, UnknownFillsAndCutEdges) {
  BitWriter body;
  body.U16(1);
  WriteRect(body, Rect::Pixels(0, 0, 1, 1));
  body.U8(1);
  body.U8(0x20);
  for (int i = 0; i < 3; ++i) body.U8(9);
  body.U8(0);
  body.U8(0);
  const Bytes movie =
      Movie([&](MovieWriter& m) { m.Tag(kTagDefineShape, body.bytes()).Place(1, 1); });
  EXPECT_EQ(Found(movie, FindingKind::kUnknown), "a fill has the type 32\n");
  EXPECT_TRUE(Has(Damage(movie), "the tag ends in the edges"));
}

TEST(CheckShapes, FieldsWiderThanTheirValues) {
  BitWriter body;
  body.U16(1);
  body.Bits(31, 5);
  for (int i = 0; i < 4; ++i) body.Bits(0, 31);
  body.Align();
  for (int i = 0; i < 4; ++i) body.U8(0);
  const Bytes movie =
      Movie([&](MovieWriter& m) { m.Tag(kTagDefineShape, body.bytes()).Place(1, 1); });
  EXPECT_EQ(Waste(movie), "fields are 124 bits wider than their values\n");
  EXPECT_EQ(Damage(movie), "");
}

TEST(CheckShapes, EndShapeOfAMorphBehindTheTag) {
  MorphBuilder morph;
  morph.Style(morph.AddFill(MorphFill::Solid({1, 2, 3}, {3, 2, 1})), 0);
  morph.MoveTo({0, 0}, {0, 0}).LineTo({20, 0}, {40, 0}).LineTo({0, 20}, {0, 40});
  BitWriter body;
  body.U16(1);
  WriteRect(body, morph.StartBounds());
  WriteRect(body, morph.EndBounds());
  const size_t offsetAt = body.size();
  morph.Write(body, true);
  const auto movie = [&](const Bytes& bytes) {
    return Movie([&](MovieWriter& m) { m.Tag(kTagDefineMorphShape, bytes).Place(1, 1); });
  };
  EXPECT_EQ(Damage(movie(body.bytes())), "");
  BitWriter bad = body;
  bad.Patch32(offsetAt, 9999);
  EXPECT_EQ(Damage(movie(bad.bytes())), "the end shape would begin behind the tag\n");
}

TEST(CheckBitmaps, BrokenPixels) {
  const Bytes body = EncodeLossless(LosslessFromPicture(SmallPicture(), false), false);
  EXPECT_EQ(
      Damage(BitmapMovie([&](MovieWriter& m) { m.DefineBits(1, kTagDefineBitsLossless, body); })),
      "");
  Bytes cut(body.begin(), body.end() - 20);
  EXPECT_TRUE(Has(
      Damage(BitmapMovie([&](MovieWriter& m) { m.DefineBits(1, kTagDefineBitsLossless, cut); })),
      "the compressed pixels give"));
  Bytes longer = body;
  longer.push_back(1);
  EXPECT_EQ(
      Waste(BitmapMovie([&](MovieWriter& m) { m.DefineBits(1, kTagDefineBitsLossless, longer); })),
      "1 byte behind the compressed pixels\n");
  Bytes odd = body;
  odd[0] = 77;
  EXPECT_EQ(
      Found(BitmapMovie([&](MovieWriter& m) { m.DefineBits(1, kTagDefineBitsLossless, odd); }),
            FindingKind::kUnknown),
      "the pixels have the format 77\n");
}

TEST(CheckBitmaps, BrokenJpegs) {
  const Bytes jpeg = EncodeJpeg(SmallPicture(), 80);
  EXPECT_EQ(Damage(BitmapMovie([&](MovieWriter& m) { m.DefineJpeg(1, jpeg); })), "");
  const Bytes cut(jpeg.begin(), jpeg.end() - 30);
  EXPECT_TRUE(Has(Damage(BitmapMovie([&](MovieWriter& m) { m.DefineJpeg(1, cut); })),
                  "the JPEG data is damaged: "));
  EXPECT_TRUE(Has(Damage(BitmapMovie([&](MovieWriter& m) {
                    m.DefineJpeg(1, Bytes{1, 2, 3});
                  })),
                  "the JPEG data is damaged: "));
  EXPECT_EQ(Damage(BitmapMovie([&](MovieWriter& m) { m.DefineJpeg(1, {}); })),
            "there is no JPEG data\n");
}

TEST(CheckBitmaps, SharedTables) {
  const Bytes image = EncodeJpeg(SmallPicture(), 80, JpegParts::kImageOnly);
  const Bytes tables = EncodeJpeg(SmallPicture(), 80, JpegParts::kTablesOnly);
  EXPECT_EQ(Damage(BitmapMovie([&](MovieWriter& m) {
              m.DefineJPEGTables(tables).DefineBits(1, kTagDefineBits, image);
            })),
            "");
  EXPECT_EQ(Damage(BitmapMovie([&](MovieWriter& m) { m.DefineBits(1, kTagDefineBits, image); })),
            "no JPEG tables stand before it, so it stays empty\n");
  EXPECT_EQ(Unreachable(BitmapMovie([&](MovieWriter& m) {
              m.DefineJPEGTables(tables).DefineJPEGTables(tables);
              m.DefineBits(1, kTagDefineBits, image);
            })),
            "only the first tables of the movie are used\n");
}

TEST(CheckBitmaps, DuplicatesAndShortHeaders) {
  const Bytes movie = BitmapMovie([](MovieWriter& m) {
    m.DefineLossless(1, SmallPicture(), false).DefineLossless(3, SmallPicture(), false);
  });
  EXPECT_TRUE(Has(Waste(movie), "the bitmap is the same as that at byte "));
  const Bytes shortened = BitmapMovie([](MovieWriter& m) {
    m.Tag(kTagDefineBitsJPEG, Bytes{1, 0, 9}, TagForm::kShort);
  });
  EXPECT_TRUE(Has(Damage(shortened), "bitmaps need the long form"));
}

TEST(CheckText, GlyphsAndFontsThatAreNotThere) {
  const Font font = BlockFont("Test");
  StaticText text;
  TextRun run;
  run.font = 1;
  run.height = 240;
  run.glyphs = {{static_cast<uint32_t>(font.glyphs.size()), 100}};
  text.runs = {run};
  const auto movie = [&](uint16_t id) {
    return Movie([&](MovieWriter& m) {
      m.DefineFont2(id, font).DefineText(2, Rect::Pixels(0, 0, 9, 9), text).Place(2, 1);
    });
  };
  EXPECT_TRUE(Has(Damage(movie(1)), "of font 1 is used, it has "));
  EXPECT_EQ(Damage(movie(3)), "character 1 is used and never defined\n");
}

TEST(CheckText, CodesOfAFontRise) {
  Font font = BlockFont("Test");
  std::swap(font.glyphs[0].code, font.glyphs[1].code);
  EXPECT_TRUE(
      Has(Damage(Movie([&](MovieWriter& m) { m.DefineFont2(1, font); })), "the codes do not rise"));
}

TEST(CheckText, FontsWhoseGlyphsOverlapTakeLittleTime) {
  BitWriter body;
  body.U16(1);
  constexpr uint32_t kGlyphs = 20000;
  for (uint32_t i = 0; i < kGlyphs; ++i) body.U16(2 * kGlyphs + i);
  // Edges, whichever the bit they begin at, up to an end that all glyphs share.
  for (uint32_t i = 0; i < 60000; ++i) body.U8(0xFF);
  for (uint32_t i = 0; i < 20; ++i) body.U8(0);
  EXPECT_EQ(Damage(Movie([&](MovieWriter& m) { m.Tag(kTagDefineFont, body.bytes()); })),
            "the glyphs of the font overlap each other\n");
}

TEST(CheckButtons, HitAreasAndChains) {
  ButtonRecord shown;
  shown.character = 1;
  ButtonRecord hit = shown;
  hit.states = kButtonHit;
  const auto movie = [](const std::vector<ButtonRecord>& records, const ButtonActions& actions) {
    return Movie([&](MovieWriter& m) {
      m.DefineShape(1, Square()).DefineButton2(2, false, records, {actions}).Place(2, 1);
    });
  };
  EXPECT_EQ(Unreachable(movie({shown, hit}, {1 << kEventPress, {0}})), "");
  EXPECT_EQ(Unreachable(movie({shown}, {65 << 9, {0}})), "");
  EXPECT_EQ(Unreachable(movie({shown}, {1 << kEventPress, {0}})),
            "the button has no hit area for the pointer, and no key\n");
  EXPECT_EQ(Unreachable(movie({hit}, {0, {0}})), "actions of the button answer to no event\n");
  const Bytes bad = Movie([](MovieWriter& m) {
    m.Tag(kTagDefineButton2, Bytes{2, 0, 0, 99, 0, 0}).Place(2, 1);
  });
  EXPECT_EQ(Damage(bad), "actions of the button would begin behind the tag\n");
}

TEST(CheckActions, BlocksThatEndBadly) {
  EXPECT_EQ(Damage(ActionsMovie({kActionPlay, 0})), "");
  EXPECT_EQ(Damage(ActionsMovie({kActionPlay})), "the block has no end byte\n");
  EXPECT_EQ(Damage(ActionsMovie({})), "the block has no end byte\n");
  EXPECT_EQ(Damage(ActionsMovie({kActionPush, 9, 0, 0})),
            "an action declares more bytes than the block has\n");
  EXPECT_EQ(Damage(ActionsMovie({kActionPush, 2, 0, 0, 'a', 0})), "ActionPush is cut short\n");
}

TEST(CheckActions, JumpsThatGoAstray) {
  EXPECT_EQ(Damage(ActionsMovie({kActionJump, 2, 0, 99, 0, 0})),
            "ActionJump leads out of the block\n");
  EXPECT_EQ(Damage(ActionsMovie({kActionIf, 2, 0, 0xF0, 0xFF, 0})),
            "ActionIf leads out of the block\n");
  EXPECT_EQ(Found(ActionsMovie({kActionIf, 2, 0, 0xFC, 0xFF, 0}), FindingKind::kUnknown),
            "ActionIf leads into the midst of an action\n");
}

TEST(CheckActions, UnknownOnesAndSurplusBytes) {
  const Bytes movie = ActionsMovie({0x03, kActionPush, 1, 0, 7, kActionCall, 1, 0, 0, 0});
  EXPECT_EQ(Found(movie, FindingKind::kUnknown),
            "players step over the action 3\nActionPush has a value of unknown type\n");
  EXPECT_EQ(Waste(movie), "ActionCall has 1 byte behind its operands\n");
}

TEST(CheckActions, OnesThatNoWayLeadsTo) {
  ActionBuilder skipped;
  const ActionBuilder::Label over = skipped.NewLabel();
  skipped.Jump(over).Op(kActionPlay).Op(kActionStop).Bind(over);
  EXPECT_EQ(Unreachable(ActionsMovie(skipped.Finish())), "2 actions that no way leads to\n");
  // A wait that skips the first jump reaches the second.
  ActionBuilder wait;
  const ActionBuilder::Label a = wait.NewLabel();
  const ActionBuilder::Label b = wait.NewLabel();
  wait.WaitForFrame(3, 1).Jump(a).Jump(b).Bind(a).Op(kActionPlay).Bind(b);
  EXPECT_EQ(Unreachable(ActionsMovie(wait.Finish())), "");
  EXPECT_EQ(Unreachable(ActionsMovie({0, kActionPlay, 0})), "1 action that no way leads to\n");
  EXPECT_EQ(Unreachable(ActionsMovie({0, kActionPush})), "1 byte behind the end of the block\n");
}

TEST(CheckLabels, NamedByNoAction) {
  const auto movie = [](const ActionBuilder& actions) {
    return Movie([&](MovieWriter& m) { m.FrameLabel("Menu").FrameActions(actions); });
  };
  EXPECT_EQ(Unreachable(movie(ActionBuilder())), "no action names the label\n");
  EXPECT_EQ(Unreachable(movie(ActionBuilder().GotoLabel("menu"))), "");
  EXPECT_EQ(Unreachable(movie(ActionBuilder().Push("/clip:MENU").GotoExpr(1))), "");
  // A frame that is worked out may be any.
  EXPECT_EQ(Unreachable(movie(ActionBuilder().GetVariable("x").GotoExpr(1))), "");
}

TEST(Check, MoviesOfMistakesHaveBoundedFindings) {
  MovieWriter movie(40, 30);
  for (int i = 0; i < 20000; ++i) movie.Place(5, 1);
  movie.FrameEnd().End();
  const CheckResult result = CheckMovie(movie.Finish());
  EXPECT_EQ(result.Count(FindingKind::kDamaged), 20000u);
  EXPECT_EQ(result.findings.size(), 10000u);
}

}  // namespace
}  // namespace vexel::author
