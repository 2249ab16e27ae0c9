// The program's one window: menus, the movie's place, the bar below it, and
// what is said to the user above it.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "client/core/event_loop.h"
#include "client/core/http_service.h"
#include "client/core/plugin_library.h"
#include "client/desktop/bar_shelf.h"
#include "client/desktop/exporter.h"
#include "client/desktop/main_menu.h"
#include "client/desktop/message_bar.h"
#include "client/desktop/mpris.h"
#include "client/desktop/pages.h"
#include "client/desktop/presentation.h"
#include "client/desktop/settings.h"
#include "client/desktop/site_events.h"
#include "client/desktop/transport_bar.h"
#include "client/desktop/window_frame.h"
#include "client/desktop/x_site.h"

namespace vexel::client {

class PlayerWindow {
 public:
  // On the display that GTK has opened. `report` may be null; `delivery` is of a
  // network that is made up, if any.
  PlayerWindow(EventLoop* loop, const PluginLibrary* library,
               std::function<void(const LogReport&)> report,
               const std::optional<DeliverySetup>& delivery);
  ~PlayerWindow();
  PlayerWindow(const PlayerWindow&) = delete;
  PlayerWindow& operator=(const PlayerWindow&) = delete;

  // A path or an address, in place of what plays.
  void Open(const std::string& movie);

 private:
  void MakeWidgets();
  void MakeWindow();
  void MakeMenus();
  void MakeBar();
  void MakeSite();
  void JoinBus();

  // A key that the movie made nothing of. Whether it is a shortcut.
  bool RunShortcut(unsigned key);

  void FollowMovieSize();
  // From now on, and all that is set so far.
  void TakeSettings();
  void FitSite();
  void SetFullScreen(bool on);
  void PlayOrPause();
  void Seek(uint32_t ms);
  void SetSpeed(double speed);
  void SetLoop(bool loop);
  void Refresh();
  Mpris::State BusState() const;
  void TellProblem(const std::string& text);

  void SaveShownPicture();
  void ExportFilm();
  void MovieMenu();

  EventLoop* loop_;
  Settings settings_;
  std::unique_ptr<HttpService> http_;
  GtkWidget* window_ = nullptr;
  GtkWidget* area_ = nullptr;  // the movie's, with the bars beside it
  std::unique_ptr<WindowFrame> frame_;
  std::unique_ptr<MainMenu> menus_;
  std::unique_ptr<MessageBar> messages_;
  std::unique_ptr<Pages> pages_;
  std::unique_ptr<Exporter> exporter_;
  std::unique_ptr<TransportBar> bar_;
  std::unique_ptr<BarShelf> shelf_;
  Ref<XSite> site_;
  std::unique_ptr<SiteEvents> events_;
  Stage stage_{};
  std::unique_ptr<Presentation> presentation_;
  uint32_t opened_ = 0;  // how many movies
  double speed_ = 1;
  bool loops_ = true;
  bool settingLoops_ = true;  // as the preferences have it
  bool fullScreen_ = false;
  std::unique_ptr<Mpris> bus_;
  int barWidth_ = 0;  // which the bar was fitted into
  Watch refresh_, later_, fitBar_;
};

}  // namespace vexel::client
