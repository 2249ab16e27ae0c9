#include "client/desktop/main_menu.h"

#include <utility>

#include "client/desktop/connect.h"
#include "client/desktop/recent_movies.h"
#include "client/desktop/shortcuts.h"

namespace vexel::client {

namespace {

constexpr auto kControl = GDK_CONTROL_MASK;
constexpr auto kNone = static_cast<GdkModifierType>(0);

void AddLine(GtkWidget* menu) {
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), gtk_separator_menu_item_new());
}

}  // namespace

MainMenu::MainMenu(GtkWindow* window, Actions actions)
    : actions_(std::move(actions)), keys_(gtk_accel_group_new()), bar_(gtk_menu_bar_new()) {
  gtk_window_add_accel_group(window, keys_);

  GtkWidget* file = AddMenu("_File");
  AddItem(file, "_Open…", GDK_KEY_o, kControl, actions_.openFile);
  AddItem(file, "Open _address…", GDK_KEY_l, kControl, actions_.openAddress);
  AddRecent(file);
  AddItem(file, "_Clear recent", 0, kNone, actions_.clearRecent);
  AddLine(file);
  GtkWidget* save = AddItem(file, "_Save picture…", GDK_KEY_s, kControl, actions_.savePicture);
  GtkWidget* film = AddItem(file, "_Export…", GDK_KEY_e, kControl, actions_.exportFilm);
  AddLine(file);
  AddItem(file, "_Preferences…", GDK_KEY_comma, kControl, actions_.preferences);
  AddItem(file, "_Quit", GDK_KEY_q, kControl, actions_.quit);

  GtkWidget* play = AddMenu("_Play");
  ofMovie_ = {save, film, AddItem(play, "_Play or stop", kPlayKey, actions_.playOrPause),
              AddItem(play, "One frame _back", kBackKey, [this] { actions_.step(-1); }),
              AddItem(play, "One frame _on", kForwardKey, [this] { actions_.step(1); })};

  GtkWidget* view = AddMenu("_View");
  AddItem(view, "_Full screen", GDK_KEY_F11, kNone, actions_.fullScreen);
  AddItem(view, "Size of the _movie", GDK_KEY_1, kControl, actions_.movieSize);
  ofMovie_.push_back(AddItem(view, "Keyboard to the _bar", GDK_KEY_F6, kNone, actions_.toBar));

  GtkWidget* help = AddMenu("_Help");
  AddItem(help, "_Keyboard shortcuts", GDK_KEY_F1, kNone, actions_.shortcuts);
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

GtkWidget* MainMenu::AddItem(GtkWidget* menu, const char* text, unsigned key,
                             GdkModifierType modifiers, std::function<void()> run) {
  GtkWidget* item = gtk_menu_item_new_with_mnemonic(text);
  if (key != 0)
    gtk_widget_add_accelerator(item, "activate", keys_, key, modifiers, GTK_ACCEL_VISIBLE);
  Connect(item, "activate", std::move(run));
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
  return item;
}

GtkWidget* MainMenu::AddItem(GtkWidget* menu, const char* text, unsigned shownKey,
                             std::function<void()> run) {
  GtkWidget* item = gtk_menu_item_new();
  GtkWidget* label = gtk_accel_label_new("");
  gtk_label_set_text_with_mnemonic(GTK_LABEL(label), text);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_accel_label_set_accel(GTK_ACCEL_LABEL(label), shownKey, kNone);
  gtk_label_set_mnemonic_widget(GTK_LABEL(label), item);
  gtk_container_add(GTK_CONTAINER(item), label);
  Connect(item, "activate", std::move(run));
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
  return item;
}

void MainMenu::SetPlayable(bool playable) {
  for (GtkWidget* item : ofMovie_) gtk_widget_set_sensitive(item, playable);
}

void MainMenu::AddRecent(GtkWidget* menu) {
  GtkWidget* item = gtk_menu_item_new_with_mnemonic("Open _recent");
  GtkWidget* recent = gtk_recent_chooser_menu_new();
  gtk_recent_chooser_set_filter(GTK_RECENT_CHOOSER(recent), NewRecentMovieFilter());
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
