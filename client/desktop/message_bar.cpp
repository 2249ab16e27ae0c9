#include "client/desktop/message_bar.h"

#include <utility>

namespace vexel::client {

namespace {

constexpr int kMostLines = 3;
constexpr int kDoneWidth = 120;  // pixels

GtkWidget* NewLabel() {
  GtkWidget* label = gtk_label_new("");
  gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  // A long text must not make a narrow window tall.
  gtk_label_set_lines(GTK_LABEL(label), kMostLines);
  gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  return label;
}

GtkBox* ContentOf(GtkWidget* bar) {
  return GTK_BOX(gtk_info_bar_get_content_area(GTK_INFO_BAR(bar)));
}

}  // namespace

MessageBar::MessageBar(std::function<void(int)> onGrow)
    : onGrow_(std::move(onGrow)), box_(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0)) {
  Make(&problem_, GTK_MESSAGE_WARNING, false);
  Make(&question_, GTK_MESSAGE_QUESTION, true);
  Make(&success_, GTK_MESSAGE_INFO, true);
  Make(&work_, GTK_MESSAGE_OTHER, true);
  gtk_info_bar_set_show_close_button(GTK_INFO_BAR(work_.bar), FALSE);
  done_ = gtk_progress_bar_new();
  gtk_widget_set_size_request(done_, kDoneWidth, -1);
  gtk_widget_set_valign(done_, GTK_ALIGN_CENTER);
  gtk_widget_show(done_);
  gtk_box_pack_end(ContentOf(work_.bar), done_, FALSE, FALSE, 0);
}

void MessageBar::Make(Bar* bar, GtkMessageType type, bool hasButton) {
  *bar = {gtk_info_bar_new(), NewLabel(), nullptr, nullptr};
  gtk_info_bar_set_message_type(GTK_INFO_BAR(bar->bar), type);
  gtk_info_bar_set_show_close_button(GTK_INFO_BAR(bar->bar), TRUE);
  if (hasButton)
    bar->button = gtk_info_bar_add_button(GTK_INFO_BAR(bar->bar), "", GTK_RESPONSE_YES);
  gtk_box_pack_start(ContentOf(bar->bar), bar->label, TRUE, TRUE, 0);
  gtk_widget_show_all(bar->bar);
  gtk_widget_set_no_show_all(bar->bar, TRUE);
  gtk_widget_hide(bar->bar);
  gtk_box_pack_start(GTK_BOX(box_), bar->bar, FALSE, FALSE, 0);
  struct Responder {
    MessageBar* self;
    Bar* bar;
  };
  g_signal_connect_data(
      bar->bar, "response", G_CALLBACK(+[](GtkInfoBar*, int response, gpointer data) {
        const auto* to = static_cast<Responder*>(data);
        to->self->Respond(to->bar, response);
      }),
      new Responder{this, bar},
      [](gpointer data, GClosure*) { delete static_cast<Responder*>(data); },
      static_cast<GConnectFlags>(0));
}

void MessageBar::Respond(Bar* bar, int response) {
  const std::function<void()> run = std::exchange(bar->run, nullptr);
  Hide(bar);
  if (response == GTK_RESPONSE_YES && run) run();
}

int MessageBar::Height() const {
  GtkWidget* window = gtk_widget_get_toplevel(box_);
  int height = 0;
  gtk_widget_get_preferred_height_for_width(box_, gtk_widget_get_allocated_width(window), nullptr,
                                            &height);
  return height;
}

void MessageBar::Show(Bar* bar, const std::string& text, const std::string& button,
                      std::function<void()> run) {
  const int before = Height();
  gtk_label_set_text(GTK_LABEL(bar->label), text.c_str());
  gtk_widget_set_tooltip_text(bar->label, text.c_str());
  if (bar->button) gtk_button_set_label(GTK_BUTTON(bar->button), button.c_str());
  bar->run = std::move(run);
  gtk_widget_show(bar->bar);
  onGrow_(Height() - before);
}

void MessageBar::Hide(Bar* bar) {
  bar->run = nullptr;
  if (!gtk_widget_get_visible(bar->bar)) return;
  const int before = Height();
  gtk_widget_hide(bar->bar);
  onGrow_(Height() - before);
}

void MessageBar::TellProblem(const std::string& text) {
  Show(&problem_, text, "", nullptr);
}

void MessageBar::Ask(const std::string& text, const std::string& button,
                     std::function<void()> run) {
  Show(&question_, text, button, std::move(run));
}

void MessageBar::TellSuccess(const std::string& text, const std::string& button,
                             std::function<void()> run) {
  Show(&success_, text, button, std::move(run));
}

void MessageBar::ShowWork(const std::string& text, std::function<void()> cancel) {
  SetDone(0);
  for (Bar* earlier : {&success_, &problem_}) Hide(earlier);
  Show(&work_, text, "_Cancel", std::move(cancel));
}

void MessageBar::SetDone(double share) {
  gtk_progress_bar_set_fraction(GTK_PROGRESS_BAR(done_), share);
}

void MessageBar::EndWork() {
  Hide(&work_);
}

void MessageBar::Clear() {
  for (Bar* bar : {&problem_, &question_, &success_}) Hide(bar);
}

}  // namespace vexel::client
