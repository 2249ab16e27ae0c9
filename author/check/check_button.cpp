// Buttons: what they show, and the actions they answer with.
#include <algorithm>

#include "author/button.h"
#include "author/check/checker.h"

namespace vexel::author {

// Up to the zero byte behind the records. Whether one marks the hit area.
bool Checker::ButtonRecords(Tag* tag, uint16_t id, bool cxforms) {
  TagReader& in = tag->body;
  bool hit = false;
  in.Reading("a button's record");
  while (const uint32_t states = in.U8()) {
    hit = hit || (states & kButtonHit);
    Use(*tag, UseKind::kPlace, static_cast<uint16_t>(in.U16()), id);
    in.U16();
    in.Matrix();
    if (cxforms) in.Cxform(true);
    if ((states & 15) == 0) {
      Add(FindingKind::kUnreachable, *tag, "a record of the button belongs to no state");
    }
  }
  return hit;
}

void Checker::Button(Tag* tag, uint16_t id) {
  TagReader& in = tag->body;
  const bool hit = ButtonRecords(tag, id, false);
  if (!hit) Add(FindingKind::kUnreachable, *tag, "the button has no hit area for the pointer");
  const size_t at = in.at();
  Actions(*tag, in.Take(in.left()), at);
}

void Checker::Button2(Tag* tag, uint16_t id) {
  TagReader& in = tag->body;
  in.Reading("the button's tracking byte");
  in.U8();
  const size_t data = in.pos();
  in.Reading("the offset of the actions");
  uint32_t offset = in.U16();
  const bool hit = ButtonRecords(tag, id, true);
  const size_t behindRecords = in.pos();
  size_t from = data;
  bool keys = false;
  while (offset != 0) {
    const size_t record = from + offset;
    if (record + 4 > in.size()) {
      Damaged(*tag, "actions of the button would begin behind the tag");
      break;
    }
    if (from != data && offset < 4) {
      Damaged(*tag, "actions of the button begin inside the ones before");
      break;
    }
    if (record < behindRecords) Damaged(*tag, "actions of the button begin inside its records");
    TagReader actions = in.From(record);
    offset = actions.U16();
    const uint32_t conditions = actions.U16();
    keys = keys || conditions >> 9 != 0;
    if (conditions == 0) {
      Add(FindingKind::kUnreachable, *tag, "actions of the button answer to no event");
    }
    // The block reaches to the next record, the last one to the tag's end.
    size_t size = actions.left();
    if (offset >= 4) size = std::min<size_t>(size, offset - 4);
    const size_t at = actions.at();
    Actions(*tag, actions.Take(size), at);
    from = record;
  }
  if (!hit && !keys) {
    Add(FindingKind::kUnreachable, *tag, "the button has no hit area for the pointer, and no key");
  }
  in.Take(in.left());
}

}  // namespace vexel::author
