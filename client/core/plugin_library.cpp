#include "client/core/plugin_library.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>

namespace vexel::client {

PluginLibrary::PluginLibrary(const std::string& path) : path_(path) {
  // A bare name would be looked for in the system's folders.
  const std::string file = std::filesystem::absolute(path).string();
  library_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library_) throw std::runtime_error(dlerror());
  create_ = reinterpret_cast<ZEMCreateInstanceFunction>(dlsym(library_, "ZEMCreateInstance"));
  if (!create_) {
    dlclose(library_);
    throw std::runtime_error("is no plug-in: it has no ZEMCreateInstance");
  }
  const auto setPath =
      reinterpret_cast<SetDLLAccessPathFunction>(dlsym(library_, "SetDLLAccessPath"));
  if (setPath) {
    // "name=folder", ended by an empty entry.
    const std::string folder = std::filesystem::path(file).parent_path().string();
    const std::string entries = "DT_Plugins=" + folder + std::string(2, '\0');
    setPath(entries.c_str());
  }
}

PluginLibrary::~PluginLibrary() {
  dlclose(library_);
}

Ref<IZEMPlugin> PluginLibrary::Create() const {
  Ref<IUnknown> made;
  if (create_(&made.Out()) < 0 || !made) throw std::runtime_error("makes no plug-in");
  const Ref<IZEMPlugin> plugin = Query<IZEMPlugin>(made.get());
  if (!plugin) throw std::runtime_error("makes something else than a plug-in");
  return plugin;
}

}  // namespace vexel::client
