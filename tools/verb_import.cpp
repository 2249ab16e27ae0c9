// `vexel import`: a movie made of a picture, by the program beside this one.
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "status.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

void Import(const std::string& art, const std::string& out) {
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::string worker = (self.parent_path() / "vexel-import").string();
  std::fflush(stdout);
  execl(worker.c_str(), "vexel-import", art.c_str(), out.c_str(), static_cast<char*>(nullptr));
  throw Failure(kFailed, worker, "cannot be run: " + SystemError());
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
