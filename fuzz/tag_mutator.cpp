// A movie is taken apart into header and tags, changed a few times, and put
// together again with lengths that are true, but for those that were made to
// lie on purpose. A sprite's body is a run of tags behind four bytes, and is
// changed in the same way.
#include "tag_mutator.h"

#include <algorithm>

#include "author/writer.h"
#include "movie/tags.h"

namespace vexel::fuzz {

namespace {

using author::Bytes;
using author::TagStream;

constexpr size_t kFixedHeader = 8;
constexpr size_t kSpriteHead = 4;     // id and frame count
constexpr size_t kMaxBody = 1 << 14;  // what a changed body may grow to
constexpr int kMaxNesting = 4;

uint32_t Word(const uint8_t* at, int bytes) {
  uint32_t word = 0;
  for (int i = 0; i < bytes; ++i) word |= uint32_t(at[i]) << (8 * i);
  return word;
}

// Cuts whole tags off the front; returns the bytes that they took.
size_t ReadTags(const uint8_t* data, size_t size, std::vector<MovieTag>* out) {
  size_t at = 0;
  while (size - at >= 2) {
    const uint32_t word = Word(data + at, 2);
    MovieTag tag;
    tag.code = static_cast<int>(word >> 6);
    uint32_t length = word & 63;
    size_t head = 2;
    if (length == 63) {
      if (size - at < 6) break;
      length = Word(data + at + 2, 4);
      head = 6;
      tag.isLong = true;
    }
    if (length > size - at - head) break;
    tag.body.assign(data + at + head, data + at + head + length);
    at += head + length;
    out->push_back(std::move(tag));
  }
  return at;
}

void WriteTags(const std::vector<MovieTag>& tags, TagStream* out) {
  for (const MovieTag& tag : tags) {
    const auto length = static_cast<uint32_t>(
        tag.claimed < 0 ? static_cast<int64_t>(tag.body.size()) : tag.claimed);
    out->LyingTag(tag.code, length, tag.body,
                  tag.isLong ? author::TagForm::kLong : author::TagForm::kAuto);
  }
}

class Mutation {
 public:
  Mutation(std::vector<MovieTag>* tags, std::mt19937* random, ByteMutator mutateBytes, int depth)
      : tags_(*tags), random_(*random), mutateBytes_(mutateBytes), depth_(depth) {}

  void Run() {
    if (tags_.empty()) {
      tags_.push_back(Fresh());
      return;
    }
    const size_t i = Lot(tags_.size());
    const size_t j = Lot(tags_.size());
    switch (Lot(14)) {
      case 0:
        tags_.erase(At(i));
        break;
      case 1:
        tags_.insert(At(j), MovieTag(tags_[i]));
        break;
      case 2:
        std::swap(tags_[i], tags_[j]);
        break;
      case 3:
      case 4:
      case 5:
        Bytes(&tags_[i].body);
        break;
      case 6:
        tags_[i].code = Lot(4) == 0 ? static_cast<int>(Lot(64)) : AnyKnownCode();
        break;
      case 7:
        Lie(&tags_[i]);
        break;
      case 8:
        // Ids, or the depths of the second form of placements.
        Small(&tags_[i], tags_[i].code == kTagPlaceObject2 ? 3 : 0);
        break;
      case 9:
        Small(&tags_[i], tags_[i].code == kTagPlaceObject2 ? 1 : 2);
        break;
      case 10:
        Splice(tags_[i].body, &tags_[j].body);
        break;
      case 11:
        tags_.insert(At(i), Fresh());
        break;
      case 12:
        Inside();
        break;
      default:
        if (!tags_[i].body.empty()) tags_[i].body[0] ^= static_cast<uint8_t>(1u << Lot(8));
        break;
    }
  }

 private:
  size_t Lot(size_t n) { return random_() % n; }
  std::vector<MovieTag>::iterator At(size_t i) {
    return tags_.begin() + static_cast<std::ptrdiff_t>(i);
  }

  static int AnyKnown(size_t lot) { return kTagInfos[lot].code; }
  int AnyKnownCode() { return AnyKnown(Lot(std::size(kTagInfos))); }

  void Bytes(std::vector<uint8_t>* body) {
    const size_t size = body->size();
    body->resize(std::max(std::min(size + 16, kMaxBody), size));
    body->resize(mutateBytes_(body->data(), size, body->size()));
  }

  void Lie(MovieTag* tag) {
    static constexpr int64_t kLies[] = {0,      1,          2,          62,        63,
                                        0xFFFF, 0x1FFFFFFF, 0x7FFFFFFF, 0xFFFFFFFF};
    tag->claimed = Lot(2) == 0 ? kLies[Lot(std::size(kLies))]
                               : static_cast<int64_t>(Lot(tag->body.size() * 2 + 2));
    tag->isLong = tag->claimed >= 63 || Lot(2) == 0;
  }

