#include "client/desktop/movie_menu.h"

#include <gdk/gdkx.h>

#include <memory>
#include <utility>

#include "client/desktop/connect.h"
#include "client/desktop/pointer.h"

namespace vexel::client {

namespace {

void AddTitle(GtkMenuShell* menu, const std::string& text) {
  GtkWidget* title = gtk_menu_item_new_with_label(text.c_str());
  gtk_widget_set_sensitive(title, FALSE);
  gtk_menu_shell_append(menu, title);
  gtk_menu_shell_append(menu, gtk_separator_menu_item_new());
}

void PopUp(GtkMenu* menu, GtkWidget* window) {
  gtk_menu_attach_to_widget(menu, window, nullptr);
  gtk_widget_show_all(GTK_WIDGET(menu));
  GdkWindow* top = gtk_widget_get_window(window);
  GdkRectangle place{0, 0, 1, 1};
  PointerAt(top, &place.x, &place.y);
  // The button's event was the movie's, so the menu gets one made up.
  GdkEvent* trigger = gdk_event_new(GDK_BUTTON_RELEASE);
  trigger->button.window = GDK_WINDOW(g_object_ref(top));
  trigger->button.time = gdk_x11_get_server_time(top);
  trigger->button.button = 3;
  gdk_event_set_device(trigger, Pointer(top));
  gtk_menu_popup_at_rect(menu, top, &place, GDK_GRAVITY_NORTH_WEST, GDK_GRAVITY_NORTH_WEST,
                         trigger);
  gdk_event_free(trigger);
}

}  // namespace

void ShowMovieMenu(EventLoop* loop, GtkWidget* window, const ContextMenu& movie,
                   std::function<void(std::optional<uint16_t>)> chosen) {
  if (movie.items().empty()) return;
  GtkWidget* menu = gtk_menu_new();
  if (!movie.title().empty()) AddTitle(GTK_MENU_SHELL(menu), movie.title());
  const auto choice = std::make_shared<std::optional<uint16_t>>();
  for (const ContextMenu::Item& item : movie.items()) {
    GtkWidget* row = item.separator ? gtk_separator_menu_item_new()
                                    : gtk_menu_item_new_with_label(item.text.c_str());
    if (!item.separator) Connect(row, "activate", [choice, id = item.id] { *choice = id; });
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), row);
  }
  // An item's "activate" follows the menu's end.
  Connect(menu, "selection-done", [loop, menu, choice, chosen = std::move(chosen)] {
    loop->Post([menu, choice, chosen] {
      chosen(*choice);
      gtk_widget_destroy(menu);
    });
  });
  PopUp(GTK_MENU(menu), window);
}

}  // namespace vexel::client
