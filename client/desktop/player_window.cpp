#include "client/desktop/player_window.h"

#include <gdk/gdkx.h>

#include <filesystem>
#include <utility>

#include "client/desktop/backdrop.h"
#include "client/desktop/drops.h"
#include "client/desktop/file_dialogs.h"
#include "client/desktop/help_windows.h"
#include "client/desktop/movie_menu.h"
#include "client/desktop/movie_name.h"
#include "client/desktop/picture_file.h"
#include "client/desktop/preferences_dialog.h"
#include "client/desktop/recent_movies.h"
#include "client/desktop/shortcuts.h"

namespace vexel::client {

namespace {

constexpr uint32_t kRefreshMs = 100;

Display* XDisplay() {
  return GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
}

}  // namespace

PlayerWindow::PlayerWindow(EventLoop* loop, const PluginLibrary* library,
                           std::function<void(const LogReport&)> report,
                           const std::optional<DeliverySetup>& delivery)
    : loop_(loop),
      settings_(Make<Preferences>(Preferences::DefaultPath())),
      http_(std::make_unique<HttpService>(loop)) {
  MakeWidgets();
  MakeSite();
  menus_->SetPlayable(false);
  TakeSettings();
  stage_ = {loop, library, http_.get(), settings_.kept(), site_.get(), std::move(report), delivery};
  JoinBus();
  Refresh();
}

PlayerWindow::~PlayerWindow() {
  frame_->Keep();
  exporter_ = nullptr;
  bus_ = nullptr;
  presentation_ = nullptr;
  events_ = nullptr;
  shelf_ = nullptr;
  site_ = nullptr;
  gtk_widget_destroy(window_);
}

void PlayerWindow::MakeWindow() {
  SetDefaultIcon();
  window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window_), "Vexel");
  g_signal_connect(window_, "delete-event", G_CALLBACK(+[](GtkWidget*, GdkEvent*, gpointer) {
                     gtk_main_quit();
                     return gboolean{TRUE};
                   }),
                   nullptr);
  g_signal_connect(
      window_, "key-press-event", G_CALLBACK(+[](GtkWidget*, GdkEventKey* event, gpointer self) {
        const bool plain = (event->state & (GDK_CONTROL_MASK | GDK_MOD1_MASK)) == 0;
        return gboolean{plain && static_cast<PlayerWindow*>(self)->RunShortcut(event->keyval)};
      }),
      this);
  g_signal_connect(window_, "motion-notify-event",
                   G_CALLBACK(+[](GtkWidget*, GdkEvent*, gpointer self) {
                     static_cast<PlayerWindow*>(self)->shelf_->Moved(false);
                     return gboolean{FALSE};
                   }),
                   this);
  gtk_widget_add_events(window_, GDK_POINTER_MOTION_MASK);
}

void PlayerWindow::MakeWidgets() {
  MakeWindow();
  TakeDrops(loop_, window_, [this](const std::string& uri) { Open(uri); });
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_container_add(GTK_CONTAINER(window_), box);
  MakeMenus();
  gtk_box_pack_start(GTK_BOX(box), menus_->widget(), FALSE, FALSE, 0);
  messages_ = std::make_unique<MessageBar>([this](int height) { frame_->Grow(height); });
  gtk_box_pack_start(GTK_BOX(box), messages_->widget(), FALSE, FALSE, 0);
  pages_ = std::make_unique<Pages>(&settings_, messages_.get());
  exporter_ = std::make_unique<Exporter>(loop_, GTK_WINDOW(window_), messages_.get());

  GtkWidget* overlay = gtk_overlay_new();
  gtk_box_pack_start(GTK_BOX(box), overlay, TRUE, TRUE, 0);
  area_ = gtk_drawing_area_new();
  gtk_widget_set_size_request(area_, kSmallest, kSmallest);
  gtk_container_add(GTK_CONTAINER(overlay), area_);
  g_signal_connect(area_, "draw", G_CALLBACK(+[](GtkWidget*, cairo_t* cr, gpointer self) {
                     DrawBackdrop(cr, static_cast<PlayerWindow*>(self)->area_,
                                  static_cast<PlayerWindow*>(self)->opened_ == 0);
                     return gboolean{TRUE};
                   }),
                   this);
  g_signal_connect(area_, "size-allocate",
                   G_CALLBACK(+[](GtkWidget*, GdkRectangle*, gpointer self) {
                     static_cast<PlayerWindow*>(self)->FitSite();
                   }),
                   this);

  MakeBar();
  shelf_ = std::make_unique<BarShelf>(loop_, GTK_OVERLAY(overlay), area_, bar_->widget());
  frame_ = std::make_unique<WindowFrame>(GTK_WINDOW(window_), &settings_);
  gtk_widget_show_all(box);
  gtk_widget_show(window_);
}

