// Numbers and their texts. The action language keeps every value as text, so
// these decide what its arithmetic yields: a number has the at most 15
// significant digits that its text has. This header includes nothing of ours,
// so every folder of the ring uses it.
#pragma once

#include <cstdint>

namespace vexel {

// A sign or none, then decimal digits up to the end of `text`, at least one.
// Wraps at 32 bits. False, with `*out` untouched, for any other text and null.
[[nodiscard]] bool ConvertStringToInteger(const char* text, int32_t* out);

// A sign or none, digits, a point and digits, an exponent: each part may be
// missing, and a lone point is 0; but something must follow the sign, and an
// exponent must be an integer as above. False, with `*out` untouched, for any
// other text and null; white space counts as other.
[[nodiscard]] bool ConvertStringToDouble(const char* text, double* out);

// The same for the `length` bytes at `text`.
[[nodiscard]] bool ConvertBytesToDouble(const char* text, int32_t length, double* out);

// New texts for FreeStr, null without memory. Required: the lowest integer
// gives "-" alone.
char* ConvertIntegerToString(int32_t n);
char* ConvertDoubleToString(double v);

// Room for any number's text and its NUL.
inline constexpr int32_t kNumberTextSize = 40;

// Writes the text of `v` and a NUL to `out`; returns its length. An infinity
// and a NaN are "#ERROR#", as is a division by zero.
int32_t FormatDouble(double v, char out[kNumberTextSize]);

// What the text of `v` reads as: ConvertStringToDouble of FormatDouble, and 0
// for an infinity and a NaN.
double RoundTripDouble(double v);

// 10 to the n, computed with the widest floating type and then rounded. Below
// about -324 it is 0, above 308 infinite.
double PowerOfTen(int32_t n);

}  // namespace vexel
