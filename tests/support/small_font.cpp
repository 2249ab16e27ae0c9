// Tables are written big-endian, put behind a directory, and padded to words.
#include "support/small_font.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vexel::test {

namespace {

using author::Bytes;

struct Table : Bytes {
  Table& U8(int64_t value) {
    push_back(static_cast<uint8_t>(value));
    return *this;
  }
  Table& U16(int64_t value) { return U8(value >> 8).U8(value); }
  Table& U32(int64_t value) { return U16(value >> 16).U16(value); }
  Table& Text(const std::string& text) {
    insert(end(), text.begin(), text.end());
    return *this;
  }
  Table& Add(const Bytes& bytes) {
    insert(end(), bytes.begin(), bytes.end());
    return *this;
  }
  int64_t Size() const { return static_cast<int64_t>(size()); }
};

using Tables = std::vector<std::pair<std::string, Table>>;

Bytes FontOf(uint32_t kind, const Tables& tables) {
  constexpr int64_t kEntry = 16, kHead = 12;
  const int64_t count = static_cast<int64_t>(tables.size());
  Table out;
  out.U32(kind).U16(count).U16(0).U16(0).U16(0);
  int64_t at = kHead + count * kEntry;
  for (const auto& [name, table] : tables) {
    out.Text(name).U32(0).U32(at).U32(table.Size());
    at += (table.Size() + 3) / 4 * 4;
  }
  for (const auto& [name, table] : tables) {
    out.Add(table);
    while (out.size() % 4 != 0) out.U8(0);
  }
  return out;
}

int64_t GlyphCount(const SmallFont& font) {
  return static_cast<int64_t>(font.glyphs.size()) + 1;
}

struct Extent {
  int xmin = 0, xmax = 0, ymin = 0, ymax = 0;
};

// Readers move a glyph until it begins at its left bearing, so both must be
// the outline's own.
Extent ExtentOf(const SmallGlyph& glyph) {
  Extent extent;
  bool first = true;
  for (const FontContour& contour : glyph.contours) {
    for (const FontPoint& p : contour) {
      if (first) extent = {p.x, p.x, p.y, p.y};
      first = false;
      extent = {std::min(extent.xmin, p.x), std::max(extent.xmax, p.x), std::min(extent.ymin, p.y),
                std::max(extent.ymax, p.y)};
    }
  }
  return extent;
}

// What both kinds have alike. The advance of glyph 0 is that of a half square.
Tables CommonTables(const SmallFont& font) {
  Tables tables;
  Table head;
  head.U32(0x10000).U32(0).U32(0).U32(0x5F0F3CF5).U16(0).U16(font.unitsPerEm);
  head.U32(0).U32(0).U32(0).U32(0);                       // made, changed
  head.U16(-2000).U16(-2000).U16(2000).U16(2000);         // bounds
  head.U16((font.bold ? 1 : 0) | (font.italic ? 2 : 0));  // style
  head.U16(8).U16(2).U16(1).U16(0);                       // offsets of glyphs have 32 bits
  tables.emplace_back("head", head);
  Table hhea;
  hhea.U32(0x10000).U16(font.ascent).U16(font.descent).U16(font.lineGap).U16(2000);
  for (int i = 0; i < 11; ++i) hhea.U16(0);
  hhea.U16(GlyphCount(font));
  tables.emplace_back("hhea", hhea);
  Table hmtx;
  hmtx.U16(font.unitsPerEm / 2).U16(0);
  for (const SmallGlyph& glyph : font.glyphs) hmtx.U16(glyph.advance).U16(ExtentOf(glyph).xmin);
  tables.emplace_back("hmtx", hmtx);
  Table cmap;
  cmap.U16(0).U16(1).U16(3).U16(10).U32(12);
  cmap.U16(12).U16(0).U32(16 + 12 * (GlyphCount(font) - 1)).U32(0).U32(GlyphCount(font) - 1);
  int64_t index = 1;
  for (const SmallGlyph& glyph : font.glyphs)
    cmap.U32(glyph.character).U32(glyph.character).U32(index++);
  tables.emplace_back("cmap", cmap);
  Table name;
  const int64_t length = static_cast<int64_t>(font.family.size());
  name.U16(0).U16(1).U16(18).U16(1).U16(0).U16(0).U16(1).U16(length).U16(0).Text(font.family);
  tables.emplace_back("name", name);
  if (!font.kerning.empty()) {
    const int64_t pairs = static_cast<int64_t>(font.kerning.size());
    Table kern;
    kern.U16(0).U16(1).U16(0).U16(14 + 6 * pairs).U16(1).U16(pairs).U16(0).U16(0).U16(0);
    for (const SmallPair& pair : font.kerning) kern.U16(pair.left).U16(pair.right).U16(pair.by);
    tables.emplace_back("kern", kern);
  }
  return tables;
}

Table TrueTypeGlyph(const SmallGlyph& glyph) {
  Table out;
  if (!glyph.parts.empty()) {
    constexpr int kOffsets = 2, kMore = 32;  // x and y in a byte each; another follows
    out.U16(-1).U16(0).U16(0).U16(1).U16(1);
    for (size_t i = 0; i < glyph.parts.size(); ++i) {
      out.U16(kOffsets | (i + 1 < glyph.parts.size() ? kMore : 0));
      out.U16(glyph.parts[i]).U16(0);
    }
    while (out.size() % 4 != 0) out.U8(0);
    return out;
  }
  if (glyph.contours.empty()) return out;
  const Extent extent = ExtentOf(glyph);
  out.U16(static_cast<int64_t>(glyph.contours.size()));
  out.U16(extent.xmin).U16(extent.ymin).U16(extent.xmax).U16(extent.ymax);
  int64_t last = -1;
  for (const FontContour& contour : glyph.contours)
    out.U16(last += static_cast<int64_t>(contour.size()));
  out.U16(0);  // instructions
  Table xs, ys;
  FontPoint pen;
  for (const FontContour& contour : glyph.contours) {
    for (const FontPoint& point : contour) {
      out.U8(point.on ? 1 : 0);
      xs.U16(point.x - pen.x);
      ys.U16(point.y - pen.y);
      pen = point;
    }
  }
  out.Add(xs).Add(ys);
  while (out.size() % 4 != 0) out.U8(0);
  return out;
}

// A number of a charstring or a dictionary, in three bytes or five.
void Number(Table& out, int value) {
  out.U8(28).U16(value);
}
void WideNumber(Table& out, int64_t value) {
  out.U8(29).U32(value);
}

Table Index(const std::vector<Table>& items) {
  Table out;
  out.U16(static_cast<int64_t>(items.size()));
  if (items.empty()) return out;
  out.U8(4);
  int64_t at = 1;
  out.U32(at);
  for (const Table& item : items) out.U32(at += item.Size());
  for (const Table& item : items) out.Add(item);
  return out;
}

Table CharString(const SmallGlyph& glyph) {
  constexpr int kMove = 21, kCubic = 8, kEnd = 14;
  Table out;
  FontPoint pen;
  const auto to = [&](const FontPoint& point) {
    Number(out, point.x - pen.x);
    Number(out, point.y - pen.y);
    pen = point;
  };
  for (const FontContour& contour : glyph.contours) {
    to(contour[0]);
    out.U8(kMove);
    for (size_t i = 1; i + 2 < contour.size(); i += 3) {
      for (size_t k = i; k < i + 3; ++k) to(contour[k]);
      out.U8(kCubic);
    }
  }
  return out.U8(kEnd);
}

Table Outlines(const SmallFont& font) {
  std::vector<Table> strings = {Table().U8(14)};
  Table charset;
  charset.U8(0);
  int name = 0;
  for (const SmallGlyph& glyph : font.glyphs) {
    strings.push_back(CharString(glyph));
    charset.U16(++name);
  }
  const Table start = [&] {
    Table out;
    out.U8(1).U8(0).U8(4).U8(4);
    Table family;
    family.Text(font.family);
    return out.Add(Index({family}));
  }();
  // The dictionary's numbers have one width, so its size is known before them.
  const auto dictionary = [](int64_t set, int64_t outlines, int64_t hidden) {
    constexpr int kCharset = 15, kCharStrings = 17, kPrivate = 18;
    Table out;
    WideNumber(out, set);
    out.U8(kCharset);
    WideNumber(out, outlines);
    out.U8(kCharStrings);
    WideNumber(out, 0);
    WideNumber(out, hidden);
    out.U8(kPrivate);
    return Index({out});
  };
  Table rest;
  rest.Add(Index({})).Add(Index({}));  // strings, subroutines
  const int64_t set = start.Size() + dictionary(0, 0, 0).Size() + rest.Size();
  const int64_t outlines = set + charset.Size();
  const Table all = Index(strings);
  Table out = start;
  out.Add(dictionary(set, outlines, outlines + all.Size())).Add(rest).Add(charset).Add(all);
  return out;
}

}  // namespace

