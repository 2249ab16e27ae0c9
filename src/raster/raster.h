// The rasterizer: layered edges with colours become pixels of a buffer, a
// scanline at a time. Overlap is resolved per scanline: the colours that are on
// at the current x are kept sorted by layer, each edge switches its colours, and
// each change of what can be seen ends a span. Nothing is drawn over anything
// else, so what is covered by an opaque colour costs no pixels.
//
// Without anti-aliasing edges are in pixels and a span is drawn at once. With
// it, edges are in quarter-pixels and a pixel row is four sub-scanlines, whose
// spans add up to 4 by 4 samples a pixel.
#pragma once

#include <cstdint>

#include "geometry/chunk_alloc.h"
#include "geometry/color.h"
#include "geometry/rect.h"
#include "raster/bit_buffer.h"
#include "raster/dither.h"
#include "raster/spans.h"

namespace vexel {

struct RActiveEdge;
struct RColor;
struct REdge;
struct RRun;
class PaintIndex;
class RowPainter;
struct Pix32Ops;

// Pixels that drawing handles at a time: the size of its buffers on the stack.
inline constexpr int32_t kSlabPixels = 256;

// Steps along the paint list that a toggle or a span may take on average, and
// how many more a picture may take in all before it gets an index.
inline constexpr int32_t kFreeListSteps = 32;
inline constexpr int32_t kSpareListSteps = 1 << 18;

// Steps along the active edges that finding the places of new ones may take in
// a picture, above what each scanline has anyway: less than a second at worst.
inline constexpr int32_t kSparePlaceSteps = 1 << 26;

// One paint: Attach, BeginPaint, AddEdges for each object from bottom to top,
// PaintBits. Edges and colours that were added stay their owner's, and must
// stay valid until PaintBits returns. Single-threaded.
class CRaster {
 public:
  bool antialias;
  bool useBackground;   // false: the background reads as white, the buffer isn't touched
  bool smooth;          // set by the camera; no drawing path reads it
  int32_t ditherKind;   // DitherKind, initially ditherOrdered
  int32_t solidDither;  // how solids go to a palette: 1 mixed, 0 nearest, 2 as pixels
  bool hasEdges;
  uint32_t layer;  // of the next AddEdges with colours, in the upper 16 bits
  CBitBuffer* bits;
  SColorInfo* cinfo;
  SRECT edgeClip;   // the clip rectangle in device units
  SRECT bitClip;    // the same in pixels; xmax and ymax are exclusive
  int32_t patXOrg;  // origin of 4 by 4 patterns
  int32_t patYOrg;
  RColor* firstColor;  // the paint list, topmost first
  int32_t paintX;      // where the next span starts, device units

  // For a long paint list.
  int32_t spareSteps;      // along the list, until the picture gets an index
  bool paintIndexed;       // paintIndex knows what is on the list
  PaintIndex* paintIndex;  // owned; null until a picture needs it

  // Two rows of three 32-bit errors a pixel, with a pixel's margin on the left.
  // Allocated by the dither with malloc, freed at the end of a paint.
  int32_t errorSize;     // bytes of errorBuf
  int32_t* errorBuf;     // null until used
  int32_t errorRowSize;  // bytes of one row
  int32_t* errorThis;
  int32_t* errorNext;

  RActiveEdge* firstActive;  // in ascending x
  int32_t sparePlaceSteps;   // along it, that the picture's new edges may still take
  REdge** yindex;            // a list of edges for each scanline they start at
  int32_t yindexSize;
  int32_t nScanlines;
  int32_t y;       // current scanline, device units
  RRun* firstRun;  // of the current pixel row, in ascending x
  RRun* curRun;    // where the next span of this sub-scanline goes, or null

  // The colours that the edges of this picture name, each once.
  RColor** pictureColors;
  int32_t nPictureColors;
  int32_t pictureColorRoom;
  bool pictureColorsKnown;  // false: there was no memory to note one

  ChunkAlloc activeEdgeAlloc;
  ChunkAlloc runAlloc;
  ChunkAlloc rampAlloc;  // gradient ramps
  ChunkAlloc mapAlloc;   // RColorMap

  // Copied from the buffer by Attach.
  bool inverted;
  uint8_t* baseAddr;
  int32_t rowBytes;
  int32_t pixelFormat;  // PixelFormat
  int32_t bitHeight;
  int32_t xOffset;

  uint8_t* rowAddr;  // the current pixel row
  int32_t bitY;      // its y
  DrawRGBSlabProc drawRGBSlab;
  DitherProc ditherRGBSlab;
  GetBackgroundProc getBackground;
  const Pix32Ops* ops32;  // the inner loops for this processor

  CRaster();
  ~CRaster();
  CRaster(const CRaster&) = delete;
  CRaster& operator=(const CRaster&) = delete;

  // Takes the buffer to draw into, which stays the caller's, and the area to
  // draw: `clip` in pixels, xmax and ymax exclusive, null for all. With a null
  // buffer nothing can be painted; ask BitsValid first.
  void Attach(CBitBuffer* buffer, const SRECT* clip, bool wantAntialias);

  // Forgets all edges. Without memory for the scanline table, what is added
  // until the next call isn't painted.
  void BeginPaint();

  // Adds edges linked through `next`. Their colours keep order and clipColor.
  void AddEdges(REdge* list);

  // Adds a layer above all that was added: edges, and the object's colours
  // linked through `next`, which get the layer's order and `clipper`. `colors`
  // may be null, the layer counts all the same.
  void AddEdges(REdge* list, RColor* colors, RColor* clipper);

  // Paints what was added.
  void PaintBits();

  // Paints what was added, if anything, and begins again on top of it: for a
  // caller that draws into the buffer itself between two layers.
  void Flush();

  // Fills the clip area, as a paint of its own, and decides whether later
  // paints need to read the background.
  void FillBackground(SRGB color);

  // From here on a 32-bit buffer counts as pix32A.
  void UseAlphaChannel();

  [[nodiscard]] bool BitsValid() const;

  // Gives unused memory of the pools back, except that of mapAlloc.
  // Required: mapAlloc keeps its blocks until the raster goes.
  void FreeEmpties();

  // Steps of PaintBits and services to slab functions.

  // Makes y the current pixel row.
  void SetYCoord(int32_t y);
  // Counts steps that a toggle or a span took along the paint list.
  void CountSteps(int32_t steps) {
    spareSteps += kFreeListSteps - steps;
    if (spareSteps < 0) IndexPaintList();
  }
  // Ends the span that starts at paintX at x, device units.
  void PaintSlab(int32_t x);
  // Draws pixels x1 to x2 - 1 of n colours, topmost first.
  void CompositeSlab(int32_t x1, int32_t x2, RColor** colors, int32_t n);
  // Composes pixels onto the buffer; at most kSlabPixels of them.
  void DrawRGBASlab(int32_t x1, int32_t x2, RGBI* pixels);

 private:
  void NoteColor(RColor* c, uint8_t ruleKind);
  bool PaintRows();
  void IndexPaintList();
  void AddActive();
  void SortActive();
  void PaintActive();
  void PaintAARuns();

  RowPainter* rowPainter_;  // owned; null until a picture is painted by rows
};

}  // namespace vexel
