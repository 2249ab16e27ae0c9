// replay FOLDER: runs every target over the inputs in FOLDER/<target>, files
// that once made it fail. Reaching the end is the pass; the name of each input
// is printed before it runs, so that the last one shown is to blame.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "entries.h"

namespace {

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  if (!std::filesystem::is_directory(folder)) return files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: fuzz_replay FOLDER\n", stderr);
    return 2;
  }
  int runs = 0;
  for (const vexel::fuzz::Target& target : vexel::fuzz::kTargets) {
    for (const auto& path : FilesIn(std::filesystem::path(argv[1]) / target.name)) {
      std::printf("%s/%s\n", target.name, path.filename().c_str());
      std::fflush(stdout);
      std::ifstream file(path, std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      target.run(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
      ++runs;
    }
  }
  std::printf("%d inputs\n", runs);
  return 0;
}
