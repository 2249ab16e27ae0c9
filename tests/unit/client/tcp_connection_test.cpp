#include "client/core/tcp_connection.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vexel::client {
namespace {

// Bytes that came and nobody has read.
int Waiting(int descriptor) {
  int count = -1;
  EXPECT_EQ(ioctl(descriptor, FIONREAD, &count), 0);
  return count;
}

TEST(TcpConnection, APeerThatSendsWithoutEndDoesNotHoldTheLoop) {
  EventLoop loop;
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends), 0);
  const int watched = dup(ends[0]);
  auto connection = std::make_shared<TcpConnection>(&loop, ends[0]);
  const std::vector<uint8_t> much(4096, 'x');
  while (send(ends[1], much.data(), much.size(), MSG_NOSIGNAL) > 0) {
  }
  const int sent = Waiting(watched);
  // What is read away in one turn.
  constexpr int kTurn = 64 << 10;
  ASSERT_GT(sent, kTurn);
  connection->Write(much.data(), 1);
  connection->Finish();
  connection.reset();
  EXPECT_EQ(Waiting(watched), sent - kTurn);
  EXPECT_TRUE(loop.RunUntil([&] { return Waiting(watched) == 0; }, 10000));
  close(ends[1]);
  close(watched);
}

}  // namespace
}  // namespace vexel::client
