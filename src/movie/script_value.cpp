// Values of the action language, and the blocks that their texts share.
#include "movie/script_value.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "movie/budget.h"
#include "player/convert.h"

namespace vexel {

static_assert(kValueScratchSize >= kNumberTextSize);

namespace {

// Between these magnitudes a number that was read from the text of another
// renders as that text again: 15 digits leave room for the roundings on the
// way. Beyond, a carry may change the form, and powers of ten lose bits.
constexpr double kSmallestPlain = 1e-4;
constexpr double kLargestPlain = 1e14;

// Room that a text gets beyond what it needs when it starts to grow.
constexpr int32_t kFirstRoom = 16;

int64_t g_scriptText = 0;  // bytes charged

// The texts of one byte, each with its NUL.
struct ByteTexts {
  char bytes[256][2];
};
constexpr ByteTexts MakeByteTexts() {
  ByteTexts texts = {};
  for (int i = 0; i < 256; ++i) texts.bytes[i][0] = static_cast<char>(i);
  return texts;
}
constexpr ByteTexts kByteTexts = MakeByteTexts();

}  // namespace

bool ChargeScriptText(int64_t bytes) {
  if (bytes > 0 && g_scriptText + bytes > kMaxScriptText) return false;
  g_scriptText += bytes;
  return true;
}

TextBlock* TextBlock::Create(int32_t capacity) {
  const int64_t size = int64_t{sizeof(TextBlock)} + capacity + 1;
  if (!ChargeScriptText(size)) return nullptr;
  auto* block = static_cast<TextBlock*>(malloc(static_cast<size_t>(size)));
  if (!block) {
    ChargeScriptText(-size);
    return nullptr;
  }
  block->m_refs = 1;
  block->m_used = 0;
  block->m_capacity = capacity;
  *block->Bytes() = '\0';
  return block;
}

void TextBlock::Destroy() {
  ChargeScriptText(-(int64_t{sizeof(TextBlock)} + m_capacity + 1));
  free(this);
}

bool TextBlock::Extend(TextView tail) {
  if (tail.length > m_capacity - m_used) return false;
  char* end = Bytes() + m_used;
  memcpy(end, tail.bytes, static_cast<size_t>(tail.length));
  end[tail.length] = '\0';
  m_used += tail.length;
  return true;
}

ScriptValue ScriptValue::AsConstant() const {
  double v;
  if (m_kind != Kind::kBorrowed || m_length >= kValueScratchSize || !ReadNumber(&v)) return *this;
  ScriptValue number = Number(v);
  char scratch[kValueScratchSize];
  const TextView text = number.View(scratch);
  const bool same = number.IsNumber() && text.length == m_length &&
                    memcmp(text.bytes, m_at.pointer, static_cast<size_t>(m_length)) == 0;
  return same ? number : *this;
}

ScriptValue ScriptValue::Rounded(double v) {
  if (!std::isfinite(v)) return Error();
  const double magnitude = std::fabs(v);
  if (magnitude > kSmallestPlain && magnitude < kLargestPlain) return Exact(RoundTripDouble(v));
  char text[kNumberTextSize];
  const int32_t length = FormatDouble(v, text);
  const double settled = RoundTripDouble(v);
  char again[kNumberTextSize];
  if (std::isfinite(settled) && FormatDouble(settled, again) == length &&
      memcmp(text, again, static_cast<size_t>(length)) == 0) {
    return Exact(settled);
  }
  return Copy({text, length});
}

ScriptValue ScriptValue::Copy(TextView text) {
  if (text.length == 0) return Empty();
  ScriptValue value;
  if (text.length > kMaxValueText) return value;
  TextBlock* block = TextBlock::Create(text.length);
  if (!block) return value;
  block->Extend(text);
  value.m_kind = Kind::kText;
  value.m_length = text.length;
  value.m_at.block = block;
  return value;
}

ScriptValue ScriptValue::Copy(const char* text) {
  if (!text) return ScriptValue();
  return Copy({text, static_cast<int32_t>(std::min(strlen(text), size_t{kMaxValueText} + 1))});
}

ScriptValue ScriptValue::Byte(uint8_t byte) {
  return Static(kByteTexts.bytes[byte], byte != 0);
}

ScriptValue ScriptValue::Concat(ScriptValue head, TextView tail) {
  char scratch[kValueScratchSize];
  const TextView start = head.View(scratch);
  if (tail.length > kMaxValueText - start.length) return ScriptValue();
  const int32_t length = start.length + tail.length;
  // The room behind a block's end belongs to whoever comes first.
  const bool growing = head.m_kind == Kind::kText && head.m_at.block->Used() == start.length;
  if (growing && head.m_at.block->Extend(tail)) {
    head.m_length = length;
    return head;
  }
  const int32_t capacity =
      growing ? std::min(kMaxValueText, length + length / 2 + kFirstRoom) : length;
  ScriptValue value;
  TextBlock* block = TextBlock::Create(capacity);
  if (!block && capacity > length) block = TextBlock::Create(length);
  if (!block) return value;
  block->Extend(start);
  block->Extend(tail);
  value.m_kind = Kind::kText;
  value.m_length = length;
  value.m_at.block = block;
  return value;
}

bool ScriptValue::ReadNumber(double* out) const {
  if (m_kind == Kind::kNumber) {
    *out = m_at.number;
    return true;
  }
  char scratch[kValueScratchSize];
  const TextView text = View(scratch);
  return ConvertBytesToDouble(text.bytes, text.length, out);
}

double ScriptValue::ParseNumber() const {
  double v = 0;
  return ReadNumber(&v) ? v : 0;
}

TextView ScriptValue::View(char scratch[kValueScratchSize]) const {
  switch (m_kind) {
    case Kind::kNumber:
      return {scratch, FormatDouble(m_at.number, scratch)};
    case Kind::kStatic:
    case Kind::kBorrowed:
      return {m_at.pointer, m_length};
    case Kind::kText:
      return {m_at.block->Bytes(), m_length};
    case Kind::kNone:
      break;
  }
  return {"", 0};
}

const char* ScriptValue::Text() {
  if (m_kind == Kind::kStatic || m_kind == Kind::kBorrowed) return m_at.pointer;
  // A block that went on growing has no NUL at this text's end.
  if (m_kind != Kind::kText || m_length != m_at.block->Used()) {
    char scratch[kValueScratchSize];
    ScriptValue copy = Copy(View(scratch));
    if (copy.IsNone()) return "";
    *this = std::move(copy);
  }
  return m_kind == Kind::kText ? m_at.block->Bytes() : m_at.pointer;
}

void ScriptValue::CopyBorrowed() {
  *this = Copy({m_at.pointer, m_length});
}

}  // namespace vexel
