// A doubly linked list of pointers, which it does not own. A position is a node;
// null stands behind either end.
#pragma once

#include "base/cqk_plex.h"

namespace vexel {

class CQKSimpleList {
 public:
  CQKSimpleList();
  CQKSimpleList(const CQKSimpleList&) = delete;
  CQKSimpleList& operator=(const CQKSimpleList&) = delete;

 protected:
  struct Node {
    Node* next;
    Node* prev;
    void* data;
  };

 public:
  virtual ~CQKSimpleList();
  virtual bool IsPtrListValid() const;
  // Keeps the nodes for later entries.
  virtual void RemoveAll();
  // What stood there.
  virtual void* RemoveAt(void* at);
  // The new entry's position, null without memory. With a null `at`: before the
  // head, or behind the tail.
  virtual void* InsertBefore(void* at, void* value);
  virtual void* InsertAfter(void* at, void* value);
  // The first position with `value` behind `after`, or from the head.
  virtual void* Find(void* value, void* after) const;

  // The new entry's position, null without memory.
  void* AddHead(void* value) { return InsertBefore(nullptr, value); }
  void* AddTail(void* value) { return InsertAfter(nullptr, value); }
  // Copy another list's pointers in their order; it may be this list.
  void AddHead(CQKSimpleList* other);
  void AddTail(CQKSimpleList* other);
  // What stood there, null if the list is empty.
  void* RemoveHead() { return RemoveAt(head); }
  void* RemoveTail() { return RemoveAt(tail); }

  void* GetHead() const { return GetAt(head); }
  void* GetTail() const { return GetAt(tail); }
  void* GetHeadPosition() const { return head; }
  void* Begin() const { return head; }
  void* End() const { return nullptr; }
  INT32 GetCount() const { return count; }
  bool IsEmpty() const { return count == 0; }

  // The element at `at`, which then moves on.
  void* GetNext(void*& at) const;
  void* GetPrev(void*& at) const;
  // Moves `at` first: the element at the new position, null behind the end.
  void* GetAtNext(void*& at) const;
  void* GetAtPrev(void*& at) const;
  void* GetAt(void* at) const { return at ? static_cast<Node*>(at)->data : nullptr; }
  void SetAt(void* at, void* value);
  // The position `index` steps behind the head; null out of range.
  void* FindIndex(int index) const;

 protected:
  // A node between two others, either may be null; null without memory.
  virtual Node* NewNode(Node* prev, Node* next);
  virtual void FreeNode(Node* node);

 private:
  Node* head;
  Node* tail;
  Node* freeList;  // nodes that may be reused, through `next`
  INT32 count;
  CQKPlex* blocks;  // all nodes: the first alone, later ones several at a time
};

}  // namespace vexel
