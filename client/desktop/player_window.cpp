#include "client/desktop/player_window.h"

#include <gdk/gdkx.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "client/desktop/file_dialogs.h"
#include "client/desktop/movie_menu.h"
#include "client/desktop/preferences_dialog.h"
#include "client/desktop/shortcuts.h"

namespace vexel::client {

namespace {

constexpr uint32_t kRefreshMs = 100;
constexpr _QKxSize kFirstSize{640, 400};
constexpr int kSmallest = 120;          // of a side of the movie's place, pixels
constexpr double kShareOfScreen = 0.9;  // that a new movie's window takes at most

// The URI of a path or an address.
std::string UriOf(const std::string& url) {
  GFile* file = g_file_new_for_commandline_arg(url.c_str());
  char* text = g_file_get_uri(file);
  const std::string uri = text;
  g_free(text);
  g_object_unref(file);
  return uri;
}

// The movie's name for people: of its file, or of an address the last part.
std::string NameOf(const std::string& url) {
  const std::string uri = UriOf(url);
  const std::string plain = uri.substr(0, uri.find_first_of("?#"));
  char* last = g_uri_unescape_string(std::filesystem::path(plain).filename().c_str(), nullptr);
  char* shown = g_filename_display_name(last && *last ? last : url.c_str());
  const std::string name = shown;
  g_free(shown);
  g_free(last);
  return name;
}

Display* XDisplay() {
  return GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
}

}  // namespace

PlayerWindow::PlayerWindow(EventLoop* loop, const PluginLibrary* library,
                           std::function<void(const LogReport&)> report)
    : loop_(loop),
      settings_(Make<Preferences>(Preferences::DefaultPath())),
      http_(std::make_unique<HttpService>(loop)) {
  MakeWidgets();
  MakeSite();
  stage_ = {loop, library, http_.get(), settings_.kept(), site_.get(), std::move(report)};
  JoinBus();
  Refresh();
}

PlayerWindow::~PlayerWindow() {
  bus_ = nullptr;
  presentation_ = nullptr;
  events_ = nullptr;
  shelf_ = nullptr;
  site_ = nullptr;
  gtk_widget_destroy(window_);
}

void PlayerWindow::MakeWindow() {
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

void PlayerWindow::TakeDrops() {
  gtk_drag_dest_set(window_, GTK_DEST_DEFAULT_ALL, nullptr, 0, GDK_ACTION_COPY);
  gtk_drag_dest_add_uri_targets(window_);
  g_signal_connect(window_, "drag-data-received",
                   G_CALLBACK(+[](GtkWidget*, GdkDragContext*, int, int, GtkSelectionData* data,
                                  unsigned, unsigned, gpointer self) {
                     char** uris = gtk_selection_data_get_uris(data);
                     // Not inside the drop, whose end the other program waits for.
                     if (uris && uris[0]) {
                       auto* window = static_cast<PlayerWindow*>(self);
                       window->later_ = window->loop_->Soon(
                           [window, uri = std::string(uris[0])] { window->Open(uri); });
                     }
                     g_strfreev(uris);
                   }),
                   this);
}

void PlayerWindow::MakeWidgets() {
  MakeWindow();
  TakeDrops();
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_container_add(GTK_CONTAINER(window_), box);
  MakeMenus();
  gtk_box_pack_start(GTK_BOX(box), menus_->widget(), FALSE, FALSE, 0);
  messages_ = std::make_unique<MessageBar>();
  gtk_box_pack_start(GTK_BOX(box), messages_->widget(), FALSE, FALSE, 0);
  pages_ = std::make_unique<Pages>(settings_.kept(), messages_.get());

  GtkWidget* overlay = gtk_overlay_new();
  gtk_box_pack_start(GTK_BOX(box), overlay, TRUE, TRUE, 0);
  area_ = gtk_drawing_area_new();
  gtk_widget_set_size_request(area_, kSmallest, kSmallest);
  gtk_container_add(GTK_CONTAINER(overlay), area_);
  g_signal_connect(area_, "draw", G_CALLBACK(+[](GtkWidget*, cairo_t* cr, gpointer) {
                     cairo_set_source_rgb(cr, 0, 0, 0);
                     cairo_paint(cr);
                     return gboolean{TRUE};
                   }),
                   nullptr);
  g_signal_connect(area_, "size-allocate",
                   G_CALLBACK(+[](GtkWidget*, GdkRectangle*, gpointer self) {
                     static_cast<PlayerWindow*>(self)->FitSite();
                   }),
                   this);

  MakeBar();
  shelf_ = std::make_unique<BarShelf>(loop_, GTK_OVERLAY(overlay), area_, bar_->widget());
  gtk_window_set_default_size(GTK_WINDOW(window_), kFirstSize.width, kFirstSize.height);
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
  site_->onWish = [this] { FollowMovieSize(); };
  shelf_->Raise();
  shelf_->SetPlace(settings_.barPlace());
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
                                if (shelf_->HasFocus()) {
                                  gtk_window_set_focus(GTK_WINDOW(window_), nullptr);
                                  return true;
                                }
                                const bool leaves = fullScreen_;
                                SetFullScreen(false);
                                return leaves;
                              }});
  FitSite();
}

