// The style tables of shapes: each style becomes a colour source at once, with
// the object's colour transform applied, and nothing is kept in between.
#include <cstdlib>

#include "movie/script_player.h"
#include "movie/shape_parser.h"
#include "movie/solid_color.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// A count byte of this value is followed by a 16-bit count.
constexpr int32_t kExtendedCount = 255;

// Shows where a bitmap is missing.
constexpr RGBI kMissingBitmap = {0, 0, 255, 255};

// Of a gradient whose ramp finds no memory.
constexpr RGBI kOpaqueBlack = {0, 0, 0, 255};

// Samplers work in pixels, shapes in quarter-pixels while anti-aliasing.
constexpr SFIXED kQuarter = kFixedOne / 4;

// Fraction bits that a translation gets before the inversion, so that sampling
// positions keep them.
constexpr int kBitmapFraction = 16;
constexpr int kGradientFraction = 8;

bool FadesAlpha(const ColorTransform& cxform) {
  return cxform.flags != 0 && (cxform.aa < 256 || cxform.ab < 0);
}

// From device pixels to the style's own space, with so many fraction bits.
void InverseOf(const MATRIX& style, MATRIX device, int fraction, MATRIX* out) {
  MATRIX whole = style;
  whole.tx = WrapShl(whole.tx, fraction);
  whole.ty = WrapShl(whole.ty, fraction);
  device.tx = WrapShl(device.tx, fraction);
  device.ty = WrapShl(device.ty, fraction);
  MatrixConcat(&whole, &device, &whole);
  MatrixInvert(&whole, out);
}

// Makes room for `count` styles and entry 0. An extended count always takes a
// table of its own; others use what is there, or the inline one if that is
// larger. False without memory, with the inline table in use.
template <class Entry>
bool SizeTable(int32_t count, bool extended, Entry* inlineTable, int32_t inlineRoom, Entry** table,
               int32_t* room) {
  if (extended || *room <= count) {
    if (*table != inlineTable) free(*table);
    *table = inlineTable;
    *room = inlineRoom;
  }
  if (extended) {
    auto* made = static_cast<Entry*>(malloc((static_cast<size_t>(count) + 1) * sizeof(Entry)));
    if (!made) return false;
    *table = made;
    *room = count + 1;
  }
  (*table)[0] = {};
  return true;
}

}  // namespace

SShapeParser::SShapeParser(ScriptPlayer* movie, const uint8_t* data, int32_t size, int32_t start,
                           const MATRIX* matrix)
    : SParser(data, size, start),
      display(movie ? movie->display : nullptr),
      player(movie),
      mat(*matrix) {
  cxform.Clear();
  MatrixTransformPoint(&mat, &curPt, &curPtDev);
}

SShapeParser::~SShapeParser() {
  if (fillTable != inlineFills) free(fillTable);
  if (lineTable != inlineLines) free(lineTable);
  while (RColor* color = ownColors) {
    ownColors = color->next;
    display->FreeColor(color);
  }
}

bool SShapeParser::GetFillTable(int32_t* count) {
  *count = GetByte();
  const bool extended = *count == kExtendedCount;
  if (extended) *count = GetWord();
  return SizeTable(*count, extended, inlineFills, kInlineStyles, &fillTable, &fillRoom);
}

bool SShapeParser::GetLineTable(int32_t* count) {
  *count = GetByte();
  const bool extended = *count == kExtendedCount;
  if (extended) *count = GetWord();
  return SizeTable(*count, extended, inlineLines, kInlineStyles, &lineTable, &lineRoom);
}

RColor* SShapeParser::NewStyleColor(int32_t order) {
  RColor* color = display ? display->NewColor() : nullptr;
  if (!color) return nullptr;
  color->SetUp(raster);
  color->order = static_cast<uint32_t>(order);
  color->next = *colorList;
  *colorList = color;
  return color;
}

void SShapeParser::StartGradient(RColor* color, uint8_t type) {
  color->colorType = colorGradient;
  color->rgb = kOpaqueBlack;
  color->grad.fillStyle = type;
  color->grad.colorRamp = nullptr;
  color->grad.ramp = {};
}

// Stops that the ramp has no room for are passed over.
void SShapeParser::AddStop(RColor* color, uint8_t position, SRGB stop, bool fades) {
  GradColorRamp* ramp = &color->grad.ramp;
  if (ramp->nColors >= kMaxGradientStops) return;
  if (fades) color->transparent = true;
  ramp->colorRatio[ramp->nColors] = position;
  ramp->color[ramp->nColors++] = stop;
}

