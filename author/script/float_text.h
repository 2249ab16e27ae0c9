// 32-bit floats as text that keeps every bit.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vexel::author {

// The shortest decimal that reads back as the same float, with the sign of a
// zero. Infinities and the many kinds of not-a-number have no decimal: these
// are "bits 0x7fc00001".
std::string FloatText(uint32_t bits);

// The bits of the float nearest to a decimal; nothing for what is no number or
// lies outside the range of floats.
std::optional<uint32_t> ParseFloat(std::string_view text);

}  // namespace vexel::author