void PlayerWindow::MakeMenus() {
  menus_ = std::make_unique<MainMenu>(
      GTK_WINDOW(window_),
      MainMenu::Actions{
          .openFile =
              [this] {
                if (const auto path = AskForMovie(GTK_WINDOW(window_))) Open(*path);
              },
          .openAddress =
              [this] {
                if (const auto url = AskForAddress(GTK_WINDOW(window_))) Open(*url);
              },
          .openRecent = [this](const std::string& uri) { Open(uri); },
          .savePicture = [this] { SavePicture(); },
          .preferences = [this] { ShowPreferences(GTK_WINDOW(window_), settings_.kept()); },
          .quit = [] { gtk_main_quit(); },
          .fullScreen = [this] { SetFullScreen(!fullScreen_); },
          .movieSize = [this] { FollowMovieSize(); },
          .about = [this] { About(); }});
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
      if (shelf_->HasFocus()) return false;
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
}

void PlayerWindow::FollowMovieSize() {
  const _QKxSize size = site_->movieSize();
  if (fullScreen_ || gtk_window_is_maximized(GTK_WINDOW(window_)) || size.width <= 0 ||
      size.height <= 0)
    return;
  // As they will be: messages may just have come or gone.
  int besides = shelf_->Room();
  for (GtkWidget* widget : {menus_->widget(), messages_->widget()}) {
    int height = 0;
    gtk_widget_get_preferred_height(widget, nullptr, &height);
    besides += height;
  }

  GdkRectangle screen;
  GdkMonitor* monitor =
      gdk_display_get_monitor_at_window(gdk_display_get_default(), gtk_widget_get_window(window_));
  gdk_monitor_get_workarea(monitor, &screen);
  const int scale = gtk_widget_get_scale_factor(area_);
  const double wish = std::min({1.0 / scale, screen.width * kShareOfScreen / size.width,
                                (screen.height * kShareOfScreen - besides) / size.height});
  gtk_window_resize(GTK_WINDOW(window_),
                    std::max(kSmallest, static_cast<int>(size.width * wish + 0.5)),
                    std::max(kSmallest, static_cast<int>(size.height * wish + 0.5)) + besides);
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
  ++opened_;
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

  gtk_recent_manager_add_item(gtk_recent_manager_get_default(), UriOf(movie).c_str());
}

void PlayerWindow::TellProblem(const std::string& text) {
  messages_->TellProblem(NameOf(presentation_->url()) + ": " + text);
}

void PlayerWindow::SavePicture() {
  const XSurface& picture = site_->picture();
  // As it is now, not when the dialog is through.
  std::vector<uint8_t> rgb = picture.Rgb();
  const int width = picture.width(), height = picture.height();
  if (!presentation_ || rgb.empty()) return;
  const std::string name = std::filesystem::path(NameOf(presentation_->url())).stem().string();
  const auto path = AskWhereToSave(GTK_WINDOW(window_), "Save the picture", name + ".png");
  if (!path) return;
  GdkPixbuf* pixels = gdk_pixbuf_new_from_data(rgb.data(), GDK_COLORSPACE_RGB, FALSE, 8, width,
                                               height, width * 3, nullptr, nullptr);
  GError* error = nullptr;
  if (!gdk_pixbuf_save(pixels, path->c_str(), "png", &error, nullptr)) {
    messages_->TellProblem(std::string("The picture was not saved: ") + error->message);
    g_error_free(error);
  }
  g_object_unref(pixels);
}

void PlayerWindow::About() {
  gtk_show_about_dialog(GTK_WINDOW(window_), "program-name", "Vexel", "comments",
                        "A player for vector movies", "version", VEXEL_VERSION, nullptr);
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
