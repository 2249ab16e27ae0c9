// `vexel-text make TEXT MOVIE [FOLDER...]` and `vexel-text dump MOVIE`: the work of the
// verbs. `vexel-text reference` prints docs/text-form.md. A program of its own for the same reason
// as the importer, whose libraries it needs for the art that a text may take in.
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "author/importers.h"
#include "author/language/make.h"
#include "author/language/reference.h"
#include "out_file.h"
#include "status.h"

namespace vexel::tools {

namespace {

std::vector<uint8_t> ReadWhole(const std::string& path) {
  std::vector<uint8_t> bytes;
  std::string error;
  if (!author::ReadArtFile(path, &bytes, &error))
    throw Failure(kFailed, path, "cannot be read: " + error);
  return bytes;
}

void Make(const std::string& path, const std::string& out, std::vector<std::string> folders) {
  const std::vector<uint8_t> bytes = ReadWhole(path);
  author::DiskFiles files(std::move(folders));
  const author::MadeMovie movie =
      author::MakeMovie(path, std::string(bytes.begin(), bytes.end()), files);
  for (const std::string& warning : movie.warnings)
    std::fprintf(stderr, "vexel: %s\n", warning.c_str());
  WriteWholeFile(out, movie.bytes.data(), movie.bytes.size());
}

}  // namespace

}  // namespace vexel::tools

int main(int argc, char** argv) {
  using namespace vexel::tools;
  namespace author = vexel::author;
  try {
    if (argc >= 4 && std::strcmp(argv[1], "make") == 0) {
      Make(argv[2], argv[3], {argv + 4, argv + argc});
    } else if (argc == 2 && std::strcmp(argv[1], "reference") == 0) {
      const std::string text = author::LanguageReference();
      std::fwrite(text.data(), 1, text.size(), stdout);
    } else {
      throw Failure(kMisused, "vexel-text",
                    "takes make TEXT MOVIE [FOLDER...], dump MOVIE, or reference");
    }
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return failure.status();
  } catch (const author::SourceError& error) {
    std::fprintf(stderr, "vexel: %s\n", error.what());
    return kFailed;
  } catch (const std::bad_alloc&) {
    Warn("memory", "not enough");
    return kFailed;
  }
  return kDone;
}
