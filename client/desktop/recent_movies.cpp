#include "client/desktop/recent_movies.h"

#include <gtk/gtk.h>

namespace vexel::client {

void AddRecentMovie(const std::string& uri) {
  gtk_recent_manager_add_item(gtk_recent_manager_get_default(), uri.c_str());
}

void ClearRecentMovies() {
  GtkRecentManager* manager = gtk_recent_manager_get_default();
  GList* items = gtk_recent_manager_get_items(manager);
  for (GList* one = items; one; one = one->next) {
    auto* item = static_cast<GtkRecentInfo*>(one->data);
    if (gtk_recent_info_has_application(item, g_get_application_name()))
      gtk_recent_manager_remove_item(manager, gtk_recent_info_get_uri(item), nullptr);
  }
  g_list_free_full(items,
                   [](gpointer item) { gtk_recent_info_unref(static_cast<GtkRecentInfo*>(item)); });
}

}  // namespace vexel::client
