// What a statement says: its fields with their values, read by the table.
#pragma once

#include <optional>

#include "author/language/evaluator.h"
#include "author/language/table.h"
#include "author/records.h"

namespace vexel::author {

struct Clause {
  SourcePlace place;
  std::vector<double> numbers;  // as written: pixels, factors, ids
  Color color;
  std::string text;  // of a field of bytes: the bytes
  struct Stop {
    std::optional<double> position;  // 0 to 1
    Color color;
  };
  std::vector<Stop> stops;
  std::vector<std::pair<std::string, int64_t>> parts;  // also words, each with 0
};

// Looks characters up for the fields that name one.
class CharacterNames {
 public:
  virtual ~CharacterNames() = default;
  // An id by name, or -1.
  virtual int32_t FindCharacter(const std::string& name) const = 0;
};

class Clauses {
 public:
  // Reads fields until a word is none of the statement's, or begins another one
  // at this place. A field given twice is a mistake.
  void Read(Evaluator& in, const StatementInfo& statement, const CharacterNames& names,
            uint8_t place);

  bool Has(Field field) const { return clauses_.count(field) != 0; }
  const Clause& Get(Field field) const { return clauses_.at(field); }
  // A number as it is stored: rounded to a multiple of 1 / unit.
  int64_t Stored(Field field, size_t index = 0) const;
  int64_t StoredOr(Field field, int64_t other) const { return Has(field) ? Stored(field) : other; }
  double Real(Field field, size_t index = 0) const { return Get(field).numbers.at(index); }
  size_t CountOf(Field field) const { return Get(field).numbers.size(); }
  // The bytes of a text field, or of one of bytes.
  const std::string& TextOf(Field field) const { return Get(field).text; }
  Bytes BytesOf(Field field) const;
  // A part of `packed`, or kAuto.
  int Part(std::string_view word) const;
  // Throws for parts that are not among these.
  void CheckParts(std::initializer_list<std::string_view> known) const;
  [[noreturn]] void Fail(Field field, const std::string& what) const {
    throw SourceError(Get(field).place, what);
  }

  bool HasMatrix() const;
  // From at, scale, rotate, skew or matrix. `unit` is what a factor of 1 is
  // stored as: 65536, and 20 times that where pixels are placed among
  // twentieths.
  Matrix ToMatrix(double unit = kOne) const;
  MatrixForm ToMatrixForm() const;

  bool HasCxform() const;
  Cxform ToCxform() const;
  CxformForm ToCxformForm() const;

  Rect ToRect(Field field) const;

 private:
  std::map<Field, Clause> clauses_;
};

// Scales, skews and turns (degrees); `unit` is what 1 is stored as.
Matrix MatrixOf(double sx, double sy, double turn, double skewX, double skewY, double unit);

// Bytes from hexadecimal digits and blanks; false for anything else.
bool ParseHex(std::string_view text, std::string* bytes);

}  // namespace vexel::author
