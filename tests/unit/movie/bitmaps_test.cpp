// Bitmap characters: lossless and JPEG ones, their budgets and their damage.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <jpeglib.h>

#include "author/writer.h"
#include "movie/budget.h"
#include "movie/script_player.h"
#include "raster/color_table.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::BitWriter;
using author::Bytes;
using author::Color;
using author::JpegParts;
using author::LosslessBody;
using author::MovieWriter;
using author::Picture;
using author::TagForm;

class Bitmaps : public ::testing::Test {
 protected:
  // Runs the tags of a movie of its own.
  void Run(const MovieWriter& movie) {
    const Bytes bytes = movie.Finish();
    player.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    while (player.DoTag() == kScriptOk) {
    }
  }
  SCharacter* Define(int code, const Bytes& body, TagForm form = TagForm::kAuto) {
    BitWriter out;
    out.U16(1);
    out.Append(body);
    MovieWriter movie(10, 10);
    movie.Tag(code, out.bytes(), form);
    Run(movie);
    return player.FindCharacter(1);
  }
  const SBitmapCore& Build(int code, const Bytes& body) {
    SCharacter* character = Define(code, body);
    player.BuildBits(character);
    return character->bits;
  }
  static uint32_t Word(const SBitmapCore& bits, int x, int y) {
    uint32_t word;
    memcpy(&word, bits.baseAddr + y * bits.rowBytes + 4 * x, sizeof word);
    return word;
  }
  static uint16_t Half(const SBitmapCore& bits, int x, int y) {
    uint16_t half;
    memcpy(&half, bits.baseAddr + y * bits.rowBytes + 2 * x, sizeof half);
    return half;
  }
  static Bytes Pixels(const SBitmapCore& bits) {
    return Bytes(bits.baseAddr, bits.baseAddr + int64_t{bits.rowBytes} * bits.height);
  }
  static Picture Speckled(uint16_t width, uint16_t height) {
    Picture picture(width, height);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        picture.At(x, y) = {static_cast<uint8_t>(x * 9), static_cast<uint8_t>(y * 7),
                            static_cast<uint8_t>(x * y)};
      }
    }
    return picture;
  }

  ScriptPlayer player;
};

using LosslessBitmaps = Bitmaps;
using JpegBitmaps = Bitmaps;

TEST_F(LosslessBitmaps, PixelsOf32BitsAreBigEndianInTheFile) {
  LosslessBody body;
  body.width = 2;
  body.height = 2;
  body.rows = {255, 1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 128, 10, 11, 12};
  const SBitmapCore& bits = Build(20, author::EncodeLossless(body, false));
  ASSERT_NE(bits.baseAddr, nullptr);
  EXPECT_EQ(Word(bits, 0, 0), 0xFF010203u);
  EXPECT_EQ(Word(bits, 1, 1), 0x800A0B0Cu);
  EXPECT_FALSE(bits.transparent);
}

TEST_F(LosslessBitmaps, PixelsOf16BitsAreBigEndianInTheFile) {
  LosslessBody body;
  body.format = author::kBitmap16;
  body.width = 3;
  body.height = 1;
  body.rows = {0x12, 0x34, 0x56, 0x78, 0x7F, 0xFF, 0, 0};
  const SBitmapCore& bits = Build(20, author::EncodeLossless(body, false));
  EXPECT_EQ(Half(bits, 0, 0), 0x1234);
  EXPECT_EQ(Half(bits, 1, 0), 0x5678);
  EXPECT_EQ(Half(bits, 2, 0), 0x7FFF);
}

