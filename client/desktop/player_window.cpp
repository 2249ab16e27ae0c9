// GTK makes the window, and the movie's place is an X window of our own inside
// it, which GTK knows nothing of: a filter takes that window's events, and the
// key presses that are the movie's, out of GTK's queue.
#include "client/desktop/player_window.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <gdk/gdkx.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "client/desktop/preferences_dialog.h"

namespace vexel::client {

namespace {

constexpr uint32_t kRefreshMs = 100;
constexpr uint32_t kHideBarMs = 2500;  // without a movement of the pointer
constexpr _QKxSize kFirstSize{640, 400};
constexpr int kSmallest = 120;          // of a side of the movie's place, pixels
constexpr double kShareOfScreen = 0.9;  // that a new movie's window takes at most

constexpr unsigned kFull = XK_f, kBack = XK_comma, kForward = XK_period, kPlay = XK_space;

constexpr char kBrowser[] = "xdg-open";

using Run = std::function<void()>;

void Connect(GtkWidget* widget, const char* signal, Run run) {
  g_signal_connect_data(
      widget, signal, G_CALLBACK(+[](GtkWidget*, gpointer data) { (*static_cast<Run*>(data))(); }),
      new Run(std::move(run)), [](gpointer data, GClosure*) { delete static_cast<Run*>(data); },
      static_cast<GConnectFlags>(0));
}

// The movie's name for people.
std::string NameOf(const std::string& url) {
  const std::string last = std::filesystem::path(url).filename().string();
  char* shown = g_filename_display_name(last.empty() ? url.c_str() : last.c_str());
  const std::string name = shown;
  g_free(shown);
  return name;
}

// The pointer's place in a window, pixels.
void PointerAt(GdkWindow* window, int* x, int* y) {
  GdkSeat* seat = gdk_display_get_default_seat(gdk_window_get_display(window));
  gdk_window_get_device_position(window, gdk_seat_get_pointer(seat), x, y, nullptr);
}

Display* XDisplay() {
  return GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
}

}  // namespace

PlayerWindow::PlayerWindow(EventLoop* loop, const PluginLibrary* library,
                           std::function<void(const LogReport&)> report)
    : loop_(loop),
      preferences_(Make<Preferences>(Preferences::DefaultPath())),
      http_(std::make_unique<HttpService>(loop)) {
  MakeWidgets();
  MakeSite();
  stage_ = {loop, library, http_.get(), preferences_.get(), site_.get(), std::move(report)};
  Refresh();
}

PlayerWindow::~PlayerWindow() {
  presentation_ = nullptr;
  gdk_window_remove_filter(nullptr, Filter, this);
  site_ = nullptr;
  gtk_widget_destroy(window_);
  g_object_unref(keys_);
}

void PlayerWindow::MakeWidgets() {
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
                     static_cast<PlayerWindow*>(self)->WakeBar();
                     return gboolean{FALSE};
                   }),
                   this);
  gtk_widget_add_events(window_, GDK_POINTER_MOTION_MASK);

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

  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_container_add(GTK_CONTAINER(window_), box);
  menus_ = MakeMenus();
  gtk_box_pack_start(GTK_BOX(box), menus_, FALSE, FALSE, 0);
  messages_ = std::make_unique<MessageBar>();
  gtk_box_pack_start(GTK_BOX(box), messages_->widget(), FALSE, FALSE, 0);

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

  bar_ = std::make_unique<TransportBar>(
      TransportBar::Actions{.playOrPause =
                                [this] {
                                  if (presentation_) presentation_->PlayOrPause();
                                },
                            .seek =
                                [this](uint32_t ms) {
                                  if (presentation_) presentation_->Seek(ms);
                                },
                            .step =
                                [this](int frames) {
                                  if (presentation_) presentation_->StepFrames(frames);
                                },
                            .setSpeed =
                                [this](double speed) {
                                  speed_ = speed;
                                  if (presentation_) presentation_->SetSpeed(speed);
                                },
                            .setLoop =
                                [this](bool loop) {
                                  loops_ = loop;
                                  if (presentation_) presentation_->SetLoop(loop);
                                },
                            .fullScreen = [this] { SetFullScreen(!fullScreen_); }});
  barHolder_ = gtk_event_box_new();
  gtk_style_context_add_class(gtk_widget_get_style_context(barHolder_), GTK_STYLE_CLASS_BACKGROUND);
  gtk_container_add(GTK_CONTAINER(barHolder_), bar_->widget());
  gtk_widget_set_valign(barHolder_, GTK_ALIGN_END);
  gtk_overlay_add_overlay(GTK_OVERLAY(overlay), barHolder_);

  gtk_window_set_default_size(GTK_WINDOW(window_), kFirstSize.width, kFirstSize.height);
  gtk_widget_show_all(box);
  int height = 0;
  gtk_widget_get_preferred_height(barHolder_, nullptr, &height);
  gtk_widget_set_margin_bottom(area_, height);
  gtk_widget_show(window_);
}

