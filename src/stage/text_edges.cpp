// Static text: runs of glyphs with font, colour and place, straight from the
// movie's bytes.
#include "stage/text_edges.h"

#include "movie/character.h"
#include "movie/font_format.h"
#include "movie/script_player.h"
#include "movie/solid_color.h"
#include "movie/tags.h"
#include "raster/rcolor.h"
#include "stage/clip_color.h"
#include "stage/display_list.h"
#include "stage/glyph_edges.h"

namespace vexel {

// What a run's first byte says is there. An end of text has none of them.
enum RunFlags : uint8_t {
  kRunX = 0x01,
  kRunY = 0x02,
  kRunColor = 0x04,
  kRunFont = 0x08,
};

namespace {

class TextBuilder {
 public:
  TextBuilder(SObject* object, const STransform* t);
  void Build();

 private:
  bool GetColor();
  bool GetGlyphs();
  bool GlyphFits() const;

  SObject* m_object;
  const STransform* m_transform;
  SParser m_parser;
  GlyphEdges m_glyphs;
  MATRIX m_textMat;
  MATRIX m_runMat;
  int32_t m_glyphBits = 0;
  int32_t m_advanceBits = 0;
  SCharacter* m_font = nullptr;
  RColor* m_color = nullptr;
  uint32_t m_layer = 0;
  int32_t m_glyphBytes = 0;
};

TextBuilder::TextBuilder(SObject* object, const STransform* t)
    : m_object(object),
      m_transform(t),
      m_parser(object->character->data.bytes, object->character->data.length),
      m_glyphs(object) {
  MatrixIdentity(&m_runMat);
}

// Reads a colour and makes it the current one, with the transform applied and
// premultiplied; false if there is no memory. A mask has its colour already.
bool TextBuilder::GetColor() {
  RGBI rgb;
  m_parser.GetColor(&rgb, m_object->character->tagCode == kTagDefineText2);
  if (m_object->clipDepth != 0) return true;
  DisplayList* display = m_object->display;
  RColor* color = display->NewColor();
  if (!color) return false;
  color->SetUp(&display->raster);
  color->next = m_object->colors;
  m_object->colors = color;
  color->order = m_layer++;
  SetSolidColor(color, rgb, m_transform->cxform);
  if (RasterForCaches(display)) color->BuildCache();
  m_color = color;
  return true;
}

// Whether another glyph ends before the last byte, which ends the text.
bool TextBuilder::GlyphFits() const {
  const int64_t left = (int64_t{m_parser.dataEnd} - 1 - m_parser.pos) * 8 + m_parser.bitPos;
  return m_glyphBits + m_advanceBits <= left;
}

// Reads a run's glyphs; false if the text has been read enough.
bool TextBuilder::GetGlyphs() {
  uint8_t count = m_parser.GetByte();
  // Required: the loop ends with its counter at 0, so a count of 0 stands for
  // 256 glyphs, of which the first is always read.
  const bool wraps = count == 0;
  m_parser.InitBits();
  do {
    const uint32_t glyph = m_parser.GetBits(m_glyphBits);
    const int32_t advance = m_parser.GetSBits(m_advanceBits);
    if (m_font) {
      MATRIX mat;
      MatrixConcat(&m_runMat, &m_textMat, &mat);
      m_glyphBytes += m_glyphs.Add(m_font, glyph, &mat, m_color);
      if (m_glyphBytes > kMaxGlyphBytes) return false;
    }
    m_runMat.tx = WrapAdd(m_runMat.tx, advance);
    --count;
  } while (count != 0 && (!wraps || GlyphFits()));
  return true;
}

void TextBuilder::Build() {
  MATRIX own;
  m_parser.GetMatrix(&own);
  MatrixConcat(&own, &m_transform->mat, &m_textMat);
  m_glyphBits = m_parser.GetByte();
  m_advanceBits = m_parser.GetByte();
  if (m_object->clipDepth != 0) m_color = CreateClipColor(m_object->display, &m_object->colors);
  while (const uint8_t flags = m_parser.GetByte()) {
    if (flags & kRunFont) {
      m_font = m_object->character->player->FindCharacter(m_parser.GetWord());
      if (m_font && m_font->type != charFont) m_font = nullptr;
    }
    if ((flags & kRunColor) && !GetColor()) return;
    if (flags & kRunX) m_runMat.tx = static_cast<int16_t>(m_parser.GetWord());
    if (flags & kRunY) m_runMat.ty = static_cast<int16_t>(m_parser.GetWord());
    if (flags & kRunFont) m_runMat.a = m_runMat.d = m_parser.GetWord() * kHeightToScale;
    if (!GetGlyphs()) return;
  }
}

}  // namespace

void BuildTextEdges(SObject* object, const STransform* t) {
  TextBuilder(object, t).Build();
}

}  // namespace vexel