TEST_F(LosslessBitmaps, CountByteOf255Is256Colors) {
  std::vector<Color> table;
  std::vector<uint8_t> indexes;
  for (int i = 0; i < 256; ++i) {
    table.push_back({static_cast<uint8_t>(i), 1, 2});
    indexes.push_back(static_cast<uint8_t>(255 - i));
  }
  const LosslessBody body = author::LosslessFromIndexes(author::kBitmap8, 16, 16, indexes, table);
  const Bytes encoded = author::EncodeLossless(body, false);
  EXPECT_EQ(encoded[5], 255);
  const SBitmapCore& bits = Build(20, encoded);
  ASSERT_NE(bits.cTab, nullptr);
  EXPECT_EQ(bits.cTab->n, 256);
  EXPECT_EQ(bits.cTab->colors[255], 0xFFFF0102u);
  EXPECT_EQ(bits.baseAddr[0], 255);
  EXPECT_EQ(bits.baseAddr[255], 0);
}

TEST_F(LosslessBitmaps, IndexedFormatsOfEveryWidth) {
  for (int format = 0; format < 4; ++format) {
    player.ClearScript();
    const int colors = 1 << (1 << format);
    std::vector<Color> table;
    std::vector<uint8_t> indexes;
    for (int i = 0; i < std::min(colors, 256); ++i)
      table.push_back({0, 0, static_cast<uint8_t>(i)});
    for (int i = 0; i < 21; ++i) indexes.push_back(static_cast<uint8_t>(i * 5 % colors));
    const LosslessBody body = author::LosslessFromIndexes(format, 7, 3, indexes, table);
    const SBitmapCore& bits = Build(20, author::EncodeLossless(body, false));
    for (int i = 0; i < 21; ++i) {
      RGBI pixel;
      bits.GetRGBPixel(i % 7, i / 7, &pixel);
      EXPECT_EQ(pixel.blue, indexes[static_cast<size_t>(i)]) << "format " << format;
      EXPECT_EQ(pixel.alpha, 255);
    }
  }
}

TEST_F(LosslessBitmaps, AlphaFormIsTransparentWithAFourthByteInItsTable) {
  const LosslessBody body =
      author::LosslessFromIndexes(author::kBitmap8, 1, 1, {0}, {{1, 2, 3, 4}, {5, 6, 7, 255}});
  const SBitmapCore& bits = Build(36, author::EncodeLossless(body, true));
  EXPECT_TRUE(bits.transparent);
  EXPECT_EQ(bits.cTab->n, 2);
  EXPECT_EQ(bits.cTab->colors[0], 0x04010203u);
}

TEST_F(LosslessBitmaps, PixelsThatTheDataDoesNotReachAreZero) {
  LosslessBody body;
  body.width = 4;
  body.height = 2;
  body.rows = {255, 1, 2, 3, 255, 4, 5};
  const SBitmapCore& bits = Build(20, author::EncodeLossless(body, false));
  EXPECT_EQ(Word(bits, 0, 0), 0xFF010203u);
  EXPECT_EQ(Word(bits, 1, 0), 0xFF040500u);
  EXPECT_EQ(Word(bits, 2, 0), 0u);
  EXPECT_EQ(Word(bits, 3, 1), 0u);
}

TEST_F(LosslessBitmaps, CutStreamKeepsWhatItHeld) {
  LosslessBody body;
  body.width = 64;
  body.height = 64;
  for (int i = 0; i < 64 * 64 * 4; ++i) body.rows.push_back(static_cast<uint8_t>(i * i >> 3));
  const Bytes whole = author::EncodeLossless(body, false);
  const Bytes full = Pixels(Build(20, whole));
  for (size_t cut = 5; cut < whole.size(); cut += 97) {
    player.ClearScript();
    const SBitmapCore& bits = Build(20, Bytes(whole.begin(), whole.begin() + ptrdiff_t(cut)));
    ASSERT_NE(bits.baseAddr, nullptr);
    // Nothing but the whole picture's pixels from the top, then zeros.
    const Bytes got = Pixels(bits);
    const auto differ = std::mismatch(got.begin(), got.end(), full.begin());
    for (auto it = differ.first + 4; it < got.end(); ++it) ASSERT_EQ(*it, 0);
  }
}

