// Waits until one of some files changes.
//
// What is watched is the folders they stand in: editors do not write into a
// file but put a new one in its place, and a file that is missing is to be
// noticed when it comes.
#pragma once

#include <map>
#include <set>
#include <string>

namespace vexel::tools {

class FileWatch {
 public:
  // From here on the process is no longer ended by the interrupt and terminate
  // signals; Wait tells of them. Throws Failure if the system has no watches
  // left.
  FileWatch();
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  // The files from now on. Those watched before and named again are watched
  // without a gap.
  void Watch(const std::set<std::string>& files);

  // Until a file has changed and the changes have come to rest; false when the
  // process is asked to end.
  bool Wait();

 private:
  bool ReadEvents();

  int notify_ = -1;   // the system's events of files
  int signals_ = -1;  // and of signals
  std::map<std::string, int> folders_;
  std::set<std::pair<int, std::string>> names_;  // by folder: what is watched there
};

}  // namespace vexel::tools
