// Packets of both stream layouts, damaged, lost, doubled and out of order.
#include <cstdio>
#include <cstdlib>

#include "entries.h"
#include "host/plain_reassembly.h"

namespace vexel::fuzz {

void FuzzPackets(const uint8_t* data, size_t size) {
  if (size < 4) return;
  const bool nonLinear = data[0] & 1;
  // Files stay short: gaps are filled by their length.
  const UINT32 length = UINT32{data[2]} * 256 + data[3] + 1;
  test::TwinReassembly twin(nonLinear, data[1], length);
  const uint8_t* at = data + 4;
  const uint8_t* const end = data + size;
  bool same = true;
  while (same && end - at >= 3) {
    const uint8_t kind = at[0];
    const unsigned number = at[1] * 256u + at[2];
    at += 3;
    if ((kind & 7) == 7) {
      twin.RequestCharacter(static_cast<UINT16>(number), UINT32{kind} * 1000);
      continue;
    }
    const size_t count = std::min<size_t>(number, static_cast<size_t>(end - at));
    same = twin.Put(test::Bytes(at, at + count), UINT32{kind} * 10, kind - 128);
    at += count;
  }
  if (same && twin.Agree()) return;
  std::fprintf(stderr, "the twins differ: %s\n", twin.what.c_str());
  std::abort();
}

}  // namespace vexel::fuzz
