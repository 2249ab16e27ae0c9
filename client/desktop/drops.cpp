#include "client/desktop/drops.h"

#include <utility>

namespace vexel::client {

namespace {

struct Target {
  EventLoop* loop;
  std::function<void(const std::string& uri)> take;
};

void Receive(GtkWidget*, GdkDragContext*, int, int, GtkSelectionData* data, unsigned, unsigned,
             gpointer user) {
  const auto* target = static_cast<Target*>(user);
  char** uris = gtk_selection_data_get_uris(data);
  // Not inside the drop, whose end the other program waits for.
  if (uris && uris[0])
    target->loop->Post([take = target->take, uri = std::string(uris[0])] { take(uri); });
  g_strfreev(uris);
}

}  // namespace

void TakeDrops(EventLoop* loop, GtkWidget* window,
               std::function<void(const std::string& uri)> take) {
  gtk_drag_dest_set(window, GTK_DEST_DEFAULT_ALL, nullptr, 0, GDK_ACTION_COPY);
  gtk_drag_dest_add_uri_targets(window);
  g_signal_connect_data(
      window, "drag-data-received", G_CALLBACK(Receive), new Target{loop, std::move(take)},
      [](gpointer target, GClosure*) { delete static_cast<Target*>(target); },
      static_cast<GConnectFlags>(0));
}

}  // namespace vexel::client
