// SVG pictures: what scene they become, what is reported, what is survived.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "author/importers.h"
#include "author/scene_raster.h"
#include "author/svg_builder.h"

namespace vexel::author {
namespace {

std::string Svg(const std::string& body, const std::string& attributes = "") {
  return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
         "width='100' height='100' " +
         attributes + ">" + body + "</svg>";
}

struct Built {
  Scene scene;
  std::vector<ImportWarning> warnings;

  // The colour of a frame pixel, 0xAARRGGBB premultiplied, as a second renderer sees it.
  uint32_t At(int x, int y) const {
    SceneBitmap b = RasterizeItems(scene.items, scene.bitmaps, {0, 0, 100, 100}, 1);
    return b.pixels.empty() ? 0 : b.pixels[size_t(y) * 100 + size_t(x)];
  }
  size_t Count(SceneOp op) const {
    return size_t(std::count_if(scene.items.begin(), scene.items.end(),
                                [op](const SceneItem& i) { return i.op == op; }));
  }
};

Built Build(const std::string& text) {
  Built built;
  std::string error;
  auto document =
      SvgDocument::Parse(reinterpret_cast<const uint8_t*>(text.data()), text.size(), &error);
  EXPECT_TRUE(document) << error;
  if (!document) return built;
  SvgBuilder builder(*document);
  builder.Build(&built.scene);
  built.warnings = builder.warnings();
  return built;
}

ImportResult Import(const std::string& text) {
  return ImportArt(ArtKind::kSvg, reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

constexpr uint32_t kRed = 0xFFFF0000, kGreen = 0xFF008000, kBlue = 0xFF0000FF, kBlack = 0xFF000000;

TEST(ImportSvg, FillsAreBlackUnlessTheySaySo) {
  Built b =
      Build(Svg("<rect width='50' height='100'/><rect x='50' width='50' height='50' "
                "fill='red'/><rect y='50' width='100' height='50' fill='none'/>"));
  EXPECT_EQ(b.At(25, 75), kBlack);
  EXPECT_EQ(b.At(75, 25), kRed);
  EXPECT_EQ(b.At(75, 75), 0u);
  EXPECT_TRUE(b.warnings.empty());
}

TEST(ImportSvg, TheCascadeOrdersItsSources) {
  Built b =
      Build(Svg("<style>rect{fill:green} .r{fill:red} #b{fill:blue} g > rect.i{fill:red!important}"
                "</style>"
                "<rect fill='black' width='10' height='10'/>"
                "<rect class='a r' x='10' width='10' height='10'/>"
                "<rect class='r' id='b' x='20' width='10' height='10'/>"
                "<rect class='r' style='fill:blue' x='30' width='10' height='10'/>"
                "<g><rect class='i' style='fill:blue' x='40' width='10' height='10'/></g>"));
  EXPECT_EQ(b.At(5, 5), kGreen);
  EXPECT_EQ(b.At(15, 5), kRed);
  EXPECT_EQ(b.At(25, 5), kBlue);
  EXPECT_EQ(b.At(35, 5), kBlue);
  EXPECT_EQ(b.At(45, 5), kRed);
}

TEST(ImportSvg, CurrentColorIsTheElementsOwn) {
  Built b =
      Build(Svg("<g fill='currentColor' color='red'><rect width='10' height='10'/>"
                "<rect color='blue' x='10' width='10' height='10'/></g>"));
  EXPECT_EQ(b.At(5, 5), kRed);
  EXPECT_EQ(b.At(15, 5), kBlue);
}

TEST(ImportSvg, NonzeroOverlapsStayFilled) {
  std::string two = "M10 10H60V60H10Z M40 40H90V90H40Z";
  Built b = Build(Svg("<path d='" + two + "'/>"));
  EXPECT_EQ(b.At(50, 50), kBlack);
  b = Build(Svg("<path fill-rule='evenodd' d='" + two + "'/>"));
  EXPECT_EQ(b.At(50, 50), 0u);
}

TEST(ImportSvg, LinesBecomeOutlines) {
  for (const char* style : {"stroke-linecap:butt", "stroke-linecap:round;stroke-linejoin:round",
                            "stroke-width:.5", "stroke-dasharray:5"}) {
    Built b = Build(Svg("<path d='M10 50H90V80' fill='none' stroke='red' stroke-width='4' style='" +
                        std::string(style) + "'/>"));
    EXPECT_EQ(b.Count(SceneOp::kStroke), 0u) << style;
    EXPECT_EQ(b.Count(SceneOp::kFill), 1u) << style;
  }
}

TEST(ImportSvg, LinesBeyondTheBudgetStayLines) {
  std::string scribble = "M0 0";
  for (int i = 0; i < 30000; i++) {
    scribble.append(1, ' ').append(std::to_string(i * 7919L % 100));
    scribble.append(1, ' ').append(std::to_string(i * 1299709L % 101));
  }
  Built b = Build(Svg("<path fill='none' stroke='red' d='" + scribble + "'/>"));
  EXPECT_EQ(b.Count(SceneOp::kStroke), 1u);
  EXPECT_EQ(b.warnings.size(), 1u);
}

TEST(ImportSvg, UseAndSymbolDrawWhatTheyReferTo) {
  Built b =
      Build(Svg("<defs><rect id='r' width='10' height='10'/><symbol id='s' "
                "viewBox='0 0 1 1'><rect width='1' height='1' fill='blue'/></symbol></defs>"
                "<use xlink:href='#r' x='20' fill='red'/>"
                "<use href='#s' x='50' y='50' width='40' height='40'/>"));
  EXPECT_EQ(b.At(5, 5), 0u);
  EXPECT_EQ(b.At(25, 5), kRed);
  EXPECT_EQ(b.At(70, 70), kBlue);
  EXPECT_EQ(b.At(95, 95), 0u);
}

TEST(ImportSvg, ReferencesThatCloseACircleEnd) {
  Built b =
      Build(Svg("<g id='a'><use href='#b'/><rect width='9' height='9' fill='red'/></g>"
                "<g id='b'><use href='#a'/></g>"));
  EXPECT_EQ(b.At(5, 5), kRed);
  EXPECT_FALSE(b.warnings.empty());
}

TEST(ImportSvg, ReferencesThatMultiplyAreBounded) {
  std::string body = "<g id='g0'><rect width='1' height='1'/></g>";
  for (int i = 1; i < 40; i++) {
    std::string use = "<use href='#g" + std::to_string(i - 1) + "'/>";
    body += "<g id='g" + std::to_string(i) + "'>" + use + use + use + "</g>";
  }
  auto start = std::chrono::steady_clock::now();
  ImportResult result = Import(Svg(body));
  EXPECT_TRUE(result.ok);
  EXPECT_FALSE(result.warnings.empty());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST(ImportSvg, GradientsKeepTheirGeometry) {
  Built b =
      Build(Svg("<linearGradient id='l' x1='0' x2='1'><stop stop-color='#f00'/><stop "
                "offset='1' stop-color='#00f'/></linearGradient>"
                "<radialGradient id='r' href='#l' gradientUnits='userSpaceOnUse' cx='50' "
                "cy='75' r='20' gradientTransform='translate(0 0)'/>"
                "<rect width='100' height='50' fill='url(#l)'/>"
                "<rect y='50' width='100' height='50' fill='url(#r)'/>"));
  ASSERT_EQ(b.scene.items.size(), 2u);
  EXPECT_EQ(b.scene.items[0].paint.kind, PaintKind::kLinear);
  EXPECT_EQ(b.scene.items[1].paint.kind, PaintKind::kRadial);
  EXPECT_NEAR(b.At(50, 25) >> 16 & 255, 127, 3);
  EXPECT_GT(b.At(50, 75) >> 16 & 255, 245u);
  EXPECT_EQ(b.At(90, 75), kBlue);
}

TEST(ImportSvg, GradientsWithoutExtentAreTheirLastStop) {
  std::string stops = "<stop stop-color='red'/><stop offset='1' stop-color='blue'/>";
  Built b = Build(Svg("<linearGradient id='l' x2='0'>" + stops +
                      "</linearGradient>"
                      "<radialGradient id='r' r='0'>" +
                      stops +
                      "</radialGradient>"
                      "<linearGradient id='n'/><linearGradient id='o'><stop stop-color='red'/>"
                      "</linearGradient>"
                      "<rect width='10' height='10' fill='url(#l)'/>"
                      "<rect x='10' width='10' height='10' fill='url(#r)'/>"
                      "<rect x='20' width='10' height='10' fill='url(#n)'/>"
                      "<rect x='30' width='10' height='10' fill='url(#o)'/>"
                      "<rect x='40' width='10' height='10' fill='url(#none) green'/>"));
  EXPECT_EQ(b.At(5, 5), kBlue);
  EXPECT_EQ(b.At(15, 5), kBlue);
  EXPECT_EQ(b.At(25, 5), 0u);
  EXPECT_EQ(b.At(35, 5), kRed);
  EXPECT_EQ(b.At(45, 5), kGreen);
}

TEST(ImportSvg, GradientsOfManyStopsAreCutToEight) {
  std::string stops;
  for (int i = 0; i <= 20; i++)
    stops += "<stop offset='" + std::to_string(i * 5) + "%' stop-color='" +
             (i % 2 ? "red" : "blue") + "'/>";
  Built b = Build(Svg("<linearGradient id='l'>" + stops +
                      "</linearGradient><rect width='100' height='100' fill='url(#l)'/>"));
  ASSERT_EQ(b.scene.items.size(), 1u);
  EXPECT_EQ(b.scene.items[0].paint.stops.size(), 8u);
  ASSERT_EQ(b.warnings.size(), 1u);
  EXPECT_EQ(b.warnings[0].count, 1u);
}

TEST(ImportSvg, OpacityOfAGroupShowsNoSeams) {
  Built b =
      Build(Svg("<g opacity='.5'><rect width='60' height='60' fill='red'/>"
                "<rect x='30' y='30' width='60' height='60' fill='red'/></g>"));
  EXPECT_EQ(b.At(10, 10), b.At(45, 45));
  EXPECT_NEAR(b.At(45, 45) >> 24, 128, 1);
  EXPECT_TRUE(b.scene.bitmaps.empty());
  // Parts that let through what is below them need pixels.
  b =
      Build(Svg("<g opacity='.5'><rect width='60' height='60' fill='red'/>"
                "<rect x='30' y='30' width='60' height='60' fill='blue' fill-opacity='.5'/></g>"));
  EXPECT_EQ(b.scene.bitmaps.size(), 1u);
  EXPECT_EQ(b.warnings.size(), 1u);
}

TEST(ImportSvg, ClipPathsBecomeBrackets) {
  Built b =
      Build(Svg("<clipPath id='c'><circle cx='50' cy='50' r='20'/></clipPath>"
                "<rect width='100' height='100' fill='red' clip-path='url(#c)'/>"
                "<rect width='10' height='10' fill='blue'/>"));
  EXPECT_EQ(b.Count(SceneOp::kBeginClip), 1u);
  EXPECT_EQ(b.Count(SceneOp::kEndClip), 1u);
  EXPECT_EQ(b.At(50, 50), kRed);
  EXPECT_EQ(b.At(50, 20), 0u);
  EXPECT_EQ(b.At(5, 5), kBlue);
}

TEST(ImportSvg, PartsOfAClipPathAddUp) {
  Built b =
      Build(Svg("<clipPath id='c'><rect width='60' height='60'/><rect x='40' y='40' "
                "width='60' height='60'/></clipPath>"
                "<rect width='100' height='100' fill='red' clip-path='url(#c)'/>"));
  EXPECT_EQ(b.At(50, 50), kRed);
  EXPECT_EQ(b.At(80, 20), 0u);
}

TEST(ImportSvg, AnEmptyClipPathShowsNothing) {
  Built b = Build(Svg("<clipPath id='c'/><rect width='100' height='100' clip-path='url(#c)'/>"));
  EXPECT_TRUE(b.scene.items.empty());
}

TEST(ImportSvg, BlursMasksAndPatternsBecomeBitmaps) {
  Built b =
      Build(Svg("<filter id='f'><feGaussianBlur stdDeviation='4'/></filter>"
                "<rect x='20' y='20' width='60' height='60' filter='url(#f)'/>"));
  ASSERT_EQ(b.scene.bitmaps.size(), 1u);
  EXPECT_NEAR(b.At(50, 50) >> 24, 255, 2);
  EXPECT_NEAR(b.At(20, 50) >> 24, 140, 25);
  b =
      Build(Svg("<linearGradient id='l'><stop stop-color='white'/><stop offset='1'/>"
                "</linearGradient><mask id='m'><rect width='100' height='100' fill='url(#l)'/>"
                "</mask><rect width='100' height='100' fill='red' mask='url(#m)'/>"));
  ASSERT_EQ(b.scene.bitmaps.size(), 1u);
  EXPECT_NEAR(b.At(2, 50) >> 24, 250, 8);
  EXPECT_NEAR(b.At(50, 50) >> 24, 128, 4);
  b =
      Build(Svg("<pattern id='p' width='20' height='20' patternUnits='userSpaceOnUse'>"
                "<rect width='10' height='20' fill='red'/></pattern>"
                "<rect width='100' height='100' fill='url(#p)'/>"));
  ASSERT_EQ(b.scene.bitmaps.size(), 1u);
  EXPECT_EQ(b.At(45, 50), kRed);
  EXPECT_EQ(b.At(55, 50), 0u);
}

TEST(ImportSvg, AWhiteMaskIsAClip) {
  Built b =
      Build(Svg("<mask id='m'><rect x='20' y='20' width='20' height='20' fill='white'/>"
                "</mask><rect width='100' height='100' fill='red' mask='url(#m)'/>"));
  EXPECT_TRUE(b.scene.bitmaps.empty());
  EXPECT_EQ(b.Count(SceneOp::kBeginClip), 1u);
  EXPECT_EQ(b.At(30, 30), kRed);
  EXPECT_EQ(b.At(50, 50), 0u);
}

TEST(ImportSvg, DisplayVisibilityAndSwitchChoose) {
  Built b =
      Build(Svg("<rect display='none' width='10' height='10'/>"
                "<g visibility='hidden'><rect x='10' width='10' height='10'/>"
                "<rect visibility='visible' x='20' width='10' height='10' fill='red'/></g>"
                "<switch><rect requiredExtensions='http://nowhere' x='30' width='10' height='10'/>"
                "<rect systemLanguage='fr' x='30' width='10' height='10'/>"
                "<rect systemLanguage='en-GB' x='30' width='10' height='10' fill='blue'/>"
                "<rect x='30' width='10' height='10'/></switch>"));
  EXPECT_EQ(b.At(5, 5), 0u);
  EXPECT_EQ(b.At(15, 5), 0u);
  EXPECT_EQ(b.At(25, 5), kRed);
  EXPECT_EQ(b.At(35, 5), kBlue);
}

TEST(ImportSvg, ViewBoxesScaleAndNestedViewportsClip) {
  Built b =
      Build(Svg("<svg x='1' y='1' width='4' height='4'><rect width='9' height='9' "
                "fill='red'/></svg>",
                "viewBox='0 0 10 10'"));
  EXPECT_EQ(b.At(15, 15), kRed);
  EXPECT_EQ(b.At(45, 45), kRed);
  EXPECT_EQ(b.At(55, 55), 0u);
  EXPECT_EQ(b.scene.width, 100);
}

TEST(ImportSvg, WhatCannotBeExpressedIsListedOnce) {
  ImportResult result =
      Import(Svg("<text>a</text><text>b</text><text> </text><foreignObject/>"
                 "<rect width='5' height='5'><animate/></rect><animate/>"
                 "<image href='http://nowhere/picture.png' width='5' height='5'/>"));
  EXPECT_TRUE(result.ok);
  std::vector<std::string> list;
  for (const ImportWarning& w : result.warnings)
    list.push_back(w.what + " " + std::to_string(w.count));
  EXPECT_EQ(list, (std::vector<std::string>{"text 2", "foreignObject 1",
                                            "animation: the picture stands still 1",
                                            "image outside the file 1"}));
}

TEST(ImportSvg, ErrorsTellTheLine) {
  ImportResult result = Import("<svg>\n<g>\n</svg>");
  EXPECT_FALSE(result.ok);
  EXPECT_EQ(result.error.substr(0, 7), "line 3:") << result.error;
  EXPECT_TRUE(result.movie.empty());
  EXPECT_FALSE(Import("").ok);
  EXPECT_FALSE(Import("<html/>").ok);
  EXPECT_FALSE(Import("not a picture").ok);
}

TEST(ImportSvg, EntitiesOfTheDocumentWorkAndOthersAreNeverRead) {
  std::string head = "<!DOCTYPE svg [<!ENTITY red 'red'><!ENTITY file SYSTEM '/etc/passwd'>]>";
  std::string text = Svg("<rect width='10' height='10' fill='&red;'/>");
  Built b = Build(head + text);
  EXPECT_EQ(b.At(5, 5), kRed);
  ImportResult result = Import(head + Svg("<text>&file;</text>"));
  EXPECT_TRUE(!result.ok || result.movie.size() < 100);
}

TEST(ImportSvg, EntitiesThatMultiplyAreRefused) {
  std::string head = "<!DOCTYPE svg [<!ENTITY e0 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa'>";
  for (int i = 1; i < 30; i++) {
    std::string last = "&e" + std::to_string(i - 1) + ";";
    head += "<!ENTITY e" + std::to_string(i) + " '" + last + last + last + last + last + "'>";
  }
  EXPECT_FALSE(Import(head + "]>" + Svg("<text>&e29;</text>")).ok);
  EXPECT_FALSE(Import(head + "]>" + Svg("<text x='&e29;'/>")).ok);
}

TEST(ImportSvg, DeepNestingIsSurvived) {
  std::string open, close;
  for (int i = 0; i < 200; i++) open += "<g>", close += "</g>";
  ImportResult result = Import(Svg(open + "<rect width='9' height='9'/>" + close));
  EXPECT_TRUE(result.ok);
  EXPECT_FALSE(result.warnings.empty());
  for (int i = 0; i < 10000; i++) open += "<g>";
  EXPECT_FALSE(Import(Svg(open)).ok);
}

TEST(ImportSvg, PaintServersThatReferToThemselvesEnd) {
  ImportResult result =
      Import(Svg("<pattern id='p' width='9' height='9' patternUnits='userSpaceOnUse' href='#q'>"
                 "<rect width='9' height='9' fill='url(#p)'/><rect width='9' height='9' "
                 "fill='url(#p)'/></pattern><pattern id='q' href='#p'/>"
                 "<linearGradient id='l' href='#l'/>"
                 "<mask id='m'><rect width='9' height='9' mask='url(#m)'/></mask>"
                 "<clipPath id='c' clip-path='url(#c)'><rect width='9' height='9'/></clipPath>"
                 "<rect width='90' height='90' fill='url(#p)' stroke='url(#l)'/>"
                 "<rect width='90' height='90' mask='url(#m)' clip-path='url(#c)'/>"));
  EXPECT_TRUE(result.ok);
}

TEST(ImportSvg, OddSizesGiveFramesThatFit) {
  auto size = [](const std::string& attributes) {
    Built b = Build("<svg xmlns='http://www.w3.org/2000/svg' " + attributes + "/>");
    return std::pair(b.scene.width, b.scene.height);
  };
  EXPECT_EQ(size("width='48' height='32'"), std::pair(48.0, 32.0));
  EXPECT_EQ(size("viewBox='0 0 72 36'"), std::pair(72.0, 36.0));
  EXPECT_EQ(size("viewBox='0 0 72 36' height='18'"), std::pair(36.0, 18.0));
  EXPECT_EQ(size("width='50%' height='100%' viewBox='0 0 10 10'"), std::pair(5.0, 10.0));
  EXPECT_EQ(size(""), std::pair(300.0, 150.0));
  EXPECT_EQ(size("width='-1' height='0'"), std::pair(300.0, 150.0));
  EXPECT_EQ(size("width='1e8' height='5e7'"), std::pair(8191.0, 4095.5));
  EXPECT_EQ(size("width='.001' height='.001'"), std::pair(1.0, 1.0));
}

TEST(ImportSvg, WildNumbersAreSurvived) {
  for (const char* number : {"1e308", "-1e308", "1e9", "1e-300", "nan", "inf", "99999999"}) {
    std::string n = number;
    ImportResult result =
        Import(Svg("<g transform='scale(" + n + ") rotate(" + n + ")'><rect x='" + n + "' width='" +
                       n + "' height='" + n + "' stroke='red' stroke-width='" + n + "' rx='" + n +
                       "'/></g>"
                       "<path d='M" +
                       n + " 0C0 " + n + " 5 5 " + n + " " + n +
                       "' stroke='red' "
                       "stroke-dasharray='" +
                       n + "'/><circle r='" + n +
                       "' fill='url(#g)'/>"
                       "<filter id='f'><feGaussianBlur stdDeviation='" +
                       n +
                       "'/></filter>"
                       "<rect width='50' height='50' filter='url(#f)'/>"
                       "<radialGradient id='g' r='" +
                       n + "' fx='" + n + "'><stop/><stop offset='" + n + "'/></radialGradient>",
                   "viewBox='0 0 " + n + " " + n + "'"));
    EXPECT_TRUE(result.ok) << n << " " << result.error;
  }
}

TEST(ImportSvg, EmbeddedPicturesAreDecoded) {
  // One red pixel.
  std::string png =
      "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGP4z8AAAAMBAQDJ/"
      "pLvAAAAAElFTkSuQmCC";
  Built b = Build(Svg("<image width='50' height='50' href='data:image/png;base64," + png + "'/>"));
  ASSERT_EQ(b.scene.bitmaps.size(), 1u);
  EXPECT_EQ(b.At(25, 25), kRed);
  EXPECT_EQ(b.At(75, 75), 0u);
  b = Build(Svg("<image width='50' height='50' href='data:image/png;base64,iVBORw0KGgo='/>"));
  EXPECT_TRUE(b.scene.bitmaps.empty());
  EXPECT_EQ(b.warnings.size(), 1u);
}

}  // namespace
}  // namespace vexel::author
