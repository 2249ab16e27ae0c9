#include "host/simple_map.h"

#include <new>

namespace vexel {

bool CSimpleMap::Add(UINT16 id, CDeScatterPacket* packet) {
  Node* node = new (std::nothrow) Node{id, packet, m_pHead};
  if (!node) return false;
  m_pHead = node;
  packet->m_pulBytesHeld = &m_ulBytesHeld;
  return true;
}

CDeScatterPacket* CSimpleMap::Find(UINT16 id) const {
  for (Node* node = m_pHead; node; node = node->next) {
    if (node->key == id) return node->packet;
  }
  return nullptr;
}

void CSimpleMap::Remove(UINT16 id) {
  Node** link = &m_pHead;
  while (*link && (*link)->key != id) link = &(*link)->next;
  Node* node = *link;
  if (!node) return;
  *link = node->next;
  delete node;
}

void CSimpleMap::RemoveAll() {
  while (Node* node = m_pHead) {
    m_pHead = node->next;
    delete node->packet;
    delete node;
  }
}

CSimpleMap::Node** CSimpleMap::Oldest(const CDeScatterPacket* keep, bool finished) {
  Node** oldest = nullptr;
  for (Node** link = &m_pHead; *link; link = &(*link)->next) {
    const CDeScatterPacket* packet = (*link)->packet;
    if (packet != keep && (!finished || packet->IsComplete())) oldest = link;
  }
  return oldest;
}

bool CSimpleMap::MakeRoom(UINT32 bytes, const CDeScatterPacket* keep) {
  while (bytes > kMaxBytes || m_ulBytesHeld > kMaxBytes - bytes) {
    Node** link = Oldest(keep, true);
    if (!link) link = Oldest(keep, false);
    if (!link) return false;
    Node* node = *link;
    *link = node->next;
    delete node->packet;
    delete node;
  }
  return true;
}

}  // namespace vexel
