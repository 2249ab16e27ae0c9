// The plug-in's own IZEMPacket, made without the host's class factory.
#pragma once

#include "zem/zem_values.h"

namespace vexel {

// Starts with a count of 0: the maker takes the first reference.
class CQKPacket : public IZEMPacket {
 public:
  CQKPacket();
  CQKPacket(const CQKPacket&) = delete;
  CQKPacket& operator=(const CQKPacket&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;

  INT32 Get(IZEMBuffer*& bytes, UINT32& packetTime, UINT16& stream, UINT8& flags,
            UINT16& rule) override;
  IZEMBuffer* GetBuffer() override;
  UINT32 GetTime() override { return time; }
  UINT16 GetStreamNumber() override { return streamNumber; }
  UINT8 GetQRSFlags() override { return qrsFlags; }
  UINT16 GetQRSRuleNumber() override { return qrsRuleNumber; }
  INT32 IsLost() override { return lost; }
  INT32 SetAsLost() override;
  INT32 Set(IZEMBuffer* bytes, UINT32 packetTime, UINT16 stream, UINT8 flags, UINT16 rule) override;
  UINT32 GetRTPTime() override { return 0xFFFFFFFF; }
  INT32 GetRTP(IZEMBuffer*& bytes, UINT32& packetTime, UINT32& stamp, UINT16& stream, UINT8& flags,
               UINT16& rule) override;
  INT32 SetRTP(IZEMBuffer* bytes, UINT32 packetTime, UINT32 stamp, UINT16 stream, UINT8 flags,
               UINT16 rule) override;

 protected:
  ~CQKPacket();
  UINT32 DropRef() { return static_cast<UINT32>(--refCount); }

 private:
  INT32 refCount;
  IZEMBuffer* buffer;  // one reference, or null
  UINT32 time;         // milliseconds of stream time
  UINT16 streamNumber;
  UINT8 qrsFlags;
  UINT16 qrsRuleNumber;
  bool lost;
};

// A packet that carries the time stamp of its transport beside its time.
class CQKRTPPacket final : public CQKPacket {
 public:
  CQKRTPPacket() : rtpTime(0) {}

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 Release() override;
  INT32 Set(IZEMBuffer* bytes, UINT32 packetTime, UINT16 stream, UINT8 flags, UINT16 rule) override;
  UINT32 GetRTPTime() override { return rtpTime; }
  INT32 GetRTP(IZEMBuffer*& bytes, UINT32& packetTime, UINT32& stamp, UINT16& stream, UINT8& flags,
               UINT16& rule) override;
  INT32 SetRTP(IZEMBuffer* bytes, UINT32 packetTime, UINT32 stamp, UINT16 stream, UINT8 flags,
               UINT16 rule) override;

 private:
  ~CQKRTPPacket() = default;

  UINT32 rtpTime;
};

}  // namespace vexel
