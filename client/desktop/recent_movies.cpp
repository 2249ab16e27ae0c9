#include "client/desktop/recent_movies.h"

#include <gtk/gtk.h>

namespace vexel::client {

namespace {

// The system's dialogs list whatever passes through them for this program, films
// and pictures too. Movies are told from those by their group.
constexpr char kGroup[] = "Vexel movies";
constexpr char kCommand[] = "vexel play %u";

}  // namespace

void AddRecentMovie(const std::string& uri) {
  char* kind = g_content_type_guess(uri.c_str(), nullptr, 0, nullptr);
  char* mime = g_content_type_get_mime_type(kind);
  char group[sizeof kGroup], command[sizeof kCommand];
  g_strlcpy(group, kGroup, sizeof group);
  g_strlcpy(command, kCommand, sizeof command);
  char* groups[] = {group, nullptr};
  GtkRecentData data{};
  data.mime_type = mime;
  data.app_name = const_cast<char*>(g_get_application_name());
  data.app_exec = command;
  data.groups = groups;
  gtk_recent_manager_add_full(gtk_recent_manager_get_default(), uri.c_str(), &data);
  g_free(mime);
  g_free(kind);
}

GtkRecentFilter* NewRecentMovieFilter() {
  GtkRecentFilter* filter = gtk_recent_filter_new();
  gtk_recent_filter_add_group(filter, kGroup);
  return filter;
}

void ClearRecentMovies() {
  GtkRecentManager* manager = gtk_recent_manager_get_default();
  GList* items = gtk_recent_manager_get_items(manager);
  for (GList* one = items; one; one = one->next) {
    auto* item = static_cast<GtkRecentInfo*>(one->data);
    if (gtk_recent_info_has_group(item, kGroup))
      gtk_recent_manager_remove_item(manager, gtk_recent_info_get_uri(item), nullptr);
  }
  g_list_free_full(items,
                   [](gpointer item) { gtk_recent_info_unref(static_cast<GtkRecentInfo*>(item)); });
}

}  // namespace vexel::client
