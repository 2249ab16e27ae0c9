// Addresses of this machine, for sockets.
#pragma once

#include <netinet/in.h>

#include "zem/zem_types.h"

namespace vexel::client {

// Host byte order.
inline bool IsLoopback(UINT32 address) {
  return address >> 24 == 127;
}

inline sockaddr_in SocketAddress(UINT32 address, UINT16 port) {
  sockaddr_in socket{};
  socket.sin_family = AF_INET;
  socket.sin_addr.s_addr = htonl(address);
  socket.sin_port = htons(port);
  return socket;
}

}  // namespace vexel::client
