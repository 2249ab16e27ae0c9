// What is said to the user, in a bar above the movie.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

namespace vexel::client {

class MessageBar {
 public:
  MessageBar();
  MessageBar(const MessageBar&) = delete;
  MessageBar& operator=(const MessageBar&) = delete;

  // Owned by whatever it is put into.
  GtkWidget* widget() const { return box_; }

  void TellProblem(const std::string& text);
  // `yes` names the button that runs `run`, with an underscore before its key. A question replaces
  // an older one.
  void Ask(const std::string& text, const std::string& yes, std::function<void()> run);
  // Takes all of it away.
  void Clear();

 private:
  GtkWidget* MakeBar(GtkMessageType type, GtkWidget** label);

  GtkWidget* box_;
  GtkWidget* problem_;
  GtkWidget* problemText_;
  GtkWidget* question_;
  GtkWidget* questionText_;
  GtkWidget* yes_;
  std::function<void()> run_;
};

}  // namespace vexel::client
