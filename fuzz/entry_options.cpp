// The fields of POST data, into a list of values and onto a page.
#include <string>

#include "base/buffer_text.h"
#include "entries.h"
#include "host/fake_host.h"
#include "http/http_post_server.h"

namespace vexel::fuzz {

void FuzzOptions(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  test::FakeHost host;
  const test::Ptr<HTTPPostServer> server =
      test::New<HTTPPostServer>(host.context.get(), host.player.get());
  const test::Ptr<IZEMValues> values = test::MakeValues();
  const INT32 result = server->CollectOptions(text.c_str(), values.get());
  const char* name = nullptr;
  IZEMBuffer* value = nullptr;
  size_t total = 0;
  for (INT32 more = values->GetFirstPropertyCString(name, value); more >= 0;
       more = values->GetNextPropertyCString(name, value)) {
    const CQKString held = BufferText(value);
    // The value and its zeros, and nothing of what stood behind it.
    if (value->GetSize() != static_cast<UINT32>(held.GetLength()) + 12) __builtin_trap();
    if (text.find(held) == std::string::npos) __builtin_trap();
    total += strlen(name) + static_cast<size_t>(held.GetLength());
    value->Release();
  }
  if (total > size) __builtin_trap();
  CQKString* page = nullptr;
  if (server->GetPostData("u", text.c_str(), static_cast<UINT32>(size), page) != result) {
    __builtin_trap();
  }
  delete page;
  server->Close();
}

}  // namespace vexel::fuzz
