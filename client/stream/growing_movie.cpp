#include "client/stream/growing_movie.h"

#include <algorithm>
#include <stdexcept>

#include "client/stream/nonlinear_packetizer.h"
#include "movie/tags.h"

namespace vexel::client {

namespace {

constexpr size_t kFileHead = 8;       // signature, version, length
constexpr size_t kMaxFile = 1 << 29;  // bytes
constexpr size_t kMaxFrames = 65536;  // their numbers have two bytes
constexpr uint32_t kLongForm = 63;    // in the length field of a tag's header
// Movies that say less than a frame a second are shown at this rate.
constexpr uint32_t kRateForNone = 12;

uint32_t LittleAt(const std::vector<uint8_t>& bytes, size_t at, int count) {
  uint32_t value = 0;
  for (int i = count - 1; i >= 0; i--) value = value << 8 | bytes[at + static_cast<size_t>(i)];
  return value;
}

}  // namespace

bool GrowingMovie::ReadHead() {
  constexpr uint8_t kSignature[] = {'V', 'X', 'F'};
  const size_t known = std::min(bytes_.size(), sizeof kSignature);
  if (!std::equal(kSignature, kSignature + known, bytes_.begin()))
    throw std::runtime_error("This is not a movie, whatever its name may say.");
  if (bytes_.size() <= kFileHead) return false;
  length_ = LittleAt(bytes_, 4, 4);
  // A rectangle of four numbers, whose width stands in five bits before them.
  const size_t rectBits = 5 + 4 * static_cast<size_t>(bytes_[kFileHead] >> 3);
  const size_t head = kFileHead + (rectBits + 7) / 8 + 4;
  if (length_ < head) throw std::runtime_error("The movie is damaged: it ends in its head.");
  if (length_ > kMaxFile) throw std::runtime_error("The movie is too large, or damaged.");
  if (bytes_.size() < head) return false;
  rate_ = LittleAt(bytes_, head - 4, 2) >> 8;
  if (rate_ == 0) rate_ = kRateForNone;
  declaredFrames_ = LittleAt(bytes_, head - 2, 2);
  headSize_ = frameBegin_ = bytesOut_ = tagAt_ = head;
  return true;
}

void GrowingMovie::EndFrame(size_t end) {
  if (framesIn_ == kMaxFrames) throw std::runtime_error("The movie has too many frames.");
  framesIn_++;
  frameBegin_ = end;
  frameEnded_ = false;
}

void GrowingMovie::ReadTags() {
  while (!ended_ && bytes_.size() - tagAt_ >= 2) {
    const uint32_t word = LittleAt(bytes_, tagAt_, 2);
    const auto code = static_cast<int32_t>(word >> 6);
    if (code == kTagEnd) {
      // The last frame takes what follows it.
      ended_ = true;
      return;
    }
    if (frameEnded_) EndFrame(tagAt_);
    size_t size = word & kLongForm;
    size_t body = tagAt_ + 2;
    if (size == kLongForm) {
      if (bytes_.size() - body < 4) return;
      size = LittleAt(bytes_, body, 4);
      body += 4;
    }
    if (bytes_.size() - body < size) return;
    tagAt_ = body + size;
    if (code == kTagFrameEnd) frameEnded_ = true;
  }
}

void GrowingMovie::Append(std::span<const uint8_t> bytes) {
  if (finished_) return;
  const size_t room = (ready() ? length_ : kMaxFile) - bytes_.size();
  const auto taken = bytes.first(std::min(bytes.size(), room));
  bytes_.insert(bytes_.end(), taken.begin(), taken.end());
  if (!ready()) {
    if (!ReadHead()) return;
    if (bytes_.size() > length_) bytes_.resize(length_);
  }
  ReadTags();
  if (bytes_.size() == length_) Finish();
}

void GrowingMovie::Finish() {
  if (finished_) return;
  if (!ready()) throw std::runtime_error("This is not a movie: it ends in its head.");
  if (bytes_.size() == headSize_) throw std::runtime_error("The movie is empty.");
  if (frameBegin_ < bytes_.size()) EndFrame(bytes_.size());
  finished_ = true;
}

uint32_t GrowingMovie::DueTime(size_t frame) const {
  return static_cast<uint32_t>((uint64_t{frame} * 1000 + rate_ - 1) / rate_);
}

size_t GrowingMovie::FrameDueAt(uint32_t time) const {
  return static_cast<size_t>(uint64_t{time} * rate_ / 1000);
}

int GrowingMovie::percent() const {
  return length_ == 0 ? 0 : static_cast<int>(uint64_t{bytes_.size()} * 100 / length_);
}

std::optional<StreamPacket> GrowingMovie::TakePacket() {
  if (framesOut_ == framesIn_) return {};
  StreamPacket packet;
  packet.time = DueTime(framesOut_);
  packet.bytes.reserve(kNonLinearHead + frameBegin_ - bytesOut_);
  AppendBig(static_cast<uint32_t>(bytesOut_), 4, &packet.bytes);
  AppendBig(static_cast<uint32_t>(framesOut_), 2, &packet.bytes);
  AppendBig(static_cast<uint32_t>(framesIn_ - 1), 2, &packet.bytes);
  packet.bytes.resize(kNonLinearHead);  // whole frames, so nothing else to tell
  const auto payload = std::span(bytes_).subspan(bytesOut_, frameBegin_ - bytesOut_);
  packet.bytes.insert(packet.bytes.end(), payload.begin(), payload.end());
  framesOut_ = framesIn_;
  bytesOut_ = frameBegin_;
  return packet;
}

}  // namespace vexel::client
