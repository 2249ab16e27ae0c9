#include "http/http_parser.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "base/cqk_buffer.h"
#include "base/cqk_header.h"
#include "http/http_authentication.h"

namespace vexel {
namespace {

using Message = std::unique_ptr<HTTPMessage>;

Message Parse(const std::string& text, UINT32& used) {
  HTTPParser parser;
  used = static_cast<UINT32>(text.size());
  return Message(parser.parse(text.data(), used));
}

Message Parse(const std::string& text) {
  UINT32 used;
  return Parse(text, used);
}

const HTTPRequestMessage& Request(const Message& message) {
  return static_cast<const HTTPRequestMessage&>(*message);
}

std::string Written(const HTTPMessage& message) {
  int length = 0;
  message.asString(nullptr, length);
  std::string out(static_cast<size_t>(length), 0);
  message.asString(out.data(), length);
  return out;
}

std::string Value(const Message& message, const char* name) {
  return static_cast<const char*>(message->getHeaderValue(name));
}

TEST(HTTPParser, AGetRequestIsTakenWhole) {
  UINT32 used;
  Message message = Parse("GET /a HTTP/1.0\r\n\r\n", used);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->tag(), 2);
  EXPECT_TRUE(Request(message).url() == "/a");
  EXPECT_EQ(message->majorVersion(), 1);
  EXPECT_EQ(message->minorVersion(), 0);
  EXPECT_EQ(used, 19u);
}

TEST(HTTPParser, OfNoLinesThereIsNoMessage) {
  HTTPParser parser;
  EXPECT_EQ(parser.parseRequest(), nullptr);
  EXPECT_EQ(parser.parseResponse(), nullptr);
}

TEST(HTTPParser, WithoutTheBlankLineThereIsNothingYet) {
  for (const char* text :
       {"GET /a HTTP/1.0\r\n", "GET /a HTTP/1.0", "GET /a HTTP/1.1\r\nHost: x\r\n"}) {
    UINT32 used;
    EXPECT_FALSE(Parse(text, used));
    EXPECT_EQ(used, 0u);
  }
}

TEST(HTTPParser, ASimpleRequestIsGivenAtOnce) {
  for (const char* text : {"GET /a", "GET /a\r\n"}) {
    UINT32 used;
    Message message = Parse(text, used);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->tag(), 2);
    EXPECT_TRUE(Request(message).url() == "/a");
    EXPECT_EQ(message->majorVersion(), 0);
    EXPECT_EQ(message->minorVersion(), 0);
    EXPECT_EQ(used, strlen(text));
  }
}

TEST(HTTPParser, AFoldedHeaderJoinsWithItsContinuation) {
  Message message = Parse("GET /a HTTP/1.0\r\nX: one\r\n  two\r\nY: 3\r\n\r\n");
  ASSERT_TRUE(message);
  EXPECT_EQ(Value(message, "x"), "onetwo");
  EXPECT_EQ(Value(message, "Y"), "3");
}

// Required: as many bytes as there are blanks in front are lost at the end.
TEST(HTTPParser, BlanksInFrontShortenTheEnd) {
  // The shortened text has a line of its own in front and no blank line.
  UINT32 used;
  Message message = Parse("\r\nGET /a HTTP/1.0\r\n\r\n", used);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->tag(), 0);
  EXPECT_EQ(message->majorVersion(), 0);
  EXPECT_EQ(used, 21u);
  // One blank costs the last line feed, which the carriage return makes up for.
  message = Parse(" GET /a HTTP/1.0\r\n\r\nrest", used);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->tag(), 2);
  EXPECT_EQ(used, 21u);
  message = Parse(" GET /a HTTP/1.0\n\n", used);
  EXPECT_FALSE(message);
  EXPECT_EQ(used, 0u);
}

TEST(HTTPParser, SplitsAHeaderIntoValuesAndParameters) {
  Message message = Parse("GET / HTTP/1.0\r\nX: a;b=c, d\r\n\r\n");
  ASSERT_TRUE(message);
  MIMEHeader* header = message->getHeader("X");
  ASSERT_TRUE(header);
  MIMEHeaderValue* first = header->getFirstHeaderValue();
  ASSERT_TRUE(first);
  EXPECT_EQ(first->GetCount(), 2);
  EXPECT_TRUE(first->getFirstParameter()->attribute() == "a");
  MIMEParameter* b = first->getNextParameter();
  EXPECT_TRUE(b->attribute() == "b");
  EXPECT_TRUE(b->value() == "c");
  MIMEHeaderValue* second = header->getNextHeaderValue();
  ASSERT_TRUE(second);
  EXPECT_EQ(second->GetCount(), 1);
  EXPECT_TRUE(second->getFirstParameter()->attribute() == "d");
  EXPECT_EQ(header->getNextHeaderValue(), nullptr);
}

