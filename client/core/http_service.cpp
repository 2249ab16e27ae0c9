// libcurl's multi interface names the sockets to wait for and one timer; both
// become watches of the loop.
#include "client/core/http_service.h"

#include <curl/curl.h>

#include <stdexcept>
#include <utility>

namespace vexel::client {

namespace {

constexpr long kConnectSeconds = 30;
constexpr long kMaxRedirections = 10;
// Slower than a byte a second for so long is dead.
constexpr long kStallSeconds = 60;

}  // namespace

HttpTransfer::HttpTransfer(HttpService* service, const std::string& url, Listener listener)
    : service_(service), handle_(curl_easy_init()), listener_(std::move(listener)) {
  if (!handle_) throw std::bad_alloc();
  curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(handle_, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle_, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle_, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(handle_, CURLOPT_MAXREDIRS, kMaxRedirections);
  curl_easy_setopt(handle_, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
  curl_easy_setopt(handle_, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(handle_, CURLOPT_LOW_SPEED_TIME, kStallSeconds);
  curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle_, CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(handle_, CURLOPT_USERAGENT, "vexel");
  curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, Receive);
  curl_easy_setopt(handle_, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(handle_, CURLOPT_PRIVATE, this);
  // Starts with the timer that it sets, so nothing is told before this returns.
  curl_multi_add_handle(service_->multi_, handle_);
}

HttpTransfer::~HttpTransfer() {
  curl_multi_remove_handle(service_->multi_, handle_);
  curl_easy_cleanup(handle_);
}

// True if there is a body: the answer of a page that says "not found" is none.
bool HttpTransfer::Begin() {
  long code = 0;
  curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &code);
  const bool ok = code >= 200 && code < 300;
  if (!std::exchange(begun_, true)) listener_.onBegin(ok);
  return ok;
}

size_t HttpTransfer::Receive(char* bytes, size_t size, size_t count, void* self) {
  auto* transfer = static_cast<HttpTransfer*>(self);
  if (!transfer->Begin()) return CURL_WRITEFUNC_ERROR;
  const bool taken =
      transfer->listener_.onBytes(reinterpret_cast<const uint8_t*>(bytes), size * count);
  return taken ? size * count : CURL_WRITEFUNC_PAUSE;
}

void HttpTransfer::Resume() {
  curl_easy_pause(handle_, CURLPAUSE_CONT);
}

void HttpTransfer::Done(bool ok) {
  if (ok && !begun_) ok = Begin();  // a body without bytes
  // Begin may have told of a failure: then that was the end.
  if (!std::exchange(begun_, true)) return listener_.onBegin(false);
  listener_.onEnd(ok);
}

HttpService::HttpService(EventLoop* loop) : loop_(loop), multi_(curl_multi_init()) {
  if (!multi_) throw std::bad_alloc();
  curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, WatchSocket);
  curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, SetTimer);
  curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
}

HttpService::~HttpService() {
  curl_multi_cleanup(multi_);
}

std::unique_ptr<HttpTransfer> HttpService::Get(const std::string& url,
                                               HttpTransfer::Listener listener) {
  return std::unique_ptr<HttpTransfer>(new HttpTransfer(this, url, std::move(listener)));
}

int HttpService::WatchSocket(CURL*, int descriptor, int what, void* self, void*) {
  auto* service = static_cast<HttpService*>(self);
  service->sockets_.erase(descriptor);
  if (what == CURL_POLL_REMOVE) return 0;
  unsigned events = 0;
  if (what != CURL_POLL_OUT) events |= kReadable;
  if (what != CURL_POLL_IN) events |= kWritable;
  service->sockets_[descriptor] = service->loop_->When(
      descriptor, events,
      [service, descriptor](unsigned ready) { service->Ready(descriptor, ready); });
  return 0;
}

int HttpService::SetTimer(CURLM*, long ms, void* self) {
  auto* service = static_cast<HttpService*>(self);
  service->timer_.Cancel();
  if (ms >= 0)
    service->timer_ =
        service->loop_->After(static_cast<uint32_t>(ms), [service] { service->Kick(); });
  return 0;
}

void HttpService::Ready(int descriptor, unsigned events) {
  int action = 0;
  if (events & kReadable) action |= CURL_CSELECT_IN;
  if (events & kWritable) action |= CURL_CSELECT_OUT;
  int running = 0;
  curl_multi_socket_action(multi_, descriptor, action, &running);
  TellEnds();
}

void HttpService::Kick() {
  int running = 0;
  curl_multi_socket_action(multi_, CURL_SOCKET_TIMEOUT, 0, &running);
  TellEnds();
}

// A listener may end its transfer, and start others.
void HttpService::TellEnds() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const bool ok = message->data.result == CURLE_OK;
    void* transfer = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
    static_cast<HttpTransfer*>(transfer)->Done(ok);
  }
}

}  // namespace vexel::client
