// A text for `vexel make`, without files beside it. What is made is a movie of
// its declared length unless the text declares another.
#include <string>

#include "author/language/make.h"
#include "entries.h"

namespace vexel::fuzz {

void FuzzMake(const uint8_t* data, size_t size) {
  if (size > (1 << 16)) return;
  author::NoFiles files;
  try {
    const author::MadeMovie movie =
        author::MakeMovie("text", std::string(data, data + size), files);
    if (movie.files.size() != 1 || movie.bytes.size() > author::kMaxMadeMovie + (1 << 20))
      __builtin_trap();
  } catch (const author::SourceError& error) {
    const std::string message = error.what();
    if (message.rfind("text:", 0) != 0 || message.find('\n') == std::string::npos) __builtin_trap();
  }
}

}  // namespace vexel::fuzz