TEST_F(LosslessBitmaps, TableEntriesThatTheDataDoesNotReachAreZero) {
  BitWriter out;
  out.U8(author::kBitmap8);
  out.U16(1);
  out.U16(1);
  out.U8(3);
  out.Append(author::Deflate(Bytes{1, 2, 3, 4, 5}));
  const SBitmapCore& bits = Build(20, out.bytes());
  ASSERT_NE(bits.cTab, nullptr);
  EXPECT_EQ(bits.cTab->n, 4);
  EXPECT_EQ(bits.cTab->colors[0], 0xFF010203u);
  EXPECT_EQ(bits.cTab->colors[1], 0u);
  EXPECT_EQ(bits.cTab->colors[3], 0u);
}

TEST_F(LosslessBitmaps, SurplusIsPassedOver) {
  LosslessBody body;
  body.width = 1;
  body.height = 1;
  body.rows.assign(100000, 0x55);
  EXPECT_EQ(Word(Build(20, author::EncodeLossless(body, false)), 0, 0), 0x55555555u);
}

TEST_F(LosslessBitmaps, ImpossibleSizesAndFormatsHaveNoPixels) {
  struct Case {
    uint8_t format;
    uint16_t width, height;
  };
  for (const Case& c : {Case{5, 0, 1},
                        {5, 1, 0},
                        {5, 32768, 1},
                        {5, 1, 40000},
                        {6, 1, 1},
                        {255, 1, 1},
                        {5, 32767, 32767}}) {
    player.ClearScript();
    BitWriter out;
    out.U8(c.format);
    out.U16(c.width);
    out.U16(c.height);
    out.Append(author::Deflate(Bytes(16)));
    EXPECT_EQ(Build(20, out.bytes()).baseAddr, nullptr);
  }
}

TEST_F(LosslessBitmaps, StreamThatIsNoneGivesBlankPixels) {
  const SBitmapCore& bits = Build(20, Bytes{5, 2, 0, 2, 0, 1, 2, 3, 4, 5, 6, 7});
  ASSERT_NE(bits.baseAddr, nullptr);
  EXPECT_EQ(Pixels(bits), Bytes(16, 0));
}

TEST_F(LosslessBitmaps, ShortHeaderDecodesAsTheLongOne) {
  LosslessBody body;
  body.width = 1;
  body.height = 1;
  body.rows = {255, 1, 2, 3};
  SCharacter* character = Define(20, author::EncodeLossless(body, false), TagForm::kShort);
  player.BuildBits(character);
  ASSERT_NE(character->bits.baseAddr, nullptr);
  EXPECT_EQ(Word(character->bits, 0, 0), 0xFF010203u);
}

TEST_F(JpegBitmaps, FullStreamGives16BitPixels) {
  const SBitmapCore& bits = Build(21, author::EncodeJpeg(Picture(16, 8, Color{255, 0, 128}), 100));
  ASSERT_NE(bits.baseAddr, nullptr);
  EXPECT_EQ(bits.bmFormat, bm16Bit);
  EXPECT_EQ(bits.width, 16);
  EXPECT_EQ(bits.height, 8);
  RGBI pixel;
  bits.GetRGBPixel(3, 3, &pixel);
  EXPECT_GE(pixel.red, 248);
  EXPECT_LE(pixel.green, 8);
  EXPECT_NEAR(pixel.blue, 128, 8);
}

TEST_F(JpegBitmaps, GreyServesAsAllThree) {
  const SBitmapCore& bits =
      Build(21, author::EncodeGreyJpeg(Picture(8, 8, Color{100, 100, 100}), 100));
  ASSERT_NE(bits.baseAddr, nullptr);
  const int grey = 100 >> 3;
  EXPECT_EQ(Half(bits, 4, 4), grey << 10 | grey << 5 | grey);
}

