// The plain twin of the reassembler: the same rules, with a map of single bytes
// for each unfinished message and nothing shared with the real one.
#pragma once

#include <deque>

#include "host/stream_packets.h"

namespace vexel::test {

class PlainReassembly {
 public:
  PlainReassembly(bool nonLinear, UINT32 start, UINT32 length)
      : m_nonLinear(nonLinear), m_sent(start), m_expected(start), m_length(length) {}

  std::vector<RecordingHandler::Message> messages;
  std::vector<RecordingHandler::LateWrite> lateWrites;
  std::vector<Bytes> requests;

  INT32 Put(const Bytes& packet, UINT32 time, INT32 offset) {
    if (!m_nonLinear) {
      Linear(packet, offset);
      return ZEM_OK;
    }
    return NonLinear(packet, Due(time, offset));
  }

  void RequestCharacter(unsigned id, UINT32 now) {
    if (m_nonLinear) return;
    const auto asked = m_asked.find(id);
    if (asked != m_asked.end() && asked->second <= now && now - asked->second <= 10000) return;
    if (asked != m_asked.end() || m_asked.size() < 2048) m_asked[id] = now;
    Message* held = Find(id);
    Message whole(id);
    if (held) {
      held->requested = true;
      if (held->bytes.count(0)) held->bytes[0] |= 4;
    }
    Bytes request = {3, static_cast<UINT8>(id), static_cast<UINT8>(id >> 8)};
    for (const Hole& hole : (held ? held : &whole)->holes) {
      PutBig(request, hole.start, 4);
      PutBig(request, hole.length, 4);
    }
    requests.push_back(request);
  }

 private:
  static constexpr uint64_t kOpen = 0xFFFFFFFF;
  static constexpr uint64_t kLongest = (1 << 24) + 65535;
  static constexpr uint64_t kBudget = 64 << 20;

  struct Hole {
    uint64_t start, length;
  };
  struct Message {
    explicit Message(unsigned number) : id(number) {}
    Bytes Whole() const {
      Bytes whole(total);
      for (const auto& [at, byte] : bytes) {
        if (at < total) whole[at] = byte;
      }
      if (requested && total) whole[0] |= 4;
      return whole;
    }
    unsigned id;
    std::map<uint64_t, UINT8> bytes;
    std::vector<Hole> holes = {{0, kOpen}};
    uint64_t capacity = 0;
    uint64_t total = 0;
    bool ended = false, requested = false;
    UINT32 position = 0;
  };

  static UINT32 Due(UINT32 time, INT32 offset) {
    const int64_t due = int64_t{time} - offset;
    return due < 0 ? 0 : static_cast<UINT32>(due);
  }
  static UINT32 Big(const Bytes& bytes, size_t at, size_t count) {
    UINT32 value = 0;
    for (size_t i = 0; i < count; ++i) value = value << 8 | bytes[at + i];
    return value;
  }

  Message* Find(unsigned id) {
    for (Message& message : m_held) {
      if (message.id == id) return &message;
    }
    return nullptr;
  }
  Message* FindOrAdd(unsigned id, UINT32 position) {
    if (Message* found = Find(id)) return found;
    m_held.emplace_front(id).position = position;
    return &m_held.front();
  }
  void Forget(unsigned id) {
    std::erase_if(m_held, [id](const Message& message) { return message.id == id; });
  }

  // The budget: finished ones go first, then others, always the oldest.
  bool MakeRoom(uint64_t more, unsigned keep) {
    for (;;) {
      uint64_t sum = more;
      for (const Message& message : m_held) sum += message.capacity;
      if (sum <= kBudget) return true;
      std::deque<Message>::iterator victim = m_held.end();
      for (auto it = m_held.begin(); it != m_held.end(); ++it) {
        if (it->id == keep) continue;
        const bool better = victim == m_held.end() || it->holes.empty() || !victim->holes.empty();
        if (better) victim = it;
      }
      if (victim == m_held.end()) return false;
      m_held.erase(victim);
    }
  }

  // Null if nothing of the message is held afterwards.
  Message* Take(unsigned id, const Bytes& data, uint64_t offset, bool isLast) {
    const uint64_t end = offset + data.size();
    if (end <= kLongest) {
      uint64_t capacity = Find(id)->capacity;
      const uint64_t before = capacity;
      while (end >= capacity) capacity += 32767;
      if (capacity == before || MakeRoom(capacity - before, id))
        Place(*Find(id), data, offset, isLast, capacity);
    }
    Message* message = Find(id);
    if (message->capacity) return message;
    Forget(id);
    return nullptr;
  }

