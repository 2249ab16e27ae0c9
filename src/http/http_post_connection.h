// One connection of the browser to the POST server: reads a request, answers it,
// and ends. Nothing is kept alive.
#pragma once

#include "base/byte_queue.h"
#include "http/http_post_server.h"

namespace vexel {

class HTTPGetMessage;

enum HTTPError {
  HTTP_NOT_IMPLEMENTED = 0,  // 501
  HTTP_NOT_FOUND = 1,        // 404
};

// Starts with a count of 0: the maker takes the first reference. The server's
// list and the socket hold it until it is done.
class HTTPPostConnection : public IZEMTCPResponse {
 public:
  HTTPPostConnection();
  HTTPPostConnection(const HTTPPostConnection&) = delete;
  HTTPPostConnection& operator=(const HTTPPostConnection&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;
  INT32 ConnectDone(INT32 status) override;
  // Takes what came, answers if the request is whole, and else reads on.
  INT32 ReadDone(INT32 status, IZEMBuffer* buffer) override;
  INT32 WriteReady(INT32 status) override;
  INT32 Closed(INT32 status) override;
  // Answers with an error page and ends.
  virtual INT32 HandleError(HTTPError error);
  // Keeps all with references, becomes the socket's response, and begins to read.
  virtual INT32 Init(IUnknown* context, HTTPPostServer* server, IZEMTCPSocket* socket, UINT16 port);
  // Lets go of everything; once.
  virtual void Close();

  virtual ~HTTPPostConnection();

  // Answers with the page that the message names and ends.
  INT32 HandleMessage(HTTPGetMessage* message);
  // Writes all of `buffer`, in pieces that the socket takes, and ends.
  INT32 WriteBuffer(IZEMBuffer* buffer);

 private:
  INT32 TakeRequests(const char* data, UINT32 size, bool& wantMore);
  INT32 WritePieces(IZEMBuffer* buffer);
  INT32 MakeBuffer(const void* bytes, UINT32 size, IZEMBuffer*& buffer);
  void Done();

  INT32 m_lRefCount;
  IZEMTCPSocket* m_pSocket;                 // one reference; null: closed
  IUnknown* m_pContext;                     // one reference
  HTTPPostServer* m_pServer;                // one reference
  CBigByteGrowingQueue* m_pInput;           // owned; bytes that are no whole request yet
  UINT16 m_unPort;                          // the server's
  IZEMCommonClassFactory* m_pClassFactory;  // one reference
};

}  // namespace vexel
