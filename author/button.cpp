// Button records and their actions.
#include "author/button.h"

namespace vexel::author {

namespace {

void WriteRecords(BitWriter& out, const std::vector<ButtonRecord>& records, bool cxforms) {
  for (const ButtonRecord& record : records) {
    out.U8(record.states);
    out.U16(record.character);
    out.U16(record.depth);
    WriteMatrix(out, record.matrix);
    if (cxforms) WriteCxform(out, record.cxform, true);
  }
  out.U8(0);
}

}  // namespace

void WriteButton(BitWriter& out, const std::vector<ButtonRecord>& records, const Bytes& block) {
  WriteRecords(out, records, false);
  out.Append(block);
}

void WriteButton2(BitWriter& out, bool trackAsMenu, const std::vector<ButtonRecord>& records,
                  const std::vector<ButtonActions>& actions) {
  out.U8(trackAsMenu);
  // Each offset counts from its own position; 0 says that nothing follows.
  size_t offsetAt = out.size();
  out.U16(0);
  WriteRecords(out, records, true);
  for (const ButtonActions& action : actions) {
    out.Patch16(offsetAt, static_cast<uint32_t>(out.size() - offsetAt));
    offsetAt = out.size();
    out.U16(0);
    out.U16(action.conditions);
    out.Append(action.block);
  }
}

void WriteButtonExtra(BitWriter& out, const std::vector<Cxform>& cxforms) {
  for (const Cxform& cxform : cxforms) WriteCxform(out, cxform, false);
}

}  // namespace vexel::author
