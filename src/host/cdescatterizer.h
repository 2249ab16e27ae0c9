// Puts messages together again from the packets of a stream. Two layouts exist,
// chosen by the stream's header:
//
// - Linear: a sequence of messages of their own. Small ones share a packet, big
//   ones come in fragments. A character that was lost is asked for by its
//   identifier when the movie misses it.
// - Non-linear: the movie file in pieces, each with its file position and the
//   frames that it covers. Bytes go on in file order. A gap is filled at once
//   with empty frames of the same length, so that positions and frame numbers
//   stay right, and asked for by its range; what then comes is written over the
//   filling.
//
// Finished messages go to an IOnPacketHandler. Messages are never looked into.
// All calls come on the client's thread.
#pragma once

#include "host/on_packet_handler.h"
#include "host/request_dictionary.h"
#include "host/simple_map.h"

namespace vexel {

struct CutPacket;

class CDeScatterizer {
 public:
  // Keeps a reference on `factory`, which makes buffers and packets. `handler`
  // is borrowed until destruction.
  CDeScatterizer(IZEMCommonClassFactory* factory, IOnPacketHandler* handler);
  ~CDeScatterizer();
  // Deletes it, now or at the end of the call that is running: a client can let
  // go of the renderer while it makes an object or sends a request.
  void Retire();
  // Between messages; what is at work takes no packet and no header.
  bool IsBusy() const { return m_bBusy; }
  CDeScatterizer(const CDeScatterizer&) = delete;
  CDeScatterizer& operator=(const CDeScatterizer&) = delete;

  // Whose number goes on requests, and where requests go; both borrowed until
  // the next call, either may be null. Requests need both.
  void SetStream(IZEMStream* stream, IZEMBackChannel* backChannel);
  // A stream header came: forgets what an earlier one left and sets the mode.
  void StartHeader(bool nonLinear, UINT32 numPackets);
  // Non-linear: the header brought the first `headLength` bytes of the movie,
  // so packets start there. `movieLength` is the file's length as its head
  // declares it, 0 if unknown: packets that start beyond it are dropped.
  void SetFileStart(UINT32 headLength, UINT32 movieLength);

  // A packet of the stream, as it came; `timeOffset` (milliseconds) is taken
  // off all times, which end at 0. ZEM_BAD_ARGUMENT for null, ZEM_UNEXPECTED
  // from inside the class factory. Requests leave at the very end of the call.
  INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset);

  // The movie missed this character at the stream time `now`. Asks for it, at
  // most once in ten seconds; does nothing in a non-linear stream.
  void RequestLostCharacter(UINT16 id, UINT32 now);
  // Asks for a range of the file; `third` goes on the wire as it is.
  void RequestLostFileRange(UINT32 position, UINT32 length, UINT32 third);

  // A buffer of empty frames for the file from one position to another and from
  // one frame to another, with a reference in place of what `out` held.
  // ZEM_BAD_ARGUMENT for a range that does not go forward, ZEM_FAILED for bytes
  // that no tags fill.
  INT32 CreateDummyFrames(UINT32 fromPosition, UINT32 toPosition, UINT32 fromFrame, UINT32 toFrame,
                          IZEMBuffer*& out);
  // A late write buffer (see IOnPacketHandler) of these bytes, likewise.
  // ZEM_UNEXPECTED without bytes or class factory.
  INT32 CreateLateWriteBuffer(UINT32 position, const UINT8* data, UINT32 size, IZEMBuffer*& out);

 private:
  class Call;
  // A stretch of the file that a packet shows to be missing.
  struct Gap {
    bool found = false;
    UINT32 position = 0, length = 0;
  };

  // Where a lock would go, were there a second thread. There is one thread, but
  // it may come back from inside the class factory.
  void EnterCritical() { m_bBusy = true; }
  void LeaveCritical() { m_bBusy = false; }

  template <class T>
  INT32 Make(const ZEMID& id, T*& out);
  CDeScatterPacket* FindOrAdd(UINT16 id, UINT32 filePosition);
  bool TakeFragment(CDeScatterPacket* packet, const UINT8* data, UINT32 offset, UINT32 size,
                    bool isLast);
  void Destroy(CDeScatterPacket* packet);
  INT32 SendOnPacket(const UINT8* data, UINT32 size, UINT32 time);
  INT32 SendBuffer(IZEMBuffer* buffer, UINT32 time);
  void SendRequest(IZEMPacket* packet, IZEMBuffer* request);
  bool CanRequest() const { return m_pBackChannel && m_pClassFactory && m_pStream; }

  INT32 OnPacketLinear(IZEMPacket* packet, INT32 timeOffset);
  void OnFragment(const UINT8* record, UINT32 length, INT32 timeOffset);

  INT32 OnPacketNonLinear(IZEMPacket* packet, INT32 timeOffset, Gap& gap);
  bool StartsTooFar(UINT32 position) const;
  INT32 InOrder(const CutPacket& cut);
  INT32 SendHead(const CutPacket& cut);
  INT32 SendWholeFrames(const CutPacket& cut);
  INT32 KeepTail(const CutPacket& cut);
  INT32 SendDummyFrames(UINT32 toPosition, UINT32 toFrame, UINT32 time);
  INT32 Late(const CutPacket& cut);
  INT32 AddLate(UINT32 position, const UINT8* data, UINT32 size);
  INT32 AddLate(const CDeScatterPacket& message);
  INT32 LatePart(UINT32 id, const UINT8* data, UINT32 offset, UINT32 size, bool isLast);

  IZEMCommonClassFactory* m_pClassFactory = nullptr;  // reference held
  IZEMStream* m_pStream = nullptr;                    // not owned
  IZEMBackChannel* m_pBackChannel = nullptr;          // not owned
  IOnPacketHandler* m_pHandler;                       // not owned
  CSimpleMap m_Fragments;
  CRequestDictionary m_Requests;
  bool m_bNonLinear = false;
  UINT32 m_ulNumPackets = 0;  // of the header; nothing depends on it
  // Linear: the identifier above 59999 that is being collected, 0 for none.
  UINT16 m_unTransientId = 0;
  // Non-linear, all positions in the file:
  UINT32 m_ulLostCount = 0;         // lost packets since the last good one
  UINT32 m_ulSentPosition = 0;      // up to where bytes have gone out
  UINT32 m_ulNextFrame = 0;         // the frame that goes out next
  UINT32 m_ulExpectedPosition = 0;  // where the next packet in order starts
  UINT32 m_ulMovieLength = 0;       // as declared, 0 if unknown

  INT32 m_nCalls = 0;  // that are running, one inside the other
  bool m_bBusy = false;
  bool m_bRetired = false;
};

}  // namespace vexel
