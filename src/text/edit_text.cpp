// What a field holds: its text, and the variable that it shows.
//
// A movie can place a long text any number of times, and each field has a copy
// to edit. The copies are charged like script values, and taking one costs a
// tag for every so many bytes, so that neither memory nor time can run away.
#include "text/edit_text.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "movie/budget.h"
#include "movie/character.h"
#include "movie/script_player.h"
#include "player/multi_byte.h"
#include "player/splayer.h"
#include "player/text.h"
#include "stage/display_list.h"
#include "text/edit_record.h"

namespace vexel {

namespace {

// Bytes of text that count as a tag.
constexpr int32_t kTextPerTag = 64;

// Lead bytes stand in the high half of an entry.
constexpr int kLeadShift = 8;

int64_t BufferBytes(int32_t room) {
  return (int64_t{room} + 1) * static_cast<int64_t>(sizeof(uint16_t));
}

// A charged copy of the text that `parser` stands at; null when memory is out.
char* TakeName(SParser* parser, int64_t* charge) {
  char* name = parser->GetString();
  if (!name) return nullptr;
  const int64_t bytes = static_cast<int64_t>(strlen(name)) + 1;
  if (!ChargeScriptText(bytes)) {
    FreeStr(name);
    return nullptr;
  }
  *charge += bytes;
  return name;
}

}  // namespace

bool EditText::m_insertMode = true;

EditText::EditText(SObject* owner) : object(owner), character(owner->character) {
  MatrixIdentity(&devMatrix);
  RectSetEmpty(&textRect);
  DisplayList* stage = object->display;
  nextText = stage->texts;
  textLink = &stage->texts;
  if (nextText) nextText->textLink = &nextText;
  stage->texts = this;

  // Margins, indent and leading are read by each Draw.
  const EditRecord record(character);
  flags = record.flags;
  maxLength = record.maxLength;
  align = record.align;
  stage->SpendTags(1 + character->data.length / kTextPerTag);
  SParser parser(character->data.bytes, character->data.length, record.textsAt);
  variableName = TakeName(&parser, &m_charge);
  if (flags & kEditTextHasInitialText) initialText = TakeName(&parser, &m_charge);
  SetText({"", 0});
}

EditText::~EditText() {
  *textLink = nextText;
  if (nextText) nextText->textLink = textLink;
  delete[] buffer;
  FreeStr(variableName);
  FreeStr(initialText);
  ChargeScriptText(-m_charge);
}

SPlayer* EditText::Player() const {
  return character->player ? character->player->splayer : nullptr;
}

void EditText::TakeBuffer(uint16_t* entries, int32_t room) {
  if (buffer) {
    delete[] buffer;
    ChargeScriptText(-BufferBytes(m_room));
    m_charge -= BufferBytes(m_room);
  }
  buffer = entries;
  m_room = room;
  m_charge += BufferBytes(room);
}

void EditText::SetText(TextView text) {
  object->display->SpendTags(1 + text.length / kTextPerTag);
  if (!ChargeScriptText(BufferBytes(text.length))) return;
  uint16_t* wide = MBCSToWide(text.bytes, 0, text.length);
  if (!wide) {
    ChargeScriptText(-BufferBytes(text.length));
    return;
  }
  TakeBuffer(wide, text.length);
  length = WideStrLen(wide);
  selectionAnchor = std::clamp(selectionAnchor, 0, length);
  selectionCursor = std::clamp(selectionCursor, 0, length);
}

void EditText::SetBuffer(const char* text) {
  if (!text) text = "";
  const size_t bytes = strnlen(text, size_t{kMaxScriptText});
  SetText({text, static_cast<int32_t>(bytes)});
}

char* EditText::GetBuffer() const {
  return buffer ? WideToMBCS(buffer, 0, length) : nullptr;
}

// Required: where the path of the name leads nowhere, the field stays as it is;
// the initial text is for fields without a name.
void EditText::UpdateFromVariable() {
  SPlayer* player = Player();
  if (!player) return;
  const char* name = nullptr;
  ScriptThread* thread = player->ResolveVariable(variableName, object->thread, &name);
  if (!name || !*name) {
    if (initialText) SetBuffer(initialText);
  } else if (thread) {
    ScriptVariable* variable = thread->FindVariable(name);
    if (variable && !variable->value.IsNone()) {
      char scratch[kValueScratchSize];
      SetText(variable->value.View(scratch));
    } else if (initialText) {
      SetBuffer(initialText);
      thread->SetVariable(name, initialText, false);
    }
  }
  if (!player->saveFocus.Restore(this)) return;
  // The text may have become shorter since.
  selectionAnchor = std::clamp(selectionAnchor, 0, length);
  selectionCursor = std::clamp(selectionCursor, 0, length);
  player->focus.Set(object);
}

bool EditText::Expand(int32_t n) {
  if (n <= length) return true;
  if (!ChargeScriptText(BufferBytes(n))) return false;
  auto* grown = new (std::nothrow) uint16_t[static_cast<size_t>(n) + 1]();
  if (!grown) {
    ChargeScriptText(-BufferBytes(n));
    return false;
  }
  if (buffer) WideStrCopy(grown, buffer);
  TakeBuffer(grown, n);
  return true;
}

uint16_t* EditText::MBCSToWide(const char* text, int32_t offset, int32_t bytes) {
  auto* wide = new (std::nothrow) uint16_t[static_cast<size_t>(bytes) + 1];
  if (!wide) return nullptr;
  uint16_t* to = wide;
  const char* from = text + offset;
  while (bytes > 0) {
    uint32_t code = static_cast<uint8_t>(*from++);
    --bytes;
    if (IsLeadByte(static_cast<uint8_t>(code)) && bytes > 0) {
      code = code << kLeadShift | static_cast<uint8_t>(*from++);
      --bytes;
    }
    *to++ = static_cast<uint16_t>(code);
  }
  *to = 0;
  return wide;
}

char* EditText::WideToMBCS(const uint16_t* text, int32_t offset, int32_t count) {
  auto* bytes = new (std::nothrow) char[2 * static_cast<size_t>(count) + 1];
  if (!bytes) return nullptr;
  char* to = bytes;
  for (int32_t i = 0; i < count; ++i) {
    const uint16_t code = text[offset + i];
    if (code > 0xFF) *to++ = static_cast<char>(code >> kLeadShift);
    *to++ = static_cast<char>(code);
  }
  *to = '\0';
  return bytes;
}

int32_t EditText::WideStrLen(const uint16_t* text) {
  int32_t count = 0;
  while (text[count]) ++count;
  return count;
}

void EditText::WideStrCopy(uint16_t* to, const uint16_t* from) {
  while ((*to++ = *from++)) {
  }
}

bool EditText::IsMultiByte() {
  return PlayerIsMultiByte();
}

bool EditText::IsLeadByte(uint8_t byte) {
  return PlayerIsLeadByte(byte);
}

}  // namespace vexel