TEST_F(JpegBitmaps, SharedTablesServeImagesWithoutTheirOwn) {
  const Picture picture = Speckled(32, 16);
  const Bytes whole = Pixels(Build(21, author::EncodeJpeg(picture, 75)));
  player.ClearScript();
  MovieWriter movie(10, 10);
  movie.DefineJPEGTables(author::EncodeJpeg(picture, 75, JpegParts::kTablesOnly));
  movie.DefineBits(1, 6, author::EncodeJpeg(picture, 75, JpegParts::kImageOnly));
  movie.DefineBits(2, 6, author::EncodeJpeg(picture, 75, JpegParts::kImageOnly));
  Run(movie);
  for (uint16_t id : {1, 2}) {
    SCharacter* character = player.FindCharacter(id);
    player.BuildBits(character);
    ASSERT_NE(character->bits.baseAddr, nullptr);
    EXPECT_EQ(Pixels(character->bits), whole);
  }
}

TEST_F(JpegBitmaps, ImageBeforeAnySharedTablesStaysEmptyUntilThereAreSome) {
  const Picture picture = Speckled(16, 16);
  SCharacter* character = Define(6, author::EncodeJpeg(picture, 75, JpegParts::kImageOnly));
  player.BuildBits(character);
  EXPECT_EQ(character->bits.baseAddr, nullptr);
  EXPECT_FALSE(character->damaged);
}

TEST_F(JpegBitmaps, SecondSharedTablesChangeNothing) {
  const Picture picture = Speckled(32, 16);
  MovieWriter movie(10, 10);
  movie.DefineJPEGTables(author::EncodeJpeg(picture, 90, JpegParts::kTablesOnly));
  movie.DefineJPEGTables(author::EncodeJpeg(picture, 10, JpegParts::kTablesOnly));
  movie.DefineBits(1, 6, author::EncodeJpeg(picture, 90, JpegParts::kImageOnly));
  Run(movie);
  player.BuildBits(player.FindCharacter(1));
  const Bytes shared = Pixels(player.FindCharacter(1)->bits);
  player.ClearScript();
  EXPECT_EQ(shared, Pixels(Build(21, author::EncodeJpeg(picture, 90))));
}

TEST_F(JpegBitmaps, SharedTablesMayHoldAWholeStream) {
  const Picture picture = Speckled(16, 16);
  MovieWriter movie(10, 10);
  movie.DefineJPEGTables(author::EncodeJpeg(picture, 75));
  movie.DefineBits(1, 6, author::EncodeJpeg(picture, 75, JpegParts::kImageOnly));
  Run(movie);
  player.BuildBits(player.FindCharacter(1));
  EXPECT_NE(player.FindCharacter(1)->bits.baseAddr, nullptr);
}

TEST_F(JpegBitmaps, TablesOfItsOwnMayComeAsAStreamInFront) {
  const Picture picture = Speckled(16, 16);
  const Bytes whole = Pixels(Build(21, author::EncodeJpeg(picture, 75)));
  player.ClearScript();
  Bytes both = author::EncodeJpeg(picture, 75, JpegParts::kTablesOnly);
  const Bytes image = author::EncodeJpeg(picture, 75, JpegParts::kImageOnly);
  both.insert(both.end(), image.begin(), image.end());
  const SBitmapCore& bits = Build(21, both);
  ASSERT_NE(bits.baseAddr, nullptr);
  EXPECT_EQ(Pixels(bits), whole);
}

TEST_F(JpegBitmaps, CutDataDecodesWhatThereIs) {
  const Picture picture = Speckled(64, 64);
  const Bytes jpeg = author::EncodeJpeg(picture, 90);
  const Bytes whole = Pixels(Build(21, jpeg));
  player.ClearScript();
  const SBitmapCore& bits =
      Build(21, Bytes(jpeg.begin(), jpeg.begin() + ptrdiff_t(jpeg.size() * 3 / 4)));
  ASSERT_NE(bits.baseAddr, nullptr);
  const Bytes cut = Pixels(bits);
  EXPECT_NE(cut, whole);
  // The upper rows are there.
  EXPECT_TRUE(std::equal(cut.begin(), cut.begin() + 16 * 64 * 2, whole.begin()));
}

