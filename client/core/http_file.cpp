// The download only fills in what has come; calls are answered from the loop,
// so nothing of the plug-in runs inside libcurl.
#include "client/core/http_file.h"

#include <algorithm>
#include <utility>

#include "client/core/values.h"

namespace vexel::client {

namespace {

// Received ahead of the reader, bytes.
constexpr size_t kMaxAhead = 1 << 20;
constexpr UINT32 kMaxRead = 64 << 20;

}  // namespace

HttpFile::HttpFile(FileAccess* access, std::string url)
    : access_(access), url_(std::move(url)), answers_(access->loop, access->pending) {}

HttpFile::~HttpFile() {
  DropCalls();
}

void HttpFile::Later(std::function<void(IZEMFileResponse*)> tell) {
  answers_.Give([this, tell = std::move(tell)] {
    const Ref<HttpFile> self(this);
    const Ref<IZEMFileResponse> response = response_;
    tell(response.get());
  });
}

void HttpFile::Wait(Call call) {
  ++*access_->pending;
  calls_.push_back(call);
  Pump();
}

void HttpFile::DropCalls() {
  *access_->pending -= static_cast<int>(calls_.size());
  calls_.clear();
}

void HttpFile::Pump() {
  while (!calls_.empty()) {
    const Call call = calls_.front();
    if (call.kind == Kind::kInit) {
      if (!begun_ && !failed_) break;
      Later([failed = failed_](IZEMFileResponse* told) {
        told->InitDone(failed ? ZEM_FAILED : ZEM_OK);
      });
    } else {
      if (!ended_ && !failed_ && ahead_.size() < call.count) break;
      const size_t count = std::min<size_t>(ahead_.size(), call.count);
      const bool ok = !failed_ || count > 0;
      const Ref<IZEMBuffer> buffer = ok ? NewBuffer({ahead_.data(), count}) : Ref<IZEMBuffer>();
      ahead_.erase(ahead_.begin(), ahead_.begin() + static_cast<std::ptrdiff_t>(count));
      Later([ok, buffer](IZEMFileResponse* told) {
        told->ReadDone(ok ? ZEM_OK : ZEM_FAILED, buffer.get());
      });
    }
    calls_.pop_front();
    --*access_->pending;
  }
}

INT32 HttpFile::Init(UINT32 flags, IZEMFileResponse* response) {
  if (!response || !(flags & ZEM_FILE_READ)) return ZEM_BAD_ARGUMENT;
  if (response_) return ZEM_UNEXPECTED;
  response_ = response;
  HttpTransfer::Listener listener;
  listener.onBegin = [this](bool ok) {
    begun_ = ok;
    failed_ = !ok;
    Pump();
  };
  listener.onBytes = [this](const uint8_t* bytes, size_t size) {
    const size_t wanted = calls_.empty() ? 0 : calls_.front().count;
    held_ = ahead_.size() >= std::max(kMaxAhead, wanted);
    if (held_) return false;
    ahead_.insert(ahead_.end(), bytes, bytes + size);
    Pump();
    return true;
  };
  listener.onEnd = [this](bool ok) {
    ended_ = true;
    failed_ = failed_ || !ok;
    Pump();
  };
  transfer_ = access_->http->Get(url_, std::move(listener));
  Wait({Kind::kInit, 0});
  return ZEM_OK;
}

INT32 HttpFile::GetName(const char*& name) {
  name = url_.c_str();
  return ZEM_OK;
}

INT32 HttpFile::Close() {
  if (!response_) return ZEM_UNEXPECTED;
  Later([this](IZEMFileResponse* told) {
    transfer_.reset();
    DropCalls();
    answers_.DropAll();
    response_ = nullptr;
    told->CloseDone(ZEM_OK);
  });
  return ZEM_OK;
}

INT32 HttpFile::Read(UINT32 count) {
  if (!response_) return ZEM_UNEXPECTED;
  if (count > kMaxRead) return ZEM_BAD_ARGUMENT;
  Wait({Kind::kRead, count});
  if (std::exchange(held_, false) && transfer_) transfer_->Resume();
  return ZEM_OK;
}

INT32 HttpFile::Write(IZEMBuffer*) {
  if (!response_) return ZEM_UNEXPECTED;
  Later([](IZEMFileResponse* told) { told->WriteDone(ZEM_UNEXPECTED); });
  return ZEM_OK;
}

INT32 HttpFile::Seek(UINT32, INT32) {
  if (!response_) return ZEM_UNEXPECTED;
  Later([](IZEMFileResponse* told) { told->SeekDone(ZEM_NOT_IMPLEMENTED); });
  return ZEM_OK;
}

}  // namespace vexel::client
