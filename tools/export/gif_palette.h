// The palette of a film that can show few colours: the film's own colours if
// they are few enough, otherwise a choice by median cut.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

namespace vexel::tools {

// One less than a GIF has, which keeps one for what stays as it was.
inline constexpr size_t kPaletteColors = 255;

struct Rgb {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  bool operator==(const Rgb&) const = default;
};

// Counts the colours of a film, and chooses a palette for them.
class ColorCount {
 public:
  ColorCount();

  // `rgb` has 3 bytes for each of `pixels` pixels.
  void Add(const uint8_t* rgb, size_t pixels);

  // At most kPaletteColors. Those of the film, if it has no more.
  std::vector<Rgb> Choose() const;

 private:
  // Colours that agree in the upper six bits of each part.
  struct Cell {
    uint64_t count = 0;
    std::array<uint64_t, 3> sum = {};  // of each part over all pixels
    uint32_t common = 0;               // the one colour that most pixels have, if one has
    uint64_t lead = 0;                 // by how much it leads in a vote against all others
  };
  struct Box;

  void AddRun(uint32_t color, uint64_t count);
  Rgb ColorOf(const Box& box) const;
  Box Measure(std::vector<uint32_t> cells) const;

  std::vector<Cell> cells_;
  std::unordered_set<uint32_t> exact_;  // up to one more than the palette holds
};

}  // namespace vexel::tools
