#include "field_movie.h"

#include <cmath>
#include <set>

#include "movie_bits.h"

namespace vexel::model {

namespace {

class Maker {
 public:
  explicit Maker(uint64_t seed) : r_(seed) {}
  FieldMovie Make();

 private:
  void Glyph(Writer& w);
  void Font(int id);
  void Shape(int id);
  void Field(int id);
  void Sprite(int id);
  void Button(int id);
  void Place(Writer& w, int depths, bool move);
  void Frame(Writer& w, int depths, int ops, bool first);
  Mat Placement();
  std::string Text(int most);
  void String(Writer& w, const std::string& s) {
    for (char c : s) w.U8(static_cast<uint8_t>(c));
    w.U8(0);
  }
  uint32_t U(int lo, int hi) { return static_cast<uint32_t>(r_.Int(lo, hi)); }

  Random r_;
  FieldMovie m_;
  Writer out_;
  std::vector<int> placeable_, fonts_;
  int fontHeight_ = 0;
  int span_ = 0;  // twentieths
  // Fields too small for a text put it so far away that it takes no magnifying:
  // divided there, curves would wrap back into view.
  bool tiny_ = false;
};

// A few closed paths on the square of the em, all of fill 1.
void Maker::Glyph(Writer& w) {
  w.Align();
  w.Bits(4, 1);
  w.Bits(4, 0);
  const int paths = r_.Chance(80) ? 1 : r_.Int(0, 3);
  const int reach = r_.Chance(90) ? 800 : 3000;
  for (int k = 0; k < paths; ++k) {
    const int x0 = r_.Int(-50, reach), y0 = r_.Int(-reach, 100);
    w.Bits(6, k == 0 ? (r_.Chance(50) ? 3 : 5) : 1);
    w.Bits(5, 14);
    w.Pair(14, x0, y0);
    if (k == 0) w.Bits(1, 1);
    int x = 0, y = 0;
    auto line = [&](int dx, int dy) {
      w.Bits(2, 3);
      w.Bits(4, 12);
      w.Bits(1, 1);
      w.Pair(14, dx, dy);
      x += dx;
      y += dy;
    };
    const int n = r_.Int(2, 5);
    for (int i = 0; i < n; ++i) {
      const int dx = r_.Int(-reach, reach), dy = r_.Int(-reach, reach);
      if (std::abs(x + dx) > 3000 || std::abs(y + dy) > 3000) continue;
      if (r_.Chance(60)) {
        line(dx, dy);
      } else {
        w.Bits(2, 2);
        w.Bits(4, 12);
        w.Pair(14, dx / 2, dy / 3);
        w.Pair(14, dx - dx / 2, dy - dy / 3);
        x += dx;
        y += dy;
      }
    }
    if (r_.Chance(95)) line(-x, -y);
  }
  w.Bits(6, 0);
  w.Align();
}

void Maker::Font(int id) {
  fonts_.push_back(id);
  const bool wideCodes = r_.Chance(40), wideOffsets = r_.Chance(40);
  std::set<int> codes;
  if (r_.Chance(60)) {
    codes.insert(32);
    codes.insert(45);
    codes.insert(42);
  }
  const int kind = r_.Int(0, 3), n = r_.Chance(3) ? 0 : r_.Int(1, 14);
  for (int i = 0; i < n; ++i) {
    codes.insert(kind == 0   ? r_.Int('A', 'Z')
                 : kind == 1 ? r_.Int('a', 'z')
                 : kind == 2 ? r_.Int(33, 126)
                             : r_.Int('A', 'H'));
  }
  if (r_.Chance(25)) codes.insert(r_.Int(160, 255));
  if (wideCodes && r_.Chance(60)) codes.insert(r_.Int(256, 65535));
  if (r_.Chance(4)) codes.insert(r_.Chance(50) ? 13 : 10);
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  const bool second = !r_.Chance(4);
  if (second) {
    b.U16((wideOffsets ? 8u : 0) | (wideCodes ? 4u : 0) | U(0, 3));
    static const char* const names[] = {"_sans", "_typewriter", "_serif", "Own", ""};
    const std::string name = names[r_.Int(0, 4)];
    b.U8(static_cast<uint32_t>(name.size()));
    for (char c : name) b.U8(static_cast<uint8_t>(c));
    b.U16(static_cast<uint32_t>(codes.size()));
  }
  const size_t entry = wideOffsets ? 4 : 2;
  std::vector<std::vector<uint8_t>> shapes;
  size_t at = entry * (codes.size() + 1);
  auto offset = [&] {
    if (wideOffsets) {
      b.U32(static_cast<uint32_t>(at));
    } else {
      b.U16(static_cast<uint32_t>(at));
    }
  };
  for (size_t i = 0; i < codes.size(); ++i) {
    Writer g;
    Glyph(g);
    shapes.push_back(g.bytes);
    offset();
    at += g.bytes.size();
  }
  offset();
  for (const auto& s : shapes) b.Append(s);
  for (int c : codes) {
    m_.codes.push_back(c);
    if (wideCodes) {
      b.U16(static_cast<uint32_t>(c));
    } else {
      b.U8(static_cast<uint32_t>(c));
    }
  }
  if (!r_.Chance(3)) {
    b.U16(r_.Chance(5) ? U(0, 40) : U(500, 1100));
    b.U16(r_.Chance(20) ? 0 : U(0, 400));
    b.U16(U(0, 200));
    const int like = r_.Int(0, 2);
    for (size_t i = 0; i < codes.size(); ++i) {
      b.U16(r_.Chance(4) ? U(-300, 3000) : like == 0 ? 600 : r_.Chance(10) ? 0 : U(100, 1200));
    }
  }
  out_.Tag(second ? 48 : 10, b.bytes);
}

void Maker::Shape(int id) {
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  b.Rectangle(-span_, 2 * span_, -span_, 2 * span_);
  b.U8(1);
  b.U8(0);
  for (int i = 0; i < 4; ++i) b.U8(U(0, 255));
  b.U8(0);
  b.Bits(4, 1);
  b.Bits(4, 0);
  const int x = r_.Int(-span_ / 4, span_ / 2), y = r_.Int(-span_ / 4, span_ / 2),
            w = r_.Int(100, span_), h = r_.Int(100, span_);
  b.Bits(6, 3);
  b.Bits(5, 17);
  b.Pair(17, x, y);
  b.Bits(1, 1);
  const int corner[][2] = {{w, h / 5}, {-w / 5, h}, {-(w - w / 5), -(h + h / 5)}};
  for (const auto& c : corner) {
    b.Bits(2, 3);
    b.Bits(4, 15);
    b.Bits(1, 1);
    b.Pair(17, c[0], c[1]);
  }
  b.Bits(6, 0);
  out_.Tag(32, b.bytes);
  placeable_.push_back(id);
}

std::string Maker::Text(int most) {
  std::string s;
  const int n = r_.Chance(10) ? 0 : r_.Int(1, most);
  const int blanks = r_.Chance(30) ? 0 : 18, ends = r_.Chance(50) ? 0 : 8;
  for (int i = 0; i < n; ++i) {
    if (r_.Chance(blanks)) {
      s += r_.Chance(70) ? ' ' : '-';
    } else if (r_.Chance(ends)) {
      s += r_.Chance(70) ? '\r' : '\n';
    } else if (!m_.codes.empty() && r_.Chance(92)) {
      const int c = m_.codes[static_cast<size_t>(r_.Int(0, static_cast<int>(m_.codes.size()) - 1))];
      if (c > 255) s += static_cast<char>(c >> 8 | 1);
      s += static_cast<char>(c & 255 ? c : 1);
    } else {
      s += static_cast<char>(r_.Int(33, 255));
    }
  }
  return s;
}

void Maker::Field(int id) {
  static const uint32_t kBits[] = {8, 0x10, 0x20, 0x40, 0x800, 0x1000};
  static const int kChance[] = {12, 12, 65, 50, 50, 8};
  uint32_t flags = 0x80 * r_.Chance(85) + 0x2000u * r_.Chance(60) + 0x100u * r_.Chance(93) +
                   r_.Chance(95) + 2u * r_.Chance(15) + 4u * r_.Chance(75);
  for (int i = 0; i < 6; ++i) flags |= r_.Chance(kChance[i]) ? kBits[i] : 0;
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  const int h = r_.Chance(85) ? fontHeight_ : r_.Int(0, 900);
  if (tiny_ && r_.Chance(30)) {
    b.Rectangle(0, r_.Int(0, 120), 0, r_.Int(0, 120));
  } else {
    const int x = r_.Chance(50) ? 0 : r_.Int(-400, 400), y = r_.Chance(50) ? 0 : r_.Int(-400, 400);
    b.Rectangle(x, x + r_.Int(h, h * 8 + 200), y, y + r_.Int(h, h * 6 + 200));
  }
  b.U16(flags);
  if (flags & 1) {
    const int font = fonts_[static_cast<size_t>(r_.Int(0, static_cast<int>(fonts_.size()) - 1))];
    b.U16(static_cast<uint32_t>(r_.Chance(92) ? font : r_.Chance(60) ? 0 : 777));
    b.U16(static_cast<uint32_t>(h));
  }
  if (flags & 4) {
    for (int i = 0; i < 3; ++i) b.U8(U(0, 255));
    b.U8(r_.Chance(70) ? 255 : U(0, 255));
  }
  if (flags & 2) b.U16(U(0, 12));
  if (flags & 0x2000) {
    const bool plain = r_.Chance(40);
    b.U8(r_.Chance(3) ? 3 : U(0, 2));
    b.U16(plain ? 0 : U(0, h));
    b.U16(plain ? 0 : U(0, h));
    b.U16(r_.Chance(50) ? 0 : U(0, 2 * h));
    b.U16(r_.Chance(50) ? 0 : U(-h / (r_.Chance(10) ? 1 : 3), h));
  }
  static const char* const names[] = {"a",  "b",   "c",    "A",  "Msg", "msg",
                                      "x1", "/:a", "..:b", ":c", "",    "d"};
  const std::string name = names[r_.Int(0, 11)];
  m_.names.push_back(name);
  String(b, name);
  if (flags & 0x80) String(b, Text(r_.Chance(70) ? 12 : 40));
  out_.Tag(37, b.bytes);
  placeable_.push_back(id);
  placeable_.push_back(id);
}

Mat Maker::Placement() {
  Mat m{0x10000, 0, 0, 0x10000, r_.Int(-span_ / 4, span_ / 2), r_.Int(-span_ / 4, span_ / 2)};
  switch (r_.Int(0, 11)) {
    case 0:
      m.tx = m.ty = 0;
      break;
    case 1:
    case 2: {
      const double angle = r_.Int(0, 3600) * 3.14159265 / 1800,
                   s = r_.Int(30, tiny_ ? 90 : 250) / 100.0;
      m.a = m.d = static_cast<int32_t>(std::cos(angle) * s * 65536);
      m.b = static_cast<int32_t>(std::sin(angle) * s * 65536);
      m.c = r_.Chance(80) ? -m.b : r_.Int(-80000, 80000);
      break;
    }
    case 3:
      m.a = r_.Int(-130000, 130000) / (1 + tiny_);
      m.d = r_.Int(-130000, 130000) / (1 + tiny_);
      break;
    case 4:
      if (r_.Chance(30)) {
        m.a = r_.Int(-200, 200);
        m.d = r_.Chance(50) ? 0 : m.d;
      }
      break;
    case 5:
      if (!tiny_ && r_.Chance(40)) m.a = m.d = 0x10000 * r_.Int(3, 60);
      break;
    default:
      break;
  }
  return m;
}

void Maker::Place(Writer& w, int depths, bool move) {
  Writer b;
  uint32_t flags = move ? 1u : 2u;
  if (move && r_.Chance(12)) flags |= 2;
  if (r_.Chance(85)) flags |= 4;
  if (r_.Chance(20)) flags |= 8;
  const bool clip = !move && r_.Chance(12);
  if (clip) flags |= 0x40;
  const uint32_t depth = r_.Chance(2) ? 16384 : U(1, depths);
  b.U8(flags);
  b.U16(depth);
  if (flags & 2)
    b.U16(static_cast<uint32_t>(
        placeable_[static_cast<size_t>(r_.Int(0, static_cast<int>(placeable_.size()) - 1))]));
  if (flags & 4) b.Matrix(Placement());
  if (flags & 8) {
    const uint32_t kind = U(0, 3);
    b.Align();
    b.Bits(2, kind);
    b.Bits(4, 10);
    for (int i = 0; i < 4 && kind & 1; ++i) b.Bits(10, U(0, 300));
    for (int i = 0; i < 4 && kind & 2; ++i) b.Bits(10, U(-150, 150));
    b.Align();
  }
  if (clip) b.U16(depth + U(0, 5));
  w.Tag(26, b.bytes);
}

void Maker::Frame(Writer& w, int depths, int ops, bool first) {
  for (int i = 0; i < ops; ++i) {
    if (first || r_.Chance(45)) {
      Place(w, depths, false);
    } else if (r_.Chance(55)) {
      Place(w, depths, true);
    } else {
      Writer b;
      b.U16(U(1, depths));
      w.Tag(28, b.bytes);
    }
  }
  w.Tag(1, {});
}

void Maker::Sprite(int id) {
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  const int frames = r_.Int(1, 3);
  b.U16(static_cast<uint32_t>(frames));
  for (int i = 0; i < frames; ++i) Frame(b, 3, r_.Int(i == 0, 2), i == 0);
  b.Tag(0, {});
  out_.Tag(39, b.bytes);
  placeable_.push_back(id);
}

// Of records alone, with no action to run.
void Maker::Button(int id) {
  const bool second = r_.Chance(50);
  Writer b;
  b.U16(static_cast<uint32_t>(id));
  if (second) {
    b.U8(U(0, 1));
    b.U16(0);
  }
  const int records = r_.Int(1, 5);
  for (int i = 0; i < records; ++i) {
    b.U8(r_.Chance(30) ? 8 : U(1, 15));
    b.U16(static_cast<uint32_t>(
        placeable_[static_cast<size_t>(r_.Int(0, static_cast<int>(placeable_.size()) - 1))]));
    b.U16(static_cast<uint32_t>(i + 1));
    b.Matrix(Placement());
    if (second) b.U8(0);
  }
  b.U8(0);
  if (!second) b.U8(0);
  out_.Tag(second ? 34 : 7, b.bytes);
  placeable_.push_back(id);
}

FieldMovie Maker::Make() {
  m_.width = r_.Int(20, 110);
  m_.height = r_.Int(16, 90);
  m_.frames = r_.Int(1, 4);
  span_ = 20 * (m_.width > m_.height ? m_.width : m_.height);
  fontHeight_ = r_.Int(60, 500);
  tiny_ = r_.Chance(15);
  out_.Rectangle(0, m_.width * 20, 0, m_.height * 20);
  out_.U16(12 << 8);
  out_.U16(static_cast<uint32_t>(m_.frames));
  int id = 1;
  const int fonts = r_.Int(1, 3), shapes = r_.Int(1, 2), fields = r_.Int(1, 6),
            sprites = r_.Int(0, 2);
  for (int i = 0; i < fonts; ++i) Font(id++);
  for (int i = 0; i < shapes; ++i) Shape(id++);
  for (int i = 0; i < fields; ++i) Field(id++);
  for (int i = 0; i < sprites; ++i) Sprite(id++);
  const int buttons = r_.Chance(65) ? 0 : r_.Int(1, 2);
  for (int i = 0; i < buttons; ++i) Button(id++);
  for (int i = 0; i < m_.frames; ++i) Frame(out_, 8, i == 0 ? r_.Int(1, 7) : r_.Int(0, 3), i == 0);
  out_.Tag(0, {});
  for (int i = 0; i < 3; ++i) m_.codes.push_back(r_.Int(33, 255));

  Writer file;
  for (char c : {'V', 'X', 'F'}) file.U8(static_cast<uint8_t>(c));
  file.U8(4);
  file.U32(static_cast<uint32_t>(8 + out_.bytes.size()));
  file.Append(out_.bytes);
  m_.bytes = file.bytes;
  return m_;
}

}  // namespace

FieldMovie MakeFieldMovie(uint64_t seed) {
  return Maker(seed).Make();
}

}  // namespace vexel::model