TEST_F(JpegBitmaps, EveryCutIsSurvived) {
  const Bytes jpeg = author::EncodeJpeg(Speckled(16, 16), 50);
  for (size_t cut = 0; cut < jpeg.size(); ++cut) {
    player.ClearScript();
    Build(21, Bytes(jpeg.begin(), jpeg.begin() + ptrdiff_t(cut)));
  }
}

TEST_F(JpegBitmaps, EveryBrokenByteIsSurvived) {
  const Bytes jpeg = author::EncodeJpeg(Speckled(16, 16), 50);
  for (size_t at = 0; at < jpeg.size(); ++at) {
    for (uint8_t value : {0x00, 0xFF, 0xD8}) {
      Bytes broken = jpeg;
      broken[at] = value;
      player.ClearScript();
      Build(21, broken);
    }
  }
}

TEST_F(JpegBitmaps, FatalDamageLeavesNoPixelsAndIsNotTriedAgain) {
  SCharacter* character = Define(21, Bytes{0xFF, 0xD8, 0xFF, 0xC0, 0, 3, 9, 9});
  player.BuildBits(character);
  EXPECT_EQ(character->bits.baseAddr, nullptr);
  EXPECT_TRUE(character->damaged);
}

TEST_F(JpegBitmaps, FatalDamageKeepsTheSharedTables) {
  const Picture picture = Speckled(16, 16);
  MovieWriter movie(10, 10);
  movie.DefineJPEGTables(author::EncodeJpeg(picture, 75, JpegParts::kTablesOnly));
  movie.DefineBits(1, 6, Bytes{0xFF, 0xD8, 0xFF, 0xC0, 0, 3, 9, 9});
  movie.DefineBits(2, 6, author::EncodeJpeg(picture, 75, JpegParts::kImageOnly));
  Run(movie);
  player.BuildBits(player.FindCharacter(1));
  player.BuildBits(player.FindCharacter(2));
  EXPECT_EQ(player.FindCharacter(1)->bits.baseAddr, nullptr);
  EXPECT_NE(player.FindCharacter(2)->bits.baseAddr, nullptr);
}

// Streams that the movie writer has no use for. `components` of 8 x 8 samples;
// `scans` above 0 makes it progressive and repeats its one scan so often.
Bytes OddJpeg(int components, J_COLOR_SPACE space, int scans = 0) {
  jpeg_compress_struct cinfo;
  jpeg_error_mgr errors;
  cinfo.err = jpeg_std_error(&errors);
  jpeg_create_compress(&cinfo);
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&cinfo, &memory, &size);
  cinfo.image_width = 8;
  cinfo.image_height = 8;
  cinfo.input_components = components;
  cinfo.in_color_space = space;
  jpeg_set_defaults(&cinfo);
  const jpeg_scan_info dcOnly = {1, {0, 0, 0, 0}, 0, 0, 0, 0};
  if (scans > 0) {
    cinfo.scan_info = &dcOnly;
    cinfo.num_scans = 1;
  }
  jpeg_start_compress(&cinfo, TRUE);
  Bytes samples(static_cast<size_t>(8 * components), 100);
  JSAMPROW row = samples.data();
  for (int y = 0; y < 8; ++y) jpeg_write_scanlines(&cinfo, &row, 1);
  jpeg_finish_compress(&cinfo);
  jpeg_destroy_compress(&cinfo);
  Bytes jpeg(memory, memory + size);
  free(memory);
  const Bytes marker = {0xFF, 0xDA};
  const auto at = std::search(jpeg.begin(), jpeg.end(), marker.begin(), marker.end());
  const Bytes scan(at, jpeg.end() - 2);
  for (int i = 1; i < scans; ++i) jpeg.insert(jpeg.end() - 2, scan.begin(), scan.end());
  return jpeg;
}

TEST_F(JpegBitmaps, FourComponentsHaveNoPixels) {
  EXPECT_EQ(Build(21, OddJpeg(4, JCS_CMYK)).baseAddr, nullptr);
}

