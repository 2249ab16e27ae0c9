// The unfinished messages by their identifiers: a plain list, since there are
// few of them at any time, and a limit on the memory that they hold together.
#pragma once

#include "host/cdescatter_packet.h"

namespace vexel {

class CSimpleMap {
 public:
  // What all messages may hold together, in bytes.
  static constexpr UINT32 kMaxBytes = 64u << 20;

  CSimpleMap() = default;
  ~CSimpleMap() { RemoveAll(); }
  CSimpleMap(const CSimpleMap&) = delete;
  CSimpleMap& operator=(const CSimpleMap&) = delete;

  // Puts `packet`, still empty, at the head, without a look for an equal key, and
  // owns it from now on. False without memory: the packet stays with the caller.
  bool Add(UINT16 id, CDeScatterPacket* packet);
  // The youngest one with this key, or null.
  CDeScatterPacket* Find(UINT16 id) const;
  // Takes the first one with this key out, if there is one; the packet is the
  // caller's again, and must go before the map does.
  void Remove(UINT16 id);
  // Destroys all.
  void RemoveAll();
  // Sees to it that `bytes` more fit, if need be by destroying others than
  // `keep`: first those that are finished and only wait for another resend, the
  // oldest first, then the oldest of the rest. False if even that is not enough.
  bool MakeRoom(UINT32 bytes, const CDeScatterPacket* keep);

 private:
  struct Node {
    UINT16 key;
    CDeScatterPacket* packet;  // owned
    Node* next;
  };
  Node** Oldest(const CDeScatterPacket* keep, bool finished);

  Node* m_pHead = nullptr;
  UINT32 m_ulBytesHeld = 0;  // kept up to date by the packets
};

}  // namespace vexel
