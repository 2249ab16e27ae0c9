// An output file that is there as a whole or not at all: written under another
// name beside it, and renamed at the end. A signal that ends the program takes
// it away as well.
#pragma once

#include <cstdio>
#include <string>

namespace vexel::tools {

class OutFile {
 public:
  // Throws Failure if nothing can be written there.
  explicit OutFile(const std::string& path);
  // Drops what was not committed.
  ~OutFile();
  OutFile(const OutFile&) = delete;
  OutFile& operator=(const OutFile&) = delete;

  std::FILE* stream() const { return stream_; }

  // Puts the file in its place. Throws Failure if it could not be written
  // wholly; what was there before then stays.
  void Commit();

 private:
  void Drop();
  [[noreturn]] void Fail(const std::string& what);

  std::string path_;
  std::string partPath_;  // empty if written in place: to a device or a pipe
  std::FILE* stream_ = nullptr;
};

// Writes a whole file of `size` bytes.
void WriteWholeFile(const std::string& path, const void* data, size_t size);

}  // namespace vexel::tools
