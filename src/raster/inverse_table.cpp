// The inverse table of a palette, filled by growing cubes: each entry claims
// the cells around its own within a radius that grows from round to round, so
// that neighbourhoods fill up from the inside, and the search stops as soon as
// each cell has an owner. A palette without gaps is done after few rounds.
#include <cstring>

#include "raster/color_table.h"

namespace vexel {

namespace {

constexpr int32_t kFirstRadius = 3;
constexpr int32_t kLastRadius = 15;
constexpr uint8_t kUnset = 255;  // a distance, above all real ones
constexpr int32_t kMaxDistance = 254;

// The channel value a cell number stands for: its lower limit, but full
// intensity for the last.
constexpr int32_t CellValue(int32_t cell) {
  return cell == 15 ? 255 : cell << 4;
}

constexpr int32_t Distance(int32_t cell, int32_t channel) {
  const int32_t d = CellValue(cell) - channel;
  return d < 0 ? -d : d;
}

// The cells within a radius of a channel's own, both ends included.
struct CellRange {
  int32_t first, last;
  CellRange(int32_t channel, int32_t radius)
      : first((channel >> 4) - radius < 0 ? 0 : (channel >> 4) - radius),
        last((channel >> 4) + radius > 15 ? 15 : (channel >> 4) + radius) {}
};

}  // namespace

ITabBuilder::ITabBuilder(uint8_t* table) : itab(table), remaining(kInverseTableSize) {
  std::memset(dist, kUnset, sizeof dist);
}

void ITabBuilder::FillCube(RGB8 color, uint8_t index, int32_t radius) {
  const auto red = static_cast<int32_t>(RedOf(color));
  const auto green = static_cast<int32_t>(GreenOf(color));
  const auto blue = static_cast<int32_t>(BlueOf(color));
  const CellRange rs(red, radius), gs(green, radius), bs(blue, radius);
  for (int32_t r = rs.first; r <= rs.last; r++) {
    for (int32_t g = gs.first; g <= gs.last; g++) {
      const int32_t rg = Distance(r, red) + Distance(g, green);
      for (int32_t b = bs.first; b <= bs.last; b++) {
        int32_t d = rg + Distance(b, blue);
        if (d > kMaxDistance) d = kMaxDistance;
        const int32_t cell = InverseTableCell(r, g, b);
        if (d >= dist[cell]) continue;  // a tie stays with the earlier entry
        if (dist[cell] == kUnset) remaining--;
        dist[cell] = static_cast<uint8_t>(d);
        itab[cell] = index;
      }
    }
  }
}

void BuildInverseTable(const SColorTable* table, uint8_t* itab) {
  ITabBuilder builder(itab);
  for (int32_t radius = kFirstRadius; radius <= kLastRadius && builder.remaining > 0; radius++) {
    for (int32_t i = 0; i < table->n; i++) {
      builder.FillCube(table->colors[i], static_cast<uint8_t>(i), radius);
    }
  }
}

}  // namespace vexel
