#include "author/font_list.h"

#include <algorithm>

#include "author/language/dumper.h"
#include "author/language/record_reader.h"
#include "movie/tags.h"

namespace vexel::author {

namespace {

constexpr size_t kPreamble = 8;  // signature, version, length

bool ReadFontTag(std::span<const uint8_t> body, ListedFont* listed) {
  RecordReader in(body);
  listed->id = in.U16();
  const auto record = in.Rest();
  if (!ReadFont2(in, &listed->font)) return false;
  const auto behind = in.Rest();
  listed->font.behind.assign(behind.begin(), behind.end());
  BitWriter again;
  WriteFont2(again, listed->font);
  listed->exact =
      std::equal(record.begin(), record.end(), again.bytes().begin(), again.bytes().end());
  return true;
}

}  // namespace

int16_t ListedFont::BlankAdvance() const {
  const int blank = font.Find(' ');
  return blank == kAuto ? int16_t{0} : font.glyphs[static_cast<size_t>(blank)].advance;
}

bool ListFonts(std::span<const uint8_t> movie, std::vector<ListedFont>* fonts) {
  RecordReader in(movie);
  in.Take(kPreamble);
  int rectBits;
  in.ReadRect(&rectBits);
  in.U16();  // frame rate
  in.U16();  // frame count
  while (in.ok()) {
    const std::optional<FramedTag> tag = FrameTag(in.Rest());
    if (!tag) return false;
    if (tag->code == kTagEnd) return true;
    ListedFont listed;
    if (tag->code == kTagDefineFont2) {
      if (!ReadFontTag(tag->body, &listed)) return false;
      fonts->push_back(std::move(listed));
    }
    in.Take(tag->whole.size());
  }
  return false;
}

}  // namespace vexel::author
