// Bit and byte reading over movie data. Reads past the end give zeros.
#pragma once

#include <memory>
#include <vector>

#include "color.h"

namespace vexel::model {

using Bytes = std::shared_ptr<const std::vector<u8>>;

struct Parser {
  Bytes script;
  i64 pos = 0;
  u32 bitBuf = 0;
  int bitPos = 0;
  i64 tagPos = 0, tagEnd = 0;
  int tagCode = 0;

  u8 At(i64 p) const;
  i64 Size() const { return script ? static_cast<i64>(script->size()) : 0; }

  void InitBits();
  u32 GetBits(int n);
  i32 GetSBits(int n);
  u32 GetByte();
  u32 GetWord();
  u32 GetDWord();
  Rgbi GetRgbi(bool alpha);
  Srgb GetSrgb(bool alpha);
  Rect GetRect();
  Matrix GetMatrix();
  ColorTransform GetColorTransform(bool alpha);
  int GetTag(i64 limit);
};

// bytes [start, end) of a block, as a block of its own
Bytes Slice(const Bytes& b, i64 start, i64 end);

}  // namespace vexel::model
