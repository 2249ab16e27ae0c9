// The values of the action language in the model: texts, what they read as as
// numbers, and how numbers read as texts. Every step is the literal one, on
// std::string and long double.
#pragma once

#include <string>
#include <vector>

#include "geom.h"

namespace vexel::model::script {

using Text = std::string;  // never holds a NUL

struct Variable {
  Text name;
  Text value;
};

// Truncates; what has no 32-bit integer gives -2147483648.
i32 ToInt32(double v);

bool SameName(const Text& a, const Text& b);  // without the case of ASCII letters

bool ParseInteger(const Text& text, i32* out);
bool ParseDouble(const Text& text, double* out);
double NumberOf(const Text& text);  // 0 for a text that is no number

Text IntegerText(i32 n);
Text DoubleText(double v);

// A text ends at its first NUL.
Text CutAtNul(Text text);
Text Extract(const Text& text, i64 start, i64 count);

Text FormEncode(const Text& text);
Text EncodeVariables(const std::vector<Variable>& variables);
bool IsMailAddress(const Text& url);
bool IsMachineName(const Text& url);
// The number in the name of a layer, or -1.
i64 LayerNumber(const Text& name);

// The shift register behind random numbers. Its seed is taken from the clock
// when it is 0.
struct RandomSource {
  u32 seed = 0;
  i32 Next(i32 n, u32 clock);
};

}  // namespace vexel::model::script
