// The rows of the pixel formats.
#include "raster/format_table.h"

namespace vexel {

// clang-format off
const PixelFormatRow pixelFormats[] = {
    // name     depth  writes            reads             solid colours
    //          copies from 1, 2, 4 bits    8 bits     16 bits     32 bits
    {"pix1",    1,  DrawRGBSlab1,   GetBackground1,   DrawSolidSlab1,
                {nullptr, nullptr, nullptr, nullptr,   nullptr,    nullptr}},
    {"pix2",    2,  DrawRGBSlab2,   GetBackground2,   DrawSolidSlab2,
                {nullptr, nullptr, nullptr, nullptr,   nullptr,    nullptr}},
    {"pix4",    4,  DrawRGBSlab4,   GetBackground4,   DrawSolidSlab4,
                {nullptr, nullptr, nullptr, nullptr,   nullptr,    nullptr}},
    {"pix8",    8,  DrawRGBSlab8,   GetBackground8,   DrawSolidSlab8,
                {nullptr, nullptr, nullptr, Blt8to8D,  Blt16to8D,  Blt32to8D}},
    {"pix16",  16,  DrawRGBSlab16,  GetBackground16,  DrawSolidSlab16,
                {nullptr, nullptr, nullptr, Blt8to16,  Blt16to16,  Blt32to16}},
    {"pix16A", 16,  DrawRGBSlab16A, GetBackground16A, DrawSolidSlab16,
                {nullptr, nullptr, nullptr, Blt8to16A, Blt16to16A, Blt32to16A}},
    {"pix24",  24,  DrawRGBSlab24,  GetBackground24,  DrawSolidSlab24,
                {nullptr, nullptr, nullptr, nullptr,   nullptr,    nullptr}},
    {"pix32",  32,  DrawRGBSlab32,  GetBackground32,  DrawSolidSlab32,
                {nullptr, nullptr, nullptr, Blt8to32,  Blt16to32,  Blt32to32}},
    {"pix32A", 32,  DrawRGBSlab32A, GetBackground32,  DrawSolidSlab32,
                {nullptr, nullptr, nullptr, nullptr,   nullptr,    nullptr}},
};
// clang-format on

static_assert(sizeof pixelFormats / sizeof *pixelFormats == kPixelFormatCount);

}  // namespace vexel