Bytes TrueTypeFile(const SmallFont& font) {
  Tables tables = CommonTables(font);
  Table maxp;
  maxp.U32(0x10000).U16(GlyphCount(font)).U16(1000).U16(100).U16(1000).U16(100).U16(2);
  for (int i = 0; i < 6; ++i) maxp.U16(0);
  maxp.U16(10).U16(100);  // parts of a glyph, levels of parts
  tables.emplace_back("maxp", maxp);
  Table glyf, loca;
  loca.U32(0).U32(0);
  for (const SmallGlyph& glyph : font.glyphs) {
    glyf.Add(TrueTypeGlyph(glyph));
    loca.U32(glyf.Size());
  }
  tables.emplace_back("loca", loca);
  tables.emplace_back("glyf", glyf);
  return FontOf(0x10000, tables);
}

Bytes OpenTypeFile(const SmallFont& font) {
  Tables tables = CommonTables(font);
  Table maxp;
  maxp.U32(0x5000).U16(GlyphCount(font));
  tables.emplace_back("maxp", maxp);
  tables.emplace_back("CFF ", Outlines(font));
  return FontOf(0x4F54544F, tables);  // OTTO
}

FontContour SquareContour(int x, int y, int width, int height) {
  return {{x, y}, {x, y + height}, {x + width, y + height}, {x + width, y}};
}

FontContour CubicCircle(int x, int y, int radius) {
  const int k = static_cast<int>(std::lround(radius * 0.5522847498));
  const int r = radius;
  return {{x + r, y},     {x + r, y + k}, {x + k, y + r}, {x, y + r},     {x - k, y + r},
          {x - r, y + k}, {x - r, y},     {x - r, y - k}, {x - k, y - r}, {x, y - r},
          {x + k, y - r}, {x + r, y - k}, {x + r, y}};
}

}  // namespace vexel::test
