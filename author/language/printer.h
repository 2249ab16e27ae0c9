// Prints statements by the table: units, and the shortest number that is read
// back as the stored one.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "author/language/table.h"
#include "author/records.h"

namespace vexel::author {

// One statement on a line, fields behind its head.
class StatementText {
 public:
  explicit StatementText(std::string head) : text_(std::move(head)) {}

  StatementText& Word(std::string_view word);
  StatementText& Flag(Field field);
  // Stored numbers of a scaled field.
  StatementText& Stored(Field field, std::initializer_list<int64_t> numbers);
  StatementText& Character(Field field, const std::string& reference);
  StatementText& Colored(Field field, Color color, bool alpha = true);
  StatementText& Text(Field field, std::string_view text);
  StatementText& Hex(Field field, std::span<const uint8_t> bytes);
  // Nothing for kAuto. The parts are printed together, at the end.
  StatementText& Part(std::string_view word, int number);

  // `always` prints a place for the identity too; `unit` is what 1 is stored as.
  StatementText& AddMatrix(const Matrix& matrix, const MatrixForm& form, bool always,
                           double unit = kOne);
  StatementText& AddCxform(const Cxform& cxform, const CxformForm& form, bool always);
  StatementText& AddRect(Field field, const Rect& rect);

  // The statement, without a line end.
  std::string Take() const;

 private:
  std::string text_;
  std::string parts_;
};

// The shortest decimal that, times the unit and rounded, is the stored number.
std::string ScaledText(int64_t stored, double unit);
// The same as per cent.
std::string PercentText(int64_t stored, double unit);
std::string ColorText(Color color);
// Digits in quotes; of many bytes a text over several lines.
std::string HexText(std::span<const uint8_t> bytes);

}  // namespace vexel::author
