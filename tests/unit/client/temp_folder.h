// A folder that goes with the test.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace vexel::client {

class TempFolder {
 public:
  TempFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "vexel-client-XXXXXX").string();
    path_ = mkdtemp(path.data());
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(*this / name, std::ios::binary) << text;
    return *this / name;
  }

 private:
  std::string path_;
};

}  // namespace vexel::client
