#include "client/desktop/movie_name.h"

#include <gio/gio.h>

#include <filesystem>

namespace vexel::client {

std::string UriOf(const std::string& url) {
  GFile* file = g_file_new_for_commandline_arg(url.c_str());
  char* text = g_file_get_uri(file);
  const std::string uri = text;
  g_free(text);
  g_object_unref(file);
  return uri;
}

std::string NameOf(const std::string& url) {
  const std::string uri = UriOf(url);
  const std::string plain = uri.substr(0, uri.find_first_of("?#"));
  char* last = g_uri_unescape_string(std::filesystem::path(plain).filename().c_str(), nullptr);
  char* shown = g_filename_display_name(last && *last ? last : url.c_str());
  const std::string name = shown;
  g_free(shown);
  g_free(last);
  return name;
}

}  // namespace vexel::client