  static void Place(Message& message, const Bytes& data, uint64_t offset, bool isLast,
                    uint64_t capacity) {
    const uint64_t size = data.size(), end = offset + size;
    size_t i = 0;
    for (; i < message.holes.size(); ++i) {
      const Hole& hole = message.holes[i];
      if (offset >= hole.start && (hole.length == kOpen || offset < hole.start + hole.length))
        break;
    }
    std::vector<Hole> holes = message.holes;
    if (i < holes.size()) {
      Hole& hole = holes[i];
      const bool open = hole.length == kOpen;
      uint64_t remainder = open ? kOpen : hole.length - std::min(hole.length, size);
      if (open && isLast) remainder = 0;
      if (!open && end == hole.start + hole.length) {
        hole.length -= size;
      } else if (offset == hole.start) {
        hole = {end, remainder};
      } else {
        hole.length = offset - hole.start;
        if (remainder != 0) {
          if (holes.size() == 16) return;
          holes.push_back({end, remainder});
        }
      }
    }
    message.capacity = capacity;
    for (uint64_t k = 0; k < size; ++k) message.bytes[offset + k] = data[k];
    if (isLast) {
      message.ended = true;
      message.total = end;
    }
    std::erase_if(holes, [&](const Hole& hole) {
      return hole.length == 0 || (message.ended && hole.start >= message.total);
    });
    message.holes = holes;
  }

  void Linear(const Bytes& packet, INT32 offset) {
    for (size_t at = 0; at + 8 <= packet.size();) {
      const unsigned flags = packet[at];
      const size_t length = (flags & 15) * 256 + packet[at + 1];
      if (at + 8 + length > packet.size()) return;
      const Bytes payload(packet.begin() + static_cast<long>(at + 8),
                          packet.begin() + static_cast<long>(at + 8 + length));
      const UINT32 number = Big(packet, at + 4, 4);
      const unsigned id = Big(packet, at + 2, 2);
      at += 8 + length;
      if (!(flags & 0x40)) {
        messages.push_back({payload, Due(number, offset)});
        continue;
      }
      if (id >= 60000) {
        if (m_transient && m_transient != id) Forget(m_transient);
        m_transient = id;
      }
      FindOrAdd(id, 0);
      const Message* message = Take(id, payload, flags & 0x80 ? 0 : number, flags & 0x20);
      if (!message || !message->holes.empty()) continue;
      messages.push_back({message->Whole(), Due(0, offset)});
      Forget(id);
      if (m_transient == id) m_transient = 0;
    }
  }

  void Empty(UINT32 toPosition, UINT32 toFrame, UINT32 time) {
    if (toPosition <= m_sent || toFrame < m_frame) return;
    const uint64_t gap = toPosition - m_sent, frames = toFrame - m_frame;
    if (gap != 2 * frames && gap < 2 * frames + 2) return;
    Bytes out;
    for (uint64_t i = 0; i < frames; ++i) Append(out, {0x40, 0});
    const uint64_t rest = gap - 2 * frames;
    if (rest >= 6) {
      const uint64_t n = rest - 6;
      Append(out, {0xFF, 0xF9, static_cast<UINT8>(n), static_cast<UINT8>(n >> 8),
                   static_cast<UINT8>(n >> 16), static_cast<UINT8>(n >> 24)});
    } else if (rest) {
      Append(out, {static_cast<UINT8>(0xC0 + rest - 2), 0xF9});
    }
    out.resize(gap);
    messages.push_back({out, time});
    m_emptied = true;
  }

  void Late(const Message& message) {
    if (message.total) lateWrites.push_back({message.position, message.Whole()});
  }