TEST_F(JpegBitmaps, TwoComponentsHaveNoPixels) {
  EXPECT_EQ(Build(21, OddJpeg(2, JCS_UNKNOWN)).baseAddr, nullptr);
}

TEST_F(JpegBitmaps, ProgressiveOnesDecodeAndEndlessScansAreAbandoned) {
  EXPECT_NE(Build(21, OddJpeg(1, JCS_GRAYSCALE, 1)).baseAddr, nullptr);
  player.ClearScript();
  EXPECT_NE(Build(21, OddJpeg(1, JCS_GRAYSCALE, 500)).baseAddr, nullptr);
  player.ClearScript();
  EXPECT_EQ(Build(21, OddJpeg(1, JCS_GRAYSCALE, 520)).baseAddr, nullptr);
}

TEST_F(JpegBitmaps, TooLargeSidesHaveNoPixels) {
  Bytes jpeg = author::EncodeJpeg(Picture(8, 8), 50);
  // The frame header: marker, length, precision, height, width.
  const Bytes marker = {0xFF, 0xC0};
  const auto frame = std::search(jpeg.begin(), jpeg.end(), marker.begin(), marker.end());
  ASSERT_NE(frame, jpeg.end());
  frame[5] = 0xFF;
  frame[7] = 0xFF;
  EXPECT_EQ(Build(21, jpeg).baseAddr, nullptr);
}

TEST_F(JpegBitmaps, ColorsAboveTheirAlphaAreLoweredToIt) {
  const Bytes jpeg = author::EncodeGreyJpeg(Picture(8, 8, Color{200, 200, 200}), 100);
  Bytes alpha(64, 255);
  alpha[0] = 100;
  alpha[1] = 0;
  alpha[2] = 200;
  alpha[63] = 7;
  const SBitmapCore& bits = Build(35, author::EncodeJpegAlpha(jpeg, alpha));
  ASSERT_NE(bits.baseAddr, nullptr);
  EXPECT_EQ(bits.bmFormat, bm32Bit);
  EXPECT_TRUE(bits.transparent);
  EXPECT_EQ(Word(bits, 0, 0), 0x64646464u);
  EXPECT_EQ(Word(bits, 1, 0), 0u);
  EXPECT_EQ(Word(bits, 2, 0), 0xC8C8C8C8u);
  EXPECT_EQ(Word(bits, 3, 0), 0xFFC8C8C8u);
  EXPECT_EQ(Word(bits, 7, 7), 0x07070707u);
}

TEST_F(JpegBitmaps, AlphaThatTheDataDoesNotReachStays255) {
  const Bytes jpeg = author::EncodeGreyJpeg(Picture(80, 80, Color{200, 200, 200}), 100);
  const SBitmapCore& bits = Build(35, author::EncodeJpegAlpha(jpeg, Bytes(5000, 10)));
  EXPECT_EQ(Word(bits, 0, 0), 0x0A0A0A0Au);
  EXPECT_EQ(Word(bits, 4999 % 80, 4999 / 80), 0x0A0A0A0Au);
  EXPECT_EQ(Word(bits, 5000 % 80, 5000 / 80), 0xFFC8C8C8u);
}

TEST_F(JpegBitmaps, SurplusAlphaStopsAtTheLastPixel) {
  const Bytes jpeg = author::EncodeGreyJpeg(Picture(8, 8, Color{200, 200, 200}), 100);
  const SBitmapCore& bits = Build(35, author::EncodeJpegAlpha(jpeg, Bytes(100000, 10)));
  EXPECT_EQ(Pixels(bits), Bytes(256, 10));
}

TEST_F(JpegBitmaps, AlphaStartsAtTheStatedEndWhereverTheDecoderStopped) {
  Bytes jpeg = author::EncodeGreyJpeg(Picture(8, 8, Color{200, 200, 200}), 100);
  jpeg.insert(jpeg.end(), 3000, 0xAB);
  const SBitmapCore& bits = Build(35, author::EncodeJpegAlpha(jpeg, Bytes(64, 10)));
  EXPECT_EQ(Word(bits, 0, 0), 0x0A0A0A0Au);
}