void PlayerWindow::MakeBar() {
  bar_ = std::make_unique<TransportBar>(
      TransportBar::Actions{.playOrPause = [this] { PlayOrPause(); },
                            .seek = [this](uint32_t ms) { Seek(ms); },
                            .step =
                                [this](int frames) {
                                  if (presentation_) presentation_->StepFrames(frames);
                                },
                            .setSpeed = [this](double speed) { SetSpeed(speed); },
                            .setLoop = [this](bool loop) { SetLoop(loop); },
                            .fullScreen = [this] { SetFullScreen(!fullScreen_); }});
}

void PlayerWindow::JoinBus() {
  bus_ = std::make_unique<Mpris>(
      Mpris::Actions{.raise = [this] { gtk_window_present(GTK_WINDOW(window_)); },
                     .quit = [] { gtk_main_quit(); },
                     .setFullScreen = [this](bool on) { SetFullScreen(on); },
                     .open = [this](const std::string& uri) { Open(uri); },
                     .playOrPause = [this] { PlayOrPause(); },
                     .seek = [this](uint32_t ms) { Seek(ms); },
                     .setSpeed = [this](double speed) { SetSpeed(speed); },
                     .setLoop = [this](bool loop) { SetLoop(loop); }},
      [this] { return BusState(); });
}

void PlayerWindow::MakeSite() {
  GdkWindow* parent = gtk_widget_get_window(area_);
  gdk_window_ensure_native(parent);
  site_ = Make<XSite>(XDisplay(), GDK_WINDOW_XID(parent));
  site_->onWish = [this] {
    menus_->SetPlayable(true);
    if (!settings_.keepsSize()) FollowMovieSize();
  };
  shelf_->Raise();
  events_ = std::make_unique<SiteEvents>(
      window_, site_.get(),
      SiteEvents::Actions{.moved = [this](bool dragging) { shelf_->Moved(dragging); },
                          .pressed = [this] { shelf_->Pressed(); },
                          .left = [this] { shelf_->Left(); },
                          .menu =
                              [this] {
                                if (presentation_) later_ = loop_->Soon([this] { MovieMenu(); });
                              },
                          .escape =
                              [this] {
                                if (shelf_->HasFocus()) return shelf_->DropFocus(), true;
                                const bool leaves = fullScreen_;
                                SetFullScreen(false);
                                return leaves;
                              },
                          .keysAreTaken = [this] { return shelf_->HasFocus(); }});
  FitSite();
}

