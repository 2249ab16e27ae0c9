// A seeded random source and a writer of bits, bytes and tags, for the random
// movies of this folder.
#pragma once

#include <cstdint>
#include <vector>

namespace vexel::model {

class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {
    // neighbouring seeds would otherwise give one sequence, shifted
    state_ = Next() ^ seed * 0xD6E8FEB86659FD93u;
  }
  uint64_t Next() {
    uint64_t z = state_ += 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  // lo to hi, both included
  int Int(int lo, int hi) {
    return lo + static_cast<int>(Next() % (static_cast<uint64_t>(int64_t{hi} - lo) + 1));
  }
  bool Chance(int percent) { return Int(1, 100) <= percent; }

 private:
  uint64_t state_;
};

struct Mat {
  int32_t a, b, c, d, tx, ty;
};

class Writer {
 public:
  std::vector<uint8_t> bytes;

  void U8(uint32_t v) {
    Align();
    bytes.push_back(static_cast<uint8_t>(v));
  }
  void U16(uint32_t v) {
    U8(v);
    U8(v >> 8);
  }
  void U32(uint32_t v) {
    U16(v);
    U16(v >> 16);
  }
  void Append(const std::vector<uint8_t>& b) {
    Align();
    bytes.insert(bytes.end(), b.begin(), b.end());
  }
  void Align() { free_ = 0; }
  void Bits(int n, uint32_t v) {
    for (int i = n - 1; i >= 0; --i) {
      if (free_ == 0) {
        bytes.push_back(0);
        free_ = 8;
      }
      --free_;
      if (v >> i & 1) bytes.back() = static_cast<uint8_t>(bytes.back() | 1 << free_);
    }
  }
  static int Width(int32_t v) {
    int n = 1;
    while (n < 32 && (v < -(int64_t{1} << (n - 1)) || v >= (int64_t{1} << (n - 1)))) ++n;
    return n;
  }
  static int Width(int32_t a, int32_t b) { return Width(a) > Width(b) ? Width(a) : Width(b); }
  void Pair(int n, int32_t a, int32_t b) {
    Bits(n, static_cast<uint32_t>(a));
    Bits(n, static_cast<uint32_t>(b));
  }
  void Rectangle(int32_t xmin, int32_t xmax, int32_t ymin, int32_t ymax) {
    Align();
    int n = Width(xmin, xmax);
    if (Width(ymin, ymax) > n) n = Width(ymin, ymax);
    if (n > 31) n = 31;
    Bits(5, static_cast<uint32_t>(n));
    Pair(n, xmin, xmax);
    Pair(n, ymin, ymax);
    Align();
  }
  void Matrix(const Mat& m) {
    Align();
    auto pair = [this](int32_t a, int32_t b) {
      const int n = Width(a, b) > 31 ? 31 : Width(a, b);
      Bits(5, static_cast<uint32_t>(n));
      Pair(n, a, b);
    };
    const bool scale = m.a != 0x10000 || m.d != 0x10000, skew = m.b != 0 || m.c != 0;
    Bits(1, scale);
    if (scale) pair(m.a, m.d);
    Bits(1, skew);
    if (skew) pair(m.b, m.c);
    if (m.tx == 0 && m.ty == 0) {
      Bits(5, 0);
    } else {
      pair(m.tx, m.ty);
    }
    Align();
  }
  void Tag(int code, const std::vector<uint8_t>& body, bool longForm = false) {
    Align();
    if (body.size() < 63 && !longForm) {
      U16(static_cast<uint32_t>(code << 6) | static_cast<uint32_t>(body.size()));
    } else {
      U16(static_cast<uint32_t>(code << 6) | 63);
      U32(static_cast<uint32_t>(body.size()));
    }
    Append(body);
  }

 private:
  int free_ = 0;
};

}  // namespace vexel::model
