// Random movies of text fields: fonts of random glyphs, fields of every kind
// on timelines that loop, in sprites, as masks and under odd matrices.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexel::model {

struct FieldMovie {
  std::vector<uint8_t> bytes;
  int width = 0, height = 0;  // in pixels
  int frames = 0;
  std::vector<int> codes;          // what the fonts hold, and some that they don't
  std::vector<std::string> names;  // of the fields' variables
};

FieldMovie MakeFieldMovie(uint64_t seed);

}  // namespace vexel::model