void PlayerWindow::MakeSite() {
  GdkWindow* parent = gtk_widget_get_window(area_);
  gdk_window_ensure_native(parent);
  site_ = Make<XSite>(XDisplay(), GDK_WINDOW_XID(parent));
  site_->onWish = [this] { FollowMovieSize(); };
  // The bar lies over the movie, so it is a window of the server's, too.
  GdkWindow* bar = gtk_widget_get_window(barHolder_);
  while (gdk_window_get_parent(bar) != gdk_window_get_parent(parent))
    bar = gdk_window_get_parent(bar);
  gdk_window_ensure_native(bar);
  gdk_window_raise(bar);
  gdk_window_add_filter(nullptr, Filter, this);
  FitSite();
}

void PlayerWindow::AddItem(GtkWidget* menu, const char* text, unsigned key,
                           GdkModifierType modifiers, Run run) {
  GtkWidget* item = gtk_menu_item_new_with_mnemonic(text);
  if (key != 0)
    gtk_widget_add_accelerator(item, "activate", keys_, key, modifiers, GTK_ACCEL_VISIBLE);
  Connect(item, "activate", std::move(run));
  gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
}

GtkWidget* PlayerWindow::MakeMenus() {
  keys_ = gtk_accel_group_new();
  gtk_window_add_accel_group(GTK_WINDOW(window_), keys_);
  GtkWidget* bar = gtk_menu_bar_new();
  const auto add_menu = [bar](const char* text) {
    GtkWidget* item = gtk_menu_item_new_with_mnemonic(text);
    GtkWidget* menu = gtk_menu_new();
    gtk_menu_item_set_submenu(GTK_MENU_ITEM(item), menu);
    gtk_menu_shell_append(GTK_MENU_SHELL(bar), item);
    return menu;
  };
  constexpr auto kControl = GDK_CONTROL_MASK;
  constexpr auto kNone = static_cast<GdkModifierType>(0);

  GtkWidget* file = add_menu("_File");
  AddItem(file, "_Open…", GDK_KEY_o, kControl, [this] { AskForFile(); });
  AddItem(file, "Open _address…", GDK_KEY_l, kControl, [this] { AskForAddress(); });
  GtkWidget* recentItem = gtk_menu_item_new_with_mnemonic("Open _recent");
  GtkWidget* recent = gtk_recent_chooser_menu_new();
  GtkRecentFilter* filter = gtk_recent_filter_new();
  gtk_recent_filter_add_application(filter, g_get_application_name());
  gtk_recent_chooser_set_filter(GTK_RECENT_CHOOSER(recent), filter);
  gtk_recent_chooser_set_sort_type(GTK_RECENT_CHOOSER(recent), GTK_RECENT_SORT_MRU);
  gtk_menu_item_set_submenu(GTK_MENU_ITEM(recentItem), recent);
  gtk_menu_shell_append(GTK_MENU_SHELL(file), recentItem);
  Connect(recent, "item-activated", [this, recent] {
    char* uri = gtk_recent_chooser_get_current_uri(GTK_RECENT_CHOOSER(recent));
    if (uri) Open(uri);
    g_free(uri);
  });
  AddItem(file, "_Save picture…", GDK_KEY_s, kControl, [this] { SavePicture(); });
  AddItem(file, "_Preferences…", GDK_KEY_comma, kControl,
          [this] { ShowPreferences(GTK_WINDOW(window_), preferences_.get()); });
  AddItem(file, "_Quit", GDK_KEY_q, kControl, [] { gtk_main_quit(); });

  GtkWidget* view = add_menu("_View");
  AddItem(view, "_Full screen", GDK_KEY_F11, kNone, [this] { SetFullScreen(!fullScreen_); });
  AddItem(view, "Size of the _movie", GDK_KEY_1, kControl, [this] { FollowMovieSize(); });

  GtkWidget* help = add_menu("_Help");
  AddItem(help, "_About", 0, kNone, [this] { About(); });
  return bar;
}

