// Header and tags put together.
#include "author/movie_writer.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace vexel::author {

namespace {

constexpr uint8_t kVersion = 4;
constexpr size_t kLengthAt = 4;  // offset of the declared length

uint16_t RateOf(double rate) {
  const double fixed = std::round(rate * 256);
  if (!(fixed >= 0 && fixed <= 0xFFFF)) throw std::range_error("a frame rate is 0 to 255");
  return static_cast<uint16_t>(fixed);
}

}  // namespace

MovieWriter::MovieWriter(int width, int height, double rate)
    : MovieWriter(Rect::Pixels(0, 0, width, height), RateOf(rate), kVersion) {}

MovieWriter::MovieWriter(const Rect& frame, uint16_t rate, uint8_t version)
    : frame_(frame), rate_(rate), version_(version) {}

Bytes MovieWriter::Finish() const {
  BitWriter out;
  out.Append(header_.signature);
  out.U8(version_);
  out.U32(0);
  WriteRect(out, frame_, header_.rectBits);
  out.U16(rate_);
  out.U16(static_cast<uint32_t>(header_.frameCount == kAuto ? frames() : header_.frameCount));
  out.Append(bytes());
  const int64_t length =
      header_.declaredLength == kAuto ? int64_t(out.size()) : header_.declaredLength;
  if (length < 0 || length > 0xFFFFFFFF) throw std::range_error("a length has 32 bits");
  out.Patch32(kLengthAt, static_cast<uint32_t>(length));
  return out.Take();
}

bool WriteFile(const std::string& path, std::span<const uint8_t> bytes) {
  FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  const bool closed = std::fclose(file) == 0;
  return written && closed;
}

}  // namespace vexel::author
