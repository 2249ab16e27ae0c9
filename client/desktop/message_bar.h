// What is said to the user, in bars above the movie.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

namespace vexel::client {

class MessageBar {
 public:
  // `onGrow` gets the pixels by which the bars become taller, or flatter.
  explicit MessageBar(std::function<void(int height)> onGrow);
  MessageBar(const MessageBar&) = delete;
  MessageBar& operator=(const MessageBar&) = delete;

  // Owned by whatever it is put into.
  GtkWidget* widget() const { return box_; }

  // There is one bar for each of these; what is told last takes the place of
  // what was told in the same way before. Buttons are named with an underscore
  // before their key.
  void TellProblem(const std::string& text);
  // `button` runs `run`.
  void Ask(const std::string& text, const std::string& button, std::function<void()> run);
  void TellSuccess(const std::string& text, const std::string& button, std::function<void()> run);
  // Of work that `cancel` ends, the share that is done, 0 to 1. The bar stays
  // until EndWork.
  void ShowWork(const std::string& text, std::function<void()> cancel);
  void SetDone(double share);
  void EndWork();

  // Takes all away that is about a movie.
  void Clear();

 private:
  struct Bar {
    GtkWidget* bar;
    GtkWidget* label;
    GtkWidget* button;  // null: none
    std::function<void()> run;
  };
  void Make(Bar* bar, GtkMessageType type, bool hasButton);
  void Show(Bar* bar, const std::string& text, const std::string& button,
            std::function<void()> run);
  void Hide(Bar* bar);
  void Respond(Bar* bar, int response);
  int Height() const;

  std::function<void(int)> onGrow_;
  GtkWidget* box_;
  Bar problem_, question_, success_, work_;
  GtkWidget* done_;
};

}  // namespace vexel::client