void PlayerWindow::MakeMenus() {
  menus_ = std::make_unique<MainMenu>(
      GTK_WINDOW(window_),
      MainMenu::Actions{.openFile =
                            [this] {
                              if (const auto path = AskForMovie(GTK_WINDOW(window_))) Open(*path);
                            },
                        .openAddress =
                            [this] {
                              if (const auto url = AskForAddress(GTK_WINDOW(window_))) Open(*url);
                            },
                        .openRecent = [this](const std::string& uri) { Open(uri); },
                        .clearRecent = ClearRecentMovies,
                        .savePicture = [this] { SaveShownPicture(); },
                        .exportFilm = [this] { ExportFilm(); },
                        .preferences =
                            [this] {
                              ShowPreferences(GTK_WINDOW(window_), &settings_,
                                              [this] { TakeSettings(); });
                            },
                        .quit = [] { gtk_main_quit(); },
                        .playOrPause =
                            [this] {
                              if (presentation_) presentation_->PlayOrPause();
                            },
                        .step =
                            [this](int frames) {
                              if (presentation_) presentation_->StepFrames(frames);
                            },
                        .fullScreen = [this] { SetFullScreen(!fullScreen_); },
                        .movieSize = [this] { FollowMovieSize(); },
                        .toBar = [this] { shelf_->TakeFocus(); },
                        .shortcuts = [this] { ShowShortcuts(GTK_WINDOW(window_)); },
                        .about = [this] { ShowAbout(GTK_WINDOW(window_)); }});
}

bool PlayerWindow::RunShortcut(unsigned key) {
  switch (gdk_keyval_to_lower(key)) {
    case kFullKey:
      SetFullScreen(!fullScreen_);
      return true;
    case kBackKey:
      if (presentation_) presentation_->StepFrames(-1);
      return true;
    case kForwardKey:
      if (presentation_) presentation_->StepFrames(1);
      return true;
    case kPlayKey:
      // A button of the bar's takes it. The seek bar has the focus once it was
      // pressed, and makes nothing of this key.
      if (shelf_->HasFocus() && !GTK_IS_RANGE(gtk_window_get_focus(GTK_WINDOW(window_))))
        return false;
      PlayOrPause();
      return true;
    default:
      return false;
  }
}

// --- Sizes ---

void PlayerWindow::FitSite() {
  if (!site_) return;
  GdkRectangle place;
  gtk_widget_get_allocation(area_, &place);
  const int scale = gtk_widget_get_scale_factor(area_);
  site_->Fit({place.width * scale, place.height * scale});
  // Not while widgets get their places.
  if (std::exchange(barWidth_, place.width) != place.width)
    fitBar_ = loop_->Soon([this] { bar_->Fit(barWidth_); });
}

void PlayerWindow::FollowMovieSize() {
  // As they will be: messages may just have come or gone.
  int besides = shelf_->Room();
  for (GtkWidget* widget : {menus_->widget(), messages_->widget()}) {
    int height = 0;
    gtk_widget_get_preferred_height(widget, nullptr, &height);
    besides += height;
  }
  frame_->Follow(site_->movieSize(), besides);
}

void PlayerWindow::TakeSettings() {
  const int room = shelf_->Room();
  shelf_->SetPlace(settings_.barPlace());
  frame_->Grow(shelf_->Room() - room);
  // What the user set in the bar stays unless this very preference changes.
  const bool before = std::exchange(settingLoops_, settings_.loops());
  if (settingLoops_ != before) SetLoop(settingLoops_);
}

void PlayerWindow::SetFullScreen(bool on) {
  if (fullScreen_ == on) return;
  fullScreen_ = on;
  gtk_widget_set_visible(menus_->widget(), !on);
  if (on) {
    gtk_window_fullscreen(GTK_WINDOW(window_));
  } else {
    gtk_window_unfullscreen(GTK_WINDOW(window_));
  }
  shelf_->SetFullScreen(on);
}

void PlayerWindow::PlayOrPause() {
  if (presentation_) presentation_->PlayOrPause();
}

void PlayerWindow::Seek(uint32_t ms) {
  if (presentation_) presentation_->Seek(ms);
}

void PlayerWindow::SetSpeed(double speed) {
  speed_ = speed;
  if (presentation_) presentation_->SetSpeed(speed);
}

void PlayerWindow::SetLoop(bool loop) {
  loops_ = loop;
  if (presentation_) presentation_->SetLoop(loop);
}

