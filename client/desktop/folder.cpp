#include "client/desktop/folder.h"

#include <gio/gio.h>

#include <filesystem>

#include "client/desktop/movie_name.h"

namespace vexel::client {

namespace {

constexpr int kPatienceMs = 3000;

void OpenFolder(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const char* words[] = {"xdg-open", folder.c_str(), nullptr};
  g_spawn_async(nullptr, const_cast<char**>(words), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr,
                nullptr, nullptr);
}

void WhenShown(GObject* bus, GAsyncResult* result, gpointer data) {
  auto* path = static_cast<std::string*>(data);
  GVariant* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr);
  if (!answer) OpenFolder(*path);
  if (answer) g_variant_unref(answer);
  delete path;
}

void WhenOnBus(GObject*, GAsyncResult* result, gpointer data) {
  auto* path = static_cast<std::string*>(data);
  GDBusConnection* bus = g_bus_get_finish(result, nullptr);
  if (!bus) {
    OpenFolder(*path);
    delete path;
    return;
  }
  const std::string uri = UriOf(*path);
  const char* uris[] = {uri.c_str(), nullptr};
  g_dbus_connection_call(bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                         "org.freedesktop.FileManager1", "ShowItems",
                         g_variant_new("(^ass)", uris, ""), nullptr, G_DBUS_CALL_FLAGS_NONE,
                         kPatienceMs, nullptr, WhenShown, path);
  g_object_unref(bus);
}

}  // namespace

void ShowInFolder(const std::string& path) {
  g_bus_get(G_BUS_TYPE_SESSION, nullptr, WhenOnBus, new std::string(path));
}

}  // namespace vexel::client
