#include "client/desktop/application.h"

#include <X11/Xlib.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "client/core/event_loop.h"
#include "client/core/plugin_library.h"
#include "client/desktop/player_window.h"

namespace vexel::client {

namespace {

// Nothing can be done on a broken connection, not even closing it.
int EndWithoutDisplay(Display*) {
  std::fputs("vexel: play: the display has gone\n", stderr);
  std::_Exit(EXIT_FAILURE);
}

void OpenDisplay() {
  // The plug-in takes the events of an X server, one pointer's and keyboard's.
  gdk_set_allowed_backends("x11");
  gdk_disable_multidevice();
  g_set_prgname("vexel-player");
  g_set_application_name("Vexel");
  if (gtk_init_check(nullptr, nullptr)) {
    XSetIOErrorHandler(EndWithoutDisplay);
    gtk_window_set_default_icon_name("vexel");
    return;
  }
  const char* name = g_getenv("DISPLAY");
  if (!name || !*name)
    throw std::runtime_error("there is no display; 'vexel render' makes pictures without one");
  throw std::runtime_error(std::string("the display '") + name + "' cannot be opened");
}

}  // namespace

void RunApplication(const PlayOptions& options) {
  OpenDisplay();
  EventLoop loop(g_main_context_default());
  const PluginLibrary library(options.plugin);
  PlayerWindow window(&loop, &library, options.report, options.delivery);
  if (!options.movie.empty()) window.Open(options.movie);
  gtk_main();
}

}  // namespace vexel::client