// --- Events ---

GdkFilterReturn PlayerWindow::Filter(GdkXEvent* event, GdkEvent*, gpointer self) {
  return static_cast<PlayerWindow*>(self)->TakeEvent(static_cast<XEvent*>(event));
}

bool PlayerWindow::IsOurs(Window window) const {
  if (window == site_->window()) return true;
  GdkWindow* known = gdk_x11_window_lookup_for_display(gdk_display_get_default(), window);
  return known && gdk_window_get_toplevel(known) == gtk_widget_get_window(window_);
}

GdkFilterReturn PlayerWindow::TakeEvent(XEvent* event) {
  const bool onSite = event->xany.window == site_->window();
  switch (event->type) {
    case KeyPress:
      return IsOurs(event->xkey.window) ? TakeKey(event) : GDK_FILTER_CONTINUE;
    case ButtonPress:
      if (!onSite) {
        if (IsOurs(event->xbutton.window)) movieHasKeys_ = false;
        return GDK_FILTER_CONTINUE;
      }
      // Menus that are open hear of a press outside.
      if (gtk_grab_get_current()) return GDK_FILTER_CONTINUE;
      movieHasKeys_ = true;
      if (!gtk_window_is_active(GTK_WINDOW(window_)))
        gdk_window_focus(gtk_widget_get_window(window_), static_cast<guint32>(event->xbutton.time));
      break;
    case ButtonRelease:
      if (onSite && event->xbutton.button == Button3 && presentation_)
        later_ = loop_->Soon([this] { ShowMovieMenu(); });
      break;
    case MotionNotify:
      if (onSite) WakeBar();
      break;
    case Expose:
      break;
    default:
      return onSite ? GDK_FILTER_REMOVE : GDK_FILTER_CONTINUE;
  }
  if (!onSite) return GDK_FILTER_CONTINUE;
  site_->Forward(event);
  return GDK_FILTER_REMOVE;
}

GdkFilterReturn PlayerWindow::TakeKey(XEvent* event) {
  const KeySym key = XLookupKeysym(&event->xkey, 0);
  const bool grabbed = gtk_grab_get_current() != nullptr;
  if (!grabbed && key == XK_Escape && (fullScreen_ || movieHasKeys_)) {
    if (fullScreen_) {
      SetFullScreen(false);
    } else {
      movieHasKeys_ = false;
    }
    return GDK_FILTER_REMOVE;
  }
  const bool shortcut = key == kFull || key == kBack || key == kForward || key == kPlay ||
                        (event->xkey.state & (ControlMask | Mod1Mask)) != 0;
  if (!grabbed && (movieHasKeys_ || !shortcut) && site_->Forward(event)) return GDK_FILTER_REMOVE;
  // GTK takes keys of its own windows only.
  if (event->xkey.window == site_->window())
    event->xkey.window = GDK_WINDOW_XID(gtk_widget_get_window(window_));
  return GDK_FILTER_CONTINUE;
}

