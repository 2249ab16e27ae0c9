// The listening socket, the waiting pages and the live connections.
#include "http/http_post_server.h"

#include <cstdlib>
#include <ctime>
#include <new>

#include "base/ref.h"
#include "http/http_post_connection.h"

namespace vexel {

namespace {

constexpr INT32 kMapBlock = 10;
constexpr UINT32 kLoopback = 0x7F000001;
constexpr UINT32 kMaxPortAttempts = 15;
// The first port lies from 1024 to 16367.
constexpr int kFirstPort = 1024;
constexpr int kPorts = 15344;
constexpr INT32 kMaxPages = 256;
constexpr INT32 kMaxConnections = 64;

}  // namespace

HTTPPostServer::HTTPPostServer(IUnknown* context, IUnknown* player)
    : m_lRefCount(0),
      m_pContext(nullptr),
      m_pPlayer(nullptr),
      m_pClassFactory(nullptr),
      m_pListenSocket(nullptr),
      m_pConnections(nullptr),
      m_pPages(nullptr),
      m_unPort(0),
      m_ulPortAttempts(0),
      m_ulConnections(0) {
  ReplaceRef(m_pContext, context);
  ReplaceRef(m_pPlayer, player);
  // Without a factory each page fails for itself.
  static_cast<void>(QueryAndReplace(m_pContext, IID_IZEMCommonClassFactory, m_pClassFactory));
}

HTTPPostServer::~HTTPPostServer() {
  Close();
}

INT32 HTTPPostServer::QueryInterface(const ZEMID& id, void** out) {
  return AnswerQuery<IZEMListenResponse>(this, IID_IZEMListenResponse, id, out);
}

UINT32 HTTPPostServer::AddRef() {
  return static_cast<UINT32>(++m_lRefCount);
}

UINT32 HTTPPostServer::Release() {
  INT32 left = --m_lRefCount;
  if (left > 0) return static_cast<UINT32>(left);
  // Closing holds and releases the server once more.
  m_lRefCount = 1;
  delete this;
  return 0;
}

INT32 HTTPPostServer::SetPort() {
  if (m_unPort == 0) {
    m_ulPortAttempts++;
    srand(static_cast<unsigned>(time(nullptr)));
    m_unPort = static_cast<UINT16>(rand() % kPorts + kFirstPort);
    return ZEM_OK;
  }
  if (m_ulPortAttempts > kMaxPortAttempts) return ZEM_FAILED;
  m_ulPortAttempts++;
  m_unPort++;
  return ZEM_OK;
}

INT32 HTTPPostServer::CreateListenSocket() {
  CloseConnections();
  m_pConnections = new (std::nothrow) CQKMapPtrToPtr(kMapBlock);
  if (!m_pConnections) return ZEM_OUT_OF_MEMORY;
  if (!m_pContext) return ZEM_UNEXPECTED;
  IZEMNetworkServices* services = nullptr;
  INT32 result = QueryAndReplace(m_pContext, IID_IZEMNetworkServices, services);
  if (result < 0) return result;
  ReleaseAndClear(m_pListenSocket);
  result = services->CreateListenSocket(m_pListenSocket);
  services->Release();
  if (result >= 0 && !m_pListenSocket) result = ZEM_FAILED;
  for (bool listening = false; result >= 0 && !listening;) {
    result = SetPort();
    listening = result >= 0 && m_pListenSocket->Listen(kLoopback, m_unPort, this) >= 0;
  }
  if (result < 0) ReleaseAndClear(m_pListenSocket);
  return result;
}

INT32 HTTPPostServer::WritePost(const char* url, const char* data, UINT32 length,
                                const char* target) {
  ScopedRef<HTTPPostServer> self(this);
  INT32 result = m_pListenSocket ? ZEM_OK : CreateListenSocket();
  if (!m_pPages) m_pPages = new (std::nothrow) CQKMapStringToOb(kMapBlock);
  if (!m_pPages) return ZEM_OUT_OF_MEMORY;
  if (result < 0) return result;
  CQKString* page = nullptr;
  CQKString name;
  result = GetPostData(url, data, length, page);
  if (result >= 0) result = StorePage(page, name);
  if (result < 0) {
    delete page;
    return result;
  }
  CQKString address;
  address.Format("http://127.0.0.1:%u/%s", static_cast<unsigned>(m_unPort),
                 static_cast<const char*>(name));
  return Navigate(address, target);
}

// Puts the page among those that wait, under a name made of their number. That
// name may be taken, as pages leave in any order: the older page is dropped.
INT32 HTTPPostServer::StorePage(CQKString* page, CQKString& name) {
  name.Format("redirect%u.html", static_cast<unsigned>(m_pPages->GetCount()));
  void* old = nullptr;
  if (!m_pPages->Lookup(name, old) && m_pPages->GetCount() >= kMaxPages) return ZEM_OUT_OF_MEMORY;
  if (!m_pPages->SetAt(name, page)) return ZEM_OUT_OF_MEMORY;
  delete static_cast<CQKString*>(old);
  return ZEM_OK;
}

INT32 HTTPPostServer::Navigate(const char* url, const char* target) {
  if (!m_pPlayer) return ZEM_UNEXPECTED;
  IZEMHyperNavigate* navigate = nullptr;
  INT32 result = QueryAndReplace(m_pPlayer, IID_IZEMHyperNavigate, navigate);
  if (result < 0) return result;
  result = navigate->GoToURL(url, target);
  navigate->Release();
  return result;
}

const CQKString* HTTPPostServer::FindPage(const char* name) const {
  void* page = nullptr;
  if (m_pPages) m_pPages->Lookup(name, page);
  return static_cast<CQKString*>(page);
}

void HTTPPostServer::RemovePage(const char* name) {
  delete FindPage(name);
  if (m_pPages) m_pPages->RemoveKey(name);
}

INT32 HTTPPostServer::NewConnection(INT32 status, IZEMTCPSocket* socket) {
  if (status < 0) return ZEM_OK;
  if (!m_pConnections) return ZEM_UNEXPECTED;
  ScopedRef<HTTPPostServer> self(this);
  if (m_pConnections->GetCount() >= kMaxConnections) DropOldestConnection();
  HTTPPostConnection* connection = new (std::nothrow) HTTPPostConnection;
  if (!connection) return ZEM_OUT_OF_MEMORY;
  connection->AddRef();
  if (!m_pConnections->SetAt(connection, reinterpret_cast<void*>(++m_ulConnections))) {
    connection->Release();
    return ZEM_OUT_OF_MEMORY;
  }
  if (!m_pContext) return ZEM_OK;
  INT32 result = connection->Init(m_pContext, this, socket, m_unPort);
  if (result < 0) HTTPPostConnectionDone(connection);
  return result;
}

// All that are in the list wait for their peer.
void HTTPPostServer::DropOldestConnection() {
  void* oldest = nullptr;
  uintptr_t cameFirst = UINTPTR_MAX;
  for (void* at = m_pConnections->GetStartPosition(); at;) {
    void* connection = nullptr;
    void* came = nullptr;
    m_pConnections->GetNextAssoc(at, connection, came);
    if (reinterpret_cast<uintptr_t>(came) >= cameFirst) continue;
    cameFirst = reinterpret_cast<uintptr_t>(came);
    oldest = connection;
  }
  HTTPPostConnectionDone(static_cast<HTTPPostConnection*>(oldest));
}

void HTTPPostServer::HTTPPostConnectionDone(HTTPPostConnection* connection) {
  if (!m_pConnections || !m_pConnections->RemoveKey(connection)) return;
  ScopedRef<HTTPPostServer> self(this);
  connection->Close();
  connection->Release();
}

void HTTPPostServer::CloseConnections() {
  while (m_pConnections && !m_pConnections->IsEmpty()) {
    HTTPPostConnectionDone(
        static_cast<HTTPPostConnection*>(static_cast<PtrAssoc*>(m_pConnections->Begin())->key));
  }
  delete m_pConnections;
  m_pConnections = nullptr;
}

void HTTPPostServer::Close() {
  CloseConnections();
  if (m_pPages) {
    for (void* at = m_pPages->GetStartPosition(); at;) {
      const char* name;
      void* page;
      m_pPages->GetNextAssoc(at, name, page);
      delete static_cast<CQKString*>(page);
    }
    delete m_pPages;
    m_pPages = nullptr;
  }
  ReleaseAndClear(m_pContext);
  ReleaseAndClear(m_pPlayer);
  ReleaseAndClear(m_pListenSocket);
  ReleaseAndClear(m_pClassFactory);
}

}  // namespace vexel
