#include "base/simple_list.h"

#include <new>

namespace vexel {

namespace {

// Many lists never have a second entry.
constexpr UINT32 kFirstNodes = 1;
constexpr UINT32 kMoreNodes = 8;

}  // namespace

CQKSimpleList::CQKSimpleList()
    : head(nullptr), tail(nullptr), freeList(nullptr), count(0), blocks(nullptr) {}

CQKSimpleList::~CQKSimpleList() {
  if (blocks) blocks->FreeDataChain();
}

bool CQKSimpleList::IsPtrListValid() const {
  if (count == 0) return !head && !tail;
  return count > 0 && head && tail && !head->prev && !tail->next;
}

CQKSimpleList::Node* CQKSimpleList::NewNode(Node* prev, Node* next) {
  if (!freeList) {
    UINT32 nodes = blocks ? kMoreNodes : kFirstNodes;
    CQKPlex* block = CQKPlex::Create(blocks, nodes, sizeof(Node));
    if (!block) return nullptr;
    Node* first = static_cast<Node*>(block->Data());
    while (nodes-- > 0) freeList = new (first + nodes) Node{freeList, nullptr, nullptr};
  }
  Node* node = freeList;
  freeList = node->next;
  *node = {next, prev, nullptr};
  count++;
  return node;
}

void CQKSimpleList::FreeNode(Node* node) {
  node->next = freeList;
  freeList = node;
  count--;
}

void CQKSimpleList::RemoveAll() {
  while (head) {
    Node* next = head->next;
    FreeNode(head);
    head = next;
  }
  tail = nullptr;
}

void* CQKSimpleList::RemoveAt(void* at) {
  if (!at) return nullptr;
  Node* node = static_cast<Node*>(at);
  void* value = node->data;
  (node->prev ? node->prev->next : head) = node->next;
  (node->next ? node->next->prev : tail) = node->prev;
  FreeNode(node);
  return value;
}

void* CQKSimpleList::InsertBefore(void* at, void* value) {
  Node* next = at ? static_cast<Node*>(at) : head;
  Node* node = NewNode(next ? next->prev : nullptr, next);
  if (!node) return nullptr;
  node->data = value;
  (node->prev ? node->prev->next : head) = node;
  (next ? next->prev : tail) = node;
  return node;
}

void* CQKSimpleList::InsertAfter(void* at, void* value) {
  Node* prev = at ? static_cast<Node*>(at) : tail;
  Node* node = NewNode(prev, prev ? prev->next : nullptr);
  if (!node) return nullptr;
  node->data = value;
  (node->next ? node->next->prev : tail) = node;
  (prev ? prev->next : head) = node;
  return node;
}

void* CQKSimpleList::Find(void* value, void* after) const {
  Node* node = after ? static_cast<Node*>(after)->next : head;
  while (node && node->data != value) node = node->next;
  return node;
}

// The other list may be this one, so its count is taken first.
void CQKSimpleList::AddHead(CQKSimpleList* other) {
  if (!other) return;
  void* at = other->tail;
  for (INT32 left = other->count; left > 0; left--) AddHead(other->GetPrev(at));
}

void CQKSimpleList::AddTail(CQKSimpleList* other) {
  if (!other) return;
  void* at = other->head;
  for (INT32 left = other->count; left > 0; left--) AddTail(other->GetNext(at));
}

void* CQKSimpleList::GetNext(void*& at) const {
  void* value = GetAt(at);
  if (at) at = static_cast<Node*>(at)->next;
  return value;
}

void* CQKSimpleList::GetPrev(void*& at) const {
  void* value = GetAt(at);
  if (at) at = static_cast<Node*>(at)->prev;
  return value;
}

void* CQKSimpleList::GetAtNext(void*& at) const {
  if (at) at = static_cast<Node*>(at)->next;
  return GetAt(at);
}

void* CQKSimpleList::GetAtPrev(void*& at) const {
  if (at) at = static_cast<Node*>(at)->prev;
  return GetAt(at);
}

void CQKSimpleList::SetAt(void* at, void* value) {
  if (at) static_cast<Node*>(at)->data = value;
}

void* CQKSimpleList::FindIndex(int index) const {
  if (index < 0 || index >= count) return nullptr;
  Node* node = head;
  while (index-- > 0) node = node->next;
  return node;
}

}  // namespace vexel
