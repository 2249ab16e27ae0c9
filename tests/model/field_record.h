// What a text field's definition says, in its order.
#pragma once

#include "field.h"

namespace vexel::model {

struct Field::Record {
  int flags = 0, fontId = 0;
  i32 height = 360;  // twentieths
  Rgbi color{0, 0, 0, 255};
  i32 maxLength = 0, align = 0, left = 0, right = 0, indent = 0, leading = 0;
  std::string variable, initial;
};

}  // namespace vexel::model
