// The numbered properties of placed objects, by the names that scripts use.
#pragma once

#include <iterator>
#include <string_view>

namespace vexel::author {

struct PropertyName {
  const char* name;
  bool readOnly;
};

// In the order of their numbers.
inline constexpr PropertyName kPropertyNames[] = {
    {"x", false},          // pixels
    {"y", false},          //
    {"xscale", false},     // per cent
    {"yscale", false},     //
    {"frame", true},       // the one shown, from 1
    {"frames", true},      // how many there are
    {"alpha", false},      // per cent
    {"visible", false},    // 0 or 1
    {"width", true},       // pixels
    {"height", true},      //
    {"rotation", false},   // degrees
    {"path", true},        // the target path
    {"loaded", true},      // how many frames have arrived
    {"name", false},       //
    {"drop", true},        // path of what lies under the dragged object
    {"url", true},         // where the movie came from
    {"quality", false},    // 0 low, 1 high, 2 best; of the whole player
    {"focusrect", false},  // whether the keyboard's focus is framed; likewise
    {"buffer", false},     // a number that is only kept; likewise
};

// The number of a property; -1 for an unknown name.
inline int FindProperty(std::string_view name) {
  for (size_t i = 0; i < std::size(kPropertyNames); ++i) {
    if (name == kPropertyNames[i].name) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace vexel::author
