// From curves in fractions of a unit to records of whole units: cubics become
// quadratics, overlapping contours one, and only then is rounded, so that no
// error adds to another.
#include "author/fonts/embed.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>

namespace vexel::author {

namespace {

constexpr uint32_t kBlank = ' ';
constexpr uint16_t kLastByteCode = 255;
constexpr size_t kLastShortOffset = 0xFFFF;
constexpr size_t kMaxName = 255;

// Coordinates of glyphs beyond this are no letters, and edges of that length
// would fill the record with pieces.
constexpr double kFarthest = 32767;

// Nanoseconds that a font may take to have its overlaps resolved.
constexpr double kBudget = 4e9;

// Processor time after which a font is given up whose glyphs are programs without end.
constexpr std::clock_t kLongest = 20 * CLOCKS_PER_SEC;

// Pairs are looked for among this many glyphs at most: a table for all of a
// large font would be of no use to anyone.
constexpr size_t kMaxKerned = 1024;
constexpr size_t kMaxPairs = 0xFFFF;

constexpr size_t kMaxGlyphs = 0xFFFF;
constexpr size_t kMaxOutlines = size_t{16} << 20;  // bytes of one record

Point Rounded(Vec2 p) {
  return {static_cast<int32_t>(std::floor(p.x + 0.5)), static_cast<int32_t>(std::floor(p.y + 0.5))};
}

// The path as edges that select fill 1. What rounding has made a point is
// left out, and contours without edges with it.
std::vector<ShapeRecord> Edges(const VectorPath& path) {
  ShapeBuilder shape;
  shape.Fill1(1);
  const auto move = [&](Vec2 p) {
    if (Rounded(p) != shape.pen()) shape.MoveTo(Rounded(p));
  };
  Vec2 start;
  for (const PathCommand& command : path.commands) {
    const Point p = Rounded(command.p);
    switch (command.op) {
      case PathOp::kMove:
        start = command.p;
        move(start);
        break;
      case PathOp::kLine:
        if (p != shape.pen()) shape.LineTo(p);
        break;
      case PathOp::kQuad: {
        const Point control = Rounded(command.c1);
        if (control != shape.pen() || p != shape.pen()) shape.CurveTo(control, p);
        break;
      }
      case PathOp::kCubic:  // CubicsToQuads leaves none
        break;
      case PathOp::kClose:
        if (Rounded(start) != shape.pen()) shape.LineTo(Rounded(start));
        break;
    }
  }
  return shape.records();
}

bool IsNear(const VectorPath& path) {
  const auto near = [](Vec2 p) {
    return std::fabs(p.x) <= kFarthest && std::fabs(p.y) <= kFarthest;
  };
  return std::all_of(path.commands.begin(), path.commands.end(),
                     [&](const PathCommand& c) { return near(c.c1) && near(c.c2) && near(c.p); });
}

// The outline as a movie fills it. False if its overlaps had to stay.
bool MovieOutline(const FontFile& file, uint32_t glyph, double tolerance, WorkBudget* budget,
                  std::vector<ShapeRecord>* edges) {
  const VectorPath path = file.Outline(glyph);
  if (!IsNear(path)) throw FontError("a glyph is too large");
  VectorPath resolved;
  const bool whole = ResolveWinding(path, Winding::kNonZero, tolerance, budget, &resolved);
  *edges = Edges(resolved);
  return whole;
}

// Those that move most, as many as there is room for, by their codes.
std::vector<KerningPair> KerningPairs(const FontFile& file, const std::vector<uint32_t>& indexes,
                                      const Font& font, size_t most) {
  std::vector<KerningPair> pairs;
  const size_t count = std::min(font.glyphs.size(), kMaxKerned);
  for (size_t left = 0; left < count; ++left) {
    for (size_t right = 0; right < count && indexes[left] != 0; ++right) {
      const int16_t by = indexes[right] ? file.Kerning(indexes[left], indexes[right]) : 0;
      if (by != 0) pairs.push_back({font.glyphs[left].code, font.glyphs[right].code, by});
    }
  }
  most = std::min<size_t>(most, kMaxPairs);
  if (pairs.size() <= most) return pairs;
  std::stable_sort(pairs.begin(), pairs.end(), [](const KerningPair& p, const KerningPair& q) {
    return std::abs(p.adjustment) > std::abs(q.adjustment);
  });
  pairs.resize(most);
  std::sort(pairs.begin(), pairs.end(), [](const KerningPair& p, const KerningPair& q) {
    return std::pair(p.left, p.right) < std::pair(q.left, q.right);
  });
  return pairs;
}

}  // namespace

Embedded EmbedFont(const FontFile& file, std::span<const WantedGlyph> wanted,
                   const EmbedOptions& options) {
  Embedded result;
  Font& font = result.font;
  font.name = file.family().substr(0, kMaxName);
  font.flags = kFontAnsi | kFontHasLayout;
  if (file.bold()) font.flags |= kFontBold;
  if (file.italic()) font.flags |= kFontItalic;
  font.ascent = file.ascent();
  font.descent = file.descent();
  font.leading = file.leading();

  std::vector<WantedGlyph> sorted(wanted.begin(), wanted.end());
  const auto byCode = [](const WantedGlyph& p, const WantedGlyph& q) { return p.code < q.code; };
  std::stable_sort(sorted.begin(), sorted.end(), byCode);

  const std::clock_t start = std::clock();
  const uint32_t blank = file.GlyphOf(kBlank);
  WorkBudget budget(kBudget);
  std::vector<uint32_t> indexes;  // of the file's glyphs; 0 for a missing one
  size_t outlineBytes = 0;
  for (size_t i = 0; i < sorted.size(); ++i) {
    if (i > 0 && sorted[i].code == sorted[i - 1].code) continue;
    if (std::clock() - start > kLongest) throw FontError("takes too long to read");
    const uint32_t index = file.GlyphOf(sorted[i].character);
    if (index == 0) result.missing.push_back(sorted[i].character);
    if (index == 0 && !options.keepMissing) continue;
    Glyph glyph;
    glyph.code = sorted[i].code;
    if (index != 0 || blank != 0) glyph.advance = file.Advance(index != 0 ? index : blank);
    if (index != 0 && !MovieOutline(file, index, options.tolerance, &budget, &glyph.outline))
      ++result.holed;
    BitWriter measure;
    WriteEdges(measure, glyph.outline, glyph.fillBits, glyph.lineBits);
    outlineBytes += measure.size();
    if (outlineBytes > kMaxOutlines) throw FontError("the outlines are too many for a movie");
    if (glyph.code > kLastByteCode) font.flags |= kFontWideCodes;
    indexes.push_back(index);
    font.glyphs.push_back(std::move(glyph));
  }
  if (font.glyphs.size() > kMaxGlyphs) throw FontError("has more characters than a record holds");
  if (outlineBytes + 2 * (font.glyphs.size() + 1) > kLastShortOffset)
    font.flags |= kFontWideOffsets;

  const size_t pairSize = font.flags & kFontWideCodes ? 6 : 4;
  const size_t bounds = BoundsAndKerning(font, {}).size();
  const size_t room = options.maxBehind > bounds ? options.maxBehind - bounds : 0;
  font.behind = BoundsAndKerning(font, KerningPairs(file, indexes, font, room / pairSize));
  return result;
}

}  // namespace vexel::author