void PlayerWindow::Refresh() {
  refresh_ = loop_->After(kRefreshMs, [this] { Refresh(); });
  TransportBar::State state;
  if (presentation_) {
    state.playable = presentation_->started();
    state.running = presentation_->running();
    state.position = presentation_->position();
    state.length = presentation_->length();
    state.loadedPercent = presentation_->loadedPercent();
    state.loading = presentation_->loading();
    state.buffering = presentation_->buffering();
  }
  state.speed = speed_;
  state.loops = loops_;
  bar_->Show(state);
  shelf_->SetNeed({.waits = !state.playable || state.buffering,
                   .stands = !state.running,
                   .forUser = state.playable && !HasCourse(state.length)});
  bus_->Tell();
}

Mpris::State PlayerWindow::BusState() const {
  Mpris::State state;
  state.movie = opened_;
  state.speed = speed_;
  state.loops = loops_;
  state.fullScreen = fullScreen_;
  if (presentation_) {
    state.uri = UriOf(presentation_->url());
    state.title = NameOf(presentation_->url());
    state.playable = presentation_->started();
    state.running = presentation_->running();
    state.buffering = presentation_->buffering();
    state.position = presentation_->position();
    state.length = presentation_->length();
    state.seekable = state.playable && HasCourse(state.length);
  }
  return state;
}

// --- Movies ---

void PlayerWindow::Open(const std::string& movie) {
  presentation_ = nullptr;
  menus_->SetPlayable(false);
  ++opened_;
  gtk_widget_queue_draw(area_);
  site_->Hide();
  messages_->Clear();
  events_->TakeKeysBack();
  gtk_window_set_title(GTK_WINDOW(window_), (NameOf(movie) + " – Vexel").c_str());
  PresentationEvents events;
  events.onProblem = [this](const std::string& text) { TellProblem(text); };
  events.onOpenURL = [this](const std::string& url) {
    // The caller is a part of what is replaced.
    later_ = loop_->Soon([this, url] { Open(url); });
  };
  events.onPage = [this](const std::string& url) { return pages_->Open(url); };
  presentation_ = std::make_unique<Presentation>(stage_, movie, std::move(events));
  presentation_->SetSpeed(speed_);
  presentation_->SetLoop(loops_);

  if (settings_.listsRecent()) AddRecentMovie(UriOf(movie));
}

void PlayerWindow::TellProblem(const std::string& text) {
  messages_->TellProblem(NameOf(presentation_->url()) + ": " + text);
}

void PlayerWindow::SaveShownPicture() {
  if (!presentation_) return;
  const std::string name = std::filesystem::path(NameOf(presentation_->url())).stem().string();
  SavePicture(GTK_WINDOW(window_), site_->picture(), name, messages_.get());
}

void PlayerWindow::ExportFilm() {
  Location location;
  if (!presentation_ || !Locate(presentation_->url(), &location)) return;
  ExportedMovie movie{{}, {}, NameOf(presentation_->url())};
  if (!location.http) {
    movie.path = std::filesystem::absolute(location.path).string();
  } else if (const std::vector<uint8_t>* bytes = presentation_->wholeFile()) {
    movie.bytes = *bytes;
  } else {
    return TellProblem("It has to be here as a whole before it can be exported.");
  }
  exporter_->Run(movie, presentation_->length());
}

void PlayerWindow::MovieMenu() {
  if (!presentation_ || !presentation_->started()) return;
  // Compared only: the movie may be another one when the user has chosen.
  const Presentation* of = presentation_.get();
  ShowMovieMenu(loop_, window_, presentation_->menu(), [this, of](std::optional<uint16_t> id) {
    if (presentation_.get() != of) return;
    if (id) {
      presentation_->menu().Choose(*id);
    } else {
      presentation_->menu().Cancel();
    }
  });
}

}  // namespace vexel::client
