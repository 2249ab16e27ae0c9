// load_plugin LIBRARY [TIMES]: loads the plug-in, makes an object, lets it go and
// unloads the library, again and again, and looks for what is left behind: memory
// of the heap, and the library itself. TIMES is 10000.
#include <dlfcn.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>

#include "zem/zem.h"

namespace {

bool Fail(const char* what) {
  std::fprintf(stderr, "load_plugin: %s: %s\n", what, dlerror());
  return false;
}

bool LoadAndUnload(const char* path) {
  void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (!library) return Fail("cannot load");
  const auto create =
      reinterpret_cast<ZEMCreateInstanceFunction>(dlsym(library, "ZEMCreateInstance"));
  const auto setPath =
      reinterpret_cast<SetDLLAccessPathFunction>(dlsym(library, "SetDLLAccessPath"));
  if (!create || !setPath) return Fail("a function is missing");
  setPath("DT_Plugins=/somewhere\0DT_Common=/else/\0");
  IUnknown* object = nullptr;
  if (create(&object) != ZEM_OK || !object) return Fail("no object");
  void* plugin = nullptr;
  if (object->QueryInterface(IID_IZEMPlugin, &plugin) != ZEM_OK) return Fail("no plug-in");
  static_cast<IZEMPlugin*>(plugin)->Release();
  if (object->Release() != 0) return Fail("a reference is left");
  dlclose(library);
  if (dlopen(path, RTLD_NOW | RTLD_NOLOAD)) return Fail("the library stays loaded");
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "load_plugin LIBRARY [TIMES]\n");
    return 2;
  }
  const int times = argc > 2 ? std::atoi(argv[2]) : 10000;
  // The loader's own tables settle first.
  constexpr int kWarmUp = 20;
  size_t before = 0;
  for (int i = 0; i < kWarmUp + times; ++i) {
    if (i == kWarmUp) before = mallinfo2().uordblks;
    if (!LoadAndUnload(argv[1])) return 1;
  }
  const size_t after = mallinfo2().uordblks;
  std::printf("%d times, %zu bytes in use before, %zu after\n", times, before, after);
  // The loader keeps some pages; a leak, however small, would be more by far.
  return after > before + 16384 ? 1 : 0;
}
