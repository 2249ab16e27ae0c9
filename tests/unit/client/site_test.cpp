#include "client/core/site.h"

#include <gtest/gtest.h>

namespace vexel::client {
namespace {

QKBitmapInfo InfoOf(INT32 width, INT32 height) {
  return {52, width, height, 1, 32, {}, {}};
}

const UINT8* BytesOfWords(const std::vector<uint32_t>& words) {
  return reinterpret_cast<const UINT8*>(words.data());
}

TEST(MemorySurface, CopiesPixelsAndLeavesAlphaOut) {
  const auto surface = Make<MemorySurface>();
  surface->Resize({2, 2});
  const std::vector<uint32_t> picture{0xFF112233, 0x00445566, 0x80778899, 0xFFFFFFFF};
  const QKBitmapInfo info = InfoOf(2, 2);
  EXPECT_EQ(surface->CopyBitmap(BytesOfWords(picture), &info, {0, 0, 2, 2}, {0, 0, 2, 2}), ZEM_OK);
  EXPECT_EQ(surface->pixels(), (std::vector<uint32_t>{0x112233, 0x445566, 0x778899, 0xFFFFFF}));
}

TEST(MemorySurface, ScalesUpToTheNearestAndDownToTheMean) {
  const auto surface = Make<MemorySurface>();
  surface->Resize({4, 1});
  const std::vector<uint32_t> picture{0x000010, 0x000020, 0x000030, 0x000040};
  const QKBitmapInfo info = InfoOf(4, 1);
  surface->CopyBitmap(BytesOfWords(picture), &info, {0, 0, 4, 1}, {0, 0, 2, 1});
  EXPECT_EQ(surface->pixels(), (std::vector<uint32_t>{0x10, 0x10, 0x20, 0x20}));
  surface->CopyBitmap(BytesOfWords(picture), &info, {0, 0, 2, 1}, {0, 0, 4, 1});
  EXPECT_EQ(surface->pixels(), (std::vector<uint32_t>{0x18, 0x38, 0x20, 0x20}));
}

TEST(MemorySurface, WhatLiesOutsideIsLeftOut) {
  const auto surface = Make<MemorySurface>();
  surface->Resize({2, 2});
  const std::vector<uint32_t> picture{1, 2, 3, 4};
  const QKBitmapInfo info = InfoOf(2, 2);
  EXPECT_EQ(surface->CopyBitmap(BytesOfWords(picture), &info, {1, -1, 3, 1}, {0, 0, 2, 2}), ZEM_OK);
  EXPECT_EQ(surface->pixels(), (std::vector<uint32_t>{0, 3, 0, 0}));
  // A source beyond the picture reads its border.
  EXPECT_EQ(surface->CopyBitmap(BytesOfWords(picture), &info, {0, 0, 2, 2},
                                {-2000000000, 5, 2000000000, 9}),
            ZEM_OK);
}

TEST(MemorySurface, RefusesWhatIsNoPicture) {
  const auto surface = Make<MemorySurface>();
  surface->Resize({2, 2});
  const std::vector<uint32_t> picture(4);
  QKBitmapInfo info = InfoOf(2, 2);
  const _QKxRect all{0, 0, 2, 2};
  EXPECT_EQ(surface->CopyBitmap(nullptr, &info, all, all), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(surface->CopyBitmap(BytesOfWords(picture), nullptr, all, all), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(surface->CopyBitmap(BytesOfWords(picture), &info, {2, 0, 0, 2}, all), ZEM_BAD_ARGUMENT);
  info.bitsPerPixel = 24;
  EXPECT_EQ(surface->CopyBitmap(BytesOfWords(picture), &info, all, all), ZEM_BAD_ARGUMENT);
}

// Fills whatever it is given with one colour.
class Painter : public Object<IZEMSiteUser> {
 public:
  Ref<IZEMSite> site;
  int draws = 0;
  INT32 attachResult = ZEM_OK;

  INT32 AttachSite(IZEMSite* given) override {
    if (attachResult < 0) return attachResult;
    site = given;
    return site->SetSize({3, 2});
  }
  INT32 DetachSite() override {
    site = nullptr;
    return ZEM_OK;
  }
  INT32 HandleEvent(_QKxEvent* event) override {
    if (event->event != ZEM_EVENT_DRAW) return ZEM_OK;
    draws++;
    _QKxSize size;
    site->GetSize(size);
    const std::vector<uint32_t> picture(1, 0xABCDEF);
    const QKBitmapInfo info = InfoOf(1, 1);
    event->handled = 1;
    return static_cast<IZEMVideoSurface*>(event->param1)
        ->CopyBitmap(BytesOfWords(picture), &info, {0, 0, size.width, size.height}, {0, 0, 1, 1});
  }
  INT32 NeedsWindowedSites() override { return 0; }
};

TEST(Site, DrawsBeforeForceRedrawReturns) {
  const auto site = Make<Site>();
  const auto painter = Make<Painter>();
  EXPECT_EQ(site->ForceRedraw(), ZEM_UNEXPECTED);
  ASSERT_EQ(site->AttachUser(painter.get()), ZEM_OK);
  EXPECT_EQ(site->AttachUser(painter.get()), ZEM_UNEXPECTED);
  EXPECT_EQ(site->ForceRedraw(), ZEM_OK);
  EXPECT_EQ(painter->draws, 1);
  EXPECT_EQ(site->surface().pixels(), std::vector<uint32_t>(6, 0xABCDEF));
  EXPECT_EQ(site->DetachUser(), ZEM_OK);
  EXPECT_FALSE(painter->site);
}

TEST(Site, ASizeOfTheUsersStays) {
  const auto site = Make<Site>();
  const auto painter = Make<Painter>();
  site->AttachUser(painter.get());
  site->Resize({10, 4});
  EXPECT_EQ(painter->draws, 1);
  EXPECT_EQ(site->SetSize({99, 99}), ZEM_OK);
  _QKxSize size;
  site->GetSize(size);
  EXPECT_EQ(size.width, 10);
  EXPECT_EQ(site->surface().width(), 10);
  site->DetachUser();
}

TEST(Site, AUserThatRefusesIsNotKept) {
  const auto site = Make<Site>();
  const auto painter = Make<Painter>();
  painter->attachResult = ZEM_FAILED;
  EXPECT_EQ(site->AttachUser(painter.get()), ZEM_FAILED);
  Ref<IZEMSiteUser> user;
  EXPECT_EQ(site->GetUser(user.Out()), ZEM_UNEXPECTED);
}

TEST(Site, HasChildrenPlaceAndVisibility) {
  const auto site = Make<Site>();
  Ref<IZEMSite> child;
  ASSERT_EQ(site->CreateChild(child.Out()), ZEM_OK);
  EXPECT_EQ(site->DestroyChild(child.get()), ZEM_OK);
  EXPECT_EQ(site->DestroyChild(child.get()), ZEM_BAD_ARGUMENT);
  site->SetPosition(3, -4);
  INT32 x, y;
  site->GetPosition(x, y);
  EXPECT_EQ(x, 3);
  EXPECT_EQ(y, -4);
  EXPECT_TRUE(site->IsVisible());
  site->SetVisible(0);
  EXPECT_FALSE(site->IsVisible());
}

}  // namespace
}  // namespace vexel::client
