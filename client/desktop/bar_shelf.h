// Where the transport bar is, and when. It lies over the movie's lower edge, so
// that its coming and going moves nothing, or below the movie. Over the movie it
// comes when the pointer moves and goes when that rests.
//
// A movie has things to click on at its lower edge as well, which the bar must
// not keep from whoever wants them: a press on the movie sends the bar away,
// until the pointer leaves the movie or touches the very edge. Movies without a
// course of their own are treated as if they had been pressed.
#pragma once

#include <gtk/gtk.h>

#include "client/core/event_loop.h"
#include "client/desktop/settings.h"

namespace vexel::client {

class BarShelf {
 public:
  // `area` is the main child of `overlay`, `bar` goes over it. The shelf ends
  // before the widgets do.
  BarShelf(EventLoop* loop, GtkOverlay* overlay, GtkWidget* area, GtkWidget* bar);
  BarShelf(const BarShelf&) = delete;
  BarShelf& operator=(const BarShelf&) = delete;

  // Puts it above the X windows that lie in the area; all are realized.
  void Raise();

  void SetPlace(BarPlace place);
  void SetFullScreen(bool on);
  // Pixels of the window's height that are neither the movie's nor the bar's to
  // share; 0 while it lies over the movie.
  int Room() const;

  // What has a say in it besides the pointer.
  struct Need {
    bool waits = false;    // for a movie, or for more of it: the bar is there
    bool stands = false;   // the movie is stopped: there until it is pressed
    bool forUser = false;  // the movie has no course, and waits for its user
    bool operator==(const Need&) const = default;
  };
  void SetNeed(const Need& need);

  // The pointer, over the window or the movie.
  void Moved(bool dragging);
  // Over the movie; it leaves it.
  void Pressed();
  void Left() { pressed_ = false; }

  // The keyboard goes into the bar and is seen to be there.
  void TakeFocus();
  bool HasFocus() const;
  void DropFocus();

 private:
  void Place();
  bool Lies() const;  // over the movie
  bool PointerIsOverBar() const;
  bool PointerIsAtEdge() const;  // the lower one, of the movie's place
  void Appear();
  void Hide();
  void Rest();
  void RestLater();

  EventLoop* loop_;
  GtkWidget* area_;
  GtkWidget* holder_;
  BarPlace place_ = BarPlace::kHides;
  bool fullScreen_ = false;
  Need need_;
  bool pressed_ = false;  // the movie, since the pointer came to it
  Watch rest_;
};

}  // namespace vexel::client
