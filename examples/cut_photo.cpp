// cut_photo FILE WIDTH HEIGHT PLACE OUT: a JPEG file cut and scaled to a size,
// for the demos that are texts.
#include <cstdio>
#include <cstdlib>

#include "author/bitmap.h"
#include "author/writer.h"
#include "photo.h"

int main(int argc, char** argv) {
  namespace author = vexel::author;
  constexpr int kQuality = 82;
  if (argc != 6) {
    std::fputs("usage: cut_photo FILE WIDTH HEIGHT PLACE OUT\n", stderr);
    return 2;
  }
  author::Picture picture;
  std::string error;
  if (!demo::ReadPhoto(argv[1], static_cast<uint16_t>(std::atoi(argv[2])),
                       static_cast<uint16_t>(std::atoi(argv[3])), std::atof(argv[4]), &picture,
                       &error)) {
    std::fprintf(stderr, "cut_photo: %s %s\n", argv[1], error.c_str());
    return 1;
  }
  if (!author::WriteFile(argv[5], author::EncodeJpeg(picture, kQuality))) {
    std::fprintf(stderr, "cut_photo: %s cannot be written\n", argv[5]);
    return 1;
  }
  return 0;
}
