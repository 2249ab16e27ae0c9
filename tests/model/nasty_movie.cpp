// Random movies that seek the corners of drawing.
#include "nasty_movie.h"

#include <cmath>

#include "movie_bits.h"
#include "nasty_bitmaps.h"

namespace vexel::model {

namespace {

class Maker {
 public:
  Maker(uint64_t seed, Flavor flavor, int most) : r_(seed), flavor_(flavor), most_(most) {}
  NastyMovie Make();

 private:
  bool Is(Flavor f) const { return flavor_ == f; }
  // percent if the flavor is f, few in mixed movies, else rest
  bool With(Flavor f, int percent, int mixed = 25, int rest = 3) {
    return r_.Chance(Is(f) ? percent : flavor_ == Flavor::kEverything ? mixed : rest);
  }

  int Any(const std::vector<int>& ids) {
    return ids[static_cast<size_t>(r_.Int(0, static_cast<int>(ids.size()) - 1))];
  }
  Mat Placement();
  Mat StyleMatrix(bool gradient);
  void Cxform(Writer& w, bool alpha);
  void Color(Writer& w, bool alpha);
  void FillStyle(Writer& w, bool alpha, bool morph);
  void Count(Writer& w, int n);
  void Styles(Writer& w, bool alpha, bool morph, int* fills, int* lines);
  void Move(Writer& w, int x, int y, uint32_t flags, int f0, int f1, int line);
  void EdgeTo(Writer& w, int dx, int dy, int cx, int cy, bool curve);
  void Edges(Writer& w, int fills, int lines, bool alpha, bool newStyles, uint64_t pathSeed,
             int jitter);
  void Shape(int id);
  void Morph(int id);
  void Font(int id);
  void Text(int id, int font);
  void Sprite(int id);
  void Bounds(Writer& w, bool small);
  std::vector<uint8_t> Place(bool main, int moves);
  void Frame(Writer& w, bool main, int ops, bool first);

  Random r_;
  Flavor flavor_;
  int most_;
  int width_ = 0, height_ = 0;  // twips
  int span_ = 0;                // how far shapes reach, twips
  Writer out_;
  std::vector<int> placeable_, bitmaps_;