TEST_F(JpegBitmaps, LyingStreamLengthIsCutAtTheTag) {
  const Bytes jpeg = author::EncodeGreyJpeg(Picture(8, 8, Color{200, 200, 200}), 100);
  for (uint32_t length : {0xFFFFFFFFu, 0x7FFFFFFFu, 100000u}) {
    player.ClearScript();
    BitWriter out;
    out.U32(length);
    out.Append(jpeg);
    const SBitmapCore& bits = Build(35, out.bytes());
    ASSERT_NE(bits.baseAddr, nullptr);
    EXPECT_EQ(Word(bits, 0, 0), 0xFFC8C8C8u);
  }
}

TEST_F(Bitmaps, FreeCacheAndBuildGiveTheSamePixels) {
  MovieWriter movie(10, 10);
  movie.DefineLossless(1, Speckled(20, 10), false);
  movie.DefineJpeg(2, author::EncodeJpeg(Speckled(20, 10), 80));
  movie.DefineJPEGTables(author::EncodeJpeg(Speckled(20, 10), 75, JpegParts::kTablesOnly));
  movie.DefineBits(3, 6, author::EncodeJpeg(Speckled(20, 10), 75, JpegParts::kImageOnly));
  Run(movie);
  for (uint16_t id : {1, 2, 3}) {
    SCharacter* character = player.FindCharacter(id);
    player.BuildBits(character);
    const Bytes before = Pixels(character->bits);
    player.BuildBits(character);
    player.FreeCache();
    EXPECT_EQ(character->bits.baseAddr, nullptr);
    player.BuildBits(character);
    EXPECT_EQ(Pixels(character->bits), before);
  }
}

TEST_F(Bitmaps, OtherTagsBuildNothing) {
  SCharacter* character = Define(20, Bytes{5, 1, 0, 1, 0});
  character->data.bytes[0] = static_cast<uint8_t>(character->data.bytes[0] ^ 0x80);  // code 22
  player.BuildBits(character);
  EXPECT_EQ(character->bits.baseAddr, nullptr);
}

TEST_F(Bitmaps, DecodedBytesHaveABudgetForAllLayers) {
  test::TestPlayer root(10, 10);
  ScriptPlayer* layer = root.OpenLayer(1, false);
  ASSERT_NE(layer, nullptr);
  // 8192 x 8192 x 4 is a quarter of the budget; zeroed pages are not touched.
  ScriptPlayer* owners[] = {&root, layer};
  for (uint16_t i = 0; i < 4; ++i) {
    SCharacter* character = owners[i % 2]->CreateCharacter(i);
    EXPECT_TRUE(character->player->CreateBits(character, bm32Bit, 8192, 8192, nullptr));
  }
  SCharacter* late = root.CreateCharacter(9);
  EXPECT_FALSE(root.CreateBits(late, bm32Bit, 8, 8, nullptr));
  layer->FreeCache();
  EXPECT_TRUE(root.CreateBits(late, bm32Bit, 8, 8, nullptr));
  EXPECT_FALSE(root.CreateBits(root.CreateCharacter(10), bm16Bit, 32767, 2049, nullptr));
}

TEST_F(Bitmaps, FreedBitmapsMakeRoomOnceColorsLetGo) {
  SCharacter* character = player.CreateCharacter(1);
  ASSERT_TRUE(player.CreateBits(character, bm32Bit, 8192, 8192, nullptr));
  character->bits.useCount = 1;
  player.FreeCharacter(1);
  character->bits.useCount = 0;
  for (uint16_t i = 2; i < 6; ++i) {
    EXPECT_TRUE(player.CreateBits(player.CreateCharacter(i), bm32Bit, 8192, 8192, nullptr));
  }
}

}  // namespace
}  // namespace vexel
