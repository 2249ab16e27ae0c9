// PNG and JPEG pictures, and the choice of importer.
#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <cstring>

#include "author/import_pixels.h"
#include "author/importers.h"
#include "author/writer.h"
#include "reader.h"

namespace vexel::author {
namespace {

Bytes Png(uint32_t width, uint32_t height, const std::vector<uint8_t>& rgba) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  image.width = width;
  image.height = height;
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, rgba.data(), 0, nullptr);
  Bytes file(size);
  png_image_write_to_memory(&image, file.data(), &size, 0, rgba.data(), 0, nullptr);
  return file;
}

struct FoundTag {
  int code;
  Bytes body;
};

std::vector<FoundTag> TagsOf(const Bytes& movie) {
  Reader reader(movie);
  reader.Skip(8);
  int width = static_cast<int>(reader.Bits(5));
  for (int i = 0; i < 4; i++) reader.SBits(width);
  reader.U16();
  reader.U16();
  std::vector<FoundTag> tags;
  while (!reader.done()) {
    uint32_t head = reader.U16(), length = head & 63;
    if (length == 63) length = reader.U32();
    Bytes body;
    for (uint32_t i = 0; i < length; i++) body.push_back(static_cast<uint8_t>(reader.U8()));
    tags.push_back({static_cast<int>(head >> 6), std::move(body)});
  }
  return tags;
}

Bytes BodyOf(const Bytes& movie, int code) {
  for (FoundTag& tag : TagsOf(movie))
    if (tag.code == code) return tag.body;
  return {};
}

ImportResult Import(ArtKind kind, const Bytes& file) {
  return ImportArt(kind, file.data(), file.size());
}

TEST(ImportPng, AlphaIsKeptPremultiplied) {
  Bytes file = Png(2, 1, {200, 100, 50, 128, 10, 20, 30, 255});
  SceneBitmap bitmap;
  std::string error;
  ASSERT_TRUE(DecodePng(file.data(), file.size(), &bitmap, &error)) << error;
  EXPECT_FALSE(bitmap.opaque);
  EXPECT_EQ(bitmap.pixels, (std::vector<uint32_t>{0x80643219, 0xFF0A141E}));
  ImportResult result = Import(ArtKind::kPng, file);
  ASSERT_TRUE(result.ok) << result.error;
  Bytes body = BodyOf(result.movie, kTagDefineBitsLosslessAlpha);
  ASSERT_GT(body.size(), 7u);
  EXPECT_EQ(body[2], kBitmap32);
  EXPECT_EQ(body[3] | body[4] << 8, 2);
  EXPECT_EQ(body[5] | body[6] << 8, 1);
}

TEST(ImportPng, FewOpaqueColoursTakeATable) {
  ImportResult result =
      Import(ArtKind::kPng, Png(2, 2, {1, 2, 3, 255, 4, 5, 6, 255, 1, 2, 3, 255, 1, 2, 3, 255}));
  ASSERT_TRUE(result.ok);
  Bytes body = BodyOf(result.movie, kTagDefineBitsLossless);
  ASSERT_GT(body.size(), 8u);
  EXPECT_EQ(body[2], kBitmap8);
  EXPECT_EQ(body[7], 1);  // two colours
}

TEST(ImportPng, ManyOpaqueColoursStandAsTheyAre) {
  std::vector<uint8_t> rgba;
  for (int i = 0; i < 300; i++)
    for (int c : {i & 255, i >> 8, 7, 255}) rgba.push_back(static_cast<uint8_t>(c));
  ImportResult result = Import(ArtKind::kPng, Png(300, 1, rgba));
  ASSERT_TRUE(result.ok);
  Bytes body = BodyOf(result.movie, kTagDefineBitsLossless);
  ASSERT_GT(body.size(), 8u);
  EXPECT_EQ(body[2], kBitmap32);
}

TEST(ImportPng, DamageIsAnError) {
  Bytes file = Png(8, 8, std::vector<uint8_t>(256, 200));
  for (size_t cut = 0; cut < file.size(); cut++) {
    ImportResult result = ImportArt(ArtKind::kPng, file.data(), cut);
    EXPECT_EQ(result.ok, result.error.empty());
  }
  file[file.size() / 2] ^= 0x55;
  EXPECT_FALSE(Import(ArtKind::kPng, file).ok);
}

TEST(ImportPng, HugePicturesAreRefusedBeforeTheyAreDecoded) {
  Bytes file = Png(1, 1, {1, 2, 3, 255});
  // Width and height of the header, with its checksum made right.
  for (size_t i : {16, 20}) file[i + 1] = 0x0F;
  uint32_t sum = static_cast<uint32_t>(crc32(0, &file[12], 17));
  for (size_t i = 0; i < 4; i++) file[29 + i] = static_cast<uint8_t>(sum >> (24 - 8 * i));
  ImportResult result = Import(ArtKind::kPng, file);
  EXPECT_FALSE(result.ok);
}

TEST(ImportJpeg, TheFileGoesInAsItIs) {
  Picture picture(20, 10, {200, 30, 40});
  for (const Bytes& file : {EncodeJpeg(picture, 80), EncodeGreyJpeg(picture, 80)}) {
    ImportResult result = Import(ArtKind::kJpeg, file);
    ASSERT_TRUE(result.ok) << result.error;
    Bytes body = BodyOf(result.movie, kTagDefineBitsJPEG);
    ASSERT_GT(body.size(), 2u);
    EXPECT_EQ(Bytes(body.begin() + 2, body.end()), file);
  }
}

TEST(ImportJpeg, WhatIsNoPictureIsAnError) {
  EXPECT_FALSE(Import(ArtKind::kJpeg, {}).ok);
  EXPECT_FALSE(Import(ArtKind::kJpeg, {1, 2, 3, 4}).ok);
  EXPECT_FALSE(Import(ArtKind::kJpeg, {0xFF, 0xD8, 0xFF, 0xD9}).ok);
}

TEST(ImportArt, TheNameTellsTheKind) {
  EXPECT_EQ(ArtKindOfName("a.svg"), ArtKind::kSvg);
  EXPECT_EQ(ArtKindOfName("dir.png/A.PNG"), ArtKind::kPng);
  EXPECT_EQ(ArtKindOfName("a.b.JpEg"), ArtKind::kJpeg);
  EXPECT_EQ(ArtKindOfName("a.jpg"), ArtKind::kJpeg);
  EXPECT_EQ(ArtKindOfName("svg"), ArtKind::kUnknown);
  EXPECT_EQ(ArtKindOfName(""), ArtKind::kUnknown);
}

TEST(ImportArt, AMissingFileTellsWhy) {
  ImportResult result = ImportArtFile("/nowhere/picture.svg");
  EXPECT_FALSE(result.ok);
  EXPECT_EQ(result.error, "No such file or directory");
}

}  // namespace
}  // namespace vexel::author
