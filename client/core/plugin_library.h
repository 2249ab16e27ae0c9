// The plug-in's shared library.
#pragma once

#include <string>

#include "client/core/object.h"

namespace vexel::client {

class PluginLibrary {
 public:
  // Throws std::runtime_error, with a text for people, for a file that is no
  // plug-in.
  explicit PluginLibrary(const std::string& path);
  // All of its objects must be gone.
  ~PluginLibrary();
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;

  // A new plug-in object. Throws std::runtime_error.
  Ref<IZEMPlugin> Create() const;

 private:
  std::string path_;
  void* library_;
  ZEMCreateInstanceFunction create_;
};

}  // namespace vexel::client
