// Tables shared by all rasters.
#include "raster/render_tables.h"

namespace vexel {

bool renderTablesBuilt = false;
int32_t PixCoverage[8][8][4];
uint16_t squareTable[kSquareEntries];
uint8_t rootTable[kRootEntries + 4];

void BuildRenderTables() {
  renderTablesBuilt = true;
  for (int32_t x = 0; x < 8; x++) {
    for (int32_t y = 0; y < 8; y++) {
      int32_t* w = PixCoverage[x][y];
      const int32_t area[4] = {(8 - x) * (8 - y), x * (8 - y), (8 - x) * y, x * y};
      int32_t sum = 0;
      int32_t largest = 0;
      for (int32_t i = 0; i < 4; i++) {
        w[i] = (area[i] + 4) / 8;
        sum += w[i];
        if (w[i] > w[largest]) largest = i;
      }
      w[largest] += 8 - sum;  // rounding must not change the brightness
    }
  }
  for (int32_t i = 0; i < kSquareEntries; i++) {
    squareTable[i] = static_cast<uint16_t>(i < 256 ? i * i : 65535);
  }
  for (int32_t i = 0, root = 0; i < kRootEntries; i++) {
    if (i == (root + 1) * (root + 1)) root++;
    rootTable[i] = static_cast<uint8_t>(root);
  }
}

}  // namespace vexel