TEST(HTTPParser, TheFirstParameterIsAnAttributeWhateverItHolds) {
  Message message = Parse("GET / HTTP/1.0\nCookie: k=v=w;p=a=b;q\n;skipped: x\n\n");
  MIMEHeaderValue* value = message->getHeader("Cookie")->getFirstHeaderValue();
  EXPECT_TRUE(value->getFirstParameter()->attribute() == "k=v=w");
  EXPECT_TRUE(value->getNextParameter()->value() == "a=b");
  EXPECT_TRUE(value->getNextParameter()->attribute() == "q");
  EXPECT_EQ(Value(message, ";skipped"), "x");
}

TEST(HTTPParser, ABlankTokenEndsAValue) {
  Message message = Parse("GET / HTTP/1.0\nX: a;;b\nY: ;b\nZ: ,,c\n: no name\nplain\n\n");
  EXPECT_EQ(Value(message, "X"), "a");
  EXPECT_EQ(message->getHeader("Y")->getFirstHeaderValue(), nullptr);
  EXPECT_EQ(Value(message, "Z"), "c");
  EXPECT_TRUE(message->getHeader("plain"));
  message->getFirstHeader();
  int headers = 1;
  while (message->getNextHeader()) headers++;
  EXPECT_EQ(headers, 4);
}

TEST(HTTPParser, KnowsThreeMethodsInAnyCase) {
  EXPECT_EQ(Parse("get / HTTP/1.0\n\n")->tag(), 2);
  EXPECT_EQ(Parse("Post / HTTP/1.0\n\n")->tag(), 3);
  EXPECT_EQ(Parse("HEAD / HTTP/1.0\n\n")->tag(), 4);
  EXPECT_EQ(Parse("PUT / HTTP/1.0\n\n")->tag(), 0);
  EXPECT_EQ(Parse("M-SEARCH / HTTP/1.0\n\n")->tag(), 0);
}

TEST(HTTPParser, ReadsVersions) {
  const struct {
    const char* protocol;
    int major, minor;
  } cases[] = {
      {"HTTP/1.1", 1, 1},       {"http/12.34", 12, 34}, {"HTTP/.1", 0, 0},
      {"HTTP/11", 0, 0},        {"HTP/1.1", 0, 0},      {"HTTP/x.y", 0, 0},
      {"HTTP/1.", 1, 0},        {"HTTP/2.0x", 2, 0},    {"HTTP/99999999999.1", 0x7FFFFFFF, 1},
      {"\"HTTP/-1.5\"", -1, 5},
  };
  for (const auto& c : cases) {
    Message message = Parse(std::string("GET / ") + c.protocol + "\nA: 1\n\n");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->majorVersion(), c.major) << c.protocol;
    EXPECT_EQ(message->minorVersion(), c.minor) << c.protocol;
    // Of an impossible version there are no headers.
    EXPECT_EQ(message->getHeader("A") != nullptr, c.major >= 0) << c.protocol;
  }
}

TEST(HTTPParser, ReadsResponses) {
  UINT32 used;
  Message message = Parse("http/1.1 404 Not Found\r\nA: 1\r\n\r\nbody", used);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->tag(), 1);
  const auto& response = static_cast<const HTTPResponseMessage&>(*message);
  EXPECT_TRUE(response.errorCode() == "404");
  EXPECT_TRUE(response.errorMsg() == "Not Found");
  EXPECT_EQ(Value(message, "A"), "1");
  EXPECT_EQ(message->majorVersion(), 1);
  EXPECT_EQ(used, 32u);
}

TEST(HTTPParser, ParsesSeveralMessagesInARow) {
  const std::string text = "GET /1 HTTP/1.0\n\nGET /2 HTTP/1.0\r\n\r\nHEAD /3 HTTP/1.0\n\n";
  HTTPParser parser;
  std::string urls;
  for (size_t at = 0; at < text.size();) {
    UINT32 used = static_cast<UINT32>(text.size() - at);
    Message message(parser.parse(text.data() + at, used));
    ASSERT_TRUE(message);
    urls += Request(message).url();
    at += used;
  }
  EXPECT_EQ(urls, "/1/2/3");
}

