#include "client/desktop/main_menu.h"

#include <utility>

#include "client/desktop/connect.h"

namespace vexel::client {

namespace {

constexpr auto kControl = GDK_CONTROL_MASK;
constexpr auto kNone = static_cast<GdkModifierType>(0);

}  // namespace

MainMenu::MainMenu(GtkWindow* window, Actions actions)
    : actions_(std::move(actions)), keys_(gtk_accel_group_new()), bar_(gtk_menu_bar_new()) {
  gtk_window_add_accel_group(window, keys_);

  GtkWidget* file = AddMenu("_File");
  AddItem(file, "_Open…", GDK_KEY_o, kControl, actions_.openFile);
  AddItem(file, "Open _address…", GDK_KEY_l, kControl, actions_.openAddress);
  AddRecent(file);
  AddItem(file, "_Save picture…", GDK_KEY_s, kControl, actions_.savePicture);
  AddItem(file, "_Preferences…", GDK_KEY_comma, kControl, actions_.preferences);
  AddItem(file, "_Quit", GDK_KEY_q, kControl, actions_.quit);

  GtkWidget* view = AddMenu("_View");
  AddItem(view, "_Full screen", GDK_KEY_F11, kNone, actions_.fullScreen);
  AddItem(view, "Size of the _movie", GDK_KEY_1, kControl, actions_.movieSize);

  GtkWidget* help = AddMenu("_Help");
  AddItem(help, "_About", 0, kNone, actions_.about);
}

MainMenu::~MainMenu() {
  g_object_unref(keys_);
}

GtkWidget* MainMenu::AddMenu(const char* text) {
  GtkWidget* item = gtk_menu_item_new_with_mnemonic(text);
  GtkWidget* menu = gtk_menu_new();
  gtk_menu_item_set_submenu(GTK_MENU_ITEM(item), menu);
  gtk_menu_shell_append(GTK_MENU_SHELL(bar_), item);
  return menu;
}

void MainMenu::AddItem(GtkWidget* menu, const char* text, unsigned key, GdkModifierType modifiers,
                       std::function<void()> run) {
  GtkWidget* item = gtk_menu_item_new_with_mnemonic(text);
  if (key != 0)
    gtk_widget_add_accelerator(item, "activate", keys_, key, modifiers, GTK_ACCEL_VISIBLE);
  Connect(item, "activate", std::move(run));
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
}

void MainMenu::AddRecent(GtkWidget* menu) {
  GtkWidget* item = gtk_menu_item_new_with_mnemonic("Open _recent");
  GtkWidget* recent = gtk_recent_chooser_menu_new();
  GtkRecentFilter* ours = gtk_recent_filter_new();
  gtk_recent_filter_add_application(ours, g_get_application_name());
  gtk_recent_chooser_set_filter(GTK_RECENT_CHOOSER(recent), ours);
  gtk_recent_chooser_set_sort_type(GTK_RECENT_CHOOSER(recent), GTK_RECENT_SORT_MRU);
  gtk_menu_item_set_submenu(GTK_MENU_ITEM(item), recent);
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
  Connect(recent, "item-activated", [this, recent] {
    char* uri = gtk_recent_chooser_get_current_uri(GTK_RECENT_CHOOSER(recent));
    if (uri) actions_.openRecent(uri);
    g_free(uri);
  });
}

}  // namespace vexel::client