// Without a stop the area shows nothing.
void SShapeParser::FinishGradient(RColor* color) {
  if (color->grad.ramp.nColors == 0) AddStop(color, 0, {0, 0, 0, 0}, true);
  cxform.Apply(&color->grad.ramp);
  if (FadesAlpha(cxform)) color->transparent = true;
}

void SShapeParser::GetBitmapFill(RColor* color, uint8_t type, bool morph) {
  const uint16_t id = GetWord();
  GetMatrix(&color->bm.bitsMat);
  // Required: a bitmap in a morph stays at its start position, whatever the
  // ratio; the matrix of the end is read and dropped.
  MATRIX unused;
  if (morph) GetMatrix(&unused);
  color->rgb = kMissingBitmap;
  SCharacter* character = player->FindCharacter(id);
  if (!character || character->type != charBitmap) return;
  color->colorType = colorBitmap;
  color->bm.fillStyle = type;
  color->bm.smooth = false;
  color->bm.bitmap = &character->bits;
  color->bm.cxform = cxform;
  color->bm.colorMap = nullptr;
  player->BuildBits(character);
}

void SShapeParser::GetFill(RColor* color) {
  const uint8_t type = GetByte();
  if (type & kFillGradient) {
    StartGradient(color, type);
    GetMatrix(&color->grad.gradMat);
    for (int32_t left = GetByte(); left > 0 && pos < dataEnd; --left) {
      const uint8_t position = GetByte();
      const SRGB stop = GetColor(getAlpha);
      AddStop(color, position, stop, stop.alpha < 255);
    }
    FinishGradient(color);
  } else if (type & kFillBitmap) {
    GetBitmapFill(color, type, false);
  } else {
    RGBI rgb;
    GetColor(&rgb, getAlpha);
    SetSolidColor(color, rgb, cxform);
  }
}

void SShapeParser::GetLine(LineStyle* style) {
  style->thickness = MatrixTransformThickness(&mat, GetWord());
  RGBI rgb;
  GetColor(&rgb, getAlpha);
  SetSolidColor(style->color, rgb, cxform);
}

void SShapeParser::SetupColor(RColor* color) {
  if (!raster) return;
  MATRIX device = mat;
  if (raster->antialias) {
    MATRIX scale;
    MatrixScale(kQuarter, kQuarter, &scale);
    MatrixConcat(&mat, &scale, &device);
  }
  if (color->colorType == colorBitmap) {
    InverseOf(color->bm.bitsMat, device, kBitmapFraction, &color->bm.invMat);
    color->transparent = color->bm.bitmap->transparent || FadesAlpha(cxform);
    if (!color->bm.bitmap->baseAddr) color->colorType = colorSolid;
  } else if (color->colorType == colorGradient) {
    InverseOf(color->grad.gradMat, device, kGradientFraction, &color->grad.invGradMat);
  }
  color->BuildCache();
}

// Counts that the data does not keep end with the data.
bool SShapeParser::GetTables(bool morph) {
  nFills = 0;
  nLines = 0;
  int32_t count;
  if (!GetFillTable(&count)) return false;
  for (int32_t i = 1; i <= count && pos < dataEnd; ++i) {
    RColor* color = NewStyleColor(WrapAdd(i, layer));
    if (!color) return false;
    if (morph) {
      GetMorphFill(color);
    } else {
      GetFill(color);
    }
    SetupColor(color);
    fillTable[i] = color;
    nFills = i;
  }
  if (!GetLineTable(&count)) return false;
  for (int32_t i = 1; i <= count && pos < dataEnd; ++i) {
    LineStyle* style = &lineTable[i];
    style->color = NewStyleColor(WrapAdd(i + nFills, layer));
    if (!style->color) return false;
    if (morph) {
      GetMorphLine(style);
    } else {
      GetLine(style);
    }
    SetupColor(style->color);
    nLines = i;
  }
  return true;
}

bool SShapeParser::GetStyles() {
  if (!GetTables(false)) return false;
  GetIndexWidths();
  return true;
}

void SShapeParser::GetIndexWidths() {
  InitBits();
  nFillBits = static_cast<int32_t>(GetBits(4));
  nLineBits = static_cast<int32_t>(GetBits(4));
}

}  // namespace vexel
