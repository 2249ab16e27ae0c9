#include "client/desktop/site_list.h"

#include <string>

#include "client/desktop/connect.h"

namespace vexel::client {

namespace {

constexpr int kSpace = 6;    // pixels
constexpr int kHeight = 90;  // of the list; more sites scroll

GtkWidget* NewRow(const std::string& site) {
  GtkWidget* label = gtk_label_new(site.c_str());
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  return label;
}

std::string SiteOf(GtkListBoxRow* row) {
  return gtk_label_get_text(GTK_LABEL(gtk_bin_get_child(GTK_BIN(row))));
}

GtkListBoxRow* FirstRow(GtkListBox* list) {
  return gtk_list_box_get_row_at_index(list, 0);
}

}  // namespace

GtkWidget* NewSiteList(Settings* settings) {
  GtkWidget* list = gtk_list_box_new();
  gtk_list_box_set_selection_mode(GTK_LIST_BOX(list), GTK_SELECTION_BROWSE);
  atk_object_set_name(gtk_widget_get_accessible(list), "Sites whose pages may be opened");
  GtkWidget* none = gtk_label_new("None yet: a movie's first link to a site asks.");
  gtk_widget_show(none);
  gtk_list_box_set_placeholder(GTK_LIST_BOX(list), none);
  for (const std::string& site : settings->allowedSites())
    gtk_list_box_insert(GTK_LIST_BOX(list), NewRow(site), -1);

  GtkWidget* scrolled = gtk_scrolled_window_new(nullptr, nullptr);
  gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(scrolled), GTK_SHADOW_IN);
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER,
                                 GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_min_content_height(GTK_SCROLLED_WINDOW(scrolled), kHeight);
  gtk_container_add(GTK_CONTAINER(scrolled), list);

  GtkWidget* one = gtk_button_new_with_mnemonic("_Forget");
  GtkWidget* all = gtk_button_new_with_mnemonic("For_get all");
  const auto adjust = [list, one, all] {
    gtk_widget_set_sensitive(one, gtk_list_box_get_selected_row(GTK_LIST_BOX(list)) != nullptr);
    gtk_widget_set_sensitive(all, FirstRow(GTK_LIST_BOX(list)) != nullptr);
  };
  const auto forget = [settings, list](GtkListBoxRow* row) {
    settings->Forget(SiteOf(row));
    gtk_container_remove(GTK_CONTAINER(list), GTK_WIDGET(row));
  };
  Connect(one, "clicked", [list, forget, adjust] {
    GtkListBoxRow* row = gtk_list_box_get_selected_row(GTK_LIST_BOX(list));
    if (row) forget(row);
    adjust();
  });
  Connect(all, "clicked", [list, forget, adjust] {
    while (GtkListBoxRow* row = FirstRow(GTK_LIST_BOX(list))) forget(row);
    adjust();
  });
  Connect(list, "selected-rows-changed", adjust);
  adjust();

  GtkWidget* buttons = gtk_box_new(GTK_ORIENTATION_VERTICAL, kSpace);
  gtk_box_pack_start(GTK_BOX(buttons), one, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(buttons), all, FALSE, FALSE, 0);
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kSpace);
  gtk_box_pack_start(GTK_BOX(box), scrolled, TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(box), buttons, FALSE, FALSE, 0);
  return box;
}

}  // namespace vexel::client
