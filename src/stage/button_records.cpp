// The walks over a button's data.
#include "movie/character.h"
#include "movie/script_player.h"
#include "movie/tags.h"
#include "stage/button.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// The second form starts with the offset of its action records.
constexpr int32_t kOffsetBytes = 2;

DataSpan Rest(const DataSpan& data, int32_t pos) {
  if (pos >= data.length) return {};
  return {data.block, data.bytes + pos, data.length - pos};
}

}  // namespace

bool IsSecondButtonForm(const SCharacter* button) {
  return button->tagCode == kTagDefineButton2;
}

uint8_t ButtonRecordMask(int32_t state) {
  constexpr uint8_t kMasks[] = {0, 1, 2, 4, 2};
  return state >= buttonNone && state <= buttonPressedOutside ? kMasks[state] : 0;
}

ButtonRecordReader::ButtonRecordReader(const SCharacter* button, DisplayList* display)
    : m_display(display),
      m_player(button->player),
      m_data(button->data),
      m_extraData(button->cxformData),
      m_records(m_data.bytes, m_data.length, IsSecondButtonForm(button) ? kOffsetBytes : 0),
      m_cxforms(m_extraData.bytes, m_extraData.length),
      m_isSecondForm(IsSecondButtonForm(button)) {}

bool ButtonRecordReader::Next(ButtonRecord* out) {
  if (!m_display->SpendTags(1)) return false;
  out->states = m_records.GetByte();
  if (out->states == 0) return false;
  out->id = m_records.GetWord();
  out->layer = m_records.GetWord();
  m_records.GetMatrix(&out->mat);
  if (m_isSecondForm) {
    m_records.GetColorTransform(&out->cxform, true);
  } else if (m_extraData.bytes) {
    m_cxforms.GetColorTransform(&out->cxform, false);
  } else {
    out->cxform.Clear();
  }
  return true;
}

SCharacter* ButtonRecordReader::FindCharacter(const ButtonRecord& record) const {
  return record.id < kFirstSystemId ? m_player->FindCharacter(record.id) : nullptr;
}

DataSpan ButtonActionBlock(const SCharacter* button) {
  constexpr int32_t kIdAndLayerBytes = 4;
  SParser parser(button->data.bytes, button->data.length);
  while (parser.GetByte() != 0) {
    parser.pos += kIdAndLayerBytes;
    MATRIX mat;
    parser.GetMatrix(&mat);
  }
  return Rest(button->data, parser.pos);
}

ButtonActionReader::ButtonActionReader(const SCharacter* button) {
  if (!IsSecondButtonForm(button)) return;
  m_data = button->data;
  m_parser = SParser(m_data.bytes, m_data.length);
  m_offset = m_parser.GetWord();
}

// Offsets only grow, so every chain ends: at an offset of 0, which is also what
// the data reads as behind its end.
bool ButtonActionReader::Next() {
  if (m_offset == 0) return false;
  m_offsetAt += m_offset;
  m_parser.pos = m_offsetAt;
  m_offset = m_parser.GetWord();
  conditions = m_parser.GetWord();
  block = Rest(m_data, m_parser.pos);
  return true;
}

}  // namespace vexel