TEST(HTTPParser, MessagesOutliveTheirParserAndItsNextLines) {
  Message messages[3];
  {
    HTTPParser parser;
    for (int i = 0; i < 3; i++) {
      std::string text = "GET / HTTP/1.0\n";
      for (int line = 0; line < 30; line++) {
        const std::string number = std::to_string(100 * i + line);
        text.append("Name-").append(number).append(": value ").append(number).append("\n");
      }
      text += '\n';
      UINT32 used = static_cast<UINT32>(text.size());
      messages[i].reset(parser.parse(text.data(), used));
      ASSERT_TRUE(messages[i]);
      EXPECT_EQ(parser.GetCount(), 32);
    }
  }
  for (int i = 0; i < 3; i++) {
    MIMEHeader* header = messages[i]->getFirstHeader();
    for (int line = 0; line < 30; line++, header = messages[i]->getNextHeader()) {
      const std::string number = std::to_string(100 * i + line);
      ASSERT_TRUE(header);
      EXPECT_TRUE(header->name() == ("Name-" + number).c_str());
      EXPECT_TRUE(header->getFirstHeaderValue()->value() == ("value " + number).c_str());
      EXPECT_TRUE(header->name() == ("Name-" + number).c_str());
    }
    EXPECT_FALSE(header);
  }
}

TEST(HTTPParser, ANameIsKeptWhenTheValuesAreCleared) {
  Message message = Parse("GET / HTTP/1.0\nX: a, b\n\n");
  MIMEHeader* header = message->getFirstHeader();
  header->clearHeaderValueList();
  header->addHeaderValue("c");
  EXPECT_TRUE(header->name() == "X");
  EXPECT_EQ(Value(message, "x"), "c");
}

TEST(HTTPParser, WritesBackWhatItRead) {
  const std::string text = "GET /a?b=c HTTP/1.1\r\nHost: h:80\r\nAccept: a/b;q=1,c/d;q=2;r\r\n\r\n";
  EXPECT_EQ(Written(*Parse(text)), text);
}

// Required: a byte of 255 is the end of what can be read.
TEST(HTTPParser, StopsAtAByteOf255) {
  UINT32 used;
  EXPECT_FALSE(Parse("GET /a HTTP/1.0\r\nX: \xFF\r\n\r\n", used));
  EXPECT_EQ(used, 0u);
  Message message = Parse("GET /a\xFF HTTP/1.0\r\n\r\n", used);
  ASSERT_TRUE(message);
  EXPECT_TRUE(Request(message).url() == "/a");
  EXPECT_EQ(message->majorVersion(), 0);
}

TEST(HTTPParser, OnceWholeAMessageDoesNotDependOnWhatFollows) {
  const std::string text = "GET /a HTTP/1.0\r\nHost: x\r\nA: b\r\n c\r\n\r\n";
  for (const char* rest : {"", "G", " ", "\r\n", "\n\n", "GET / HTTP/1.0\r\n\r\n", "\xFF"}) {
    UINT32 used;
    Message message = Parse(text + rest, used);
    ASSERT_TRUE(message);
    EXPECT_EQ(used, text.size()) << rest;
    EXPECT_EQ(Value(message, "A"), "bc");
  }
}

TEST(HTTPParser, LivesThroughAnything) {
  std::mt19937 random(5);
  const std::string pieces[] = {"GET ",
                                "HTTP/",
                                "1.0",
                                "\r",
                                "\n",
                                "\r\n",
                                " ",
                                "\t",
                                ":",
                                ";",
                                ",",
                                "=",
                                "\"",
                                "\\",
                                "\xFF",
                                "a",
                                "WWW-Authenticate: ",
                                "Digest ",
                                "Basic ",
                                "realm",
                                "nonce",
                                std::string(1, '\0')};
  for (int round = 0; round < 20000; round++) {
    std::string text;
    for (unsigned i = random() % 40; i > 0; i--) text += pieces[random() % std::size(pieces)];
    UINT32 used;
    Message message = Parse(text, used);
    ASSERT_LE(used, text.size());
    if (message) Written(*message);
  }
}

TEST(HTTPParser, TakesTenMegabytesOfALine) {
  const std::string text = "GET /a HTTP/1.0\r\nX: " + std::string(10 << 20, 'x') + "\r\n\r\n";
  UINT32 used;
  Message message = Parse(text, used);
  ASSERT_TRUE(message);
  EXPECT_EQ(used, text.size());
  EXPECT_EQ(message->getHeaderValue("X").GetLength(), 10 << 20);
}

TEST(HTTPParser, TakesAHundredThousandHeaders) {
  std::string text = "GET /a HTTP/1.0\r\n";
  for (int i = 0; i < 100000; i++)
    text.append("X").append(std::to_string(i)).append(": a, b;c\r\n");
  UINT32 used;
  Message message = Parse(text + "\r\n", used);
  ASSERT_TRUE(message);
  EXPECT_EQ(Value(message, "x99999"), "a");
}

