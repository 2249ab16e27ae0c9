#include "client/desktop/file_dialogs.h"

namespace vexel::client {

namespace {

constexpr int kAddressChars = 50;
constexpr int kSpace = 12;  // pixels

void AddFilter(GtkFileChooser* dialog, const char* name, const char* pattern) {
  GtkFileFilter* filter = gtk_file_filter_new();
  gtk_file_filter_set_name(filter, name);
  gtk_file_filter_add_pattern(filter, pattern);
  gtk_file_chooser_add_filter(dialog, filter);
}

// Shows the dialog and lets go of it.
std::optional<std::string> PathFrom(GtkFileChooserNative* dialog) {
  std::optional<std::string> path;
  if (gtk_native_dialog_run(GTK_NATIVE_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT) {
    char* chosen = gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(dialog));
    if (chosen) path = chosen;
    g_free(chosen);
  }
  g_object_unref(dialog);
  return path;
}

}  // namespace

std::optional<std::string> AskForMovie(GtkWindow* parent) {
  GtkFileChooserNative* dialog = gtk_file_chooser_native_new(
      "Open a movie", parent, GTK_FILE_CHOOSER_ACTION_OPEN, nullptr, nullptr);
  AddFilter(GTK_FILE_CHOOSER(dialog), "Movies", "*.vxf");
  AddFilter(GTK_FILE_CHOOSER(dialog), "All files", "*");
  return PathFrom(dialog);
}

std::optional<std::string> AskForAddress(GtkWindow* parent) {
  GtkWidget* dialog =
      gtk_dialog_new_with_buttons("Open an address", parent, GTK_DIALOG_MODAL, "_Cancel",
                                  GTK_RESPONSE_CANCEL, "_Open", GTK_RESPONSE_ACCEPT, nullptr);
  gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);
  GtkWidget* entry = gtk_entry_new();
  gtk_entry_set_placeholder_text(GTK_ENTRY(entry), "http://");
  gtk_entry_set_activates_default(GTK_ENTRY(entry), TRUE);
  gtk_entry_set_width_chars(GTK_ENTRY(entry), kAddressChars);
  GtkWidget* label = gtk_label_new_with_mnemonic("_Address");
  gtk_label_set_mnemonic_widget(GTK_LABEL(label), entry);
  GtkWidget* row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kSpace);
  gtk_container_set_border_width(GTK_CONTAINER(row), kSpace);
  gtk_box_pack_start(GTK_BOX(row), label, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(row), entry, TRUE, TRUE, 0);
  gtk_container_add(GTK_CONTAINER(gtk_dialog_get_content_area(GTK_DIALOG(dialog))), row);
  gtk_widget_show_all(row);
  const bool accepted = gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT;
  const std::string url = gtk_entry_get_text(GTK_ENTRY(entry));
  gtk_widget_destroy(dialog);
  if (!accepted || url.empty()) return {};
  return url;
}

std::optional<std::string> AskWhereToSave(GtkWindow* parent, const char* title,
                                          const std::string& name) {
  GtkFileChooserNative* dialog =
      gtk_file_chooser_native_new(title, parent, GTK_FILE_CHOOSER_ACTION_SAVE, nullptr, nullptr);
  gtk_file_chooser_set_do_overwrite_confirmation(GTK_FILE_CHOOSER(dialog), TRUE);
  gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(dialog), name.c_str());
  return PathFrom(dialog);
}

}  // namespace vexel::client
