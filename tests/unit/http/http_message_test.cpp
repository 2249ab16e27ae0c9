#include "http/http_message.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vexel {
namespace {

std::string Text(const HTTPMessage& message) {
  int length = 0;
  message.asString(nullptr, length);
  std::vector<char> out(static_cast<size_t>(length) + 1, '#');
  message.asString(out.data(), length);
  EXPECT_EQ(out.back(), '#');
  return std::string(out.data(), static_cast<size_t>(length));
}

TEST(HTTPMessage, KindsHaveTagsAndNames) {
  EXPECT_EQ(HTTPUnknownMessage().tag(), 0);
  EXPECT_EQ(HTTPResponseMessage().tag(), 1);
  EXPECT_EQ(HTTPGetMessage().tag(), 2);
  EXPECT_EQ(HTTPPostMessage().tag(), 3);
  EXPECT_EQ(HTTPHeadMessage().tag(), 4);
  EXPECT_STREQ(HTTPUnknownMessage().tagStr(), "UNKNOWN");
  EXPECT_STREQ(HTTPResponseMessage().tagStr(), "");
  EXPECT_STREQ(HTTPGetMessage().tagStr(), "GET");
  EXPECT_STREQ(HTTPPostMessage().tagStr(), "POST");
  EXPECT_STREQ(HTTPHeadMessage().tagStr(), "HEAD");
}

TEST(HTTPMessage, ARequestWritesItsContentBehindTheBlankLine) {
  HTTPPostMessage message;
  message.setURL("/a");
  message.setVersion(1, 1);
  message.addHeader("A", "1");
  message.addHeader("B", "2");
  EXPECT_EQ(Text(message), "POST /a HTTP/1.1\r\nA: 1\r\nB: 2\r\n\r\n");
  message.setContent("x=1");
  EXPECT_EQ(Text(message), "POST /a HTTP/1.1\r\nA: 1\r\nB: 2\r\n\r\nx=1");
}

// Required: a response's blank line follows its content.
TEST(HTTPMessage, AResponseWritesItsContentBeforeTheBlankLine) {
  HTTPResponseMessage message;
  message.setErrorCode("200");
  message.setErrorMsg("OK");
  message.addHeader("A", "1");
  message.setContent("xy\0z", 4);
  EXPECT_EQ(Text(message), std::string("HTTP/1.0 200 OK\r\nA: 1\r\nxy\0z\r\n", 29));
  EXPECT_EQ(message.contentLength(), 4u);
}

TEST(HTTPMessage, HeadersAreFoundInAnyCase) {
  HTTPGetMessage message;
  message.addHeader("Content-Length", "120");
  message.addHeader("X", "a");
  message.addHeader("x", "b");
  EXPECT_TRUE(message.getHeaderValue("X") == "a");
  EXPECT_TRUE(message.getHeaderValue("none").IsEmpty());
  UINT32 number = 7;
  EXPECT_TRUE(message.getHeaderValue("content-length", number));
  EXPECT_EQ(number, 120u);
  EXPECT_FALSE(message.getHeaderValue("none", number));
  EXPECT_TRUE(message.getFirstHeader()->name() == "Content-Length");
  EXPECT_TRUE(message.getNextHeader()->name() == "X");
  EXPECT_TRUE(message.getNextHeader()->name() == "x");
  EXPECT_EQ(message.getNextHeader(), nullptr);
  message.clearHeaderList();
  EXPECT_EQ(message.getFirstHeader(), nullptr);
  message.addHeader(new MIMEHeader("Empty"));
  message.addHeader(nullptr);
  EXPECT_TRUE(message.getHeaderValue("Empty").IsEmpty());
  EXPECT_TRUE(message.getHeader("empty")->name() == "Empty");
}

TEST(HTTPMessage, CarriesTheCloakedFlag) {
  HTTPGetMessage message;
  EXPECT_FALSE(message.isCloakedMsg());
  message.setCloakedMsgFlag(true);
  EXPECT_TRUE(message.isCloakedMsg());
}

TEST(MIMEHeader, WritesParametersAndValues) {
  MIMEHeader header("X");
  MIMEHeaderValue* value = new MIMEHeaderValue("a");
  value->addParameter("b", "c");
  value->addParameter(new MIMEParameter("d"));
  header.addHeaderValue(value);
  header.addHeaderValue("e f");
  CQKString text("X: ");
  header.asString(text);
  EXPECT_TRUE(text == "X: a;b=c;d,e f\r\n");
  EXPECT_TRUE(value->value() == "a;b=c;d");
  EXPECT_TRUE(value->getParameterValue("B") == "c");
  EXPECT_TRUE(value->getParameterValue("x").IsEmpty());
  EXPECT_EQ(value->getParameter("x"), nullptr);
  EXPECT_TRUE(value->getFirstParameter()->attribute() == "a");
  EXPECT_TRUE(value->getNextParameter()->value() == "c");
  EXPECT_EQ(header.getFirstHeaderValue(), value);
  EXPECT_EQ(header.getNextHeaderValue(), header.getHeaderValue("E F"));
  EXPECT_EQ(header.getHeaderValue("none"), nullptr);
  value->clearParameterList();
  EXPECT_EQ(value->getFirstParameter(), nullptr);
  EXPECT_TRUE(MIMEHeaderValue("k", "v").value() == "k=v");
}

}  // namespace
}  // namespace vexel
