// Pictures as files: by the ending of the name, `.png` or `.raw`.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace vexel::tools {

enum class PictureKind { kNone, kPng, kRaw };

// By the ending of the name, in lower case.
PictureKind PictureKindOf(const std::string& path);

// Writes a picture of 8-bit red, green, blue, rows from the top without gaps.
// `path` is for messages only. Throws Failure.
void WriteRgbPng(int32_t width, int32_t height, const uint8_t* rgb, const std::string& path,
                 std::FILE* stream);

}  // namespace vexel::tools
