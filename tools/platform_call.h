// What a player asks of its platform, as something to print.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vexel::tools {

// One call. Texts are the player's, valid only during the call.
struct PlatformCall {
  const char* name;
  // A call that concerns what is seen or touched, of no interest to a script.
  bool ofScreen = false;
  // GetURL: the address, the window, and the posted data or null.
  const char* url = nullptr;
  const char* target = nullptr;
  const char* post = nullptr;
  int32_t flags = 0;
  // XSeek.
  std::optional<int32_t> frame{};
  // "clip": what was copied.
  const char* text = nullptr;
};

// "GetURL url=URL target=TARGET post=DATA flags=N", "XSeek FRAME",
// "clip TEXT", or the name.
std::string CallText(const PlatformCall& call);

class PlatformListener {
 public:
  virtual void OnCall(const PlatformCall& call) = 0;

 protected:
  ~PlatformListener() = default;
};

}  // namespace vexel::tools
