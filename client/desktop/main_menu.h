// The window's menu bar.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

namespace vexel::client {

class MainMenu {
 public:
  // What the user chooses.
  struct Actions {
    std::function<void()> openFile;
    std::function<void()> openAddress;
    std::function<void(const std::string& uri)> openRecent;
    std::function<void()> clearRecent;
    std::function<void()> savePicture;
    std::function<void()> exportFilm;
    std::function<void()> preferences;
    std::function<void()> quit;
    std::function<void()> playOrPause;
    std::function<void(int frames)> step;
    std::function<void()> fullScreen;
    std::function<void()> movieSize;
    std::function<void()> toBar;
    std::function<void()> shortcuts;
    std::function<void()> about;
  };
  // The keys of the items are the window's from now on.
  MainMenu(GtkWindow* window, Actions actions);
  ~MainMenu();
  MainMenu(const MainMenu&) = delete;
  MainMenu& operator=(const MainMenu&) = delete;

  // Greys what needs a movie to play.
  void SetPlayable(bool playable);

  // Owned by whatever it is put into.
  GtkWidget* widget() const { return bar_; }

 private:
  GtkWidget* AddMenu(const char* text);
  GtkWidget* AddItem(GtkWidget* menu, const char* text, unsigned key, GdkModifierType modifiers,
                     std::function<void()> run);
  // Shows a key that the window takes by itself.
  GtkWidget* AddItem(GtkWidget* menu, const char* text, unsigned shownKey,
                     std::function<void()> run);
  void AddRecent(GtkWidget* menu);

  Actions actions_;
  GtkAccelGroup* keys_;
  GtkWidget* bar_;
  std::vector<GtkWidget*> ofMovie_;
};

}  // namespace vexel::client
