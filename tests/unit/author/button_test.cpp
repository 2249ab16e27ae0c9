#include "author/button.h"

#include <gtest/gtest.h>

#include "reader.h"

namespace vexel::author {
namespace {

TEST(Button, TheFirstFormIsRecordsAndOneBlock) {
  BitWriter out;
  WriteButton(out, {{kButtonUp | kButtonHit, 0x0102, 3, {}, Cxform::Alpha(0.5)}}, {7, 0});
  EXPECT_EQ(out.bytes(), (Bytes{9, 2, 1, 3, 0, 0, 0, 7, 0}));
}

TEST(Button, TheSecondFormChainsItsActions) {
  BitWriter out;
  WriteButton2(out, true, {{kButtonUp, 1, 1, {}, {}}},
               {{1 << kEventPress, {6, 0}}, {1 << kEventMenuDragOut, {7, 0}}});
  Reader in(out.bytes());
  EXPECT_EQ(in.U8(), 1u);
  EXPECT_EQ(in.U16(), 10u);  // two bytes of offset, seven of record, the zero
  in.Skip(7);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_EQ(in.U16(), 6u);
  EXPECT_EQ(in.U16(), 4u);
  EXPECT_EQ(in.U16(), 0x0006u);
  EXPECT_EQ(in.U16(), 0u);
  EXPECT_EQ(in.U16(), 0x100u);
  EXPECT_EQ(in.U16(), 0x0007u);
  EXPECT_TRUE(in.done());
}

TEST(Button, WithoutActionsTheOffsetIsZero) {
  BitWriter out;
  WriteButton2(out, false, {}, {});
  EXPECT_EQ(out.bytes(), (Bytes{0, 0, 0, 0}));
}

TEST(Button, ExtraTransformsHaveNoAlpha) {
  Cxform half;
  half.redMul = half.greenMul = half.blueMul = 1;
  half.alphaMul = 5;
  BitWriter out;
  WriteButtonExtra(out, {half, {}});
  Reader in(out.bytes());
  EXPECT_EQ(in.Bits(2), 1u);
  EXPECT_EQ(in.Bits(4), 2u);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(in.SBits(2), 1);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_TRUE(in.done());
}

}  // namespace
}  // namespace vexel::author
