// A movie for `vexel dump`: the text that is printed makes the same bytes.
#include <algorithm>
#include <string>

#include "author/language/dump.h"
#include "author/language/make.h"
#include "entries.h"

namespace vexel::fuzz {

void FuzzDump(const uint8_t* data, size_t size) {
  if (size > (1 << 16)) return;
  const std::string text = author::DumpMovie({data, size});
  const bool movie = size >= 8 && std::equal(data, data + 3, "VXF");
  if (text.empty() != !movie) __builtin_trap();
  if (!movie) return;
  author::NoFiles files;
  const author::Bytes made = author::MakeMovie("text", text, files).bytes;
  if (!std::equal(made.begin(), made.end(), data, data + size)) __builtin_trap();
}

}  // namespace vexel::fuzz
