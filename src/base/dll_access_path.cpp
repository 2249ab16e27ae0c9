#include "base/dll_access_path.h"

#include <cstdlib>
#include <cstring>

namespace vexel {

namespace {

constexpr INT32 kMapBlock = 10;
constexpr UINT16 kLibTypes = 6;
constexpr char kPathEntry[] = "PATH=";

// setenv copies what it is given, where putenv would keep pointing at it.
INT32 SetPathVariable(const char* value) {
  return setenv("PATH", value, 1) == 0 ? ZEM_OK : ZEM_FAILED;
}

}  // namespace

DLLAccessPath::DLLAccessPath() : refCount(0), paths(kMapBlock) {}

DLLAccessPath::~DLLAccessPath() = default;

UINT32 DLLAccessPath::AddRef() {
  return static_cast<UINT32>(++refCount);
}

UINT32 DLLAccessPath::Release() {
  INT32 left = --refCount;
  if (left <= 0) delete this;
  return static_cast<UINT32>(left);
}

INT32 DLLAccessPath::SetAccessPaths(const char* entries) {
  if (!entries) return ZEM_BAD_ARGUMENT;
  for (; *entries; entries += strlen(entries) + 1) {
    const char* equals = strchr(entries, '=');
    if (!equals) continue;
    CQKString name(entries, static_cast<int>(equals - entries));
    INT32 result = SetPath(name, equals + 1);
    if (result < 0) return result;
  }
  return ZEM_OK;
}

INT32 DLLAccessPath::SetPath(UINT16 type, const char* directory) {
  const char* name = GetLibTypeName(type);
  return name ? SetPath(name, directory) : ZEM_FAILED;
}

INT32 DLLAccessPath::SetPath(const char* name, const char* directory) {
  if (!name) return ZEM_BAD_ARGUMENT;
  if (!directory) return ZEM_OK;
  CQKString path(directory);
  if (path.Right(1) != "/") path += '/';
  return paths.SetAt(name, path) ? ZEM_OK : ZEM_OUT_OF_MEMORY;
}

const char* DLLAccessPath::GetPath(UINT16 type) const {
  return GetPath(GetLibTypeName(type));
}

const char* DLLAccessPath::GetPath(const char* name) const {
  return name ? paths.Lookup(name) : nullptr;
}

const char* DLLAccessPath::GetLibTypeName(UINT16 type) {
  return type < kLibTypes ? zm_pszDllTypeNames[type] : nullptr;
}

INT32 DLLAccessPath::PassDLLAccessPath(INT32 (*callback)(const char* entries)) const {
  if (paths.IsEmpty()) return ZEM_OK;
  if (!callback) return ZEM_BAD_ARGUMENT;
  CQKString entries;
  INT32 length = 0;
  for (void* at = paths.GetStartPosition(); at;) {
    CQKString name;
    CQKString path;
    paths.GetNextAssoc(at, name, path);
    entries += name + '=' + path + '\0';
    length += name.GetLength() + path.GetLength() + 2;
  }
  if (entries.GetLength() != length) return ZEM_FAILED;
  // The string's own terminator is the empty entry.
  return callback(entries);
}

// Required: the separator is ";".
INT32 DLLAccessPath::AddPathToEnvironment(const char* directory) {
  if (!directory) return ZEM_OK;
  const char* old = getenv("PATH");
  if (savedPath.IsEmpty()) savedPath = CQKString(kPathEntry) + old;
  CQKString path(directory);
  if (old && *old) path = path + ';' + old;
  return SetPathVariable(path);
}

INT32 DLLAccessPath::RestoreEnvironment() {
  if (savedPath.IsEmpty()) return ZEM_OK;
  INT32 result = SetPathVariable(static_cast<const char*>(savedPath) + strlen(kPathEntry));
  savedPath.Empty();
  return result;
}

const char* const DLLAccessPath::zm_pszDllTypeNames[] = {
    "DT_NotDef", "DT_Plugins", "DT_Codecs", "DT_EncSDK", "DT_Common", "DT_Update",
};

}  // namespace vexel
