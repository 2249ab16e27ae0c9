// `vexel watch`: a picture of a movie that is being written. Whenever the text,
// or a file that it takes in, changes, the movie is made again and the same
// frame drawn again. Both are done by the command itself, in processes of
// their own.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "file_watch.h"
#include "options.h"
#include "picture_out.h"
#include "status.h"
#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

namespace {

struct WatchOptions {
  std::string text;
  std::string out;
  std::vector<std::string> folders;
  std::string frame;
  std::string size;
  std::string quality;
  bool once = false;
};

// A folder of its own, gone at the end.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::error_code error;
    path_ = (std::filesystem::temp_directory_path(error) / "vexel-watch-XXXXXX").string();
    if (!mkdtemp(path_.data())) throw Failure(kFailed, path_, "cannot be made: " + SystemError());
  }
  ~ScratchFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  std::string File(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

std::set<std::string> ReadLines(const std::string& path) {
  std::set<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) lines.insert(line);
  return lines;
}

// Makes the movie; `files` becomes the text and what it takes in.
int Make(const WatchOptions& options, const ScratchFolder& scratch, std::set<std::string>* files) {
  const std::string list = scratch.File("files");
  std::remove(list.c_str());
  std::vector<std::string> words = {"make-listed", list, options.text, scratch.File("movie.vxf")};
  words.insert(words.end(), options.folders.begin(), options.folders.end());
  const int status = RunChild("vexel-text", words);
  *files = ReadLines(list);
  files->insert(options.text);
  return status;
}

int Draw(const WatchOptions& options, const ScratchFolder& scratch) {
  std::vector<std::string> words = {"render", scratch.File("movie.vxf"), "-o", options.out};
  const auto option = [&](const char* name, const std::string& value) {
    if (!value.empty()) words.insert(words.end(), {name, value});
  };
  option("--frame", options.frame);
  option("--size", options.size);
  option("--quality", options.quality);
  const int status = RunChild("vexel", words);
  if (status == kDone) {
    std::printf("%s\n", options.out.c_str());
    std::fflush(stdout);
  }
  return status;
}

// Whether any of the files is younger than a moment.
bool AnyNewer(const std::set<std::string>& files, std::filesystem::file_time_type moment) {
  for (const std::string& file : files) {
    std::error_code error;
    if (std::filesystem::last_write_time(file, error) > moment && !error) return true;
  }
  return false;
}

void Watch(const WatchOptions& options) {
  if (PictureKindOf(options.out) == PictureKind::kNone)
    throw Failure(kMisused, options.out, "must end in .png or .raw");
  const ScratchFolder scratch;
  FileWatch watch;
  for (;;) {
    const auto begin = std::filesystem::file_time_type::clock::now();
    std::set<std::string> files;
    int status = Make(options, scratch, &files);
    watch.Watch(files);
    // What changed before it was watched is made again at once.
    if (!options.once && AnyNewer(files, begin)) continue;
    if (status == kDone) status = Draw(options, scratch);
    // A wrong value of an option stays wrong.
    if (status == kMisused) throw Failure(kMisused, "watch", "the picture cannot be drawn");
    if (options.once) {
      if (status != kDone) throw Failure(kFailed, options.text, "is not drawn");
      return;
    }
    if (!watch.Wait()) return;
  }
}

}  // namespace

void AddWatchVerb(CLI::App* app) {
  const auto options = std::make_shared<WatchOptions>();
  CLI::App* verb =
      AddVerb(app, "watch", "draw a frame of a movie's text again whenever it changes");
  AddNeededText(verb, "TEXT", "", &options->text, "the text, see docs/text-form.md");
  AddNeededText(verb, "-o", "PICTURE", &options->out, "the picture, .png or .raw");
  AddFolderOption(verb, &options->folders);
  AddText(verb, "--frame", "N", &options->frame, "steps before the picture");
  AddText(verb, "--size", "WxH", &options->size, "the client rectangle");
  AddText(verb, "--quality", "QUALITY", &options->quality, "low or high");
  AddFlag(verb, "--once", &options->once, "draw it once and end");
  SetFooter(verb,
            "Files that the text takes in are watched too. Mistakes are told, and watching goes\n"
            "on; Ctrl-C ends it.\n\n"
            "Example: vexel watch landscape.vxt -o landscape.png --frame 20");
  SetRun(verb, [=] { Watch(*options); });
}

}  // namespace vexel::tools
