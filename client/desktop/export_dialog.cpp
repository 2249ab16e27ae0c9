#include "client/desktop/export_dialog.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace vexel::client {

namespace {

struct KindRow {
  const char* ending;
  const char* text;
};

constexpr KindRow kKinds[] = {
    {".gif", "GIF film (.gif)"},
    {".apng", "Animated PNG, exact (.apng)"},
    {".webm", "WebM film (.webm)"},
    {".mp4", "MP4 film (.mp4)"},
};

constexpr int kSpace = 6;               // pixels
constexpr double kLongest = 24 * 3600;  // seconds
constexpr double kStep = 0.1;           // seconds

const KindRow* KindOf(const std::string& name) {
  const KindRow* row =
      std::find_if(std::begin(kKinds), std::end(kKinds),
                   [&name](const KindRow& one) { return name.ends_with(one.ending); });
  return row == std::end(kKinds) ? nullptr : row;
}

// What stands below the list of files.
struct Fields {
  GtkWidget* box;
  GtkWidget* rate;
  GtkWidget* from;
  GtkWidget* to;
};

void AddField(GtkWidget* box, const char* name, GtkWidget* field) {
  GtkWidget* label = gtk_label_new_with_mnemonic(name);
  gtk_label_set_mnemonic_widget(GTK_LABEL(label), field);
  gtk_box_pack_start(GTK_BOX(box), label, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(box), field, FALSE, FALSE, 0);
}

GtkWidget* NewSeconds(double value) {
  GtkWidget* field = gtk_spin_button_new_with_range(0, kLongest, kStep);
  gtk_spin_button_set_digits(GTK_SPIN_BUTTON(field), 3);
  gtk_spin_button_set_value(GTK_SPIN_BUTTON(field), value);
  gtk_entry_set_activates_default(GTK_ENTRY(field), TRUE);
  return field;
}

uint32_t MsOf(GtkWidget* field) {
  gtk_spin_button_update(GTK_SPIN_BUTTON(field));
  return static_cast<uint32_t>(
      std::lround(gtk_spin_button_get_value(GTK_SPIN_BUTTON(field)) * 1000));
}

Fields NewFields(uint32_t length) {
  Fields fields{gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kSpace), gtk_entry_new(), NewSeconds(0),
                NewSeconds(length / 1000.0)};
  gtk_entry_set_placeholder_text(GTK_ENTRY(fields.rate), "the movie's");
  gtk_entry_set_width_chars(GTK_ENTRY(fields.rate), 11);
  gtk_entry_set_activates_default(GTK_ENTRY(fields.rate), TRUE);
  gtk_widget_set_tooltip_text(fields.rate, "25, 29.97 or 30000/1001");
  AddField(fields.box, "Fra_mes a second", fields.rate);
  AddField(fields.box, "_From, seconds", fields.from);
  AddField(fields.box, "_to", fields.to);
  gtk_widget_show_all(fields.box);
  return fields;
}

void AddKinds(GtkFileChooser* chooser) {
  for (const KindRow& kind : kKinds) {
    GtkFileFilter* filter = gtk_file_filter_new();
    gtk_file_filter_set_name(filter, kind.text);
    gtk_file_filter_add_pattern(filter, (std::string("*") + kind.ending).c_str());
    g_object_set_data(G_OBJECT(filter), "ending", const_cast<char*>(kind.ending));
    gtk_file_chooser_add_filter(chooser, filter);
  }
}

std::string ChosenEnding(GtkFileChooser* chooser) {
  GtkFileFilter* filter = gtk_file_chooser_get_filter(chooser);
  const void* ending = filter ? g_object_get_data(G_OBJECT(filter), "ending") : nullptr;
  return ending ? static_cast<const char*>(ending) : kKinds[0].ending;
}

// Gives the typed name the chosen kind's ending, in place of one of ours.
void SetEnding(GtkFileChooser* chooser) {
  char* typed = gtk_file_chooser_get_current_name(chooser);
  std::string name = typed ? typed : "";
  g_free(typed);
  if (name.empty()) return;
  if (const KindRow* kind = KindOf(name))
    name.resize(name.size() - std::string(kind->ending).size());
  gtk_file_chooser_set_current_name(chooser, (name + ChosenEnding(chooser)).c_str());
}

// Runs until there is a name with one of the endings. Whether there is.
bool RunUntilNamed(GtkWidget* dialog) {
  auto* chooser = GTK_FILE_CHOOSER(dialog);
  while (gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT) {
    char* typed = gtk_file_chooser_get_current_name(chooser);
    const bool named = typed && KindOf(typed);
    g_free(typed);
    if (named) return true;
    // Pressed once more, so that a file of the whole name is asked about, too.
    SetEnding(chooser);
    g_idle_add(
        [](gpointer data) {
          gtk_dialog_response(GTK_DIALOG(data), GTK_RESPONSE_ACCEPT);
          return gboolean{G_SOURCE_REMOVE};
        },
        dialog);
  }
  return false;
}

}  // namespace

std::optional<ExportWishes> AskForExport(GtkWindow* parent, const std::string& name,
                                         uint32_t length) {
  GtkWidget* dialog =
      gtk_file_chooser_dialog_new("Export a film", parent, GTK_FILE_CHOOSER_ACTION_SAVE, "_Cancel",
                                  GTK_RESPONSE_CANCEL, "_Export", GTK_RESPONSE_ACCEPT, nullptr);
  auto* chooser = GTK_FILE_CHOOSER(dialog);
  gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);
  gtk_file_chooser_set_do_overwrite_confirmation(chooser, TRUE);
  AddKinds(chooser);
  const Fields fields = NewFields(length);
  gtk_file_chooser_set_extra_widget(chooser, fields.box);
  gtk_file_chooser_set_current_name(chooser, (name + kKinds[0].ending).c_str());
  g_signal_connect(
      chooser, "notify::filter",
      G_CALLBACK(+[](GtkFileChooser* self, GParamSpec*, gpointer) { SetEnding(self); }), nullptr);

  std::optional<ExportWishes> wishes;
  if (RunUntilNamed(dialog)) {
    char* path = gtk_file_chooser_get_filename(chooser);
    if (path) {
      const uint32_t to = MsOf(fields.to);
      wishes = ExportWishes{path, gtk_entry_get_text(GTK_ENTRY(fields.rate)), MsOf(fields.from),
                            to == length ? 0 : to};
    }
    g_free(path);
  }
  gtk_widget_destroy(dialog);
  return wishes;
}

}  // namespace vexel::client
