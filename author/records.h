// The small packed records that many tags share.
#pragma once

#include "author/bit_writer.h"

namespace vexel::author {

// How a matrix is packed. Left alone, a pair of values is written only when it
// differs from what an absent pair means, in the smallest width.
struct MatrixForm {
  int scale = kAuto;      // 0 leaves a and d out, 1 writes them
  int scaleBits = kAuto;  // 0 to 31
  int rotate = kAuto;     // the same for b and c
  int rotateBits = kAuto;
  int translateBits = kAuto;
};

struct CxformForm {
  int flags = kAuto;  // bit 0: multipliers, bit 1: additions
  int bits = kAuto;   // 0 to 15
};

// All of these begin on a byte boundary and leave the writer on one.
void WriteRect(BitWriter& out, const Rect& rect, int bits = kAuto);
void WriteMatrix(BitWriter& out, const Matrix& matrix, const MatrixForm& form = {});
void WriteCxform(BitWriter& out, const Cxform& cxform, bool alpha, const CxformForm& form = {});
void WriteColor(BitWriter& out, Color color, bool alpha);

}  // namespace vexel::author
