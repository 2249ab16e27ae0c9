// Makes the fuzzer change action blocks by their actions: sensible statements
// go in between, pieces move from block to block, operands change.
#include <algorithm>
#include <cstring>
#include <optional>
#include <random>

#include "action_blocks.h"
#include "author/script/action_walk.h"
#include "random_block.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

using namespace vexel::fuzz;
using vexel::author::ActionView;

std::optional<ActionView> ActionAt(const Block& block, size_t at) {
  if (at >= block.size()) return std::nullopt;
  return vexel::author::ReadAction(block, at);
}

class Mutation {
 public:
  Mutation(std::vector<Block>* blocks, unsigned seed) : blocks_(*blocks), random_(seed) {}

  void Run() {
    if (blocks_.empty() || (blocks_.size() < kMaxBlocks && Lot(8) == 0)) {
      blocks_.push_back(Statements());
      return;
    }
    Block& block = blocks_[Lot(blocks_.size())];
    const std::vector<size_t> starts = Starts(block);
    const size_t at = starts[Lot(starts.size())];
    switch (Lot(8)) {
      case 0:
      case 1: {
        Block piece = Statements();
        if (!piece.empty()) piece.pop_back();  // its end byte
        Insert(&block, at, piece);
        break;
      }
      case 2: {
        const size_t to = starts[Lot(starts.size())];
        block.erase(At(&block, std::min(at, to)), At(&block, std::max(at, to)));
        break;
      }
      case 3: {
        const Block& from = blocks_[Lot(blocks_.size())];
        const std::vector<size_t> places = Starts(from);
        const size_t a = places[Lot(places.size())], b = places[Lot(places.size())];
        Insert(&block, at,
               Block(from.begin() + static_cast<std::ptrdiff_t>(std::min(a, b)),
                     from.begin() + static_cast<std::ptrdiff_t>(std::max(a, b))));
        break;
      }
      case 4:
        JumpSomewhere(&block, starts);
        break;
      case 5:
        std::swap(block, blocks_[Lot(blocks_.size())]);
        break;
      default:
        Bytes(&block, at);
        break;
    }
  }

 private:
  size_t Lot(size_t n) { return random_() % n; }
  static Block::iterator At(Block* block, size_t i) {
    return block->begin() + static_cast<std::ptrdiff_t>(i);
  }

  // Where actions begin, and the end.
  static std::vector<size_t> Starts(const Block& block) {
    std::vector<size_t> starts;
    size_t at = 0;
    while (const auto action = ActionAt(block, at)) {
      starts.push_back(at);
      at = action->end;
    }
    starts.push_back(std::min(at, block.size()));
    return starts;
  }

  Block Statements() {
    vexel::model::script::Lots lots(random_());
    vexel::model::script::BlockStyle style;
    style.length = 3;
    style.odd = Lot(4) == 0;
    return vexel::model::script::RandomBlock(lots, style);
  }

  static void Insert(Block* block, size_t at, const Block& piece) {
    if (block->size() + piece.size() <= 4096)
      block->insert(At(block, at), piece.begin(), piece.end());
  }

  void JumpSomewhere(Block* block, const std::vector<size_t>& starts) {
    for (const size_t at : starts) {
      const auto action = ActionAt(*block, at);
      if (!action || !action->info || action->operands.size() < 2 ||
          action->info->operands != vexel::ActionOperands::kOffset || Lot(2) == 0) {
        continue;
      }
      const size_t to = starts[Lot(starts.size())];
      const auto offset = static_cast<uint16_t>(to - action->end);
      (*block)[at + 3] = static_cast<uint8_t>(offset);
      (*block)[at + 4] = static_cast<uint8_t>(offset >> 8);
      return;
    }
  }

  // One action's bytes, or all from there on.
  void Bytes(Block* block, size_t at) {
    const auto action = ActionAt(*block, at);
    const size_t end = action && Lot(4) != 0 ? action->end : block->size();
    Block piece(block->begin() + static_cast<std::ptrdiff_t>(at),
                block->begin() + static_cast<std::ptrdiff_t>(end));
    const size_t size = piece.size();
    piece.resize(size + 8);
    piece.resize(LLVMFuzzerMutate(piece.data(), size, piece.size()));
    block->erase(At(block, at), At(block, end));
    Insert(block, at, piece);
  }

  std::vector<Block>& blocks_;
  std::mt19937 random_;
};

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize,
                                          unsigned int seed) {
  if (seed % 16 == 0) return LLVMFuzzerMutate(data, size, maxSize);
  std::vector<Block> blocks = ReadBlocks(data, size);
  Mutation mutation(&blocks, seed);
  for (unsigned n = 1 + seed / 16 % 3; n > 0; --n) mutation.Run();
  const std::vector<uint8_t> bytes = WriteBlocks(blocks);
  if (bytes.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
  std::memcpy(data, bytes.data(), bytes.size());
  return bytes.size();
}
