#include "action_blocks.h"

#include <algorithm>

namespace vexel::fuzz {

std::vector<Block> ReadBlocks(const uint8_t* data, size_t size) {
  std::vector<Block> blocks;
  while (size >= 2 && blocks.size() < kMaxBlocks) {
    const size_t length = std::min<size_t>(data[0] | data[1] << 8, size - 2);
    blocks.emplace_back(data + 2, data + 2 + length);
    data += 2 + length;
    size -= 2 + length;
  }
  return blocks;
}

std::vector<uint8_t> WriteBlocks(const std::vector<Block>& blocks) {
  std::vector<uint8_t> bytes;
  for (const Block& block : blocks) {
    const size_t length = std::min<size_t>(block.size(), 0xFFFF);
    bytes.push_back(static_cast<uint8_t>(length));
    bytes.push_back(static_cast<uint8_t>(length >> 8));
    bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(length));
  }
  return bytes;
}

}  // namespace vexel::fuzz
