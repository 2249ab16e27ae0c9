// Makes the fuzzer change movies by their tags, and cross two movies by taking
// tags of the one into the other.
#include <algorithm>
#include <cstring>

#include "tag_mutator.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

using namespace vexel::fuzz;

// The movie's bytes into the fuzzer's buffer; false if they don't fit.
bool Store(const TaggedMovie& movie, bool length, uint8_t* out, size_t maxSize, size_t* size) {
  const std::vector<uint8_t> bytes = WriteTaggedMovie(movie, length);
  if (bytes.size() > maxSize) return false;
  std::memcpy(out, bytes.data(), bytes.size());
  *size = bytes.size();
  return true;
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize,
                                          unsigned int seed) {
  std::mt19937 random(seed);
  TaggedMovie movie;
  if (random() % 16 == 0 || !ReadTaggedMovie(data, size, &movie)) {
    return LLVMFuzzerMutate(data, size, maxSize);
  }
  if (random() % 16 == 0) {
    const size_t bytes =
        LLVMFuzzerMutate(movie.header.data(), movie.header.size(), movie.header.size());
    movie.header.resize(std::max<size_t>(bytes, 8));
  }
  for (unsigned n = 1 + random() % 3; n > 0; --n)
    MutateTags(&movie.tags, &random, LLVMFuzzerMutate);
  size_t made = 0;
  if (!Store(movie, random() % 8 != 0, data, maxSize, &made)) {
    return LLVMFuzzerMutate(data, size, maxSize);
  }
  return made;
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* data1, size_t size1,
                                            const uint8_t* data2, size_t size2, uint8_t* out,
                                            size_t maxSize, unsigned int seed) {
  std::mt19937 random(seed);
  TaggedMovie movie;
  TaggedMovie other;
  if (!ReadTaggedMovie(data1, size1, &movie) || !ReadTaggedMovie(data2, size2, &other) ||
      other.tags.empty()) {
    return 0;
  }
  const size_t from = random() % other.tags.size();
  const size_t count = std::min<size_t>(1 + random() % 6, other.tags.size() - from);
  const auto first = other.tags.begin() + static_cast<std::ptrdiff_t>(from);
  movie.tags.insert(
      movie.tags.begin() + static_cast<std::ptrdiff_t>(random() % (movie.tags.size() + 1)), first,
      first + static_cast<std::ptrdiff_t>(count));
  size_t made = 0;
  return Store(movie, true, out, maxSize, &made) ? made : 0;
}