// Authentication

std::string Challenge(const std::string& text) {
  Message message = Parse("HTTP/1.0 401 No\r\nWWW-Authenticate: " + text + "\r\n\r\n");
  EXPECT_TRUE(message);
  return Value(message, "www-authenticate");
}

TEST(HTTPAuthentication, ABasicRealmLosesItsQuotes) {
  EXPECT_EQ(Challenge("Basic realm=\"x y\""), "Basic realm=x y");
  EXPECT_EQ(Challenge("basic realm=plain"), "Basic realm=plain");
  EXPECT_EQ(Challenge("Basic realm=\"one"), "Basic realm=\"one");
  EXPECT_EQ(Challenge("Basic realm=\"a\"b\"c\""), "Basic realm=a\"b\"c");
}

TEST(HTTPAuthentication, ADigestChallengeKeepsItsQuotesOnThreeLines) {
  EXPECT_EQ(Challenge("Digest realm=\"r\", nonce=\"n\", opaque=\"o\""),
            "Digest realm=\"r\",\r\n    nonce=\"n\",\r\n    opaque=\"o\"");
  EXPECT_EQ(Challenge("DIGEST OPAQUE=o, x, Nonce=n, REALM=r"),
            "Digest realm=r,\r\n    nonce=n,\r\n    opaque=o");
}

TEST(HTTPAuthentication, ADigestWithoutOpaqueStaysEmpty) {
  EXPECT_EQ(Challenge("Digest realm=\"r\", nonce=\"n\""), "");
}

TEST(HTTPAuthentication, AnUnknownSchemeIsKeptAsAPlainValue) {
  EXPECT_EQ(Challenge("Other a=b, c=d"), "Other a=b, c=d");
  EXPECT_EQ(Challenge(""), "");
}

// Required: what an unknown name is set to is read as a name.
TEST(HTTPAuthentication, AValueOfAnUnknownNameCountsAsAName) {
  EXPECT_EQ(Challenge("Basic x=realm, y"), "Basic realm=y");
}

class AuthenticationTest : public testing::Test {
 protected:
  AuthenticationTest() { values->AddRef(); }
  ~AuthenticationTest() override { EXPECT_EQ(values->Release(), 0u); }

  void Set(const char* key, const char* text) {
    IZEMBuffer* buffer = nullptr;
    CQKBuffer::FromCharArray(text, &buffer);
    values->SetPropertyCString(key, buffer);
    buffer->Release();
  }
  // What is written over "before".
  std::string Text() {
    HTTPAuthentication authentication(values);
    CQKString out("before");
    authentication.asString(out);
    return static_cast<const char*>(out);
  }

  CQKHeader* values = new CQKHeader;
};

TEST_F(AuthenticationTest, WithoutAKnownSchemeIsEmpty) {
  EXPECT_EQ(Text(), "");
  values->SetPropertyULONG32("AuthType", 3);
  EXPECT_EQ(Text(), "");
  EXPECT_TRUE(HTTPAuthentication(nullptr).asString().IsEmpty());
  EXPECT_TRUE(HTTPAuthentication("n", static_cast<AuthenticationType>(3)).asString().IsEmpty());
}

TEST_F(AuthenticationTest, BasicTakesTheRealmThenTheResponseThenTheName) {
  values->SetPropertyULONG32("AuthType", 1);
  EXPECT_EQ(Text(), "before");
  Set("UserName", "me");
  EXPECT_EQ(Text(), "before");
  Set("Password", "pw");
  EXPECT_EQ(Text(), "me:pw");
  Set("Response", "abc=");
  EXPECT_EQ(Text(), "Basic abc=");
  Set("Realm", "r");
  EXPECT_EQ(Text(), "Basic realm=r");
}

TEST_F(AuthenticationTest, DigestNeedsAllThree) {
  values->SetPropertyULONG32("AuthType", 2);
  Set("Realm", "r");
  Set("Nonce", "n");
  EXPECT_EQ(Text(), "before");
  Set("Opaque", "o");
  EXPECT_EQ(Text(), "Digest realm=r,\r\n    nonce=n,\r\n    opaque=o");
}

TEST_F(AuthenticationTest, APrivateNonceIsQuoted) {
  EXPECT_TRUE(HTTPAuthentication("abc", AUTHENTICATION_PRIVATE_NONCE).asString() ==
              "QKPrivate nonce=\"abc\"");
}

}  // namespace
}  // namespace vexel
