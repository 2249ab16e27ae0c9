#include "client/core/file_system.h"

#include <glib.h>

#include <cctype>
#include <utility>

#include "client/core/http_file.h"
#include "client/core/local_file.h"

namespace vexel::client {

namespace {

// The scheme of a URL in lower case, empty for a path. One letter and a colon
// may well begin a file's name.
std::string SchemeOf(const std::string& url) {
  std::string scheme;
  for (const char c : url) {
    if (c == ':') return scheme.size() > 1 ? scheme : std::string();
    if (!isalnum(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.') break;
    scheme += static_cast<char>(tolower(static_cast<unsigned char>(c)));
  }
  return {};
}

}  // namespace

bool Locate(const std::string& url, Location* out) {
  const std::string scheme = SchemeOf(url);
  out->http = scheme == "http" || scheme == "https";
  out->path = url;
  if (out->http || scheme.empty()) return true;
  if (scheme != "file") return false;
  // file:///path, file://localhost/path or file:/path; texts may be joined to
  // it, so this is not held to the letter.
  std::string path = url.substr(scheme.size() + 1);
  if (path.starts_with("//localhost/")) {
    path = path.substr(11);
  } else if (path.starts_with("//")) {
    path = path.substr(2);
  }
  char* plain = g_uri_unescape_string(path.c_str(), nullptr);
  out->path = plain ? plain : path;
  g_free(plain);
  return true;
}

FileSystem::FileSystem(std::shared_ptr<FileAccess> access)
    : access_(std::move(access)), answers_(access_->loop, access_->pending) {}

INT32 FileSystem::Init(IZEMFileSystemManagerResponse* response) {
  if (!response) return ZEM_BAD_ARGUMENT;
  response_ = response;
  answers_.Give([this] {
    const Ref<FileSystem> self(this);
    const Ref<IZEMFileSystemManagerResponse> told = response_;
    told->InitDone(ZEM_OK);
  });
  return ZEM_OK;
}

INT32 FileSystem::Cancel() {
  answers_.DropAll();
  response_ = nullptr;
  return ZEM_OK;
}

INT32 FileSystem::GetFileObject(IZEMRequest* request, IUnknown*) {
  const char* url = nullptr;
  if (!request || request->GetURL(url) < 0 || !url) return ZEM_BAD_ARGUMENT;
  if (!response_) return ZEM_UNEXPECTED;
  Ref<IZEMFileObject> file;
  Location location;
  if (Locate(url, &location)) {
    if (location.http) {
      file = Make<HttpFile>(access_.get(), location.path);
    } else if (access_->allowLocal) {
      file = Make<LocalFile>(access_.get(), location.path);
    }
  }
  answers_.Give([this, file] {
    const Ref<FileSystem> self(this);
    const Ref<IZEMFileSystemManagerResponse> told = response_;
    told->FileObjectReady(file ? ZEM_OK : ZEM_FAILED, file.get());
  });
  return ZEM_OK;
}

INT32 FileSystem::GetDirObject(IZEMRequest* request) {
  if (!request) return ZEM_BAD_ARGUMENT;
  if (!response_) return ZEM_UNEXPECTED;
  answers_.Give([this] {
    const Ref<FileSystem> self(this);
    const Ref<IZEMFileSystemManagerResponse> told = response_;
    told->DirObjectReady(ZEM_NOT_IMPLEMENTED, nullptr);
  });
  return ZEM_OK;
}

}  // namespace vexel::client
