#include "http/http_post_connection.h"

#include <strings.h>

#include <cstdio>
#include <cstring>
#include <new>

#include "base/ref.h"
#include "http/http_message.h"
#include "http/http_parser.h"

namespace vexel {

namespace {

// Bytes of one read, and of the queue at first.
constexpr UINT32 kReadBytes = 2024;
// What the client's socket takes in one write.
constexpr UINT32 kWriteBytes = 32676;
// A browser's request is below 1 KiB; who sends more is no browser of ours.
constexpr UINT32 kMaxRequestBytes = 65536;

struct ErrorReply {
  const char* head;  // with the body's length to be put in; line ends are mixed
  const char* body;
};

// By HTTPError.
const ErrorReply kErrorReplies[] = {
    {"HTTP/1.0 501 Not Implemented\r\nContent-type: text/html\nContent-length: %d\n\r\n",
     "<HTML>\n<TITLE>501 Not Implemented </TITLE>\n<BODY BGCOLOR=\"#FFFFFF\">\n"
     "<FONT FACE=\"Arial,Helvetica,Geneva\" SIZE=-1>\n<H2>501 Not Implemented </H2>\n"
     "</BODY>\n</HTML>\n"},
    {"HTTP/1.0 404 File Not Found\r\nContent-type: text/html\nContent-length: %d\n\r\n",
     "<HTML>\n<TITLE>404 File Not Found</TITLE>\n<BODY BGCOLOR=\"#FFFFFF\">\n"
     "<FONT FACE=\"Arial,Helvetica,Geneva\" SIZE=-1>\n<H2>404 Not Found</H2>\n"
     "</BODY>\n</HTML>\n"},
};

// Whether a request line has ended. The parser takes the first half of one for
// a whole request without a version, so it is asked from then on only.
bool HasLineEnd(const char* data, UINT32 size) {
  return memchr(data, '\n', size) || memchr(data, '\r', size);
}

// Whether the message was meant for us. A page of another site can make the
// browser fetch a page of ours by its name, but not under our host's name.
bool NamesThisHost(HTTPMessage* message) {
  if (!message->getHeader("Host")) return true;
  CQKString host = message->getHeaderValue("Host").SpanExcluding(":");
  return host == "127.0.0.1" || strcasecmp(host, "localhost") == 0;
}

}  // namespace

HTTPPostConnection::HTTPPostConnection()
    : m_lRefCount(0),
      m_pSocket(nullptr),
      m_pContext(nullptr),
      m_pServer(nullptr),
      m_pInput(nullptr),
      m_unPort(0),
      m_pClassFactory(nullptr) {}

HTTPPostConnection::~HTTPPostConnection() {
  Close();
}

INT32 HTTPPostConnection::QueryInterface(const ZEMID& id, void** out) {
  return AnswerQuery<IZEMTCPResponse>(this, IID_IZEMTCPResponse, id, out);
}

UINT32 HTTPPostConnection::AddRef() {
  return static_cast<UINT32>(++m_lRefCount);
}

UINT32 HTTPPostConnection::Release() {
  INT32 left = --m_lRefCount;
  if (left == 0) delete this;
  return static_cast<UINT32>(left);
}

INT32 HTTPPostConnection::Init(IUnknown* context, HTTPPostServer* server, IZEMTCPSocket* socket,
                               UINT16 port) {
  if (!context || !server || !socket) return ZEM_UNEXPECTED;
  ScopedRef<HTTPPostConnection> self(this);
  ReplaceRef(m_pContext, context);
  ReplaceRef(m_pServer, server);
  ReplaceRef(m_pSocket, socket);
  m_unPort = port;
  INT32 result = QueryAndReplace(m_pContext, IID_IZEMCommonClassFactory, m_pClassFactory);
  if (result < 0) return result;
  m_pInput = new (std::nothrow) CBigByteGrowingQueue(kReadBytes, 1);
  if (!m_pInput || !m_pInput->IsQueueValid()) return ZEM_OUT_OF_MEMORY;
  result = socket->Init(this);
  return result < 0 ? result : socket->Read(kReadBytes);
}

void HTTPPostConnection::Close() {
  delete m_pInput;
  m_pInput = nullptr;
  ReleaseAndClear(m_pServer);
  ReleaseAndClear(m_pContext);
  ReleaseAndClear(m_pSocket);
  ReleaseAndClear(m_pClassFactory);
}

// Leaves the server's list, which closes this connection.
void HTTPPostConnection::Done() {
  if (m_pServer) m_pServer->HTTPPostConnectionDone(this);
}

INT32 HTTPPostConnection::ConnectDone(INT32) {
  return ZEM_OK;
}

INT32 HTTPPostConnection::WriteReady(INT32) {
  return ZEM_OK;
}

INT32 HTTPPostConnection::Closed(INT32) {
  ScopedRef<HTTPPostConnection> self(this);
  ReleaseAndClear(m_pSocket);
  Done();
  return ZEM_OK;
}

INT32 HTTPPostConnection::ReadDone(INT32 status, IZEMBuffer* buffer) {
  ScopedRef<HTTPPostConnection> self(this);
  if (!m_pInput) return ZEM_OK;
  UINT8* bytes = nullptr;
  UINT32 count = 0;
  if (status >= 0 && buffer) buffer->Get(bytes, count);
  if (!bytes || count == 0) {
    Done();
    return ZEM_OK;
  }
  UINT32 size = m_pInput->GetQueuedItemCount() + count;
  char* data = nullptr;
  if (count <= kMaxRequestBytes && size <= kMaxRequestBytes &&
      m_pInput->EnQueue(bytes, count) == count) {
    data = new (std::nothrow) char[size];
  }
  if (!data) {
    Done();
    return ZEM_OUT_OF_MEMORY;
  }
  m_pInput->DeQueue(data, size);
  bool wantMore = false;
  INT32 result = TakeRequests(data, size, wantMore);
  delete[] data;
  if (wantMore && m_pSocket) result = m_pSocket->Read(kReadBytes);
  return result;
}

// Answers the requests in `data` until an answer ends the connection; bytes of
// a request that isn't whole go back into the queue.
INT32 HTTPPostConnection::TakeRequests(const char* data, UINT32 size, bool& wantMore) {
  INT32 result = ZEM_OK;
  HTTPParser parser;
  while (size > 0 && m_pInput) {
    UINT32 used = size;
    HTTPMessage* message = HasLineEnd(data, size) ? parser.parse(data, used) : nullptr;
    if (!message) {
      m_pInput->EnQueue(data, size);
      wantMore = true;
      return result;
    }
    if (message->tag() == HTTP_TAG_GET) {
      result = HandleMessage(static_cast<HTTPGetMessage*>(message));
    } else {
      result = HandleError(HTTP_NOT_IMPLEMENTED);
    }
    delete message;
    data += used;
    size -= used;
  }
  return result;
}

INT32 HTTPPostConnection::HandleMessage(HTTPGetMessage* message) {
  if (!m_pServer) return ZEM_UNEXPECTED;
  const char* name = message->url();
  if (*name == '/') name++;
  const CQKString* page = NamesThisHost(message) ? m_pServer->FindPage(name) : nullptr;
  if (!page) return HandleError(HTTP_NOT_FOUND);
  IZEMBuffer* reply = nullptr;
  INT32 result = MakeBuffer(*page, static_cast<UINT32>(page->GetLength()), reply);
  if (result < 0) {
    Done();
    return result;
  }
  m_pServer->RemovePage(name);
  result = WriteBuffer(reply);
  reply->Release();
  return result;
}

// Required: the terminating zero goes out behind the body.
INT32 HTTPPostConnection::HandleError(HTTPError error) {
  const ErrorReply& reply = kErrorReplies[error];
  char text[512];
  int length = snprintf(text, sizeof text, reply.head, static_cast<int>(strlen(reply.body)));
  length += snprintf(text + length, sizeof text - static_cast<size_t>(length), "%s", reply.body);
  IZEMBuffer* buffer = nullptr;
  INT32 result = MakeBuffer(text, static_cast<UINT32>(length) + 1, buffer);
  if (result < 0) {
    Done();
    return result;
  }
  result = WriteBuffer(buffer);
  buffer->Release();
  return result;
}

INT32 HTTPPostConnection::WriteBuffer(IZEMBuffer* buffer) {
  ScopedRef<HTTPPostConnection> self(this);
  if (!m_pSocket) return ZEM_UNEXPECTED;
  INT32 result = buffer->GetSize() <= kWriteBytes ? m_pSocket->Write(buffer) : WritePieces(buffer);
  Done();
  return result;
}

INT32 HTTPPostConnection::WritePieces(IZEMBuffer* buffer) {
  UINT8* bytes = nullptr;
  UINT32 left = 0;
  INT32 result = buffer->Get(bytes, left);
  while (result >= 0 && left > 0 && m_pSocket) {
    UINT32 count = left < kWriteBytes ? left : kWriteBytes;
    IZEMBuffer* piece = nullptr;
    result = MakeBuffer(bytes, count, piece);
    if (result < 0) return result;
    result = m_pSocket->Write(piece);
    piece->Release();
    bytes += count;
    left -= count;
  }
  return result;
}

// A buffer of the client's, with a reference for the caller.
INT32 HTTPPostConnection::MakeBuffer(const void* bytes, UINT32 size, IZEMBuffer*& buffer) {
  void* made = nullptr;
  if (!m_pClassFactory || m_pClassFactory->CreateInstance(IID_IZEMBuffer, &made) < 0 || !made) {
    return ZEM_OUT_OF_MEMORY;
  }
  buffer = static_cast<IZEMBuffer*>(made);
  INT32 result = buffer->Set(static_cast<const UINT8*>(bytes), size);
  if (result < 0) ReleaseAndClear(buffer);
  return result;
}

}  // namespace vexel
