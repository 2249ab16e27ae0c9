// Downloads from web servers, many at a time, driven by the event loop.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "client/core/event_loop.h"

typedef void CURL;
typedef void CURLM;

namespace vexel::client {

// One download. Ends with this object.
class HttpTransfer {
 public:
  // Told in the loop, never inside a call of this object.
  struct Listener {
    // The body begins; `ok` is false, and nothing follows, if there is none.
    std::function<void(bool ok)> onBegin;
    // Bytes of the body. False holds the transfer until Resume, and the same
    // bytes come again.
    std::function<bool(const uint8_t* bytes, size_t size)> onBytes;
    // The body is whole, or broken off.
    std::function<void(bool ok)> onEnd;
  };

  ~HttpTransfer();
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;
  void Resume();

 private:
  friend class HttpService;
  HttpTransfer(class HttpService* service, const std::string& url, Listener listener);
  static size_t Receive(char* bytes, size_t size, size_t count, void* self);
  bool Begin();
  void Done(bool ok);

  HttpService* service_;
  CURL* handle_;
  Listener listener_;
  bool begun_ = false;
};

class HttpService {
 public:
  explicit HttpService(EventLoop* loop);
  ~HttpService();
  HttpService(const HttpService&) = delete;
  HttpService& operator=(const HttpService&) = delete;

  // Of an http or https URL; redirections are followed to such ones only.
  std::unique_ptr<HttpTransfer> Get(const std::string& url, HttpTransfer::Listener listener);

 private:
  friend class HttpTransfer;
  static int WatchSocket(CURL* handle, int descriptor, int what, void* self, void* socket);
  static int SetTimer(CURLM* multi, long ms, void* self);
  void Ready(int descriptor, unsigned events);
  void Kick();
  void TellEnds();

  EventLoop* loop_;
  CURLM* multi_;
  std::map<int, Watch> sockets_;  // by descriptor
  Watch timer_;
};

}  // namespace vexel::client
