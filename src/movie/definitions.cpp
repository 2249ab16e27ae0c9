// The tags that define characters. A handler notes identity, kind and bounds
// and keeps the rest of the body; an id that is taken makes the tag do nothing,
// so the replay of a backward seek changes nothing.
#include "movie/script_player.h"
#include "movie/script_thread.h"
#include "movie/tags.h"

namespace vexel {

void ScriptThread::DoDefinition() {
  switch (tagCode) {
    case kTagDefineShape:
    case kTagDefineShape2:
    case kTagDefineShape3:
      DefineShape();
      break;
    case kTagDefineMorphShape:
      DefineMorphShape();
      break;
    case kTagDefineBits:
    case kTagDefineBitsLossless:
    case kTagDefineBitsJPEG:
    case kTagDefineBitsJPEGAlpha:
    case kTagDefineBitsLosslessAlpha:
      DefineBits();
      break;
    case kTagDefineJPEGTables:
      DefineJPEGTables();
      break;
    case kTagDefineButton:
    case kTagDefineButton2:
      DefineButton();
      break;
    case kTagDefineButtonExtra:
      DefineButtonExtra(1);
      break;
    case kTagDefineFont:
      DefineFont();
      break;
    case kTagDefineFont2:
      DefineFont2();
      break;
    case kTagDefineFontInfo:
      DefineFontInfo();
      break;
    case kTagDefineText:
    case kTagDefineText2:
      DefineText();
      break;
    case kTagDefineEditText:
      DefineEditText();
      break;
    case kTagDefineSprite:
      DefineSprite();
      break;
    default:
      break;
  }
}

// Reads the id and makes the character; null ends the handler.
SCharacter* ScriptThread::BeginDefinition(uint8_t type) {
  const uint16_t id = GetWord();
  if (id >= kFirstSystemId) return nullptr;
  SCharacter* character = player->CreateCharacter(id);
  if (!character) return nullptr;
  character->type = type;
  character->tagCode = static_cast<uint8_t>(tagCode);
  return character;
}

void ScriptThread::DefineShape() {
  SCharacter* character = BeginDefinition(charShape);
  if (!character) return;
  GetRect(&character->bounds);
  character->data = AttachData(pos, tagEnd);
}

void ScriptThread::DefineMorphShape() {
  SCharacter* character = BeginDefinition(charMorphShape);
  if (!character) return;
  GetRect(&character->bounds);
  GetRect(&character->bounds2);
  character->data = AttachData(pos, tagEnd);
}

void ScriptThread::DefineButton() {
  SCharacter* character = BeginDefinition(charButton);
  if (!character) return;
  if (tagCode == kTagDefineButton2) character->trackAsMenu = GetByte() != 0;
  character->data = AttachData(pos, tagEnd);
}

void ScriptThread::DefineButtonExtra(int32_t kind) {
  const uint16_t id = GetWord();
  if (kind == 0 || id >= kFirstSystemId) return;
  SCharacter* character = player->FindCharacter(id);
  if (!character || character->type != charButton || character->cxformData.bytes) return;
  character->cxformData = AttachData(pos, tagEnd);
}

void ScriptThread::DefineSprite() {
  SCharacter* character = BeginDefinition(charSprite);
  if (!character) return;
  character->frameCount = GetWord();
  character->data = AttachData(pos, tagEnd);
}

void ScriptThread::DefineFont() {
  SCharacter* character = BeginDefinition(charFont);
  if (character) character->data = AttachData(pos, tagEnd);
}

// The name stands in front of what `data` points at, in the same block, so
// that font matching can read it back from there.
void ScriptThread::DefineFont2() {
  SCharacter* character = BeginDefinition(charFont);
  if (!character) return;
  character->fontFlags = GetWord();
  const int32_t nameStart = pos;
  const int32_t nameLength = GetByte();
  pos = nameLength < tagEnd - pos ? pos + nameLength : tagEnd;
  character->glyphCount = GetWord();

  DataSpan span = AttachData(nameStart, tagEnd);
  const int32_t size = pos - nameStart < span.length ? pos - nameStart : span.length;
  if (span.bytes) span.bytes += size;
  span.length -= size;
  character->nameSize = size;
  character->data = span;
}

void ScriptThread::DefineFontInfo() {
  const uint16_t id = GetWord();
  if (id >= kFirstSystemId) return;
  SCharacter* character = player->FindCharacter(id);
  if (!character || character->type != charFont || character->fontInfo.bytes) return;
  character->fontInfo = AttachData(pos, tagEnd);
}

void ScriptThread::DefineText() {
  SCharacter* character = BeginDefinition(charText);
  if (!character) return;
  GetRect(&character->bounds);
  character->data = AttachData(pos, tagEnd);
}

void ScriptThread::DefineEditText() {
  SCharacter* character = BeginDefinition(charEditText);
  if (!character) return;
  GetRect(&character->bounds);
  character->data = AttachData(pos, tagEnd);
}

// A bitmap keeps its whole tag, header included, which is framed again when the
// pixels are decoded.
void ScriptThread::DefineBits() {
  SCharacter* character = BeginDefinition(charBitmap);
  if (character) character->data = AttachData(tagPos, tagEnd);
}

}  // namespace vexel
