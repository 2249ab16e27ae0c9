// The HTTP parser, and the POST server in front of it, over sockets in memory.
// Whatever comes, an answer is the waiting page or one of the two errors, at
// once or not at all.
#include <string>

#include "entries.h"
#include "host/fake_network.h"
#include "http/http_parser.h"
#include "http/http_post_server.h"

namespace vexel::fuzz {

namespace {

// Messages in a row, as far as they go, each written again.
void ParseAll(const char* data, size_t size) {
  HTTPParser parser;
  while (size > 0) {
    UINT32 used = static_cast<UINT32>(size);
    HTTPMessage* message = parser.parse(data, used);
    if (!message) return;
    if (used == 0 || used > size) __builtin_trap();
    int length = -1;
    message->asString(nullptr, length);
    std::string out(static_cast<size_t>(length), 0);
    message->asString(out.data(), length);
    if (static_cast<size_t>(length) != out.size()) __builtin_trap();
    UINT32 number;
    message->getHeaderValue("Content-Length", number);
    delete message;
    data += used;
    size -= used;
  }
}

// The server's answer to `request`, which comes in pieces.
void Ask(test::FakeNetwork& network, const std::string& request, size_t piece) {
  const test::Ptr<test::FakeSocket> socket = network.listener->Connection();
  socket->Deliver(request, piece);
  const std::string answer = socket->Written();
  const bool known = answer.rfind("HTTP/1.0 200 OK\r\n", 0) == 0 ||
                     answer.rfind("HTTP/1.0 404 File Not Found\r\n", 0) == 0 ||
                     answer.rfind("HTTP/1.0 501 Not Implemented\r\n", 0) == 0;
  if (!answer.empty() && !known) __builtin_trap();
  // Whoever was answered is not read from any more.
  if (known && socket->wanted > 0) __builtin_trap();
}

}  // namespace

void FuzzHttp(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  ParseAll(text.data(), size);
  test::FakeHost host;
  const test::Ptr<test::FakeNetwork> network = test::New<test::FakeNetwork>();
  host.context->others[IID_IZEMNetworkServices] = network.get();
  const test::Ptr<HTTPPostServer> server =
      test::New<HTTPPostServer>(host.context.get(), host.player.get());
  for (const size_t piece : {size_t{1} << 20, size_t{7}}) {
    server->WritePost("http://t/", "a=1", 3, "_self");
    Ask(*network, text, piece);
  }
  server->Close();
  network->listener->response = nullptr;
}

}  // namespace vexel::fuzz
