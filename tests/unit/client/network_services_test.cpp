#include "client/core/network_services.h"

#include <gtest/gtest.h>

#include "unit/client/raw_peer.h"
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
  // A server that keeps its connection, which a peer of the test's makes.
  RawPeer ConnectPeer() {
    accepted->onConnection = [this](IZEMTCPSocket* socket) {
      server->socket = socket;
      socket->Init(server.get());
    };
    EXPECT_EQ(listener->Listen(kLocalhost, 0, accepted.get()), ZEM_OK);
    RawPeer peer(listener->port());
    EXPECT_TRUE(Until([this] { return static_cast<bool>(server->socket); }));
    return peer;
  }
  // A server that lets each connection go behind a reply.
  void ServeAndRelease(const std::string& reply) {
    accepted->onConnection = [reply](IZEMTCPSocket* socket) {
      EXPECT_EQ(socket->Write(BufferOf(reply).get()), ZEM_OK);
    };
    ASSERT_EQ(listener->Listen(kLocalhost, 0, accepted.get()), ZEM_OK);
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

TEST_F(Sockets, AHalfClosedPeerGetsItsReply) {
  RawPeer peer = ConnectPeer();
  server->onRead = [this] {
    server->socket->Write(BufferOf("reply").get());
    server->socket = nullptr;
  };
  server->socket->Read(100);
  ASSERT_TRUE(peer.Send("request"));
  peer.EndSending();
  std::string received;
  ASSERT_TRUE(Until([&] {
    received += peer.Receive();
    return peer.ended() || peer.broken();
  }));
  EXPECT_EQ(received, "reply");
  EXPECT_TRUE(peer.ended());
  EXPECT_EQ(server->closed, 0);
}

TEST_F(Sockets, APeerThatEndsInTheMiddleIsToldAsClosedOnce) {
  RawPeer peer = ConnectPeer();
  server->onRead = [this] { server->socket->Read(100); };
  server->socket->Read(100);
  ASSERT_TRUE(peer.Send("requ"));
  peer.EndSending();
  ASSERT_TRUE(Until([this] { return server->closed > 0; }));
  EXPECT_EQ(server->received, "requ");
  while (loop.Turn(false)) {
  }
  EXPECT_EQ(server->closed, 1);
}

TEST_F(Sockets, APeerThatNeverReadsFillsOnlySoMuch) {
  RawPeer peer = ConnectPeer();
  const auto piece = BufferOf(std::string(1 << 20, 'x'));
  const int limit = static_cast<int>(TcpConnection::kMaxQueue >> 20);
  for (int i = 0; i < limit; i++) ASSERT_EQ(server->socket->Write(piece.get()), ZEM_OK);
  EXPECT_EQ(server->socket->Write(piece.get()), ZEM_FAILED);
}

TEST_F(Sockets, ASocketReleasedWithoutAWordClosesAtOnce) {
  RawPeer peer = ConnectPeer();
  server->socket = nullptr;
  EXPECT_EQ(peer.Receive(), "");
  EXPECT_TRUE(peer.ended());
}

TEST_F(Sockets, OfPeersThatStayTheOldestAreCutOff) {
  ServeAndRelease("reply");
  std::vector<RawPeer> peers;
  constexpr size_t kMax = ListenSocket::kMaxConnections;
  for (size_t i = 0; i < kMax + 50; i++) {
    peers.emplace_back(listener->port());
    while (loop.Turn(false)) {
    }
  }
  // They hear the end alike; to send still works with those that were kept.
  const auto cut = std::count_if(peers.begin(), peers.end(), [](RawPeer& peer) {
    EXPECT_EQ(peer.Receive(), "reply");
    static_cast<void>(peer.Send("x"));
    peer.Receive();
    return peer.broken() || !peer.Send("x");
  });
  EXPECT_EQ(cut, 50);
  EXPECT_TRUE(peers[50].Send("x"));
  EXPECT_FALSE(peers[49].Send("x"));
}

TEST_F(Sockets, OfPeersThatTakeNothingTheOldestAreCutOff) {
  constexpr size_t kPage = 8 << 20;
  ServeAndRelease(std::string(kPage, 'x'));
  std::vector<RawPeer> peers;
  constexpr size_t kMax = ListenSocket::kMaxQueued / kPage;
  for (size_t i = 0; i < kMax + 2; i++) {
    peers.emplace_back(listener->port());
    while (loop.Turn(false)) {
    }
  }
  // One is accepted while so much is kept already, and then writes its own.
  EXPECT_LT(peers[0].Receive().size(), kPage);
  EXPECT_TRUE(peers[0].ended() || peers[0].broken());
  std::string received;
  ASSERT_TRUE(Until([&] {
    received += peers.back().Receive();
    return peers.back().ended() || peers.back().broken();
  }));
  EXPECT_EQ(received.size(), kPage);
}

}  // namespace
}  // namespace vexel::client
