#include "base/simple_list.h"

#include <gtest/gtest.h>

#include <list>
#include <random>
#include <set>
#include <vector>

namespace vexel {
namespace {

int g_items[10];

std::vector<int> Items(const CQKSimpleList& list) {
  std::vector<int> items;
  for (void* at = list.Begin(); at != list.End();) {
    items.push_back(static_cast<int>(static_cast<int*>(list.GetNext(at)) - g_items));
  }
  std::vector<int> backwards;
  void* at = nullptr;
  for (INT32 i = 0; i < list.GetCount(); i++) at = list.FindIndex(i);
  while (at) {
    backwards.insert(backwards.begin(),
                     static_cast<int>(static_cast<int*>(list.GetPrev(at)) - g_items));
  }
  EXPECT_EQ(items, backwards);
  EXPECT_EQ(static_cast<size_t>(list.GetCount()), items.size());
  EXPECT_TRUE(list.IsPtrListValid());
  return items;
}

using Ints = std::vector<int>;

TEST(CQKSimpleList, ReusesItsNodesAfterRemoveAll) {
  CQKSimpleList list;
  std::set<void*> nodes;
  for (int& item : g_items) nodes.insert(list.AddTail(&item));
  list.RemoveAll();
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(Items(list), Ints{});
  std::set<void*> again;
  for (int& item : g_items) again.insert(list.AddHead(&item));
  EXPECT_EQ(nodes, again);
}

TEST(CQKSimpleList, KeepsOrder) {
  CQKSimpleList list;
  list.AddTail(&g_items[1]);
  list.AddHead(&g_items[0]);
  void* two = list.AddTail(&g_items[2]);
  list.InsertBefore(two, &g_items[3]);
  list.InsertAfter(two, &g_items[4]);
  EXPECT_EQ(Items(list), (Ints{0, 1, 3, 2, 4}));
  EXPECT_EQ(list.RemoveAt(two), &g_items[2]);
  EXPECT_EQ(list.RemoveHead(), &g_items[0]);
  EXPECT_EQ(list.RemoveTail(), &g_items[4]);
  EXPECT_EQ(Items(list), (Ints{1, 3}));
  EXPECT_EQ(list.GetHead(), &g_items[1]);
  EXPECT_EQ(list.GetTail(), &g_items[3]);
}

TEST(CQKSimpleList, IsEmptyWithoutElements) {
  CQKSimpleList list;
  void* at = nullptr;
  EXPECT_EQ(list.GetHead(), nullptr);
  EXPECT_EQ(list.GetTail(), nullptr);
  EXPECT_EQ(list.RemoveHead(), nullptr);
  EXPECT_EQ(list.RemoveTail(), nullptr);
  EXPECT_EQ(list.RemoveAt(nullptr), nullptr);
  EXPECT_EQ(list.GetNext(at), nullptr);
  EXPECT_EQ(list.GetAtPrev(at), nullptr);
  EXPECT_EQ(list.Find(&g_items[0], nullptr), nullptr);
  list.SetAt(nullptr, &g_items[0]);
  EXPECT_EQ(list.GetCount(), 0);
}

// Required: GetNext returns and then moves, GetAtNext moves and then returns.
TEST(CQKSimpleList, GetAtNextMovesFirst) {
  CQKSimpleList list;
  for (int i = 0; i < 3; i++) list.AddTail(&g_items[i]);
  void* at = list.GetHeadPosition();
  EXPECT_EQ(list.GetAtNext(at), &g_items[1]);
  EXPECT_EQ(list.GetAt(at), &g_items[1]);
  EXPECT_EQ(list.GetNext(at), &g_items[1]);
  EXPECT_EQ(list.GetAt(at), &g_items[2]);
  EXPECT_EQ(list.GetAtPrev(at), &g_items[1]);
  EXPECT_EQ(list.GetPrev(at), &g_items[1]);
  EXPECT_EQ(list.GetAt(at), &g_items[0]);
  EXPECT_EQ(list.GetAtPrev(at), nullptr);
  EXPECT_EQ(at, nullptr);
}

TEST(CQKSimpleList, FindsByValueAndIndex) {
  CQKSimpleList list;
  for (int i : {0, 1, 0, 2}) list.AddTail(&g_items[i]);
  void* first = list.Find(&g_items[0], nullptr);
  EXPECT_EQ(first, list.FindIndex(0));
  void* second = list.Find(&g_items[0], first);
  EXPECT_EQ(second, list.FindIndex(2));
  EXPECT_EQ(list.Find(&g_items[0], second), nullptr);
  EXPECT_EQ(list.FindIndex(4), nullptr);
  EXPECT_EQ(list.FindIndex(-1), nullptr);
  list.SetAt(second, &g_items[5]);
  EXPECT_EQ(Items(list), (Ints{0, 1, 5, 2}));
}

TEST(CQKSimpleList, TakesAnotherListsPointersInOrder) {
  CQKSimpleList list, other, empty;
  list.AddTail(&g_items[0]);
  other.AddTail(&g_items[1]);
  other.AddTail(&g_items[2]);
  list.AddHead(&other);
  list.AddTail(&other);
  list.AddTail(&empty);
  list.AddHead(static_cast<CQKSimpleList*>(nullptr));
  EXPECT_EQ(Items(list), (Ints{1, 2, 0, 1, 2}));
  EXPECT_EQ(Items(other), (Ints{1, 2}));
}

TEST(CQKSimpleList, TakesItself) {
  CQKSimpleList list;
  for (int i = 0; i < 3; i++) list.AddTail(&g_items[i]);
  list.AddTail(&list);
  EXPECT_EQ(Items(list), (Ints{0, 1, 2, 0, 1, 2}));
  CQKSimpleList again;
  for (int i = 0; i < 3; i++) again.AddTail(&g_items[i]);
  again.AddHead(&again);
  EXPECT_EQ(Items(again), (Ints{0, 1, 2, 0, 1, 2}));
}

TEST(CQKSimpleList, AgreesWithAStandardListOverRandomUse) {
  std::mt19937 random(3);
  CQKSimpleList list;
  std::vector<int> twin;
  for (int step = 0; step < 3000; step++) {
    int item = static_cast<int>(random() % 10);
    size_t place = twin.empty() ? 0 : random() % twin.size();
    auto there = twin.begin() + static_cast<long>(place);
    void* at = list.FindIndex(static_cast<int>(place));
    switch (random() % 6) {
      case 0:
        list.AddHead(&g_items[item]);
        twin.insert(twin.begin(), item);
        break;
      case 1:
        list.AddTail(&g_items[item]);
        twin.push_back(item);
        break;
      case 2:
        if (at) {
          list.InsertBefore(at, &g_items[item]);
          twin.insert(there, item);
        }
        break;
      case 3:
        if (at) {
          list.InsertAfter(at, &g_items[item]);
          twin.insert(there + 1, item);
        }
        break;
      default:
        if (at) {
          list.RemoveAt(at);
          twin.erase(there);
        }
        break;
    }
    if (random() % 500 == 0) list.RemoveAll(), twin.clear();
    ASSERT_EQ(Items(list), twin);
  }
}

}  // namespace
}  // namespace vexel
