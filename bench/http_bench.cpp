// A browser's request into the message model, beside a maintained parser that
// only tells where things are, and beside the same parser filling a model of
// standard containers.
#include <benchmark/benchmark.h>
#include <http_parser.h>

#include <string>
#include <utility>
#include <vector>

#include "http/http_parser.h"

namespace {

using namespace vexel;

const char kRequest[] =
    "GET /redirect0.html HTTP/1.1\r\n"
    "Host: 127.0.0.1:12345\r\n"
    "User-Agent: Mozilla/5.0 (X11; Linux x86_64; rv:115.0) Gecko/20100101 Firefox/115.0\r\n"
    "Accept: text/html,application/xhtml+xml,application/xml;q=0.9,image/avif,image/webp,*/*;"
    "q=0.8\r\n"
    "Accept-Language: en-US,en;q=0.5\r\n"
    "Accept-Encoding: gzip, deflate, br\r\n"
    "Referer: "
    "http://127.0.0.1:12345/a/page/that/shows/the/movie.html?with=some&values=too&more=today\r\n"
    "DNT: 1\r\n"
    "Connection: keep-alive\r\n"
    "Cookie: session=0123456789abcdef0123456789abcdef; theme=dark; lang=en\r\n"
    "Upgrade-Insecure-Requests: 1\r\n"
    "Sec-Fetch-Dest: document\r\n"
    "Sec-Fetch-Mode: navigate\r\n"
    "Sec-Fetch-Site: none\r\n"
    "Sec-Fetch-User: ?1\r\n"
    "Cache-Control: max-age=0\r\n"
    "\r\n";
constexpr UINT32 kRequestBytes = sizeof kRequest - 1;
static_assert(kRequestBytes == 654);

void Own(benchmark::State& state) {
  for (auto _ : state) {
    HTTPParser parser;
    UINT32 used = kRequestBytes;
    HTTPMessage* message = parser.parse(kRequest, used);
    if (!message || used != kRequestBytes) state.SkipWithError("not parsed");
    delete message;
  }
  state.SetBytesProcessed(state.iterations() * kRequestBytes);
}
BENCHMARK(Own)->Name("http/browser_get/own");

// Every name and every value of every header, too.
void OwnValues(benchmark::State& state) {
  for (auto _ : state) {
    HTTPParser parser;
    UINT32 used = kRequestBytes;
    HTTPMessage* message = parser.parse(kRequest, used);
    for (MIMEHeader* header = message->getFirstHeader(); header;
         header = message->getNextHeader()) {
      benchmark::DoNotOptimize(header->name().GetLength());
      for (MIMEHeaderValue* value = header->getFirstHeaderValue(); value;
           value = header->getNextHeaderValue()) {
        benchmark::DoNotOptimize(value->getFirstParameter());
      }
    }
    delete message;
  }
}
BENCHMARK(OwnValues)->Name("http/browser_get_values/own");

struct StandardModel {
  std::string url;
  std::vector<std::pair<std::string, std::string>> headers;
  bool inValue = true;
  bool complete = false;
};

int OnUrl(http_parser* parser, const char* at, size_t length) {
  static_cast<StandardModel*>(parser->data)->url.append(at, length);
  return 0;
}

int OnField(http_parser* parser, const char* at, size_t length) {
  StandardModel* model = static_cast<StandardModel*>(parser->data);
  if (model->inValue) model->headers.emplace_back();
  model->inValue = false;
  model->headers.back().first.append(at, length);
  return 0;
}

int OnValue(http_parser* parser, const char* at, size_t length) {
  StandardModel* model = static_cast<StandardModel*>(parser->data);
  model->inValue = true;
  model->headers.back().second.append(at, length);
  return 0;
}

int OnComplete(http_parser* parser) {
  static_cast<StandardModel*>(parser->data)->complete = true;
  return 0;
}

void Peer(benchmark::State& state, bool fillModel) {
  http_parser_settings settings;
  http_parser_settings_init(&settings);
  settings.on_message_complete = OnComplete;
  if (fillModel) {
    settings.on_url = OnUrl;
    settings.on_header_field = OnField;
    settings.on_header_value = OnValue;
  }
  for (auto _ : state) {
    StandardModel model;
    http_parser parser;
    http_parser_init(&parser, HTTP_REQUEST);
    parser.data = &model;
    http_parser_execute(&parser, &settings, kRequest, kRequestBytes);
    if (!model.complete) state.SkipWithError("not parsed");
    benchmark::DoNotOptimize(model);
  }
  state.SetBytesProcessed(state.iterations() * kRequestBytes);
}
BENCHMARK_CAPTURE(Peer, events, false)->Name("http/browser_get/peer_events");
BENCHMARK_CAPTURE(Peer, model, true)->Name("http/browser_get/peer_model");

}  // namespace
