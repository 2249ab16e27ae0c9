#include "host/fake_files.h"

#include <algorithm>

namespace vexel::test {

INT32 FakeRequest::SetRequestHeaders(IZEMValues* values) {
  Inside();
  headers = values;
  return ZEM_OK;
}

INT32 FakeRequest::GetRequestHeaders(IZEMValues*& values) {
  Inside();
  values = headers.get();
  if (values) values->AddRef();
  return ZEM_OK;
}

INT32 FakeRequest::SetURL(const char* newURL) {
  Inside();
  url = newURL;
  return ZEM_OK;
}

INT32 FakeRequest::GetURL(const char*& out) {
  Inside();
  out = url.c_str();
  return ZEM_OK;
}

void FakeFileSystem::Install(FakeFactory& factory) {
  factory.makers[IID_IZEMRequest] = [] { return Ptr<IUnknown>(new FakeRequest); };
  factory.makers[IID_IZEMFileSystemManager] = [this] {
    return Ptr<IUnknown>(new FakeFileManager(*this));
  };
}

void FakeFileSystem::Answer(int count) {
  while (!waiting.empty() && count-- != 0) {
    const std::function<void()> answer = std::move(waiting.front());
    waiting.pop_front();
    answer();
  }
}

void FakeFileSystem::Later(std::function<void()> answer) {
  if (atOnce) {
    answer();
  } else {
    waiting.push_back(std::move(answer));
  }
}

INT32 FakeFileSystem::Called(const std::string& call) {
  calls.push_back(call);
  return !refuse.empty() && call.starts_with(refuse) ? ZEM_FAILED : ZEM_OK;
}

INT32 FakeFileSystem::StatusOf(const std::string& call) const {
  return failAt == call ? ZEM_FAILED : ZEM_OK;
}

INT32 FakeFileManager::Init(IZEMFileSystemManagerResponse* response) {
  Inside();
  if (m_system.Called("Init") < 0) return ZEM_FAILED;
  m_response = response;
  m_system.Later(
      [response = m_response, status = m_system.StatusOf("Init")] { response->InitDone(status); });
  return ZEM_OK;
}

INT32 FakeFileManager::Cancel() {
  Inside();
  m_response = {};
  return m_system.Called("Cancel");
}

INT32 FakeFileManager::GetFileObject(IZEMRequest* request, IUnknown*) {
  Inside();
  const char* url = nullptr;
  request->GetURL(url);
  if (m_system.Called(std::string("GetFileObject ") + url) < 0) return ZEM_FAILED;
  Ptr<IZEMValues> headers;
  request->GetRequestHeaders(headers.Out());
  Ptr<IZEMBuffer> length;
  if (headers) headers->GetPropertyCString("Content-length", length.Out());
  m_system.contentLength =
      length ? std::string(reinterpret_cast<const char*>(length->GetBuffer()), length->GetSize())
             : "none";
  Ptr<IUnknown> file;
  INT32 status = m_system.StatusOf("GetFileObject");
  const auto found = m_system.files.find(url);
  if (status >= 0 && found != m_system.files.end()) {
    file = new FakeFile(m_system, found->second);
  } else {
    status = ZEM_FAILED;
  }
  m_system.Later([response = m_response, status, file] {
    if (response) response->FileObjectReady(status, file.get());  // not cancelled meanwhile
  });
  return ZEM_OK;
}

INT32 FakeFile::Init(UINT32 flags, IZEMFileResponse* response) {
  Inside();
  if (m_system.Called("Open " + std::to_string(flags)) < 0) return ZEM_FAILED;
  m_response = response;
  m_system.Later(
      [response = m_response, status = m_system.StatusOf("Open")] { response->InitDone(status); });
  return ZEM_OK;
}

INT32 FakeFile::Read(UINT32 count) {
  Inside();
  if (m_system.Called("Read " + std::to_string(count)) < 0) return ZEM_FAILED;
  const size_t size = std::min<size_t>(count, m_bytes.size() - m_place);
  const auto from = m_bytes.begin() + static_cast<long>(m_place);
  Ptr<IZEMBuffer> buffer = MakeBuffer(Bytes(from, from + static_cast<long>(size)));
  // A file whose size is a multiple ends in a failure.
  const INT32 status = size == 0 ? ZEM_FAILED : m_system.StatusOf("Read");
  m_place += size;
  m_system.Later([response = m_response, status, buffer] {
    if (response) response->ReadDone(status, status < 0 ? nullptr : buffer.get());
  });
  return ZEM_OK;
}

INT32 FakeFile::Write(IZEMBuffer*) {
  Inside();
  return m_system.Called("Write");
}

INT32 FakeFile::Close() {
  Inside();
  if (m_system.Called("Close") < 0) return ZEM_FAILED;
  m_system.Later([response = std::move(m_response)] {
    if (response) response->CloseDone(ZEM_OK);
  });
  return ZEM_OK;
}

}  // namespace vexel::test