bool PlayerWindow::RunShortcut(unsigned key) {
  switch (gdk_keyval_to_lower(key)) {
    case kFull:
      SetFullScreen(!fullScreen_);
      return true;
    case kBack:
      if (presentation_) presentation_->StepFrames(-1);
      return true;
    case kForward:
      if (presentation_) presentation_->StepFrames(1);
      return true;
    case kPlay:
      if (presentation_) presentation_->PlayOrPause();
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
  int besides = 0;
  for (GtkWidget* widget : {menus_, messages_->widget(), barHolder_}) {
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
  gtk_widget_set_visible(menus_, !on);
  int height = 0;
  if (on) {
    gtk_window_fullscreen(GTK_WINDOW(window_));
  } else {
    gtk_window_unfullscreen(GTK_WINDOW(window_));
    gtk_widget_get_preferred_height(barHolder_, nullptr, &height);
  }
  // The bar lies over the movie, and below it when there is room to spare.
  gtk_widget_set_margin_bottom(area_, height);
  WakeBar();
}

void PlayerWindow::WakeBar() {
  if (!gtk_widget_get_visible(barHolder_)) {
    gtk_widget_show(barHolder_);
    gdk_window_set_cursor(gtk_widget_get_window(window_), nullptr);
  }
  if (fullScreen_) {
    hideBar_ = loop_->After(kHideBarMs, [this] { HideBar(); });
  } else {
    hideBar_.Cancel();
  }
}

void PlayerWindow::HideBar() {
  int x = 0, y = 0;
  PointerAt(gtk_widget_get_window(barHolder_), &x, &y);
  const bool over = y >= 0 && y < gtk_widget_get_allocated_height(barHolder_);
  if (over || gtk_grab_get_current()) return WakeBar();
  gtk_widget_hide(barHolder_);
  GdkCursor* none = gdk_cursor_new_for_display(gdk_display_get_default(), GDK_BLANK_CURSOR);
  gdk_window_set_cursor(gtk_widget_get_window(window_), none);
  g_object_unref(none);
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
  bar_->Show(state);
}

// --- Movies ---

void PlayerWindow::Open(const std::string& movie) {
  presentation_ = nullptr;
  site_->Hide();
  messages_->Clear();
  movieHasKeys_ = false;
  gtk_window_set_title(GTK_WINDOW(window_), (NameOf(movie) + " – Vexel").c_str());
  PresentationEvents events;
  events.onProblem = [this](const std::string& text) { TellProblem(text); };
  events.onOpenURL = [this](const std::string& url) {
    // The caller is a part of what is replaced.
    later_ = loop_->Soon([this, url] { Open(url); });
  };
  events.onPage = [this](const std::string& url) { return OpenPage(url); };
  presentation_ = std::make_unique<Presentation>(stage_, movie, std::move(events));
  presentation_->SetSpeed(speed_);
  presentation_->SetLoop(loops_);

  GFile* file = g_file_new_for_commandline_arg(movie.c_str());
  char* uri = g_file_get_uri(file);
  gtk_recent_manager_add_item(gtk_recent_manager_get_default(), uri);
  g_free(uri);
  g_object_unref(file);
}

void PlayerWindow::TellProblem(const std::string& text) {
  messages_->TellProblem(NameOf(presentation_->url()) + ": " + text);
}

// One question a site: what was allowed is kept.
bool PlayerWindow::OpenPage(const std::string& url) {
  if (!MayOpen(url)) return false;
  GUri* parts = g_uri_parse(url.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr);
  if (!parts) return false;
  const char* host = g_uri_get_host(parts);
  const std::string site = host && *host ? host : g_uri_get_scheme(parts);
  g_uri_unref(parts);
  const std::string key = "Pages." + site;
  if (preferences_->Get(key) == "open") return RunForURL(kBrowser, url);
  messages_->Ask("Open a page of " + site + "? " + url, "_Open, and don't ask again",
                 [this, key, url] {
                   preferences_->Set(key, "open");
                   if (!RunForURL(kBrowser, url)) TellProblem("No browser could be started.");
                 });
  return true;
}

void PlayerWindow::AskForFile() {
  GtkFileChooserNative* dialog = gtk_file_chooser_native_new(
      "Open a movie", GTK_WINDOW(window_), GTK_FILE_CHOOSER_ACTION_OPEN, nullptr, nullptr);
  GtkFileFilter* movies = gtk_file_filter_new();
  gtk_file_filter_set_name(movies, "Movies");
  gtk_file_filter_add_pattern(movies, "*.vxf");
  gtk_file_chooser_add_filter(GTK_FILE_CHOOSER(dialog), movies);
  GtkFileFilter* all = gtk_file_filter_new();
  gtk_file_filter_set_name(all, "All files");
  gtk_file_filter_add_pattern(all, "*");
  gtk_file_chooser_add_filter(GTK_FILE_CHOOSER(dialog), all);
  if (gtk_native_dialog_run(GTK_NATIVE_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT) {
    char* path = gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(dialog));
    if (path) Open(path);
    g_free(path);
  }
  g_object_unref(dialog);
}

void PlayerWindow::AskForAddress() {
  GtkWidget* dialog = gtk_dialog_new_with_buttons("Open an address", GTK_WINDOW(window_),
                                                  GTK_DIALOG_MODAL, "_Cancel", GTK_RESPONSE_CANCEL,
                                                  "_Open", GTK_RESPONSE_ACCEPT, nullptr);
  gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);
  GtkWidget* entry = gtk_entry_new();
  gtk_entry_set_placeholder_text(GTK_ENTRY(entry), "http://");
  gtk_entry_set_activates_default(GTK_ENTRY(entry), TRUE);
  gtk_entry_set_width_chars(GTK_ENTRY(entry), 50);
  gtk_container_add(GTK_CONTAINER(gtk_dialog_get_content_area(GTK_DIALOG(dialog))), entry);
  gtk_widget_show(entry);
  const bool accepted = gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT;
  const std::string url = gtk_entry_get_text(GTK_ENTRY(entry));
  gtk_widget_destroy(dialog);
  if (accepted && !url.empty()) Open(url);
}

void PlayerWindow::SavePicture() {
  const XSurface& picture = site_->picture();
  // As it is now, not when the dialog is through.
  std::vector<uint8_t> rgb = picture.Rgb();
  const int width = picture.width(), height = picture.height();
  if (!presentation_ || rgb.empty()) return;
  GtkFileChooserNative* dialog = gtk_file_chooser_native_new(
      "Save the picture", GTK_WINDOW(window_), GTK_FILE_CHOOSER_ACTION_SAVE, nullptr, nullptr);
  gtk_file_chooser_set_do_overwrite_confirmation(GTK_FILE_CHOOSER(dialog), TRUE);
  const std::string name = std::filesystem::path(NameOf(presentation_->url())).stem().string();
  gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(dialog), (name + ".png").c_str());
  if (gtk_native_dialog_run(GTK_NATIVE_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT) {
    char* path = gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(dialog));
    GdkPixbuf* pixels = gdk_pixbuf_new_from_data(rgb.data(), GDK_COLORSPACE_RGB, FALSE, 8, width,
                                                 height, width * 3, nullptr, nullptr);
    GError* error = nullptr;
    if (!gdk_pixbuf_save(pixels, path, "png", &error, nullptr)) {
      messages_->TellProblem(std::string("The picture was not saved: ") + error->message);
      g_error_free(error);
    }
    g_object_unref(pixels);
    g_free(path);
  }
  g_object_unref(dialog);
}

