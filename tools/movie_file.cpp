// Looking over a movie with the player's own readers: a ScriptPlayer without a
// stage takes the bytes in, and a parser of its own walks the tags.
#include "movie_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "movie/budget.h"
#include "movie/script_player.h"
#include "movie/sparser.h"
#include "movie/tags.h"
#include "status.h"

namespace vexel::tools {

namespace {

constexpr int32_t kTwipsPerPixel = 20;

// The sizes of a tag's header and of its short form's length field.
constexpr int32_t kShortHeader = 2;
constexpr int32_t kLongHeader = 6;
constexpr uint32_t kLongForm = 63;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string Number(uint64_t n) {
  return std::to_string(n);
}

// Reads at most `limit` bytes behind what `bytes` holds.
void ReadMore(std::FILE* file, size_t limit, std::vector<uint8_t>* bytes) {
  constexpr size_t kPiece = 1 << 20;
  while (limit > 0) {
    const size_t want = std::min(limit, kPiece);
    const size_t at = bytes->size();
    bytes->resize(at + want);
    const size_t got = std::fread(bytes->data() + at, 1, want, file);
    bytes->resize(at + got);
    limit -= got;
    if (got < want) return;
  }
}

void ReadFile(MovieFile* movie) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(movie->path.c_str(), "rb"));
  if (!file) throw Failure(kFailed, movie->path, "cannot be opened: " + SystemError());
  std::vector<uint8_t>& bytes = movie->bytes;
  ReadMore(file.get(), kMovieHeaderBytes, &bytes);
  if (std::ferror(file.get())) throw Failure(kFailed, movie->path, SystemError());
  if (!std::equal(bytes.begin(), bytes.begin() + std::min<ptrdiff_t>(3, std::ssize(bytes)), "VXF"))
    throw Failure(kFailed, movie->path, "is no movie: it does not begin with VXF");
  if (bytes.size() < kMovieHeaderBytes)
    throw Failure(kFailed, movie->path,
                  "is no movie: " + Number(bytes.size()) + " bytes, where the header takes 8");
  movie->version = bytes[3];
  movie->length =
      bytes[4] | uint32_t{bytes[5]} << 8 | uint32_t{bytes[6]} << 16 | uint32_t{bytes[7]} << 24;
  if (movie->length < kMovieHeaderBytes || movie->length > kMaxMovieBytes)
    throw Failure(kFailed, movie->path,
                  "declares a length of " + Number(movie->length) +
                      " bytes at byte 4, outside 8 to " + Number(kMaxMovieBytes));
  ReadMore(file.get(), movie->length - kMovieHeaderBytes, &bytes);
  if (std::ferror(file.get())) throw Failure(kFailed, movie->path, SystemError());
}

std::string TagText(int32_t code) {
  const char* name = TagName(code);
  return name ? "tag " + std::string(name) : "tag of code " + std::to_string(code);
}

// What keeps the tag at `pos` from being framed.
std::string BrokenTag(const SParser& at, int32_t limit) {
  SParser parser = at;
  const int32_t left = limit - at.pos;
  const std::string place = "byte " + std::to_string(at.pos);
  if (left == 0) return "ends at " + place + " without an end tag";
  if (left < kShortHeader) return "ends inside a tag header at " + place;
  const uint32_t word = parser.GetWord();
  const std::string tag = TagText(static_cast<int32_t>(word >> 6));
  uint32_t declared = word & kLongForm;
  int32_t header = kShortHeader;
  if (declared == kLongForm) {
    if (left < kLongHeader) return "ends inside the header of " + tag + " at " + place;
    declared = parser.GetDWord();
    header = kLongHeader;
  }
  return tag + " at " + place + " declares " + Number(declared) + " bytes, " +
         std::to_string(left - header) + " are left";
}

void WalkTags(const ScriptPlayer& player, MovieFile* movie) {
  SParser parser(player.script, player.len, player.startPos);
  for (;;) {
    const int32_t code = parser.GetTag(player.len);
    if (code < 0) {
      movie->endsEarly = BrokenTag(parser, player.len);
      return;
    }
    movie->tagCount++;
    movie->tagCounts[code]++;
    if (code == kTagEnd) return;
    parser.pos = parser.tagEnd;
  }
}

}  // namespace

MovieFile LoadMovie(const std::string& path) {
  MovieFile movie;
  movie.path = path;
  ReadFile(&movie);

  ScriptPlayer player;
  player.PushDataBuf(movie.bytes.data(), static_cast<int32_t>(movie.bytes.size()));
  if (player.scriptErr != 0)
    throw Failure(kFailed, path, "not enough memory for " + Number(movie.length) + " bytes");
  const SRECT& frame = player.frame;
  movie.width = static_cast<int32_t>((int64_t{frame.xmax} - frame.xmin) / kTwipsPerPixel);
  movie.height = static_cast<int32_t>((int64_t{frame.ymax} - frame.ymin) / kTwipsPerPixel);
  movie.rate = static_cast<uint32_t>(player.frameRate) >> 8;
  movie.frames = player.numFrames;

  if (!player.gotHeader) {
    movie.endsEarly = "ends inside the movie's header at byte " + Number(movie.bytes.size());
  } else {
    WalkTags(player, &movie);
    if (movie.endsEarly.empty() && movie.bytes.size() < movie.length)
      movie.endsEarly =
          "declares " + Number(movie.length) + " bytes and has " + Number(movie.bytes.size());
  }
  return movie;
}

void WarnIfEndsEarly(const MovieFile& movie) {
  if (!movie.endsEarly.empty()) Warn(movie.path, movie.endsEarly);
}

}  // namespace vexel::tools
