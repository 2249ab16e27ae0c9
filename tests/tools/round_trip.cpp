// Dumps movies and makes the texts again: the same bytes must come out.
//
//   round_trip [--random FIRST COUNT] [--nasty FIRST COUNT] [--damaged FIRST COUNT]
//              [--show] MOVIE...
//
// Random and nasty movies go by seed; damaged ones are random movies with a few
// bytes changed, or cut short. Prints how many movies were seen and how many
// tags had to be printed as plain bytes; exits 1 after naming each movie that
// came out differently. --show prints those plain tags.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "author/language/dump.h"
#include "author/language/make.h"
#include "nasty_movie.h"
#include "support/random_movie.h"

namespace vexel::author {

namespace {

struct Tally {
  size_t movies = 0;
  size_t wrong = 0;
  size_t plain = 0;
  size_t bytes = 0;
  bool show = false;
};

void CountPlain(const std::string& text, const std::string& name, Tally* tally) {
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    const size_t first = std::min(text.find_first_not_of(' ', at), end);
    const bool plain = text.compare(first, 4, "tag ") == 0 || text.compare(first, 3, "raw") == 0;
    if (plain) {
      ++tally->plain;
      if (tally->show)
        std::printf("%s: %s\n", name.c_str(),
                    text.substr(first, std::min<size_t>(end - first, 70)).c_str());
    }
    at = end + 1;
  }
}

void Check(const Bytes& movie, const std::string& name, Tally* tally) {
  ++tally->movies;
  tally->bytes += movie.size();
  const std::string text = DumpMovie(movie);
  if (text.empty()) return;  // no movie at all
  CountPlain(text, name, tally);
  NoFiles files;
  try {
    if (MakeMovie("text", text, files).bytes == movie) return;
    std::printf("%s: comes out differently\n", name.c_str());
  } catch (const SourceError& error) {
    std::printf("%s: %s\n", name.c_str(), error.what());
  }
  ++tally->wrong;
}

Bytes RandomOne(uint32_t seed) {
  RandomMovieOptions options;
  options.fields = seed % 2 == 0;
  options.actions = seed % 3 == 0;
  return RandomMovie(seed, options);
}

Bytes Damaged(uint32_t seed) {
  Bytes movie = RandomOne(seed);
  std::mt19937 random(seed);
  const size_t changes = 1 + random() % 8;
  for (size_t i = 0; i < changes; ++i) {
    // The first bytes say that it is a movie at all.
    movie[8 + random() % (movie.size() - 8)] = static_cast<uint8_t>(random());
  }
  if (random() % 4 == 0) movie.resize(8 + random() % (movie.size() - 8));
  return movie;
}

Bytes ReadMovie(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

int Run(int argc, char** argv) {
  Tally tally;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--show") {
      tally.show = true;
      continue;
    }
    if (word.rfind("--", 0) != 0) {
      const Bytes movie = ReadMovie(argv[i]);
      if (movie.empty()) {
        std::printf("%s: cannot be read\n", argv[i]);
        return 1;
      }
      Check(movie, word, &tally);
      continue;
    }
    if (i + 2 >= argc) return 2;
    const auto first = static_cast<uint32_t>(std::strtoul(argv[i + 1], nullptr, 10));
    const auto count = static_cast<uint32_t>(std::strtoul(argv[i + 2], nullptr, 10));
    i += 2;
    for (uint32_t seed = first; seed < first + count; ++seed) {
      const std::string name = word.substr(2) + " " + std::to_string(seed);
      if (word == "--random") {
        Check(RandomOne(seed), name, &tally);
      } else if (word == "--nasty") {
        Check(model::MakeNastyMovie(seed).bytes, name, &tally);
      } else if (word == "--damaged") {
        Check(Damaged(seed), name, &tally);
      } else {
        return 2;
      }
    }
  }
  std::printf("movies %zu, bytes %zu, plain tags %zu, wrong %zu\n", tally.movies, tally.bytes,
              tally.plain, tally.wrong);
  return tally.wrong == 0 ? 0 : 1;
}

}  // namespace

}  // namespace vexel::author

int main(int argc, char** argv) {
  return vexel::author::Run(argc, argv);
}
