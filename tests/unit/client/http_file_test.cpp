#include "client/core/http_file.h"

#include <gtest/gtest.h>

#include <map>

#include "client/core/network_services.h"
#include "unit/client/responses.h"

namespace vexel::client {
namespace {

using Told = std::vector<std::string>;

// Replies by path, each connection once.
class WebServer {
 public:
  explicit WebServer(EventLoop* loop) : listener_(Make<ListenSocket>(loop)) {
    const auto accepted = Make<ListenResponse>();
    accepted->onConnection = [this](IZEMTCPSocket* socket) {
      const auto peer = Make<TcpResponse>();
      TcpResponse* raw = peer.get();
      peer->socket = socket;
      peer->onRead = [this, raw] {
        if (raw->received.find("\r\n\r\n") == std::string::npos) {
          raw->socket->Read(4096);
          return;
        }
        const std::string path = raw->received.substr(4, raw->received.find(' ', 4) - 4);
        raw->socket->Write(BufferOf(replies[path]).get());
        raw->socket = nullptr;
      };
      socket->Init(peer.get());
      socket->Read(4096);
    };
    listener_->Listen(0x7F000001, 0, accepted.get());
  }
  std::map<std::string, std::string> replies;
  std::string URL(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(listener_->port()) + path;
  }

 private:
  Ref<ListenSocket> listener_;
};

std::string Reply(const std::string& status, const std::string& body,
                  const std::string& more = "") {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
         more + "Connection: close\r\n\r\n" + body;
}

class HttpFiles : public testing::Test {
 protected:
  EventLoop loop;
  HttpService http{&loop};
  FileAccess access;
  WebServer server{&loop};
  Ref<HttpFile> file;
  Ref<FileResponse> response = Make<FileResponse>();

  void SetUp() override {
    access.loop = &loop;
    access.http = &http;
  }
  void TearDown() override {
    if (file) file->Close();
    Settle();
    file = nullptr;
    while (loop.Turn(false)) {
    }
  }
  void Settle() {
    EXPECT_TRUE(loop.RunUntil([this] { return *access.pending == 0; }, kTestMs));
  }
  void Open(const std::string& path) {
    file = Make<HttpFile>(&access, server.URL(path));
    EXPECT_EQ(file->Init(ZEM_FILE_READ, response.get()), ZEM_OK);
    EXPECT_TRUE(response->told.empty());
    Settle();
  }
};

TEST_F(HttpFiles, AreReadInPiecesUpToTheEnd) {
  server.replies["/a"] = Reply("200 OK", std::string(5000, 'a'));
  Open("/a");
  for (int i = 0; i < 4; i++) file->Read(2048);
  Settle();
  EXPECT_EQ(response->told, (Told{"init", "read 2048", "read 2048", "read 904", "read 0"}));
  EXPECT_EQ(response->body, std::string(5000, 'a'));
}

TEST_F(HttpFiles, LargeOnesWaitForTheirReader) {
  const std::string body(6 << 20, 'b');
  server.replies["/b"] = Reply("200 OK", body);
  Open("/b");
  for (int i = 0; i < 50; i++) loop.RunUntil([] { return false; }, 2);
  response->onRead = [this] {
    if (response->told.back() == "read 65536") file->Read(65536);
  };
  file->Read(65536);
  ASSERT_TRUE(loop.RunUntil([&] { return response->told.back() == "read 0"; }, kTestMs));
  EXPECT_EQ(response->body.size(), body.size());
}

TEST_F(HttpFiles, AnEmptyBodyOpens) {
  server.replies["/e"] = Reply("200 OK", "");
  Open("/e");
  file->Read(10);
  Settle();
  EXPECT_EQ(response->told, (Told{"init", "read 0"}));
}

TEST_F(HttpFiles, APageThatSaysNotFoundIsNoFile) {
  server.replies["/n"] = Reply("404 Not Found", "no such page");
  Open("/n");
  EXPECT_EQ(response->told, Told{"init failed"});
  file->Read(10);
  Settle();
  EXPECT_EQ(response->told, (Told{"init failed", "read 0 failed"}));
}

TEST_F(HttpFiles, AServerThatIsNotThereIsAFailure) {
  file = Make<HttpFile>(&access, "http://127.0.0.1:1/a");
  file->Init(ZEM_FILE_READ, response.get());
  Settle();
  EXPECT_EQ(response->told, Told{"init failed"});
}

TEST_F(HttpFiles, RedirectionsLeadToOtherPagesButNotIntoFiles) {
  server.replies["/old"] = Reply("302 Found", "", "Location: /new\r\n");
  server.replies["/new"] = Reply("200 OK", "here");
  Open("/old");
  file->Read(10);
  Settle();
  EXPECT_EQ(response->body, "here");
  file->Close();
  Settle();
  server.replies["/trap"] = Reply("302 Found", "", "Location: file:///etc/passwd\r\n");
  response = Make<FileResponse>();
  Open("/trap");
  EXPECT_EQ(response->told, Told{"init failed"});
}

TEST_F(HttpFiles, ABodyThatBreaksOffEndsInAFailure) {
  server.replies["/cut"] = "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nonly this";
  Open("/cut");
  file->Read(100);
  file->Read(100);
  Settle();
  EXPECT_EQ(response->told, (Told{"init", "read 9", "read 0 failed"}));
}

TEST_F(HttpFiles, ClosingEndsTheDownload) {
  server.replies["/b"] = Reply("200 OK", std::string(6 << 20, 'b'));
  Open("/b");
  file->Close();
  file->Read(1 << 20);
  Settle();
  EXPECT_EQ(response->told, (Told{"init", "close"}));
  EXPECT_EQ(response->AddRef(), 2u);
  response->Release();
}

}  // namespace
}  // namespace vexel::client