void PlayerWindow::About() {
  gtk_show_about_dialog(GTK_WINDOW(window_), "program-name", "Vexel", "comments",
                        "A player for vector movies", "version", VEXEL_VERSION, nullptr);
}

void PlayerWindow::ShowMovieMenu() {
  if (!presentation_ || !presentation_->started()) return;
  struct Choice {
    PlayerWindow* window;
    Presentation* of;  // compared only: the movie may be another one by then
    int id = -1;
  };
  const ContextMenu& own = presentation_->menu();
  if (own.items().empty()) return;
  const auto choice = std::make_shared<Choice>(Choice{this, presentation_.get()});
  GtkWidget* menu = gtk_menu_new();
  const auto append = [menu](GtkWidget* item) {
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
  };
  if (!own.title().empty()) {
    GtkWidget* title = gtk_menu_item_new_with_label(own.title().c_str());
    gtk_widget_set_sensitive(title, FALSE);
    append(title);
    append(gtk_separator_menu_item_new());
  }
  for (const ContextMenu::Item& item : own.items()) {
    if (item.separator) {
      append(gtk_separator_menu_item_new());
      continue;
    }
    GtkWidget* row = gtk_menu_item_new_with_label(item.text.c_str());
    Connect(row, "activate", [choice, id = item.id] { choice->id = id; });
    append(row);
  }
  // An item's "activate" follows the menu's end.
  Connect(menu, "selection-done", [this, choice, menu] {
    later_ = loop_->Soon([this, choice, menu] {
      if (presentation_.get() == choice->of) {
        if (choice->id >= 0) {
          presentation_->menu().Choose(static_cast<uint16_t>(choice->id));
        } else {
          presentation_->menu().Cancel();
        }
      }
      gtk_widget_destroy(menu);
    });
  });
  gtk_menu_attach_to_widget(GTK_MENU(menu), window_, nullptr);
  gtk_widget_show_all(menu);
  GdkWindow* top = gtk_widget_get_window(window_);
  GdkRectangle place{0, 0, 1, 1};
  PointerAt(top, &place.x, &place.y);
  // The button's event was the movie's, so the menu gets one made up.
  GdkEvent* trigger = gdk_event_new(GDK_BUTTON_RELEASE);
  trigger->button.window = GDK_WINDOW(g_object_ref(top));
  trigger->button.time = gdk_x11_get_server_time(top);
  trigger->button.button = 3;
  gdk_event_set_device(
      trigger, gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_window_get_display(top))));
  gtk_menu_popup_at_rect(GTK_MENU(menu), top, &place, GDK_GRAVITY_NORTH_WEST,
                         GDK_GRAVITY_NORTH_WEST, trigger);
  gdk_event_free(trigger);
}

}  // namespace vexel::client
