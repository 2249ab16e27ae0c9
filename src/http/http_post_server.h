// Sends the browser to a page with POST data.
//
// The client's hyper navigation takes a URL and nothing else. So a little web
// server on the loopback address keeps a page with a form, which holds the data
// in hidden fields and submits itself, and the browser is sent to that page.
// Each page is given out once.
#pragma once

#include "base/cqk_string.h"
#include "base/map_ptr_to_ptr.h"
#include "base/map_string_to_ob.h"
#include "zem/zem_network.h"
#include "zem/zem_services.h"

namespace vexel {

class HTTPPostConnection;

// Starts with a count of 0: the maker takes the first reference, and calls Close
// before it drops it. All calls come on the client's thread.
class HTTPPostServer : public IZEMListenResponse {
 public:
  // Holds both with a reference; either may be null, and fails what needs it.
  HTTPPostServer(IUnknown* context, IUnknown* player);
  HTTPPostServer(const HTTPPostServer&) = delete;
  HTTPPostServer& operator=(const HTTPPostServer&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;
  // Of the listening socket.
  INT32 NewConnection(INT32 status, IZEMTCPSocket* socket) override;
  // Listens on the first free one of 16 ports.
  virtual INT32 CreateListenSocket();
  // The next port to try; ZEM_FAILED after 16.
  virtual INT32 SetPort();

  virtual ~HTTPPostServer();

  // Makes the page that posts `data`, fields name=value with "&" between, to
  // `url`, and sends the browser to it, into the frame `target`. `length` is not
  // looked at: `data` ends with a zero. A navigation that fails leaves the page
  // waiting; any failure before leaves nothing. ZEM_OUT_OF_MEMORY with 256 pages
  // waiting.
  INT32 WritePost(const char* url, const char* data, UINT32 length, const char* target);
  // The page for WritePost, a new string for the caller, even if it fails behind
  // its arguments.
  INT32 GetPostData(const char* url, const char* data, UINT32 length, CQKString*& page);
  // Puts the fields of `data` into `values`, as texts. ZEM_FAILED without "=",
  // 0x8004000C if a quoted value has no end.
  INT32 CollectOptions(const char* data, IZEMValues* values);
  // Moves `text` over spaces in front, and cuts those at its end.
  static void TrimOffSpaces(char*& text);

  // The waiting page `name`, or null, until it is removed or replaced.
  const CQKString* FindPage(const char* name) const;
  void RemovePage(const char* name);
  // Closes a connection that has finished and lets go of it; once.
  void HTTPPostConnectionDone(HTTPPostConnection* connection);
  // Closes all connections and lets go of everything. The server stays closed.
  void Close();

 private:
  void CloseConnections();
  void DropOldestConnection();
  INT32 StorePage(CQKString* page, CQKString& name);
  INT32 Navigate(const char* url, const char* target);
  INT32 StoreOption(IZEMValues* values, const char* name, const char* value);

  INT32 m_lRefCount;
  IUnknown* m_pContext;                     // one reference
  IUnknown* m_pPlayer;                      // one reference; knows IZEMHyperNavigate
  IZEMCommonClassFactory* m_pClassFactory;  // one reference
  IZEMListenSocket* m_pListenSocket;        // one reference
  CQKMapPtrToPtr* m_pConnections;           // owned; live connections to when they came
  CQKMapStringToOb* m_pPages;               // owned; names to owned CQKString*
  UINT16 m_unPort;                          // 0 until chosen
  UINT32 m_ulPortAttempts;
  uintptr_t m_ulConnections;  // how many there have been
};

}  // namespace vexel
