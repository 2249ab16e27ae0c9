// The look at a whole movie that the command `check` takes.
#include "author/check/check.h"
#include "entries.h"

namespace vexel::fuzz {

void FuzzCheck(const uint8_t* data, size_t size) {
  author::CheckMovie({data, size});
}

}  // namespace vexel::fuzz
