// Sockets, non-blocking: each operation is answered later, through a response
// object that the socket holds until it is closed or released.
#pragma once

#include "zem_values.h"

class IZEMTCPSocket;

// Implemented by the plug-in.
class IZEMListenResponse : public IUnknown {
 public:
  // Someone connected; whoever keeps the socket takes a reference.
  virtual INT32 NewConnection(INT32 status, IZEMTCPSocket* socket) = 0;
};

// Implemented by the plug-in.
class IZEMTCPResponse : public IUnknown {
 public:
  virtual INT32 ConnectDone(INT32 status) = 0;
  // What has come, at most as much as was asked for.
  virtual INT32 ReadDone(INT32 status, IZEMBuffer* buffer) = 0;
  virtual INT32 WriteReady(INT32 status) = 0;
  virtual INT32 Closed(INT32 status) = 0;  // at most once
};

class IZEMTCPSocket : public IUnknown {
 public:
  virtual INT32 Init(IZEMTCPResponse* response) = 0;
  // Addresses and ports are in host byte order.
  virtual INT32 Bind(UINT32 address, UINT16 port) = 0;
  virtual INT32 Connect(const char* host, UINT16 port) = 0;  // ConnectDone
  virtual INT32 WantWrite() = 0;                             // WriteReady
  virtual INT32 Read(UINT32 count) = 0;                      // ReadDone
  // Queues the bytes. A socket that is released right behind still sends them,
  // and then closes.
  virtual INT32 Write(IZEMBuffer* buffer) = 0;
};

class IZEMListenSocket : public IUnknown {
 public:
  // Answered by NewConnection, again and again, until the socket is released.
  // ZEM_FAILED if the port is taken.
  virtual INT32 Listen(UINT32 address, UINT16 port, IZEMListenResponse* response) = 0;
};

class IZEMNetworkServices : public IUnknown {
 public:
  virtual INT32 CreateTCPSocket(IZEMTCPSocket*& socket) = 0;
  virtual INT32 CreateUDPSocket(IUnknown*& socket) = 0;
  virtual INT32 CreateListenSocket(IZEMListenSocket*& socket) = 0;
};
