#include "client/stream/stage_state.h"

#include <algorithm>

#include "author/bit_writer.h"
#include "author/check/tag_reader.h"
#include "author/tag_stream.h"
#include "movie/tags.h"

namespace vexel::client {

namespace {

// Flags of a placement of the second form.
enum PlaceFlags : uint32_t {
  kMove = 0x01,
  kHasCharacter = 0x02,
  kHasMatrix = 0x04,
  kHasCxform = 0x08,
};

// Bits of a colour transform's flags.
constexpr uint32_t kMul = 1;
constexpr uint32_t kAdd = 2;

constexpr uint8_t kIdentity[] = {0};  // a matrix without scale, turn and shift

std::vector<uint8_t> ReadMatrix(author::TagReader* reader, std::span<const uint8_t> body) {
  const size_t begin = reader->pos();
  reader->Matrix();
  const size_t end = reader->pos();
  return {body.begin() + static_cast<std::ptrdiff_t>(begin),
          body.begin() + static_cast<std::ptrdiff_t>(end)};
}

template <class Cxform>
Cxform ReadCxform(author::TagReader* reader, bool alpha) {
  Cxform cxform;
  reader->Align();
  cxform.flags = reader->Bits(2);
  const int width = static_cast<int>(reader->Bits(4));
  const int terms = alpha ? 4 : 3;
  for (int i = 0; (cxform.flags & kMul) && i < terms; i++) cxform.mul[i] = reader->SBits(width);
  for (int i = 0; (cxform.flags & kAdd) && i < terms; i++) cxform.add[i] = reader->SBits(width);
  return cxform;
}

}  // namespace

std::vector<StageState::Placed>::iterator StageState::At(uint16_t depth) {
  return std::find_if(placed_.begin(), placed_.end(),
                      [depth](const Placed& one) { return one.depth >= depth; });
}

void StageState::Remove(uint16_t depth) {
  const auto found = At(depth);
  if (found != placed_.end() && found->depth == depth) placed_.erase(found);
}

void StageState::Place(std::span<const uint8_t> body) {
  author::TagReader reader(body, 0);
  Placed fresh;
  fresh.character = static_cast<uint16_t>(reader.U16());
  fresh.depth = static_cast<uint16_t>(reader.U16());
  fresh.matrix = ReadMatrix(&reader, body);
  if (reader.left() > 0) fresh.cxform = ReadCxform<Cxform>(&reader, false);
  placed_.insert(At(fresh.depth), std::move(fresh));
}

void StageState::Place2(std::span<const uint8_t> body) {
  author::TagReader reader(body, 0);
  const uint32_t flags = reader.U8();
  Placed fresh;
  fresh.matrix.assign(std::begin(kIdentity), std::end(kIdentity));
  fresh.depth = static_cast<uint16_t>(reader.U16());
  if (flags & kHasCharacter) fresh.character = static_cast<uint16_t>(reader.U16());
  if (flags & kHasMatrix) fresh.matrix = ReadMatrix(&reader, body);
  if (flags & kHasCxform) fresh.cxform = ReadCxform<Cxform>(&reader, true);
  const auto at = At(fresh.depth);
  if (!(flags & kMove)) {
    // Without a character there is nothing to see, nor to repeat.
    if (flags & kHasCharacter) placed_.insert(at, std::move(fresh));
    return;
  }
  if (at == placed_.end() || at->depth != fresh.depth) return;
  // Buttons and sprites live on: neither becomes another kind of thing.
  if ((flags & kHasCharacter) && kinds_[at->character] == kinds_[fresh.character])
    at->character = fresh.character;
  if (flags & kHasMatrix) at->matrix = std::move(fresh.matrix);
  if (flags & kHasCxform) at->cxform = fresh.cxform;
}

void StageState::Apply(const MovieIndex& movie, const MovieTag& tag) {
  const auto body = movie.Slice(tag.body, tag.end);
  author::TagReader reader(body, 0);
  try {
    switch (tag.code) {
      case kTagDefineButton:
      case kTagDefineButton2:
        kinds_[static_cast<uint16_t>(reader.U16())] = Kind::kButton;
        break;
      case kTagDefineSprite:
        kinds_[static_cast<uint16_t>(reader.U16())] = Kind::kSprite;
        break;
      case kTagPlaceObject:
        Place(body);
        break;
      case kTagPlaceObject2:
        Place2(body);
        break;
      case kTagRemoveObject:
        reader.U16();
        Remove(static_cast<uint16_t>(reader.U16()));
        break;
      case kTagRemoveObject2:
        Remove(static_cast<uint16_t>(reader.U16()));
        break;
      default:
        break;
    }
  } catch (const author::CutShort&) {
    // Players read zeros there; a source that does not know shows nothing.
  }
}

bool StageState::expressible() const {
  return std::all_of(placed_.begin(), placed_.end(), [](const Placed& one) {
    return one.cxform.mul[3] == 256 && one.cxform.add[3] == 0;
  });
}

std::vector<uint8_t> StageState::KeyFrame(std::span<const uint8_t> extra) const {
  author::TagStream out;
  out.SyncFrame().Raw(extra);
  for (const Placed& one : placed_) {
    author::BitWriter body;
    body.U16(one.character);
    body.U16(one.depth);
    body.Append(one.matrix);
    if (const uint32_t flags = one.cxform.flags) {
      std::vector<int32_t> terms;
      if (flags & kMul) terms.insert(terms.end(), one.cxform.mul, one.cxform.mul + 3);
      if (flags & kAdd) terms.insert(terms.end(), one.cxform.add, one.cxform.add + 3);
      const int width = author::SignedWidth(terms);
      body.Bits(flags, 2);
      body.Bits(static_cast<uint32_t>(width), 4);
      for (const int32_t term : terms) body.SBits(term, width);
    }
    out.Tag(kTagPlaceObject, body.bytes());
  }
  return out.bytes();
}

}  // namespace vexel::client