  int self_ = 0;  // the sprite that is being written
  int nFillBits_ = 0, nLineBits_ = 0;
  bool tables_ = false;
};

Mat Maker::Placement() {
  Mat m{0x10000, 0, 0, 0x10000, r_.Int(-span_ / 3, span_ / 2), r_.Int(-span_ / 3, span_ / 2)};
  const int kind = r_.Int(0, Is(Flavor::kZoom) ? 13 : 9);
  if (kind == 0) {
    m.tx = m.ty = 0;
  } else if (kind >= 3 && kind <= 5) {
    const double angle = r_.Int(0, 3600) * 3.14159265 / 1800, s = r_.Int(20, 250) / 100.0;
    m.a = static_cast<int32_t>(std::cos(angle) * s * 65536);
    m.d = m.a;
    m.b = static_cast<int32_t>(std::sin(angle) * s * 65536);
    m.c = -m.b;
    if (r_.Chance(30)) m.c = r_.Int(-80000, 80000);
  } else if (kind == 6 || kind == 7) {
    m.a = r_.Int(-150000, 150000);
    m.d = r_.Int(-150000, 150000);
  } else if (kind == 8) {
    m.a = r_.Int(-1000, 1000);
    m.b = r_.Chance(50) ? r_.Int(-1000, 1000) : 0;
    if (r_.Chance(20)) m.a = m.d = 0;
  } else if (kind == 9 && r_.Chance(50)) {
    m.a = m.d = 0x10000 + r_.Int(-300, 300);
  } else if (kind > 9) {
    const int z = 0x10000 * r_.Int(4, 400);
    m.a = r_.Chance(30) ? -z : z;
    m.d = r_.Chance(30) ? -z : z;
    if (r_.Chance(40)) m.b = m.a / r_.Int(2, 9);
    if (r_.Chance(40)) m.c = m.d / r_.Int(-9, -2);
    if (r_.Chance(50)) {
      m.tx = r_.Int(-900000, 900000);
      m.ty = r_.Int(-900000, 900000);
    }
  }
  return m;
}

Mat Maker::StyleMatrix(bool gradient) {
  Mat m{0, 0, 0, 0, r_.Int(-span_, span_), r_.Int(-span_, span_)};
  const int unit = gradient        ? r_.Int(500, 20000)
                   : r_.Chance(50) ? 20 * 65536
                                   : r_.Int(65536, 60 * 65536);
  m.a = m.d = unit;
  switch (r_.Int(0, 6)) {
    case 0:
      m.a = -m.a;
      break;
    case 1:
      m.d = -m.d;
      break;
    case 2:
      m.b = m.a / r_.Int(1, 8);
      m.c = -m.d / r_.Int(1, 8);
      break;
    case 3:
      m.b = m.a;
      m.c = m.d * (r_.Chance(50) ? 1 : -1);
      m.a = m.d = r_.Chance(50) ? 0 : r_.Int(-100, 100);
      break;
    case 4:
      m.a = static_cast<int32_t>(int64_t{m.a} * r_.Int(1, 300) / 100);
      break;
    case 5:
      if (r_.Chance(20)) m.d = r_.Chance(50) ? 0 : m.a / 2000;
      break;
    default:
      break;
  }
  return m;
}

void Maker::Cxform(Writer& w, bool alpha) {
  w.Align();
  const uint32_t flags = static_cast<uint32_t>(r_.Int(0, 3));
  const int n = r_.Chance(80) ? 10 : r_.Int(0, 15);
  w.Bits(2, flags);
  w.Bits(4, static_cast<uint32_t>(n));
  auto mul = [this] { return static_cast<uint32_t>(r_.Chance(40) ? 256 : r_.Int(-100, 400)); };
  auto add = [this] { return static_cast<uint32_t>(r_.Chance(30) ? 0 : r_.Int(-200, 200)); };
  if (flags & 1) {
    for (int i = 0; i < (alpha ? 4 : 3); ++i) w.Bits(n, mul());
  }
  if (flags & 2) {
    for (int i = 0; i < (alpha ? 4 : 3); ++i) w.Bits(n, add());
  }
  w.Align();
}

void Maker::Color(Writer& w, bool alpha) {
  const bool standard = r_.Chance(20);
  for (int k = 0; k < 3; ++k)
    w.U8(static_cast<uint32_t>(standard ? 51 * r_.Int(0, 5) : r_.Int(0, 255)));
  if (alpha) {
    const int opaque = Is(Flavor::kStacks) ? 5 : 50;
    w.U8(static_cast<uint32_t>(r_.Chance(opaque) ? 255 : r_.Chance(10) ? 254 : r_.Int(0, 255)));
  }
}

void Maker::FillStyle(Writer& w, bool alpha, bool morph) {
  if (With(Flavor::kGradients, 90, 25, 8)) {
    static const int types[] = {0x10, 0x12, 0x12, 0x10, 0x11, 0x13, 0x92};
    w.U8(static_cast<uint32_t>(types[r_.Int(0, 6)]));
    w.Matrix(StyleMatrix(true));
    if (morph) w.Matrix(StyleMatrix(true));
    const int n = r_.Chance(5) ? r_.Int(0, 12) : r_.Int(1, 8);
    w.U8(static_cast<uint32_t>(n));
    int ratio = r_.Chance(70) ? 0 : r_.Int(0, 255);
    for (int i = 0; i < n; ++i) {
      w.U8(static_cast<uint32_t>(ratio));
      Color(w, alpha);
      if (morph) {
        w.U8(static_cast<uint32_t>(r_.Int(0, 255)));
        Color(w, alpha);
      }
      if (r_.Chance(15)) {
        ratio = r_.Int(0, 255);
      } else if (!r_.Chance(15)) {
        ratio = ratio + r_.Int(0, 80) > 255 ? 255 : ratio + r_.Int(0, 80);
      }
      if (ratio > 255) ratio = 255;
    }
  } else if (!bitmaps_.empty() && With(Flavor::kBitmaps, 90, 25, 4)) {
    w.U8(static_cast<uint32_t>(0x40 + r_.Int(0, 3)));
    w.U16(static_cast<uint32_t>(r_.Chance(3) ? 999 : Any(bitmaps_)));
    w.Matrix(StyleMatrix(false));
    if (morph) w.Matrix(StyleMatrix(false));
  } else {
    w.U8(0);
    Color(w, alpha);
    if (morph) Color(w, alpha);
  }
}

void Maker::Count(Writer& w, int n) {
  if (r_.Chance(8)) {
    w.U8(255);
    w.U16(static_cast<uint32_t>(n));
  } else {
    w.U8(static_cast<uint32_t>(n));
  }
}

void Maker::Styles(Writer& w, bool alpha, bool morph, int* fills, int* lines) {
  *fills = Is(Flavor::kStrokes) ? r_.Int(0, 2) : r_.Int(1, Is(Flavor::kStacks) ? 20 : 5);
  if (Is(Flavor::kStacks) && !morph && r_.Chance(2)) *fills = 280;  // more than a span holds
  *lines = With(Flavor::kStrokes, 100, 50, 25) ? r_.Int(1, 5) : 0;
  w.Align();
  Count(w, *fills);
  for (int i = 0; i < *fills; ++i) FillStyle(w, alpha, morph);
  Count(w, *lines);
  for (int i = 0; i < *lines; ++i) {
    for (int k = 0; k < (morph ? 2 : 1); ++k) {
      w.U16(static_cast<uint32_t>(r_.Chance(60)   ? r_.Int(0, 80)
                                  : r_.Chance(80) ? r_.Int(0, 600)
                                                  : r_.Int(0, 65535)));
    }
    Color(w, alpha);
    if (morph) Color(w, alpha);
  }
}

void Maker::Move(Writer& w, int x, int y, uint32_t flags, int f0, int f1, int line) {
  w.Bits(1, 0);
  w.Bits(5, flags);
  if (flags & 1) {
    const int n = Writer::Width(x, y);
    w.Bits(5, static_cast<uint32_t>(n));
    w.Pair(n, x, y);
  }
  if (flags & 2) w.Bits(nFillBits_, static_cast<uint32_t>(f0));
  if (flags & 4) w.Bits(nFillBits_, static_cast<uint32_t>(f1));
  if (flags & 8) w.Bits(nLineBits_, static_cast<uint32_t>(line));
}

void Maker::EdgeTo(Writer& w, int dx, int dy, int cx, int cy, bool curve) {
  w.Bits(1, 1);
  if (curve) {
    int n = Writer::Width(cx, cy);
    if (Writer::Width(dx, dy) > n) n = Writer::Width(dx, dy);
    if (n < 2) n = 2;
    if (n > 17) n = 17;
    w.Bits(1, 0);
    w.Bits(4, static_cast<uint32_t>(n - 2));
    w.Pair(n, cx, cy);
    w.Pair(n, dx, dy);
    return;
  }
  int n = Writer::Width(dx, dy);
  if (n < 2) n = 2;
  if (n > 17) n = 17;
  w.Bits(1, 1);
  w.Bits(4, static_cast<uint32_t>(n - 2));
  if (dx != 0 && dy != 0) {
    w.Bits(1, 1);
    w.Pair(n, dx, dy);
  } else {
    w.Bits(1, 0);
    w.Bits(1, dx == 0);
    w.Bits(n, static_cast<uint32_t>(dx == 0 ? dy : dx));
  }
}

// A path with the random choices of pathSeed, its points moved by up to jitter:
// the two ends of a morph share the first and differ in the second.
void Maker::Edges(Writer& w, int fills, int lines, bool alpha, bool newStyles, uint64_t pathSeed,
                  int jitter) {
  nFillBits_ = fills ? Writer::Width(fills) - 1 : 0;
  nLineBits_ = lines ? Writer::Width(lines) - 1 : 0;
  auto widths = [&] {
    w.Align();
    w.Bits(4, static_cast<uint32_t>(nFillBits_));
    w.Bits(4, static_cast<uint32_t>(nLineBits_));
  };
  widths();
  Random p(pathSeed);
  const int paths = fills > 100 ? 300 : p.Int(1, Is(Flavor::kStacks) ? 16 : 5);
  const int reach = Is(Flavor::kZoom) && p.Chance(30) ? 30000 : span_;
  for (int k = 0; k < paths; ++k) {
    auto wobble = [&](int v) { return jitter ? v + r_.Int(-jitter, jitter) : v; };
    uint32_t flags = 1;
    if (k == 0 || p.Chance(80)) flags |= 6;
    if (p.Chance(20)) flags &= ~static_cast<uint32_t>(p.Chance(50) ? 2 : 4);
    if (lines && (k == 0 || p.Chance(70))) flags |= 8;
    const int f0 = p.Int(p.Chance(15) ? 0 : nFillBits_ > 0, (1 << nFillBits_) - 1),
              f1 = p.Chance(60) ? 0 : p.Int(0, (1 << nFillBits_) - 1);
    const int line = p.Int(0, (1 << nLineBits_) - 1);
    const int x0 = p.Int(-reach / 4, reach), y0 = p.Int(-reach / 4, reach);
    if (newStyles && k > 0 && p.Chance(35)) {
      Move(w, x0, y0, flags | 16, f0, f1, line);
      int nf, nl;
      Styles(w, alpha, false, &nf, &nl);
      nFillBits_ = nf ? Writer::Width(nf) - 1 : 0;
      nLineBits_ = nl ? Writer::Width(nl) - 1 : 0;
      widths();
    } else {
      Move(w, wobble(x0), wobble(y0), flags, f0, f1, line);
    }
    int x = 0, y = 0;
    const int n = p.Int(1, 9), style = p.Int(0, 4), size = p.Chance(20) ? 40 : reach;
    for (int i = 0; i < n; ++i) {
      int dx = p.Int(-size, size), dy = p.Int(-size, size);
      int cx = p.Int(-size, size), cy = p.Int(-size, size);
      if (p.Chance(20)) dx = 0;
      if (p.Chance(20)) dy = 0;
      if (p.Chance(10)) cx = cy = 0;
      if (p.Chance(10)) {
        cx = dx / 2;
        cy = dy / 2;
        dx -= cx;
        dy -= cy;
      }
      bool curve = style == 0 || (style != 1 && p.Chance(50));
      if (jitter && p.Chance(30)) curve = r_.Chance(50);
      if (curve) {
        EdgeTo(w, wobble(dx), wobble(dy), wobble(cx), wobble(cy), true);
        x += dx + cx;
        y += dy + cy;
      } else {
        EdgeTo(w, wobble(dx), wobble(dy), 0, 0, false);
        x += dx;
        y += dy;
      }
    }
    if (p.Chance(85) && jitter == 0) {
      while (x != 0 || y != 0) {
        const int sx = x > 60000    ? 60000
                       : x < -60000 ? -60000
                                    : x,
                  sy = y > 60000    ? 60000
                       : y < -60000 ? -60000
                                    : y;
        EdgeTo(w, -sx, -sy, 0, 0, false);
        x -= sx;
        y -= sy;
      }
    }
  }
  w.Bits(6, 0);
  w.Align();
}

void Maker::Bounds(Writer& w, bool small) {
  if (small && r_.Chance(30)) {
    w.Rectangle(0, r_.Int(0, span_), 0, r_.Int(0, span_));
  } else if (Is(Flavor::kZoom)) {
    w.Rectangle(-400000, 400000, -400000, 400000);
  } else {
    w.Rectangle(-3 * span_, 4 * span_, -3 * span_, 4 * span_);
  }
}

void Maker::Shape(int id) {
  static const int codes[] = {2, 22, 32, 32};
  const int code = codes[r_.Int(0, 3)];
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  Bounds(b, true);
  int fills, lines;
  Styles(b, code == 32, false, &fills, &lines);
  Edges(b, fills, lines, code == 32, code != 2 && r_.Chance(Is(Flavor::kClips) ? 40 : 20),
        r_.Next(), 0);
  out_.Tag(code, b.bytes);
  placeable_.push_back(id);
}

void Maker::Morph(int id) {
  Writer b, styles;
  b.U16(static_cast<uint32_t>(id));
  Bounds(b, false);
  Bounds(b, false);
  int fills, lines;
  Styles(styles, true, true, &fills, &lines);
  const uint64_t path = r_.Next();
  Writer start, end;
  Edges(start, fills, lines, true, false, path, 1 + span_ / 10);
  Edges(end, r_.Chance(70) ? 0 : fills, r_.Chance(70) ? 0 : lines, true, false, path,
        1 + span_ / 3);
  if (r_.Chance(10)) end.bytes.resize(end.bytes.size() / 2);
  styles.Align();
  styles.Append(start.bytes);
  b.U32(static_cast<uint32_t>(r_.Chance(3) ? r_.Int(-9, 9000)
                                           : static_cast<int>(styles.bytes.size())));
  b.Append(styles.bytes);
  b.Append(end.bytes);
  out_.Tag(46, b.bytes);
  placeable_.push_back(id);
}

void Maker::Font(int id) {
  const bool second = r_.Chance(50), wide = second && r_.Chance(50);
  const int glyphs = r_.Int(1, 6), entry = wide ? 4 : 2;
  std::vector<std::vector<uint8_t>> shapes;
  const int span = span_;
  span_ = 900;
  for (int i = 0; i < glyphs; ++i) {
    Writer g;
    Edges(g, 1, 0, false, false, r_.Next(), 0);
    shapes.push_back(g.bytes);
  }
  span_ = span;
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  if (second) {
    b.U16(wide ? 8 : 0);
    b.U8(3);
    for (int i = 0; i < 3; ++i) b.U8('a');
    b.U16(static_cast<uint32_t>(glyphs));
  }
  size_t at = static_cast<size_t>(entry) * static_cast<size_t>(glyphs);
  for (const auto& s : shapes) {
    if (wide) {
      b.U32(static_cast<uint32_t>(at));
    } else {
      b.U16(static_cast<uint32_t>(at));
    }
    at += s.size();
  }
  for (const auto& s : shapes) b.Append(s);
  out_.Tag(second ? 48 : 10, b.bytes);
}

void Maker::Text(int id, int font) {
  const bool alpha = r_.Chance(50);
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  Bounds(b, true);
  b.Matrix(r_.Chance(60) ? Mat{0x10000, 0, 0, 0x10000, 0, 0} : Placement());
  const int advanceBits = r_.Int(8, 12);
  b.U8(3);
  b.U8(static_cast<uint32_t>(advanceBits));
  const int runs = r_.Int(1, 4);
  for (int i = 0; i < runs; ++i) {
    uint32_t flags = 0x80;
    if (i == 0 || r_.Chance(40)) flags |= 8;
    if (i == 0 ? r_.Chance(95) : r_.Chance(60)) flags |= 4;
    flags |= static_cast<uint32_t>(r_.Int(0, 3));
    b.U8(flags);
    if (flags & 8) b.U16(static_cast<uint32_t>(r_.Chance(5) ? 777 : font));
    if (flags & 4) Color(b, alpha);
    if (flags & 1) b.U16(static_cast<uint32_t>(r_.Int(-200, span_)));
    if (flags & 2) b.U16(static_cast<uint32_t>(r_.Int(-200, span_)));
    if (flags & 8) b.U16(static_cast<uint32_t>(r_.Int(50, 1000)));
    const int count = r_.Chance(3) ? 0 : r_.Int(1, 6);
    b.U8(static_cast<uint32_t>(count));
    for (int k = 0; k < count; ++k) {
      b.Bits(3, static_cast<uint32_t>(r_.Int(0, 5)));
      b.Bits(advanceBits, static_cast<uint32_t>(r_.Int(-20, 400)));
    }
    b.Align();
  }
  b.U8(0);
  out_.Tag(alpha ? 33 : 11, b.bytes);
  placeable_.push_back(id);
}

std::vector<uint8_t> Maker::Place(bool main, int moves) {
  Writer b;
  const int depth = r_.Chance(2) ? r_.Int(16382, 16386)
                                 : r_.Int(1, Is(Flavor::kStacks) ? 24
                                             : main              ? 14
                                                                 : 5);
  int id = r_.Chance(2) ? r_.Int(65531, 65535) : Any(placeable_);
  if (r_.Chance(2)) id = 998;
  if (self_ != 0 && r_.Chance(3)) {
    id = self_;  // once: with two the objects would double at each level
    self_ = 0;
  }
  uint32_t flags = 0;
  if (r_.Chance(moves)) flags |= 1;
  if (!(flags & 1) || r_.Chance(20)) flags |= 2;
  if (r_.Chance(85)) flags |= 4;
  if (With(Flavor::kBitmaps, 40, 30, 20)) flags |= 8;
  if (r_.Chance(60)) flags |= 16;
  if (With(Flavor::kClips, 45, 12, 0)) flags |= 64;
  if (r_.Chance(4)) flags |= 32;
  b.U8(flags);
  b.U16(static_cast<uint32_t>(depth));
  if (flags & 2) b.U16(static_cast<uint32_t>(id));
  if (flags & 4) b.Matrix(Placement());
  if (flags & 8) Cxform(b, true);
  if (flags & 16)
    b.U16(static_cast<uint32_t>(r_.Chance(20) ? 65535 * r_.Int(0, 1) : r_.Int(0, 65535)));
  // A clip depth behind a name is read from the name's first bytes.
  if (flags & 32) {
    b.U8(static_cast<uint32_t>(depth + r_.Int(0, 8)));
    b.U8(flags & 64 ? 0 : 'n');
    b.U8(0);
  }
  if (flags & 64) b.U16(static_cast<uint32_t>(depth + r_.Int(-1, 8)));
  return b.bytes;
}

void Maker::Frame(Writer& w, bool main, int ops, bool first) {
  for (int i = 0; i < ops; ++i) {
    const int kind = r_.Int(0, 99);
    if (kind < 75) {
      w.Tag(26, Place(main, first ? 8 : 45), r_.Chance(5));
    } else if (kind < 85) {
      Writer b;
      b.U16(static_cast<uint32_t>(Any(placeable_)));
      b.U16(static_cast<uint32_t>(r_.Int(1, 14)));
      b.Matrix(Placement());
      if (r_.Chance(40)) Cxform(b, false);
      w.Tag(4, b.bytes);
    } else {
      Writer b;
      const bool withId = r_.Chance(50);
      if (withId) b.U16(0);
      b.U16(static_cast<uint32_t>(r_.Int(1, main ? 14 : 5)));
      w.Tag(withId ? 5 : 28, b.bytes);
    }
  }
  if (main && r_.Chance(30)) {
    Writer b;
    Color(b, false);
    w.Tag(9, b.bytes);
  }
  w.Tag(1, {});
}

void Maker::Sprite(int id) {
  const int frames = r_.Int(0, 4);
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  b.U16(static_cast<uint32_t>(frames));
  self_ = id;
  for (int i = 0; i < frames; ++i) Frame(b, false, r_.Int(0, 4), i == 0);
  self_ = 0;
  if (r_.Chance(95)) b.Tag(0, {});
  out_.Tag(39, b.bytes);
  placeable_.push_back(id);
}

NastyMovie Maker::Make() {
  NastyMovie m;
  m.flavor = flavor_;
  m.width = r_.Int(8, most_);
  m.height = r_.Int(8, most_);
  width_ = m.width * 20 + (r_.Chance(30) ? r_.Int(0, 19) : 0);
  height_ = m.height * 20 + (r_.Chance(30) ? r_.Int(0, 19) : 0);
  span_ = width_ > height_ ? width_ : height_;
  m.frames = Is(Flavor::kTimeline) ? r_.Int(2, 9) : r_.Int(1, 5);

  const int xmin = r_.Chance(25) ? r_.Int(-500, 500) : 0,
            ymin = r_.Chance(25) ? r_.Int(-500, 500) : 0;
  out_.Rectangle(xmin, xmin + width_, ymin, ymin + height_);
  out_.U16(static_cast<uint32_t>(r_.Chance(3) ? r_.Int(0, 1) : r_.Int(256, 30 * 256)));
  out_.U16(static_cast<uint32_t>(m.frames));

  int id = 1;
  const int bitmaps = With(Flavor::kBitmaps, 100, 60, 5) ? r_.Int(1, 4) : 0;
  for (int i = 0; i < bitmaps; ++i) {
    AddBitmap(r_, out_, id, &tables_);
    bitmaps_.push_back(id++);
  }
  const int shapes = r_.Int(2, 6);
  for (int i = 0; i < shapes; ++i) Shape(id++);
  const int morphs = With(Flavor::kMorphs, 100, 40, 5) ? r_.Int(1, 4) : 0;
  for (int i = 0; i < morphs; ++i) Morph(id++);
  if (With(Flavor::kText, 100, 30, 3)) {
    const int font = id++;
    Font(font);
    const int texts = r_.Int(1, 3);
    for (int i = 0; i < texts; ++i) Text(id++, font);
  }
  const int sprites = With(Flavor::kTimeline, 100, 50, 15) ? r_.Int(1, 4) : 0;
  for (int i = 0; i < sprites; ++i) Sprite(id++);

  for (int i = 0; i < m.frames; ++i) {
    if (i > 0 && r_.Chance(20)) Shape(id++);
    if (i > 0 && r_.Chance(5)) {
      Writer b;
      b.U16(static_cast<uint32_t>(r_.Int(1, id)));
      out_.Tag(3, b.bytes);
    }
    const int ops = i == 0 ? r_.Int(4, Is(Flavor::kStacks) ? 30 : 14) : r_.Int(0, 5);
    Frame(out_, true, ops, i == 0);
  }
  out_.Tag(0, {});

  Writer file;
  for (char c : {'V', 'X', 'F'}) file.U8(static_cast<uint8_t>(c));
  file.U8(4);
  file.U32(static_cast<uint32_t>(8 + out_.bytes.size()));
  file.Append(out_.bytes);
  m.bytes = file.bytes;
  if (r_.Chance(2)) m.bytes.resize(m.bytes.size() - static_cast<size_t>(r_.Int(1, 40)));
  return m;
}

}  // namespace

NastyMovie MakeNastyMovie(uint64_t seed, Flavor flavor, int most) {
  return Maker(seed, flavor, most).Make();
}

NastyMovie MakeNastyMovie(uint64_t seed) {
  return MakeNastyMovie(seed, static_cast<Flavor>(seed % static_cast<uint64_t>(Flavor::kCount)),
                        110);
}

}  // namespace vexel::model
