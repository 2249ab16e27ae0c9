// `vexel import`: a movie made of a picture.
#include <memory>

#include "author/importers.h"
#include "options.h"
#include "out_file.h"
#include "status.h"
#include "verbs.h"

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

void AddImportVerb(CLI::App* app) {
  const auto art = std::make_shared<std::string>();
  const auto out = std::make_shared<std::string>();
  CLI::App* verb = app->add_subcommand("import", "make a movie of a picture");
  verb->add_option("ART", *art, "the picture, .svg, .png or .jpg")->required();
  verb->add_option("-o", *out, "the movie")->required()->type_name("MOVIE");
  verb->footer("Example: vexel import tiger.svg -o tiger.vxf");
  verb->callback([=] { Import(*art, *out); });
}

}  // namespace vexel::tools
