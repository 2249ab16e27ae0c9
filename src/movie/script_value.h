// A value of the action language. To a script every value is a text; what
// stands here is how little of that has to happen. A number stays a number as
// long as nobody reads it as text, and then holds exactly what its text reads
// as. A text in the movie is used where it lies. Other texts are counted
// blocks, and a block may grow behind the end that its older users see, so
// appending in a loop does not copy.
//
// All blocks together, of all players in the process, are bounded by
// kMaxScriptText, one value by kMaxValueText; what exceeds that is dropped as
// if memory were out.
#pragma once

#include <cstdint>
#include <utility>

namespace vexel {

// Room for the text of a number.
inline constexpr int32_t kValueScratchSize = 40;

// Some bytes without a NUL among them; none needs to stand behind them.
struct TextView {
  const char* bytes;
  int32_t length;
};

// A counted block of bytes that texts share. Values own it.
class TextBlock {
 public:
  // With one reference and no bytes used; null when memory or the budget is
  // out.
  static TextBlock* Create(int32_t capacity);
  void AddRef() { ++m_refs; }
  void Release() {
    if (--m_refs == 0) Destroy();
  }
  char* Bytes() { return reinterpret_cast<char*>(this + 1); }
  int32_t Used() const { return m_used; }
  // Adds bytes behind those used, and a NUL; false if there is no room.
  bool Extend(TextView tail);
  int32_t Capacity() const { return m_capacity; }

 private:
  void Destroy();
  int32_t m_refs;
  int32_t m_used;
  int32_t m_capacity;  // without the NUL
};

class ScriptValue {
 public:
  // No value at all: what memory that is out leaves.
  ScriptValue() = default;
  ScriptValue(ScriptValue&& other) noexcept
      : m_kind(std::exchange(other.m_kind, Kind::kNone)),
        m_length(other.m_length),
        m_at(other.m_at) {}
  ScriptValue(const ScriptValue& other)
      : m_kind(other.m_kind), m_length(other.m_length), m_at(other.m_at) {
    if (m_kind == Kind::kText) m_at.block->AddRef();
  }
  ScriptValue& operator=(ScriptValue&& other) noexcept {
    if (this == &other) return *this;
    Clear();
    m_kind = std::exchange(other.m_kind, Kind::kNone);
    m_length = other.m_length;
    m_at = other.m_at;
    return *this;
  }
  ScriptValue& operator=(const ScriptValue& other) { return *this = ScriptValue(other); }
  ~ScriptValue() { Clear(); }

  // The text of `v`.
  static ScriptValue Number(double v) {
    // An integer of up to 15 digits is what its text reads as; not so -0.
    if (v > -kExactIntegers && v < kExactIntegers) {
      const double whole = static_cast<double>(static_cast<int64_t>(v));
      if (whole == v) return Exact(whole);
    }
    return Rounded(v);
  }
  static ScriptValue Truth(bool v) { return Exact(v ? 1 : 0); }
  // A text that outlives the process' values.
  static ScriptValue Static(const char* text, int32_t length) {
    return Pointer(Kind::kStatic, text, length);
  }
  static ScriptValue Empty() { return Static("", 0); }
  // What a number is that is none: an infinity, or something divided by zero.
  static ScriptValue Error() { return Static("#ERROR#", 7); }
  // A text in the movie, closed by a NUL. Whoever keeps the movie's bytes alive
  // calls Own on every such value before letting go of them.
  static ScriptValue Borrowed(const char* text, int32_t length) {
    return Pointer(Kind::kBorrowed, text, length);
  }
  // A copy; none without memory.
  static ScriptValue Copy(TextView text);
  static ScriptValue Copy(const char* text);  // none for null
  // The text of one byte; the empty text for 0.
  static ScriptValue Byte(uint8_t byte);
  // `tail` behind `head`, without copying `head` if that can be helped; none
  // without memory.
  static ScriptValue Concat(ScriptValue head, TextView tail);

  bool IsNone() const { return m_kind == Kind::kNone; }
  bool IsNumber() const { return m_kind == Kind::kNumber; }
  bool IsBorrowed() const { return m_kind == Kind::kBorrowed; }
  // Of a borrowed text: where it stands, closed by a NUL.
  const char* BorrowedText() const { return m_at.pointer; }
  // The same text with a number inside if that is how the number is written;
  // else the value itself. For constants that are used again and again.
  ScriptValue AsConstant() const;

  // What the text reads as; 0 for a text that is no number.
  double ToNumber() const { return m_kind == Kind::kNumber ? m_at.number : ParseNumber(); }
  // The same; false, with `*out` untouched, for a text that is no number.
  bool ReadNumber(double* out) const;
  // The text; `scratch` may hold it. Valid as long as the value and `scratch`.
  TextView View(char scratch[kValueScratchSize]) const;
  // The text closed by a NUL, valid as long as the value is unchanged; the
  // empty text without memory.
  const char* Text();
  bool OwnsText() const { return m_kind == Kind::kText; }
  // The same as an assignment, quicker: neither value owns a text.
  void AssignUnowned(const ScriptValue& other) {
    m_kind = other.m_kind;
    m_length = other.m_length;
    m_at = other.m_at;
  }
  // Makes it none.
  void Clear() {
    if (m_kind == Kind::kText) m_at.block->Release();
    m_kind = Kind::kNone;
  }
  // Makes a copy of a borrowed text.
  void Own() {
    if (m_kind == Kind::kBorrowed) CopyBorrowed();
  }

 private:
  enum class Kind : uint32_t { kNone, kNumber, kStatic, kBorrowed, kText };

  // Below this magnitude the digits of an integer all fit into its text.
  static constexpr double kExactIntegers = 1e15;
  static ScriptValue Rounded(double v);
  // A number whose text reads as the number itself.
  static ScriptValue Exact(double v) {
    ScriptValue value;
    value.m_kind = Kind::kNumber;
    value.m_at.number = v;
    return value;
  }
  static ScriptValue Pointer(Kind kind, const char* text, int32_t length) {
    ScriptValue value;
    value.m_kind = kind;
    value.m_length = length;
    value.m_at.pointer = text;
    return value;
  }
  double ParseNumber() const;
  void CopyBorrowed();
  Kind m_kind = Kind::kNone;
  int32_t m_length = 0;  // of a text: the bytes of it that this value has
  union {
    double number = 0;
    const char* pointer;
    TextBlock* block;
  } m_at;
};

// A named value of a timeline.
struct ScriptVariable {
  ScriptVariable* next;
  char* name;         // owned, in the spelling that made it
  ScriptValue value;  // may be none
  uint32_t hash;      // of the name, its letters lowered

  // The value's text, valid until it changes; null for none.
  const char* Text() { return value.IsNone() ? nullptr : value.Text(); }
};

// Charges `bytes` (or gives them back, if negative) against kMaxScriptText;
// false, with nothing charged, if that would exceed it.
bool ChargeScriptText(int64_t bytes);

}  // namespace vexel
