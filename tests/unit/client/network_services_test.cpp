#include "client/core/network_services.h"

#include <gtest/gtest.h>

#include "unit/client/responses.h"

namespace vexel::client {
namespace {

constexpr UINT32 kLocalhost = 0x7F000001;

class Sockets : public testing::Test {
 protected:
  EventLoop loop;
  Ref<NetworkServices> services = Make<NetworkServices>(&loop);
  Ref<ListenSocket> listener = Make<ListenSocket>(&loop);
  Ref<ListenResponse> accepted = Make<ListenResponse>();
  Ref<TcpResponse> server = Make<TcpResponse>();
  Ref<TcpResponse> client = Make<TcpResponse>();

  // A server that keeps its connection, and a client connected to it.
  void Connect() {
    accepted->onConnection = [this](IZEMTCPSocket* socket) {
      server->socket = socket;
      socket->Init(server.get());
    };
    ASSERT_EQ(listener->Listen(kLocalhost, 0, accepted.get()), ZEM_OK);
    services->CreateTCPSocket(client->socket.Out());
    ASSERT_EQ(client->socket->Init(client.get()), ZEM_OK);
    ASSERT_EQ(client->socket->Connect("localhost", listener->port()), ZEM_OK);
    EXPECT_EQ(client->connected, 0);
    ASSERT_TRUE(Until([this] { return client->connected && server->socket; }));
  }
  bool Until(const std::function<bool()>& done) { return loop.RunUntil(done, kTestMs); }
  void TearDown() override {
    // Sockets hold their responses, which hold the sockets.
    client->socket = nullptr;
    server->socket = nullptr;
    listener = nullptr;
    while (loop.Turn(false)) {
    }
  }
};

TEST_F(Sockets, BytesGoBothWays) {
  Connect();
  server->socket->Read(100);
  client->socket->Write(BufferOf("ping").get());
  EXPECT_TRUE(server->received.empty());
  ASSERT_TRUE(Until([this] { return server->received == "ping"; }));
  client->socket->Read(2);
  server->socket->Write(BufferOf("pong").get());
  ASSERT_TRUE(Until([this] { return client->received == "po"; }));
  client->socket->Read(100);
  ASSERT_TRUE(Until([this] { return client->received == "pong"; }));
}

TEST_F(Sockets, ASocketReleasedBehindItsWriteStillSends) {
  Connect();
  const std::string page(3 << 20, 'x');
  client->onRead = [this] { client->socket->Read(1 << 20); };
  client->socket->Read(1 << 20);
  server->socket->Write(BufferOf(page).get());
  server->socket = nullptr;
  ASSERT_TRUE(Until([this] { return client->closed > 0; }));
  EXPECT_EQ(client->received.size(), page.size());
  EXPECT_EQ(client->closed, 1);
}

TEST_F(Sockets, UnreadBytesDoNotBreakTheReply) {
  Connect();
  client->socket->Write(BufferOf(std::string(100000, 'q')).get());
  server->onRead = [this] {
    server->socket->Write(BufferOf("reply").get());
    server->socket = nullptr;
  };
  server->socket->Read(10);
  client->onRead = [this] { client->socket->Read(100); };
  client->socket->Read(100);
  ASSERT_TRUE(Until([this] { return client->closed > 0; }));
  EXPECT_EQ(client->received, "reply");
}

TEST_F(Sockets, ClosedIsToldOnceAndTheResponseLetGo) {
  Connect();
  server->socket->Read(10);
  client->socket = nullptr;
  ASSERT_TRUE(Until([this] { return server->closed > 0; }));
  EXPECT_EQ(server->socket->Read(10), ZEM_OK);
  EXPECT_EQ(server->socket->Write(BufferOf("x").get()), ZEM_FAILED);
  while (loop.Turn(false)) {
  }
  EXPECT_EQ(server->closed, 1);
  server->AddRef();
  EXPECT_EQ(server->Release(), 1u);
}

TEST_F(Sockets, ReleasingTheSocketInsideItsOwnAnswerIsFine) {
  Connect();
  server->onRead = [this] { server->socket = nullptr; };
  server->socket->Read(10);
  client->socket->Write(BufferOf("x").get());
  client->socket->Read(10);
  EXPECT_TRUE(Until([this] { return client->closed > 0; }));
}

TEST_F(Sockets, WriteReadyComesWhenAskedFor) {
  Connect();
  client->socket->WantWrite();
  EXPECT_EQ(client->writable, 0);
  ASSERT_TRUE(Until([this] { return client->writable > 0; }));
  while (loop.Turn(false)) {
  }
  EXPECT_EQ(client->writable, 1);
}

TEST_F(Sockets, ATakenPortIsAFailure) {
  ASSERT_EQ(listener->Listen(kLocalhost, 0, accepted.get()), ZEM_OK);
  const auto other = Make<ListenSocket>(&loop);
  EXPECT_EQ(other->Listen(kLocalhost, listener->port(), accepted.get()), ZEM_FAILED);
  EXPECT_EQ(listener->Listen(kLocalhost, 0, accepted.get()), ZEM_UNEXPECTED);
}

TEST_F(Sockets, OnlyThisMachineIsListenedOnAndConnectedTo) {
  EXPECT_EQ(listener->Listen(0, 0, accepted.get()), ZEM_FAILED);
  EXPECT_EQ(listener->Listen(0x0A000001, 0, accepted.get()), ZEM_FAILED);
  services->CreateTCPSocket(client->socket.Out());
  client->socket->Init(client.get());
  EXPECT_EQ(client->socket->Bind(0x0A000001, 0), ZEM_FAILED);
  EXPECT_EQ(client->socket->Connect("10.0.0.1", 80), ZEM_OK);
  EXPECT_EQ(client->refused, 0);
  EXPECT_TRUE(Until([this] { return client->refused == 1; }));
}

TEST_F(Sockets, ARefusedConnectionIsTold) {
  // A port that was just free.
  ASSERT_EQ(listener->Listen(kLocalhost, 0, accepted.get()), ZEM_OK);
  const UINT16 port = listener->port();
  listener = nullptr;
  services->CreateTCPSocket(client->socket.Out());
  client->socket->Init(client.get());
  EXPECT_EQ(client->socket->Connect("127.0.0.1", port), ZEM_OK);
  EXPECT_TRUE(Until([this] { return client->refused == 1; }));
  EXPECT_EQ(client->socket->Read(10), ZEM_UNEXPECTED);
}

TEST_F(Sockets, CallsInTheWrongStateAreRefused) {
  services->CreateTCPSocket(client->socket.Out());
  EXPECT_EQ(client->socket->Connect("127.0.0.1", 1), ZEM_UNEXPECTED);
  EXPECT_EQ(client->socket->Read(10), ZEM_UNEXPECTED);
  EXPECT_EQ(client->socket->WantWrite(), ZEM_UNEXPECTED);
  EXPECT_EQ(client->socket->Write(nullptr), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(client->socket->Init(nullptr), ZEM_BAD_ARGUMENT);
  IUnknown* datagrams = nullptr;
  EXPECT_EQ(services->CreateUDPSocket(datagrams), ZEM_NOT_IMPLEMENTED);
}

TEST_F(Sockets, ManyConnectionsAtOnce) {
  std::vector<Ref<TcpResponse>> servers, clients;
  accepted->onConnection = [&](IZEMTCPSocket* socket) {
    auto response = Make<TcpResponse>();
    response->socket = socket;
    socket->Init(response.get());
    TcpResponse* raw = response.get();
    response->onRead = [raw] {
      raw->socket->Write(BufferOf(raw->received + "!").get());
      raw->socket = nullptr;
    };
    socket->Read(100);
    servers.push_back(response);
  };
  ASSERT_EQ(listener->Listen(kLocalhost, 0, accepted.get()), ZEM_OK);
  for (int i = 0; i < 200; i++) {
    auto response = Make<TcpResponse>();
    services->CreateTCPSocket(response->socket.Out());
    response->socket->Init(response.get());
    response->socket->Connect("127.0.0.1", listener->port());
    clients.push_back(response);
  }
  ASSERT_TRUE(Until([&] {
    return std::all_of(clients.begin(), clients.end(), [](auto& one) { return one->connected; });
  }));
  for (int i = 0; i < 200; i++) {
    clients[i]->socket->Write(BufferOf(std::to_string(i)).get());
    clients[i]->socket->Read(100);
  }
  ASSERT_TRUE(Until([&] {
    return std::all_of(clients.begin(), clients.end(),
                       [](auto& one) { return !one->received.empty(); });
  }));
  for (int i = 0; i < 200; i++) EXPECT_EQ(clients[i]->received, std::to_string(i) + "!");
  for (auto& one : clients) one->socket = nullptr;
}

}  // namespace
}  // namespace vexel::client
