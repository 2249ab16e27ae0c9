#include "author/bitmap.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include <zlib.h>

#include "reader.h"

namespace vexel::author {
namespace {

Bytes Inflate(const Bytes& data) {
  Bytes out(1 << 16);
  uLongf size = static_cast<uLongf>(out.size());
  EXPECT_EQ(uncompress(out.data(), &size, data.data(), static_cast<uLong>(data.size())), Z_OK);
  out.resize(size);
  return out;
}

TEST(Bitmap, RowsArePaddedTo32Bits) {
  EXPECT_EQ(BitmapRowBytes(kBitmap1, 33), 8u);
  EXPECT_EQ(BitmapRowBytes(kBitmap2, 16), 4u);
  EXPECT_EQ(BitmapRowBytes(kBitmap4, 9), 8u);
  EXPECT_EQ(BitmapRowBytes(kBitmap8, 5), 8u);
  EXPECT_EQ(BitmapRowBytes(kBitmap16, 3), 8u);
  EXPECT_EQ(BitmapRowBytes(kBitmap32, 3), 12u);
}

TEST(Bitmap, PixelsAreStoredMostSignificantByteFirstAndPremultiplied) {
  Picture picture(2, 1);
  picture.At(0, 0) = {200, 100, 50, 127};
  picture.At(1, 0) = {1, 2, 3, 255};
  const Bytes body = EncodeLossless(LosslessFromPicture(picture, true), true);
  Reader in(body);
  EXPECT_EQ(in.U8(), 5u);
  EXPECT_EQ(in.U16(), 2u);
  EXPECT_EQ(in.U16(), 1u);
  EXPECT_EQ(Inflate(in.Rest()), (Bytes{127, 100, 50, 25, 255, 1, 2, 3}));
}

TEST(Bitmap, WithoutAlphaEveryPixelIsOpaque) {
  Picture picture(1, 1, {200, 100, 50, 9});
  const Bytes body = EncodeLossless(LosslessFromPicture(picture, false), false);
  EXPECT_EQ(Inflate(Reader(body, 5).Rest()), (Bytes{255, 200, 100, 50}));
}

TEST(Bitmap, ATableHasItsCountLessOneAndStandsInTheStream) {
  const LosslessBody body =
      LosslessFromIndexes(kBitmap4, 3, 2, {1, 2, 3, 4, 5, 0}, {{1, 2, 3, 4}, {5, 6, 7, 8}});
  const Bytes opaque = EncodeLossless(body, false);
  Reader in(opaque);
  EXPECT_EQ(in.U8(), 2u);
  in.Skip(4);
  EXPECT_EQ(in.U8(), 1u);
  EXPECT_EQ(Inflate(in.Rest()), (Bytes{1, 2, 3, 5, 6, 7, 0x12, 0x30, 0, 0, 0x45, 0x00, 0, 0}));
  const Bytes alpha = EncodeLossless(body, true);
  EXPECT_EQ(Inflate(Reader(alpha, 6).Rest()).size(), 16u);
}

TEST(Bitmap, TheCountOfATableCanLie) {
  LosslessBody body = LosslessFromIndexes(kBitmap8, 1, 1, {0}, {{1, 2, 3}});
  body.tableCount = 200;
  EXPECT_EQ(EncodeLossless(body, false)[5], 200);
}

TEST(Bitmap, IndexesNeedAFormatWithATable) {
  EXPECT_THROW(LosslessFromIndexes(kBitmap16, 1, 1, {0}, {}), std::range_error);
}

TEST(Bitmap, AJpegStreamComesWholeOrAsTablesAndImage) {
  const Picture picture(16, 8, {10, 200, 30});
  const auto framed = [](const Bytes& jpeg) {
    return jpeg.size() > 4 && jpeg[0] == 0xFF && jpeg[1] == 0xD8 && jpeg[jpeg.size() - 2] == 0xFF &&
           jpeg.back() == 0xD9;
  };
  const Bytes whole = EncodeJpeg(picture, 80);
  const Bytes tables = EncodeJpeg(picture, 80, JpegParts::kTablesOnly);
  const Bytes image = EncodeJpeg(picture, 80, JpegParts::kImageOnly);
  EXPECT_TRUE(framed(whole));
  EXPECT_TRUE(framed(tables));
  EXPECT_TRUE(framed(image));
  EXPECT_LT(image.size(), whole.size());
  EXPECT_LT(tables.size(), whole.size());
  EXPECT_TRUE(framed(EncodeGreyJpeg(picture, 80)));
}

TEST(Bitmap, AnAlphaPlaneFollowsTheStreamBehindItsLength) {
  const Bytes jpeg = {1, 2, 3};
  const Bytes alpha = {9, 9, 9, 9};
  Reader in(EncodeJpegAlpha(jpeg, alpha));
  EXPECT_EQ(in.U32(), 3u);
  EXPECT_EQ(in.U8(), 1u);
  in.Skip(2);
  EXPECT_EQ(Inflate(in.Rest()), alpha);
}

TEST(Bitmap, APictureWithoutPixelsIsNoJpeg) {
  EXPECT_THROW(EncodeJpeg(Picture(0, 0), 80), std::runtime_error);
}

}  // namespace
}  // namespace vexel::author
