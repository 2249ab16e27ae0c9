#include "http/http_post_server.h"

#include <gtest/gtest.h>

#include <random>

#include "base/cqk_header.h"
#include "host/fake_network.h"
#include "http/http_message.h"
#include "http/http_post_connection.h"

namespace vexel {
namespace {

using test::FakeHost;
using test::FakeListenSocket;
using test::FakeNetwork;
using test::FakeSocket;
using test::New;
using test::Ptr;

std::string Page(const std::string& url, const std::string& fields) {
  return "HTTP/1.0 200 OK\r\nContent-type: text/html\r\n\r\n"
         "<html>\n    <head>\n    </head>\n    <body onload=\"document.theform.submit()\">\n"
         "        <form name=\"theform\" method=\"post\" action=\"" +
         url + "\">\n" + fields + "        </form>\n    </body>\n</html>\n";
}

std::string Field(const std::string& name, const std::string& value) {
  return "            <input type=\"hidden\" name=\"" + name + "\" value=\"" + value + "\">\n";
}

const std::string k404 =
    std::string(
        "HTTP/1.0 404 File Not Found\r\nContent-type: text/html\nContent-length: 150\n\r\n"
        "<HTML>\n<TITLE>404 File Not Found</TITLE>\n<BODY BGCOLOR=\"#FFFFFF\">\n"
        "<FONT FACE=\"Arial,Helvetica,Geneva\" SIZE=-1>\n<H2>404 Not Found</H2>\n</BODY>\n"
        "</HTML>\n") +
    '\0';
const std::string k501 =
    std::string(
        "HTTP/1.0 501 Not Implemented\r\nContent-type: text/html\nContent-length: 159\n\r\n"
        "<HTML>\n<TITLE>501 Not Implemented </TITLE>\n<BODY BGCOLOR=\"#FFFFFF\">\n"
        "<FONT FACE=\"Arial,Helvetica,Geneva\" SIZE=-1>\n<H2>501 Not Implemented </H2>\n"
        "</BODY>\n</HTML>\n") +
    '\0';

// What the browser of a test sends.
std::string Get(const std::string& url, const std::string& headers = "") {
  return "GET " + url + " HTTP/1.1\r\n" + headers + "\r\n";
}

class HTTPPostServerTest : public testing::Test {
 protected:
  HTTPPostServerTest() {
    host.context->others[IID_IZEMNetworkServices] = network.get();
    server = New<HTTPPostServer>(host.context.get(), host.player.get());
  }
  ~HTTPPostServerTest() override {
    server->Close();
    // Whoever still stands in the list of live connections holds the server.
    network->listener->response = nullptr;
    network = nullptr;
    server = nullptr;
  }

  INT32 Post(const std::string& data, const std::string& url = "http://t/") {
    return server->WritePost(url.c_str(), data.c_str(), static_cast<UINT32>(data.size()), "_self");
  }
  FakeListenSocket& listener() { return *network->listener; }
  // The answer to a request, given in pieces.
  std::string Ask(const std::string& request, size_t piece = 1 << 20) {
    Ptr<FakeSocket> socket = listener().Connection();
    socket->Deliver(request, piece);
    return socket->Written();
  }
  // The path of the page that the browser was last sent to.
  std::string LastPath() {
    const std::string& visit = host.navigate->visits.back();
    return visit.substr(visit.find("/redirect"), visit.find(' ') - visit.find("/redirect"));
  }
  // Posts a page, asks in pieces, and clears the page away if it still waits.
  std::string AskFresh(const std::string& request, size_t piece = 1 << 20) {
    Post("a=1");
    const std::string answer = Ask(request, piece);
    Fetch();
    return answer;
  }
  // Of the server, if it listens on the n-th port that it tried.
  std::string Origin(size_t n) {
    return std::string("http://127.0.0.1:").append(std::to_string(listener().tried[n]));
  }
  std::string Fetch() { return Ask(Get(LastPath())); }

