// The fuzzer's way into one entry, which the build names.
#include "entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vexel::fuzz::VEXEL_FUZZ_ENTRY(data, size);
  return 0;
}
