// Blocks of actions as text, both ways, and scripts. Whatever is accepted must
// come back from its own mnemonics byte for byte.
#include "author/script/action_text.h"
#include "author/script/script.h"
#include "entries.h"

namespace vexel::fuzz {

namespace {

void CheckRoundTrip(const author::Bytes& block) {
  const author::SourceText text("block", author::DisassembleActions(block, 2));
  // Throws if the text is not even accepted.
  if (author::AssembleActions(author::WholeSource(text)) != block) __builtin_trap();
}

}  // namespace

void FuzzActionsText(const uint8_t* data, size_t size) {
  if (size < 1 || size > (1 << 16)) return;
  const author::Bytes input(data + 1, data + size);
  if (data[0] % 3 == 0) {
    CheckRoundTrip(input);
    return;
  }
  const author::SourceText source("input", std::string(input.begin(), input.end()));
  author::Bytes block;
  try {
    const author::SourceSlice slice = author::WholeSource(source);
    block = data[0] % 3 == 1 ? author::AssembleActions(slice) : author::CompileScript(slice);
  } catch (const author::SourceError&) {
    return;
  }
  CheckRoundTrip(block);
}

}  // namespace vexel::fuzz
