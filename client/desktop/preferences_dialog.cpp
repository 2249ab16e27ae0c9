#include "client/desktop/preferences_dialog.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace vexel::client {

namespace {

constexpr int kSpace = 12;  // pixels

struct NumberRow {
  const char* key;  // the plug-in's
  const char* text;
  const char* tip;
  int least, most, otherwise;
};

// With what the plug-in takes where nothing is set.
constexpr NumberRow kRows[] = {
    {"Quality", "_Quality",
     "4 is the best; below, edges are rougher, and drawing takes a smaller share", 0, 4, 4},
    {"KestVexelDrawingMax", "Drawing may take, at the _best quality",
     "percent of one processor's time", 1, 100, 70},
    {"KestVexelDrawingMin", "Drawing may take, at the _lowest quality",
     "percent of one processor's time", 1, 100, 30},
};

int NumberOf(const Preferences& preferences, const NumberRow& row) {
  const auto text = preferences.Get(row.key);
  const long value = text ? std::strtol(text->c_str(), nullptr, 10) : row.otherwise;
  return static_cast<int>(std::clamp<long>(value, row.least, row.most));
}

struct Change {
  Preferences* preferences;
  const NumberRow* row;
};

void Keep(GtkSpinButton* button, gpointer data) {
  const auto* change = static_cast<Change*>(data);
  change->preferences->Set(change->row->key,
                           std::to_string(gtk_spin_button_get_value_as_int(button)));
}

}  // namespace

void ShowPreferences(GtkWindow* parent, Preferences* preferences) {
  GtkWidget* dialog = gtk_dialog_new_with_buttons("Preferences", parent, GTK_DIALOG_MODAL, "_Close",
                                                  GTK_RESPONSE_CLOSE, nullptr);
  GtkWidget* grid = gtk_grid_new();
  gtk_grid_set_row_spacing(GTK_GRID(grid), kSpace / 2);
  gtk_grid_set_column_spacing(GTK_GRID(grid), kSpace);
  gtk_container_set_border_width(GTK_CONTAINER(grid), kSpace);
  int line = 0;
  for (const NumberRow& row : kRows) {
    GtkWidget* label = gtk_label_new_with_mnemonic(row.text);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    GtkWidget* number = gtk_spin_button_new_with_range(row.least, row.most, 1);
    gtk_spin_button_set_value(GTK_SPIN_BUTTON(number), NumberOf(*preferences, row));
    gtk_widget_set_tooltip_text(number, row.tip);
    gtk_label_set_mnemonic_widget(GTK_LABEL(label), number);
    g_signal_connect_data(
        number, "value-changed", G_CALLBACK(Keep), new Change{preferences, &row},
        [](gpointer change, GClosure*) { delete static_cast<Change*>(change); },
        static_cast<GConnectFlags>(0));
    gtk_grid_attach(GTK_GRID(grid), label, 0, line, 1, 1);
    gtk_grid_attach(GTK_GRID(grid), number, 1, line++, 1, 1);
  }
  GtkWidget* note = gtk_label_new("These hold from the next movie on.");
  gtk_label_set_xalign(GTK_LABEL(note), 0);
  gtk_grid_attach(GTK_GRID(grid), note, 0, line, 2, 1);
  gtk_container_add(GTK_CONTAINER(gtk_dialog_get_content_area(GTK_DIALOG(dialog))), grid);
  gtk_widget_show_all(grid);
  gtk_dialog_run(GTK_DIALOG(dialog));
  gtk_widget_destroy(dialog);
}

}  // namespace vexel::client