  INT32 NonLinear(const Bytes& packet, UINT32 time) {
    if (packet.size() < 16) return ZEM_FAILED;
    const UINT32 position = Big(packet, 0, 4);
    const INT32 first = static_cast<INT32>(Big(packet, 4, 2));
    const INT32 last = static_cast<INT32>(Big(packet, 6, 2));
    const bool startsInside = packet[8] & 1, endsInside = packet[8] & 2, single = first == last;
    const Bytes payload(packet.begin() + 16, packet.end());
    const size_t headLength = std::min<size_t>(Big(packet, 12, 2), payload.size());
    const size_t tailStart = std::min<size_t>(Big(packet, 14, 2), payload.size());
    const UINT32 headOffset = Big(packet, 9, 3);
    const auto part = [&](size_t from, size_t to) {
      return Bytes(payload.begin() + static_cast<long>(from),
                   payload.begin() + static_cast<long>(to));
    };
    const bool resent = packet[8] & 4;
    if (!resent && ((packet[8] & 8) || (m_length ? position > m_length
                                                 : position > uint64_t{m_expected} + (64 << 20)))) {
      return ZEM_OK;
    }
    const Bytes head = part(0, single ? payload.size() : headLength);
    const bool endsFrame = !(single && endsInside);
    const INT32 from = first + startsInside, to = last - endsInside;
    const size_t start = startsInside ? headLength : 0;
    const size_t stop = endsInside ? tailStart : payload.size();
    const bool hasTail = endsInside && !(startsInside && single);
    const unsigned firstId = static_cast<unsigned>(first), lastId = static_cast<unsigned>(last);

    if (resent) {
      INT32 result = ZEM_OK;
      const auto offer = [&](unsigned id, const Bytes& bytes, UINT32 offset, bool isLast) {
        if (!Find(id)) return;
        const Message* message = Take(id, bytes, offset, isLast);
        if (!message || !message->holes.empty()) return;
        Late(*message);
        result = message->total ? ZEM_OK : ZEM_UNEXPECTED;
      };
      if (startsInside) offer(firstId, head, headOffset, endsFrame);
      if (to >= from && stop >= start) {
        result = stop > start ? ZEM_OK : ZEM_UNEXPECTED;
        if (stop > start) {
          lateWrites.push_back({position + static_cast<UINT32>(start), part(start, stop)});
        }
      }
      if (result >= 0 && hasTail) offer(lastId, part(tailStart, payload.size()), 0, false);
      return result;
    }

    const UINT32 expected = m_expected;
    m_expected = position + static_cast<UINT32>(payload.size());
    INT32 result = ZEM_OK;
    if (startsInside) {
      FindOrAdd(firstId, position - headOffset);
      const Message* message = Take(firstId, head, headOffset, endsFrame);
      if (endsFrame) {
        const UINT32 end = position + static_cast<UINT32>(head.size());
        const bool complete = message && message->holes.empty();
        if (complete && message->position == m_sent) {
          messages.push_back({message->Whole(), time});
          Forget(firstId);
        } else {
          m_emptied = false;
          const bool backward = end <= m_sent || firstId + 1 < m_frame;
          Empty(end, firstId + 1, time);
          if (!m_emptied) result = backward ? ZEM_BAD_ARGUMENT : ZEM_FAILED;
          if (complete) Late(*message);
        }
        m_sent = end;
        m_frame = firstId + 1;
      }
    }
    if (result >= 0 && to >= from && stop >= start) {
      const UINT32 begin = position + static_cast<UINT32>(start);
      if (begin != m_sent) Empty(begin, static_cast<UINT32>(from), time);
      messages.push_back({part(start, stop), time});
      m_sent = position + static_cast<UINT32>(stop);
      m_frame = static_cast<UINT32>(to) + 1;
    }
    if (result >= 0 && hasTail) {
      FindOrAdd(lastId, position + static_cast<UINT32>(tailStart));
      Take(lastId, part(tailStart, payload.size()), 0, false);
    }
    if (position != expected) {
      Bytes request;
      PutBig(request, expected, 4);
      PutBig(request, position - expected, 4);
      PutBig(request, 0, 4);
      requests.push_back(request);
    }
    return result;
  }

  bool m_nonLinear;
  std::deque<Message> m_held;  // the youngest first
  std::map<unsigned, UINT32> m_asked;
  unsigned m_transient = 0;
  UINT32 m_sent, m_frame = 0, m_expected, m_length;
  bool m_emptied = false;
};

// Gives the same to both; false, with what differs in `what`, if they disagree.
struct TwinReassembly {
  TwinReassembly(bool nonLinear, UINT32 start, UINT32 length)
      : real(nonLinear, start, length), plain(nonLinear, start, length) {}

  bool Put(const Bytes& packet, UINT32 time, INT32 offset) {
    return real.Put(packet, time, offset) == plain.Put(packet, time, offset) || Differ("result");
  }
  void RequestCharacter(UINT16 id, UINT32 now) {
    real.reassembler.RequestLostCharacter(id, now);
    plain.RequestCharacter(id, now);
  }
  bool Agree() {
    const RecordingHandler& handler = real.handler;
    if (handler.messages.size() != plain.messages.size()) return Differ("count of messages");
    for (size_t i = 0; i < plain.messages.size(); ++i) {
      if (handler.messages[i].bytes != plain.messages[i].bytes) return Differ("bytes");
      if (handler.messages[i].time != plain.messages[i].time) return Differ("time");
    }
    if (handler.lateWrites.size() != plain.lateWrites.size()) return Differ("count of late writes");
    for (size_t i = 0; i < plain.lateWrites.size(); ++i) {
      if (handler.lateWrites[i].position != plain.lateWrites[i].position ||
          handler.lateWrites[i].bytes != plain.lateWrites[i].bytes) {
        return Differ("late write");
      }
    }
    return real.Requests() == plain.requests || Differ("requests");
  }
  bool Differ(const char* part) {
    what = part;
    return false;
  }

  Reassembly real;
  PlainReassembly plain;
  std::string what;
};

}  // namespace vexel::test
