#include "client/core/network_services.h"

#include "client/core/tcp_connection.h"

namespace vexel::client {

INT32 NetworkServices::CreateTCPSocket(IZEMTCPSocket*& socket) {
  socket = Make<TcpSocket>(loop_).Share();
  return ZEM_OK;
}

INT32 NetworkServices::CreateUDPSocket(IUnknown*& socket) {
  socket = nullptr;
  return ZEM_NOT_IMPLEMENTED;
}

INT32 NetworkServices::CreateListenSocket(IZEMListenSocket*& socket) {
  socket = Make<ListenSocket>(loop_).Share();
  return ZEM_OK;
}

}  // namespace vexel::client
