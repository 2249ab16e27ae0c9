// make_random_movie SEED OUT [fields] [actions]: writes the random movie of a seed,
// for sweeps that run outside this build.
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "author/movie_writer.h"
#include "support/random_movie.h"

int main(int argc, char** argv) {
  using namespace vexel::author;
  if (argc < 3) {
    std::fputs("usage: make_random_movie SEED OUT [fields] [actions]\n", stderr);
    return 2;
  }
  RandomMovieOptions options;
  for (int i = 3; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "fields") {
      options.fields = true;
    } else if (word == "actions") {
      options.actions = true;
    } else {
      std::fprintf(stderr, "make_random_movie: %s: unknown option\n", argv[i]);
      return 2;
    }
  }
  const auto seed = static_cast<uint32_t>(std::strtoul(argv[1], nullptr, 10));
  if (!WriteFile(argv[2], RandomMovie(seed, options))) {
    std::fprintf(stderr, "make_random_movie: %s: cannot write\n", argv[2]);
    return 1;
  }
  return 0;
}
