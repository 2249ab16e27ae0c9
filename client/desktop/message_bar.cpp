#include "client/desktop/message_bar.h"

#include <utility>

namespace vexel::client {

namespace {

constexpr int kMostLines = 3;

void SetText(GtkWidget* label, const std::string& text) {
  gtk_label_set_text(GTK_LABEL(label), text.c_str());
  gtk_widget_set_tooltip_text(label, text.c_str());
}

void Appear(GtkWidget* bar, bool appear) {
  gtk_widget_set_visible(bar, appear);
  gtk_info_bar_set_revealed(GTK_INFO_BAR(bar), appear);
}

}  // namespace

GtkWidget* MessageBar::MakeBar(GtkMessageType type, GtkWidget** label) {
  GtkWidget* bar = gtk_info_bar_new();
  gtk_info_bar_set_message_type(GTK_INFO_BAR(bar), type);
  gtk_info_bar_set_show_close_button(GTK_INFO_BAR(bar), TRUE);
  *label = gtk_label_new("");
  gtk_label_set_line_wrap(GTK_LABEL(*label), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(*label), PANGO_WRAP_WORD_CHAR);
  // A long text must not make a narrow window tall.
  gtk_label_set_lines(GTK_LABEL(*label), kMostLines);
  gtk_label_set_ellipsize(GTK_LABEL(*label), PANGO_ELLIPSIZE_END);
  gtk_label_set_xalign(GTK_LABEL(*label), 0);
  GtkWidget* content = gtk_info_bar_get_content_area(GTK_INFO_BAR(bar));
  gtk_box_pack_start(GTK_BOX(content), *label, TRUE, TRUE, 0);
  gtk_widget_show_all(bar);
  gtk_widget_set_no_show_all(bar, TRUE);
  gtk_widget_hide(bar);
  gtk_box_pack_start(GTK_BOX(box_), bar, FALSE, FALSE, 0);
  return bar;
}

MessageBar::MessageBar() {
  box_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  problem_ = MakeBar(GTK_MESSAGE_WARNING, &problemText_);
  g_signal_connect(
      problem_, "response",
      G_CALLBACK(+[](GtkInfoBar* bar, int, gpointer) { Appear(GTK_WIDGET(bar), false); }), nullptr);
  question_ = MakeBar(GTK_MESSAGE_QUESTION, &questionText_);
  yes_ = gtk_info_bar_add_button(GTK_INFO_BAR(question_), "", GTK_RESPONSE_YES);
  g_signal_connect(question_, "response",
                   G_CALLBACK(+[](GtkInfoBar* bar, int response, gpointer self) {
                     Appear(GTK_WIDGET(bar), false);
                     const auto run = std::exchange(static_cast<MessageBar*>(self)->run_, nullptr);
                     if (response == GTK_RESPONSE_YES && run) run();
                   }),
                   this);
}

void MessageBar::TellProblem(const std::string& text) {
  SetText(problemText_, text);
  Appear(problem_, true);
}

void MessageBar::Ask(const std::string& text, const std::string& yes, std::function<void()> run) {
  SetText(questionText_, text);
  gtk_button_set_label(GTK_BUTTON(yes_), yes.c_str());
  run_ = std::move(run);
  Appear(question_, true);
}

void MessageBar::Clear() {
  Appear(problem_, false);
  Appear(question_, false);
  run_ = nullptr;
}

}  // namespace vexel::client
