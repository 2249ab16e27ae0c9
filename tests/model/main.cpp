// model_render MOVIE [--frame N | --at MS | --all] [--size WxH] [--quality low|high]
//   [--format pix1..pix32A] -o OUT
// renders with the model and writes the buffer's bytes, row by row.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "render.h"

using namespace vexel::model;

static bool Write(const std::string& name, const Buffer& b) {
  std::ofstream out(name, std::ios::binary);
  out.write(reinterpret_cast<const char*>(b.bytes.data()),
            static_cast<std::streamsize>(b.bytes.size()));
  return static_cast<bool>(out);
}

int main(int argc, char** argv) {
  std::string in, out;
  Options options;
  int frame = 0;
  long at = -1;
  bool all = false;
  static const char* names[] = {"pix1",   "pix2",  "pix4",  "pix8",  "pix16",
                                "pix16A", "pix24", "pix32", "pix32A"};
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    const std::string v = i + 1 < argc ? argv[i + 1] : "";
    if (a == "--all") {
      all = true;
      continue;
    }
    if (a[0] != '-') {
      in = a;
      continue;
    }
    ++i;
    if (a == "--frame") {
      frame = std::stoi(v);
    } else if (a == "--at") {
      at = std::stol(v);
    } else if (a == "--size") {
      if (std::sscanf(v.c_str(), "%dx%d", &options.width, &options.height) != 2) return 2;
    } else if (a == "--quality") {
      options.high = v != "low";
    } else if (a == "--format") {
      options.format = -1;
      for (int k = 0; k < 9; ++k) {
        if (v == names[k]) options.format = k;
      }
      if (options.format < 0) return 2;
    } else if (a == "-o") {
      out = v;
    } else {
      return 2;
    }
  }
  if (in.empty() || out.empty()) return 2;
  std::ifstream file(in, std::ios::binary);
  const std::vector<u8> bytes{std::istreambuf_iterator<char>(file), {}};
  Player player(bytes, options);
  if (!player.Good()) return 1;
  if (all) {
    for (int i = 0; i < player.FrameCount() || i == 0; ++i) {
      if (i > 0) player.Step();
      player.Redraw();
      char name[4096];
      std::snprintf(name, sizeof name, out.c_str(), i);
      if (!Write(name, player.Bits())) return 1;
    }
    return 0;
  }
  if (at >= 0) {
    player.DoPlay(static_cast<u32>(at));
  } else {
    for (int i = 0; i < frame; ++i) player.Step();
  }
  player.Redraw();
  return Write(out, player.Bits()) ? 0 : 1;
}
