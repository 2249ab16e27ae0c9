// From a text to a movie.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "author/font.h"
#include "author/language/source.h"
#include "author/types.h"

namespace vexel::author {

// Where the files come from that a text names.
class MovieFiles {
 public:
  virtual ~MovieFiles() = default;
  // The whole file of at most `limit` bytes; false with a cause in `error`.
  virtual bool Read(const std::string& path, size_t limit, std::string* bytes,
                    std::string* error) = 0;
  // The path to read for the file that a text calls `named`; `beside` is that
  // name as seen from the folder of the text.
  virtual std::string Locate(const std::string& beside, const std::string& named) {
    (void)named;
    return beside;
  }
  // The outlines of a font file's bytes: of the characters of `text`, or of all that bytes
  // can stand for if it is empty. False with a cause in `error`; that there is nobody who reads
  // fonts is one: their reader is a library of its own.
  virtual bool ReadFont(const std::string& bytes, const std::string& text, Font* font,
                        std::vector<std::string>* warnings, std::string* error);
};

// Files as the operating system knows them, first those beside the text that
// names them, then those in `folders`.
class DiskFiles : public MovieFiles {
 public:
  explicit DiskFiles(std::vector<std::string> folders = {}) : folders_(std::move(folders)) {}
  std::string Locate(const std::string& beside, const std::string& named) override;
  bool Read(const std::string& path, size_t limit, std::string* bytes, std::string* error) override;

 private:
  std::vector<std::string> folders_;
};

// No files at all, for texts that nobody vouches for.
class NoFiles : public MovieFiles {
 public:
  bool Read(const std::string& path, size_t limit, std::string* bytes, std::string* error) override;
};

// The largest movie that is made, and the largest file that is taken in.
inline constexpr size_t kMaxMadeMovie = size_t{512} << 20;
inline constexpr size_t kMaxSourceFile = size_t{1} << 30;

struct MadeMovie {
  Bytes bytes;
  // What the movie shows differently than a picture file asks, in the form
  // FILE:LINE:COLUMN: what.
  std::vector<std::string> warnings;
  // All files that were read, the text itself among them.
  std::set<std::string> files;
};

// `name` is the text's own file name: files it names are looked for beside it.
// A mistake throws SourceError. Bounded in time and memory whatever the text.
MadeMovie MakeMovie(const std::string& name, std::string text, MovieFiles& files);

}  // namespace vexel::author
