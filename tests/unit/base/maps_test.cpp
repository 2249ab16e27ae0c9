#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "base/map_ptr_to_ptr.h"
#include "base/map_string_to_ob.h"
#include "base/map_string_to_string.h"

namespace vexel {
namespace {

int g_values[2000];

void* Key(uintptr_t number) {
  return reinterpret_cast<void*>(number);
}

// Counts the blocks of a map.
template <class Map>
class Opened : public Map {
 public:
  using Map::Map;
  int Blocks() const {
    int blocks = 0;
    for (CQKPlex* block = this->blocks; block; block = block->next) blocks++;
    return blocks;
  }
  bool HasTable() const { return this->hashTable != nullptr; }
};

TEST(Maps, TenEntriesOfABlockSizeOfTenAreOneAllocation) {
  Opened<CQKMapPtrToPtr> pointers(10);
  Opened<CQKMapStringToOb> objects(10);
  Opened<CQKMapStringToString> strings(10);
  EXPECT_EQ(pointers.Blocks(), 0);
  for (int i = 0; i < 11; i++) {
    EXPECT_EQ(pointers.Blocks(), i > 0 ? 1 : 0);
    EXPECT_EQ(objects.Blocks(), i > 0 ? 1 : 0);
    EXPECT_EQ(strings.Blocks(), i > 0 ? 1 : 0);
    std::string key = std::to_string(i);
    pointers.SetAt(&g_values[i], nullptr);
    objects.SetAt(key.c_str(), nullptr);
    strings.SetAt(key.c_str(), "");
  }
  EXPECT_EQ(pointers.Blocks(), 2);
  EXPECT_EQ(objects.Blocks(), 2);
  EXPECT_EQ(strings.Blocks(), 2);
}

TEST(Maps, TheTableStaysAtSeventeenBuckets) {
  CQKMapPtrToPtr pointers;
  CQKMapStringToOb objects;
  CQKMapStringToString strings;
  for (int i = 0; i < 2000; i++) {
    std::string key = std::to_string(i);
    pointers.SetAt(&g_values[i], &g_values[i]);
    objects.SetAt(key.c_str(), &g_values[i]);
    strings.SetAt(key.c_str(), key.c_str());
  }
  EXPECT_EQ(pointers.GetHashTableSize(), 17u);
  EXPECT_EQ(objects.GetHashTableSize(), 17u);
  EXPECT_EQ(strings.GetHashTableSize(), 17u);
  EXPECT_EQ(strings.GetCount(), 2000);
  void* value = nullptr;
  EXPECT_TRUE(objects.Lookup("1234", value));
  EXPECT_EQ(value, &g_values[1234]);
}

TEST(Maps, SettingAnExistingKeyReplacesTheValue) {
  CQKMapPtrToPtr pointers;
  CQKMapStringToOb objects;
  CQKMapStringToString strings;
  for (int i = 0; i < 2; i++) {
    pointers.SetAt(Key(16), &g_values[i]);
    objects.SetAt("k", &g_values[i]);
    strings.SetAt("k", i ? "second" : "first");
    EXPECT_EQ(pointers.GetCount(), 1);
    EXPECT_EQ(objects.GetCount(), 1);
    EXPECT_EQ(strings.GetCount(), 1);
  }
  EXPECT_EQ(pointers[Key(16)], &g_values[1]);
  EXPECT_EQ(objects["k"], &g_values[1]);
  EXPECT_TRUE(strings["k"] == "second");
  EXPECT_STREQ(strings.Lookup("k"), "second");
  EXPECT_EQ(strings.Lookup("K"), nullptr);
}

TEST(Maps, IndexingMakesWhatIsNotThere) {
  CQKMapPtrToPtr pointers;
  CQKMapStringToOb objects;
  CQKMapStringToString strings;
  EXPECT_EQ(pointers[Key(1)], nullptr);
  EXPECT_EQ(objects["a"], nullptr);
  EXPECT_TRUE(strings["a"].IsEmpty());
  strings["a"] = "text";
  CQKString found;
  EXPECT_TRUE(strings.Lookup("a", found));
  EXPECT_TRUE(found == "text");
  EXPECT_EQ(pointers.GetCount() + objects.GetCount() + strings.GetCount(), 3);
}

TEST(Maps, IterationGoesBucketByBucketNewestFirst) {
  CQKMapPtrToPtr map;
  // The bucket is the key's 16th, modulo 17.
  for (uintptr_t key : {0x30u, 0x10u, 0x120u, 0x110u}) map.SetAt(Key(key), nullptr);
  std::vector<uintptr_t> keys;
  void* key;
  void* value;
  EXPECT_EQ(map.GetStartPosition(), Key(static_cast<uintptr_t>(-1)));
  for (void* at = map.GetStartPosition(); at;) {
    map.GetNextAssoc(at, key, value);
    keys.push_back(reinterpret_cast<uintptr_t>(key));
  }
  EXPECT_EQ(keys, (std::vector<uintptr_t>{0x110, 0x120, 0x10, 0x30}));
  map.RemoveAll();
  EXPECT_EQ(map.GetStartPosition(), nullptr);
  EXPECT_EQ(map.Begin(), nullptr);
  void* none = nullptr;
  map.GetNextAssoc(none, key, value);
  EXPECT_EQ(none, nullptr);
}

TEST(Maps, RemoveGivesThePositionBehind) {
  CQKMapPtrToPtr map;
  for (uintptr_t key : {0x30u, 0x10u, 0x120u}) map.SetAt(Key(key), nullptr);
  EXPECT_EQ(map.Remove(Key(0x120)), map.Lookup(Key(0x10)));
  EXPECT_EQ(map.Remove(Key(0x120)), nullptr);
  EXPECT_EQ(map.Remove(Key(0x30)), map.End());
  EXPECT_EQ(map.Begin(), map.Lookup(Key(0x10)));
  EXPECT_TRUE(map.RemoveKey(Key(0x10)));
  EXPECT_FALSE(map.RemoveKey(Key(0x10)));
  EXPECT_TRUE(map.IsEmpty());
}

TEST(Maps, KeysThatDifferInHighBitsOnlyAreDifferent) {
  CQKMapPtrToPtr map;
  map.SetAt(Key(0x100000010), &g_values[1]);
  map.SetAt(Key(0x10), &g_values[2]);
  EXPECT_EQ(map.GetCount(), 2);
  EXPECT_EQ(map[Key(0x100000010)], &g_values[1]);
}

TEST(Maps, AHashIsNotYetABucket) {
  EXPECT_EQ(CQKMapPtrToPtr().HashKey(Key(0x12345)), 0x1234u);
  EXPECT_EQ(CQKMapStringToOb().HashKey("ab"), 97u * 33 + 98);
  EXPECT_EQ(CQKMapStringToString().HashKey("ab"), 97u * 33 + 98);
}

TEST(Maps, ADescendantSaysWhichKeysAreEqualAndValid) {
  class LastDigit : public CQKMapPtrToPtr {
   protected:
    uintptr_t ActualHash(void* key) const override { return reinterpret_cast<uintptr_t>(key) % 10; }
    intptr_t ActualKeyCompare(void* a, void* b) const override {
      return static_cast<intptr_t>(ActualHash(a)) - static_cast<intptr_t>(ActualHash(b));
    }
    bool ActualIsKeyValid(void* key) const override { return key != nullptr; }
  };
  LastDigit map;
  EXPECT_TRUE(map.SetAt(Key(13), &g_values[0]));
  EXPECT_EQ(map[Key(23)], &g_values[0]);
  EXPECT_EQ(map.HashKey(Key(13)), 3u);
  EXPECT_FALSE(map.SetAt(nullptr, &g_values[0]));
  EXPECT_EQ(map[nullptr], nullptr);
  EXPECT_EQ(map.GetCount(), 1);
}

TEST(Maps, ATableIsMadeNowOrLater) {
  Opened<CQKMapStringToOb> map;
  map.InitHashTable(5, false);
  EXPECT_FALSE(map.HasTable());
  EXPECT_EQ(map.GetHashTableSize(), 5u);
  map.InitHashTable(0);
  EXPECT_TRUE(map.HasTable());
  EXPECT_EQ(map.GetHashTableSize(), 17u);
  map.InitHashTable(1);
  for (const char* key : {"a", "b", "c"}) map[key] = nullptr;
  // Entries are never lost from sight.
  map.InitHashTable(100);
  EXPECT_EQ(map.GetHashTableSize(), 1u);
  EXPECT_TRUE(map.RemoveKey("b"));
  EXPECT_EQ(map.GetCount(), 2);
}

TEST(Maps, EndedEntriesAreReusedAndBlocksStay) {
  Opened<CQKMapStringToString> map(4);
  for (int round = 0; round < 10; round++) {
    for (int i = 0; i < 4; i++) map.SetAt(std::to_string(i).c_str(), "v");
    for (int i = 0; i < 4; i++) EXPECT_TRUE(map.RemoveKey(std::to_string(i).c_str()));
    EXPECT_EQ(map.Blocks(), 1);
  }
  map.RemoveAll();
  EXPECT_EQ(map.Blocks(), 0);
}

TEST(Maps, CaseMattersUnlessItIsSwitchedOff) {
  CQKMapStringToOb map;
  map["Key"] = &g_values[1];
  void* value;
  EXPECT_FALSE(map.Lookup("KEY", value));
  // With one bucket there is no wrong one.
  map.RemoveAll();
  map.InitHashTable(1);
  map["Key"] = &g_values[1];
  map.SetCaseSensitive(0);
  EXPECT_TRUE(map.Lookup("KEY", value));
  map.SetCaseSensitive(1);
  EXPECT_FALSE(map.Lookup("KEY", value));
  map.RemoveAll();
  map.InitHashTable(0);
  map.SetCaseSensitive(0);
  map["Key"] = &g_values[1];
  map["kEY"] = &g_values[2];
  EXPECT_EQ(map.GetCount(), 1);
  EXPECT_EQ(map.HashKey("KEY@["), HashKey("key@["));
  const char* key;
  CQKString name;
  void* at = map.GetStartPosition();
  void* again = at;
  map.GetNextAssoc(at, key, value);
  EXPECT_STREQ(key, "Key");
  EXPECT_EQ(value, &g_values[2]);
  map.GetNextAssoc(again, name, value);
  EXPECT_TRUE(name == "Key");
  at = nullptr;
  map.GetNextAssoc(at, key, value);
  map.GetNextAssoc(at, name, value);
}

TEST(Maps, AgreeWithAStandardMapOverRandomUse) {
  std::mt19937 random(11);
  CQKMapPtrToPtr pointers(3);
  CQKMapStringToOb objects(3);
  CQKMapStringToString strings(3);
  std::map<int, int> twin;
  for (int step = 0; step < 20000; step++) {
    int number = static_cast<int>(random() % 100), to = static_cast<int>(random() % 2000);
    std::string key = std::to_string(number);
    if (random() % 3) {
      twin[number] = to;
      pointers.SetAt(&g_values[number], &g_values[to]);
      objects.SetAt(key.c_str(), &g_values[to]);
      strings.SetAt(key.c_str(), std::to_string(to).c_str());
    } else {
      bool had = twin.erase(number) > 0;
      ASSERT_EQ(pointers.RemoveKey(&g_values[number]), had);
      ASSERT_EQ(objects.RemoveKey(key.c_str()), had);
      ASSERT_EQ(strings.RemoveKey(key.c_str()), had);
    }
    if (step % 500 > 0) continue;
    std::map<int, int> seen;
    for (void* at = strings.GetStartPosition(); at;) {
      CQKString name, value;
      strings.GetNextAssoc(at, name, value);
      seen[atoi(name)] = atoi(value);
    }
    ASSERT_EQ(seen, twin);
    seen.clear();
    for (void* at = pointers.GetStartPosition(); at;) {
      void* from;
      void* value;
      pointers.GetNextAssoc(at, from, value);
      seen[static_cast<int>(static_cast<int*>(from) - g_values)] =
          static_cast<int>(static_cast<int*>(value) - g_values);
    }
    ASSERT_EQ(seen, twin);
    ASSERT_EQ(static_cast<size_t>(objects.GetCount()), twin.size());
  }
}

TEST(CQKPlex, BlocksAreAlignedAndChained) {
  CQKPlex* head = nullptr;
  CQKPlex* first = CQKPlex::Create(head, 3, 8);
  CQKPlex* second = CQKPlex::Create(head, 1, 100);
  EXPECT_EQ(head, second);
  EXPECT_EQ(second->next, first);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(first->Data()) % 16, 0u);
  EXPECT_EQ(CQKPlex::Create(head, 0xFFFFFFFF, 0xFFFFFFFF), nullptr);
  head->FreeDataChain();
}

}  // namespace
}  // namespace vexel
