// Files by URL, read and written asynchronously: each operation is answered
// exactly once, later, through a response object that the service holds until
// it is closed, cancelled or released.
#pragma once

#include "zem_values.h"

// Answers of a file system. Implemented by the plug-in.
class IZEMFileSystemManagerResponse : public IUnknown {
 public:
  virtual INT32 InitDone(INT32 status) = 0;
  // `object` answers a query for IZEMFileObject; null after a failure.
  virtual INT32 FileObjectReady(INT32 status, IUnknown* object) = 0;
  virtual INT32 DirObjectReady(INT32 status, IUnknown* object) = 0;
};

// Answers of a file. Implemented by the plug-in.
class IZEMFileResponse : public IUnknown {
 public:
  virtual INT32 InitDone(INT32 status) = 0;
  virtual INT32 CloseDone(INT32 status) = 0;
  // At most as many bytes as were asked for; fewer mean that the file ends
  // here. At the very end: none, or a negative status.
  virtual INT32 ReadDone(INT32 status, IZEMBuffer* buffer) = 0;
  virtual INT32 WriteDone(INT32 status) = 0;
  virtual INT32 SeekDone(INT32 status) = 0;
};

// What is asked for: a URL, absolute or a path, "../" in it untreated.
class IZEMRequest : public IUnknown {
 public:
  // "Content-length" is all that a load with POST data sets.
  virtual INT32 SetRequestHeaders(IZEMValues* headers) = 0;
  virtual INT32 GetRequestHeaders(IZEMValues*& headers) = 0;
  virtual INT32 SetResponseHeaders(IZEMValues* headers) = 0;
  virtual INT32 GetResponseHeaders(IZEMValues*& headers) = 0;
  virtual INT32 SetURL(const char* url) = 0;  // copied
  virtual INT32 GetURL(const char*& url) = 0;
};

static const UINT32 ZEM_FILE_READ = 1;
static const UINT32 ZEM_FILE_BINARY = 4;

class IZEMFileObject : public IUnknown {
 public:
  // Opens; `flags` are ZEM_FILE_READ | ZEM_FILE_BINARY. Answered by InitDone.
  virtual INT32 Init(UINT32 flags, IZEMFileResponse* response) = 0;
  virtual INT32 GetName(const char*& name) = 0;
  // Answered by CloseDone, after which the response is let go.
  virtual INT32 Close() = 0;
  virtual INT32 Read(UINT32 count) = 0;                   // answered by ReadDone
  virtual INT32 Write(IZEMBuffer* buffer) = 0;            // answered by WriteDone
  virtual INT32 Seek(UINT32 offset, INT32 relative) = 0;  // answered by SeekDone
};

class IZEMFileSystemManager : public IUnknown {
 public:
  virtual INT32 Init(IZEMFileSystemManagerResponse* response) = 0;  // InitDone
  // No further answer comes, and the response is let go.
  virtual INT32 Cancel() = 0;
  // Answered by FileObjectReady. The second argument is null.
  virtual INT32 GetFileObject(IZEMRequest* request, IUnknown* unused) = 0;
  virtual INT32 GetDirObject(IZEMRequest* request) = 0;  // DirObjectReady
};
