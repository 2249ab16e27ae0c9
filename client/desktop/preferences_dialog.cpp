#include "client/desktop/preferences_dialog.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "client/desktop/connect.h"
#include "client/desktop/site_list.h"

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
constexpr NumberRow kNumbers[] = {
    {"Quality", "_Quality",
     "4 is the best; below, edges are rougher, and drawing takes a smaller share", 0, 4, 4},
    {"KestVexelDrawingMax", "Drawing may take, at the _best quality (%)",
     "percent of one processor's time", 1, 100, 70},
    {"KestVexelDrawingMin", "Drawing may take, at the _lowest quality (%)",
     "percent of one processor's time", 1, 100, 30},
};

struct SwitchRow {
  const char* text;
  bool (Settings::*get)() const;
  void (Settings::*set)(bool);
};

constexpr SwitchRow kSwitches[] = {
    {"Begin _again at the end", &Settings::loops, &Settings::SetLoops},
    {"Keep the _window's size, whatever the movie's", &Settings::keepsSize,
     &Settings::SetKeepsSize},
    {"_Remember the movies that were opened", &Settings::listsRecent, &Settings::SetListsRecent},
};

// By BarPlace.
constexpr const char* kBarPlaces[] = {"Hides itself", "Hides itself in full screen",
                                      "Always below the movie"};

int NumberOf(const Preferences& preferences, const NumberRow& row) {
  const auto text = preferences.Get(row.key);
  const long value = text ? std::strtol(text->c_str(), nullptr, 10) : row.otherwise;
  return static_cast<int>(std::clamp<long>(value, row.least, row.most));
}

// Rows below each other, in sections with headings.
class Rows {
 public:
  Rows() : grid_(gtk_grid_new()) {
    gtk_grid_set_row_spacing(GTK_GRID(grid_), kSpace / 2);
    gtk_grid_set_column_spacing(GTK_GRID(grid_), kSpace);
    gtk_container_set_border_width(GTK_CONTAINER(grid_), kSpace);
  }

  GtkWidget* widget() const { return grid_; }

  void AddHeading(const char* text) {
    GtkWidget* label = gtk_label_new(nullptr);
    char* markup = g_markup_printf_escaped("<b>%s</b>", text);
    gtk_label_set_markup(GTK_LABEL(label), markup);
    g_free(markup);
    if (line_ > 0) gtk_widget_set_margin_top(label, kSpace);
    Add(label);
  }

  void AddNote(const char* text) { Add(gtk_label_new(text)); }

  // Across both columns.
  void Add(GtkWidget* widget) {
    if (GTK_IS_LABEL(widget)) gtk_label_set_xalign(GTK_LABEL(widget), 0);
    gtk_grid_attach(GTK_GRID(grid_), widget, 0, line_++, 2, 1);
  }

  void Add(const char* name, GtkWidget* widget) {
    GtkWidget* label = gtk_label_new_with_mnemonic(name);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_mnemonic_widget(GTK_LABEL(label), widget);
    gtk_grid_attach(GTK_GRID(grid_), label, 0, line_, 1, 1);
    gtk_grid_attach(GTK_GRID(grid_), widget, 1, line_++, 1, 1);
  }

 private:
  GtkWidget* grid_;
  int line_ = 0;
};

void AddBarPlace(Rows* rows, Settings* settings, const std::function<void()>& changed) {
  GtkWidget* box = gtk_combo_box_text_new();
  for (const char* place : kBarPlaces)
    gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(box), place);
  gtk_combo_box_set_active(GTK_COMBO_BOX(box), static_cast<int>(settings->barPlace()));
  Connect(box, "changed", [box, settings, changed] {
    settings->SetBarPlace(static_cast<BarPlace>(gtk_combo_box_get_active(GTK_COMBO_BOX(box))));
    changed();
  });
  rows->Add("The _transport bar", box);
}

void AddSwitch(Rows* rows, const SwitchRow& row, Settings* settings,
               const std::function<void()>& changed) {
  GtkWidget* button = gtk_check_button_new_with_mnemonic(row.text);
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(button), (settings->*row.get)());
  Connect(button, "toggled", [button, &row, settings, changed] {
    (settings->*row.set)(gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(button)));
    changed();
  });
  rows->Add(button);
}

void AddNumber(Rows* rows, const NumberRow& row, Preferences* preferences) {
  GtkWidget* number = gtk_spin_button_new_with_range(row.least, row.most, 1);
  gtk_spin_button_set_value(GTK_SPIN_BUTTON(number), NumberOf(*preferences, row));
  gtk_widget_set_tooltip_text(number, row.tip);
  Connect(number, "value-changed", [number, &row, preferences] {
    preferences->Set(row.key,
                     std::to_string(gtk_spin_button_get_value_as_int(GTK_SPIN_BUTTON(number))));
  });
  rows->Add(row.text, number);
}

}  // namespace

void ShowPreferences(GtkWindow* parent, Settings* settings, std::function<void()> changed) {
  GtkWidget* dialog = gtk_dialog_new_with_buttons("Preferences", parent, GTK_DIALOG_MODAL, "_Close",
                                                  GTK_RESPONSE_CLOSE, nullptr);
  Rows rows;
  rows.AddHeading("Watching");
  AddBarPlace(&rows, settings, changed);
  for (const SwitchRow& row : kSwitches) AddSwitch(&rows, row, settings, changed);
  rows.AddHeading("Drawing");
  for (const NumberRow& row : kNumbers) AddNumber(&rows, row, settings->kept());
  rows.AddNote("These hold from the next movie on.");
  rows.AddHeading("Pages of these sites may be opened");
  rows.Add(NewSiteList(settings));
  gtk_container_add(GTK_CONTAINER(gtk_dialog_get_content_area(GTK_DIALOG(dialog))), rows.widget());
  gtk_widget_show_all(rows.widget());
  gtk_dialog_run(GTK_DIALOG(dialog));
  gtk_widget_destroy(dialog);
}

}  // namespace vexel::client
