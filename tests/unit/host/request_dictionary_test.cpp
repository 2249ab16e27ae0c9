#include "host/request_dictionary.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

TEST(CRequestDictionary, RemembersTheLastRequest) {
  CRequestDictionary dictionary;
  EXPECT_EQ(dictionary.When(7), CRequestDictionary::kNever);
  dictionary.ReStore(7, 100);
  dictionary.ReStore(8, 150);
  dictionary.ReStore(7, 200);
  EXPECT_EQ(dictionary.When(7), 200u);
  EXPECT_EQ(dictionary.When(8), 150u);
}

TEST(CRequestDictionary, StoreAppendsAndTheFirstEntryCounts) {
  CRequestDictionary dictionary;
  dictionary.Store(7, 100);
  dictionary.Store(7, 200);
  EXPECT_EQ(dictionary.When(7), 100u);
}

TEST(CRequestDictionary, ForgetsWhatIsNewWhenFull) {
  CRequestDictionary dictionary;
  for (int id = 0; id < CRequestDictionary::kEntries; ++id) {
    dictionary.ReStore(static_cast<UINT16>(id), 5);
  }
  dictionary.ReStore(5000, 5);
  EXPECT_EQ(dictionary.When(5000), CRequestDictionary::kNever);
  dictionary.ReStore(17, 9);
  EXPECT_EQ(dictionary.When(17), 9u);
}

}  // namespace
}  // namespace vexel
