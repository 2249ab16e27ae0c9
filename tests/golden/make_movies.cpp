// make_movies FOLDER: writes the movies of the golden pictures there, each as
// NAME.vxf.
#include <cstdio>

#include "golden/movies.h"

using namespace vexel::author;

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_movies FOLDER\n");
    return 2;
  }
  for (const auto list :
       {golden::ShapeMovies, golden::PaintMovies, golden::StageMovies, golden::OutlineMovies}) {
    for (const golden::NamedMovie& movie : list()) {
      const std::string path = std::string(argv[1]) + "/" + movie.name + ".vxf";
      if (!WriteFile(path, movie.make())) {
        std::fprintf(stderr, "make_movies: %s: cannot be written\n", path.c_str());
        return 1;
      }
    }
  }
  return 0;
}
