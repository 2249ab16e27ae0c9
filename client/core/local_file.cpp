#include "client/core/local_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include "client/core/values.h"

namespace vexel::client {

namespace {

// However much is asked for at once, bytes. Fewer would mean the end, so
// larger requests are refused.
constexpr UINT32 kMaxRead = 64 << 20;

int OpenPlain(const std::string& path) {
  // A pipe without a writer must not hold up the loop.
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return -1;
  struct stat status;
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return descriptor;
  close(descriptor);
  return -1;
}

}  // namespace

LocalFile::LocalFile(FileAccess* access, std::string path)
    : path_(std::move(path)), answers_(access->loop, access->pending) {}

LocalFile::~LocalFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

// Variables sent by GET are joined to the name, as to any URL; a file whose
// name holds a question mark comes first.
bool LocalFile::Open() {
  descriptor_ = OpenPlain(path_);
  if (descriptor_ < 0) descriptor_ = OpenPlain(path_.substr(0, path_.find('?')));
  return descriptor_ >= 0;
}

void LocalFile::Later(std::function<void(IZEMFileResponse*)> tell) {
  answers_.Give([this, tell = std::move(tell)] {
    const Ref<LocalFile> self(this);
    const Ref<IZEMFileResponse> response = response_;
    tell(response.get());
  });
}

INT32 LocalFile::Init(UINT32 flags, IZEMFileResponse* response) {
  if (!response || !(flags & ZEM_FILE_READ)) return ZEM_BAD_ARGUMENT;
  if (response_) return ZEM_UNEXPECTED;
  response_ = response;
  Later([this](IZEMFileResponse* told) { told->InitDone(Open() ? ZEM_OK : ZEM_FAILED); });
  return ZEM_OK;
}

INT32 LocalFile::GetName(const char*& name) {
  name = path_.c_str();
  return ZEM_OK;
}

INT32 LocalFile::Close() {
  if (!response_) return ZEM_UNEXPECTED;
  Later([this](IZEMFileResponse* told) {
    if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
    answers_.DropAll();
    response_ = nullptr;
    told->CloseDone(ZEM_OK);
  });
  return ZEM_OK;
}

INT32 LocalFile::Read(UINT32 count) {
  if (!response_) return ZEM_UNEXPECTED;
  if (count > kMaxRead) return ZEM_BAD_ARGUMENT;
  Later([this, count](IZEMFileResponse*) { ReadNow(count); });
  return ZEM_OK;
}

void LocalFile::ReadNow(UINT32 count) {
  const Ref<IZEMFileResponse> told = response_;
  std::vector<uint8_t> bytes(count);
  size_t got = 0;
  bool ok = descriptor_ >= 0;
  while (ok && got < count) {
    const ssize_t more = read(descriptor_, bytes.data() + got, count - got);
    if (more == 0) break;
    if (more > 0) {
      got += static_cast<size_t>(more);
    } else if (errno != EINTR) {
      ok = false;
    }
  }
  bytes.resize(got);
  if (ok) {
    told->ReadDone(ZEM_OK, NewBuffer(bytes).get());
  } else {
    told->ReadDone(ZEM_FAILED, nullptr);
  }
}

INT32 LocalFile::Write(IZEMBuffer*) {
  if (!response_) return ZEM_UNEXPECTED;
  Later([](IZEMFileResponse* told) { told->WriteDone(ZEM_UNEXPECTED); });
  return ZEM_OK;
}

INT32 LocalFile::Seek(UINT32 offset, INT32 relative) {
  if (!response_) return ZEM_UNEXPECTED;
  Later([this, offset, relative](IZEMFileResponse* told) {
    const bool ok = descriptor_ >= 0 &&
                    lseek(descriptor_, relative ? static_cast<INT32>(offset) : off_t{offset},
                          relative ? SEEK_CUR : SEEK_SET) >= 0;
    told->SeekDone(ok ? ZEM_OK : ZEM_FAILED);
  });
  return ZEM_OK;
}

}  // namespace vexel::client
