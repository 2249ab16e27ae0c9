// Changes movies by their tags, so that what comes out is still a movie most
// of the time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace vexel::fuzz {

struct MovieTag {
  int code = 0;
  std::vector<uint8_t> body;
  bool isLong = false;
  int64_t claimed = -1;  // a length that lies; -1 for the true one
};

struct TaggedMovie {
  std::vector<uint8_t> header;  // signature to frame count
  std::vector<MovieTag> tags;
  std::vector<uint8_t> rest;  // bytes that are no whole tag
};

// False for bytes that don't begin like a movie.
bool ReadTaggedMovie(const uint8_t* data, size_t size, TaggedMovie* out);
// `length`: whether to put the true length into the header.
std::vector<uint8_t> WriteTaggedMovie(const TaggedMovie& movie, bool length);

// One change somewhere in the tags; `mutateBytes` changes a body in place.
using ByteMutator = size_t (*)(uint8_t* data, size_t size, size_t maxSize);
void MutateTags(std::vector<MovieTag>* tags, std::mt19937* random, ByteMutator mutateBytes,
                int depth = 0);

}  // namespace vexel::fuzz