  // A small number in the 16 bits at an offset, so that ids and depths meet.
  void Small(MovieTag* tag, size_t offset) {
    if (tag->body.size() < offset + 2) return;
    tag->body[offset] = static_cast<uint8_t>(Lot(24));
    tag->body[offset + 1] = Lot(16) == 0 ? 0xFF : 0;
  }

  void Splice(const std::vector<uint8_t>& from, std::vector<uint8_t>* to) {
    if (from.empty() || to->empty()) return;
    const size_t a = Lot(from.size());
    const size_t n = std::min(1 + Lot(64), from.size() - a);
    const std::vector<uint8_t> piece(from.begin() + static_cast<std::ptrdiff_t>(a),
                                     from.begin() + static_cast<std::ptrdiff_t>(a + n));
    const size_t b = Lot(to->size());
    if (Lot(2) == 0 || to->size() + n > kMaxBody) {
      std::copy_n(piece.begin(), std::min(n, to->size() - b),
                  to->begin() + static_cast<std::ptrdiff_t>(b));
    } else {
      to->insert(to->begin() + static_cast<std::ptrdiff_t>(b), piece.begin(), piece.end());
    }
  }

  MovieTag Fresh() {
    TagStream tags;
    const auto id = static_cast<uint16_t>(Lot(24));
    const auto depth = static_cast<uint16_t>(Lot(12));
    switch (Lot(8)) {
      case 0:
        tags.End();
        break;
      case 1:
        tags.FreeCharacter(id);
        break;
      case 2:
        tags.RemoveObject(depth);
        break;
      case 3: {
        author::Placement placement;
        placement.depth = depth;
        placement.character = id;
        if (Lot(2) == 0) placement.matrix = author::Matrix::Rotate(double(Lot(360)));
        if (Lot(3) == 0) placement.clipDepth = static_cast<uint16_t>(Lot(16));
        if (Lot(3) == 0) placement.ratio = static_cast<uint16_t>(random_());
        tags.Place(placement);
        break;
      }
      case 4: {
        author::Placement placement;
        placement.move = true;
        placement.depth = depth;
        if (Lot(2) == 0) placement.character = id;
        placement.matrix = author::Matrix::Scale(double(Lot(64)) / 16, double(Lot(64)) / 16);
        tags.Place(placement);
        break;
      }
      case 5:
        tags.PlaceObject(id, depth);
        break;
      default:
        tags.FrameEnd();
        break;
    }
    std::vector<MovieTag> read;
    ReadTags(tags.bytes().data(), tags.bytes().size(), &read);
    return read.front();
  }

  // A change in the tags of a sprite.
  void Inside() {
    std::vector<size_t> sprites;
    for (size_t i = 0; i < tags_.size(); ++i) {
      if (tags_[i].code == kTagDefineSprite && tags_[i].body.size() >= kSpriteHead) {
        sprites.push_back(i);
      }
    }
    if (sprites.empty() || depth_ >= kMaxNesting) return;
    std::vector<uint8_t>& body = tags_[sprites[Lot(sprites.size())]].body;
    std::vector<MovieTag> inner;
    const size_t used =
        kSpriteHead + ReadTags(body.data() + kSpriteHead, body.size() - kSpriteHead, &inner);
    MutateTags(&inner, &random_, mutateBytes_, depth_ + 1);
    TagStream out;
    WriteTags(inner, &out);
    std::vector<uint8_t> changed(body.begin(), body.begin() + kSpriteHead);
    changed.insert(changed.end(), out.bytes().begin(), out.bytes().end());
    changed.insert(changed.end(), body.begin() + static_cast<std::ptrdiff_t>(used), body.end());
    body = std::move(changed);
  }

  std::vector<MovieTag>& tags_;
  std::mt19937& random_;
  ByteMutator mutateBytes_;
  int depth_;
};

}  // namespace

bool ReadTaggedMovie(const uint8_t* data, size_t size, TaggedMovie* out) {
  if (size < kFixedHeader + 1) return false;
  const size_t rect = (5 + 4 * size_t(data[kFixedHeader] >> 3) + 7) / 8;
  const size_t head = kFixedHeader + rect + 4;
  if (size < head) return false;
  out->header.assign(data, data + head);
  const size_t used = head + ReadTags(data + head, size - head, &out->tags);
  out->rest.assign(data + used, data + size);
  return true;
}

std::vector<uint8_t> WriteTaggedMovie(const TaggedMovie& movie, bool length) {
  TagStream tags;
  WriteTags(movie.tags, &tags);
  std::vector<uint8_t> bytes = movie.header;
  bytes.insert(bytes.end(), tags.bytes().begin(), tags.bytes().end());
  bytes.insert(bytes.end(), movie.rest.begin(), movie.rest.end());
  for (size_t i = 0; length && i < 4; ++i) {
    bytes[4 + i] = static_cast<uint8_t>(bytes.size() >> (8 * i));
  }
  return bytes;
}

void MutateTags(std::vector<MovieTag>* tags, std::mt19937* random, ByteMutator mutateBytes,
                int depth) {
  Mutation(tags, random, mutateBytes, depth).Run();
}

}  // namespace vexel::fuzz
