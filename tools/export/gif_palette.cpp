#include "gif_palette.h"

#include <algorithm>

namespace vexel::tools {

namespace {

constexpr int kCellBits = 6;
constexpr size_t kCells = size_t{1} << (3 * kCellBits);

constexpr uint32_t Pack(const uint8_t* rgb) {
  return static_cast<uint32_t>(rgb[0]) << 16 | static_cast<uint32_t>(rgb[1]) << 8 | rgb[2];
}

constexpr uint32_t Part(uint32_t color, int part) {
  return color >> (16 - 8 * part) & 0xFF;
}

constexpr Rgb Unpack(uint32_t color) {
  return {static_cast<uint8_t>(Part(color, 0)), static_cast<uint8_t>(Part(color, 1)),
          static_cast<uint8_t>(Part(color, 2))};
}

constexpr size_t CellOf(uint32_t color) {
  size_t cell = 0;
  for (int part = 0; part < 3; part++)
    cell = cell << kCellBits | Part(color, part) >> (8 - kCellBits);
  return cell;
}

}  // namespace

// Cells that share a palette entry.
struct ColorCount::Box {
  std::vector<uint32_t> cells;
  double error = 0;  // squared, over all pixels, along the axis
  int axis = 0;      // along which the error is largest
  double mean = 0;   // of that axis
};

ColorCount::ColorCount() : cells_(kCells) {}

void ColorCount::Add(const uint8_t* rgb, size_t pixels) {
  size_t begin = 0;
  while (begin < pixels) {
    const uint32_t color = Pack(rgb + 3 * begin);
    size_t end = begin + 1;
    while (end < pixels && Pack(rgb + 3 * end) == color) end++;
    AddRun(color, end - begin);
    begin = end;
  }
}

void ColorCount::AddRun(uint32_t color, uint64_t count) {
  if (exact_.size() <= kPaletteColors) exact_.insert(color);
  Cell& cell = cells_[CellOf(color)];
  cell.count += count;
  for (int part = 0; part < 3; part++) cell.sum[part] += count * Part(color, part);
  // A colour with more than half of the pixels wins the vote.
  if (cell.common == color) {
    cell.lead += count;
  } else if (cell.lead >= count) {
    cell.lead -= count;
  } else {
    cell.common = color;
    cell.lead = count - cell.lead;
  }
}

ColorCount::Box ColorCount::Measure(std::vector<uint32_t> cells) const {
  Box box;
  for (int axis = 0; axis < 3; axis++) {
    double count = 0;
    double sum = 0;
    for (const uint32_t index : cells) {
      count += static_cast<double>(cells_[index].count);
      sum += static_cast<double>(cells_[index].sum[axis]);
    }
    const double mean = sum / count;
    double error = 0;
    for (const uint32_t index : cells) {
      const auto own = static_cast<double>(cells_[index].count);
      const double off = static_cast<double>(cells_[index].sum[axis]) / own - mean;
      error += own * off * off;
    }
    if (error > box.error) {
      box.error = error;
      box.axis = axis;
      box.mean = mean;
    }
  }
  box.cells = std::move(cells);
  return box;
}

// A colour that fills areas stays as it is: a mean would shift it by the shades
// of its edges, and every area would show a pattern.
Rgb ColorCount::ColorOf(const Box& box) const {
  uint64_t count = 0;
  std::array<uint64_t, 3> sum = {};
  const Cell* largest = nullptr;
  for (const uint32_t index : box.cells) {
    const Cell& cell = cells_[index];
    count += cell.count;
    for (int part = 0; part < 3; part++) sum[part] += cell.sum[part];
    if (!largest || cell.lead > largest->lead) largest = &cell;
  }
  if (largest->lead > count / 2) return Unpack(largest->common);
  const auto mean = [&](int part) { return static_cast<uint8_t>((sum[part] + count / 2) / count); };
  return {mean(0), mean(1), mean(2)};
}

std::vector<Rgb> ColorCount::Choose() const {
  std::vector<Rgb> palette;
  if (exact_.size() <= kPaletteColors) {
    for (const uint32_t color : exact_) palette.push_back(Unpack(color));
    return palette;
  }
  std::vector<uint32_t> all;
  for (uint32_t i = 0; i < kCells; i++) {
    if (cells_[i].count > 0) all.push_back(i);
  }
  std::vector<Box> boxes;
  boxes.push_back(Measure(std::move(all)));
  while (boxes.size() < kPaletteColors) {
    const auto worst = std::max_element(
        boxes.begin(), boxes.end(), [](const Box& a, const Box& b) { return a.error < b.error; });
    if (worst->error <= 0) break;
    Box box = std::move(*worst);
    const auto middle = std::partition(box.cells.begin(), box.cells.end(), [&](uint32_t index) {
      return static_cast<double>(cells_[index].sum[box.axis]) <=
             box.mean * static_cast<double>(cells_[index].count);
    });
    if (middle == box.cells.begin() || middle == box.cells.end()) {
      // A spread of no more than rounding.
      *worst = std::move(box);
      worst->error = 0;
      continue;
    }
    *worst = Measure({box.cells.begin(), middle});
    boxes.push_back(Measure({middle, box.cells.end()}));
  }
  for (const Box& box : boxes) palette.push_back(ColorOf(box));
  return palette;
}

}  // namespace vexel::tools
