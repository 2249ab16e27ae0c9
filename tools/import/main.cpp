// `vexel-import ART MOVIE`: the work of `vexel import`. A program of its own,
// since the libraries that read and flatten drawings take more memory and time
// to load than most movies take to play.

#include "author/importers.h"
#include "out_file.h"
#include "status.h"

namespace vexel::tools {

namespace {

void Import(const std::string& art, const std::string& out) {
  if (author::ArtKindOfName(art) == author::ArtKind::kUnknown)
    throw Failure(kMisused, art, "must end in .svg, .png, .jpg or .jpeg");
  const author::ImportResult result = author::ImportArtFile(art);
  if (!result.ok) throw Failure(kFailed, art, result.error);
  for (const author::ImportWarning& warning : result.warnings) {
    Warn(art, warning.count == 1 ? warning.what
                                 : warning.what + " (" + std::to_string(warning.count) + " times)");
  }
  WriteWholeFile(out, result.movie.data(), result.movie.size());
}

}  // namespace

}  // namespace vexel::tools

int main(int argc, char** argv) {
  using namespace vexel::tools;
  return RunProgram([=] {
    if (argc != 3) throw Failure(kMisused, "vexel-import", "takes ART and MOVIE");
    Import(argv[1], argv[2]);
    return kDone;
  });
}
