// The directories that the host passes to its plug-ins, by the type of library
// that lives there.
#pragma once

#include "base/map_string_to_string.h"

namespace vexel {

class DLLAccessPath {
 public:
  // Starts with a count of 0: the maker takes the first reference.
  DLLAccessPath();
  virtual ~DLLAccessPath();
  virtual UINT32 AddRef();
  virtual UINT32 Release();
  DLLAccessPath(const DLLAccessPath&) = delete;
  DLLAccessPath& operator=(const DLLAccessPath&) = delete;

  // `entries`: name=directory texts, each with its terminator, and an empty one
  // at the end. Stops at the first that can't be set.
  INT32 SetAccessPaths(const char* entries);
  // Keeps the directory with a "/" at its end; a null one is ignored.
  INT32 SetPath(UINT16 type, const char* directory);
  INT32 SetPath(const char* name, const char* directory);
  // Until the path is set anew; null if there is none.
  const char* GetPath(UINT16 type) const;
  const char* GetPath(const char* name) const;
  INT32 GetNumPaths() const { return paths.GetCount(); }
  // The name of a type of library, 0 to 5; null otherwise.
  static const char* GetLibTypeName(UINT16 type);

  // Hands all paths to another library's SetDLLAccessPath.
  INT32 PassDLLAccessPath(INT32 (*callback)(const char* entries)) const;

  // Bracket the one call that needs `directory` in the process's PATH.
  INT32 AddPathToEnvironment(const char* directory);
  INT32 RestoreEnvironment();

 private:
  static const char* const zm_pszDllTypeNames[];

  INT32 refCount;
  CQKMapStringToString paths;
  CQKString savedPath;  // "PATH=" and the old value, while it is changed
};

}  // namespace vexel