  FakeHost host;
  Ptr<FakeNetwork> network = New<FakeNetwork>();
  Ptr<HTTPPostServer> server;
};

TEST_F(HTTPPostServerTest, TwoFieldsBecomeTwoHiddenFields) {
  EXPECT_EQ(Post("a=1&b=2"), ZEM_OK);
  EXPECT_EQ(host.navigate->visits.size(), 1u);
  EXPECT_EQ(host.navigate->visits[0], Origin(0) + "/redirect0.html _self");
  EXPECT_EQ(listener().address, 0x7F000001u);
  std::string page = Fetch();
  // The order is that of the list of values.
  EXPECT_TRUE(page == Page("http://t/", Field("a", "1") + Field("b", "2")) ||
              page == Page("http://t/", Field("b", "2") + Field("a", "1")))
      << page;
}

TEST_F(HTTPPostServerTest, AQuotedValueMayHoldSpacesAndAmpersands) {
  Post("a=\"x & y\"");
  EXPECT_EQ(Fetch(), Page("http://t/", Field("a", "x & y")));
  Post(" name  =   value with spaces  ");
  EXPECT_EQ(Fetch(), Page("http://t/", Field("name", "value with spaces")));
  Post("a=  \" x \"");
  EXPECT_EQ(Fetch(), Page("http://t/", Field("a", "x")));
  Post("a=");
  EXPECT_EQ(Fetch(), Page("http://t/", Field("a", "")));
  Post("");
  EXPECT_EQ(Fetch(), Page("http://t/", ""));
}

TEST_F(HTTPPostServerTest, DataWithoutAnEqualsSignNavigatesNowhere) {
  EXPECT_EQ(Post("no fields"), ZEM_FAILED);
  EXPECT_EQ(Post("a=1&b"), ZEM_FAILED);
  EXPECT_EQ(Post("a=\"open"), static_cast<INT32>(0x8004000C));
  EXPECT_TRUE(host.navigate->visits.empty());
  EXPECT_EQ(Ask(Get("/redirect0.html")), k404);
}

TEST_F(HTTPPostServerTest, APageIsGivenOutOnce) {
  Post("a=1");
  EXPECT_EQ(Fetch(), Page("http://t/", Field("a", "1")));
  EXPECT_EQ(Fetch(), k404);
}

TEST_F(HTTPPostServerTest, OneLeadingSlashMayBeMissing) {
  for (const char* url : {"redirect0.html", "/redirect0.html"}) {
    Post("a=1");
    EXPECT_EQ(Ask(Get(url)), Page("http://t/", Field("a", "1"))) << url;
  }
  Post("a=1");
  EXPECT_EQ(Ask(Get("//redirect0.html")), k404);
}

TEST_F(HTTPPostServerTest, OtherMethodsAreNotImplemented) {
  Post("a=1");
  EXPECT_EQ(Ask("HEAD /redirect0.html HTTP/1.0\r\n\r\n"), k501);
  EXPECT_EQ(Ask("POST /redirect0.html HTTP/1.0\r\n\r\nbody"), k501);
  EXPECT_EQ(Ask("PUT /redirect0.html HTTP/1.0\r\n\r\n"), k501);
  EXPECT_EQ(Ask("HTTP/1.0 200 OK\r\n\r\n"), k501);
  EXPECT_EQ(Fetch(), Page("http://t/", Field("a", "1")));
}

TEST_F(HTTPPostServerTest, ARequestInTwoPiecesIsAnsweredAtItsBlankLine) {
  Post("a=1");
  const std::string request = Get("/redirect0.html", "Accept: */*\r\n");
  Ptr<FakeSocket> socket = listener().Connection();
  EXPECT_EQ(socket->wanted, 2024u);
  socket->Deliver(request.substr(0, request.size() - 2));
  EXPECT_TRUE(socket->writes.empty());
  EXPECT_EQ(socket->wanted, 2024u);
  socket->Deliver("\r\n");
  EXPECT_EQ(socket->Written(), Page("http://t/", Field("a", "1")));
  EXPECT_EQ(socket->wanted, 0u);
}

TEST_F(HTTPPostServerTest, OneWriteTakes32676Bytes) {
  const size_t empty = Page("http://t/", Field("a", "")).size();
  for (size_t size : {32676u, 32677u, 65352u, 65353u}) {
    Post("a=" + std::string(size - empty, 'x'));
    Ptr<FakeSocket> socket = listener().Connection();
    socket->Deliver(Get("/redirect0.html"));
    std::vector<size_t> sizes;
    for (const std::string& text : socket->writes) sizes.push_back(text.size());
    std::vector<size_t> expected;
    for (size_t left = size; left > 0; left -= expected.back()) {
      expected.push_back(std::min<size_t>(left, 32676));
    }
    EXPECT_EQ(sizes, expected);
    EXPECT_EQ(socket->Written(), Page("http://t/", Field("a", std::string(size - empty, 'x'))));
  }
}

// Required: nothing is escaped, so a quote ends the attribute that it stands in.
TEST_F(HTTPPostServerTest, AQuoteInAValueBreaksTheMarkup) {
  Post("a=x\"y", "http://t/?q=\"<b>");
  EXPECT_EQ(Fetch(), Page("http://t/?q=\"<b>",
                          "            <input type=\"hidden\" name=\"a\" "
                          "value=\"x\"y\">\n"));
}

TEST_F(HTTPPostServerTest, AnyCutOfARequestHasOneOutcome) {
  const std::string requests[] = {
      Get("/redirect0.html"),
      Get("/redirect0.html", "Host: 127.0.0.1:1234\r\nAccept: a/b, c/d;q=1\r\n folded\r\n"),
      Get("/redirect0.html", "Host: other.example\r\n"),
      "GET /redirect0.html\r\n",
      "GET /redirect0.html HTTP/1.0\n\n",
      "GET /redirect0.html HTTP/1.0\n\r\n\r",
      "\r\nGET /redirect0.html HTTP/1.0\r\n\r\n",
      " GET /redirect0.html HTTP/1.0\r\n\r\n",
      "GET /redirect0.html HTTP/1.0\r\n\r\nGET /redirect1.html HTTP/1.0\r\n\r\n",
      "HEAD / HTTP/1.0\r\n\r\n",
      "\r\n\r\n\r\n",
      std::string("\0\0GET\0 / HTTP/1.0\r\n\0\r\n\r\n", 25),
      Get("/\xFF"),
      Get("/", "A: \xFF\r\n"),
      "GET /redirect0.html HTTP/1.0\r\nunfinished: ",
      "no line end",
  };
  std::mt19937 random(17);
  for (const std::string& request : requests) {
    const std::string whole = AskFresh(request);
    for (size_t piece : {1u, 2u, 3u, 7u}) {
      EXPECT_EQ(AskFresh(request, piece), whole) << request << " in pieces of " << piece;
    }
    for (int round = 0; round < 20; round++) {
      Post("a=1");
      Ptr<FakeSocket> socket = listener().Connection();
      for (size_t at = 0; at < request.size();) {
        const size_t count = 1 + random() % (request.size() - at);
        socket->Deliver(request.substr(at, count));
        at += count;
      }
      EXPECT_EQ(socket->Written(), whole) << request;
      Fetch();
    }
  }
}

TEST_F(HTTPPostServerTest, PagesOfOthersCannotFetchOurs) {
  for (const char* name : {"Host: evil.example\r\n", "Host: 127.0.0.2\r\n", "Host: \r\n",
                           "Host: localhost.evil.example:80\r\n", "hOST: [::1]:80\r\n"}) {
    EXPECT_EQ(AskFresh(Get("/redirect0.html", name)), k404) << name;
  }
  for (const char* name :
       {"", "Host: 127.0.0.1\r\n", "Host: 127.0.0.1:8080\r\n", "host: LocalHost:1\r\n"}) {
    EXPECT_EQ(AskFresh(Get("/redirect0.html", name)), Page("http://t/", Field("a", "1"))) << name;
  }
}

TEST_F(HTTPPostServerTest, PipelinedRequestsGetOneAnswer) {
  Post("a=1");
  Post("b=2");
  EXPECT_EQ(Ask(Get("/redirect0.html") + Get("/redirect1.html")),
            Page("http://t/", Field("a", "1")));
  EXPECT_EQ(Ask(Get("/redirect1.html")), Page("http://t/", Field("b", "2")));
}

TEST_F(HTTPPostServerTest, PagesAreNamedByHowManyWait) {
  Post("a=0");
  Post("a=1");
  Post("a=2");
  Ask(Get("/redirect0.html"));
  // Two wait, so the name is that of the last one, which it replaces.
  Post("a=3");
  EXPECT_EQ(LastPath(), "/redirect2.html");
  EXPECT_EQ(Fetch(), Page("http://t/", Field("a", "3")));
  EXPECT_EQ(Ask(Get("/redirect1.html")), Page("http://t/", Field("a", "1")));
}

TEST_F(HTTPPostServerTest, At256PagesNoMoreAreTaken) {
  for (int i = 0; i < 256; i++) ASSERT_EQ(Post("a=1"), ZEM_OK);
  EXPECT_EQ(Post("a=1"), ZEM_OUT_OF_MEMORY);
  EXPECT_EQ(host.navigate->visits.size(), 256u);
  Ask(Get("/redirect7.html"));
  EXPECT_EQ(Post("a=2"), ZEM_OK);
  EXPECT_EQ(LastPath(), "/redirect255.html");
}

TEST_F(HTTPPostServerTest, ARequestMayHave64Kilobytes) {
  Post("a=1");
  std::string request = Get("/redirect0.html", "X: " + std::string(65536, 'x') + "\r\n");
  Ptr<FakeSocket> socket = listener().Connection();
  socket->Deliver(request);
  EXPECT_EQ(socket->Written(), "");
  EXPECT_EQ(socket->wanted, 0u);
  request = Get("/redirect0.html", "X: " + std::string(65000, 'x') + "\r\n");
  EXPECT_EQ(Ask(request), Page("http://t/", Field("a", "1")));
}

TEST_F(HTTPPostServerTest, ManyHeadersAndLongLinesEndTheConnection) {
  Post("a=1");
  Ptr<FakeSocket> longLine = listener().Connection();
  EXPECT_LE(longLine->Deliver(Get("/", "X: " + std::string(10 << 20, 'x'))), 70000u);
  std::string many = "GET / HTTP/1.0\r\n";
  for (int i = 0; i < 100000; i++) many += "X: y\r\n";
  Ptr<FakeSocket> manyHeaders = listener().Connection();
  EXPECT_LE(manyHeaders->Deliver(many), 70000u);
  EXPECT_EQ(longLine->Written() + manyHeaders->Written(), "");
  EXPECT_EQ(Fetch(), Page("http://t/", Field("a", "1")));
}

TEST_F(HTTPPostServerTest, TheOldestOf64ConnectionsMakesRoom) {
  Post("a=1");
  std::vector<Ptr<FakeSocket>> sockets;
  for (int i = 0; i < 65; i++) sockets.push_back(listener().Connection());
  sockets[0]->Deliver(Get("/redirect0.html"));
  EXPECT_EQ(sockets[0]->Written(), "");
  sockets[1]->Deliver(Get("/redirect0.html"));
  EXPECT_EQ(sockets[1]->Written(), Page("http://t/", Field("a", "1")));
  sockets[64]->Deliver(Get("/redirect0.html"));
  EXPECT_EQ(sockets[64]->Written(), k404);
}

TEST_F(HTTPPostServerTest, TriesSixteenPortsInARow) {
  listener().refusals = 100;
  EXPECT_EQ(Post("a=1"), ZEM_FAILED);
  ASSERT_EQ(listener().tried.size(), 16u);
  EXPECT_GE(listener().tried[0], 1024);
  EXPECT_LE(listener().tried[0], 16367);
  for (size_t i = 1; i < 16; i++) EXPECT_EQ(listener().tried[i], listener().tried[0] + i);
  // A socket that never listened is not kept, and the ports are used up.
  EXPECT_EQ(network->listener->refs(), 1u);
  EXPECT_EQ(Post("a=1"), ZEM_FAILED);
  EXPECT_EQ(listener().tried.size(), 16u);
  EXPECT_TRUE(host.navigate->visits.empty());
}

TEST_F(HTTPPostServerTest, TakesTheNextPortIfOneIsTaken) {
  listener().refusals = 3;
  EXPECT_EQ(Post("a=1"), ZEM_OK);
  ASSERT_EQ(listener().tried.size(), 4u);
  EXPECT_EQ(Post("b=2"), ZEM_OK);
  EXPECT_EQ(listener().tried.size(), 4u);
  EXPECT_NE(host.navigate->visits[1].find(Origin(3)), std::string::npos);
}

TEST_F(HTTPPostServerTest, AFailedNavigationLeavesThePageWaiting) {
  host.player->others.erase(IID_IZEMHyperNavigate);
  EXPECT_EQ(Post("a=1"), ZEM_NO_INTERFACE);
  EXPECT_EQ(Ask(Get("/redirect0.html")), Page("http://t/", Field("a", "1")));
  Ptr<HTTPPostServer> alone = New<HTTPPostServer>(host.context.get(), nullptr);
  EXPECT_EQ(alone->WritePost("u", "a=1", 3, ""), ZEM_UNEXPECTED);
  EXPECT_EQ(Ask(Get("/redirect0.html")), Page("u", Field("a", "1")));
  alone->Close();
}

TEST_F(HTTPPostServerTest, WithoutServicesFails) {
  host.Without(IID_IZEMNetworkServices);
  EXPECT_EQ(Post("a=1"), ZEM_NO_INTERFACE);
  EXPECT_EQ(server->WritePost(nullptr, "a=1", 3, ""), ZEM_NO_INTERFACE);
  Ptr<HTTPPostServer> nowhere = New<HTTPPostServer>(nullptr, nullptr);
  EXPECT_EQ(nowhere->WritePost("u", "a=1", 3, ""), ZEM_UNEXPECTED);
  EXPECT_EQ(nowhere->NewConnection(ZEM_OK, nullptr), ZEM_OK);
  nowhere->Close();
  EXPECT_EQ(nowhere->NewConnection(ZEM_OK, nullptr), ZEM_UNEXPECTED);
}

TEST_F(HTTPPostServerTest, NullTextsAreBad) {
  EXPECT_EQ(server->WritePost(nullptr, "a=1", 3, ""), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(server->WritePost("u", nullptr, 3, ""), ZEM_BAD_ARGUMENT);
  EXPECT_TRUE(host.navigate->visits.empty());
}

TEST_F(HTTPPostServerTest, WithoutMemoryDropsThePageAndStays) {
  for (int left = 0; left < 6; left++) {
    host.factory->failAfter = left;
    const INT32 result = Post("a=1&b=2");
    host.factory->failAfter = -1;
    if (result >= 0) {
      EXPECT_EQ(left, 3);
      break;
    }
    EXPECT_EQ(result, ZEM_OUT_OF_MEMORY);
    EXPECT_TRUE(host.navigate->visits.empty());
  }
  // The answer itself needs a buffer too; the page waits for another try.
  host.factory->failAfter = 0;
  Ptr<FakeSocket> socket = listener().Connection();
  socket->Deliver(Get("/redirect0.html"));
  EXPECT_EQ(socket->lastResult, ZEM_OUT_OF_MEMORY);
  host.factory->failAfter = -1;
  EXPECT_EQ(Ask(Get("/redirect0.html")), Page("http://t/", Field("a", "1") + Field("b", "2")));
}

TEST_F(HTTPPostServerTest, ARefusedWriteEndsTheConnection) {
  Post("a=" + std::string(100000, 'x'));
  Ptr<FakeSocket> socket = listener().Connection();
  socket->writesLeft = 1;
  socket->Deliver(Get("/redirect0.html"));
  EXPECT_EQ(socket->writes.size(), 1u);
  EXPECT_EQ(socket->lastResult, ZEM_FAILED);
  EXPECT_EQ(socket->refs(), 1u);
}

TEST_F(HTTPPostServerTest, AConnectionEndsWhenItsPeerGoes) {
  Post("a=1");
  Ptr<FakeSocket> socket = listener().Connection();
  EXPECT_EQ(socket->refs(), 2u);
  socket->Deliver("GET ");
  const Ptr<IZEMTCPResponse> connection = socket->response;
  EXPECT_EQ(connection->ConnectDone(ZEM_OK), ZEM_OK);
  EXPECT_EQ(connection->WriteReady(ZEM_OK), ZEM_OK);
  socket->PeerCloses();
  EXPECT_EQ(socket->refs(), 1u);
  // Late news finds it closed.
  EXPECT_EQ(connection->ReadDone(ZEM_OK, test::MakeBuffer({'x'}).get()), ZEM_OK);
  EXPECT_EQ(connection->Closed(ZEM_OK), ZEM_OK);
  for (INT32 status : {ZEM_OK, ZEM_FAILED}) {
    Ptr<FakeSocket> other = listener().Connection();
    EXPECT_EQ(other->response->ReadDone(status, nullptr), ZEM_OK);
    EXPECT_EQ(other->refs(), 1u);
  }
}

TEST_F(HTTPPostServerTest, AConnectionThatCannotStartIsDropped) {
  Post("a=1");
  EXPECT_EQ(server->NewConnection(ZEM_FAILED, nullptr), ZEM_OK);
  EXPECT_EQ(server->NewConnection(ZEM_OK, nullptr), ZEM_UNEXPECTED);
  Ptr<FakeSocket> socket = New<FakeSocket>();
  socket->initResult = ZEM_FAILED;
  EXPECT_EQ(server->NewConnection(ZEM_OK, socket.get()), ZEM_FAILED);
  socket->response = nullptr;
  EXPECT_EQ(socket->refs(), 1u);
}

TEST_F(HTTPPostServerTest, ClosingLetsGoOfEverything) {
  Post("a=1");
  Post("b=2");
  Ptr<FakeSocket> first = listener().Connection();
  Ptr<FakeSocket> second = listener().Connection();
  first->Deliver("GET /");
  server->Close();
  server->Close();
  EXPECT_EQ(first->refs(), 1u);
  EXPECT_EQ(second->refs(), 1u);
  EXPECT_EQ(network->listener->refs(), 1u);
  EXPECT_EQ(Post("a=1"), ZEM_UNEXPECTED);
  EXPECT_EQ(listener().response->NewConnection(ZEM_OK, first.get()), ZEM_OK);
}

TEST_F(HTTPPostServerTest, AnswersForItsInterfaces) {
  EXPECT_TRUE(test::Query<IZEMListenResponse>(server.get(), IID_IZEMListenResponse));
  EXPECT_TRUE(test::Query<IUnknown>(server.get(), IID_IUnknown));
  EXPECT_FALSE(test::Query<IUnknown>(server.get(), IID_IZEMTCPResponse));
  const Ptr<HTTPPostConnection> connection = New<HTTPPostConnection>();
  EXPECT_TRUE(test::Query<IZEMTCPResponse>(connection.get(), IID_IZEMTCPResponse));
  EXPECT_FALSE(test::Query<IUnknown>(connection.get(), IID_IZEMListenResponse));
  EXPECT_EQ(connection->Init(nullptr, server.get(), nullptr, 1), ZEM_UNEXPECTED);
}

TEST_F(HTTPPostServerTest, TrimsSpacesOnly) {
  char text[] = "  a b\t ";
  char* p = text;
  HTTPPostServer::TrimOffSpaces(p);
  EXPECT_STREQ(p, "a b\t");
  char blanks[] = "   ";
  p = blanks;
  HTTPPostServer::TrimOffSpaces(p);
  EXPECT_STREQ(p, "");
  p = nullptr;
  HTTPPostServer::TrimOffSpaces(p);
  EXPECT_EQ(p, nullptr);
}

TEST_F(HTTPPostServerTest, ValuesEndInTwelveMoreZeros) {
  CQKHeader* values = new CQKHeader;
  values->AddRef();
  EXPECT_EQ(server->CollectOptions("a=xyz&b=1", values), ZEM_OK);
  IZEMBuffer* buffer = nullptr;
  ASSERT_EQ(values->GetPropertyCString("a", buffer), ZEM_OK);
  const test::Bytes bytes = test::BytesOf(buffer);
  buffer->Release();
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), std::string("xyz") + std::string(12, '\0'));
  // Behind a quoted value without a "&", its length is what is passed over.
  EXPECT_EQ(server->CollectOptions("a=\"123\" c", values), ZEM_OK);
  EXPECT_EQ(server->CollectOptions("a=\"1\" longer", values), ZEM_FAILED);
  EXPECT_EQ(server->CollectOptions("a=\"1\"  c=2", values), ZEM_OK);
  ASSERT_EQ(values->GetPropertyCString("c", buffer), ZEM_OK);
  buffer->Release();
  EXPECT_EQ(values->Release(), 0u);
}

}  // namespace
}  // namespace vexel
