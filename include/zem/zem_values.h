// Values that both sides make and read: bytes, packets of a stream, and lists
// of named values. Fill an object before it is shared: with more than one
// reference it refuses to be set (ZEM_UNEXPECTED).
#pragma once

#include "zem_unknown.h"

// Bytes.
class IZEMBuffer : public IUnknown {
 public:
  // The bytes, borrowed until the buffer changes or goes, and their count.
  virtual INT32 Get(UINT8*& data, UINT32& size) = 0;
  // Takes a copy of `size` bytes. ZEM_OUT_OF_MEMORY.
  virtual INT32 Set(const UINT8* data, UINT32 size) = 0;
  // Cuts or lengthens; new bytes are undefined. ZEM_OUT_OF_MEMORY leaves all.
  virtual INT32 SetSize(UINT32 size) = 0;
  virtual UINT32 GetSize() = 0;
  // The bytes, borrowed as with Get; null while there are none.
  virtual UINT8* GetBuffer() = 0;
};

// A packet of a stream: bytes and when they are due, or the news that a packet
// was lost.
class IZEMPacket : public IUnknown {
 public:
  // All at once; the buffer comes with a reference and may be null.
  virtual INT32 Get(IZEMBuffer*& buffer, UINT32& time, UINT16& stream, UINT8& qrsFlags,
                    UINT16& qrsRule) = 0;
  // With a reference, or null.
  virtual IZEMBuffer* GetBuffer() = 0;
  virtual UINT32 GetTime() = 0;  // milliseconds of stream time
  virtual UINT16 GetStreamNumber() = 0;
  virtual UINT8 GetQRSFlags() = 0;
  virtual UINT16 GetQRSRuleNumber() = 0;
  virtual INT32 IsLost() = 0;  // not 0: there is no buffer and never will be
  // ZEM_UNEXPECTED if the packet has a buffer.
  virtual INT32 SetAsLost() = 0;
  virtual INT32 Set(IZEMBuffer* buffer, UINT32 time, UINT16 stream, UINT8 qrsFlags,
                    UINT16 qrsRule) = 0;
  // Of a packet that came by RTP: its own time stamp. Other packets answer
  // 0xFFFFFFFF, and ZEM_UNEXPECTED to the two operations behind.
  virtual UINT32 GetRTPTime() = 0;
  virtual INT32 GetRTP(IZEMBuffer*& buffer, UINT32& time, UINT32& rtpTime, UINT16& stream,
                       UINT8& qrsFlags, UINT16& qrsRule) = 0;
  virtual INT32 SetRTP(IZEMBuffer* buffer, UINT32 time, UINT32 rtpTime, UINT16 stream,
                       UINT8 qrsFlags, UINT16 qrsRule) = 0;
};

// Named values of three kinds, each with names of its own: numbers, buffers
// and texts (kept as buffers, the terminating zero included). Setting replaces;
// getting answers ZEM_FAILED for a name that is not there, and the iteration
// does so at its end. Names that come out are borrowed until the list changes;
// buffers that come out carry a reference.
class IZEMValues : public IUnknown {
 public:
  virtual INT32 SetPropertyULONG32(const char* key, UINT32 value) = 0;
  virtual INT32 GetPropertyULONG32(const char* key, UINT32& value) = 0;
  virtual INT32 GetFirstPropertyULONG32(const char*& key, UINT32& value) = 0;
  virtual INT32 GetNextPropertyULONG32(const char*& key, UINT32& value) = 0;

  virtual INT32 SetPropertyBuffer(const char* key, IZEMBuffer* value) = 0;
  virtual INT32 GetPropertyBuffer(const char* key, IZEMBuffer*& value) = 0;
  virtual INT32 GetFirstPropertyBuffer(const char*& key, IZEMBuffer*& value) = 0;
  virtual INT32 GetNextPropertyBuffer(const char*& key, IZEMBuffer*& value) = 0;

  virtual INT32 SetPropertyCString(const char* key, IZEMBuffer* value) = 0;
  virtual INT32 GetPropertyCString(const char* key, IZEMBuffer*& value) = 0;
  virtual INT32 GetFirstPropertyCString(const char*& key, IZEMBuffer*& value) = 0;
  virtual INT32 GetNextPropertyCString(const char*& key, IZEMBuffer*& value) = 0;
};

// Memory that a client lends to all its plug-ins.
class IMalloc : public IUnknown {
 public:
  virtual void* Alloc(UINT32 size) = 0;  // null without memory
  virtual void* Realloc(void* block, UINT32 size) = 0;
  virtual void Free(void* block) = 0;
};
