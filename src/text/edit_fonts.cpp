// Which font a field draws with: its record names one of the movie, and unless
// the field uses the movie's own outlines, that font's name and style choose
// one of the built-in fonts in its place.
#include "text/edit_text.h"

#include <cstring>

#include "movie/character.h"
#include "movie/font_format.h"
#include "movie/script_player.h"
#include "movie/sparser.h"
#include "movie/tags.h"
#include "player/splayer.h"
#include "stage/glyph_edges.h"
#include "stage/object.h"
#include "text/built_in_fonts.h"
#include "text/edit_record.h"

namespace vexel {

namespace {

// A name with its length in front of it.
void ReadName(SParser* in, FontDesc* desc) {
  const int32_t length = in->GetByte();
  desc->fontName[in->GetData(desc->fontName, length)] = 0;
}

// Name and style as the font's own record or the one beside it give them.
void ReadStyle(const SCharacter* font, FontDesc* desc) {
  if (font->tagCode != kTagDefineFont2) {
    if (!font->fontInfo.bytes) return;
    SParser info(font->fontInfo.bytes, font->fontInfo.length);
    ReadName(&info, desc);
    const uint8_t style = info.GetByte();
    desc->bold = style & kFontInfoBold;
    desc->italic = style & kFontInfoItalic;
    return;
  }
  if (font->nameSize > 0) {
    SParser name(font->data.bytes - font->nameSize, font->nameSize);
    ReadName(&name, desc);
  }
  desc->bold = font->fontFlags & kFontBold;
  desc->italic = font->fontFlags & kFontItalic;
  desc->shiftJIS = font->fontFlags & kFontShiftJIS;
}

// Required: bold and italic count alike, so that each alone gives the bold face
// and both together the italic one; the fourth face is never used.
uint16_t BuiltInId(const FontDesc& desc) {
  int32_t id = kSerifFontId;
  if (strcmp(desc.fontName, "_sans") == 0) id = kSansFontId;
  if (strcmp(desc.fontName, "_typewriter") == 0) id = kTypewriterFontId;
  if (desc.bold) id += 2;
  if (desc.italic) id += 2;
  return static_cast<uint16_t>(id);
}

SCharacter* FindFont(ScriptPlayer* movie, uint16_t id) {
  SCharacter* font = movie ? movie->FindCharacter(id) : nullptr;
  return font && font->type == charFont ? font : nullptr;
}

}  // namespace

// Required: a font that can't be found is not replaced by a built-in one.
void EditText::GetFontDesc(FontDesc& desc) {
  const EditRecord record(object->character);
  desc = FontDesc();
  desc.fontHeight = record.fontHeight;
  ScriptPlayer* movie = object->character->player;
  ScriptPlayer* builtIn = movie->splayer ? &movie->splayer->fontPlayer : nullptr;
  SCharacter* font =
      record.fontId == 0 ? FindFont(builtIn, kSerifFontId) : FindFont(movie, record.fontId);
  if (!font) {
    strcpy(desc.fontName, "Times New Roman");
    desc.fontHeight = kPlainHeight;
    return;
  }
  ReadStyle(font, &desc);
  if (!(record.flags & kEditTextUseOutlines)) font = FindFont(builtIn, BuiltInId(desc));
  if (!font) return;
  desc.font = font;
  desc.codeTableOffset = static_cast<int32_t>(FontOffset(font, font->glyphCount));
}

}  // namespace vexel
