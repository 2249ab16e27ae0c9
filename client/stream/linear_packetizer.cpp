#include "client/stream/linear_packetizer.h"

#include <algorithm>
#include <set>
#include <stdexcept>

#include "client/stream/record_writer.h"
#include "client/stream/stage_state.h"
#include "movie/tags.h"

namespace vexel::client {

namespace {

// Identifiers of frames too large for a record, each used in turn.
constexpr uint32_t kFirstTransient = 60000;
constexpr uint32_t kTransients = 65536 - kFirstTransient;

constexpr uint8_t kRequestHead = 3;  // the first byte of a request

bool IsDefinition(int32_t code) {
  switch (code) {
    case kTagDefineShape:
    case kTagDefineShape2:
    case kTagDefineShape3:
    case kTagDefineBits:
    case kTagDefineBitsLossless:
    case kTagDefineBitsJPEG:
    case kTagDefineBitsJPEGAlpha:
    case kTagDefineBitsLosslessAlpha:
    case kTagDefineButton:
    case kTagDefineButton2:
    case kTagDefineFont:
    case kTagDefineFont2:
    case kTagDefineText:
    case kTagDefineText2:
    case kTagDefineEditText:
    case kTagDefineSprite:
    case kTagDefineMorphShape:
      return true;
    default:
      return false;
  }
}

bool IsControl(int32_t code) {
  return code == kTagFreeCharacter || code == kTagPlaceObject || code == kTagRemoveObject ||
         code == kTagBackgroundColor || code == kTagFrameActions || code == kTagPlaceObject2 ||
         code == kTagRemoveObject2;
}

// The character that a definition makes or amends; false for a body too short.
bool IdOf(std::span<const uint8_t> body, uint16_t* id) {
  if (body.size() < 2) return false;
  *id = static_cast<uint16_t>(body[0] | body[1] << 8);
  return true;
}

void Append(std::span<const uint8_t> bytes, std::vector<uint8_t>* out) {
  out->insert(out->end(), bytes.begin(), bytes.end());
}

}  // namespace

LinearPacketizer::LinearPacketizer(const MovieIndex* movie, size_t packetBytes, uint32_t keyEveryMs)
    : Packetizer(movie, 0), packetBytes_(std::clamp(packetBytes, kMinPacket, kMaxPacket)) {
  ReadFrames();

  RecordWriter writer(packetBytes_, &packets_);
  StageState stage;
  auto tag = movie->tags().begin();
  uint32_t transient = 0;
  uint32_t lastKey = 0;
  for (size_t k = 0; k < frames_.size(); k++) {
    const uint32_t time = movie->DueTime(k);
    for (; tag != movie->tags().end() && tag->begin < movie->bounds()[k + 1]; ++tag)
      stage.Apply(*movie, *tag);
    for (const size_t i : frames_[k].objects) {
      writer.Message(objects_[i].id, objects_[i].message, time);
      objectOf_[objects_[i].id] = i;
    }

    const uint32_t since = time - lastKey;
    const bool due = k > 0 && keyEveryMs > 0 && since >= keyEveryMs &&
                     (stage.expressible() || since / 2 >= keyEveryMs);
    Bytes message;
    if (due) {
      lastKey = time;
      message = FrameMessage(k, kKeyFrame, stage.KeyFrame(frames_[k].besides));
    } else {
      message = FrameMessage(k, k == 0 ? uint32_t{kAtOnce} : 0u, frames_[k].controls);
    }
    if (message.size() <= kMaxRecordPayload) {
      writer.Whole(message, time);
    } else {
      const uint32_t id = kFirstTransient + transient++ % kTransients;
      writer.Fragments(static_cast<uint16_t>(id), message, 0, message.size(), time);
    }
    writer.EndPacket();
    frames_[k].packetsEnd = packets_.size();
  }
}

void LinearPacketizer::ReadFrames() {
  std::set<uint16_t> used;
  for (const MovieTag& tag : movie().tags()) {
    uint16_t id;
    if (IsDefinition(tag.code) && IdOf(movie().Slice(tag.body, tag.end), &id)) used.insert(id);
  }
  tablesId_ = kFirstTransient - 1;
  while (tablesId_ > 0 && used.contains(tablesId_)) tablesId_--;

  frames_.resize(movie().frames());
  for (const MovieTag& tag : movie().tags()) {
    Frame* frame = &frames_[movie().FrameAt(tag.begin)];
    if (IsDefinition(tag.code)) {
      AddObject(frame, tag);
    } else if (tag.code == kTagDefineButtonExtra || tag.code == kTagDefineFontInfo) {
      Amend(tag);
    } else if (tag.code == kTagDefineJPEGTables) {
      AddTables(frame, tag);
    } else if (IsControl(tag.code)) {
      Append(movie().Slice(tag.begin, tag.end), &frame->controls);
      if (tag.code == kTagFreeCharacter || tag.code == kTagBackgroundColor ||
          tag.code == kTagFrameActions)
        Append(movie().Slice(tag.begin, tag.end), &frame->besides);
    }
  }
}

void LinearPacketizer::AddObject(Frame* frame, const MovieTag& tag) {
  uint16_t id;
  if (!IdOf(movie().Slice(tag.body, tag.end), &id)) return;
  Object object{id, {0}};
  Append(movie().Slice(tag.begin, tag.end), &object.message);
  frame->objects.push_back(objects_.size());
  objects_.push_back(std::move(object));
}

// Joins the message of the definition, which so has to wait for no other.
void LinearPacketizer::Amend(const MovieTag& tag) {
  uint16_t id;
  if (!IdOf(movie().Slice(tag.body, tag.end), &id)) return;
  const auto object = std::find_if(objects_.rbegin(), objects_.rend(),
                                   [id](const Object& one) { return one.id == id; });
  if (object != objects_.rend()) Append(movie().Slice(tag.begin, tag.end), &object->message);
}

void LinearPacketizer::AddTables(Frame* frame, const MovieTag& tag) {
  Object object{tablesId_, {0}};
  Append(movie().Slice(tag.begin, tag.end), &object.message);
  frame->objects.push_back(objects_.size());
  objects_.push_back(std::move(object));
}

LinearPacketizer::Bytes LinearPacketizer::FrameMessage(size_t frame, uint32_t flags,
                                                       std::span<const uint8_t> body) const {
  Bytes message;
  message.reserve(1 + body.size());
  message.push_back(static_cast<uint8_t>(kFrameMessage | flags | (frame & 15) << 4));
  Append(body, &message);
  return message;
}

std::vector<StreamPacket> LinearPacketizer::Answer(std::span<const uint8_t> request) const {
  if (request.size() < 3 || request[0] != kRequestHead || (request.size() - 3) % 8 != 0) return {};
  const uint16_t id = static_cast<uint16_t>(request[1] | request[2] << 8);
  const auto found = objectOf_.find(id);
  if (found == objectOf_.end()) return {};
  Bytes message = objects_[found->second].message;
  message[0] |= kAtOnce;

  std::vector<StreamPacket> answer;
  RecordWriter writer(packetBytes_, &answer);
  for (size_t at = 3; at < request.size(); at += 8) {
    const size_t begin = BigAt(request, at, 4);
    const size_t end = std::min(begin + BigAt(request, at + 4, 4), message.size());
    if (begin >= end) continue;
    if (begin == 0 && end == message.size()) {
      writer.Message(id, message, 0);
    } else {
      writer.Fragments(id, message, begin, end, 0);
    }
  }
  return answer;
}

Packetizer::Jump LinearPacketizer::JumpTo(uint32_t time, size_t sent) const {
  const size_t frame = movie().FrameDueAt(time);
  Jump jump;
  jump.next = frames_[frame].packetsEnd;
  RecordWriter writer(packetBytes_, &jump.first);
  const uint32_t due = movie().DueTime(frame);
  for (size_t k = 0; k <= frame; k++) {
    if (frames_[k].packetsEnd <= sent) continue;
    for (const size_t i : frames_[k].objects)
      writer.Message(objects_[i].id, objects_[i].message, due);
  }
  StageState stage;
  for (const MovieTag& tag : movie().tags()) {
    if (tag.begin >= movie().bounds()[frame + 1]) break;
    stage.Apply(movie(), tag);
  }
  const Bytes message = FrameMessage(frame, kAtOnce, stage.KeyFrame(frames_[frame].besides));
  if (message.size() <= kMaxRecordPayload) {
    writer.Whole(message, due);
  } else {
    writer.Fragments(kFirstTransient, message, 0, message.size(), due);
  }
  return jump;
}

bool LinearPacketizer::MakeLate(std::vector<uint8_t>* bytes) const {
  Bytes kept;
  for (size_t at = 0; at + kRecordHead <= bytes->size();) {
    const std::span<const uint8_t> rest = std::span(*bytes).subspan(at);
    const size_t size = kRecordHead + (BigAt(rest, 0, 2) & 0xFFF);
    if (size > rest.size()) break;
    const bool fragment = rest[0] & kRecordFragment;
    const bool begins = !fragment || (rest[0] & kRecordFirst);
    const bool isFrame = fragment ? BigAt(rest, 2, 2) >= kFirstTransient
                                  : size > kRecordHead && (rest[kRecordHead] & kFrameMessage);
    if (!isFrame) {
      Append(rest.first(size), &kept);
      if (begins && size > kRecordHead) kept[kept.size() - size + kRecordHead] |= kAtOnce;
    }
    at += size;
  }
  *bytes = std::move(kept);
  return !bytes->empty();
}

}  // namespace vexel::client
