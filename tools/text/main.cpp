// `vexel-text make TEXT MOVIE [FOLDER...]` and `vexel-text dump MOVIE`: the work of the
// verbs. `vexel-text make-listed LIST TEXT MOVIE [FOLDER...]` also writes down which files the
// text asks for. `vexel-text reference` prints docs/text-form.md. A program of its own for the same
// reason as the importer, whose libraries it needs for the art that a text may take in.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <new>
#include <set>
#include <utility>

#include "author/fonts/wanted.h"
#include "author/importers.h"
#include "author/language/dump.h"
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

// Files that may be fonts.
class TextFiles : public author::DiskFiles {
 public:
  using DiskFiles::DiskFiles;
  bool ReadFont(const std::string& bytes, const std::string& text, author::Font* font,
                std::vector<std::string>* warnings, std::string* error) override {
    return author::TakeFont(bytes, text, font, warnings, error);
  }
};

// Keeps the names of all files that a text asks for, and writes them down, a
// line each, also when the text turns out to be wrong.
class ListedFiles : public TextFiles {
 public:
  ListedFiles(std::string list, std::vector<std::string> folders)
      : TextFiles(std::move(folders)), list_(std::move(list)) {}
  ~ListedFiles() override {
    std::ofstream file(list_);
    for (const std::string& name : names_) file << name << "\n";
  }
  std::string Locate(const std::string& beside, const std::string& named) override {
    names_.insert(beside);
    return DiskFiles::Locate(beside, named);
  }
  bool Read(const std::string& path, size_t limit, std::string* bytes,
            std::string* error) override {
    names_.insert(path);
    return DiskFiles::Read(path, limit, bytes, error);
  }

 private:
  std::string list_;
  std::set<std::string> names_;
};

void Make(const std::string& path, const std::string& out, author::MovieFiles& files) {
  const std::vector<uint8_t> bytes = ReadWhole(path);
  const author::MadeMovie movie =
      author::MakeMovie(path, std::string(bytes.begin(), bytes.end()), files);
  for (const std::string& warning : movie.warnings)
    std::fprintf(stderr, "vexel: %s\n", warning.c_str());
  WriteWholeFile(out, movie.bytes.data(), movie.bytes.size());
}

void Dump(const std::string& path) {
  const std::vector<uint8_t> bytes = ReadWhole(path);
  const std::string text = author::DumpMovie(bytes);
  if (text.empty()) {
    throw Failure(kFailed, path,
                  bytes.size() < 8 ? "is no movie: " + std::to_string(bytes.size()) +
                                         " bytes, where the header takes 8"
                                   : "is no movie: it does not begin with VXF");
  }
  std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace

}  // namespace vexel::tools

int main(int argc, char** argv) {
  using namespace vexel::tools;
  namespace author = vexel::author;
  try {
    if (argc >= 4 && std::strcmp(argv[1], "make") == 0) {
      TextFiles files({argv + 4, argv + argc});
      Make(argv[2], argv[3], files);
    } else if (argc >= 5 && std::strcmp(argv[1], "make-listed") == 0) {
      ListedFiles files(argv[2], {argv + 5, argv + argc});
      Make(argv[3], argv[4], files);
    } else if (argc == 3 && std::strcmp(argv[1], "dump") == 0) {
      Dump(argv[2]);
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
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    Warn("standard output", "cannot be written: " + SystemError());
    return kFailed;
  }
  return kDone;
}
