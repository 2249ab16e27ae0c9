#include "client/core/object.h"

#include <gtest/gtest.h>

#include "client/core/class_factory.h"
#include "client/core/context.h"
#include "client/core/site_user_supplier.h"
#include "client/core/upgrade_collection.h"
#include "client/core/values.h"

namespace vexel::client {
namespace {

TEST(Object, AnswersForItsInterfacesAndCountsItsReferences) {
  const Ref<SiteUserSupplier> supplier = Make<SiteUserSupplier>();
  const auto one = Query<IZEMSiteUserSupplier>(static_cast<IZEMSiteUserSupplier*>(supplier.get()));
  const auto other =
      Query<IZEMMultiInstanceSiteUserSupplier>(static_cast<IZEMSiteUserSupplier*>(supplier.get()));
  EXPECT_TRUE(one);
  EXPECT_TRUE(other);
  EXPECT_EQ(supplier->AddRef(), 4u);
  EXPECT_EQ(supplier->Release(), 3u);
  EXPECT_FALSE(Query<IZEMSite>(one.get()));
  void* out = &out;
  EXPECT_EQ(supplier->QueryInterface(IID_IZEMSite, &out), ZEM_NO_INTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(supplier->QueryInterface(IID_IZEMSite, nullptr), ZEM_BAD_ARGUMENT);
}

TEST(Context, AnswersForWhatItWasOffered) {
  const auto context = Make<Context>();
  EXPECT_FALSE(Query<IZEMUpgradeCollection>(context.get()));
  context->Offer<IZEMUpgradeCollection>(Make<UpgradeCollection>().get());
  EXPECT_TRUE(Query<IZEMUpgradeCollection>(context.get()));
  EXPECT_TRUE(Query<IUnknown>(context.get()));
  context->Clear();
  EXPECT_FALSE(Query<IZEMUpgradeCollection>(context.get()));
}

TEST(ClassFactory, MakesValuesWithOneReference) {
  const auto factory = Make<ClassFactory>();
  void* out = nullptr;
  ASSERT_EQ(factory->CreateInstance(IID_IZEMBuffer, &out), ZEM_OK);
  auto* buffer = static_cast<IZEMBuffer*>(out);
  EXPECT_EQ(buffer->GetSize(), 0u);
  EXPECT_EQ(buffer->Set(reinterpret_cast<const UINT8*>("ab"), 2), ZEM_OK);
  EXPECT_EQ(buffer->Release(), 0u);
  ASSERT_EQ(factory->CreateInstance(IID_IZEMPacket, &out), ZEM_OK);
  EXPECT_FALSE(static_cast<IZEMPacket*>(out)->IsLost());
  static_cast<IZEMPacket*>(out)->Release();
  ASSERT_EQ(factory->CreateInstance(IID_IZEMValues, &out), ZEM_OK);
  static_cast<IZEMValues*>(out)->Release();
}

TEST(ClassFactory, RefusesWhatItDoesNotKnow) {
  const auto factory = Make<ClassFactory>();
  void* out = &out;
  EXPECT_EQ(factory->CreateInstance(IID_IZEMSite, &out), ZEM_NO_INTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(factory->CreateInstance(IID_IZEMBuffer, nullptr), ZEM_BAD_ARGUMENT);
}

TEST(Values, TextsEndAtTheirFirstZero) {
  EXPECT_EQ(NewTextBuffer("abc")->GetSize(), 4u);
  EXPECT_EQ(TextOf(NewTextBuffer("abc").get()), "abc");
  EXPECT_EQ(TextOf(nullptr), "");
  const uint8_t open[] = {'a', 'b'};
  EXPECT_EQ(TextOf(NewBuffer(open).get()), "ab");
}

TEST(Values, ALostPacketHasNoBuffer) {
  EXPECT_TRUE(NewLostPacket()->IsLost());
  EXPECT_EQ(NewLostPacket()->GetBuffer(), nullptr);
  const auto packet = NewPacket(NewBuffer({}).get(), 70, 2);
  EXPECT_EQ(packet->GetTime(), 70u);
  EXPECT_EQ(packet->GetStreamNumber(), 2);
}

}  // namespace
}  // namespace vexel::client
