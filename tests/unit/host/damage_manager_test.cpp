// The double buffer and what is told to the site.
#include "host/damage_manager.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vexel::test {
namespace {

void ExpectRect(const _QKxRect& rect, INT32 left, INT32 top, INT32 right, INT32 bottom) {
  EXPECT_EQ(rect.left, left);
  EXPECT_EQ(rect.top, top);
  EXPECT_EQ(rect.right, right);
  EXPECT_EQ(rect.bottom, bottom);
}

void ExpectLimit(_QKxSize site, INT32 width, INT32 height) {
  const _QKxSize size = LimitPictureSize(site);
  EXPECT_EQ(size.width, width);
  EXPECT_EQ(size.height, height);
}

TEST(DamageManager, WideSiteGivesAPictureOf2000) {
  ExpectLimit({4000, 1000}, 2000, 500);
}

TEST(DamageManager, SiteOf2000Stays) {
  ExpectLimit({2000, 2000}, 2000, 2000);
}

TEST(DamageManager, NarrowSiteIsRoundedDown) {
  ExpectLimit({2001, 10}, 2000, 9);
  ExpectLimit({10, 2001}, 9, 2000);
}

TEST(DamageManager, SitesOfAnySizeHaveAPicture) {
  ExpectLimit({0, 0}, 0, 0);
  ExpectLimit({-5, 7}, 0, 7);
  ExpectLimit({0x7FFFFFFF, 0x7FFFFFFF}, 2000, 2000);
  ExpectLimit({0x7FFFFFFF, 1}, 2000, 0);
}

TEST(DamageManager, DamageGrowsAndTheSiteHearsEachPart) {
  CDamageManager damage;
  const Ptr<FakeSite> site = New<FakeSite>();
  damage.m_pSite = site.get();
  damage.DamageRect({10, 20, 30, 40});
  ExpectRect(damage.m_rcDirty, 10, 20, 30, 40);
  damage.DamageRect({5, 25, 20, 50});
  ExpectRect(damage.m_rcDirty, 5, 20, 30, 50);
  ASSERT_EQ(site->damage.size(), 2u);
  ExpectRect(site->damage[1], 5, 25, 20, 50);
  // What is empty is replaced.
  damage.m_rcDirty = {3, 3, 3, 9};
  damage.DamageRect({100, 100, 101, 101});
  ExpectRect(damage.m_rcDirty, 100, 100, 101, 101);
}

TEST(DamageManager, WithoutASiteDamageIsKept) {
  CDamageManager damage;
  damage.DamageRect({1, 2, 3, 4});
  damage.ForceRedraw();
  ExpectRect(damage.m_rcDirty, 1, 2, 3, 4);
}

TEST(DamageManager, DoubleBufferIsDescribedAndDamaged) {
  CDamageManager damage;
  damage.SetupDoubleBuffer({30, 20});
  ASSERT_NE(damage.UseDoubleBuffer(), nullptr);
  for (int i = 0; i < 30 * 20 * 4; ++i) ASSERT_EQ(damage.UseDoubleBuffer()[i], 0);
  EXPECT_EQ(damage.m_Bitmap.headerSize, 52u);
  EXPECT_EQ(damage.m_Bitmap.width, 30);
  EXPECT_EQ(damage.m_Bitmap.height, 20);
  EXPECT_EQ(damage.m_Bitmap.planes, 1);
  EXPECT_EQ(damage.m_Bitmap.bitsPerPixel, 32);
  ExpectRect(damage.m_rcDirty, 0, 0, 30, 20);
}

TEST(DamageManager, SameSizeKeepsThePicture) {
  CDamageManager damage;
  damage.SetupDoubleBuffer({30, 20});
  damage.UseDoubleBuffer()[0] = 77;
  damage.SetupDoubleBuffer({30, 20});
  EXPECT_EQ(damage.UseDoubleBuffer()[0], 77);
  damage.SetupDoubleBuffer({20, 30});
  EXPECT_EQ(damage.UseDoubleBuffer()[0], 0);
}

TEST(DamageManager, EmptyAndHugeSizesHaveNoPicture) {
  CDamageManager damage;
  damage.SetupDoubleBuffer({0, 100});
  EXPECT_EQ(damage.UseDoubleBuffer(), nullptr);
  damage.SetupDoubleBuffer({-1, -1});
  EXPECT_EQ(damage.UseDoubleBuffer(), nullptr);
  EXPECT_EQ(damage.m_lWidth, 0);
  damage.SetupDoubleBuffer({0x7FFFFFFF, 0x7FFFFFFF});
  EXPECT_EQ(damage.UseDoubleBuffer(), nullptr);
  damage.SetupDoubleBuffer({10, 10});
  EXPECT_NE(damage.UseDoubleBuffer(), nullptr);
}

TEST(DamageManager, ForcingIsSeenInsideOnly) {
  CDamageManager damage;
  const Ptr<FakeSite> site = New<FakeSite>();
  damage.m_pSite = site.get();
  int inside = 0;
  site->onRedraw = [&] { inside = damage.m_nForcing; };
  damage.ForceRedraw();
  EXPECT_EQ(inside, 1);
  EXPECT_EQ(damage.m_nForcing, 0);
}

TEST(DamageManager, RedrawsThatAskForRedrawsEnd) {
  CDamageManager damage;
  const Ptr<FakeSite> site = New<FakeSite>();
  damage.m_pSite = site.get();
  site->onRedraw = [&] { damage.ForceRedraw(); };
  damage.ForceRedraw();
  EXPECT_EQ(site->redraws, 8);
}

// An owner whose part the damage manager is, as the renderer is one.
class Owner final : public Fake<IUnknown> {
 public:
  explicit Owner(bool& gone) : Fake(IID_IUnknown), m_gone(gone) { damage.m_pOwner = this; }
  ~Owner() override { m_gone = true; }
  CDamageManager damage;

 private:
  bool& m_gone;
};

TEST(DamageManager, OwnerMayBeReleasedInsideARedraw) {
  bool gone = false;
  Ptr<Owner> owner(new Owner(gone));
  const Ptr<FakeSite> site = New<FakeSite>();
  owner->damage.m_pSite = site.get();
  site->onRedraw = [&] {
    owner = {};
    EXPECT_FALSE(gone);
  };
  owner->damage.ForceRedraw();
  EXPECT_TRUE(gone);
}

TEST(DamageManager, SiteMayGoInsideItsRedraw) {
  CDamageManager damage;
  Ptr<FakeSite> site = New<FakeSite>();
  damage.m_pSite = site.get();
  FakeSite* raw = site.get();
  raw->onRedraw = [&] {
    damage.m_pSite = nullptr;
    site = {};
  };
  damage.ForceRedraw();
  EXPECT_EQ(damage.m_nForcing, 0);
}

}  // namespace
}  // namespace vexel::test
