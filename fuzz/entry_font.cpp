// A font file's outlines, as the command embeds them. The record must read back as
// it was made, and the movie that shows it must play.
#include "author/font_list.h"
#include "author/fonts/embed.h"
#include "author/fonts/specimen.h"
#include "entries.h"
#include "fuzz_player.h"

namespace vexel::fuzz {

namespace {

// Characters that the seeds have, and some that a hostile table may have.
constexpr uint32_t kFirst = 0x20;
constexpr uint32_t kLast = 0x5F;
constexpr uint32_t kOther = 0x416;

void Embed(const uint8_t* data, size_t size) {
  const author::FontFile file(author::Bytes(data, data + size));
  std::vector<author::WantedGlyph> wanted;
  for (uint32_t character = kFirst; character <= kLast; ++character)
    wanted.push_back({character, static_cast<uint16_t>(character)});
  if (size % 2 == 0) wanted.push_back({kOther, kOther});
  author::EmbedOptions options;
  options.keepMissing = size % 3 == 0;
  const author::Embedded made = author::EmbedFont(file, wanted, options);
  const author::Bytes movie = author::SpecimenMovie(made.font);
  std::vector<author::ListedFont> fonts;
  if (!author::ListFonts(movie, &fonts) || fonts.size() != 1 || !fonts[0].exact) __builtin_trap();
  FuzzPlayer player;
  player.PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()));
  player.PushDataComplete();
  player.Redraw(true);
}

}  // namespace

void FuzzFont(const uint8_t* data, size_t size) {
  if (size > (1 << 16)) return;
  try {
    Embed(data, size);
  } catch (const author::FontError&) {
    // Most inputs are none.
  }
}

}  // namespace vexel::fuzz
