// The input of the target for action blocks: blocks one behind the other, each
// with its length in 16 bits before it. What is cut short is the last one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vexel::fuzz {

using Block = std::vector<uint8_t>;

inline constexpr size_t kMaxBlocks = 12;

std::vector<Block> ReadBlocks(const uint8_t* data, size_t size);
std::vector<uint8_t> WriteBlocks(const std::vector<Block>& blocks);

}  // namespace vexel::fuzz
