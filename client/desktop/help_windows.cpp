#include "client/desktop/help_windows.h"

#include <iterator>

namespace vexel::client {

namespace {

// As an installation has it, for each size of an icon.
constexpr char kIcon[] = "vexel";

struct ShortcutRow {
  const char* keys;  // as GtkShortcutsShortcut writes them; alternatives behind a space
  const char* text;
};

constexpr ShortcutRow kPlaying[] = {
    {"space", "Play or stop"},
    {"comma", "One frame back (comma)"},
    {"period", "One frame on (full stop)"},
};
constexpr ShortcutRow kWindow[] = {
    {"f F11", "Full screen"},
    {"Escape", "Leave full screen, the bar or the movie's fields"},
    {"F6", "Use the bar by the keyboard"},
    {"<Primary>1", "Size of the movie"},
    {"<Primary>comma", "Preferences"},
    {"F1", "This window"},
    {"<Primary>q", "Quit"},
};
constexpr ShortcutRow kFiles[] = {
    {"<Primary>o", "Open a file"},
    {"<Primary>l", "Open an address"},
    {"<Primary>s", "Save the picture"},
    {"<Primary>e", "Export a film"},
};

template <size_t N>
GtkWidget* NewGroup(const char* title, const ShortcutRow (&rows)[N]) {
  auto* group = GTK_WIDGET(g_object_new(GTK_TYPE_SHORTCUTS_GROUP, "title", title, nullptr));
  for (const ShortcutRow& row : rows) {
    auto* shortcut = GTK_WIDGET(g_object_new(GTK_TYPE_SHORTCUTS_SHORTCUT, "accelerator", row.keys,
                                             "title", row.text, nullptr));
    gtk_widget_show(shortcut);
    gtk_container_add(GTK_CONTAINER(group), shortcut);
  }
  gtk_widget_show(group);
  return group;
}

}  // namespace

void ShowShortcuts(GtkWindow* parent) {
  auto* section = GTK_WIDGET(
      g_object_new(GTK_TYPE_SHORTCUTS_SECTION, "section-name", "keys", "max-height", 12, nullptr));
  for (GtkWidget* group :
       {NewGroup("Playing", kPlaying), NewGroup("Files", kFiles), NewGroup("Window", kWindow)})
    gtk_container_add(GTK_CONTAINER(section), group);
  gtk_widget_show(section);
  auto* window = GTK_WIDGET(g_object_new(GTK_TYPE_SHORTCUTS_WINDOW, "modal", TRUE, "title",
                                         "Keyboard shortcuts", nullptr));
  gtk_container_add(GTK_CONTAINER(window), section);
  gtk_window_set_transient_for(GTK_WINDOW(window), parent);
  gtk_widget_show(window);
}

void ShowAbout(GtkWindow* parent) {
  gtk_show_about_dialog(parent, "program-name", "Vexel", "comments", "A player for vector movies",
                        "version", VEXEL_VERSION, "copyright", "© 2026 The Vexel authors",
                        "license-type", GTK_LICENSE_MIT_X11, "logo-icon-name",
                        gtk_window_get_default_icon_name(), nullptr);
}

void SetDefaultIcon() {
  // Some desktops draw a broken picture for a name that there is not.
  if (gtk_icon_theme_has_icon(gtk_icon_theme_get_default(), kIcon))
    gtk_window_set_default_icon_name(kIcon);
}

}  // namespace vexel::client
