#include "platform_call.h"

#include "escapes.h"

namespace vexel::tools {

std::string CallText(const PlatformCall& call) {
  std::string text = call.name;
  if (call.url) {
    text.append(" url=").append(Escaped(call.url)).append(" target=").append(Escaped(call.target));
    text.append(" post=").append(Escaped(call.post));
    text.append(" flags=").append(std::to_string(call.flags));
  }
  if (call.frame) text.append(" ").append(std::to_string(*call.frame));
  if (call.text) text.append(" ").append(Escaped(call.text));
  return text;
}

}  // namespace vexel::tools
